#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"

#include "TreeTest.h"
#include "support/LogFile.h"

#include <limits>

namespace
{

// Files are named by their key of time; what they hold is told beside it.
class TORVDirTopSearchTest : public TreeTest
{
protected:
    void add(const QString& key, const TORVProductFields& fields) const
    {
        write(QStringLiteral("F%1").arg(++_count, 2, 10, QLatin1Char('0')) + key, fields);
    }

    // A product whose data is that many seconds old now, or in the future.
    static TORVProductFields aged(qint64 seconds)
    {
        TORVProductFields fields = volume("HALMERA");
        setTime(fields, QDateTime::currentDateTimeUtc().addSecs(-seconds));
        return fields;
    }

    static QString timeOf(const TORVFileLeaf::Ptr& leaf) { return leaf ? leaf->getTime() : QStringLiteral("none"); }

private:
    mutable int _count = 0;
};

} // namespace

TEST_F(TORVDirTopSearchTest, FindsLeavesByPatternsInTheOrderOfTheirKeys)
{
    add("260714120500", volume("HALMERA", Z));
    add("260714120000", volume("HALMERA", Z));
    add("260714120000", volume("HALMERA", V));
    add("260714120000", volume("ALPHA", Z));
    const TORV3DTop top(path());
    EXPECT_EQ(keys(top.findLeaves("*", "*", "*", "*")),
              (QStringList{"ALPHA/CAPPI/Z/260714120000", "HALMERA/CAPPI/V/260714120000", "HALMERA/CAPPI/Z/260714120000",
                           "HALMERA/CAPPI/Z/260714120500"}));
    EXPECT_EQ(keys(top.findLeaves("HAL*", "*", "Z", "*1205??")), QStringList{"HALMERA/CAPPI/Z/260714120500"});
    EXPECT_EQ(keys(top.findLeaves("*", "MAX", "*", "*")), QStringList());
}

TEST_F(TORVDirTopSearchTest, MatchesPatternsWithoutRegardToCase)
{
    add("260714120000", volume("HALMERA", Z));
    const TORV3DTop top(path());
    EXPECT_EQ(keys(top.findLeaves("halmera", "cappi", "z", "260714120000")),
              QStringList{"HALMERA/CAPPI/Z/260714120000"});
}

TEST_F(TORVDirTopSearchTest, AllPatternsFindOddSites)
{
    for (const char* const site : {"A/B", "X[1]", "X1", "WHO?", "A.B"}) {
        add("260714120000", volume(site));
    }
    const TORV3DTop top(path());
    EXPECT_EQ(top.findLeaves("*", "*", "*", "*")->size(), 5);
    EXPECT_EQ(keys(top.findLeaves("A*", "*", "*", "*")),
              (QStringList{"A.B/CAPPI/Z/260714120000", "A/B/CAPPI/Z/260714120000"}));
    EXPECT_EQ(keys(top.findLeaves("X[1]", "*", "*", "*")), QStringList{"X1/CAPPI/Z/260714120000"});
}

// '/' sorts behind ' ', so the key "A B/..." comes before "A/...", though "A" comes before "A B" in the tree.
TEST_F(TORVDirTopSearchTest, OrdersByTheTextOfTheKeyNotByTheTree)
{
    add("260714120000", volume("A"));
    add("260714120000", volume("A B"));
    const TORV3DTop top(path());
    EXPECT_EQ(top.listSites(), (QStringList{"A", "A B"}));
    EXPECT_EQ(keys(top.findLeaves("*", "*", "*", "*")),
              (QStringList{"A B/CAPPI/Z/260714120000", "A/CAPPI/Z/260714120000"}));
}

TEST_F(TORVDirTopSearchTest, FindsAnUnknownQuantityByAnEmptyPattern)
{
    add("260714120000", volume("HALMERA", NONE));
    add("260714120000", volume("HALMERA", Z));
    const TORV3DTop top(path());
    EXPECT_EQ(keys(top.findLeaves("*", "*", "", "*")), QStringList{"HALMERA/CAPPI//260714120000"});
    EXPECT_EQ(keys(top.findLeaves("*", "*", QString(), "*")), QStringList{"HALMERA/CAPPI//260714120000"});
}

