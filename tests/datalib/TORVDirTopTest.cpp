#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"

#include "TreeTest.h"
#include "support/LogFile.h"

#include <QFile>

#include <atomic>
#include <thread>
#include <vector>

namespace
{

using testing::Contains;
using testing::HasSubstr;

const QString One = QStringLiteral("HAL260714120000.CAPZ");
const QString Two = QStringLiteral("HAL260714120500.CAPZ");

using TORVDirTopTest = TreeTest;

QStringList linesWith(const LogFile& log, const QString& part)
{
    return log.lines().filter(part);
}

QStringList all(const TORVDirTop& top)
{
    return top.findLeaves("*", "*", "*", "*")->keys();
}

} // namespace

TEST_F(TORVDirTopTest, NumbersItsResults)
{
    EXPECT_EQ(TORVDirTop::DIR_OK, 0);
    EXPECT_EQ(TORVDirTop::DIR_WRONG_TYPE, 1);
    EXPECT_EQ(TORVDirTop::DIR_NO_DATA, 2);
    EXPECT_EQ(TORVDirTop::DIR_INCOMPLETE, 3);
    EXPECT_EQ(TORVDirTop::DIR_DUPLICATE, 4);
    EXPECT_EQ(TORVDirTop::DIR_INVALID, 5);
}

TEST_F(TORVDirTopTest, HoldsWhatItsDirectoryHoldsOnceMade)
{
    write(One, volume("HALMERA"));
    write("MON260714120000.CAPV", volume("monte  lema", V));
    const TORV3DTop top(path());
    EXPECT_EQ(all(top), (QStringList{"HALMERA/CAPPI/Z/260714120000", "MONTE LEMA/CAPPI/V/260714120000"}));
}

TEST_F(TORVDirTopTest, IsValidWhileItsDirectoryExists)
{
    const TORV3DTop top(path());
    EXPECT_TRUE(top.isValid());
    EXPECT_EQ(top.getPath(), path());
    EXPECT_FALSE(TORV3DTop(files.path("none")).isValid());
}

TEST_F(TORVDirTopTest, IsEmptyWithoutADirectory)
{
    EXPECT_EQ(all(TORV3DTop(files.path("none"))), QStringList());
    EXPECT_EQ(all(TORV3DTop(write(One, volume("HALMERA")))), QStringList());
}

TEST_F(TORVDirTopTest, MakesARelativePathAbsolute)
{
    const TORV3DTop top("none");
    EXPECT_EQ(top.getPath(), QDir::currentPath() + "/none");
}

TEST_F(TORVDirTopTest, ReadsNeitherFoldersNorLinksNorHiddenFiles)
{
    ASSERT_TRUE(QDir(path()).mkdir("HAL260714120100.CAPZ"));
    const QString target = files.write(".HAL260714120200.CAPZ", volume("HALMERA"));
    ASSERT_TRUE(QFile::link(target, files.path("HAL260714120300.CAPZ")));
    EXPECT_EQ(all(TORV3DTop(path())), QStringList());
}

TEST_F(TORVDirTopTest, VolumesAreCappisOfMoreThanOneLevel)
{
    const TORV3DTop top(path());
    write("a", product("HALMERA", CAPPI, 2, Z, 0));
    write("b", product("HALMERA", CAPPI, 1, Z, 0));
    write("c", product("HALMERA", MAX, 2, Z, 0));
    write("d", product("HALMERA", UNKNOWN, 2, Z, 0));
    EXPECT_EQ(top.filter(TORVFile::openChecked(files.path("a"))), true);
    EXPECT_EQ(top.filter(TORVFile::openChecked(files.path("b"))), false);
    EXPECT_EQ(top.filter(TORVFile::openChecked(files.path("c"))), false);
    EXPECT_EQ(top.filter(TORVFile::openChecked(files.path("d"))), false);
}

TEST_F(TORVDirTopTest, FlatProductsAreKnownOnesOfOneLevel)
{
    const TORV2DTop top(path());
    write("a", product("HALMERA", CAPPI, 2, Z, 0));
    write("b", product("HALMERA", CAPPI, 1, Z, 0));
    write("c", product("HALMERA", MAX, 2, Z, 0));
    write("d", product("HALMERA", MAX, 1, Z, 0));
    write("e", product("HALMERA", UNKNOWN, 1, Z, 0));
    EXPECT_EQ(top.filter(TORVFile::openChecked(files.path("a"))), false);
    EXPECT_EQ(top.filter(TORVFile::openChecked(files.path("b"))), true);
    EXPECT_EQ(top.filter(TORVFile::openChecked(files.path("c"))), false);
    EXPECT_EQ(top.filter(TORVFile::openChecked(files.path("d"))), true);
    EXPECT_EQ(top.filter(TORVFile::openChecked(files.path("e"))), false);
}

