#include "datalib/TORVTerrainDir.h"

#include "datalib/TORVTerrainCache.h"
#include "datalib/TORVTerrainFile.h"
#include "datalib/TORVTerrainSet.h"
#include "utils/TORVLog.h"

#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>

namespace
{

const QString KeyStart = QStringLiteral("TC04");
const QString MeshEnding = QStringLiteral(".vtk");

constexpr double RadiansPerDegree = 3.14159265358979323846 / 180.0;
constexpr double FullCircle = 360.0;

// No weather radar sees farther; a header that says so must not fill the disk with empty blocks.
constexpr double MaxReach_deg = 20.0;

QString hemisphereAndDegrees(QChar hemisphere, double degrees)
{
    return hemisphere + QString::number(std::abs(degrees), 'g', 6);
}

TORVCoordinate onWholeDegrees(const TORVCoordinate& location)
{
    return {std::round(location.getLat()), std::round(location.getLon())};
}

bool isSamePlace(const TORVCoordinate& a, const TORVCoordinate& b)
{
    return a.getLat() == b.getLat() && a.getLon() == b.getLon();
}

// Great circle, in degrees on a sphere: good enough to say what is out of sight.
double distance_deg(const TORVCoordinate& a, const TORVCoordinate& b)
{
    const double latA = a.getLat() * RadiansPerDegree;
    const double latB = b.getLat() * RadiansPerDegree;
    const double halfLat = std::sin((latB - latA) / 2.0);
    const double halfLon = std::sin((b.getLon() - a.getLon()) * RadiansPerDegree / 2.0);
    const double square = halfLat * halfLat + std::cos(latA) * std::cos(latB) * halfLon * halfLon;
    return 2.0 * std::asin(std::sqrt(std::min(square, 1.0))) / RadiansPerDegree;
}

// Which squares of an area are worth a block.
class Sight
{
public:
    Sight(const TORVGeoProjection& projection, const TORVCoordinate& lowerLeft, const TORVCoordinate& upperRight,
          double width)
        : _centre(projection.getCentre()), _isCylindric(projection.getType() == QLatin1String("merc"))
    {
        if (width >= FullCircle) {
            const double radius =
                std::max(upperRight.getLat() - _centre.getLat(), _centre.getLat() - lowerLeft.getLat());
            _reach = std::min(radius + 1.0, MaxReach_deg);
        }
    }

    bool isSeen(const TORVCoordinate& corner) const
    {
        // A cylinder has no place for a pole, and its seam lies on the other side of the globe.
        if (_isCylindric && (corner.getLat() <= -90.0 || corner.getLat() >= 89.0)) {
            return false;
        }
        double nearest = FullCircle;
        for (const double lat : {0.0, 0.5, 1.0}) {
            for (const double lon : {0.0, 0.5, 1.0}) {
                nearest = std::min(nearest, distance_deg(_centre, {corner.getLat() + lat, corner.getLon() + lon}));
            }
        }
        return nearest <= _reach;
    }

private:
    TORVCoordinate _centre;
    bool _isCylindric;
    double _reach = MaxReach_deg;
};

} // namespace

QString getLocString(const TORVCoordinate& location)
{
    return hemisphereAndDegrees(location.getLatitudeMark(), location.getLat()) +
           hemisphereAndDegrees(location.getLongitudeMark(), location.getLon());
}

TORVTerrainDir::TORVTerrainDir(const QString& srcPath, QString dstPath)
{
    setPath(srcPath, std::move(dstPath));
}

TORVTerrainDir::~TORVTerrainDir() = default;

void TORVTerrainDir::setPath(const QString& srcPath, QString dstPath)
{
    if (dstPath.startsWith(QLatin1Char('~'))) {
        dstPath.replace(0, 1, QDir::homePath());
    }
    _srcPath = srcPath;
    _dstPath = std::move(dstPath);
    TORVLog::Instance()->logDebug(QLatin1String("srcPath=") + _srcPath);
    TORVLog::Instance()->logDebug(QLatin1String("dstPath=") + _dstPath);
    createCache();
}

void TORVTerrainDir::createCache() const
{
    if (TORVTerrainCache::createDirectory(_dstPath)) {
        TORVLog::Instance()->logNotice(QStringLiteral("Creating cache directory for converted terrain files."));
    }
}

// An empty path would mean the working directory, to QDir.
void TORVTerrainDir::clearCache() const
{
    QDir directory(_dstPath);
    if (_dstPath.isEmpty() || !directory.exists()) {
        return;
    }
    TORVLog::Instance()->logNotice(QStringLiteral("Clearing cache directory."));
    for (const QString& name : directory.entryList(QDir::Files | QDir::Hidden | QDir::System)) {
        directory.remove(name);
    }
}

void TORVTerrainDir::resetFiles()
{
    _files.clear();
    _terrainSet.reset();
}

