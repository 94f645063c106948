#include "visualization/TORV3DVisualElement.h"

#include "visualization/TORV3DFilters.h"
#include "visualization/TORVColormap.h"
#include "visualization/TORVSceneGrid.h"
#include "visualization/TORVSurfaceActor.h"
#include "visualization/TORVVolumePath.h"

#include <QCoreApplication>

#include <vtkActor.h>
#include <vtkAssembly.h>
#include <vtkFlyingEdges3D.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPointSource.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkScalarsToColors.h>
#include <vtkSmartVolumeMapper.h>
#include <vtkTimerLog.h>
#include <vtkTrivialProducer.h>
#include <vtkVolume.h>
#include <vtkVolumeProperty.h>

#include <boost/make_shared.hpp>

#include <cassert>

namespace
{

void logDebug(const char* text)
{
    TORVLog::Instance()->logDebug(QLatin1String(text));
}

// An assembly of nothing but a volume has no part that every renderer walks through.
vtkSmartPointer<vtkActor> makeInvisibleActor()
{
    vtkNew<vtkPointSource> source;
    source->Update();
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputDataObject(source->GetOutput());
    auto actor = vtkSmartPointer<vtkActor>::New();
    actor->SetMapper(mapper);
    actor->GetProperty()->SetBackfaceCulling(0);
    actor->GetProperty()->SetFrontfaceCulling(0);
    actor->GetProperty()->SetOpacity(0.0);
    return actor;
}

void setSurfaceLook(vtkProperty* property)
{
    property->SetInterpolationToGouraud();
    property->SetDiffuse(1.0);
    property->SetAmbient(0.7);
    property->SetSpecular(0.0);
    property->SetSpecularPower(4.0);
    property->SetColor(1.0, 1.0, 1.0);
    property->SetFrontfaceCulling(0);
    property->SetBackfaceCulling(0);
}

} // namespace

TORV3DVisualElement::TORV3DVisualElement(TORVVisualGroup* parent, int id)
    : TORVLayerElement(parent, id, "TORV3DVisualElement")
{
}

TORV3DVisualElement::~TORV3DVisualElement() = default;

void TORV3DVisualElement::rebuild(const std::atomic<bool>& abort)
{
    createVTKData(abort);
}

void TORV3DVisualElement::complete(bool visible, const std::atomic<bool>& abort)
{
    if (visible && !_prop && _data) {
        vtkNew<vtkTimerLog> timer;
        timer->StartTimer();
        createVTK();
        if (updateVTK() && !abort) {
            logDebug("Running algorithm..");
            runAlgorithm();
        }
        timer->StopTimer();
        _seconds += timer->GetElapsedTime();
    }
    if (_seconds > 0.0) {
        TORVLog::Instance()->logDebug(QStringLiteral("..updated in %1 seconds.").arg(_seconds, 0, 'f', 3));
        _seconds = 0.0;
    }
}

void TORV3DVisualElement::invalidate()
{
    if (_contourFilter || _volumeMapper) {
        logDebug("Removing old 3D visualization..");
    }
    TORVLayerElement::invalidate();
    _data = nullptr;
    _contourFilter = nullptr;
    _mapper = nullptr;
    _volumeMapper = nullptr;
    _volumeProperty = nullptr;
}

// The old prop goes first, so that two volumes of geometry never stand in memory.
void TORV3DVisualElement::createVTKData(const std::atomic<bool>& abort)
{
    vtkNew<vtkTimerLog> timer;
    timer->StartTimer();
    _prop = nullptr;
    _data = nullptr;
    _contourFilter = nullptr;
    _mapper = nullptr;
    _volumeMapper = nullptr;
    _volume = nullptr;
    const TORVFile::CPtr& file = _params->getDataFile();
    assert(file);
    const vtkSmartPointer<vtkImageData> image =
        vtk_3D_data_create(file, _params->getDataShrinkH(), _params->getDataShrinkV(), _params->getDataSmooth(), abort);
    if (image) {
        vtkNew<vtkTrivialProducer> producer;
        producer->SetOutput(image);
        _data = producer;
    }
    timer->StopTimer();
    _seconds = timer->GetElapsedTime();
}

void TORV3DVisualElement::createVTK()
{
    assert(_params);
    assert(_params->getDataFile());
    assert(_data);
    switch (_params->getRenderingType()) {
    case TORVProductSettings::VOLUME:
        logDebug("Creating volumes..");
        return createVolumes();
    case TORVProductSettings::SURFACE:
        logDebug("Creating surfaces..");
        return createSurfaces();
    default:
        reportUnknownType();
    }
}