TEST_F(TORVDirTopSearchTest, AnswersStayAsTheyWereWhenTheTreeChanges)
{
    add("260714120000", volume("HALMERA"));
    TORV3DTop top(path());
    const TORVDirTop::LeavesPtr leaves = top.findLeaves("*", "*", "*", "*");
    top.removeFile("F01260714120000");
    EXPECT_EQ(leaves->size(), 1);
    EXPECT_TRUE(leaves->first()->isValid());
}

TEST_F(TORVDirTopSearchTest, WindowHoldsBothOfItsEnds)
{
    for (int seconds = -3; seconds <= 3; ++seconds) {
        add(QStringLiteral("26071412000%1").arg(seconds + 3), volume("HALMERA", Z, seconds));
    }
    const TORV3DTop top(path());
    // 4 seconds wide: 2 on each side.
    EXPECT_EQ(
        keys(top.findLeaves("*", "*", "*", at(0), 4)),
        (QStringList{"HALMERA/CAPPI/Z/260714120001", "HALMERA/CAPPI/Z/260714120002", "HALMERA/CAPPI/Z/260714120003",
                     "HALMERA/CAPPI/Z/260714120004", "HALMERA/CAPPI/Z/260714120005"}));
}

TEST_F(TORVDirTopSearchTest, HalvesAnOddWindowDownwards)
{
    for (int seconds = -2; seconds <= 2; ++seconds) {
        add(QStringLiteral("26071412000%1").arg(seconds + 2), volume("HALMERA", Z, seconds));
    }
    const TORV3DTop top(path());
    EXPECT_EQ(top.findLeaves("*", "*", "*", at(0), 3)->size(), 3); // as with 2: a second before to a second after
}

TEST_F(TORVDirTopSearchTest, WindowsOfNoneAndOneHoldJustThatSecond)
{
    for (int seconds = -1; seconds <= 1; ++seconds) {
        add(QStringLiteral("26071412000%1").arg(seconds + 1), volume("HALMERA", Z, seconds));
    }
    const TORV3DTop top(path());
    const QStringList middle = {"HALMERA/CAPPI/Z/260714120001"};
    EXPECT_EQ(keys(top.findLeaves("*", "*", "*", at(0), 1)), middle);
    EXPECT_EQ(keys(top.findLeaves("*", "*", "*", at(0), 0)), middle);
}

TEST_F(TORVDirTopSearchTest, WindowOfNegativeWidthHoldsNothing)
{
    add("260714120000", volume("HALMERA"));
    EXPECT_EQ(keys(TORV3DTop(path()).findLeaves("*", "*", "*", at(0), -2)), QStringList());
}

TEST_F(TORVDirTopSearchTest, WidestWindowOverflowsNothing)
{
    add("260714120000", volume("HALMERA"));
    EXPECT_EQ(TORV3DTop(path()).findLeaves("*", "*", "*", at(0), std::numeric_limits<int>::max())->size(), 1);
}

TEST_F(TORVDirTopSearchTest, WindowGoesByTheTimeOfTheDataNotByTheName)
{
    add("260714120000", volume("HALMERA", Z, 5));
    add("991231235959", volume("HALMERA", Z, 5)); // two leaves of one time
    add("260714120005", volume("HALMERA", Z, 500));
    const TORV3DTop top(path());
    EXPECT_EQ(keys(top.findLeaves("*", "*", "*", at(5), 0)),
              (QStringList{"HALMERA/CAPPI/Z/260714120000", "HALMERA/CAPPI/Z/991231235959"}));
}

TEST_F(TORVDirTopSearchTest, WindowTakesATimeInAnyZone)
{
    add("260714120000", volume("HALMERA"));
    const QDateTime time = at(0).toOffsetFromUtc(7200);
    EXPECT_EQ(TORV3DTop(path()).findLeaves("*", "*", "*", time, 0)->size(), 1);
}

