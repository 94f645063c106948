// A list of a hundred thousand landmarks: reading it, and taking those of one radar out of it.

#include "datalib/TORVLandmarkList.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace
{

constexpr int LandmarkCount = 100000;

// Spread evenly over the globe by two steps that fit no grid.
QByteArray landmarkFile()
{
    QByteArray bytes = "[LANDMARKS]\n";
    double lat = 0.0;
    double lon = 0.0;
    for (int i = 1; i <= LandmarkCount; ++i) {
        lat += 0.61803398875 * 180.0;
        lat -= lat > 90.0 ? 180.0 : 0.0;
        lon += 0.41421356237 * 360.0;
        lon -= lon > 180.0 ? 360.0 : 0.0;
        const QByteArray prefix = "landmarks\\" + QByteArray::number(i) + '\\';
        bytes += prefix + "color\\b=0.776\n" + prefix + "color\\g=0.847\n" + prefix + "color\\r=0.886\n";
        bytes += prefix + "label=Place " + QByteArray::number(i) + '\n';
        bytes += prefix + "location\\alt=200\n" + prefix + "location\\lat=" + QByteArray::number(lat) + '\n';
        bytes += prefix + "location\\lon=" + QByteArray::number(lon) + '\n' + prefix + "priority=3\n";
    }
    return bytes + "landmarks\\size=" + QByteArray::number(LandmarkCount) + '\n';
}

const QTemporaryDir& home()
{
    static const QTemporaryDir directory;
    if (!QFile::exists(directory.filePath(QStringLiteral("Halmera")))) {
        QDir(directory.path()).mkpath(QStringLiteral("Halmera"));
        QFile file(directory.filePath(QStringLiteral("Halmera/TORV3DLandmarks.conf")));
        if (!file.open(QIODevice::WriteOnly) || file.write(landmarkFile()) < 0) {
            qFatal("can't write %s", qUtf8Printable(file.fileName()));
        }
        QCoreApplication::setOrganizationName(QStringLiteral("Halmera"));
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, directory.path());
    }
    return directory;
}

void load(benchmark::State& state)
{
    home();
    int count = 0;
    for (auto _ : state) {
        count = TORVLandmarkList().getLandmarks().size();
    }
    state.counters["landmarks"] = count;
}

// The box of a radar of a few hundred kilometres, or the whole globe.
void select(benchmark::State& state)
{
    home();
    static const TORVLandmarkList list;
    const double half = static_cast<double>(state.range(0));
    const TORVCoordinate lowerLeft(-half, -2.0 * half);
    const TORVCoordinate upperRight(half, 2.0 * half);
    int count = 0;
    for (auto _ : state) {
        count = list.getLandmarkSet(TORVCoordinate(0.0, 0.0), lowerLeft, upperRight)->getLandmarks().size();
    }
    state.counters["accepted"] = count;
}

} // namespace

BENCHMARK(load)->Unit(benchmark::kMillisecond);
BENCHMARK(select)->Unit(benchmark::kMillisecond)->ArgName("halfHeight_deg")->Arg(4)->Arg(90);

BENCHMARK_MAIN();
