#include "visualization/TORVProductScene.h"

#include "datalib/TORVProductData.h"
#include "utils/TORVLog.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStringList>

#include <vtkActor.h>
#include <vtkDataArray.h>
#include <vtkFlyingEdges3D.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkOutlineSource.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>

#include <algorithm>

namespace
{

constexpr double MetresPerCentimetre = 0.01;
constexpr double StepsPerThousandth = 0.001;

// Raw values outside the type's range are special codes: for the picture they are no data.
template <typename T>
vtkSmartPointer<vtkImageData> makeImage(const TORVFile& file, const TORVProductData& data, int vtkType)
{
    auto image = vtkSmartPointer<vtkImageData>::New();
    image->SetDimensions(file.getXPoints(), file.getYPoints(), file.getZPoints());
    image->AllocateScalars(vtkType, 1);
    const TORVDataType type = file.getDataType();
    const T min = static_cast<T>(type.getMinAbsValue());
    const T max = static_cast<T>(type.getMaxAbsValue());
    const T noData = static_cast<T>(type.getNoDataValue());
    const T* const from = static_cast<const T*>(data.items());
    std::transform(from, from + data.itemCount(), static_cast<T*>(image->GetScalarPointer()),
                   [=](T raw) { return raw < min || raw > max ? noData : raw; });
    return image;
}

void placeImage(vtkImageData* image, const TORVFile& file, double verticalScale)
{
    const double dx = file.getXScale() * MetresPerCentimetre;
    const double dy = file.getYScale() * MetresPerCentimetre;
    const double dz = file.getZScale() * MetresPerCentimetre * verticalScale;
    image->SetSpacing(dx, dy, dz);
    image->SetOrigin(-file.getXRadar() * StepsPerThousandth * dx, -file.getYRadar() * StepsPerThousandth * dy,
                     file.getRadarElevation() * verticalScale);
}

vtkSmartPointer<vtkActor> makeSurfaceActor(vtkPolyData* geometry, const TORVProductScene::Surface& surface)
{
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputDataObject(geometry);
    mapper->ScalarVisibilityOff();
    auto actor = vtkSmartPointer<vtkActor>::New();
    actor->SetMapper(mapper);
    vtkProperty* const property = actor->GetProperty();
    property->SetColor(surface.red, surface.green, surface.blue);
    property->SetOpacity(surface.opacity);
    property->SetAmbient(0.7);
    property->SetDiffuse(1.0);
    property->SetSpecular(0.0);
    return actor;
}

vtkSmartPointer<vtkActor> makeBoxActor(const double* bounds)
{
    vtkNew<vtkOutlineSource> box;
    box->SetBounds(bounds[0], bounds[1], bounds[2], bounds[3], bounds[4], bounds[5]);
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputConnection(box->GetOutputPort());
    auto actor = vtkSmartPointer<vtkActor>::New();
    actor->SetMapper(mapper);
    actor->GetProperty()->SetColor(0.443, 0.502, 0.545);
    actor->GetProperty()->LightingOff();
    return actor;
}

void reportFailure(const TORVFile& file)
{
    TORVLog* const log = TORVLog::Instance();
    log->logError(QLatin1String("Tried to load invalid 3D data file: ") + file.getPath());
    log->logError(QStringLiteral("Aborting 3D visualization."));
    log->logHistory(QCoreApplication::translate("App", "Visualizing 3D data failed:"));
    log->logHistory(QLatin1String(" -") + file.getName());
}

} // namespace

const std::vector<TORVProductScene::Surface>& TORVProductScene::reflectivitySurfaces()
{
    static const std::vector<Surface> surfaces = {
        {20.0, 0x0A / 255.0, 0x83 / 255.0, 0x8C / 255.0, 0.18},
        {35.0, 0x7B / 255.0, 0xD5 / 255.0, 0x50 / 255.0, 0.32},
        {45.0, 0xFA / 255.0, 0xAA / 255.0, 0x28 / 255.0, 1.0},
    };
    return surfaces;
}

TORVProductScene::CPtr TORVProductScene::build(const TORVFile::CPtr& file, const std::vector<Surface>& surfaces)
{
    const TORVProductData::CPtr data = TORVProductData::read(*file);
    if (!data) {
        reportFailure(*file);
        return {};
    }
    const auto image = data->itemSize() == 1 ? makeImage<uint8_t>(*file, *data, VTK_UNSIGNED_CHAR)
                                             : makeImage<uint16_t>(*file, *data, VTK_UNSIGNED_SHORT);
    placeImage(image, *file, VerticalScale);
    const boost::shared_ptr<TORVProductScene> scene(new TORVProductScene(file, surfaces));
    image->GetBounds(scene->_bounds);
    scene->contour(image);
    return scene;
}

TORVProductScene::TORVProductScene(TORVFile::CPtr file, std::vector<Surface> surfaces)
    : _file(std::move(file)), _surfaces(std::move(surfaces))
{
}

TORVProductScene::~TORVProductScene() = default;

vtkPolyData* TORVProductScene::getSurface(std::size_t index) const
{
    return _geometry[index];
}

void TORVProductScene::contour(vtkImageData* image)
{
    const TORVDataType type = _file->getDataType();
    for (const Surface& surface : _surfaces) {
        vtkNew<vtkFlyingEdges3D> filter;
        filter->SetInputDataObject(image);
        filter->ComputeNormalsOn();
        filter->ComputeGradientsOff();
        filter->ComputeScalarsOff();
        filter->SetValue(0, type.displayToAbsoluteValue(surface.value));
        filter->Update();
        _geometry.emplace_back(filter->GetOutput());
    }
}

void TORVProductScene::addTo(vtkRenderer* renderer) const
{
    renderer->AddViewProp(makeBoxActor(_bounds));
    for (std::size_t i = 0; i < _surfaces.size(); ++i) {
        renderer->AddViewProp(makeSurfaceActor(_geometry[i], _surfaces[i]));
    }
}
