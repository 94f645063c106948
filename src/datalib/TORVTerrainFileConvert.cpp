// From a grid of heights to the mesh and the picture.
#include "datalib/TORVTerrainFile.h"

#include "datalib/TORVTerrainCache.h"
#include "utils/TORVLog.h"
#include "utils/TORVPoint3D.h"

#include <vtkCellArray.h>
#include <vtkColorTransferFunction.h>
#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkImageImport.h>
#include <vtkImageResample.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataNormals.h>
#include <vtkStripper.h>
#include <vtkTriangleFilter.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

constexpr int Thinning = 10; // grid cells between two points of the mesh
constexpr int Channels = 3;

constexpr double MaxKnownQuarters = 4 * 9000.0; // as high as land goes
constexpr std::array<double, 3> UnknownColor = {-1.0, -1.0, -1.0};

struct ColorPoint
{
    double height;
    double hue;
    double saturation;
    double value;
};

constexpr std::array<ColorPoint, 5> ColorPoints = {{{0.0, 0.56, 0.25, 1.0},
                                                    {0.1, 0.3, 0.3, 0.9},
                                                    {500.0, 0.1, 0.25, 0.9},
                                                    {2500.0, 0.1, 0.0, 0.9},
                                                    {4000.0, 0.0, 0.0, 1.0}}};

// Clearing would keep the memory, and so would assigning {}.
template <typename Value>
void release(std::vector<Value>& values)
{
    std::vector<Value>().swap(values);
}

vtkSmartPointer<vtkColorTransferFunction> makeColorMap()
{
    const auto map = vtkSmartPointer<vtkColorTransferFunction>::New();
    map->SetColorSpaceToHSV();
    for (const ColorPoint& point : ColorPoints) {
        map->AddHSVPoint(point.height, point.hue, point.saturation, point.value);
    }
    return map;
}

vtkSmartPointer<vtkImageData> flatPicture(const unsigned char* rgb)
{
    const int side = TORVTerrainCache::PictureSide;
    const auto picture = vtkSmartPointer<vtkImageData>::New();
    picture->SetDimensions(side, side, 1);
    picture->AllocateScalars(VTK_UNSIGNED_CHAR, Channels);
    auto* const pixels = static_cast<unsigned char*>(picture->GetScalarPointer());
    for (int i = 0; i < side * side; ++i) {
        std::copy_n(rgb, Channels, pixels + std::ptrdiff_t(i) * Channels);
    }
    return picture;
}

vtkSmartPointer<vtkCellArray> trianglesOf(int width, int height)
{
    const auto triangles = vtkSmartPointer<vtkCellArray>::New();
    triangles->AllocateExact(2 * vtkIdType(width - 1) * (height - 1), 6 * vtkIdType(width - 1) * (height - 1));
    for (int y = 0; y + 1 < height; ++y) {
        for (int x = 0; x + 1 < width; ++x) {
            const vtkIdType i = vtkIdType(y) * width + x;
            triangles->InsertNextCell({i, i + 1, i + 1 + width});
            triangles->InsertNextCell({i, i + 1 + width, i + width});
        }
    }
    return triangles;
}

} // namespace

bool TORVTerrainFile::convertData(const TORVGeoProjection::CPtr& projection, const QString& cacheFile,
                                  const std::atomic<bool>& abort)
{
    resetConverterData();
    _isSourceLost = false;
    const bool isMade =
        makeGrids(abort) && convertOriginalData(*projection, abort) && convertOriginalDataToTexture(abort);
    const bool isKept = isMade && !_isSourceLost && writePair(cacheFile);
    if (isMade) {
        setLoaded(_mesh, _picture);
    }
    resetConverterData();
    return isKept;
}

bool TORVTerrainFile::makeGrids(const std::atomic<bool>& abort)
{
    _colorMap = makeColorMap();
    if (_type == EMPTY || _type == UNKNOWN) {
        generateEmptyData();
        return !abort;
    }
    if (!loadOriginalData(abort)) {
        return false;
    }
    if (_grid.empty()) {
        return !abort;
    }
    createHeightField();
    return createColorData(abort);
}

// Flat ground needs no grid: the mesh is of zeros and the picture of one colour.
void TORVTerrainFile::generateEmptyData()
{
    _grid.clear();
    _heightFieldWidth = _heightFieldHeight = TORVTerrainCache::MeshSide;
    _heightField.assign(static_cast<std::size_t>(_heightFieldWidth) * _heightFieldHeight, 0.0);
}

void TORVTerrainFile::createHeightField()
{
    _heightFieldWidth = (_gridWidth - 1) / Thinning + 1;
    _heightFieldHeight = (_gridHeight - 1) / Thinning + 1;
    _heightField.clear();
    _heightField.reserve(static_cast<std::size_t>(_heightFieldWidth) * _heightFieldHeight);
    for (int y = 0; y < _heightFieldHeight; ++y) {
        const std::size_t row = static_cast<std::size_t>(_heightFieldHeight - 1 - y) * _gridWidth;
        for (int x = 0; x < _heightFieldWidth; ++x) {
            _heightField.push_back(_grid[(row + x) * Thinning]);
        }
    }
}

bool TORVTerrainFile::createColorData(const std::atomic<bool>& abort)
{
    _colorWidth = _gridWidth;
    _colorHeight = _gridHeight;
    _colors.resize(_grid.size() * Channels);
    unsigned char* rgb = _colors.data();
    for (int y = _gridHeight - 1; y >= 0; --y) {
        if (abort) {
            return false;
        }
        const double* const row = _grid.data() + static_cast<std::size_t>(y) * _gridWidth;
        const double* const north = y > 0 ? row - _gridWidth : row;
        const double* const south = y + 1 < _gridHeight ? row + _gridWidth : row;
        for (int x = 0; x < _gridWidth; ++x, rgb += Channels) {
            const double east = row[std::min(x + 1, _gridWidth - 1)];
            const double west = row[std::max(x - 1, 0)];
            const double a = 1.0 / (std::abs(north[x] - south[x]) + 1.0);
            const double b = 1.0 / (std::abs(east - west) + 1.0);
            heightToColor(row[x], static_cast<float>(a * b), rgb);
        }
    }
    return true;
}

