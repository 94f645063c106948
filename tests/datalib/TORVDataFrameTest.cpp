#include "datalib/TORVDataFrame.h"

#include "FrameTest.h"
#include "datalib/TORVTerrainSet.h"
#include "settings/TORVProductSettings.h"

namespace
{

using TORVDataFrameTest = FrameTest;
using TORVDataFrameDeathTest = FrameTest;

} // namespace

TEST_F(TORVDataFrameTest, AnEmptyFrameHasChosenNothing)
{
    open();
    const TORVDataFrame::Ptr empty = emptyFrame();
    EXPECT_EQ(empty->getDataStore(), store);
    EXPECT_FALSE(empty->getData3d());
    EXPECT_FALSE(empty->getData2d());
    EXPECT_FALSE(empty->getTerrainSet());
    EXPECT_FALSE(empty->getLandmarkSet());
    EXPECT_FALSE(empty->getGeoProjection());
    EXPECT_FALSE(empty->getProductSettings());
    EXPECT_EQ(empty->getSite(), QString());
    EXPECT_EQ(empty->getTimeWindow(), 0);
    EXPECT_EQ(empty->getTerrainRadiusM(), 0.0);
    EXPECT_FALSE(empty->updateData3d());
}

TEST_F(TORVDataFrameTest, ChoosesWhatIsAskedFor)
{
    const QString file3d = add3d(Noon, volume("HALMERA"));
    add3d(Noon, volume("HALMERA", V));
    add3d(After, volume("HALMERA", Z, 300));
    const QString file2d = add2d(Noon, flat("HALMERA", MAX));
    add2d(Noon, flat("HALMERA", PPI));
    open();
    const TORVDataFrame::Ptr chosen = frame(Noon, "MAX");
    ASSERT_TRUE(chosen->getData3d());
    EXPECT_EQ(chosen->getData3d()->getPath(), file3d);
    ASSERT_TRUE(chosen->getData2d());
    EXPECT_EQ(chosen->getData2d()->getPath(), file2d);
    EXPECT_EQ(chosen->getGeoProjection(), chosen->getData3d()->getFile()->getGeoProjection());
    ASSERT_TRUE(chosen->getProductSettings());
    EXPECT_EQ(chosen->getProductSettings()->getProduct(), QLatin1String("CAPPI"));
    EXPECT_EQ(chosen->getProductSettings()->getConfiguration(), QLatin1String("Z"));
    EXPECT_TRUE(chosen->getTerrainSet());
    EXPECT_TRUE(chosen->getLandmarkSet());
    EXPECT_EQ(history, QStringList());
}

TEST_F(TORVDataFrameTest, KeepsTheRequest)
{
    add3d(Noon, volume("HALMERA"));
    open();
    const TORVDataFrame::Ptr chosen = frame(Noon, "SRI");
    EXPECT_EQ(chosen->getDataStore(), store);
    EXPECT_EQ(chosen->getSite(), QLatin1String("HALMERA"));
    EXPECT_EQ(chosen->getMoment(), QLatin1String(Noon));
    EXPECT_EQ(chosen->getTimeWindow(), Window);
    EXPECT_EQ(chosen->getProduct(), QLatin1String("CAPPI"));
    EXPECT_EQ(chosen->getConfiguration(), QLatin1String("Z"));
    EXPECT_EQ(chosen->getProduct2d(), QLatin1String("SRI"));
}

TEST_F(TORVDataFrameTest, LogsTheRequestAsItWasGiven)
{
    add3d(Noon, volume("HALMERA"));
    add2d(Noon, flat("HALMERA", MAX));
    startLog();
    open();
    frame(Noon, "");
    EXPECT_EQ(logged("site: "), QStringList{"D: site: HALMERA"});
    EXPECT_EQ(logged("product: "), QStringList{"D: product: CAPPI"});
    EXPECT_EQ(logged("configuration: "), QStringList{"D: configuration: Z"});
    EXPECT_EQ(logged("moment: "), QStringList{"D: moment: 260714120000 +/-180s"});
    EXPECT_EQ(logged("product2d: "), QStringList{"D: product2d: "});
    EXPECT_EQ(logged("2d product not selected -> using default.").size(), 1);
}