TEST_F(TORVDirTopSearchTest, LatestLeavesAreYoungerThanTheWindow)
{
    add("1", aged(100));
    add("2", aged(5000));
    const TORV3DTop top(path());
    EXPECT_EQ(keys(top.findLatestLeaves("*", "*", "*", 3000)), QStringList{"HALMERA/CAPPI/Z/1"});
    EXPECT_EQ(keys(top.findLatestLeaves("*", "*", "*", 100)), QStringList()); // by now it is 100 s old or older
    EXPECT_EQ(top.findLatestLeaves("*", "*", "*", 100000)->size(), 2);
}

TEST_F(TORVDirTopSearchTest, LatestLeavesHoldNoneFromTheFuture)
{
    add("1", aged(-3600));
    EXPECT_EQ(keys(TORV3DTop(path()).findLatestLeaves("*", "*", "*", 100000)), QStringList());
}

TEST_F(TORVDirTopSearchTest, LatestLeavesWithoutAWindowAreAll)
{
    add("1", aged(-3600));
    add("2", aged(5000));
    add("3", volume("HALMERA"));
    EXPECT_EQ(TORV3DTop(path()).findLatestLeaves("*", "*", "*", 0)->size(), 3);
}

TEST_F(TORVDirTopSearchTest, LatestLeavesAreThoseOfThePatterns)
{
    add("1", volume("HALMERA", Z));
    add("1", volume("HALMERA", V));
    add("1", volume("ALPHA", Z));
    const TORV3DTop top(path());
    EXPECT_EQ(keys(top.findLatestLeaves("halmera", "*", "z", 0)), QStringList{"HALMERA/CAPPI/Z/1"});
}

TEST_F(TORVDirTopSearchTest, LatestLeavesLogTheWindow)
{
    const TORV3DTop top(path());
    const LogFile log(TORVLog::LEVEL_DEBUG);
    top.findLatestLeaves("*", "*", "*", 600);
    EXPECT_EQ(log.lines(), QStringList{"D: timeWindow=600"});
}

TEST_F(TORVDirTopSearchTest, ClosestMatchOfNothingIsNull)
{
    EXPECT_FALSE(TORVDirTop::findClosestMatch({}, at(0)));
}

TEST_F(TORVDirTopSearchTest, ClosestMatchOfOneIsThatOneHoweverFar)
{
    add("260714120000", volume("HALMERA"));
    const TORVDirTop::LeavesPtr leaves = TORV3DTop(path()).findLeaves("*", "*", "*", "*");
    EXPECT_EQ(timeOf(TORVDirTop::findClosestMatch(*leaves, at(1000000))), "260714120000");
}

TEST_F(TORVDirTopSearchTest, ClosestMatchLooksBothWays)
{
    add("1", volume("HALMERA", Z, 0));
    add("2", volume("HALMERA", Z, 300));
    add("3", volume("HALMERA", Z, 600));
    const TORVDirTop::LeavesPtr leaves = TORV3DTop(path()).findLeaves("*", "*", "*", "*");
    EXPECT_EQ(timeOf(TORVDirTop::findClosestMatch(*leaves, at(149))), "1");
    EXPECT_EQ(timeOf(TORVDirTop::findClosestMatch(*leaves, at(151))), "2");
    EXPECT_EQ(timeOf(TORVDirTop::findClosestMatch(*leaves, at(900))), "3");
}

TEST_F(TORVDirTopSearchTest, ClosestMatchOfATieIsTheFirstInKeyOrder)
{
    add("1", volume("HALMERA", Z, 300));
    add("2", volume("HALMERA", Z, 100));
    const TORVDirTop::LeavesPtr leaves = TORV3DTop(path()).findLeaves("*", "*", "*", "*");
    EXPECT_EQ(timeOf(TORVDirTop::findClosestMatch(*leaves, at(200))), "1");
}

TEST_F(TORVDirTopSearchTest, ClosestMatchOfATieBetweenConfigurationsIsTheFirstOfThem)
{
    add("1", volume("HALMERA", Z));
    add("2", volume("HALMERA", V));
    const TORVDirTop::LeavesPtr leaves = TORV3DTop(path()).findLeaves("*", "*", "*", "*");
    EXPECT_EQ(TORVDirTop::findClosestMatch(*leaves, at(0))->getConfiguration(), "V");
}

