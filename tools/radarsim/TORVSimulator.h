#pragma once

#include "radarsim/TORVSimulatedSite.h"
#include "radarsim/TORVSimulatorOptions.h"
#include "radarsim/TORVTerrainModel.h"
#include "radarsim/TORVTerrainTile.h"
#include "radarsim/TORVWorkers.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

class TORVProgress;

/**
 * Writes a demo installation: settings, terrain, an archive of products, and then, if asked to, new products as time
 * passes. Below the directory of the options: `home` (the viewer's home), `geo` (terrain), `data3d` and `data2d`.
 *
 * Thread: one thread calls `run`; it uses others for the work.
 */
class TORVSimulator final
{
public:
    /// Lets so many seconds pass; false when the user wants to stop. Called from several threads at once.
    using Wait = std::function<bool(double seconds)>;

    TORVSimulator(const TORVSimulatorOptions& options, TORVProgress& progress, Wait wait);
    ~TORVSimulator();

    TORVSimulator(const TORVSimulator&) = delete;
    TORVSimulator& operator=(const TORVSimulator&) = delete;

    /// @return an empty text when all is done or the user has stopped it, else in words what went wrong.
    QString run();

    QString data3d() const { return _out + QStringLiteral("/data3d"); }

    QString data2d() const { return _out + QStringLiteral("/data2d"); }

    QString geo() const { return _out + QStringLiteral("/geo"); }

    QString home() const { return _out + QStringLiteral("/home"); }

private:
    QString makeDirectories() const;
    QString writeSettings() const;
    QString writeTerrain();
    QString makeSites();
    QString writeArchive();
    QString goLive();
    QString writeScan(const TORVSimulatedSite& site, int64_t time) const;
    QString writeProduct(const QString& path, const QByteArray& bytes) const;
    void removeOld(int64_t newest) const;
    std::vector<TORVTerrainTile> tiles() const;

    int64_t stepSeconds() const { return int64_t{60} * _options.step; }

    TORVSimulatorOptions _options;
    TORVProgress& _progress;
    Wait _wait;
    QString _out;
    int64_t _end; ///< s since 1970, of the archive's last scan
    TORVWorkers _workers;
    TORVTerrainModel _terrain;
    std::vector<std::unique_ptr<TORVSimulatedSite>> _sites;
};
