#include "radarsim/TORVHash.h"
#include "radarsim/TORVTerrainModel.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace
{

struct Outcome
{
    int status;
    QString out;
    QString err;
};

Outcome runProgram(const QString& program, const QStringList& arguments)
{
    int argc = 1;
    std::array<char, 5> name{"test"};
    char* argv[] = {name.data(), nullptr};
    const QCoreApplication application(argc, argv);
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(120000));
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromLocal8Bit(process.readAllStandardOutput()),
            QString::fromLocal8Bit(process.readAllStandardError())};
}

/// Runs the real program.
Outcome run(const QStringList& arguments)
{
    return runProgram(QStringLiteral(TORV3DSIM), arguments);
}

const QStringList SmallArchive = {
    QStringLiteral("--size"),  QStringLiteral("40x40x10"), QStringLiteral("--hours"),      QStringLiteral("0"),
    QStringLiteral("--sites"), QStringLiteral("1"),        QStringLiteral("--no-terrain"), QStringLiteral("--out")};

TEST(torv3dsim, ShowsItsHelpAndSucceeds)
{
    const Outcome outcome = run({QStringLiteral("--help")});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(outcome.out.startsWith(QStringLiteral("Usage: torv3dsim")));
    EXPECT_TRUE(outcome.err.isEmpty());
}

TEST(torv3dsim, RefusesAWrongOptionWithItsOwnStatus)
{
    const Outcome outcome = run({QStringLiteral("--wrong")});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_TRUE(outcome.err.contains(QStringLiteral("--wrong")));
    EXPECT_TRUE(outcome.out.isEmpty());
}

TEST(torv3dsim, WritesPlainLinesWhereThereIsNoTerminal)
{
    const QTemporaryDir directory;
    const Outcome outcome = run(SmallArchive + QStringList(directory.filePath(QStringLiteral("a"))));
    EXPECT_EQ(outcome.status, 0) << qPrintable(outcome.err);
    EXPECT_TRUE(outcome.out.contains(QStringLiteral("scans: 1 of 1\n")));
    EXPECT_FALSE(outcome.out.contains(QLatin1Char('\r')));
}

TEST(torv3dsim, FailsWithWordsWhereItMayNotWrite)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("file")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const Outcome outcome = run(SmallArchive + QStringList(directory.filePath(QStringLiteral("file/a"))));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.err.startsWith(QStringLiteral("torv3dsim: ")));
    EXPECT_TRUE(outcome.err.contains(directory.filePath(QStringLiteral("file/a"))));
}

TEST(torv3dsim, DrawsCutsThroughAProduct)
{
    const QTemporaryDir directory;
    ASSERT_EQ(run(SmallArchive + QStringList(directory.filePath(QStringLiteral("a")))).status, 0);
    const QString picture = directory.filePath(QStringLiteral("cuts.png"));
    const Outcome outcome = run(
        {QStringLiteral("--picture"), picture, directory.filePath(QStringLiteral("a/data3d/HAR260714180000.CAPZ"))});
    EXPECT_EQ(outcome.status, 0) << qPrintable(outcome.err);
    const QImage image(picture);
    EXPECT_EQ(image.size(), QSize(968, 638)); // two fields of 480 and a gap of 8; 480, 8 and 150 high
}

TEST(torv3dsim, DrawsNothingOfAFileThatIsNoProduct)
{
    const QTemporaryDir directory;
    const QString picture = directory.filePath(QStringLiteral("cuts.png"));
    EXPECT_EQ(run({QStringLiteral("--picture"), picture, QStringLiteral("/dev/null")}).status, 1);
    EXPECT_FALSE(QFile::exists(picture));
}

TEST(torv3dsim, WritesTerrainThatGdalOpensTileByTile)
{
    if (QStandardPaths::findExecutable(QStringLiteral("gdallocationinfo")).isEmpty()) {
        GTEST_SKIP() << "gdallocationinfo is not on this machine";
    }
    const QTemporaryDir directory;
    ASSERT_EQ(run({QStringLiteral("--size"), QStringLiteral("20x20x4"), QStringLiteral("--hours"), QStringLiteral("0"),
                   QStringLiteral("--sites"), QStringLiteral("1"), QStringLiteral("--out"), directory.path()})
                  .status,
              0);
    // The seed of the country, as the program derives it from its default seed 1.
    const TORVTerrainModel country = TORVTerrainModel::withRadarHills(TORVHash::mix(1, 100));
    const QRegularExpression place(QStringLiteral("^n(\\d\\d)_?e(\\d\\d\\d)"),
                                   QRegularExpression::CaseInsensitiveOption);
    int tiles = 0;
    for (const QFileInfo& file : QDir(directory.filePath(QStringLiteral("geo"))).entryInfoList(QDir::Files)) {
        const QRegularExpressionMatch corner = place.match(file.fileName());
        ASSERT_TRUE(corner.hasMatch()) << qPrintable(file.fileName());
        // A point that lies on the grid of all three formats: 0.4 of a degree from the corner.
        const double latitude = corner.captured(1).toInt() + 0.4;
        const double longitude = corner.captured(2).toInt() + 0.4;
        const Outcome outcome =
            runProgram(QStringLiteral("gdallocationinfo"),
                       {QStringLiteral("-valonly"), QStringLiteral("-wgs84"), file.absoluteFilePath(),
                        QString::number(longitude, 'f', 1), QString::number(latitude, 'f', 1)});
        ASSERT_EQ(outcome.status, 0) << qPrintable(file.fileName());
        const float height = country.height(latitude, longitude);
        if (!country.isVoid(latitude, longitude, height)) {
            EXPECT_EQ(outcome.out.trimmed().toInt(), std::lround(height)) << qPrintable(file.fileName());
        }
        ++tiles;
    }
    EXPECT_GE(tiles, 10);
}

} // namespace
