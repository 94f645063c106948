#include "datalib/TORVDataFrame.h"

#include "FrameTest.h"
#include "datalib/TORVLandmarkSet.h"
#include "datalib/TORVTerrainSet.h"
#include "support/SharedData.h"

namespace
{

class TORVDataFrameAreaTest : public FrameTest
{
protected:
    // A volume whose radar stands there.
    static TORVProductFields volumeAt(const QByteArray& site, double lat, double lon)
    {
        TORVProductFields fields = volume(site);
        fields.siteLatitude = binaryAngle(lat);
        fields.siteLongitude = binaryAngle(lon);
        return fields;
    }

    // 2^32 is the full circle.
    static uint32_t binaryAngle(double degrees)
    {
        return static_cast<uint32_t>(std::llround(degrees / 360.0 * 4294967296.0));
    }
};

} // namespace

TEST_F(TORVDataFrameAreaTest, OutlivesTheDirectoriesOfTheStore)
{
    add3d(Noon, volume("HALMERA"));
    open();
    const TORVDataFrame::Ptr chosen = frame();
    const auto terrain = chosen->getTerrainSet();
    store->setDirectories(directory("cache"), directory("cache"), directory("cache"), directory("geo"));
    EXPECT_TRUE(chosen->updateData3d());
    chosen->updateDataRest();
    EXPECT_EQ(chosen->getTerrainSet(), terrain);
    EXPECT_FALSE(terrain->getBlocks().isEmpty());
}

// Half the diagonal of 3 km x 2 km is 1802.776 m, times 1.5. A degree of longitude at 60 N is half as long as one of
// latitude, so four degrees of latitude to each side go with eight of longitude.
TEST_F(TORVDataFrameAreaTest, SurroundsTheRadarWithTerrain)
{
    add3d(Noon, volume("HALMERA"));
    open();
    const TORVDataFrame::Ptr chosen = frame();
    EXPECT_NEAR(chosen->getTerrainRadiusM(), 2704.163, 0.001);
    expectCorner(chosen->getAreaLowerLeft(), 56.0, 17.0);
    expectCorner(chosen->getAreaUpperRight(), 64.0, 33.0);
    expectCorner(chosen->getTerrainSet()->getLowerLeft(), 56.0, 17.0);
    expectCorner(chosen->getTerrainSet()->getUpperRight(), 64.0, 33.0);
    EXPECT_EQ(chosen->getTerrainSet()->getProjection(), chosen->getGeoProjection());
    EXPECT_EQ(chosen->getTerrainSet(),
              store->getTerrainDir()->getTerrainSet(chosen->getGeoProjection(), chosen->getAreaLowerLeft(),
                                                    chosen->getAreaUpperRight()));
}

// A kilometre of grid a hundred times as large: 180.3 km to the corner, times 5 is 901.4 km or 8.1 degrees, so 9.
TEST_F(TORVDataFrameAreaTest, TakesAsMuchTerrainAsTheFactorSays)
{
    TORVProductFields fields = volume("HALMERA");
    fields.xScale = 10000000;
    fields.yScale = 10000000;
    add3d(Noon, fields);
    open();
    const TORVDataFrame chosen(store, "HALMERA", Noon, "CAPPI", "Z", "", Window, 5.0);
    EXPECT_NEAR(chosen.getTerrainRadiusM(), 901387.8, 0.1);
    EXPECT_EQ(chosen.getAreaLowerLeft().getLat(), 51.0);
    EXPECT_EQ(chosen.getAreaUpperRight().getLat(), 69.0);
}

TEST_F(TORVDataFrameAreaTest, GoesOverTheDateLine)
{
    add3d(Noon, volumeAt("HALMERA", 0.0, 179.0));
    open();
    const TORVDataFrame::Ptr chosen = frame();
    expectCorner(chosen->getAreaLowerLeft(), -4.0, 175.0);
    expectCorner(chosen->getAreaUpperRight(), 4.0, -177.0);
    EXPECT_EQ(chosen->getTerrainSet()->getBlocks().size(), 64);
    const auto terrain = chosen->getTerrainSet();
    chosen->updateDataRest();
    EXPECT_EQ(chosen->getTerrainSet(), terrain);
}