TEST_F(TORVDirTopTest, ConstructTakesOnlyWhatItsFilterWants)
{
    write("HAL260714120000.CAP", volume("HALMERA"));
    write("HAL260714120000.MAX", flat("HALMERA", MAX));
    write("HAL260714120000.XXX", flat("HALMERA", UNKNOWN));
    write("HAL260714120000.PPI", product("HALMERA", PPI, 3, Z, 0)); // fits neither
    EXPECT_EQ(all(TORV3DTop(path())), QStringList{"HALMERA/CAPPI/Z/260714120000"});
    EXPECT_EQ(all(TORV2DTop(path())), QStringList{"HALMERA/MAX/Z/260714120000"});
}

TEST_F(TORVDirTopTest, ConstructPassesOverADuplicateWithoutAWord)
{
    write("HAL260714120000.A", volume("HALMERA"));
    write("HAL260714120000.B", volume("HALMERA"));
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const TORV3DTop top(path());
    EXPECT_EQ(all(top), QStringList{"HALMERA/CAPPI/Z/260714120000"});
    EXPECT_EQ(linesWith(log, "DUPLICATE"), QStringList());
    EXPECT_TRUE(top.findLeaf("HAL260714120000.A"));
    EXPECT_FALSE(top.findLeaf("HAL260714120000.B"));
}

TEST_F(TORVDirTopTest, ConstructSaysNothingOfFilesThatItRefuses)
{
    write(One, flat("HALMERA", MAX));
    files.writeTruncated(Two, volume("HALMERA"), 650);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const TORV3DTop top(path());
    EXPECT_EQ(linesWith(log, "NOT ADDED"), QStringList());
}

TEST_F(TORVDirTopTest, ConstructRefusesAHeaderThatCannotBeMeantWithOneWarning)
{
    TORVProductFields fields = volume("HALMERA");
    fields.projectionType = 2;
    write(One, fields);
    write(Two, volume("HALMERA"));
    const LogFile log(TORVLog::LEVEL_WARNING);
    const TORV3DTop top(path());
    EXPECT_EQ(all(top), QStringList{"HALMERA/CAPPI/Z/260714120500"});
    EXPECT_EQ(log.lines(), QStringList{"W: Invalid product file, projection type is unknown: " + path() + '/' + One});
}

TEST_F(TORVDirTopTest, ConstructRemembersFilesThatAreStillGrowing)
{
    files.writeTruncated(One, volume("HALMERA"), 650);
    files.writeBytes(Two, {});
    write("HAL260714121000.CAPZ", volume("HALMERA"));
    files.writeGarbage("garbage", 1000);
    TORV3DTop top(path());
    EXPECT_TRUE(top.isUnfinished(One));
    EXPECT_TRUE(top.isUnfinished(Two));
    EXPECT_FALSE(top.isUnfinished("HAL260714121000.CAPZ"));
    EXPECT_FALSE(top.isUnfinished("garbage"));
    write(One, volume("HALMERA"));
    top.refresh();
    EXPECT_FALSE(top.isUnfinished(One));
    EXPECT_TRUE(top.isUnfinished(Two));
}

TEST_F(TORVDirTopTest, RefreshForgetsWhatHasGoneAndFindsWhatHasCome)
{
    write(One, volume("HALMERA"));
    TORV3DTop top(path());
    ASSERT_TRUE(QFile::remove(files.path(One)));
    write(Two, volume("HALMERA"));
    top.refresh();
    EXPECT_EQ(all(top), QStringList{"HALMERA/CAPPI/Z/260714120500"});
    EXPECT_FALSE(top.findLeaf(One));
    EXPECT_TRUE(top.findLeaf(Two));
}

TEST_F(TORVDirTopTest, AddsAFileAndSaysWhere)
{
    TORV3DTop top(path());
    write(One, volume("HALMERA"));
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_EQ(top.addFile(One), TORVDirTop::DIR_OK);
    EXPECT_EQ(log.lines(), QStringList{"D: Adding to directory file HALMERA.CAPPI.Z.260714120000"});
    const TORVFileLeaf::Ptr leaf = top.findLeaf("HALMERA", "CAPPI", "Z", "260714120000");
    ASSERT_TRUE(leaf);
    EXPECT_EQ(leaf->getPath(), path() + '/' + One);
}

