// What a change of products, of the time window and of settings does to the frames that stay.
#include "AnimationTest.h"

#include "datalib/TORVTerrainSet.h"
#include "settings/TORVProductSettings.h"

#include <QFile>

namespace
{

class TORVAnimationParamsTest : public AnimationTest
{
protected:
    TORVAnimationParamsTest() { startLog(); }

    QString addFlat(int seconds, Product product) const
    {
        return add2d(keyAt(seconds), flat("HALMERA", product, Z, seconds));
    }

    QString lastType() const { return lastLogged("update type = ").mid(3); }

    QString flatOf(int index) const
    {
        const TORVFileLeaf::Ptr leaf = animation.getDataFrameByIndex(index)->getData2d();
        return leaf ? leaf->getProduct() : QStringLiteral("none");
    }

    QString configurationOf(int index) const
    {
        return animation.getDataFrameByIndex(index)->getData3d()->getConfiguration();
    }
};

} // namespace

TEST_F(TORVAnimationParamsTest, AnotherFlatProductKeepsTheFrames)
{
    addVolumes({-600, 0});
    addFlat(-600, MAX);
    addFlat(0, MAX);
    addFlat(0, PPI);
    open();
    Request request;
    request.product2d = QStringLiteral("MAX");
    update(request);
    animation.goToFrame(0);
    const TORVAnimation::Frames frames = animation.getFrames();
    EXPECT_EQ(flatOf(0), QLatin1String("MAX"));
    EXPECT_FALSE(animation.updateParams2d(QStringLiteral("PPI")));
    EXPECT_EQ(lastType(), QLatin1String("update type = UPDATE_PARAMS"));
    EXPECT_EQ(lastLogged("framesUpdated="), QLatin1String("D: framesUpdated=2"));
    EXPECT_EQ(animation.getFrames(), frames);
    EXPECT_EQ(animation.getCurrentIndex(), 0);
    EXPECT_EQ(flatOf(0), QLatin1String("none"));
    EXPECT_EQ(flatOf(1), QLatin1String("PPI"));
    EXPECT_FALSE(animation.updateParams2d(QStringLiteral("PPI")));
    EXPECT_EQ(lastType(), QLatin1String("update type = UPDATE_NONE"));
}

TEST_F(TORVAnimationParamsTest, AnotherTimeWindowReachesEveryFrame)
{
    addVolumes({-600, 0});
    addFlat(200, MAX);
    observer.general->setTimeWindow(300);
    open();
    Request request;
    request.product2d = QStringLiteral("MAX");
    update(request);
    const TORVAnimation::Frames frames = animation.getFrames();
    EXPECT_EQ(animation.getDataFrameByIndex(0)->getTimeWindow(), 300);
    EXPECT_EQ(flatOf(1), QLatin1String("none")) << "half of the window is 150 s";
    observer.general->setTimeWindow(600);
    EXPECT_FALSE(update(request));
    EXPECT_EQ(lastType(), QLatin1String("update type = UPDATE_PARAMS"));
    EXPECT_EQ(animation.getFrames(), frames);
    EXPECT_EQ(animation.getDataFrameByIndex(0)->getTimeWindow(), 600);
    EXPECT_EQ(animation.getDataFrameByIndex(0)->getMoment(), keyAt(-600));
    EXPECT_EQ(flatOf(1), QLatin1String("MAX"));
}

TEST_F(TORVAnimationParamsTest, AReusedFrameTakesAnotherTimeWindowToo)
{
    addVolumes({0});
    open();
    update();
    observer.general->setTimeWindow(900);
    Request request;
    request.live = true;
    update(request);
    EXPECT_EQ(animation.getDataFrameByIndex(0)->getTimeWindow(), 900);
}