bool TORV3DVisualElement::updateVTK()
{
    assert(_params);
    assert(_params->getDataFile());
    if (!_prop) {
        TORVLog::Instance()->logError(QStringLiteral("TORV3DVisualElement::updateVTK(): unknown rendering type."));
        return false;
    }
    const TORVDataType type = _params->getDataFile()->getDataType();
    _colormap = boost::make_shared<TORVColormap>(_params->getColorScaleName(), type, TORVColormap::ABSOLUTE_VALUES,
                                                 _params->getDataFile()->getRawType());
    if (_volumeMapper) {
        logDebug("Updating volumes..");
        updateVolumes();
    } else {
        logDebug("Updating surfaces..");
        updateSurfaces();
    }
    return true;
}

/*
 * The mapper marches in the image's own coordinates and knows nothing of the assembly's scale in x and y, so it is
 * given an image in metres (levels five times as tall, as elsewhere), and the volume takes the metres out again.
 */
void TORV3DVisualElement::createVolumes()
{
    const TORVPoint3D steps = TORVSceneGrid(*_params->getDataFile()).step;
    const vtkSmartPointer<vtkImageData> image = getImage();
    vtkNew<vtkImageData> metric;
    metric->ShallowCopy(image);
    const double* const spacing = image->GetSpacing();
    const double* const origin = image->GetOrigin();
    metric->SetSpacing(spacing[0] * steps.x, spacing[1] * steps.y, spacing[2] * steps.z);
    metric->SetOrigin(origin[0] * steps.x, origin[1] * steps.y, origin[2] * steps.z);

    _volumeMapper = vtkSmartPointer<vtkSmartVolumeMapper>::New();
    _volumeMapper->SetInputData(metric);
    _volumeMapper->SetBlendModeToComposite();
    _volumeMapper->CroppingOff();
    if (TORVVolumePath::isSoftware()) {
        _volumeMapper->SetRequestedRenderModeToRayCast();
    }
    _volumeMapper->SetSampleDistance(static_cast<float>(0.5 * metric->GetSpacing()[0]));

    _volume = vtkSmartPointer<vtkVolume>::New();
    _volume->SetMapper(_volumeMapper);
    _volume->SetScale(1.0 / steps.x, 1.0 / steps.y, 1.0 / steps.z);
    vtkNew<vtkAssembly> assembly;
    assembly->AddPart(makeInvisibleActor());
    assembly->AddPart(_volume);
    _prop = assembly;
}

void TORV3DVisualElement::createSurfaces()
{
    _contourFilter = vtkSmartPointer<vtkFlyingEdges3D>::New();
    _contourFilter->ComputeNormalsOn();
    _contourFilter->ComputeGradientsOff();
    _contourFilter->ComputeScalarsOn();
    _mapper = vtkSmartPointer<vtkPolyDataMapper>::New();
    vtkNew<TORVSurfaceActor> actor;
    actor->SetMapper(_mapper);
    setSurfaceLook(actor->GetProperty());
    _prop = actor;
}

void TORV3DVisualElement::updateVolumes()
{
    const TORVFile& file = *_params->getDataFile();
    _volumeProperty = vtkSmartPointer<vtkVolumeProperty>::New();
    vtk_volume_functions_update(_volumeProperty, *_params, file.getDataType(), _colormap->getMap(),
                                TORVSceneGrid(file).step.x);
    _volume->SetProperty(_volumeProperty);
}

void TORV3DVisualElement::updateSurfaces()
{
    const TORVDataType type = _params->getDataFile()->getDataType();
    vtk_3D_surface_filter_update(_contourFilter, _params->getSurfacePars(), type);
    vtk_lut_for_surfaces(_mapper, _params->getSurfacePars(), _colormap->getMap(), type);
}

void TORV3DVisualElement::runAlgorithm()
{
    if (_volumeMapper) {
        _volumeMapper->Update();
        return;
    }
    vtkNew<vtkPolyData> surfaces;
    if (!_params->getSurfacePars().isEmpty()) {
        _contourFilter->SetInputDataObject(contouredImage(getImage(), _params->getDataFile()->getDataType()));
        _contourFilter->Update();
        surfaces->ShallowCopy(_contourFilter->GetOutput());
        _contourFilter->SetInputDataObject(nullptr);
        _contourFilter->SetOutput(nullptr);
    }
    _mapper->SetInputDataObject(surfaces);
    _mapper->Update();
}

vtkSmartPointer<vtkImageData> TORV3DVisualElement::getImage() const
{
    return vtkImageData::SafeDownCast(_data->GetOutputDataObject(0));
}

void TORV3DVisualElement::reportUnknownType()
{
    TORVLog* const log = TORVLog::Instance();
    log->logError(QStringLiteral("TORV3DVisualElement::createVTK(): unknown rendering type."));
    log->logHistory(QCoreApplication::translate("App", "Unknown rendering type, 3D product not drawn: ") +
                    _params->getDataFile()->getName());
}