// Nearly all heights of a coarse source are whole quarters of a metre, and their colours are asked for many times over.
TORVTerrainFile::Color TORVTerrainFile::colorOf(double height)
{
    const double quarters = height * 4.0;
    Color color = {};
    if (quarters < 0.0 || quarters >= MaxKnownQuarters || quarters != std::floor(quarters)) {
        _colorMap->GetColor(height, color.data());
        return color;
    }
    const auto index = static_cast<std::size_t>(quarters);
    if (index >= _knownColors.size()) {
        _knownColors.resize(index + 1, UnknownColor);
    }
    if (_knownColors[index] == UnknownColor) {
        _colorMap->GetColor(height, _knownColors[index].data());
    }
    return _knownColors[index];
}

void TORVTerrainFile::heightToColor(double height, float shade, unsigned char* rgb)
{
    const Color color = colorOf(height);
    const double factor = std::clamp(std::pow(shade, 0.05F), 0.75F, 1.0F);
    for (int i = 0; i < Channels; ++i) {
        rgb[i] =
            static_cast<unsigned char>(std::clamp(color[static_cast<std::size_t>(i)] * factor * 255.0, 0.0, 255.0));
    }
}

bool TORVTerrainFile::convertOriginalData(const TORVGeoProjection& projection, const std::atomic<bool>& abort)
{
    const int width = _heightFieldWidth;
    const int height = _heightFieldHeight;
    const TORVPoint3D radar = projection.projectFromLatLon(projection.getCentre());
    vtkNew<vtkPoints> points;
    points->SetNumberOfPoints(vtkIdType(width) * height);
    vtkNew<vtkFloatArray> places;
    places->SetName("TextureCoordinates");
    places->SetNumberOfComponents(2);
    places->SetNumberOfTuples(points->GetNumberOfPoints());
    vtkIdType at = 0;
    for (int y = 0; y < height; ++y) {
        if (abort) {
            return false;
        }
        const double v = static_cast<double>(y) / (height - 1);
        for (int x = 0; x < width; ++x, ++at) {
            const double u = static_cast<double>(x) / (width - 1);
            const TORVPoint3D place = projection.projectFromLatLon({_latitude + v, _longitude + u});
            points->SetPoint(at, place.x - radar.x, place.y - radar.y, _heightField[static_cast<std::size_t>(at)]);
            places->SetTuple2(at, u, v);
        }
    }
    vtkNew<vtkPolyData> ground;
    ground->SetPoints(points);
    ground->SetPolys(trianglesOf(width, height));
    ground->GetPointData()->SetTCoords(places);

    vtkNew<vtkPolyDataNormals> normals;
    normals->SetInputData(ground);
    normals->ComputePointNormalsOn();
    normals->SplittingOff(); // points keep their places in the list, which the look-up of elevations goes by
    normals->ConsistencyOn();
    vtkNew<vtkTriangleFilter> triangles;
    triangles->SetInputConnection(normals->GetOutputPort());
    vtkNew<vtkStripper> strips; // half the file and half the time to read it; drawing is the same
    strips->SetInputConnection(triangles->GetOutputPort());
    strips->Update();
    _mesh = strips->GetOutput();
    return !abort;
}

bool TORVTerrainFile::convertOriginalDataToTexture(const std::atomic<bool>& abort)
{
    if (_colors.empty()) {
        std::array<unsigned char, Channels> rgb = {};
        heightToColor(0.0, 1.0F, rgb.data());
        _picture = flatPicture(rgb.data());
        return !abort;
    }
    vtkNew<vtkImageImport> import;
    import->SetImportVoidPointer(_colors.data(), 1); // stays ours
    import->SetDataScalarTypeToUnsignedChar();
    import->SetNumberOfScalarComponents(Channels);
    import->SetWholeExtent(0, _colorWidth - 1, 0, _colorHeight - 1, 0, 0);
    import->SetDataExtentToWholeExtent();
    vtkNew<vtkImageResample> resample;
    resample->SetInputConnection(import->GetOutputPort());
    resample->SetDimensionality(2);
    resample->SetInterpolationModeToCubic();
    resample->SetAxisMagnificationFactor(0, double(TORVTerrainCache::PictureSide) / _colorWidth);
    resample->SetAxisMagnificationFactor(1, double(TORVTerrainCache::PictureSide) / _colorHeight);
    resample->SetNumberOfThreads(1); // blocks are converted side by side
    resample->Update();
    _picture = resample->GetOutput();
    return !abort;
}

bool TORVTerrainFile::writePair(const QString& cacheFile)
{
    if (TORVTerrainCache::createDirectory(_cachePath)) {
        log(&TORVLog::logNotice, QStringLiteral("Creating cache directory for converted terrain files."));
    }
    return TORVTerrainCache::write(cacheFile, TORVTerrainCache::fromMesh(_mesh),
                                   TORVTerrainCache::fromPicture(_picture));
}

void TORVTerrainFile::resetConverterData()
{
    release(_grid);
    release(_colors);
    release(_heightField);
    release(_knownColors);
    _gridWidth = _gridHeight = _colorWidth = _colorHeight = _heightFieldWidth = _heightFieldHeight = 0;
    _colorMap = nullptr;
    _mesh = nullptr;
    _picture = nullptr;
}
