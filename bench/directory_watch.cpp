// How long a new product takes from its rename into a directory of a hundred thousand to the watcher's signal.

#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"
#include "datalib/TORVDirectoryWatcher.h"
#include "radarsim/TORVProductWriter.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace
{

QByteArray product()
{
    TORVProductFields fields;
    fields.xPoints = fields.yPoints = 16;
    fields.zPoints = 2;
    return TORVProductWriter::file(fields, QByteArray(512, '\1'));
}

void writePlain(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("can't write %s", qUtf8Printable(path));
    }
}

QString name(int number)
{
    return QStringLiteral("HAL%1.CAPZ").arg(number, 12, 10, QLatin1Char('0'));
}

void fromRenameToSignal(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    const QByteArray bytes = product();
    const QTemporaryDir watched;
    const QTemporaryDir beside;
    for (int i = 0; i < count; ++i) {
        writePlain(watched.filePath(name(i)), bytes);
    }
    TORVDirectoryWatcher watcher(watched.path(), TORVDirectoryWatchData::DIRECTORY_3D);
    QEventLoop loop;
    while (!watcher.getTop()) {
        QCoreApplication::processEvents();
    }
    QObject::connect(&watcher, &TORVDirectoryWatcher::newFiles, &loop, &QEventLoop::quit);
    int next = count;
    for (auto _ : state) {
        const QString waiting = beside.filePath(name(++next));
        writePlain(waiting, bytes);
        QElapsedTimer clock;
        clock.start();
        QFile::rename(waiting, watched.filePath(name(next)));
        loop.exec();
        state.SetIterationTime(static_cast<double>(clock.nsecsElapsed()) * 1e-9);
        while (!watcher.getAddedFile().isEmpty()) {}
    }
}

} // namespace

BENCHMARK(fromRenameToSignal)
    ->Arg(1000)
    ->Arg(100000)
    ->UseManualTime()
    ->Iterations(10)
    ->Repetitions(7)
    ->ReportAggregatesOnly()
    ->Unit(benchmark::kMillisecond);

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