TEST_F(TORVDataFrameTest, SaysThatTheDataIsNotThere)
{
    add2d(Noon, flat("HALMERA", MAX));
    startLog();
    open();
    const TORVDataFrame::Ptr empty = frame();
    EXPECT_EQ(history, QStringList{"Requested data not available."});
    EXPECT_EQ(logged("Loading "), (QStringList{"D: Loading 3d data failed.", "D: Loading data frame failed."}));
    EXPECT_FALSE(empty->getData3d());
    EXPECT_FALSE(empty->getData2d());
    EXPECT_FALSE(empty->getTerrainSet());
    EXPECT_FALSE(empty->getProductSettings());
    EXPECT_EQ(empty->getProduct2d(), QString());
    EXPECT_EQ(empty->getTerrainRadiusM(), 0.0);
}

TEST_F(TORVDataFrameTest, FindsNothingBeforeTheDirectoriesHaveBeenRead)
{
    store = boost::make_shared<TORVDataStore>(nullptr);
    const TORVDataFrame::Ptr empty = frame();
    EXPECT_FALSE(empty->getData3d());
    empty->setDataParams2d(QString());
    EXPECT_EQ(empty->getProduct2d(), QString());
    EXPECT_EQ(history, QStringList{"Requested data not available."});
}

TEST_F(TORVDataFrameTest, ASecondUpdateSearchesNothingButLoadsTheProductSettings)
{
    const QString file = add3d(Noon, volume("HALMERA"));
    open();
    const TORVDataFrame::Ptr chosen = frame();
    const TORVFileLeaf::Ptr leaf = chosen->getData3d();
    const auto oldSettings = chosen->getProductSettings();
    TORVProductSettings changed = *oldSettings;
    changed.setRenderingType(TORVProductSettings::VOLUME);
    changed.save();
    QFile::remove(file);
    ASSERT_TRUE(waitFor([&] { return !leaf3d(Noon); })); // a search would find nothing
    EXPECT_TRUE(chosen->updateData3d());
    EXPECT_EQ(chosen->getData3d(), leaf);
    EXPECT_NE(chosen->getProductSettings(), oldSettings);
    EXPECT_EQ(oldSettings->getRenderingType(), TORVProductSettings::SURFACE);
    EXPECT_EQ(chosen->getProductSettings()->getRenderingType(), TORVProductSettings::VOLUME);
}

TEST_F(TORVDataFrameTest, SearchesAgainWhenOneOfTheFourNamesChanges)
{
    add3d(Noon, volume("HALMERA"));
    const QString others[] = {add3d(Noon, volume("ALPHA")), add3d(Noon, volume("ALPHA", V)),
                              add3d(After, volume("ALPHA", V, 300))};
    open();
    const TORVDataFrame::Ptr chosen = frame();
    chosen->setSite("ALPHA");
    ASSERT_TRUE(chosen->updateData3d());
    EXPECT_EQ(chosen->getData3d()->getPath(), others[0]);
    chosen->setDataParams3d("CAPPI", "V");
    ASSERT_TRUE(chosen->updateData3d());
    EXPECT_EQ(chosen->getData3d()->getPath(), others[1]);
    EXPECT_EQ(chosen->getProductSettings()->getConfiguration(), QLatin1String("V"));
    chosen->setMoment(After, Window);
    ASSERT_TRUE(chosen->updateData3d());
    EXPECT_EQ(chosen->getData3d()->getPath(), others[2]);
    chosen->setDataParams3d("MAX", "V");
    EXPECT_FALSE(chosen->updateData3d());
    EXPECT_FALSE(chosen->getData3d());
}

