#include "datalib/TORVDirectoryWatchData.h"

#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"
#include "radarsim/TORVProductWriter.h"
#include "support/LogFile.h"
#include "support/ProductFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

constexpr uid_t Nobody = 65534;

// The passes are called by hand: no thread, no clock.
class TORVDirectoryWatchDataTest : public testing::Test
{
protected:
    void start() { data.initialize(files.path(QString())); }

    bool onNotice() { return pass(&TORVDirectoryWatchData::markDirty); }
    bool onTick() { return pass(&TORVDirectoryWatchData::markRetry); }
    bool onLook() { return pass(&TORVDirectoryWatchData::markLook); }

    static TORVProductFields fields() { return ProductFiles::small(); }

    // A product of 664 bytes, cut off at that many.
    QString write(const QString& name, int bytes = 664) const { return files.writeTruncated(name, fields(), bytes); }

    QString path(const QString& name) const { return QDir(files.path(QString())).absoluteFilePath(name); }

    bool isInTree(const QString& name) const { return data.getTop()->findLeaf(name) != nullptr; }

    ProductFiles files;
    LogFile log{TORVLog::LEVEL_NOTICE};
    TORVDirectoryWatchData data{TORVDirectoryWatchData::DIRECTORY_3D};

private:
    bool pass(void (TORVDirectoryWatchData::*mark)())
    {
        (data.*mark)();
        return data.checkUpdates(data.takeReasons());
    }
};

const QString One = QStringLiteral("HAL260714120000.CAPZ");
const QString Two = QStringLiteral("HAL260714120500.CAPZ");

} // namespace

TEST_F(TORVDirectoryWatchDataTest, LoadsWhatLiesThereAndTellsNobody)
{
    write(One);
    start();
    EXPECT_TRUE(data.isInitialized());
    EXPECT_TRUE(isInTree(One));
    EXPECT_FALSE(onNotice());
    EXPECT_THAT(data.takeAdded(), IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(TORVDirectoryWatchDataTest, IsNotInitializedWithoutADirectory)
{
    data.initialize(files.path(QStringLiteral("none")));
    EXPECT_FALSE(data.isInitialized());
    EXPECT_FALSE(onNotice());
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("E: TORVDirectoryWatchData::initialize(): Not a valid directory: ") +
                            files.path(QStringLiteral("none"))));
}

TEST_F(TORVDirectoryWatchDataTest, IsSilentAboutAnEmptyPath)
{
    data.initialize(QString());
    EXPECT_FALSE(data.isInitialized());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(TORVDirectoryWatchDataTest, ReportsANewFileByItsAbsolutePath)
{
    start();
    write(One);
    EXPECT_TRUE(onNotice());
    EXPECT_THAT(data.takeAdded(), ElementsAre(path(One)));
    EXPECT_TRUE(isInTree(One));
}

TEST_F(TORVDirectoryWatchDataTest, IsCalmAfterAPassThatFindsNothing)
{
    start();
    write(One);
    EXPECT_TRUE(onNotice());
    EXPECT_FALSE(onNotice());
    EXPECT_THAT(data.takeAdded(), ElementsAre(path(One)));
}

TEST_F(TORVDirectoryWatchDataTest, ReportsARemovedFile)
{
    write(One);
    start();
    QFile::remove(path(One));
    EXPECT_TRUE(onNotice());
    EXPECT_THAT(data.takeRemoved(), ElementsAre(path(One)));
    EXPECT_FALSE(isInTree(One));
}

TEST_F(TORVDirectoryWatchDataTest, ReportsASlowCopyOnceWhenItIsComplete)
{
    start();
    for (const int bytes : {0, 100, 650}) {
        write(One, bytes);
        onNotice();
        onTick();
        EXPECT_THAT(data.takeAdded(), IsEmpty()) << bytes;
        EXPECT_EQ(data.retryQueueLength(), 1);
    }
    write(One);
    onTick();
    EXPECT_THAT(data.takeAdded(), ElementsAre(path(One)));
    EXPECT_EQ(data.retryQueueLength(), 0);
    onTick();
    onNotice();
    EXPECT_THAT(data.takeAdded(), IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(TORVDirectoryWatchDataTest, WaitsForAFileThatIsGrowingAtTheStart)
{
    write(One, 650);
    start();
    EXPECT_EQ(data.retryQueueLength(), 1);
    write(One);
    onTick();
    EXPECT_THAT(data.takeAdded(), ElementsAre(path(One)));
}

TEST_F(TORVDirectoryWatchDataTest, GivesUpAtTheEleventhTickOfSilence)
{
    start();
    write(One, 650);
    onNotice(); // the same pass tries it once more, but nobody has waited yet
    for (int tick = 1; tick <= 10; ++tick) {
        onTick();
        EXPECT_EQ(data.retryQueueLength(), 1) << tick;
    }
    onTick();
    EXPECT_EQ(data.retryQueueLength(), 0);
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral("W: TOO MANY RETRIES, FILE DISCARDED: ") + One));
}

TEST_F(TORVDirectoryWatchDataTest, CountsSecondsAndNotPasses)
{
    start();
    write(One, 650);
    for (int i = 0; i < 30; ++i) {
        write(QStringLiteral("HAL26071412%1.CAPZ").arg(3000 + i));
        onNotice();
    }
    EXPECT_EQ(data.retryQueueLength(), 1);
}

TEST_F(TORVDirectoryWatchDataTest, NeverGivesUpAFileThatGrows)
{
    start();
    for (int bytes = 600; bytes < 650; ++bytes) {
        write(One, bytes);
        onNotice();
        onTick();
    }
    EXPECT_EQ(data.retryQueueLength(), 1);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(TORVDirectoryWatchDataTest, TriesAFileAgainThatWasGivenUpAndGrewLater)
{
    start();
    write(One, 650);
    onNotice();
    for (int tick = 0; tick < 11; ++tick) {
        onTick();
    }
    write(One);
    onLook();
    EXPECT_THAT(data.takeAdded(), ElementsAre(path(One)));
}

TEST_F(TORVDirectoryWatchDataTest, TriesAPreallocatedFileAgainWhenItIsFilled)
{
    start();
    files.writeBytes(One, QByteArray(664, '\0'));
    onNotice();
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("W: INCOMING FILE DISCARDED: (INVALID OR NO PERMISSIONS): ") + One));
    onLook();
    EXPECT_THAT(data.takeAdded(), IsEmpty());
    write(One);
    onLook();
    EXPECT_THAT(data.takeAdded(), ElementsAre(path(One)));
    EXPECT_EQ(log.lines().size(), 1);
}

