#include "visualization/TORVVisualizationPipeline.h"

#include "settings/TORVLayerParameters.h"
#include "support/LogFile.h"
#include "support/ProductFiles.h"
#include "support/SandboxedHome.h"
#include "utils/TORVLog.h"

#include <QtTest>

#include <gtest/gtest.h>

#include <vtkDataSet.h>
#include <vtkPropCollection.h>

#include <boost/make_shared.hpp>

namespace
{

constexpr int Patience_ms = 60000;

class TORVVisualizationPipelineTest : public testing::Test
{
protected:
    using Item = TORVVisualizationPipelineItem;

    TORVVisualizationPipelineTest()
    {
        QObject::connect(&pipeline, &TORVVisualizationPipeline::allDone, &receiver, [this] { ++allDone; });
    }

    Item::Ptr item(bool isProductVisible = true)
    {
        TORVDisplayState state;
        state.getLayer(12)->setEnabled(isProductVisible);
        auto made = boost::make_shared<Item>(boost::make_shared<TORVDisplayState>());
        made->getDisplayState()->copyState(state);
        auto params = boost::make_shared<TORVLayerParameters3d>();
        params->setDataFile(file());
        params->setDataShrinkH(1);
        params->setSurfacePars({{20.0, 100}});
        made->getDisplayState()->getGroup(10)->setParameters(boost::make_shared<TORVLayerParameters>());
        made->getDisplayState()->getLayer(12)->setParameters(params);
        return made;
    }

    TORVFile::CPtr file()
    {
        const TORVProductFields fields = ProductFiles::small();
        const auto block = [](int x, int, int) { return x == 1 ? 200U : 0U; };
        return TORVFile::openChecked(
            files.write(QStringLiteral("HAL260714120000.CAPZ"), fields, ProductFiles::data(fields, block)));
    }

    bool waitForDone(int count)
    {
        return QTest::qWaitFor([&] { return allDone >= count; }, Patience_ms);
    }

    static int parts(const Item& item) { return item.getResults()->GetParts()->GetNumberOfItems(); }

    static void run(Item& item)
    {
        const std::atomic<bool> abort{false};
        item.update(abort);
        item.readResults();
    }

    SandboxedHome home;
    ProductFiles files;
    QObject receiver;
    int allDone = 0;
    TORVVisualizationPipeline pipeline;
};

} // namespace

TEST_F(TORVVisualizationPipelineTest, HasNoResultAtFirst)
{
    EXPECT_FALSE(pipeline.getResultItem());
    EXPECT_FALSE(pipeline.isRunning());
}

TEST_F(TORVVisualizationPipelineTest, StopsBeforeItHasEverRun)
{
    pipeline.stop();
    pipeline.stop();
    EXPECT_FALSE(pipeline.isRunning());
}

TEST_F(TORVVisualizationPipelineTest, BringsBackWhatItWasGiven)
{
    const Item::Ptr given = item();
    pipeline.addInput(given);
    ASSERT_TRUE(waitForDone(1));
    EXPECT_FALSE(given->isBusy());
    EXPECT_EQ(pipeline.getResultItem(), given);
    EXPECT_FALSE(pipeline.getResultItem());
    EXPECT_EQ(parts(*given), 1);
    EXPECT_TRUE(given->getVTKDataSet());
}

TEST_F(TORVVisualizationPipelineTest, FinishesItemsInTheOrderOfTheirEntry)
{
    const Item::Ptr first = item();
    const Item::Ptr second = item();
    const Item::Ptr third = item();
    pipeline.addInput(first);
    pipeline.addInput(second);
    pipeline.addInput(third);
    ASSERT_TRUE(waitForDone(3));
    EXPECT_EQ(pipeline.getResultItem(), first);
    EXPECT_EQ(pipeline.getResultItem(), second);
    EXPECT_EQ(pipeline.getResultItem(), third);
    EXPECT_EQ(allDone, 3);
}

TEST_F(TORVVisualizationPipelineTest, StopsWhileItWaits)
{
    pipeline.addInput(item());
    ASSERT_TRUE(waitForDone(1));
    pipeline.stop();
    EXPECT_FALSE(pipeline.isRunning());
}

TEST_F(TORVVisualizationPipelineTest, StopsAtAnyMoment)
{
    for (int i = 0; i < 50; ++i) {
        TORVVisualizationPipeline other;
        other.addInput(item());
        if (i % 2 == 0) {
            std::this_thread::yield();
        }
        other.stop();
        EXPECT_FALSE(other.isRunning());
    }
}

TEST_F(TORVVisualizationPipelineTest, LetsWhatComesAfterAnAbortThroughUntouched)
{
    const Item::Ptr given = item();
    pipeline.abort();
    pipeline.addInput(given);
    ASSERT_TRUE(waitForDone(1));
    EXPECT_FALSE(given->isBusy());
    EXPECT_FALSE(pipeline.getResultItem());
    EXPECT_FALSE(given->getResults());
}