TEST_F(TORVDirTopTest, AddsByAnAbsolutePathToo)
{
    TORV3DTop top(path());
    EXPECT_EQ(top.addFile(write(One, volume("HALMERA"))), TORVDirTop::DIR_OK);
}

TEST_F(TORVDirTopTest, AddsANameThatLooksLikeAResource)
{
    ASSERT_TRUE(QFile::rename(write(One, volume("HALMERA")), path() + "/:resource"));
    TORV3DTop top(path());
    EXPECT_TRUE(top.findLeaf(":resource"));
    EXPECT_EQ(top.removeFile(":resource"), TORVDirTop::DIR_OK);
    EXPECT_EQ(top.addFile(":resource"), TORVDirTop::DIR_OK);
}

TEST_F(TORVDirTopTest, RefusesAnIncompleteFile)
{
    TORV3DTop top(path());
    const QString file = files.writeTruncated(One, volume("HALMERA"), 650);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_EQ(top.addFile(One), TORVDirTop::DIR_INCOMPLETE);
    EXPECT_THAT(log.lines(), Contains("D: NOT ADDED: INCOMPLETE " + file));
}

TEST_F(TORVDirTopTest, RefusesAnEmptyFile)
{
    TORV3DTop top(path());
    const QString file = files.writeBytes(One, {});
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_EQ(top.addFile(One), TORVDirTop::DIR_NO_DATA);
    EXPECT_THAT(log.lines(), Contains("D: NOT ADDED: NO DATA " + file));
}

TEST_F(TORVDirTopTest, RefusesAFileThatIsNoProduct)
{
    TORV3DTop top(path());
    const QString file = files.writeGarbage(One, 1000);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_EQ(top.addFile(One), TORVDirTop::DIR_INVALID);
    EXPECT_THAT(log.lines(), Contains("D: NOT ADDED: INVALID " + file));
}

TEST_F(TORVDirTopTest, RefusesAFileThatIsNotThere)
{
    TORV3DTop top(path());
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_EQ(top.addFile(One), TORVDirTop::DIR_INVALID);
    EXPECT_THAT(log.lines(), Contains("D: NOT ADDED: INVALID " + path() + '/' + One));
}

TEST_F(TORVDirTopTest, RefusesAHeaderThatCannotBeMeantWithOneWarning)
{
    TORV3DTop top(path());
    TORVProductFields fields = volume("HALMERA");
    fields.xScale = 0;
    const QString file = write(One, fields);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_EQ(top.addFile(One), TORVDirTop::DIR_INVALID);
    EXPECT_EQ(log.lines(), (QStringList{"W: Invalid product file, grid scale is not above 0: " + file,
                                        "D: NOT ADDED: INVALID " + file}));
}

TEST_F(TORVDirTopTest, RefusesAFileOfTheOtherKind)
{
    TORV3DTop top(path());
    const QString file = write(One, flat("HALMERA", MAX));
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_EQ(top.addFile(One), TORVDirTop::DIR_WRONG_TYPE);
    EXPECT_EQ(log.lines(), QStringList{"D: NOT ADDED: DATA FILE OF WRONG TYPE " + file});
}

TEST_F(TORVDirTopTest, NeverLetsAnUnknownProductIntoTheFlatTree)
{
    TORV2DTop top(path());
    write(One, flat("HALMERA", UNKNOWN));
    EXPECT_EQ(top.addFile(One), TORVDirTop::DIR_WRONG_TYPE);
    EXPECT_EQ(top.listSites(), QStringList());
}

TEST_F(TORVDirTopTest, RefusesASecondFileOfTheSameFourKeys)
{
    write("HAL260714120000.A", volume("HALMERA"));
    TORV3DTop top(path());
    const QString second = write("XYZ260714120000.B", volume("HALMERA", Z, 60)); // another time of data
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_EQ(top.addFile("XYZ260714120000.B"), TORVDirTop::DIR_DUPLICATE);
    EXPECT_EQ(log.lines(), QStringList{"D: NOT ADDED: DATA FILE IS DUPLICATE " + second});
    EXPECT_EQ(top.findLeaf("HALMERA", "CAPPI", "Z", "260714120000")->getFile()->getName(), "HAL260714120000.A");
}

