#include "radarsim/TORVSimulator.h"

#include "radarsim/TORVDemoSettings.h"
#include "radarsim/TORVFaultMaker.h"
#include "radarsim/TORVGrowingFile.h"
#include "radarsim/TORVHash.h"
#include "radarsim/TORVProductMaker.h"
#include "radarsim/TORVProductWriter.h"
#include "radarsim/TORVProgress.h"

#include <QDir>
#include <QRegularExpression>

#include <cmath>
#include <set>

namespace
{

constexpr double SlowPause = 0.3;    // s between two pieces of a growing file
constexpr double TerrainReach = 1.1; // degrees of latitude round a radar: a little over 120 km
constexpr double RadiansPerDegree = 0.017453292519943295;

int64_t endOf(const TORVSimulatorOptions& options)
{
    if (options.end.isValid()) {
        return options.end.toSecsSinceEpoch();
    }
    if (!options.isLive()) {
        return QDateTime(QDate(2026, 7, 14), QTime(18, 0), Qt::UTC).toSecsSinceEpoch();
    }
    const int64_t now = QDateTime::currentSecsSinceEpoch();
    return now - now % (int64_t{60} * options.step);
}

/// When a file was measured, s since 1970, as its name says; below 0 if the name is nobody's.
int64_t timeOfName(const QString& name)
{
    static const QRegularExpression form(QStringLiteral("^[A-Z]{3}(\\d{12})\\."));
    const QRegularExpressionMatch match = form.match(name);
    if (!match.hasMatch()) {
        return -1;
    }
    const QString century = match.captured(1) < QLatin1String("90") ? QStringLiteral("20") : QStringLiteral("19");
    QDateTime time = QDateTime::fromString(century + match.captured(1), QStringLiteral("yyyyMMddhhmmss"));
    time.setTimeSpec(Qt::UTC);
    return time.isValid() ? time.toSecsSinceEpoch() : -1;
}

} // namespace

TORVSimulator::TORVSimulator(const TORVSimulatorOptions& options, TORVProgress& progress, Wait wait)
    : _options(options), _progress(progress), _wait(std::move(wait)), _out(QDir(options.out).absolutePath()),
      _end(endOf(options)), _workers(options.threads),
      _terrain(TORVTerrainModel::withRadarHills(TORVHash::mix(options.seed, 100)))
{
}

TORVSimulator::~TORVSimulator() = default;

QString TORVSimulator::run()
{
    using Step = std::function<QString()>;
    const Step steps[] = {[this] { return makeDirectories(); }, [this] { return writeSettings(); },
                          [this] { return writeTerrain(); },    [this] { return makeSites(); },
                          [this] { return writeArchive(); },    [this] { return goLive(); }};
    for (const Step& step : steps) {
        const QString error = step();
        if (!error.isEmpty()) {
            return error;
        }
    }
    return {};
}

QString TORVSimulator::makeDirectories() const
{
    for (const QString& directory : {home() + QStringLiteral("/.config/Halmera"), data3d(), data2d(), geo()}) {
        if (!QDir().mkpath(directory)) {
            return QStringLiteral("%1: the directory cannot be made").arg(directory);
        }
    }
    return {};
}

QString TORVSimulator::writeSettings() const
{
    const TORVDemoSettings settings(home());
    for (const QString& error :
         {settings.writeViewer(data3d(), data2d(), geo()),
          settings.writeStart(QLatin1String(TORVSiteInfo::all().front().name)), settings.writeColors(),
          settings.writeStyles(), settings.writeLandmarks(TORVSiteInfo::all(), _options.sites, _terrain)}) {
        if (!error.isEmpty()) {
            return error;
        }
    }
    return {};
}

std::vector<TORVTerrainTile> TORVSimulator::tiles() const
{
    std::set<std::pair<int, int>> seen;
    std::vector<TORVTerrainTile> tiles;
    for (int i = 0; i < _options.sites; ++i) {
        const TORVSiteInfo& site = TORVSiteInfo::all()[static_cast<std::size_t>(i)];
        const double across = TerrainReach / std::cos(site.latitude * RadiansPerDegree);
        const int south = static_cast<int>(std::floor(site.latitude - TerrainReach));
        const int west = static_cast<int>(std::floor(site.longitude - across));
        for (int latitude = south; latitude <= site.latitude + TerrainReach; ++latitude) {
            for (int longitude = west; longitude <= site.longitude + across; ++longitude) {
                const bool isHome = latitude == std::floor(site.latitude) && longitude == std::floor(site.longitude);
                const auto rest = longitude == west ? TORVTerrainTile::DTED1 : TORVTerrainTile::SRTM3;
                if (seen.insert({latitude, longitude}).second) {
                    tiles.emplace_back(latitude, longitude, isHome ? TORVTerrainTile::SRTM1 : rest);
                }
            }
        }
    }
    return tiles;
}