TEST_F(TORVVisualizationPipelineTest, AnItemThatIsQueuedMayNotBeQueuedAgain)
{
    const Item::Ptr given = item();
    given->setBusy(true);
    EXPECT_DEATH(pipeline.addInput(given), "isBusy");
}

TEST_F(TORVVisualizationPipelineTest, AnItemCanRunAgainAndKeepsWhatHasNotChanged)
{
    const Item::Ptr given = item();
    run(*given);
    const auto assembly = given->getResults();
    const auto prop = given->getDisplayState()->getLayer(12)->getElement()->getProp();
    given->releaseReplaced();
    run(*given);
    EXPECT_NE(given->getResults(), assembly); // the old one can still be drawn
    EXPECT_EQ(assembly->GetParts()->GetNumberOfItems(), 1);
    EXPECT_EQ(given->getDisplayState()->getLayer(12)->getElement()->getProp(), prop);
}

TEST_F(TORVVisualizationPipelineTest, KeepsWhatItReplacedForTheMainThread)
{
    const Item::Ptr given = item();
    run(*given);
    vtkProp* const old = given->getDisplayState()->getLayer(12)->getElement()->getProp();
    given->getDisplayState()->getLayer(12)->setParameters({});
    run(*given);
    EXPECT_FALSE(given->getDisplayState()->getLayer(12)->getElement()->getProp());
    EXPECT_GE(old->GetReferenceCount(), 1); // would be a use after free otherwise
    given->releaseReplaced();
}

TEST_F(TORVVisualizationPipelineTest, HasNoPropsOfAHiddenGroup)
{
    const Item::Ptr given = item();
    given->getDisplayState()->getGroup(10)->setEnabled(false);
    run(*given);
    EXPECT_EQ(parts(*given), 0);
    EXPECT_TRUE(given->getDisplayState()->getLayer(12)->getElement()); // a forced run must reach it
}

TEST_F(TORVVisualizationPipelineTest, HasAnEmptyAssemblyOfHiddenLayers)
{
    const Item::Ptr given = item(false);
    run(*given);
    ASSERT_TRUE(given->getResults());
    EXPECT_EQ(parts(*given), 0);
}

TEST_F(TORVVisualizationPipelineTest, DrawsWhatLiesFlatFirstAndWhatMarksPlacesLast)
{
    const int keys[] = {41, 13, 42, 44, 12, 43, 11};
    for (std::size_t i = 1; i < std::size(keys); ++i) {
        EXPECT_LT(Item::drawingOrderOf(keys[i - 1]), Item::drawingOrderOf(keys[i])) << keys[i];
    }
    EXPECT_EQ(Item::drawingOrderOf(41), 0);
    EXPECT_EQ(Item::drawingOrderOf(11), 301);
}

TEST_F(TORVVisualizationPipelineTest, TakesOverWhatTheUserChose)
{
    const auto state = boost::make_shared<TORVDisplayState>();
    state->getLayer(44)->setEnabled(false);
    state->getLayer(12)->setOpacity(40);
    const Item given(state);
    EXPECT_FALSE(given.getDisplayState()->getLayer(44)->isEnabled());
    EXPECT_EQ(given.getDisplayState()->getLayer(12)->getOpacity(), 40);
    EXPECT_NE(given.getDisplayState(), state);
    EXPECT_FALSE(given.isBusy());
    EXPECT_FALSE(given.getResults());
    EXPECT_FALSE(given.getVTKDataSet());
}

TEST_F(TORVVisualizationPipelineTest, HidesTheDatasetOfABusyItem)
{
    const Item::Ptr given = item();
    run(*given);
    EXPECT_TRUE(given->getVTKDataSet());
    given->setBusy(true);
    EXPECT_FALSE(given->getVTKDataSet());
}

TEST_F(TORVVisualizationPipelineTest, SaysHowLongEachLayerTook)
{
    const Item::Ptr given = item();
    const LogFile log(TORVLog::LEVEL_DEBUG);
    run(*given);
    const QStringList lines = log.lines();
    EXPECT_EQ(lines.first(), QStringLiteral("D: group GROUP_RADARLAYERS (10)-->"));
    EXPECT_TRUE(lines.contains(QStringLiteral("D: layer LAYER_3DPRODUCT (12)-->")));
    const QRegularExpression layer(QStringLiteral(R"(^D: <--layer LAYER_3DPRODUCT \(12\): \d+\.\d{3} seconds\.$)"));
    EXPECT_EQ(lines.filter(layer).size(), 1);
    const QRegularExpression group(QStringLiteral(R"(^D: <--group GROUP_GEOLAYERS \(40\): \d+\.\d{3} seconds\.$)"));
    EXPECT_EQ(lines.filter(group).size(), 1);
    EXPECT_TRUE(lines.contains(QStringLiteral("D: Add prop: order=200, layer: LAYER_3DPRODUCT")));
    EXPECT_TRUE(lines.contains(QStringLiteral("D: Add res: order=200")));
}