TEST_F(TORVAnimationParamsTest, ALateFlatFileIsFoundByALiveRequest)
{
    addVolumes({0});
    open();
    Request request;
    request.product2d = QStringLiteral("MAX");
    request.live = true;
    update(request);
    EXPECT_EQ(flatOf(0), QLatin1String("none"));
    addFlat(0, MAX);
    ASSERT_TRUE(waitFor([this] { return !store->getDirTop2d()->findLeaves("*", "*", "*", "*")->isEmpty(); }));
    update(request);
    EXPECT_EQ(lastLogged("framesReused="), QLatin1String("D: framesReused=1"));
    EXPECT_EQ(flatOf(0), QLatin1String("MAX"));
}

TEST_F(TORVAnimationParamsTest, AFrameWithoutAChosenFlatProductKeepsItsOwnWhenItIsReused)
{
    addVolumes({0});
    addFlat(0, MAX);
    open();
    update();
    EXPECT_EQ(flatOf(0), QLatin1String("MAX"));
    Request request;
    request.live = true;
    update(request);
    EXPECT_EQ(lastLogged("framesReused="), QLatin1String("D: framesReused=1"));
    EXPECT_EQ(animation.getDataFrameByIndex(0)->getProduct2d(), QLatin1String("MAX"));
    EXPECT_EQ(flatOf(0), QLatin1String("MAX"));
}

TEST_F(TORVAnimationParamsTest, AnotherQuantityOfTheSameTimeIsTakenByTheFrameThatIsThere)
{
    addVolumes({-600, 0});
    add3d(QStringLiteral("260714115001"), volume("HALMERA", V, -600)); // under a key of its own
    add3d(QStringLiteral("260714120002"), volume("HALMERA", V, 0));
    open();
    update();
    animation.goToFrame(0);
    const TORVAnimation::Frames frames = animation.getFrames();
    const auto scene = animation.getVisualizationByIndex(0);
    EXPECT_TRUE(animation.updateParams3d(QStringLiteral("CAPPI"), QStringLiteral("V")));
    EXPECT_EQ(lastType(), QLatin1String("update type = UPDATE_PARTIAL"));
    EXPECT_EQ(lastLogged("framesReused="), QLatin1String("D: framesReused=2"));
    EXPECT_EQ(animation.getFrames(), frames);
    EXPECT_EQ(animation.getVisualizationByIndex(0), scene);
    EXPECT_EQ(animation.getCurrentIndex(), 0);
    EXPECT_EQ(configurationOf(0), QLatin1String("V"));
    EXPECT_EQ(animation.getDataFrameByIndex(1)->getMoment(), QLatin1String("260714120002"));
    EXPECT_EQ(animation.getDataFrameByIndex(1)->getProductSettings()->getConfiguration(), QLatin1String("V"));
}

// The window offers the velocity of half a minute later for the volume on show.
TEST_F(TORVAnimationParamsTest, AnotherQuantityMayBeYoungerThanTheEndByAPartOfTheTimeWindow)
{
    addVolumes({-600, 0});
    addVolume(-570, V);
    addVolume(30, V);
    addVolume(330, V);
    observer.general->setTimeWindow(120);
    open();
    update();
    EXPECT_TRUE(animation.updateParams3d(QStringLiteral("CAPPI"), QStringLiteral("V")));
    EXPECT_EQ(times(), (QVector<qint64>{-570, 30}));
    EXPECT_EQ(animation.getCurrentIndex(), 1);
    EXPECT_TRUE(animation.updateParams3d(QStringLiteral("CAPPI"), QStringLiteral("Z")));
    EXPECT_EQ(times(), (QVector<qint64>{-600, 0}));
}

TEST_F(TORVAnimationParamsTest, AQuantityBeyondTheTimeWindowLeavesTheEndWhereItIs)
{
    addVolumes({0});
    addVolume(-300, V);
    addVolume(61, V);
    observer.general->setTimeWindow(120);
    open();
    update();
    EXPECT_TRUE(animation.updateParams3d(QStringLiteral("CAPPI"), QStringLiteral("V")));
    EXPECT_EQ(times(), (QVector<qint64>{-300}));
}

