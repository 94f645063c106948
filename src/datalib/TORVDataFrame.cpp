#include "datalib/TORVDataFrame.h"

#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"
#include "datalib/TORVLandmarkList.h"
#include "datalib/TORVTerrainDir.h"
#include "datalib/TORVTerrainSet.h"
#include "datalib/TORVWildcard.h"
#include "settings/TORVGeneralSettings.h"
#include "settings/TORVProductSettings.h"
#include "utils/TORVLog.h"

#include <QCoreApplication>
#include <QStringBuilder>

#include <boost/make_shared.hpp>

#include <cassert>
#include <cmath>
#include <utility>

namespace
{

constexpr int MinAreaDegrees = 4; // from the radar to each side
constexpr double MetresPerKm = 1000.0;
constexpr qint64 MillisecondsPerSecond = 1000;

void logDebug(const QString& text)
{
    TORVLog::Instance()->logDebug(text);
}

bool isSame(const TORVCoordinate& a, const TORVCoordinate& b)
{
    return a.getLat() == b.getLat() && a.getLon() == b.getLon();
}

bool isSame(const TORVGeoProjection& a, const TORVGeoProjection& b)
{
    return isSame(a.getCentre(), b.getCentre()) && a.getType() == b.getType() && a.getRadius() == b.getRadius() &&
           a.getInvFlattening() == b.getInvFlattening();
}

// Not by integers, which a coordinate takes for binary angles.
TORVCoordinate wholeDegrees(int lat, int lon)
{
    return TORVCoordinate(static_cast<double>(lat), static_cast<double>(lon));
}

QStringList legendOf(const TORVFile& file, const TORVGeneralSettings& settings)
{
    const auto big = [&](double m) { return QString::number(settings.getCorrectLengthBig(m / MetresPerKm), 'f', 1); };
    const TORVDataType type = file.getDataType();
    const QLatin1Char blank(' ');
    const QLatin1String comma(", ");
    const QLatin1String by(" x ");
    return {type.getQuantityName() % comma % type.getQuantityUnit(), settings.formattedTime(file.getDataTime()),
            big(file.getWidthM()) % by % big(file.getLengthM()) % by % big(file.getHeightM()) % blank %
                settings.getLengthUnitBig(),
            file.getSite() % blank %
                settings.formatCoordinates(file.getSiteCoordinates(), TORVCoordinate::LATITUDE_AND_LONGITUDE) % comma %
                QString::number(settings.getCorrectLengthSmall(file.getRadarElevation()), 'f', 0) % blank %
                settings.getLengthUnitSmall() % QCoreApplication::translate("Datalib", " ASL")};
}

} // namespace

TORVDataFrame::TORVDataFrame(TORVDataStore::Ptr dataStore) : _dataStore(std::move(dataStore)) {}

TORVDataFrame::TORVDataFrame(const TORVDataFrame::CPtr& other) : TORVDataFrame(*other)
{
    logDebug(QStringLiteral("(copy)"));
}

TORVDataFrame::TORVDataFrame(TORVDataStore::Ptr dataStore, const QString& site, const QString& moment,
                             const QString& product, const QString& configuration, const QString& product2d,
                             int timeWindow, double terrainFactor)
    : _dataStore(std::move(dataStore)), _site(site), _moment(moment), _timeWindow(timeWindow), _product(product),
      _configuration(configuration)
{
    if (!updateData3d()) {
        logDebug(QStringLiteral("Loading data frame failed."));
        TORVLog::Instance()->logHistory(QCoreApplication::translate("Datalib", "Requested data not available."));
        return;
    }
    setDataParams2d(product2d);
    setDataParamsTerrain(halfDiagonal_m() * terrainFactor);
    updateDataRest();
    logDebug(QLatin1String("site: ") % _site);
    logDebug(QLatin1String("product: ") % _product);
    logDebug(QLatin1String("configuration: ") % _configuration);
    logDebug(QLatin1String("moment: ") % _moment % QLatin1String(" +/-") % QString::number(_timeWindow) %
             QLatin1Char('s'));
    logDebug(QLatin1String("product2d: ") % product2d);
}

TORVDataFrame::~TORVDataFrame()
{
    resetFrame();
}

void TORVDataFrame::resetFrame()
{
    for (QString* const text : {&_site, &_moment, &_product, &_configuration, &_product2d}) {
        text->clear();
    }
    _terrainRadiusM = 0.0;
    _productSettings.reset();
    _geoProjection.reset();
    _landmarkSet.reset();
    _terrainSet.reset();
    _activeData2d.reset();
    _activeData3d.reset();
    _dataStore.reset();
}

void TORVDataFrame::setSite(const QString& site)
{
    _site = site;
}

void TORVDataFrame::setMoment(const QString& moment, int timeWindow)
{
    _moment = moment;
    _timeWindow = timeWindow;
}

void TORVDataFrame::setDataParams3d(const QString& product, const QString& configuration)
{
    _product = product;
    _configuration = configuration;
}

void TORVDataFrame::setDataParams2d(const QString& product2d)
{
    _product2d = productOrDefault(product2d);
}

void TORVDataFrame::setDataParamsTerrain(double radiusM)
{
    _terrainRadiusM = radiusM;
}

