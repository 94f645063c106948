#include "gui/TORVSceneCache.h"

#include "visualization/SceneTest.h"

#include <QFile>
#include <QRegularExpression>

namespace
{

class TORVSceneCacheTest : public SceneTest
{
protected:
    TORVSceneCacheTest() : SceneTest({{30.0, 100}})
    {
        showProductAlone();
        for (const char* const key : Keys) {
            add(key, grid(), [](int x, int y, int z) { return x == 9 && y == 9 && z == 3 ? 184U : 0U; });
        }
    }

    static TORVProductFields grid()
    {
        TORVProductFields fields = ProductFiles::small();
        fields.siteName = "HALMERA";
        fields.xPoints = fields.yPoints = 64;
        fields.zPoints = 8;
        return fields;
    }

    // Asks for the scene of a frame, as the window does.
    void start(const TORVVisualization::Ptr& scene, const TORVDataFrame::Ptr& data)
    {
        scene->setSourceData(data);
        scene->updateVisualization(false);
    }

    void show(const TORVVisualization::Ptr& scene, const TORVDataFrame::Ptr& data)
    {
        const int before = observer.finished;
        start(scene, data);
        ASSERT_TRUE(waitForFinished(before + 1));
    }

    // Three finished scenes of the same size.
    std::vector<TORVVisualization::Ptr> threeScenes()
    {
        std::vector<TORVVisualization::Ptr> scenes;
        for (const char* const key : Keys) {
            scenes.push_back(boost::make_shared<TORVVisualization>(&observer));
            show(scenes.back(), frame(key));
        }
        EXPECT_EQ(scenes[0]->getMemoryBytes(), scenes[1]->getMemoryBytes());
        EXPECT_EQ(scenes[0]->getMemoryBytes(), scenes[2]->getMemoryBytes());
        return scenes;
    }

    static bool isKept(const TORVVisualization::Ptr& scene) { return scene->getResultItem() != nullptr; }

    static constexpr const char* Keys[] = {"260714120000", "260714120500", "260714121000"};
    static constexpr qint64 Image = 64 * 64 * 8; // bytes at least
};

// Without data of theirs no scene is above the limit of nothing.
constexpr qint64 Nothing = 0;

} // namespace

