#include "visualization/TORV3DFilters.h"

#include "datalib/TORVProductData.h"
#include "utils/TORVLog.h"
#include "visualization/TORVVolumeFilter.h"

#include <QCoreApplication>
#include <QStringList>

#include <vtkColorTransferFunction.h>
#include <vtkFlyingEdges3D.h>
#include <vtkLookupTable.h>
#include <vtkMapper.h>
#include <vtkNew.h>
#include <vtkPiecewiseFunction.h>
#include <vtkTimerLog.h>
#include <vtkVolumeProperty.h>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <vector>

namespace
{

constexpr int TableSize = 256;
constexpr int RampSteps = 15;
constexpr double RampExponent = 5.0;

// Wide enough for every renderer's opacity table to keep the two sides of a step apart, and less than a stored step.
constexpr double StepWidth = 0.25;

void logDebug(const QString& text)
{
    TORVLog::Instance()->logDebug(text);
}

QString number(double value)
{
    return QString::number(value);
}

QString seconds(double value)
{
    return QString::number(value, 'f', 3) + QLatin1String(" seconds.");
}

void reportFailure(const TORVFile& file)
{
    TORVLog* const log = TORVLog::Instance();
    log->logError(QLatin1String("Tried to load invalid 3D data file: ") + file.getPath());
    log->logError(QStringLiteral("Aborting 3D visualization."));
    log->logHistory(QCoreApplication::translate("App", "Visualizing 3D data failed:"));
    log->logHistory(QLatin1String(" -") + file.getName());
}

void logFilters(const TORVFile& file, const TORVVolumeFilter& filter)
{
    logDebug(file.getItemSize() == 1 ? QStringLiteral("..one byte 3D data") : QStringLiteral("..two byte 3D data"));
    logDebug(QStringLiteral("Data type no data threshold: %1").arg(file.getDataType().getNoDataValue()));
    const int horizontal = filter.getShrinkHorizontal();
    const int vertical = filter.getShrinkVertical();
    logDebug(QStringLiteral("Shrink filter: factor=(1/%1, 1/%2)").arg(horizontal).arg(vertical));
    if (horizontal > 1 || vertical > 1) {
        logDebug(QStringLiteral("Applying shrink filter.."));
    }
    logDebug(QLatin1String("Smooth filter: amount=") + number(filter.getSmooth()));
    if (filter.getSmooth() > 0.0) {
        logDebug(QStringLiteral("Applying smooth filter.."));
    }
}

template <typename T>
void replaceNoData(T* values, vtkIdType count, T noData, T by)
{
    std::replace(values, values + count, noData, by);
}

struct StoredSurface
{
    double iso;
    double opacity; // 0 to 1
    double colour[3];
};

std::vector<StoredSurface> storedSurfaces(const TORVProductSettings::SurfaceParContainer& surfaces,
                                          vtkScalarsToColors* colours, const TORVDataType& type)
{
    std::vector<StoredSurface> stored;
    for (auto surface = surfaces.begin(); surface != surfaces.end(); ++surface) {
        StoredSurface entry = {};
        entry.iso = storedValue(type, surface.key());
        entry.opacity = std::clamp(surface.value(), 0, 100) / 100.0;
        colours->GetColor(entry.iso, entry.colour);
        logDebug(QStringLiteral("lutSurface #%1: iso_abs=%2, iso_disp=%3, opa=%4")
                     .arg(stored.size())
                     .arg(entry.iso)
                     .arg(surface.key())
                     .arg(surface.value()));
        stored.push_back(entry);
    }
    return stored;
}

// Of two at one distance the lower, since the list ascends.
const StoredSurface& nearestTo(double value, const std::vector<StoredSurface>& surfaces)
{
    const StoredSurface* best = &surfaces.front();
    for (const StoredSurface& surface : surfaces) {
        if (std::abs(surface.iso - value) < std::abs(best->iso - value)) {
            best = &surface;
        }
    }
    return *best;
}

void fillTable(vtkLookupTable* lut, const std::vector<StoredSurface>& surfaces)
{
    if (surfaces.empty()) {
        lut->SetTableRange(0.0, 1.0);
        lut->Build();
        for (int i = 0; i < TableSize; ++i) {
            lut->SetTableValue(i, 0.0, 0.0, 0.0, 0.0);
        }
        return;
    }
    const auto [low, high] = std::minmax_element(
        surfaces.begin(), surfaces.end(), [](const StoredSurface& a, const StoredSurface& b) { return a.iso < b.iso; });
    lut->SetTableRange(low->iso, high->iso);
    lut->Build();
    const double step = (high->iso - low->iso) / TableSize;
    for (int i = 0; i < TableSize; ++i) {
        const StoredSurface& surface = nearestTo(low->iso + i * step, surfaces);
        lut->SetTableValue(i, surface.colour[0], surface.colour[1], surface.colour[2], surface.opacity);
    }
}

// Opacity along the stored values of a volume: nothing up to the low value, then a curve that rises late.
struct Ramp
{
    double lowValue;
    double highValue;
    double lowOpacity;
    double highOpacity;

    Ramp(const TORVLayerParameters3d& params, const TORVDataType& type)
        : lowValue(storedValue(type, params.getVolumeValueLow())),
          highValue(storedValue(type, params.getVolumeValueHigh())), lowOpacity(0.01 * params.getVolumeOpacityLow()),
          highOpacity(0.01 * params.getVolumeOpacityHigh())
    {
        if (highValue < lowValue) {
            std::swap(lowValue, highValue);
            std::swap(lowOpacity, highOpacity);
        }
    }