TEST_F(TORVDirTopSearchTest, FlatFileForAVolumeIsTheClosestOfThatProductAndSite)
{
    add("VOLUME", volume("HALMERA", Z, 0));
    add("FAR", flat("HALMERA", MAX, Z, 60));
    add("CLOSE", flat("HALMERA", MAX, V, -30)); // any quantity will do
    add("PPI", flat("HALMERA", PPI, Z, 0));
    add("OTHER", flat("ALPHA", MAX, Z, 0));
    const TORV3DTop volumes(path());
    const TORV2DTop flats(path());
    const TORVFileLeaf::Ptr file3d = volumes.findLeaf("HALMERA", "CAPPI", "Z", "VOLUME");
    ASSERT_TRUE(file3d);
    EXPECT_EQ(timeOf(flats.findBestMatching2DFile(file3d, "MAX", 200)), "CLOSE");
    EXPECT_EQ(timeOf(flats.findBestMatching2DFile(file3d, "MAX", 40)), "none");
    EXPECT_EQ(timeOf(flats.findBestMatching2DFile(file3d, "VIL", 200)), "none");
}

TEST_F(TORVDirTopSearchTest, VolumeForAFileIsTheClosestOfThatConfiguration)
{
    add("HERE", volume("HALMERA", Z, 0));
    add("FAR", volume("HALMERA", V, 60));
    add("CLOSE", volume("HALMERA", V, -30));
    add("OTHER", volume("ALPHA", V, 0));
    const TORV3DTop top(path());
    const TORVFileLeaf::Ptr file = top.findLeaf("HALMERA", "CAPPI", "Z", "HERE");
    ASSERT_TRUE(file);
    EXPECT_EQ(timeOf(top.findBestMatching3DFile(file, "V", 200)), "CLOSE");
    EXPECT_EQ(timeOf(top.findBestMatching3DFile(file, "*", 200)), "HERE");
    EXPECT_EQ(timeOf(top.findBestMatching3DFile(file, "W", 200)), "none");
}

TEST_F(TORVDirTopSearchTest, VolumeForAFlatFileIsACappi)
{
    add("FLAT", flat("HALMERA", MAX, Z, 0));
    add("VOLUME", volume("HALMERA", Z, 20));
    const TORV3DTop volumes(path());
    const TORVFileLeaf::Ptr file2d = TORV2DTop(path()).findLeaf("HALMERA", "MAX", "Z", "FLAT");
    ASSERT_TRUE(file2d);
    EXPECT_EQ(timeOf(volumes.find3DFileMatching2DFile(file2d, "Z", 40)), "VOLUME");
    EXPECT_EQ(timeOf(volumes.find3DFileMatching2DFile(file2d, "Z", 39)), "none");
    EXPECT_EQ(timeOf(volumes.findBestMatching3DFile(file2d, "Z", 40)), "none"); // asks for the product MAX
}

TEST_F(TORVDirTopSearchTest, MatchesOddSitesOfLeavesByTheirVeryName)
{
    add("FLAT", flat("X[1]", MAX));
    add("FLAT", flat("X1", MAX));
    add("VOLUME", volume("X[1]"));
    add("VOLUME", volume("X1"));
    const TORV3DTop volumes(path());
    const TORV2DTop flats(path());
    const TORVFileLeaf::Ptr file3d = volumes.findLeaf("X[1]", "CAPPI", "Z", "VOLUME");
    const TORVFileLeaf::Ptr file2d = flats.findLeaf("X[1]", "MAX", "Z", "FLAT");
    ASSERT_TRUE(file3d && file2d);
    EXPECT_EQ(flats.findBestMatching2DFile(file3d, "MAX", 0)->getSite(), "X[1]");
    EXPECT_EQ(volumes.findBestMatching3DFile(file3d, "Z", 0)->getSite(), "X[1]");
    EXPECT_EQ(volumes.find3DFileMatching2DFile(file2d, "Z", 0)->getSite(), "X[1]");
    EXPECT_EQ(flats.findAllMatchingProducts(file3d, 0, false), QStringList{"MAX"});
    EXPECT_EQ(flats.listProductsForSite("X[1]", false), QStringList{"MAX"});
}

