#include "radarsim/TORVSimulator.h"

#include "datalib/TORVFile.h"
#include "datalib/TORVProductData.h"
#include "radarsim/TORVProductKind.h"
#include "radarsim/TORVProgress.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <map>

#include <sys/mount.h>

namespace
{

using testing::ElementsAre;

bool neverWait(double)
{
    return true;
}

/// A small installation: two sites, four scans, no terrain.
class TORVSimulatorTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(directory.isValid()); }

    TORVSimulatorOptions small(const char* name) const
    {
        TORVSimulatorOptions options =
            TORVSimulatorOptions::parse({QStringLiteral("--out"), directory.filePath(QLatin1String(name))});
        options.size = {40, 40, 10};
        options.hours = 0.25;
        options.terrain = false;
        return options;
    }

    QString run(const TORVSimulatorOptions& options, const TORVSimulator::Wait& wait = neverWait)
    {
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> nowhere(std::fopen("/dev/null", "w"), std::fclose);
        TORVProgress progress(nowhere.get(), false);
        return TORVSimulator(options, progress, wait).run();
    }

    QStringList names(const char* below, const QString& pattern = QStringLiteral("*")) const
    {
        return QDir(directory.filePath(QLatin1String(below)))
            .entryList({pattern}, QDir::Files | QDir::Hidden, QDir::Name);
    }

    std::map<QString, QByteArray> contents(const char* below) const
    {
        std::map<QString, QByteArray> all;
        for (const QString& name : names(below)) {
            QFile file(directory.filePath(QLatin1String(below)) + QLatin1Char('/') + name);
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            all[name] = file.readAll();
        }
        return all;
    }

    QTemporaryDir directory;
};

TEST_F(TORVSimulatorTest, NamesItsFilesBySiteTimeAndProduct)
{
    ASSERT_EQ(run(small("a")), QString());
    EXPECT_EQ(names("a/data3d", QStringLiteral("HAR*.CAPZ")),
              QStringList({QStringLiteral("HAR260714174500.CAPZ"), QStringLiteral("HAR260714175000.CAPZ"),
                           QStringLiteral("HAR260714175500.CAPZ"), QStringLiteral("HAR260714180000.CAPZ")}));
    // 2 sites, 4 scans, 3 volumes and 2 flat products
    EXPECT_EQ(names("a/data3d").size(), 24);
    EXPECT_EQ(names("a/data2d").size(), 16);
}

TEST_F(TORVSimulatorTest, WritesTheSameBytesForTheSameSeedOnAnyNumberOfThreads)
{
    TORVSimulatorOptions one = small("a");
    one.threads = 1;
    TORVSimulatorOptions three = small("b");
    three.threads = 3;
    ASSERT_EQ(run(one), QString());
    ASSERT_EQ(run(three), QString());
    EXPECT_EQ(contents("a/data3d"), contents("b/data3d"));
    EXPECT_EQ(contents("a/data2d"), contents("b/data2d"));
    EXPECT_EQ(contents("a/home/.config/Halmera").at(QStringLiteral("TORV3DLandmarks.conf")),
              contents("b/home/.config/Halmera").at(QStringLiteral("TORV3DLandmarks.conf")));
}

TEST_F(TORVSimulatorTest, MakesOtherWeatherForAnotherSeed)
{
    TORVSimulatorOptions other = small("b");
    other.seed = 2;
    ASSERT_EQ(run(small("a")), QString());
    ASSERT_EQ(run(other), QString());
    EXPECT_NE(contents("a/data3d").at(QStringLiteral("HAR260714180000.CAPZ")),
              contents("b/data3d").at(QStringLiteral("HAR260714180000.CAPZ")));
}

