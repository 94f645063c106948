// Ground round a radar: first use of 64 tiles of three arc seconds against a warp of the same tiles to the same
// projection on a comparable grid, and their load from the cache against a bare read with VTK's own readers.

#include "datalib/TORVTerrainDir.h"
#include "datalib/TORVTerrainFile.h"
#include "datalib/TORVTerrainSet.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>

#include <benchmark/benchmark.h>

#include <boost/make_shared.hpp>

#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPNGReader.h>
#include <vtkPolyData.h>
#include <vtkPolyDataReader.h>

#include <cmath>
#include <thread>
#include <vector>

namespace
{

constexpr int Points = 1201;
constexpr int FirstLatitude = 42;
constexpr int FirstLongitude = 4;
constexpr int TilesASide = 8;

// Ridges of many sizes and a little roughness, 0 to some 3000 m, in one piece across all tiles.
qint16 height(double lat, double lon)
{
    double sum = 0.0;
    double amplitude = 900.0;
    double frequency = 3.0;
    for (int octave = 0; octave < 9; ++octave, amplitude *= 0.55, frequency *= 2.1) {
        sum += amplitude * std::abs(std::sin(frequency * lat + octave) * std::cos(frequency * lon - 2.0 * octave));
    }
    return static_cast<qint16>(std::max(sum - 300.0, 0.0));
}

class Tiles
{
public:
    Tiles()
    {
        for (int lat = FirstLatitude; lat < FirstLatitude + TilesASide; ++lat) {
            for (int lon = FirstLongitude; lon < FirstLongitude + TilesASide; ++lon) {
                write(lat, lon);
            }
        }
    }

    QString path() const { return _source.path(); }

    QStringList files() const { return QDir(path()).entryList({QStringLiteral("*.hgt")}); }

    boost::shared_ptr<TORVTerrainSet> set(const QString& cache) const
    {
        const auto projection = boost::make_shared<const TORVGeoProjection>(
            QStringLiteral("aeqd"), TORVCoordinate(46.0408, 8.8332), 6378137.0, 298.257);
        TORVTerrainDir directory(path(), cache);
        directory.scanFiles();
        return directory.getTerrainSet(
            projection, TORVCoordinate(double(FirstLatitude), double(FirstLongitude)),
            TORVCoordinate(double(FirstLatitude + TilesASide), double(FirstLongitude + TilesASide)));
    }

private:
    void write(int latitude, int longitude)
    {
        std::vector<qint16> words;
        words.reserve(Points * Points);
        for (int row = 0; row < Points; ++row) {
            for (int column = 0; column < Points; ++column) {
                words.push_back(
                    qToBigEndian(height(latitude + 1.0 - row / (Points - 1.0), longitude + column / (Points - 1.0))));
            }
        }
        QFile file(_source.filePath(QStringLiteral("N%1E%2.hgt")
                                        .arg(latitude, 2, 10, QLatin1Char('0'))
                                        .arg(longitude, 3, 10, QLatin1Char('0'))));
        if (!file.open(QIODevice::WriteOnly)) {
            qFatal("can't write %s", qUtf8Printable(file.fileName()));
        }
        file.write(reinterpret_cast<const char*>(words.data()), static_cast<qint64>(2 * words.size()));
    }

    QTemporaryDir _source;
};

const Tiles& tiles()
{
    static const Tiles instance;
    return instance;
}

const QTemporaryDir& filledCache()
{
    static const QTemporaryDir cache;
    static const bool isFilled = [] {
        tiles().set(cache.path())->loadFiles(std::atomic<bool>(false));
        return true;
    }();
    benchmark::DoNotOptimize(isFilled);
    return cache;
}

void run(benchmark::State& state, const QString& command)
{
    QProcess shell;
    shell.setWorkingDirectory(tiles().path());
    shell.start(QStringLiteral("sh"), {QStringLiteral("-c"), command});
    if (!shell.waitForFinished(-1) || shell.exitCode() != 0) {
        state.SkipWithError("gdalwarp is not installed or fails");
    }
}

const QString Warp = QStringLiteral("gdalwarp -q -overwrite -r average -ot Float32 -t_srs '+proj=aeqd +lat_0=46.0408 "
                                    "+lon_0=8.8332 +a=6378137 +rf=298.257' ");

// Grids of 601 x 601 a degree, as the blocks have before they are thinned.

void warpTileByTile(benchmark::State& state)
{
    const QTemporaryDir out;
    tiles();
    for (auto _ : state) {
        run(state, QLatin1String("ls *.hgt | xargs -P ") + QString::number(std::thread::hardware_concurrency()) +
                       QLatin1String(" -I {} ") + Warp + QLatin1String("-ts 601 601 {} ") + out.path() +
                       QLatin1String("/{}.tif"));
    }
}

void warpAllAtOnce(benchmark::State& state)
{
    const QTemporaryDir out;
    tiles();
    for (auto _ : state) {
        run(state, Warp + QLatin1String("-multi -wo NUM_THREADS=ALL_CPUS -wm 500 -ts 4801 4801 *.hgt ") + out.path() +
                       QLatin1String("/all.tif"));
    }
}

void convertBlocks(benchmark::State& state)
{
    tiles();
    const std::atomic<bool> abort{false};
    for (auto _ : state) {
        const QTemporaryDir cache;
        tiles().set(cache.path())->loadFiles(abort);
    }
}

void readCacheBare(benchmark::State& state)
{
    const QDir cache(filledCache().path());
    const QStringList meshes = cache.entryList({QStringLiteral("*.vtk")});
    for (auto _ : state) {
        for (const QString& name : meshes) {
            vtkNew<vtkPolyDataReader> mesh;
            mesh->SetFileName(QFile::encodeName(cache.filePath(name)).constData());
            mesh->Update();
            benchmark::DoNotOptimize(mesh->GetOutput()->GetNumberOfPoints());
            vtkNew<vtkPNGReader> picture;
            picture->SetFileName(QFile::encodeName(cache.filePath(name) + QLatin1String(".png")).constData());
            picture->Update();
            benchmark::DoNotOptimize(picture->GetOutput()->GetNumberOfPoints());
        }
    }
}

void loadCachedBlocks(benchmark::State& state)
{
    const std::atomic<bool> abort{false};
    for (auto _ : state) {
        state.PauseTiming();
        const boost::shared_ptr<TORVTerrainSet> set = tiles().set(filledCache().path());
        state.ResumeTiming();
        set->loadFiles(abort);
    }
}

} // namespace

BENCHMARK(warpTileByTile)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(3)->ReportAggregatesOnly();
BENCHMARK(warpAllAtOnce)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(3)->ReportAggregatesOnly();
BENCHMARK(convertBlocks)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(3)->ReportAggregatesOnly();
BENCHMARK(readCacheBare)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(7)->ReportAggregatesOnly();
BENCHMARK(loadCachedBlocks)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(7)->ReportAggregatesOnly();

BENCHMARK_MAIN();
