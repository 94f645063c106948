#include "visualization/TORVColorBarActor.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkObjectFactory.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkProperty2D.h>
#include <vtkScalarsToColors.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>
#include <vtkTextRenderer.h>
#include <vtkUnsignedCharArray.h>
#include <vtkViewport.h>
#include <vtkWindow.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

// In the height of the numbers' font.
constexpr double RampWidth = 1.3;
constexpr double TickLength = 0.35;
constexpr double TickGap = 0.3;
constexpr double TitleMargin = 0.5;
constexpr double TitleGap = 0.8;
// VTK centres a line with the room for descenders, which numbers don't use.
constexpr double NumberDrop = 0.2;
constexpr double RowHeight = 1.4;
constexpr double LineOpacity = 0.6; // the lines help the ramp and stay below it

struct Extent
{
    int width = 0;
    int height = 0;
};

Extent extentOf(const char* text, vtkTextProperty* property, int dpi)
{
    int bounds[4] = {0, 0, 0, 0};
    vtkTextRenderer* const renderer = vtkTextRenderer::GetInstance();
    if (!text || !*text || !renderer || !renderer->GetBoundingBox(property, text, bounds, dpi)) {
        return {};
    }
    return {bounds[1] - bounds[0] + 1, bounds[3] - bounds[2] + 1};
}

int rounded(double pixels)
{
    return static_cast<int>(std::lround(pixels));
}

double emOf(vtkTextProperty* property, int dpi)
{
    return property->GetFontSize() * dpi / 72.0;
}

void insertLine(vtkPolyData* lines, double x0, double y0, double x1, double y1)
{
    const vtkIdType ends[2] = {lines->GetPoints()->InsertNextPoint(x0, y0, 0.0),
                               lines->GetPoints()->InsertNextPoint(x1, y1, 0.0)};
    lines->GetLines()->InsertNextCell(2, ends);
}

void draw(vtkPolyData* data, vtkActor2D* actor)
{
    vtkNew<vtkPolyDataMapper2D> mapper;
    mapper->SetInputData(data);
    actor->SetMapper(mapper);
}

} // namespace

vtkStandardNewMacro(TORVColorBarActor)

    TORVColorBarActor::TORVColorBarActor()
{
    draw(_ramp, _rampActor);
    draw(_lines, _lineActor);
    _lineActor->GetProperty()->SetOpacity(LineOpacity);
}

TORVColorBarActor::~TORVColorBarActor() = default;

void TORVColorBarActor::SetSeams(const std::vector<Seam>& seams)
{
    _seams = seams;
    Modified();
}

void TORVColorBarActor::SetTextColor(double r, double g, double b)
{
    GetTitleTextProperty()->SetColor(r, g, b);
    GetLabelTextProperty()->SetColor(r, g, b);
}

int TORVColorBarActor::GetNeededWidth(int dpi)
{
    int numbers = 0;
    for (const Seam& seam : _seams) {
        numbers = std::max(numbers, extentOf(seam.label.c_str(), GetLabelTextProperty(), dpi).width);
    }
    const double beside = emOf(GetLabelTextProperty(), dpi) * (RampWidth + TickLength + TickGap);
    return std::max(extentOf(GetTitle(), GetTitleTextProperty(), dpi).width, rounded(beside) + 1 + numbers);
}

int TORVColorBarActor::RenderOpaqueGeometry(vtkViewport* viewport)
{
    layOut(viewport);
    int drawn = _rampActor->RenderOpaqueGeometry(viewport) + _lineActor->RenderOpaqueGeometry(viewport);
    for (const auto& text : _texts) {
        drawn += text->RenderOpaqueGeometry(viewport);
    }
    return drawn;
}

int TORVColorBarActor::RenderOverlay(vtkViewport* viewport)
{
    layOut(viewport);
    int drawn = _rampActor->RenderOverlay(viewport) + _lineActor->RenderOverlay(viewport);
    for (const auto& text : _texts) {
        drawn += text->RenderOverlay(viewport);
    }
    return drawn;
}