TEST_F(TORVSimulatorTest, WritesProductsThatAllOpenAndLoad)
{
    TORVSimulatorOptions options = small("a");
    options.hours = 0.0;
    for (const bool wide : {false, true}) {
        options.wide = wide;
        options.products = TORVSimulatorOptions::parse({QStringLiteral("--out"), QStringLiteral("x"),
                                                        QStringLiteral("--products"), QStringLiteral("all")})
                               .products;
        ASSERT_EQ(run(options), QString());
        for (const char* below : {"a/data3d", "a/data2d"}) {
            for (const QString& name : names(below)) {
                const auto file =
                    TORVFile::openChecked(directory.filePath(QLatin1String(below)) + QLatin1Char('/') + name);
                ASSERT_EQ(file->getStatus(), TORVFile::FILE_OK) << qPrintable(name);
                EXPECT_TRUE(TORVProductData::read(*file)) << qPrintable(name);
                EXPECT_EQ(file->getDataTime(), QDateTime(QDate(2026, 7, 14), QTime(18, 0), Qt::UTC));
            }
        }
    }
}

struct Header
{
    const char* path;
    const char* product;
    const char* configuration;
    int rawType;
    int itemSize;
    int levels;
};

TEST_F(TORVSimulatorTest, LabelsEachProductAsWhatItIs)
{
    TORVSimulatorOptions options = small("a");
    options.hours = 0.0;
    options.products = TORVSimulatorOptions::parse({QStringLiteral("--out"), QStringLiteral("x"),
                                                    QStringLiteral("--products"), QStringLiteral("all")})
                           .products;
    ASSERT_EQ(run(options), QString());
    const Header headers[] = {{"data3d/HAR260714180000.CAPZ", "CAPPI", "Z", 2, 1, 10},
                              {"data3d/HAR260714180000.CAPV", "CAPPI", "V", 3, 1, 10},
                              {"data3d/HAR260714180000.CAPW", "CAPPI", "W", 4, 1, 10},
                              {"data3d/HAR260714180000.CAPR", "CAPPI", "R", 13, 2, 10},
                              {"data2d/HAR260714180000.MAX", "MAX", "Z", 2, 1, 1},
                              {"data2d/HAR260714180000.VIL", "VIL", "", 5, 1, 1},
                              {"data2d/HAR260714180000.SRI", "SRI", "R", 13, 2, 1},
                              {"data2d/HAR260714180000.PPIZ", "PPI", "Z", 2, 1, 1},
                              {"data2d/HAR260714180000.CAPZ", "CAPPI", "Z", 2, 1, 1}};
    for (const Header& header : headers) {
        const TORVFile file(directory.filePath(QStringLiteral("a/") + QLatin1String(header.path)));
        EXPECT_EQ(file.getProduct(), QLatin1String(header.product)) << header.path;
        EXPECT_EQ(file.getConfiguration(), QLatin1String(header.configuration)) << header.path;
        EXPECT_EQ(file.getRawType(), header.rawType) << header.path;
        EXPECT_EQ(file.getItemSize(), header.itemSize) << header.path;
        EXPECT_EQ(file.getZPoints(), header.levels) << header.path;
    }
}

TEST_F(TORVSimulatorTest, DescribesTheRadarInTheHeader)
{
    TORVSimulatorOptions options = small("a");
    options.hours = 0.0;
    ASSERT_EQ(run(options), QString());
    const TORVFile file(directory.filePath(QStringLiteral("a/data3d/SUO260714180000.CAPV")));
    EXPECT_EQ(file.getSite(), QStringLiteral("SUOVATUNTURI"));
    EXPECT_NEAR(file.getSiteCoordinates().getLat(), 68.43, 1e-6);
    EXPECT_NEAR(file.getSiteCoordinates().getLon(), 27.40, 1e-6);
    EXPECT_EQ(file.getXScale(), 600000); // 240 km / 40
    EXPECT_EQ(file.getZScale(), 150000); // 15 km / 10
    EXPECT_EQ(file.getXRadar(), 19500);
    EXPECT_EQ(file.getRadarElevation(), file.getGroundElevation() + 22);
    // 5.33 cm, 1000 Hz, single rate: 13.325 m/s
    EXPECT_NEAR(file.getDataType().getMinDisplayValue(), -13.325, 1e-3);
}

