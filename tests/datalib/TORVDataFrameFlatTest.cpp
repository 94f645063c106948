#include "datalib/TORVDataFrame.h"

#include "FrameTest.h"
#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"

namespace
{

using TORVDataFrameFlatTest = FrameTest;

} // namespace

TEST_F(TORVDataFrameFlatTest, DoesWithoutADirectoryOfFlatProducts)
{
    add3d(Noon, volume("HALMERA"));
    store = boost::make_shared<TORVDataStore>(nullptr);
    store->setDirectories(directory("3d"), QString(), QString(), directory("cache"));
    ASSERT_TRUE(waitFor([&] { return store->getDirTop3d() != nullptr; }));
    const TORVDataFrame::Ptr chosen = frame();
    EXPECT_TRUE(chosen->getData3d());
    EXPECT_FALSE(chosen->getData2d());
    EXPECT_TRUE(chosen->getTerrainSet()) << "flat ground at sea level";
}

TEST_F(TORVDataFrameFlatTest, TakesTheFirstFlatProductByDefault)
{
    add3d(Noon, volume("HALMERA"));
    add2d(Noon, flat("HALMERA", PPI));
    add2d(Noon, flat("HALMERA", MAX));
    open();
    const TORVDataFrame::Ptr chosen = frame();
    EXPECT_EQ(chosen->getProduct2d(), QLatin1String("MAX"));
    EXPECT_TRUE(chosen->getData2d());
}

TEST_F(TORVDataFrameFlatTest, HasNoDefaultWithoutAFlatProductAroundTheTime)
{
    add3d(Noon, volume("HALMERA"));
    add2d(After, flat("HALMERA", MAX, Z, 300));
    add2d(Noon, flat("ALPHA", MAX));
    open();
    const TORVDataFrame::Ptr chosen = frame();
    EXPECT_EQ(chosen->getProduct2d(), QString());
    EXPECT_FALSE(chosen->getData2d());
}

TEST_F(TORVDataFrameFlatTest, HasNoDefaultWithoutAVolume)
{
    add2d(Noon, flat("HALMERA", MAX));
    open();
    const TORVDataFrame::Ptr empty = emptyFrame();
    empty->setDataParams2d(QString());
    EXPECT_EQ(empty->getProduct2d(), QString());
}

TEST_F(TORVDataFrameFlatTest, AnEmptyFlatProductMeansTheDefaultWhenItIsSetToo)
{
    add3d(Noon, volume("HALMERA"));
    add2d(Noon, flat("HALMERA", MAX));
    open();
    const TORVDataFrame::Ptr chosen = frame(Noon, "PPI");
    EXPECT_FALSE(chosen->getData2d());
    chosen->setDataParams2d(QString());
    EXPECT_EQ(chosen->getProduct2d(), QLatin1String("MAX"));
    chosen->updateDataRest();
    EXPECT_TRUE(chosen->getData2d());
}

TEST_F(TORVDataFrameFlatTest, TakesTheFlatProductForANameAndNotForAPattern)
{
    add3d(Noon, volume("HALMERA"));
    add2d(Noon, flat("HALMERA", MAX));
    open();
    EXPECT_FALSE(frame(Noon, "M*")->getData2d());
    EXPECT_TRUE(frame(Noon, "MAX")->getData2d());
}

TEST_F(TORVDataFrameFlatTest, AWindowOfNothingTakesAFlatFileOfTheSameSecond)
{
    add3d(Noon, volume("HALMERA"));
    add2d(Noon, flat("HALMERA", MAX, Z, 0));
    add2d(Noon, flat("HALMERA", PPI, Z, 1));
    open();
    EXPECT_TRUE(frame(Noon, "MAX", 0)->getData2d());
    EXPECT_FALSE(frame(Noon, "PPI", 0)->getData2d());
}

TEST_F(TORVDataFrameFlatTest, AWindowBelowNothingTakesNoFlatFile)
{
    add3d(Noon, volume("HALMERA"));
    add2d(Noon, flat("HALMERA", MAX));
    open();
    const TORVDataFrame::Ptr chosen = frame(Noon, "MAX", -3600);
    EXPECT_FALSE(chosen->getData2d());
    chosen->updateDataRest();
    EXPECT_FALSE(chosen->getData2d());
}

