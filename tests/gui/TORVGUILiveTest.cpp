#include "GUITest.h"

#include "settings/TORVGeneralSettings.h"

using TORVGUILiveTest = GUITest;

TEST_F(TORVGUILiveTest, FollowsNewVolumesWhileTheNewestIsShown)
{
    writeVolume("HALMERA", 0);
    writeVolume("HALMERA", 5);
    configureLive();
    openAndWait(2);
    EXPECT_EQ(minuteShown(), 5);
    writeVolume("HALMERA", 10);
    ASSERT_TRUE(waitForMinute(10));
    EXPECT_EQ(label(), QStringLiteral("HALMERA: Tue 2026-07-14 12:10"));
    EXPECT_EQ(window->horizontalSlider_animation->value(), 2);
}

TEST_F(TORVGUILiveTest, StaysWithTheMomentOfWhoHasSteppedBack)
{
    for (const int minute : {0, 5, 10}) {
        writeVolume("HALMERA", minute);
    }
    configureLive();
    openAndWait(3);
    window->horizontalSlider_animation->setValue(0);
    ASSERT_TRUE(waitForMinute(0));
    writeVolume("HALMERA", 15);
    ASSERT_TRUE(waitForFrames(4));
    EXPECT_EQ(minuteShown(), 0);
    EXPECT_EQ(window->horizontalSlider_animation->value(), 0);
    EXPECT_EQ(label(), QStringLiteral("HALMERA: Tue 2026-07-14 12:00"));
}

TEST_F(TORVGUILiveTest, BuildsOneSceneForOneNewVolume)
{
    for (const int minute : {0, 5, 10}) {
        writeVolume("HALMERA", minute);
    }
    configureLive();
    openAndWait(3);
    const auto first = window->getAnimation().getFrameByIndex(2)->getVisualization();
    const auto item = first->getResultItem();
    ASSERT_TRUE(item);
    writeVolume("HALMERA", 15);
    ASSERT_TRUE(waitForMinute(15));
    EXPECT_EQ(window->getAnimation().getFrameByIndex(2)->getVisualization(), first);
    EXPECT_EQ(first->getResultItem(), item);
    EXPECT_FALSE(window->getAnimation().getFrameByIndex(0)->getVisualization()->getResultItem());
}

TEST_F(TORVGUILiveTest, ListsOtherSitesAndProductsWithoutShowingThem)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    writeVolume("OTHER", 20);
    writeVolume("HALMERA", 20, 3, "CAPV");
    ASSERT_TRUE(waitFor(
        [this] { return window->comboBox_radarSite->count() == 2 && window->comboBox_3DProduct->count() == 2; }));
    EXPECT_EQ(entries(window->comboBox_3DProduct),
              (QStringList{QStringLiteral("Radial velocity"), QStringLiteral("Reflectivity")}));
    EXPECT_EQ(window->comboBox_radarSite->currentText(), QStringLiteral("HALMERA"));
    EXPECT_EQ(minuteShown(), 0);
    EXPECT_EQ(countInHistory(QStringLiteral("Updating live data:")), 1);
}

TEST_F(TORVGUILiveTest, UpdatesWhenAVolumeOfTheSequenceIsRemoved)
{
    writeVolume("HALMERA", 0);
    const QString newest = writeVolume("HALMERA", 5);
    configureLive();
    openAndWait(2);
    ASSERT_TRUE(QFile::remove(newest));
    ASSERT_TRUE(waitForMinute(0));
    EXPECT_EQ(minutesOfFrames(), (QVector<int>{0}));
}

TEST_F(TORVGUILiveTest, SaysWhichSiteHasGoneAndTakesItUpAgainWhenItIsBack)
{
    const QString path = writeVolume("HALMERA", 0);
    writeVolume("OTHER", 0);
    configureLive();
    openAndWait(1);
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(waitForHistory(QStringLiteral("Site not available: HALMERA")));
    ASSERT_TRUE(waitFor([this] { return !window->getCurrentDataFrame(); }));
    EXPECT_EQ(window->comboBox_radarSite->currentIndex(), -1);
    EXPECT_TRUE(history().contains(QStringLiteral("- Site is not selected.")));
    EXPECT_TRUE(history().contains(QStringLiteral("Current data file closed.")));
    EXPECT_EQ(label(), QStringLiteral("(No data loaded)"));
    writeVolume("HALMERA", 5);
    ASSERT_TRUE(waitForMinute(5));
    EXPECT_EQ(window->comboBox_radarSite->currentText(), QStringLiteral("HALMERA"));
}

TEST_F(TORVGUILiveTest, GoesFarAwayWithoutDataAndBackToTheSameViewWithIt)
{
    const QString path = writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    const TORVPoint3D before = window->getCurrentViewAngle()->getPosition();
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(waitFor([this] { return !window->getCurrentDataFrame(); }));
    writeVolume("HALMERA", 5);
    ASSERT_TRUE(waitForMinute(5));
    EXPECT_NEAR(window->getCurrentViewAngle()->getPosition().z, before.z, 1.0);
}

TEST_F(TORVGUILiveTest, SaysWhichProductHasGone)
{
    writeVolume("HALMERA", 0, 3, "CAPV");
    const QString path = writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(waitForHistory(QStringLiteral("3d product not available:")));
    EXPECT_TRUE(history().contains(QStringLiteral("- Reflectivity")));
    EXPECT_TRUE(waitForHistory(QStringLiteral("- 3D product is not selected.")));
}