TEST_F(TORVDirectoryWatchDataTest, ReadsAFileAgainThatWasReplacedUnderItsName)
{
    write(One);
    start();
    TORVProductFields other = fields();
    other.groundElevation = 777;
    ASSERT_EQ(TORVProductWriter::write(path(One), TORVProductWriter::file(other, QByteArray(24, '\2'))), QString());
    onNotice();
    onLook();
    EXPECT_THAT(data.takeRemoved(), ElementsAre(path(One)));
    EXPECT_THAT(data.takeAdded(), ElementsAre(path(One)));
    EXPECT_EQ(data.getTop()->findLeaf(One)->getFile()->getGroundElevation(), 777);
    onLook();
    EXPECT_THAT(data.takeAdded(), IsEmpty());
}

TEST_F(TORVDirectoryWatchDataTest, ForgetsAWaitingFileThatIsDeleted)
{
    start();
    write(One, 650);
    onNotice();
    QFile::remove(path(One));
    onNotice();
    onTick();
    EXPECT_EQ(data.retryQueueLength(), 0);
    EXPECT_THAT(data.takeRemoved(), IsEmpty());
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral("N: COULD NOT REMOVE FILE (NOT IN DIRECTORY) ") + One));
}

TEST_F(TORVDirectoryWatchDataTest, DiscardsAFileOfTheWrongTypeWithOneWarning)
{
    start();
    TORVProductFields flat = fields();
    flat.zPoints = 1;
    files.write(One, flat);
    onNotice();
    onNotice();
    onLook();
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("W: INCOMING FILE DISCARDED: (INVALID OR NO PERMISSIONS): ") + One));
    EXPECT_THAT(data.takeAdded(), IsEmpty());
}

TEST_F(TORVDirectoryWatchDataTest, RefusesAHeaderThatCannotBeMeant)
{
    start();
    TORVProductFields poisonous = fields();
    poisonous.projectionType = 9;
    files.write(One, poisonous);
    onNotice();
    EXPECT_THAT(data.takeAdded(), IsEmpty());
    EXPECT_EQ(log.lines().filter(QStringLiteral("projection type is unknown")).size(), 1);
}

TEST_F(TORVDirectoryWatchDataTest, DiscardsADuplicateWithTwoBlanks)
{
    write(One);
    start();
    write(One + QStringLiteral("2")); // the same key by its characters 4 to 15
    onNotice();
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("W: INCOMING FILE DISCARDED (DUPLICATE):  ") + One + QLatin1Char('2')));
}

TEST_F(TORVDirectoryWatchDataTest, TakesADuplicateWhenTheFileBeforeItGoes)
{
    write(One);
    start();
    write(One + QStringLiteral("2"));
    onNotice();
    QFile::remove(path(One));
    onNotice();
    EXPECT_THAT(data.takeRemoved(), ElementsAre(path(One)));
    EXPECT_THAT(data.takeAdded(), ElementsAre(path(One + QStringLiteral("2"))));
}