TEST_F(TORVDataFrameTest, LogsWhetherItHadToSearch)
{
    add3d(Noon, volume("HALMERA"));
    add2d(Noon, flat("HALMERA", MAX));
    startLog();
    open();
    const TORVDataFrame::Ptr chosen = frame();
    const QStringList searches[] = {logged("3D data not available or parameters changed -> load new data."),
                                    logged("2D data not available or parameters changed -> load new data."),
                                    logged("Terrain data not available or parameters changed -> load new data.")};
    for (const QStringList& search : searches) {
        EXPECT_EQ(search.size(), 1);
    }
    chosen->updateData3d();
    chosen->updateDataRest();
    EXPECT_EQ(logged("3D data").size() + logged("2D data").size() + logged("Terrain data").size(), 3);
    EXPECT_EQ(logged("Loading product settings..").size(), 2);
    EXPECT_EQ(logged("Loading 3d data succeeded.").size(), 2);
}

TEST_F(TORVDataFrameTest, KeepsWhatItHasChosenWhenTheFileGoes)
{
    const QString file = add3d(Noon, volume("HALMERA"));
    open();
    const TORVDataFrame::Ptr chosen = frame();
    QFile::remove(file);
    ASSERT_TRUE(waitFor([&] { return !leaf3d(Noon); }));
    EXPECT_EQ(chosen->getData3d()->getPath(), file);
    EXPECT_EQ(chosen->getDataId(settings()), QLatin1String("HALMERA: Tue 2026-07-14 12:00"));
}

TEST_F(TORVDataFrameTest, ACopySharesWhatWasChosen)
{
    add3d(Noon, volume("HALMERA"));
    add3d(After, volume("HALMERA", Z, 300));
    add2d(Noon, flat("HALMERA", MAX));
    startLog();
    open();
    const TORVDataFrame::Ptr original = frame();
    const TORVDataFrame copy{TORVDataFrame::CPtr(original)};
    EXPECT_EQ(logged("(copy)"), QStringList{"D: (copy)"});
    EXPECT_EQ(copy.getDataStore(), store);
    EXPECT_EQ(copy.getData3d(), original->getData3d());
    EXPECT_EQ(copy.getData2d(), original->getData2d());
    EXPECT_EQ(copy.getTerrainSet(), original->getTerrainSet());
    EXPECT_EQ(copy.getLandmarkSet(), original->getLandmarkSet());
    EXPECT_EQ(copy.getGeoProjection(), original->getGeoProjection());
    EXPECT_EQ(copy.getProductSettings(), original->getProductSettings());
    EXPECT_EQ(copy.getSite(), original->getSite());
    EXPECT_EQ(copy.getMoment(), original->getMoment());
    EXPECT_EQ(copy.getTimeWindow(), original->getTimeWindow());
    EXPECT_EQ(copy.getProduct(), original->getProduct());
    EXPECT_EQ(copy.getConfiguration(), original->getConfiguration());
    EXPECT_EQ(copy.getProduct2d(), original->getProduct2d());
    EXPECT_EQ(copy.getTerrainRadiusM(), original->getTerrainRadiusM());
    expectCorner(copy.getAreaLowerLeft(), 56.0, 17.0);
    expectCorner(copy.getAreaUpperRight(), 64.0, 33.0);
}

TEST_F(TORVDataFrameTest, ACopyGoesItsOwnWay)
{
    add3d(Noon, volume("HALMERA"));
    add3d(After, volume("HALMERA", Z, 300));
    open();
    const TORVDataFrame::Ptr original = frame();
    const auto copy = boost::make_shared<TORVDataFrame>(TORVDataFrame::CPtr(original));
    copy->setMoment(After, Window);
    ASSERT_TRUE(copy->updateData3d());
    EXPECT_EQ(timeOf(copy->getData3d()), QLatin1String(After));
    EXPECT_EQ(timeOf(original->getData3d()), QLatin1String(Noon));
}

TEST_F(TORVDataFrameTest, AFirstLookAtAProductWritesItsDefaultSettings)
{
    add3d(Noon, volume("HALMERA"));
    open();
    frame();
    QFile file(home.settingsFile());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains("rendering=surface"));
}

TEST_F(TORVDataFrameDeathTest, StopsWithoutAVolume)
{
    open();
    const TORVDataFrame::Ptr empty = emptyFrame();
    EXPECT_DEATH(empty->updateDataRest(), "_activeData3d");
    EXPECT_DEATH(empty->updateProductSettings(), "_activeData3d");
}