TEST_F(TORVGUILiveTest, ShowsTheFirstVolumeThatComesIntoAnEmptyDirectory)
{
    configureLive();
    open();
    ASSERT_TRUE(waitForHistory(QStringLiteral("- Site is not selected.")));
    writeVolume("HALMERA", 0);
    EXPECT_TRUE(waitForMinute(0));
}

TEST_F(TORVGUILiveTest, ChangesTheSite)
{
    writeVolume("HALMERA", 0);
    writeVolume("OTHER", 20);
    configureLive();
    openAndWait(1);
    choose(window->comboBox_radarSite, QStringLiteral("OTHER"));
    EXPECT_TRUE(history().contains(QStringLiteral("Radar site: OTHER")));
    ASSERT_TRUE(waitForMinute(20));
    EXPECT_EQ(label(), QStringLiteral("OTHER: Tue 2026-07-14 12:20"));
    EXPECT_EQ(window->getCurrentGeneralSettings()->getLiveSite(), QStringLiteral("OTHER"));
}

TEST_F(TORVGUILiveTest, DoesNothingForTheSiteThatIsShown)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    const int lines = history().size();
    choose(window->comboBox_radarSite, QStringLiteral("HALMERA"));
    EXPECT_EQ(history().size(), lines);
}

TEST_F(TORVGUILiveTest, ChangesTheProduct)
{
    writeVolume("HALMERA", 0);
    writeVolume("HALMERA", 0, 4, "CAPW");
    configureLive();
    openAndWait(1);
    window->comboBox_3DProduct->setCurrentIndex(window->comboBox_3DProduct->findData(QStringLiteral("CAPPI - W")));
    Q_EMIT window->comboBox_3DProduct->activated(window->comboBox_3DProduct->currentIndex());
    ASSERT_TRUE(waitFor([this] {
        return isShown() && window->getCurrentDataFrame()->getData3d()->getConfiguration() == QLatin1String("W");
    }));
    EXPECT_EQ(window->getCurrentGeneralSettings()->getLiveProduct3D(), QStringLiteral("CAPPI - W"));
    EXPECT_EQ(window->comboBox_3DProduct->currentData().toString(), QStringLiteral("CAPPI - W"));
}

TEST_F(TORVGUILiveTest, TakesAFlatProductThatComesLate)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    EXPECT_FALSE(window->getCurrentDataFrame()->getData2d());
    writeFlat("HALMERA", 0);
    EXPECT_TRUE(waitFor([this] { return isShown() && window->getCurrentDataFrame()->getData2d(); }));
    EXPECT_EQ(window->comboBox_2DProduct->currentText(), QStringLiteral("MAX"));
}

TEST_F(TORVGUILiveTest, PassesOverEverythingThatIsNoGoodVolume)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    QFile garbage(directory("3d") + QStringLiteral("/HAL260714130000.CAPZ"));
    ASSERT_TRUE(garbage.open(QIODevice::WriteOnly));
    garbage.write(QByteArray(5000, 'x'));
    garbage.close();
    writeVolume("HALMERA", 5);
    ASSERT_TRUE(waitForMinute(5));
    EXPECT_EQ(minutesOfFrames(), (QVector<int>{0, 5}));
}

TEST_F(TORVGUILiveTest, LeavesProductsOfUnknownQuantitiesOut)
{
    writeVolume("HALMERA", 0);
    writeVolume("HALMERA", 0, 12, "CAPX");
    configureLive();
    openAndWait(1);
    EXPECT_EQ(entries(window->comboBox_3DProduct), (QStringList{QStringLiteral("Reflectivity")}));
}

TEST_F(TORVGUILiveTest, RemembersItsModeForTheNextStart)
{
    writeVolume("HALMERA", 0);
    configure();
    open();
    ASSERT_TRUE(waitFor([this] { return !window->isBusy(); }));
    choose(window->comboBox_liveMode, QStringLiteral("Live"));
    EXPECT_TRUE(history().contains(QStringLiteral("Changed to live mode.")));
    EXPECT_TRUE(TORVGeneralSettings().isLiveMode());
    EXPECT_TRUE(window->comboBox_liveMode->property("live").toBool());
    choose(window->comboBox_liveMode, QStringLiteral("Archive"));
    EXPECT_TRUE(history().contains(QStringLiteral("Changed to archive mode.")));
    EXPECT_FALSE(TORVGeneralSettings().isLiveMode());
}

TEST_F(TORVGUILiveTest, LeavesAViewAloneWhenItsModeIsChosenAgain)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    const int lines = history().size();
    choose(window->comboBox_liveMode, QStringLiteral("Live"));
    EXPECT_EQ(history().size(), lines);
}

TEST_F(TORVGUILiveTest, WritesTheCenturyOfOldStamps)
{
    TORVProductFields fields = fieldsOf("HALMERA", 0);
    fields.dataYear = 1970;
    fields.dataMonth = 1;
    fields.dataDay = 2;
    ProductFiles files;
    const QString written = files.write(QStringLiteral("HAL700102030405.CAPZ"), fields, ProductFiles::zeros(fields));
    ASSERT_TRUE(QFile::rename(written, directory("3d") + QStringLiteral("/HAL700102030405.CAPZ")));
    configureLive();
    openAndWait(1);
    EXPECT_TRUE(history().contains(QStringLiteral("- 1970-01-02 03:04:05 HALMERA/CAPPI/Z")));
}