TEST_F(TORVDirectoryWatchDataTest, KeepsAProductThatIsRenamedToItsFinalName)
{
    start();
    const QString temporary = One + QStringLiteral(".tmp");
    write(temporary);
    onNotice(); // complete already, so it is in the tree
    EXPECT_THAT(data.takeAdded(), ElementsAre(path(temporary)));
    ASSERT_TRUE(QFile::rename(path(temporary), path(One)));
    onNotice();
    EXPECT_THAT(data.takeRemoved(), ElementsAre(path(temporary)));
    EXPECT_THAT(data.takeAdded(), ElementsAre(path(One)));
    EXPECT_TRUE(isInTree(One));
}

TEST_F(TORVDirectoryWatchDataTest, ReportsEveryKnownFileWhenTheDirectoryGoesAndComesBack)
{
    write(One);
    write(Two);
    start();
    const QString directory = files.path(QString());
    ASSERT_TRUE(QFile::remove(path(One)) && QFile::remove(path(Two)) && QDir().rmdir(directory));
    EXPECT_TRUE(onNotice());
    EXPECT_THAT(data.takeRemoved(), ElementsAre(path(One), path(Two)));
    EXPECT_FALSE(onNotice());
    ASSERT_TRUE(QDir().mkdir(directory));
    write(One);
    EXPECT_TRUE(onLook());
    EXPECT_THAT(data.takeAdded(), ElementsAre(path(One)));
}

TEST_F(TORVDirectoryWatchDataTest, FindsADirectoryThatWasNotThereAtTheStart)
{
    const QString later = files.path(QStringLiteral("later"));
    data.initialize(later);
    EXPECT_FALSE(onLook());
    EXPECT_FALSE(data.isInitialized());
    ASSERT_TRUE(QDir().mkdir(later));
    files.write(QStringLiteral("later/") + One, fields());
    onLook();
    EXPECT_TRUE(data.isInitialized());
    EXPECT_THAT(data.takeAdded(), ElementsAre(later + QLatin1Char('/') + One));
}

TEST_F(TORVDirectoryWatchDataTest, KeepsWhatItKnowsWhileTheDirectoryIsUnreadable)
{
    write(One);
    start();
    const QByteArray directory = files.path(QString()).toLocal8Bit();
    ASSERT_EQ(::chmod(directory.constData(), 0), 0);
    const uid_t user = ::geteuid();
    if (user == 0) {
        ASSERT_EQ(::seteuid(Nobody), 0); // root may read everything
    }
    EXPECT_FALSE(onNotice());
    EXPECT_FALSE(onNotice());
    ASSERT_EQ(::seteuid(user), 0);
    ASSERT_EQ(::chmod(directory.constData(), 0700), 0);
    EXPECT_THAT(data.takeRemoved(), IsEmpty());
    EXPECT_TRUE(isInTree(One));
    EXPECT_EQ(log.lines().filter(QStringLiteral("W: Directory can't be read: ")).size(), 1);
}

TEST_F(TORVDirectoryWatchDataTest, TakesNamesWithBlanksLineEndsAndForeignLetters)
{
    start();
    const QStringList names = {QStringLiteral("A B260714120000.CAPZ"), QStringLiteral("A\nB260714120500.CAPZ"),
                               QString::fromUtf8("ÄÖ雨260714121000.CAPZ")};
    for (const QString& name : names) {
        write(name);
    }
    onNotice();
    EXPECT_EQ(data.takeAdded().size(), 3);
    for (const QString& name : names) {
        EXPECT_TRUE(isInTree(name)) << qUtf8Printable(name);
    }
}

TEST_F(TORVDirectoryWatchDataTest, LooksPastDirectoriesLinksAndHiddenFiles)
{
    write(QStringLiteral(".HAL260714120000.CAPZ"));
    ASSERT_TRUE(QDir().mkdir(path(QStringLiteral("HAL260714121000.CAPZ"))));
    write(One);
    start();
    ASSERT_TRUE(QFile::link(path(One), path(Two)));
    onNotice();
    EXPECT_THAT(data.takeAdded(), IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(TORVDirectoryWatchDataTest, WritesItsStepsToTheDebugLog)
{
    start();
    const LogFile steps(TORVLog::LEVEL_DEBUG);
    write(One);
    onNotice();
    const QStringList lines = steps.lines();
    EXPECT_THAT(lines, testing::Contains(QStringLiteral("D: REFRESH DIRECTORY/NEW OR DELETED ITEMS")));
    EXPECT_THAT(
        lines,
        testing::Contains(
            QStringLiteral("D: 1: directory %1 has changed (1)").arg(QDir(files.path(QString())).absolutePath())));
    EXPECT_THAT(lines, testing::Contains(QStringLiteral("D: ADD: TRYING TO ADD ") + One));
    EXPECT_THAT(lines, testing::Contains(QStringLiteral("D: ADD: ADDED TO DIRECTORY ") + One));
}
