#include "visualization/TORVVisualizationParameters.h"

#include "settings/TORVGeneralSettings.h"
#include "settings/TORVProductSettings.h"
#include "utils/TORVLog.h"

#include <cassert>
#include <cmath>

namespace
{

constexpr double TickMetric = 2500.0;
constexpr double TickEnglish = 3047.99999536704; // 10000 feet of 1 / 3.2808399 m
constexpr double NauticalMile_km = 1.853184;
constexpr double RingSteps = 20000.0; // metres, or thousandths of a nautical mile
constexpr double GridMargin = 1.5;    // the grid reaches beyond the data by this factor

} // namespace

TORVVisualizationParameters::TORVVisualizationParameters()
{
    _pars3d.resetPars(nullptr);
}

TORVVisualizationParameters::~TORVVisualizationParameters() = default;

void TORVVisualizationParameters::set(const boost::shared_ptr<const TORVDataFrame>& frame,
                                      const TORVGeneralSettings& general, const TORVProductSettings& product)
{
    _dataFrame = frame;
    _leaf3d = frame->getData3d();
    _leaf2d = frame->getData2d();
    _terrainSet = frame->getTerrainSet();
    _landmarkSet = frame->getLandmarkSet();
    assert(_leaf3d);
    const TORVFile& file = *_leaf3d->getFile();
    setProduct(general, product);
    _verticalScale = general.getVerticalScale();
    _pars3dOutline.setDataHeight(file.getHeightM());
    _pars3dOutline.setSiteAltitude(file.getRadarElevation());
    _pars3dOutline.setTickInterval(general.isMetricUnits() ? TickMetric : TickEnglish);
    setGeography(file, general.isMetricUnits());
}

void TORVVisualizationParameters::setProduct(const TORVGeneralSettings& general, const TORVProductSettings& product)
{
    _pars3d.setDataFile(_leaf3d->getFile());
    _pars3d.setDataShrinkH(general.getDataShrinkH());
    _pars3d.setDataShrinkV(general.getDataShrinkV());
    _pars3d.setDataSmooth(general.getDataSmooth());
    _pars3d.setRenderingType(product.getRenderingType());
    _pars3d.setColorScaleName(product.getColorScaleName());
    _pars3d.setSurfacePars(product.getSurfaces());
    _pars3d.setVolumeValueLow(product.getVolumeValueLow());
    _pars3d.setVolumeOpacityLow(product.getVolumeOpacityLow());
    _pars3d.setVolumeValueHigh(product.getVolumeValueHigh());
    _pars3d.setVolumeOpacityHigh(product.getVolumeOpacityHigh());
    _pars2d.setDataFile(_leaf2d ? _leaf2d->getFile() : TORVFile::CPtr());
}

void TORVVisualizationParameters::setGeography(const TORVFile& file, bool metric)
{
    const double half = std::hypot(file.getLengthM(), file.getWidthM()) / 2.0;
    _parsTerrain.setTerrainSet(_terrainSet);
    _parsGeoLabels.setTerrainSet(_terrainSet);
    _parsGeoLabels.setLandmarkSet(_landmarkSet);
    _parsGeoLabels.setGeoProjection(file.getGeoProjection());
    _parsGeoLabels.setVerticalScale(_verticalScale);
    _parsLatLonGrid.setGeoProjection(file.getGeoProjection());
    _parsLatLonGrid.setRange(half * GridMargin);
    const double reach = metric ? half : half / NauticalMile_km;
    const double range = std::ceil(reach / RingSteps) * RingSteps;
    _parsRadarRings.setSiteLocation(file.getSiteCoordinates());
    _parsRadarRings.setRange(range);
    _parsRadarRings.setMetricUnits(metric);
    TORVLog::Instance()->logDebug((metric ? QStringLiteral("radius(km)=") : QStringLiteral("radius(NM)=")) +
                                  QString::number(range / 1000.0));
}

bool TORVVisualizationParameters::isSame(const TORVVisualizationParameters& other) const
{
    if (!_dataFrame || !other._dataFrame) {
        return !_dataFrame && !other._dataFrame;
    }
    return _leaf3d == other._leaf3d && _leaf2d == other._leaf2d && _terrainSet == other._terrainSet &&
           _landmarkSet == other._landmarkSet && !_pars3d.hasChanged(other._pars3d) &&
           !_pars3dOutline.hasChanged(other._pars3dOutline) && !_pars2d.hasChanged(other._pars2d) &&
           !_parsRadarRings.hasChanged(other._parsRadarRings) && !_parsTerrain.hasChanged(other._parsTerrain) &&
           !_parsGeoLabels.hasChanged(other._parsGeoLabels);
}