    vtkSmartPointer<vtkPiecewiseFunction> function() const
    {
        auto points = vtkSmartPointer<vtkPiecewiseFunction>::New();
        const double range = highValue - lowValue;
        if (range == 0.0) {
            points->AddPoint(lowValue - StepWidth, 0.0);
            points->AddPoint(lowValue, highOpacity);
            return points;
        }
        points->AddPoint(lowValue, 0.0);
        double x = lowValue;
        for (int i = 1; i <= RampSteps; ++i) {
            x += range / RampSteps;
            const double share = std::pow((x - lowValue) / range, RampExponent);
            const double y = share * (highOpacity - lowOpacity) + lowOpacity;
            logDebug(QStringLiteral("Point #%1: (%2, %3)").arg(i).arg(x).arg(y));
            points->AddPoint(x, y);
        }
        return points;
    }
};

} // namespace

unsigned int storedValue(const TORVDataType& type, double display)
{
    const double min = type.getMinDisplayValue();
    const double max = type.getMaxDisplayValue();
    return type.displayToAbsoluteValue(std::isnan(display) ? min : std::clamp(display, min, max));
}

vtkSmartPointer<vtkImageData> vtk_3D_data_create(const TORVFile::CPtr& dataFile, int shrinkH, int shrinkV,
                                                 double smooth, const std::atomic<bool>& abort)
{
    logDebug(QLatin1String("Reading data: ") + dataFile->getName());
    const TORVVolumeFilter filter(shrinkH, shrinkV, smooth);
    vtkNew<vtkTimerLog> timer;
    timer->StartTimer();
    assert(dataFile->isValid());
    const TORVProductData::CPtr data = TORVProductData::read(*dataFile);
    if (!data) {
        reportFailure(*dataFile);
        return {};
    }
    timer->StopTimer();
    logDebug(QLatin1String("..data cached in ") + seconds(timer->GetElapsedTime()));
    timer->StartTimer();
    logFilters(*dataFile, filter);
    const vtkSmartPointer<vtkImageData> image =
        filter.run(*data, {dataFile->getXPoints(), dataFile->getYPoints(), dataFile->getZPoints()},
                   dataFile->getDataType(), abort);
    timer->StopTimer();
    if (!image && !abort) {
        reportFailure(*dataFile);
        return {};
    }
    logDebug(QLatin1String("..3d data read in ") + seconds(timer->GetElapsedTime()));
    logDebug(QStringLiteral("vtk_3D_data_create() finished."));
    return image;
}

vtkSmartPointer<vtkImageData> contouredImage(vtkImageData* image, const TORVDataType& type)
{
    if (!type.isVelocity()) {
        return image;
    }
    auto copy = vtkSmartPointer<vtkImageData>::New();
    copy->DeepCopy(image);
    const unsigned int rest = storedValue(type, 0.0);
    const vtkIdType count = copy->GetNumberOfPoints();
    if (copy->GetScalarType() == VTK_UNSIGNED_CHAR) {
        replaceNoData(static_cast<uint8_t*>(copy->GetScalarPointer()), count,
                      static_cast<uint8_t>(type.getNoDataValue()), static_cast<uint8_t>(rest));
    } else {
        replaceNoData(static_cast<uint16_t*>(copy->GetScalarPointer()), count,
                      static_cast<uint16_t>(type.getNoDataValue()), static_cast<uint16_t>(rest));
    }
    return copy;
}

void vtk_3D_surface_filter_update(vtkFlyingEdges3D* filter, const TORVProductSettings::SurfaceParContainer& surfaces,
                                  const TORVDataType& type)
{
    filter->SetNumberOfContours(0);
    int index = surfaces.size();
    for (auto surface = surfaces.begin(); surface != surfaces.end(); ++surface) {
        --index;
        logDebug(QStringLiteral("Surface #%1: iso=%2").arg(index).arg(surface.key()));
        filter->SetValue(index, storedValue(type, surface.key()));
    }
    filter->SetNumberOfContours(surfaces.size());
}

void vtk_lut_for_surfaces(vtkMapper* mapper, const TORVProductSettings::SurfaceParContainer& surfaces,
                          vtkScalarsToColors* colours, const TORVDataType& type)
{
    const auto lut = vtkSmartPointer<vtkLookupTable>::New();
    assert(lut);
    lut->SetNumberOfTableValues(TableSize);
    fillTable(lut, storedSurfaces(surfaces, colours, type));
    mapper->SetLookupTable(lut);
    mapper->UseLookupTableScalarRangeOn();
    mapper->SetColorModeToMapScalars();
    mapper->SetInterpolateScalarsBeforeMapping(0);
}

void vtk_volume_functions_update(vtkVolumeProperty* property, const TORVLayerParameters3d& params,
                                 const TORVDataType& type, vtkScalarsToColors* colours, double unitDistance)
{
    if (colours && colours->IsA("vtkColorTransferFunction")) {
        property->SetColor(0, vtkColorTransferFunction::SafeDownCast(colours));
    }
    const Ramp ramp(params, type);
    logDebug(QStringLiteral("Volume opacity: "));
    logDebug(QStringLiteral("Value range: %1 - %2").arg(ramp.lowValue).arg(ramp.highValue));
    logDebug(QStringLiteral("Opacity range: %1 - %2").arg(ramp.lowOpacity).arg(ramp.highOpacity));
    logDebug(QStringLiteral("Exponent: %1").arg(RampExponent));
    property->SetScalarOpacity(0, ramp.function());
    property->SetScalarOpacityUnitDistance(0, unitDistance);
    // Between no data and a velocity lie other velocities, which nobody measured.
    property->SetInterpolationType(type.isVelocity() ? VTK_NEAREST_INTERPOLATION : VTK_LINEAR_INTERPOLATION);
    property->ShadeOff(0);
}
