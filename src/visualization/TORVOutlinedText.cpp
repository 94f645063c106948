#include "visualization/TORVOutlinedText.h"

#include <vtkImageData.h>
#include <vtkObjectFactory.h>
#include <vtkTextProperty.h>
#include <vtkViewport.h>
#include <vtkWindow.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace
{

constexpr double LineOpacity = 0.85;
constexpr double DotsAnInch = 72.0;
constexpr double HalfPixel = 0.5;

int lineWidth(vtkViewport* viewport)
{
    return std::max(1, static_cast<int>(std::lround(viewport->GetVTKWindow()->GetDPI() / DotsAnInch)));
}

struct Pixel
{
    std::array<double, 3> color;
    double opacity;
};

// Of letters on a transparent ground; 0 beside the picture.
class Letters
{
public:
    Letters(vtkImageData* image, int width, int height) : _image(image), _width(width), _height(height) {}

    Pixel at(int x, int y) const
    {
        const unsigned char* const rgba = pixel(x, y);
        return rgba ? Pixel{{rgba[0] / 255.0, rgba[1] / 255.0, rgba[2] / 255.0}, rgba[3] / 255.0}
                    : Pixel{{0.0, 0.0, 0.0}, 0.0};
    }

    // The strongest letter within reach, corners rounded.
    double near(int x, int y, int reach) const
    {
        const double limit = (reach + HalfPixel) * (reach + HalfPixel);
        unsigned char most = 0;
        for (int dy = -reach; dy <= reach; ++dy) {
            for (int dx = -reach; dx <= reach; ++dx) {
                const unsigned char* const rgba = dx * dx + dy * dy < limit ? pixel(x + dx, y + dy) : nullptr;
                most = rgba ? std::max(most, rgba[3]) : most;
            }
        }
        return most / 255.0;
    }

private:
    const unsigned char* pixel(int x, int y) const
    {
        const bool isInside = x >= 0 && x < _width && y >= 0 && y < _height;
        return isInside ? static_cast<const unsigned char*>(_image->GetScalarPointer(x, y, 0)) : nullptr;
    }

    vtkImageData* _image;
    int _width;
    int _height;
};

// What is seen of a letter's pixel over the line's; neither is multiplied by its opacity.
Pixel over(const Pixel& letter, const Pixel& line)
{
    const double below = line.opacity * (1.0 - letter.opacity);
    Pixel sum{{0.0, 0.0, 0.0}, letter.opacity + below};
    for (std::size_t i = 0; i < 3 && sum.opacity > 0.0; ++i) {
        sum.color[i] = (letter.color[i] * letter.opacity + line.color[i] * below) / sum.opacity;
    }
    return sum;
}

unsigned char byteOf(double part)
{
    return static_cast<unsigned char>(std::lround(255.0 * part));
}

} // namespace

TORVOutlinedText* TORVOutlinedText::New()
{
    VTK_STANDARD_NEW_BODY(TORVOutlinedText);
}

TORVOutlinedText::TORVOutlinedText() = default;

TORVOutlinedText::~TORVOutlinedText() = default;

void TORVOutlinedText::SetOutlineColor(const double color[3])
{
    if (!std::equal(color, color + 3, _outlineColor)) {
        std::copy(color, color + 3, _outlineColor);
        Modified();
    }
}

void TORVOutlinedText::ShallowCopy(vtkProp* prop)
{
    if (auto* const other = TORVOutlinedText::SafeDownCast(prop)) {
        SetOutlineColor(other->_outlineColor);
    }
    vtkTextActor::ShallowCopy(prop);
}

bool TORVOutlinedText::GetImageBoundingBox(vtkTextProperty* property, vtkViewport* viewport, int bounds[4])
{
    if (!vtkTextActor::GetImageBoundingBox(property, viewport, bounds)) {
        return false;
    }
    const int width = lineWidth(viewport);
    bounds[0] -= width;
    bounds[1] += width;
    bounds[2] -= width;
    bounds[3] += width;
    return true;
}

bool TORVOutlinedText::RenderImage(vtkTextProperty* property, vtkViewport* viewport)
{
    int bounds[4];
    if (!vtkTextActor::RenderImage(property, viewport) || !GetImageBoundingBox(property, viewport, bounds)) {
        return false;
    }
    const int width = bounds[1] - bounds[0] + 1;
    const int height = bounds[3] - bounds[2] + 1;
    const int line = lineWidth(viewport);
    vtkNew<vtkImageData> letters;
    letters->ShallowCopy(ImageData);
    int size[3];
    letters->GetDimensions(size);
    const Letters from(letters, std::min(size[0], width - 2 * line), std::min(size[1], height - 2 * line));

    vtkNew<vtkImageData> outlined;
    outlined->SetDimensions(width, height, 1);
    outlined->AllocateScalars(VTK_UNSIGNED_CHAR, 4);
    auto* rgba = static_cast<unsigned char*>(outlined->GetScalarPointer());
    for (int y = -line; y < height - line; ++y) {
        for (int x = -line; x < width - line; ++x) {
            const Pixel ground{{_outlineColor[0], _outlineColor[1], _outlineColor[2]},
                               LineOpacity * from.near(x, y, line)};
            const Pixel pixel = over(from.at(x, y), ground);
            for (const double part : pixel.color) {
                *rgba++ = byteOf(part);
            }
            *rgba++ = byteOf(pixel.opacity);
        }
    }
    ImageData->ShallowCopy(outlined);
    return true;
}