TEST_F(TORVSceneCacheTest, TakesAQuarterOfTheMachinesMemoryByDefault)
{
    QFile file(QStringLiteral("/proc/meminfo"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto match = QRegularExpression(QStringLiteral("MemTotal: *(\\d+) kB")).match(QString(file.readAll()));
    ASSERT_TRUE(match.hasMatch());
    const qint64 quarter = match.captured(1).toLongLong() * 1024 / 4;
    EXPECT_NEAR(static_cast<double>(TORVSceneCache::defaultLimit()), static_cast<double>(quarter),
                0.01 * static_cast<double>(quarter));
    EXPECT_EQ(TORVSceneCache().getLimit(), TORVSceneCache::defaultLimit());
    EXPECT_EQ(TORVSceneCache(1234).getLimit(), 1234);
}

TEST_F(TORVSceneCacheTest, CountsFinishedScenesOnly)
{
    TORVSceneCache cache;
    const auto scene = boost::make_shared<TORVVisualization>(&observer);
    cache.use(scene);
    EXPECT_EQ(cache.getUsedBytes(), 0);
    EXPECT_EQ(cache.getKeptCount(), 0);
    start(scene, frame(Keys[0]));
    EXPECT_EQ(cache.getUsedBytes(), 0);
    ASSERT_TRUE(waitForFinished(1));
    EXPECT_GE(cache.getUsedBytes(), Image);
    EXPECT_EQ(cache.getUsedBytes(), scene->getMemoryBytes());
    EXPECT_EQ(cache.getKeptCount(), 1);
}

TEST_F(TORVSceneCacheTest, CountsASceneOnce)
{
    const auto scene = boost::make_shared<TORVVisualization>(&observer);
    show(scene, frame(Keys[0]));
    TORVSceneCache cache;
    cache.use(scene);
    cache.use(scene);
    EXPECT_EQ(cache.getUsedBytes(), scene->getMemoryBytes());
    EXPECT_EQ(cache.getKeptCount(), 1);
}

TEST_F(TORVSceneCacheTest, KeepsAllThatFits)
{
    const auto scenes = threeScenes();
    TORVSceneCache cache(3 * scenes[0]->getMemoryBytes());
    for (const auto& scene : scenes) {
        cache.use(scene);
    }
    cache.trim(scenes[2]);
    EXPECT_EQ(cache.getKeptCount(), 3);
    EXPECT_EQ(cache.getUsedBytes(), cache.getLimit());
}

TEST_F(TORVSceneCacheTest, EmptiesTheSceneThatWasUnusedLongest)
{
    const auto scenes = threeScenes();
    TORVSceneCache cache(3 * scenes[0]->getMemoryBytes() - 1);
    for (const auto& scene : scenes) {
        cache.use(scene);
    }
    cache.use(scenes[0]);
    cache.trim(scenes[0]);
    EXPECT_TRUE(isKept(scenes[0]));
    EXPECT_FALSE(isKept(scenes[1]));
    EXPECT_TRUE(isKept(scenes[2]));
    EXPECT_EQ(scenes[1]->getMemoryBytes(), 0);
    EXPECT_EQ(cache.getKeptCount(), 2);
    EXPECT_EQ(cache.getUsedBytes(), 2 * scenes[0]->getMemoryBytes());
}

TEST_F(TORVSceneCacheTest, NeverEmptiesTheSceneOnShow)
{
    const auto scenes = threeScenes();
    TORVSceneCache cache(Nothing);
    for (const auto& scene : scenes) {
        cache.use(scene);
    }
    cache.trim(scenes[0]);
    EXPECT_TRUE(isKept(scenes[0]));
    EXPECT_FALSE(isKept(scenes[1]));
    EXPECT_FALSE(isKept(scenes[2]));
    cache.trim(nullptr);
    EXPECT_FALSE(isKept(scenes[0]));
    EXPECT_EQ(cache.getUsedBytes(), 0);
}

TEST_F(TORVSceneCacheTest, NeverEmptiesASceneThatIsBeingBuilt)
{
    const auto scenes = threeScenes();
    TORVSceneCache cache(Nothing);
    for (const auto& scene : scenes) {
        cache.use(scene);
    }
    start(scenes[1], frame(Keys[2]));
    ASSERT_TRUE(scenes[1]->isGenerating());
    cache.trim(nullptr);
    EXPECT_EQ(cache.getKeptCount(), 1);
    ASSERT_TRUE(waitForFinished(4));
    EXPECT_TRUE(isKept(scenes[1]));
}

TEST_F(TORVSceneCacheTest, AnEmptiedSceneCanBeShownAgain)
{
    const auto scene = boost::make_shared<TORVVisualization>(&observer);
    const TORVDataFrame::Ptr data = frame(Keys[0]);
    show(scene, data);
    const qint64 bytes = scene->getMemoryBytes();
    TORVSceneCache cache(Nothing);
    cache.use(scene);
    cache.trim(nullptr);
    ASSERT_FALSE(isKept(scene));
    EXPECT_FALSE(scene->getVTKDataSet());
    EXPECT_FALSE(scene->getDataFrame());
    show(scene, data);
    EXPECT_TRUE(isKept(scene));
    EXPECT_TRUE(scene->getVTKDataSet());
    EXPECT_EQ(scene->getMemoryBytes(), bytes);
    EXPECT_EQ(cache.getUsedBytes(), bytes);
}

TEST_F(TORVSceneCacheTest, HoldsNoScene)
{
    auto scene = boost::make_shared<TORVVisualization>(&observer);
    show(scene, frame(Keys[0]));
    const boost::weak_ptr<TORVVisualization> watched = scene;
    TORVSceneCache cache(Nothing);
    cache.use(scene);
    scene.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(cache.getUsedBytes(), 0);
    EXPECT_EQ(cache.getKeptCount(), 0);
    cache.trim(nullptr);
}