TEST_F(TORVSimulatorTest, WritesMaxAsTheHighestOfTheVolume)
{
    TORVSimulatorOptions options = small("a");
    options.hours = 0.0;
    ASSERT_EQ(run(options), QString());
    const auto volume =
        TORVProductData::read(TORVFile(directory.filePath(QStringLiteral("a/data3d/HAR260714180000.CAPZ"))));
    const auto flat =
        TORVProductData::read(TORVFile(directory.filePath(QStringLiteral("a/data2d/HAR260714180000.MAX"))));
    ASSERT_TRUE(volume && flat);
    unsigned int strongest = 0;
    for (qint64 i = 0; i < 1600; ++i) {
        unsigned int highest = 0;
        for (qint64 level = 0; level < 10; ++level) {
            highest = std::max(highest, volume->item(level * 1600 + i));
        }
        ASSERT_EQ(flat->item(i), highest) << i;
        strongest = std::max(strongest, highest);
    }
    EXPECT_GT(strongest, 2U * 40 + 64); // more than 40 dBZ somewhere
}

TEST_F(TORVSimulatorTest, LeavesVelocityWithoutValueWhereThereIsNoEcho)
{
    TORVSimulatorOptions options = small("a");
    options.hours = 0.0;
    ASSERT_EQ(run(options), QString());
    const auto z = TORVProductData::read(TORVFile(directory.filePath(QStringLiteral("a/data3d/SUO260714180000.CAPZ"))));
    const auto v = TORVProductData::read(TORVFile(directory.filePath(QStringLiteral("a/data3d/SUO260714180000.CAPV"))));
    ASSERT_TRUE(z && v);
    for (qint64 i = 0; i < z->itemCount(); ++i) {
        ASSERT_EQ(z->item(i) == 0, v->item(i) == 0) << i;
    }
}

TEST_F(TORVSimulatorTest, AddsOneBadFileToEachScan)
{
    TORVSimulatorOptions options = small("a");
    options.faults = true;
    options.hours = 0.5; // 7 scans
    ASSERT_EQ(run(options), QString());
    // 2 sites x 7 scans x (3 good and 1 bad)
    EXPECT_EQ(names("a/data3d").size(), 2 * 7 * 4);
    EXPECT_EQ(names("a/data2d").size(), 2 * 7 * 2);
    EXPECT_GE(names("a/data3d", QStringLiteral("*.txt")).size(), 2);
    EXPECT_GE(names("a/data3d", QStringLiteral("*_copy")).size(), 2);
}

TEST_F(TORVSimulatorTest, RemovesWhatIsOlderThanItShouldKeep)
{
    TORVSimulatorOptions options = small("a");
    options.keep = 0.1; // 6 minutes: the scans of 17:45 and 17:50 go
    ASSERT_EQ(run(options), QString());
    EXPECT_EQ(names("a/data3d", QStringLiteral("SUO*.CAPV")),
              QStringList({QStringLiteral("SUO260714175500.CAPV"), QStringLiteral("SUO260714180000.CAPV")}));
}

TEST_F(TORVSimulatorTest, LeavesFilesAloneThatAreNotItsOwn)
{
    TORVSimulatorOptions options = small("a");
    options.keep = 0.0;
    ASSERT_TRUE(QDir().mkpath(directory.filePath(QStringLiteral("a/data3d"))));
    QFile other(directory.filePath(QStringLiteral("a/data3d/notes.txt")));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    ASSERT_EQ(run(options), QString());
    EXPECT_TRUE(other.exists());
}