void TORVTerrainDir::scanFiles()
{
    TORVLog* const log = TORVLog::Instance();
    resetFiles();
    const QDir directory(_srcPath);
    if (_srcPath.isEmpty() || !directory.exists()) {
        log->logNotice(QLatin1String("Path does not exist: ") + _srcPath);
        return;
    }
    const QFileInfoList entries =
        directory.entryInfoList({QStringLiteral("*.dt1"), QStringLiteral("*.hgt")}, QDir::Files, QDir::Name);
    log->logDebug(QStringLiteral("Scanning %1 terrain files..").arg(entries.size()));
    QElapsedTimer timer;
    timer.start();
    for (const QFileInfo& entry : entries) {
        addFile(entry.canonicalFilePath());
    }
    const double seconds = static_cast<double>(timer.nsecsElapsed()) * 1e-9;
    log->logDebug(QStringLiteral("%1 files scanned in %2s (%3 s/file)")
                      .arg(entries.size())
                      .arg(seconds)
                      .arg(seconds / std::max(entries.size(), 1)));
}

void TORVTerrainDir::addFile(const QString& path)
{
    const auto file = boost::make_shared<TORVTerrainFile>(path, _dstPath);
    if (!file->loadFileInfo()) {
        TORVLog::Instance()->logError(QLatin1String("Skipped terrain file: ") + path);
        return;
    }
    _files.insert(getFileKey(file->getCorner()), file);
}

boost::shared_ptr<const TORVTerrainFile> TORVTerrainDir::getFile(const TORVCoordinate& corner) const
{
    return _files.value(getFileKey(corner));
}

QString TORVTerrainDir::getFileKey(const TORVCoordinate& corner) const
{
    return getLocString(corner);
}

// The location texts are too coarse to tell two radars of one town apart, and don't know of the Earth's shape; a
// digest of what the projection is made of does.
QString TORVTerrainDir::getCacheKey(const TORVGeoProjection::CPtr& projection, const TORVCoordinate& block,
                                    const QString& typeText) const
{
    const TORVCoordinate& centre = projection->getCentre();
    const QByteArray definition = QByteArray::number(centre.getLat(), 'g', 17) + ' ' +
                                  QByteArray::number(centre.getLon(), 'g', 17) + ' ' +
                                  QByteArray::number(projection->getRadius(), 'g', 17) + ' ' +
                                  QByteArray::number(projection->getInvFlattening(), 'g', 17);
    const QByteArray digest = QCryptographicHash::hash(definition, QCryptographicHash::Sha1).toHex().left(8);
    return QStringList{KeyStart,
                       typeText,
                       projection->getType(),
                       getLocString(centre),
                       getLocString(block),
                       QString::fromLatin1(digest)}
        .join(QLatin1Char('_'));
}

QString TORVTerrainDir::getCachedFilename(const TORVGeoProjection::CPtr& projection,
                                          const boost::shared_ptr<const TORVTerrainFile>& block) const
{
    return QDir(_dstPath).absoluteFilePath(getCacheKey(projection, block->getCorner(), block->getTypeAsString()) +
                                           MeshEnding);
}

bool TORVTerrainDir::isLastSet(const TORVGeoProjection& projection, const TORVCoordinate& lowerLeft,
                               const TORVCoordinate& upperRight) const
{
    if (!_terrainSet) {
        return false;
    }
    const TORVGeoProjection& last = *_terrainSet->getProjection();
    return isSamePlace(last.getCentre(), projection.getCentre()) && last.getType() == projection.getType() &&
           last.getRadius() == projection.getRadius() && last.getInvFlattening() == projection.getInvFlattening() &&
           isSamePlace(_terrainSet->getLowerLeft(), lowerLeft) && isSamePlace(_terrainSet->getUpperRight(), upperRight);
}

// Each set has blocks of its own: another radar's set loads the same source in another projection.
boost::shared_ptr<TORVTerrainFile> TORVTerrainDir::blockAt(const TORVCoordinate& corner) const
{
    const boost::shared_ptr<const TORVTerrainFile> file = getFile(corner);
    return file ? file->unloadedCopy() : boost::make_shared<TORVTerrainFile>(corner, _dstPath);
}

boost::shared_ptr<TORVTerrainSet> TORVTerrainDir::getTerrainSet(const TORVGeoProjection::CPtr& projection,
                                                                const TORVCoordinate& lowerLeft,
                                                                const TORVCoordinate& upperRight)
{
    const TORVCoordinate lower = onWholeDegrees(lowerLeft);
    const TORVCoordinate upper = onWholeDegrees(upperRight);
    if (isLastSet(*projection, lower, upper)) {
        return _terrainSet;
    }
    const auto set = boost::make_shared<TORVTerrainSet>(projection, lower, upper);
    const double east = upper.getLon() < lower.getLon() ? upper.getLon() + FullCircle : upper.getLon();
    const Sight sight(*projection, lower, upper, east - lower.getLon());
    for (double lat = lower.getLat(); lat < upper.getLat(); lat += 1.0) {
        for (double lon = lower.getLon(); lon < east; lon += 1.0) {
            const TORVCoordinate corner(lat, lon >= 180.0 ? lon - FullCircle : lon);
            if (sight.isSeen(corner)) {
                const boost::shared_ptr<TORVTerrainFile> block = blockAt(corner);
                set->addBlock(block, getCachedFilename(projection, block));
            }
        }
    }
    _terrainSet = set;
    return set;
}

void TORVTerrainDir::printDebug() const
{
    TORVLog* const log = TORVLog::Instance();
    log->logDebug(QStringLiteral("TORVTerrainDir: %1 files of %2").arg(_files.size()).arg(_srcPath));
    for (auto file = _files.begin(); file != _files.end(); ++file) {
        log->logDebug(file.key() + QLatin1String(": ") + file.value()->getPath());
    }
}
