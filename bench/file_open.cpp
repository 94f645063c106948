// Opening product files against the least that any program could do with them: open, fstat, read 640 bytes, close.

#include "datalib/TORVFile.h"
#include "radarsim/TORVProductWriter.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int FileCount = 10000;
constexpr int SiteCount = 10;

// Ten radars' files of one small grid; the size of the data block plays no part.
class Directory
{
public:
    Directory()
    {
        TORVProductFields fields;
        fields.xPoints = fields.yPoints = 16;
        fields.zPoints = 2;
        for (int i = 0; i < FileCount; ++i) {
            fields.siteName = "SITE " + QByteArray::number(i % SiteCount);
            fields.siteLatitude = 715827883U + static_cast<uint32_t>(i % SiteCount) * 1000000U;
            const QString name = QStringLiteral("S%1%2.CAPZ")
                                     .arg(i % SiteCount, 2, 10, QLatin1Char('0'))
                                     .arg(i, 12, 10, QLatin1Char('0'));
            QFile file(_directory.filePath(name));
            if (!file.open(QIODevice::WriteOnly)) {
                qFatal("can't write %s", qUtf8Printable(file.fileName()));
            }
            file.write(TORVProductWriter::file(fields, QByteArray(512, '\1')));
            _paths.push_back(file.fileName());
            _encoded.push_back(QFile::encodeName(file.fileName()));
        }
    }

    const std::vector<QString>& paths() const { return _paths; }

    const std::vector<QByteArray>& encoded() const { return _encoded; }

private:
    QTemporaryDir _directory;
    std::vector<QString> _paths;
    std::vector<QByteArray> _encoded;
};

const Directory& directory()
{
    static const Directory instance;
    return instance;
}

void bareLoop(benchmark::State& state)
{
    const std::vector<QByteArray>& paths = directory().encoded();
    char header[640];
    for (auto _ : state) {
        for (const QByteArray& path : paths) {
            const int fd = ::open(path.constData(), O_RDONLY);
            struct stat info = {};
            benchmark::DoNotOptimize(::fstat(fd, &info));
            benchmark::DoNotOptimize(::read(fd, header, sizeof header));
            ::close(fd);
        }
    }
    state.SetItemsProcessed(state.iterations() * FileCount);
}

// As a directory tree does it: every file is kept.
void productFiles(benchmark::State& state)
{
    const std::vector<QString>& paths = directory().paths();
    std::vector<TORVFile::CPtr> files;
    files.reserve(paths.size());
    for (auto _ : state) {
        for (const QString& path : paths) {
            files.push_back(TORVFile::openChecked(path));
            benchmark::DoNotOptimize(files.back()->getGeoProjection().get());
        }
        state.PauseTiming();
        files.clear();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * FileCount);
}

} // namespace

BENCHMARK(bareLoop)->Unit(benchmark::kMillisecond)->Repetitions(7)->ReportAggregatesOnly();
BENCHMARK(productFiles)->Unit(benchmark::kMillisecond)->Repetitions(7)->ReportAggregatesOnly();

BENCHMARK_MAIN();