void TORVColorBarActor::ReleaseGraphicsResources(vtkWindow* window)
{
    vtkScalarBarActor::ReleaseGraphicsResources(window);
    _rampActor->ReleaseGraphicsResources(window);
    _lineActor->ReleaseGraphicsResources(window);
    for (const auto& text : _texts) {
        text->ReleaseGraphicsResources(window);
    }
}

void TORVColorBarActor::GetScalarBarRect(int rect[4], vtkViewport* viewport)
{
    const Box ramp = rampIn(boxIn(viewport), viewport->GetVTKWindow()->GetDPI());
    rect[0] = ramp.x;
    rect[1] = ramp.y;
    rect[2] = ramp.width;
    rect[3] = ramp.height;
}

TORVColorBarActor::Box TORVColorBarActor::boxIn(vtkViewport* viewport)
{
    const int* const lower = GetPositionCoordinate()->GetComputedViewportValue(viewport);
    Box box{lower[0], lower[1], 0, 0};
    const int* const upper = GetPosition2Coordinate()->GetComputedViewportValue(viewport);
    box.width = upper[0] - box.x;
    box.height = upper[1] - box.y;
    return box;
}

// Half a row stays free at both ends, for the numbers there.
TORVColorBarActor::Box TORVColorBarActor::rampIn(const Box& box, int dpi)
{
    const double em = emOf(GetLabelTextProperty(), dpi);
    const int halfRow = rounded(em * RowHeight / 2.0);
    const int title = extentOf(GetTitle(), GetTitleTextProperty(), dpi).height;
    const int above = title > 0 ? title + rounded(em * (TitleMargin + TitleGap)) : 0;
    return {box.x + 1, box.y + halfRow, rounded(em * RampWidth), std::max(0, box.height - 2 * halfRow - above)};
}

bool TORVColorBarActor::isLaidOut(const Box& box, int dpi)
{
    vtkMTimeType changed =
        std::max({GetMTime(), GetTitleTextProperty()->GetMTime(), GetLabelTextProperty()->GetMTime()});
    if (GetLookupTable()) {
        changed = std::max(changed, GetLookupTable()->GetMTime());
    }
    return _laidOutTime > changed && dpi == _laidOutDpi && box.x == _laidOutBox.x && box.y == _laidOutBox.y &&
           box.width == _laidOutBox.width && box.height == _laidOutBox.height;
}

void TORVColorBarActor::layOut(vtkViewport* viewport)
{
    const Box box = boxIn(viewport);
    const int dpi = viewport->GetVTKWindow()->GetDPI();
    if (isLaidOut(box, dpi)) {
        return;
    }
    _laidOutBox = box;
    _laidOutDpi = dpi;
    const Box ramp = rampIn(box, dpi);
    const std::size_t stride = strideFor(ramp, dpi);
    layOutRamp(ramp);
    layOutLines(ramp, stride);
    layOutTexts(box, ramp, stride);
    _laidOutTime.Modified();
}

std::size_t TORVColorBarActor::strideFor(const Box& ramp, int dpi)
{
    const double row = emOf(GetLabelTextProperty(), dpi) * RowHeight;
    const auto bands = static_cast<double>(std::max<std::size_t>(_seams.size(), 2) - 1);
    const double band = std::max(1, ramp.height) / bands;
    return static_cast<std::size_t>(std::max(1.0, std::ceil(row / band)));
}

double TORVColorBarActor::valueAt(double part) const
{
    const double seams = part * static_cast<double>(_seams.size() - 1);
    const std::size_t below = std::min(static_cast<std::size_t>(seams), _seams.size() - 2);
    const double fraction = seams - static_cast<double>(below);
    return _seams[below].value + fraction * (_seams[below + 1].value - _seams[below].value);
}