TEST_F(TORVAnimationParamsTest, TheEndStaysWhereItIsWhenTheMatchIsOfAnOlderFrame)
{
    addVolumes({-600, 0});
    addVolume(-570, V);
    addVolume(0, V);
    observer.general->setTimeWindow(120);
    open();
    update();
    animation.goToFrame(0);
    EXPECT_TRUE(animation.updateParams3d(QStringLiteral("CAPPI"), QStringLiteral("V")));
    EXPECT_EQ(times(), (QVector<qint64>{-570, 0}));
    EXPECT_EQ(animation.getCurrentIndex(), 0);
}

TEST_F(TORVAnimationParamsTest, AVolumeThatCameAnewUnderTheSameKeysMakesANewFrame)
{
    const QString path = addVolume(0);
    open();
    update();
    const TORVAnimation::FramePtr before = animation.getFrameByIndex(0);
    const auto key = keyAt(0).toLatin1();
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(waitFor([&] { return !leaf3d(key.constData()); }));
    Request request;
    request.live = true;
    addVolume(0);
    ASSERT_TRUE(waitFor([&] { return leaf3d(key.constData()) != nullptr; }));
    update(request);
    ASSERT_EQ(animation.getFrameCount(), 1);
    EXPECT_NE(animation.getFrameByIndex(0), before);
    EXPECT_EQ(animation.getDataFrameByIndex(0)->getData3d(), leaf3d(key.constData()));
}

TEST_F(TORVAnimationParamsTest, AVolumeThatHasGoneLeavesTheSequenceAtTheNextLiveRequest)
{
    const QString path = addVolume(-600);
    addVolume(0);
    open();
    update();
    const auto key = keyAt(-600).toLatin1();
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(waitFor([&] { return !leaf3d(key.constData()); }));
    EXPECT_FALSE(animation.updateParams2d(QStringLiteral("MAX"))) << "what was chosen stays good";
    EXPECT_EQ(animation.getFrameCount(), 2);
    animation.updateProductSettings();
    Request request;
    request.live = true;
    update(request);
    EXPECT_EQ(times(), (QVector<qint64>{0}));
}

TEST_F(TORVAnimationParamsTest, ProductSettingsAreLoadedAnewForEveryFrame)
{
    addVolumes({-600, 0});
    open();
    update();
    const auto before = animation.getDataFrameByIndex(0)->getProductSettings();
    TORVProductSettings changed(QStringLiteral("CAPPI"), QStringLiteral("Z"), TORVDataType(Z));
    changed.setSurfaces({{42.0, 70}});
    changed.save();
    animation.updateProductSettings();
    for (int index = 0; index < 2; ++index) {
        const auto settings = animation.getDataFrameByIndex(index)->getProductSettings();
        EXPECT_NE(settings, before);
        EXPECT_EQ(settings->getSurfaces(), (QMap<double, int>{{42.0, 70}}));
    }
}

TEST_F(TORVAnimationParamsTest, FramesOfARadarShareTheGroundThatIsRenewed)
{
    addVolumes({-600, 0});
    open();
    update();
    const auto ground = animation.getDataFrameByIndex(0)->getTerrainSet();
    const auto landmarks = animation.getDataFrameByIndex(0)->getLandmarkSet();
    ASSERT_TRUE(ground);
    EXPECT_EQ(animation.getDataFrameByIndex(1)->getTerrainSet(), ground);
    store->getTerrainDir()->scanFiles();
    animation.renewTerrain();
    const auto renewed = animation.getDataFrameByIndex(0)->getTerrainSet();
    ASSERT_TRUE(renewed);
    EXPECT_NE(renewed, ground);
    EXPECT_EQ(animation.getDataFrameByIndex(1)->getTerrainSet(), renewed);
    EXPECT_EQ(animation.getDataFrameByIndex(0)->getLandmarkSet(), landmarks);
}