// 180 s wide: 90 s on each side for a search, but a chosen file stays as long as it is 180 s away or less.
TEST_F(TORVDataFrameFlatTest, KeepsAFlatFileThatASearchWouldNotFind)
{
    add3d(Noon, volume("HALMERA", Z, 0));
    add3d(Before, volume("HALMERA", Z, -120));
    const QString kept = add2d(Noon, flat("HALMERA", MAX, Z, 60));
    open();
    const TORVDataFrame::Ptr chosen = frame(Noon, "MAX");
    ASSERT_TRUE(chosen->getData2d());
    chosen->setMoment(Before, Window);
    ASSERT_TRUE(chosen->updateData3d());
    chosen->updateDataRest();
    ASSERT_TRUE(chosen->getData2d());
    EXPECT_EQ(chosen->getData2d()->getPath(), kept);
    EXPECT_FALSE(frame(Before, "MAX")->getData2d());
}

TEST_F(TORVDataFrameFlatTest, LetsAFlatFileGoThatIsOutsideTheWindow)
{
    add3d(Noon, volume("HALMERA", Z, 0));
    add3d(Before, volume("HALMERA", Z, -121));
    add2d(Noon, flat("HALMERA", MAX, Z, 60));
    open();
    const TORVDataFrame::Ptr chosen = frame(Noon, "MAX");
    ASSERT_TRUE(chosen->getData2d());
    chosen->setMoment(Before, Window);
    ASSERT_TRUE(chosen->updateData3d());
    chosen->updateDataRest();
    EXPECT_FALSE(chosen->getData2d());
}

TEST_F(TORVDataFrameFlatTest, ANarrowerWindowLetsAFlatFileGo)
{
    add3d(Noon, volume("HALMERA"));
    add2d(Noon, flat("HALMERA", MAX, Z, 60));
    open();
    const TORVDataFrame::Ptr chosen = frame(Noon, "MAX");
    ASSERT_TRUE(chosen->getData2d());
    chosen->setMoment(Noon, 59);
    EXPECT_EQ(chosen->getTimeWindow(), 59);
    chosen->updateDataRest();
    EXPECT_FALSE(chosen->getData2d());
}

TEST_F(TORVDataFrameFlatTest, TakesAnotherFlatProductWhenItIsAskedFor)
{
    add3d(Noon, volume("HALMERA"));
    add2d(Noon, flat("HALMERA", MAX));
    const QString other = add2d(Noon, flat("HALMERA", PPI));
    open();
    const TORVDataFrame::Ptr chosen = frame(Noon, "MAX");
    chosen->setDataParams2d("PPI");
    EXPECT_EQ(chosen->getData2d()->getProduct(), QLatin1String("MAX")) << "a setter chooses nothing";
    chosen->updateDataRest();
    ASSERT_TRUE(chosen->getData2d());
    EXPECT_EQ(chosen->getData2d()->getPath(), other);
}

TEST_F(TORVDataFrameFlatTest, TakesAFlatFileThatComesLate)
{
    add3d(Noon, volume("HALMERA"));
    open();
    const TORVDataFrame::Ptr chosen = frame(Noon, "MAX");
    EXPECT_FALSE(chosen->getData2d());
    const QString late = add2d(Noon, flat("HALMERA", MAX));
    ASSERT_TRUE(waitFor([&] { return !store->getDirTop2d()->listSites().isEmpty(); }));
    chosen->updateDataRest();
    ASSERT_TRUE(chosen->getData2d());
    EXPECT_EQ(chosen->getData2d()->getPath(), late);
}

TEST_F(TORVDataFrameFlatTest, NeverKeepsAFlatFileOfAnotherSite)
{
    add3d(Noon, volume("HALMERA"));
    add3d(Noon, volume("ALPHA"));
    add2d(Noon, flat("HALMERA", MAX));
    open();
    const TORVDataFrame::Ptr chosen = frame(Noon, "MAX");
    ASSERT_TRUE(chosen->getData2d());
    chosen->setSite("ALPHA");
    ASSERT_TRUE(chosen->updateData3d());
    chosen->updateDataRest();
    EXPECT_FALSE(chosen->getData2d());
}