TEST_F(TORVDirTopTest, TakesTheDuplicateOnceTheFirstHasGone)
{
    write("HAL260714120000.A", volume("HALMERA"));
    TORV3DTop top(path());
    write("HAL260714120000.B", volume("HALMERA"));
    ASSERT_EQ(top.removeFile("HAL260714120000.A"), TORVDirTop::DIR_OK);
    EXPECT_EQ(top.addFile("HAL260714120000.B"), TORVDirTop::DIR_OK);
    EXPECT_TRUE(top.findLeaf("HAL260714120000.B"));
    EXPECT_FALSE(top.findLeaf("HAL260714120000.A"));
}

TEST_F(TORVDirTopTest, KeepsFilesOfAnUnknownQuantityUnderAnEmptyName)
{
    TORV3DTop top(path());
    write(One, volume("HALMERA", NONE));
    EXPECT_EQ(top.addFile(One), TORVDirTop::DIR_OK);
    EXPECT_EQ(top.addFile(One), TORVDirTop::DIR_DUPLICATE);
    EXPECT_EQ(all(top), QStringList{"HALMERA/CAPPI//260714120000"});
    EXPECT_TRUE(top.findLeaf("HALMERA", "CAPPI", "", "260714120000"));
    EXPECT_TRUE(top.findLeaf("HALMERA", "CAPPI", QString(), "260714120000"));
}

TEST_F(TORVDirTopTest, RemovesAFileAndTheBranchesThatItEmpties)
{
    write(One, volume("HALMERA"));
    write("MON260714120000.CAPZ", volume("MONTE LEMA"));
    TORV3DTop top(path());
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_EQ(top.removeFile(One), TORVDirTop::DIR_OK);
    EXPECT_EQ(log.lines(), QStringList{"D: REMOVING " + One});
    EXPECT_EQ(top.listSites(), QStringList{"MONTE LEMA"});
    EXPECT_FALSE(top.findLeaf(One));
}

TEST_F(TORVDirTopTest, RemovesTheLastFile)
{
    write(One, volume("HALMERA"));
    TORV3DTop top(path());
    EXPECT_EQ(top.removeFile(One), TORVDirTop::DIR_OK);
    EXPECT_EQ(top.listSites(), QStringList());
    EXPECT_EQ(top.removeFile(One), TORVDirTop::DIR_INVALID);
}

TEST_F(TORVDirTopTest, SaysWhenThereIsNothingToRemove)
{
    TORV3DTop top(path());
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_EQ(top.removeFile(One), TORVDirTop::DIR_INVALID);
    EXPECT_EQ(log.lines(), QStringList{"D: NOTHING TO REMOVE " + One});
}

TEST_F(TORVDirTopTest, RemovedLeafStaysUsable)
{
    write(One, volume("HALMERA"));
    TORV3DTop top(path());
    const TORVFileLeaf::Ptr leaf = top.findLeaf(One);
    top.removeFile(One);
    EXPECT_TRUE(leaf->isValid());
    EXPECT_EQ(leaf->getSite(), "HALMERA");
    EXPECT_EQ(leaf->getFile()->getXPoints(), 4);
}

TEST_F(TORVDirTopTest, LeafOutlivesTheTop)
{
    write(One, volume("HALMERA"));
    TORVFileLeaf::Ptr leaf;
    {
        const TORV3DTop top(path());
        leaf = top.findLeaf(One);
    }
    EXPECT_EQ(leaf->getParent(), nullptr);
    EXPECT_EQ(leaf->getTime(), "260714120000");
}

TEST_F(TORVDirTopTest, FindsALeafByItsFourNamesExactly)
{
    write(One, volume("HALMERA"));
    const TORV3DTop top(path());
    EXPECT_TRUE(top.findLeaf("HALMERA", "CAPPI", "Z", "260714120000"));
    EXPECT_FALSE(top.findLeaf("HALMERE", "CAPPI", "Z", "260714120000"));
    EXPECT_FALSE(top.findLeaf("HALMERA", "MAX", "Z", "260714120000"));
    EXPECT_FALSE(top.findLeaf("HALMERA", "CAPPI", "z", "260714120000"));
    EXPECT_FALSE(top.findLeaf("HALMERA", "CAPPI", "Z", "*"));
}