QString TORVDataFrame::productOrDefault(const QString& product2d) const
{
    if (!product2d.isEmpty()) {
        return product2d;
    }
    logDebug(QStringLiteral("2d product not selected -> using default."));
    const boost::shared_ptr<TORV2DTop> top = _dataStore->getDirTop2d();
    if (!top || !_activeData3d) {
        return {};
    }
    return top->findAllMatchingProducts(_activeData3d, _timeWindow, false).value(0);
}

double TORVDataFrame::halfDiagonal_m() const
{
    const TORVFile::CPtr file = _activeData3d->getFile();
    return 0.5 * std::hypot(file->getLengthM(), file->getWidthM());
}

bool TORVDataFrame::fitsData3d() const
{
    return _activeData3d && _activeData3d->getSite() == _site && _activeData3d->getTime() == _moment &&
           _activeData3d->getProduct() == _product && _activeData3d->getConfiguration() == _configuration;
}

bool TORVDataFrame::updateData3d()
{
    if (!fitsData3d()) {
        logDebug(QStringLiteral("3D data not available or parameters changed -> load new data."));
        const boost::shared_ptr<TORV3DTop> top = _dataStore->getDirTop3d();
        _activeData3d = top ? top->findLeaf(_site, _product, _configuration, _moment) : nullptr;
    }
    if (!_activeData3d) {
        logDebug(QStringLiteral("Loading 3d data failed."));
        return false;
    }
    _geoProjection = _activeData3d->getFile()->getGeoProjection();
    updateProductSettings();
    logDebug(QStringLiteral("Loading 3d data succeeded."));
    return true;
}

void TORVDataFrame::updateProductSettings()
{
    assert(_activeData3d);
    logDebug(QStringLiteral("Loading product settings.."));
    _productSettings.reset();
    _productSettings = boost::make_shared<TORVProductSettings>(
        _activeData3d->getProduct(), _activeData3d->getConfiguration(), _activeData3d->getFile()->getDataType());
    assert(_productSettings);
}

void TORVDataFrame::updateDataRest()
{
    assert(_activeData3d);
    if (!fitsData2d()) {
        logDebug(QStringLiteral("2D data not available or parameters changed -> load new data."));
        selectData2d();
    }
    if (_geoProjection && !fitsTerrain()) {
        logDebug(QStringLiteral("Terrain data not available or parameters changed -> load new data."));
        selectArea();
    }
}

// The window counts whole on each side here, but half on each side in a search: a file that was chosen isn't given up
// for one that is a little nearer.
bool TORVDataFrame::fitsData2d() const
{
    if (!_activeData2d || _activeData2d->getProduct() != _product2d ||
        _activeData2d->getSite() != _activeData3d->getSite()) {
        return false;
    }
    return qAbs(_activeData2d->dataTime_ms() - _activeData3d->dataTime_ms()) <= _timeWindow * MillisecondsPerSecond;
}

void TORVDataFrame::selectData2d()
{
    const boost::shared_ptr<TORV2DTop> top = _dataStore->getDirTop2d();
    _activeData2d =
        top ? top->findBestMatching2DFile(_activeData3d, TORVWildcard::patternFor(_product2d), _timeWindow) : nullptr;
}

bool TORVDataFrame::fitsTerrain() const
{
    return _terrainSet && isSame(*_terrainSet->getProjection(), *_geoProjection) &&
           isSame(_terrainSet->getLowerLeft(), _areaLowerLeft) && isSame(_terrainSet->getUpperRight(), _areaUpperRight);
}

void TORVDataFrame::selectArea()
{
    const TORVCoordinate& centre = _geoProjection->getCentre();
    int minLat = 0;
    int maxLat = 0;
    int minLon = 0;
    int maxLon = 0;
    centre.calcLatLonBounds(_terrainRadiusM, minLat, maxLat, minLon, maxLon, MinAreaDegrees);
    _areaLowerLeft = wholeDegrees(minLat, minLon);
    _areaUpperRight = wholeDegrees(maxLat, maxLon);
    const boost::shared_ptr<TORVTerrainDir> terrainDir = _dataStore->getTerrainDir();
    _terrainSet = terrainDir ? terrainDir->getTerrainSet(_geoProjection, _areaLowerLeft, _areaUpperRight) : nullptr;
    _landmarkSet = _dataStore->getLandmarkList()->getLandmarkSet(centre, _areaLowerLeft, _areaUpperRight);
}

void TORVDataFrame::renewTerrain()
{
    if (_activeData3d && _geoProjection) {
        selectArea();
    }
}

QString TORVDataFrame::getDataId(const boost::shared_ptr<const TORVGeneralSettings>& settings) const
{
    assert(settings);
    if (!_activeData3d) {
        return QCoreApplication::translate("Datalib", "(No data loaded)");
    }
    return _activeData3d->getSite() + QLatin1String(": ") +
           settings->formattedTime(_activeData3d->getFile()->getDataTime());
}

QStringList TORVDataFrame::getLegend(const boost::shared_ptr<const TORVGeneralSettings>& settings) const
{
    logDebug(QStringLiteral("TORVDataFrame::getLegend() begins"));
    const bool isThere = _activeData3d && _activeData3d->isValid();
    const QStringList lines = isThere ? legendOf(*_activeData3d->getFile(), *settings)
                                      : QStringList(QCoreApplication::translate("Datalib", "Data not available"));
    logDebug(QStringLiteral("TORVDataFrame::getLegend() ends"));
    return lines;
}