TEST_F(TORVSimulatorTest, GoesOnLiveStepByStepUntilStopped)
{
    TORVSimulatorOptions options = small("a");
    options.hours = 0.0;
    options.end = QDateTime(QDate(2026, 7, 14), QTime(18, 0), Qt::UTC);
    options.live = 20.0;
    int steps = 0;
    std::vector<double> waits;
    const auto stopAfterTwo = [&](double seconds) {
        if (seconds > 0.0) {
            waits.push_back(seconds);
            ++steps;
        }
        return steps <= 2;
    };
    ASSERT_EQ(run(options, stopAfterTwo), QString());
    EXPECT_THAT(waits, ElementsAre(20.0, 20.0, 20.0));
    EXPECT_EQ(names("a/data3d", QStringLiteral("HAR*.CAPZ")),
              QStringList({QStringLiteral("HAR260714180000.CAPZ"), QStringLiteral("HAR260714180500.CAPZ"),
                           QStringLiteral("HAR260714181000.CAPZ")}));
}

TEST_F(TORVSimulatorTest, EndsALiveArchiveAtThePresent)
{
    TORVSimulatorOptions options = small("a");
    options.sites = 1;
    options.hours = 0.0;
    options.live = 1.0;
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    ASSERT_EQ(run(options, [](double seconds) { return seconds <= 0.0; }), QString());
    const QStringList found = names("a/data3d", QStringLiteral("*.CAPZ"));
    ASSERT_EQ(found.size(), 1);
    const qint64 time =
        TORVFile(directory.filePath(QStringLiteral("a/data3d/")) + found.first()).getDataTime().toSecsSinceEpoch();
    EXPECT_EQ(time % 300, 0);
    EXPECT_LE(time, before + 300);
    EXPECT_GT(time, before - 300);
}

TEST_F(TORVSimulatorTest, LetsFilesGrowInPiecesWhenSlow)
{
    TORVSimulatorOptions options = small("a");
    options.sites = 1;
    options.hours = 0.0;
    options.slow = true;
    options.threads = 1;
    int pauses = 0;
    int emptySeen = 0;
    const auto look = [&](double seconds) {
        if (seconds > 0.0) {
            ++pauses;
            const QFileInfo file(directory.filePath(QStringLiteral("a/data3d/HAR260714180000.CAPZ")));
            emptySeen += file.exists() && file.size() == 0 ? 1 : 0;
        }
        return true;
    };
    ASSERT_EQ(run(options, look), QString());
    EXPECT_EQ(pauses, 5 * 5); // five products of six pieces
    EXPECT_EQ(emptySeen, 1);
    EXPECT_EQ(QFileInfo(directory.filePath(QStringLiteral("a/data3d/HAR260714180000.CAPZ"))).size(),
              640 + 40 * 40 * 10);
}

TEST_F(TORVSimulatorTest, SaysWhichDirectoryItCannotMake)
{
    QFile file(directory.filePath(QStringLiteral("file")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QString error = run(small("file/below"));
    EXPECT_TRUE(error.startsWith(directory.filePath(QStringLiteral("file/below")))) << qPrintable(error);
}

TEST_F(TORVSimulatorTest, LeavesNoHalfFileOnAFullDisk)
{
    const QString place = directory.filePath(QStringLiteral("disk"));
    ASSERT_TRUE(QDir().mkpath(place));
    if (mount("tmpfs", QFile::encodeName(place).constData(), "tmpfs", 0, "size=300k") != 0) {
        GTEST_SKIP() << "only root can make a small disk";
    }
    const QString error = run(small("disk/out"));
    int broken = 0;
    for (const QString& name : names("disk/out/data3d")) {
        broken += TORVFile::openChecked(place + QStringLiteral("/out/data3d/") + name)->isValid() ? 0 : 1;
    }
    umount(QFile::encodeName(place).constData());
    EXPECT_TRUE(error.contains(QStringLiteral("No space left"))) << qPrintable(error);
    EXPECT_EQ(broken, 0);
}

} // namespace