TEST_F(TORVDirTopSearchTest, DoesNotTakeAnotherSiteForAPattern)
{
    add("1", flat("A?", PPI));
    add("1", flat("AB", MAX));
    const TORV2DTop top(path());
    EXPECT_EQ(top.listProductsForSite("A?", false), QStringList{"PPI"});
}

TEST_F(TORVDirTopSearchTest, ListsEveryMatchingProductOnce)
{
    add("1", volume("HALMERA"));
    add("1", flat("HALMERA", PPI, Z, 5));
    add("2", flat("HALMERA", PPI, Z, -5));
    add("1", flat("HALMERA", PPI, V, 0));
    add("1", flat("HALMERA", MAX, Z, 5));
    add("1", flat("HALMERA", CAPPI, Z, 6)); // outside
    add("1", flat("ALPHA", CAPPI, Z, 0));
    const TORV2DTop flats(path());
    const TORVFileLeaf::Ptr leaf = TORV3DTop(path()).findLeaf("HALMERA", "CAPPI", "Z", "1");
    ASSERT_TRUE(leaf);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_EQ(flats.findAllMatchingProducts(leaf, 10, false), (QStringList{"MAX", "PPI"}));
    EXPECT_EQ(log.lines(), (QStringList{"D:     New product: MAX", "D:     New product: PPI"}));
    EXPECT_EQ(flats.findAllMatchingProducts(leaf, 10, true), (QStringList{"MAX - Z", "PPI - V", "PPI - Z"}));
}

TEST_F(TORVDirTopSearchTest, ListsSites)
{
    add("1", volume("HALMERA"));
    add("1", volume("ALPHA"));
    const TORV3DTop top(path());
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_EQ(top.listSites(), (QStringList{"ALPHA", "HALMERA"}));
    EXPECT_EQ(log.lines(), (QStringList{"D: Available sites:", "D:  - ALPHA", "D:  - HALMERA"}));
}

TEST_F(TORVDirTopSearchTest, SaysThatThereAreNoSites)
{
    const TORV3DTop top(path());
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_EQ(top.listSites(), QStringList());
    EXPECT_EQ(log.lines(), (QStringList{"D: Available sites:", "D:  - (no sites found)"}));
}

TEST_F(TORVDirTopSearchTest, ListsProductsOfASite)
{
    add("1", flat("HALMERA", PPI, Z));
    add("2", flat("HALMERA", PPI, Z));
    add("1", flat("HALMERA", PPI, V));
    add("1", flat("HALMERA", MAX, NONE));
    add("1", flat("ALPHA", CAPPI, Z));
    const TORV2DTop top(path());
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_EQ(top.listProductsForSite("HALMERA", false), (QStringList{"MAX", "PPI"}));
    EXPECT_EQ(log.lines(), (QStringList{"D: Products for site=HALMERA:", "D:  - MAX", "D:  - PPI"}));
    EXPECT_EQ(top.listProductsForSite("halmera", true), (QStringList{"MAX - ", "PPI - V", "PPI - Z"}));
}

TEST_F(TORVDirTopSearchTest, ListsProductsOfAllSitesInTheOrderOfKeys)
{
    add("1", flat("A", MAX));
    add("1", flat("A B", PPI)); // "A B/" comes before "A/"
    add("2", flat("A B", MAX, V));
    EXPECT_EQ(TORV2DTop(path()).listProductsForSite("*", true), (QStringList{"MAX - V", "PPI - Z", "MAX - Z"}));
}

TEST_F(TORVDirTopSearchTest, SaysThatThereAreNoProducts)
{
    const TORV2DTop top(path());
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_EQ(top.listProductsForSite("HALMERA", false), QStringList());
    EXPECT_EQ(log.lines(), (QStringList{"D: Products for site=HALMERA:", "D:  - (no products found)"}));
}
