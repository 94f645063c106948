// The tree of a directory of a hundred thousand products of ten radars: reading it, against the least that any program
// could do with the directory (list it, open each file, read 640 bytes, close), and asking it.

#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"
#include "radarsim/TORVProductWriter.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

namespace
{

constexpr int FileCount = 100000;
constexpr int SiteCount = 10;
constexpr int ConfigurationCount = 2;
constexpr int Period_s = 300;
constexpr int Day_s = 86400;
constexpr int RemovedCount = 10000;

const QString Any = QStringLiteral("*");
const QString Site = QStringLiteral("SITE 3");

// Products of seventeen days up to now, every five minutes.
class Directory
{
public:
    Directory()
    {
        TORVProductFields fields;
        fields.xPoints = fields.yPoints = fields.zPoints = 2;
        for (int i = 0; i < FileCount; ++i) {
            write(fields, i);
        }
    }

    QString path() const { return _directory.path(); }

private:
    void write(TORVProductFields& fields, int i)
    {
        const int site = i % SiteCount;
        const int configuration = i / SiteCount % ConfigurationCount;
        const QDateTime time = _now.addSecs(-static_cast<qint64>(i / SiteCount / ConfigurationCount) * Period_s);
        fields.siteName = "SITE " + QByteArray::number(site);
        fields.siteLatitude = 715827883U + static_cast<uint32_t>(site) * 1000000U;
        fields.dataType = static_cast<uint16_t>(2 + configuration);
        fields.dataYear = static_cast<uint16_t>(time.date().year());
        fields.dataMonth = static_cast<uint16_t>(time.date().month());
        fields.dataDay = static_cast<uint16_t>(time.date().day());
        fields.dataSeconds = static_cast<uint32_t>(time.time().msecsSinceStartOfDay() / 1000);
        QFile file(_directory.filePath(QStringLiteral("S%1%2%3.CAP%4")
                                           .arg(site)
                                           .arg(configuration)
                                           .arg(time.toString(QStringLiteral("yyMMddhhmmss")))
                                           .arg(configuration)));
        if (!file.open(QIODevice::WriteOnly) || file.write(TORVProductWriter::file(fields, QByteArray(8, '\1'))) < 0) {
            qFatal("can't write %s", qUtf8Printable(file.fileName()));
        }
    }

    QTemporaryDir _directory;
    const QDateTime _now = QDateTime::currentDateTimeUtc();
};

const Directory& directory()
{
    static const Directory instance;
    return instance;
}

TORV3DTop& top()
{
    static TORV3DTop instance(directory().path());
    return instance;
}

void bareLoop(benchmark::State& state)
{
    const std::string folder = directory().path().toStdString() + '/';
    char header[640];
    for (auto _ : state) {
        DIR* const listing = ::opendir(folder.c_str());
        while (const dirent* const entry = ::readdir(listing)) {
            const int fd = ::open((folder + entry->d_name).c_str(), O_RDONLY);
            benchmark::DoNotOptimize(::read(fd, header, sizeof header));
            ::close(fd);
        }
        ::closedir(listing);
    }
    state.SetItemsProcessed(state.iterations() * FileCount);
}

void initialScan(benchmark::State& state)
{
    double bytes = 0;
    const QString path = directory().path();
    for (auto _ : state) {
        state.PauseTiming();
        const std::size_t before = ::mallinfo2().uordblks;
        state.ResumeTiming();
        auto tree = std::make_unique<TORV3DTop>(path);
        state.PauseTiming();
        bytes = static_cast<double>(::mallinfo2().uordblks - before);
        tree.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * FileCount);
    state.counters["bytes_per_leaf"] = bytes / FileCount;
}

template <typename Ask>
void ask(benchmark::State& state, const Ask& question)
{
    const TORV3DTop& tree = top();
    int found = 0;
    for (auto _ : state) {
        const auto answer = question(tree);
        found = answer->size();
        benchmark::DoNotOptimize(found);
    }
    state.counters["found"] = found;
}

void latestOfSiteInADay(benchmark::State& state)
{
    ask(state, [](const TORV3DTop& tree) { return tree.findLatestLeaves(Site, Any, Any, Day_s); });
}

void latestOfSiteAll(benchmark::State& state)
{
    ask(state, [](const TORV3DTop& tree) { return tree.findLatestLeaves(Site, Any, Any, 0); });
}

void latestOfAllInADay(benchmark::State& state)
{
    ask(state, [](const TORV3DTop& tree) { return tree.findLatestLeaves(Any, Any, Any, Day_s); });
}

void latestOfAllAll(benchmark::State& state)
{
    ask(state, [](const TORV3DTop& tree) { return tree.findLatestLeaves(Any, Any, Any, 0); });
}

void windowOfSite(benchmark::State& state)
{
    const QDateTime time = QDateTime::currentDateTimeUtc().addDays(-3);
    ask(state, [&](const TORV3DTop& tree) { return tree.findLeaves(Site, Any, Any, time, Day_s); });
}

void windowOfAll(benchmark::State& state)
{
    const QDateTime time = QDateTime::currentDateTimeUtc().addDays(-3);
    ask(state, [&](const TORV3DTop& tree) { return tree.findLeaves(Any, Any, Any, time, Day_s); });
}

void timePatternOfAll(benchmark::State& state)
{
    const QString hour = QDateTime::currentDateTimeUtc().addDays(-3).toString(QStringLiteral("yyMMddhh*"));
    ask(state, [&](const TORV3DTop& tree) { return tree.findLeaves(Any, Any, Any, hour); });
}

void productsOfSite(benchmark::State& state)
{
    ask(state,
        [](const TORV3DTop& tree) { return std::make_unique<QStringList>(tree.listProductsForSite(Site, true)); });
}

void productsOfAll(benchmark::State& state)
{
    ask(state,
        [](const TORV3DTop& tree) { return std::make_unique<QStringList>(tree.listProductsForSite(Any, true)); });
}

// As when a clean-up of the directory takes a tenth of it at once.
void removeATenth(benchmark::State& state)
{
    TORV3DTop& tree = top();
    std::vector<TORVFile::CPtr> files;
    const TORVDirTop::LeavesPtr leaves = tree.findLeaves(Any, Any, Any, Any);
    for (const TORVDirectory::Ptr& leaf : std::as_const(*leaves)) {
        if (files.size() < RemovedCount) {
            files.push_back(static_cast<const TORVFileLeaf&>(*leaf).getFile());
        }
    }
    for (auto _ : state) {
        for (const TORVFile::CPtr& file : files) {
            tree.removeFile(file->getName());
        }
        state.PauseTiming();
        for (const TORVFile::CPtr& file : files) {
            tree.addToAllLevels(file);
        }
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * RemovedCount);
}

} // namespace

BENCHMARK(bareLoop)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(initialScan)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(latestOfSiteInADay)->Unit(benchmark::kMillisecond);
BENCHMARK(latestOfSiteAll)->Unit(benchmark::kMillisecond);
BENCHMARK(latestOfAllInADay)->Unit(benchmark::kMillisecond);
BENCHMARK(latestOfAllAll)->Unit(benchmark::kMillisecond);
BENCHMARK(windowOfSite)->Unit(benchmark::kMillisecond);
BENCHMARK(windowOfAll)->Unit(benchmark::kMillisecond);
BENCHMARK(timePatternOfAll)->Unit(benchmark::kMillisecond);
BENCHMARK(productsOfSite)->Unit(benchmark::kMillisecond);
BENCHMARK(productsOfAll)->Unit(benchmark::kMillisecond);
BENCHMARK(removeATenth)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