TEST_F(TORVDataFrameAreaTest, GoesRoundAPole)
{
    add3d(Noon, volumeAt("HALMERA", 89.9, 25.0));
    open();
    const TORVDataFrame::Ptr chosen = frame();
    expectCorner(chosen->getAreaLowerLeft(), 86.0, -180.0);
    expectCorner(chosen->getAreaUpperRight(), 90.0, 180.0);
    EXPECT_TRUE(chosen->getTerrainSet());
}

TEST_F(TORVDataFrameAreaTest, KeepsItsTerrainWhenOnlyTheRadiusChanges)
{
    add3d(Noon, volume("HALMERA"));
    open();
    const TORVDataFrame::Ptr chosen = frame();
    const auto terrain = chosen->getTerrainSet();
    const auto landmarks = chosen->getLandmarkSet();
    chosen->setDataParamsTerrain(900000.0);
    EXPECT_EQ(chosen->getTerrainRadiusM(), 900000.0);
    chosen->updateDataRest();
    EXPECT_EQ(chosen->getTerrainSet(), terrain);
    EXPECT_EQ(chosen->getLandmarkSet(), landmarks);
    expectCorner(chosen->getAreaLowerLeft(), 56.0, 17.0);
}

TEST_F(TORVDataFrameAreaTest, TakesOtherTerrainForAnotherRadar)
{
    add3d(Noon, volume("HALMERA"));
    add3d(Noon, volumeAt("ALPHA", 0.0, 10.0));
    open();
    const TORVDataFrame::Ptr chosen = frame();
    const auto terrain = chosen->getTerrainSet();
    const auto landmarks = chosen->getLandmarkSet();
    chosen->setSite("ALPHA");
    ASSERT_TRUE(chosen->updateData3d());
    chosen->updateDataRest();
    EXPECT_NE(chosen->getTerrainSet(), terrain);
    EXPECT_NE(chosen->getLandmarkSet(), landmarks);
    expectCorner(chosen->getAreaLowerLeft(), -4.0, 6.0);
    expectCorner(chosen->getAreaUpperRight(), 4.0, 14.0);
}

TEST_F(TORVDataFrameAreaTest, TakesOtherTerrainForAnotherProjectionOfTheSameRadar)
{
    add3d(Noon, volume("HALMERA"));
    TORVProductFields mercator = volume("HALMERA", Z, 300);
    mercator.projectionType = 1;
    add3d(After, mercator);
    open();
    const TORVDataFrame::Ptr chosen = frame();
    const auto terrain = chosen->getTerrainSet();
    chosen->setMoment(After, Window);
    ASSERT_TRUE(chosen->updateData3d());
    chosen->updateDataRest();
    EXPECT_NE(chosen->getTerrainSet(), terrain);
    EXPECT_EQ(chosen->getTerrainSet()->getProjection()->getType(), QLatin1String("merc"));
}

TEST_F(TORVDataFrameAreaTest, SharesTheTerrainWithFramesOfTheSameRadar)
{
    add3d(Noon, volume("HALMERA"));
    add3d(After, volume("HALMERA", Z, 300));
    open();
    EXPECT_EQ(frame(Noon)->getTerrainSet(), frame(After)->getTerrainSet());
}

TEST_F(TORVDataFrameAreaTest, ChoosesGroundAnewThatTheDirectoryHasForgotten)
{
    add3d(Noon, volume("HALMERA"));
    add3d(After, volume("HALMERA", Z, 300));
    open();
    const TORVDataFrame::Ptr chosen = frame(Noon);
    const TORVDataFrame::Ptr other = frame(After);
    const auto terrain = chosen->getTerrainSet();
    const auto landmarks = chosen->getLandmarkSet();
    chosen->renewTerrain();
    EXPECT_EQ(chosen->getTerrainSet(), terrain) << "the directory still has it";
    store->getTerrainDir()->scanFiles();
    chosen->updateDataRest();
    EXPECT_EQ(chosen->getTerrainSet(), terrain) << "it fits the request";
    chosen->renewTerrain();
    other->renewTerrain();
    ASSERT_TRUE(chosen->getTerrainSet());
    EXPECT_NE(chosen->getTerrainSet(), terrain);
    EXPECT_EQ(other->getTerrainSet(), chosen->getTerrainSet());
    EXPECT_EQ(chosen->getLandmarkSet(), landmarks);
    expectCorner(chosen->getTerrainSet()->getLowerLeft(), 56.0, 17.0);
}