QString TORVSimulator::writeTerrain()
{
    if (!_options.terrain) {
        return {};
    }
    const std::vector<TORVTerrainTile> all = tiles();
    _progress.begin(QStringLiteral("terrain tiles"), static_cast<int>(all.size()));
    return _workers.run(static_cast<int>(all.size()), [this, &all](int number) {
        if (!_wait(0.0)) {
            return QString();
        }
        const TORVTerrainTile& tile = all[static_cast<std::size_t>(number)];
        const QByteArray bytes = tile.file(_terrain);
        const QString path = QStringLiteral("%1/%2").arg(geo(), tile.fileName());
        const QString error = bytes.isEmpty() ? QString() : TORVProductWriter::write(path, bytes);
        _progress.advance();
        return error;
    });
}

QString TORVSimulator::makeSites()
{
    _sites.resize(static_cast<std::size_t>(_options.sites));
    return _workers.run(_options.sites, [this](int number) {
        const TORVSiteInfo& info = TORVSiteInfo::all()[static_cast<std::size_t>(number)];
        const uint32_t seed = TORVHash::mix(_options.seed, static_cast<uint32_t>(number));
        _sites[static_cast<std::size_t>(number)] =
            std::make_unique<TORVSimulatedSite>(info, _options.size, seed, _terrain);
        return QString();
    });
}

QString TORVSimulator::writeArchive()
{
    const int steps = 1 + static_cast<int>(_options.hours * 60.0 / _options.step + 1e-9);
    const int jobs = steps * _options.sites;
    _progress.begin(QStringLiteral("scans"), jobs);
    const QString error = _workers.run(jobs, [this, steps](int number) {
        if (!_wait(0.0)) {
            return QString();
        }
        const int64_t time = _end - (steps - 1 - number / _options.sites) * stepSeconds();
        const QString words = writeScan(*_sites[static_cast<std::size_t>(number % _options.sites)], time);
        _progress.advance();
        return words;
    });
    removeOld(_end);
    return error;
}

QString TORVSimulator::goLive()
{
    for (int64_t time = _end + stepSeconds(); _options.isLive() && _wait(_options.live); time += stepSeconds()) {
        const QString error = _workers.run(_options.sites, [this, time](int site) {
            return writeScan(*_sites[static_cast<std::size_t>(site)], time);
        });
        if (!error.isEmpty()) {
            return error;
        }
        removeOld(time);
        _progress.say(
            QStringLiteral("scan of %1")
                .arg(QDateTime::fromSecsSinceEpoch(time, Qt::UTC).toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"))));
    }
    return {};
}

QString TORVSimulator::writeScan(const TORVSimulatedSite& site, int64_t time) const
{
    const TORVPolarVolume volume = site.scan(time);
    const TORVProductMaker maker(site.gridder(), volume, site.header(time));
    QByteArray first;
    for (const TORVProductKind* kind : _options.products) {
        const QByteArray bytes = maker.file(*kind, _options.wide);
        first = first.isEmpty() ? bytes : first;
        const QString directory = kind->isVolume ? data3d() : data2d();
        const QString name = site.fileName(time, QLatin1String(kind->extension));
        const QString error = writeProduct(QStringLiteral("%1/%2").arg(directory, name), bytes);
        if (!error.isEmpty()) {
            return error;
        }
    }
    if (!_options.faults) {
        return {};
    }
    const TORVFaultMaker::Fault fault = TORVFaultMaker::faultOf(time / stepSeconds());
    return TORVFaultMaker::write(fault, data3d(), QLatin1String(site.info().prefix), time, first);
}

QString TORVSimulator::writeProduct(const QString& path, const QByteArray& bytes) const
{
    if (!_options.slow) {
        return TORVProductWriter::write(path, bytes);
    }
    return TORVGrowingFile::write(path, bytes, [this] { _wait(SlowPause); });
}

void TORVSimulator::removeOld(int64_t newest) const
{
    if (_options.keep < 0.0) {
        return;
    }
    const int64_t oldest = newest - static_cast<int64_t>(_options.keep * 3600.0);
    for (const QString& path : {data3d(), data2d()}) {
        QDir directory(path);
        for (const QString& name : directory.entryList(QDir::Files)) {
            const int64_t time = timeOfName(name);
            if (time >= 0 && time < oldest) {
                directory.remove(name);
            }
        }
    }
}