// One quad for each row of pixels, so that no shade is made up.
void TORVColorBarActor::layOutRamp(const Box& ramp)
{
    vtkNew<vtkPoints> points;
    vtkNew<vtkCellArray> rows;
    vtkNew<vtkUnsignedCharArray> colors;
    colors->SetNumberOfComponents(3);
    const bool isThere = _seams.size() >= 2 && GetLookupTable();
    for (int row = 0; isThere && row < ramp.height; ++row) {
        const double x[2] = {static_cast<double>(ramp.x), static_cast<double>(ramp.x + ramp.width)};
        const double y[2] = {static_cast<double>(ramp.y + row), static_cast<double>(ramp.y + row + 1)};
        const vtkIdType corners[4] = {
            points->InsertNextPoint(x[0], y[0], 0.0), points->InsertNextPoint(x[1], y[0], 0.0),
            points->InsertNextPoint(x[1], y[1], 0.0), points->InsertNextPoint(x[0], y[1], 0.0)};
        rows->InsertNextCell(4, corners);
        colors->InsertNextTypedTuple(GetLookupTable()->MapValue(valueAt((row + 0.5) / ramp.height)));
    }
    _ramp->Initialize();
    _ramp->SetPoints(points);
    _ramp->SetPolys(rows);
    _ramp->GetCellData()->SetScalars(colors);
}

void TORVColorBarActor::layOutLines(const Box& ramp, std::size_t stride)
{
    vtkNew<vtkPoints> points;
    vtkNew<vtkCellArray> cells;
    _lines->Initialize();
    _lines->SetPoints(points);
    _lines->SetLines(cells);
    double rgb[3];
    GetLabelTextProperty()->GetColor(rgb);
    _lineActor->GetProperty()->SetColor(rgb);
    if (_seams.size() < 2 || ramp.height == 0) {
        return;
    }
    const double left = ramp.x - 0.5;
    const double right = ramp.x + ramp.width + 0.5;
    const double bottom = ramp.y - 0.5;
    const double top = ramp.y + ramp.height + 0.5;
    insertLine(_lines, left, bottom, right, bottom);
    insertLine(_lines, right, bottom, right, top);
    insertLine(_lines, right, top, left, top);
    insertLine(_lines, left, top, left, bottom);
    const double tick = emOf(GetLabelTextProperty(), _laidOutDpi) * TickLength;
    for (std::size_t i = 0; i < _seams.size(); i += stride) {
        const double y = ramp.y + ramp.height * static_cast<double>(i) / static_cast<double>(_seams.size() - 1);
        insertLine(_lines, right, y, right + tick, y);
    }
}

void TORVColorBarActor::layOutTexts(const Box& box, const Box& ramp, std::size_t stride)
{
    _texts.clear();
    if (box.height <= 1) {
        return; // a window that isn't shown yet, in which VTK's text has no texture
    }
    const double em = emOf(GetLabelTextProperty(), _laidOutDpi);
    if (GetTitle()) {
        addText(GetTitle(), GetTitleTextProperty(), box.x, box.y + box.height - em * TitleMargin, true);
    }
    if (_seams.size() < 2 || ramp.height == 0) {
        return;
    }
    const double x = ramp.x + ramp.width + 1 + em * (TickLength + TickGap);
    for (std::size_t i = 0; i < _seams.size(); i += stride) {
        const double y = ramp.y + ramp.height * static_cast<double>(i) / static_cast<double>(_seams.size() - 1);
        addText(_seams[i].label.c_str(), GetLabelTextProperty(), x, y - em * NumberDrop, false);
    }
}

void TORVColorBarActor::addText(const char* text, vtkTextProperty* property, double x, double y, bool isTitle)
{
    auto actor = vtkSmartPointer<vtkTextActor>::New();
    actor->SetInput(text);
    actor->GetTextProperty()->ShallowCopy(property);
    actor->GetTextProperty()->SetJustificationToLeft();
    if (isTitle) {
        actor->GetTextProperty()->SetVerticalJustificationToTop();
    } else {
        actor->GetTextProperty()->SetVerticalJustificationToCentered();
    }
    actor->SetPosition(std::round(x), std::round(y));
    _texts.push_back(actor);
}