TEST_F(TORVDataFrameAreaTest, ChoosesNoGroundWithoutAVolume)
{
    open();
    const TORVDataFrame::Ptr empty = emptyFrame();
    empty->renewTerrain();
    EXPECT_FALSE(empty->getTerrainSet());
    EXPECT_FALSE(empty->getLandmarkSet());
}

TEST_F(TORVDataFrameAreaTest, TakesTheLandmarksOfItsArea)
{
    home.write(QStringLiteral(".config/Halmera/TORV3DLandmarks.conf"),
               "[LANDMARKS]\nlandmarks\\size=3\n"
               "landmarks\\1\\label=Espoo\nlandmarks\\1\\location\\lat=60.2\nlandmarks\\1\\location\\lon=24.7\n"
               "landmarks\\2\\label=Corner\nlandmarks\\2\\location\\lat=56\nlandmarks\\2\\location\\lon=17\n"
               "landmarks\\3\\label=Zurich\nlandmarks\\3\\location\\lat=47.4\nlandmarks\\3\\location\\lon=8.5\n");
    add3d(Noon, volume("HALMERA"));
    open();
    const auto landmarks = frame()->getLandmarkSet();
    ASSERT_TRUE(landmarks);
    ASSERT_EQ(landmarks->getLandmarks().size(), 2);
    EXPECT_EQ(landmarks->getLandmarks().at(0)->getLabel(), QLatin1String("Espoo"));
    EXPECT_EQ(landmarks->getLandmarks().at(1)->getLabel(), QLatin1String("Corner"));
    EXPECT_NEAR(landmarks->getCenter().getLat(), 60.0, 1e-6);
}

// Monte Lema, 28 June 2022: 240 x 240 points of 1 km and 20 levels of 750 m round 46.0408 N 8.8332 E, antenna and
// ground as the table beside the products says. Half the diagonal of 239 km is 169.0 km, times 1.5 is 253.5 km or 2.3
// degrees: four to each side, and six of longitude, of which 77.4 km make one there.
TEST_F(TORVDataFrameAreaTest, MakesAFrameOfARealStorm)
{
    TORV_NEEDS_SHARED_DATA();
    store = boost::make_shared<TORVDataStore>(nullptr);
    store->setDirectories(SharedData::path("3d"), SharedData::path("2d"), SharedData::path("terrain/srtm"),
                          directory("cache"));
    ASSERT_TRUE(waitFor([this] { return store->getDirTop3d() && store->getDirTop2d(); }));
    const TORVFileLeaf::Ptr leaf = store->getLatestData("MONTE LEMA", "CAPPI", "V");
    ASSERT_TRUE(leaf);
    const TORVDataFrame chosen(store, leaf->getSite(), leaf->getTime(), "CAPPI", "V", "", Window, 1.5);
    EXPECT_EQ(chosen.getData3d(), leaf);
    EXPECT_EQ(chosen.getProduct2d(), QLatin1String("MAX"));
    ASSERT_TRUE(chosen.getData2d());
    EXPECT_EQ(chosen.getData2d()->getPath(), SharedData::path("2d/LEM220628071928.MAX"));
    EXPECT_NEAR(chosen.getTerrainRadiusM(), 253498.0, 1.0);
    expectCorner(chosen.getAreaLowerLeft(), 42.0, 3.0);
    expectCorner(chosen.getAreaUpperRight(), 50.0, 15.0);
    EXPECT_EQ(chosen.getTerrainSet()->getBlocks().size(), 96);
    EXPECT_TRUE(store->getTerrainDir()->getFile(TORVCoordinate(46.0, 8.0)));
    EXPECT_EQ(chosen.getDataId(settings()), QLatin1String("MONTE LEMA: Tue 2022-06-28 07:19"));
    const QStringList legend = chosen.getLegend(settings());
    ASSERT_EQ(legend.size(), 4);
    EXPECT_EQ(legend.at(0), QLatin1String("Radial velocity, m/s"));
    EXPECT_EQ(legend.at(2), QLatin1String("239.0 x 239.0 x 14.3 km")); // 14.25, and a half goes up
    EXPECT_TRUE(legend.at(3).startsWith(QString::fromUtf8("MONTE LEMA 46.04")));
}