TEST_F(TORVDirTopTest, FindsALeafByTheNameOfItsFileExactly)
{
    write(One, volume("HALMERA"));
    write(Two, volume("HALMERA"));
    const TORV3DTop top(path());
    EXPECT_EQ(top.findLeaf(Two)->getTime(), "260714120500");
    EXPECT_FALSE(top.findLeaf(Two.toLower()));
    EXPECT_FALSE(top.findLeaf("260714120500"));
    EXPECT_FALSE(top.findLeaf(files.path(Two)));
}

TEST_F(TORVDirTopTest, FindsTheFirstInTreeOrderOfLeavesWithOneFileName)
{
    TORV3DTop top(path());
    for (const char* const site : {"MONTE LEMA", "ALPHA", "HALMERA"}) {
        write(One, volume(site)); // the file is replaced under its name
        ASSERT_EQ(top.addFile(One), TORVDirTop::DIR_OK);
    }
    for (const char* const site : {"ALPHA", "HALMERA", "MONTE LEMA"}) {
        ASSERT_TRUE(top.findLeaf(One));
        EXPECT_EQ(top.findLeaf(One)->getSite(), site);
        top.removeFile(One);
    }
    EXPECT_FALSE(top.findLeaf(One));
}

TEST_F(TORVDirTopTest, FindsNoFileOfABranchThatWasTakenOut)
{
    write(One, volume("HALMERA"));
    write("MON260714120000.CAPZ", volume("MONTE LEMA"));
    TORV3DTop top(path());
    top.removeChild("HALMERA");
    EXPECT_FALSE(top.findLeaf(One));
    EXPECT_TRUE(top.findLeaf("MON260714120000.CAPZ"));
}

TEST_F(TORVDirTopTest, PlacesAFileOfAnyKindOnRequest)
{
    TORV3DTop top(path());
    top.addToAllLevels(TORVFile::openChecked(write(One, flat("HALMERA", MAX))));
    EXPECT_EQ(all(top), QStringList{"HALMERA/MAX/Z/260714120000"});
    EXPECT_TRUE(top.findLeaf(One));
}

using TORVDirTopDeathTest = TORVDirTopTest;

TEST_F(TORVDirTopDeathTest, StopsWhenAskedToPlaceNothing)
{
    TORV3DTop top(path());
    EXPECT_DEATH(top.addToAllLevels({}), "Assertion `file' failed");
}

// The readers see the tree in states between 0 and all of the files, and every leaf that they get is whole.
TEST_F(TORVDirTopTest, AnswersReadersWhileAWriterWorks)
{
    constexpr int FileCount = 20;
    constexpr int Rounds = 5;
    QStringList names;
    for (int i = 0; i < FileCount; ++i) {
        names << QStringLiteral("HAL2607141200%1.CAPZ").arg(i, 2, 10, QLatin1Char('0'));
        write(names.back(), volume(i % 2 == 0 ? "HALMERA" : "MONTE LEMA", i % 4 < 2 ? Z : V, i));
    }
    TORV3DTop top(path());
    std::atomic<bool> isDone{false};
    std::atomic<int> badAnswers{0};
    const auto read = [&] {
        while (!isDone) {
            const TORVDirTop::LeavesPtr leaves = top.findLeaves("*", "*", "*", "*");
            for (const TORVDirectory::Ptr& leaf : std::as_const(*leaves)) {
                badAnswers += leaf->isValid() ? 0 : 1;
            }
            const TORVFileLeaf::Ptr leaf = top.findLeaf(names[3]);
            badAnswers += leaf && leaf->getSite() != "MONTE LEMA" ? 1 : 0;
            badAnswers += leaves->size() > FileCount || top.listSites().size() > 2 ? 1 : 0;
            badAnswers += top.listProductsForSite("HALMERA", true).size() > 2 ? 1 : 0;
            top.findClosestMatch(*top.findLeaves("halmera", "*", "?", at(10), 8), at(9));
        }
    };
    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back(read);
    }
    for (int round = 0; round < Rounds; ++round) {
        for (const QString& name : std::as_const(names)) {
            EXPECT_EQ(top.removeFile(name), TORVDirTop::DIR_OK);
        }
        for (const QString& name : std::as_const(names)) {
            EXPECT_EQ(top.addFile(name), TORVDirTop::DIR_OK);
        }
        top.refresh();
    }
    isDone = true;
    for (std::thread& reader : readers) {
        reader.join();
    }
    EXPECT_EQ(badAnswers, 0);
    EXPECT_EQ(all(top).size(), FileCount);
}
