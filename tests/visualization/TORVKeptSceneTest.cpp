// A frame has a scene of its own, which stays as it is while other frames are shown.
#include "SceneTest.h"

#include "settings/TORVDisplayLayer.h"

#include <vtkDataSet.h>
#include <vtkProp.h>
#include <vtkWeakPointer.h>

#include <map>

namespace
{

class TORVKeptSceneTest : public SceneTest
{
protected:
    using Props = std::map<int, vtkSmartPointer<vtkProp>>; // by the keys of their layers

    TORVKeptSceneTest() : SceneTest({{30.0, 100}})
    {
        add("260714120000", grid(), block);
        add("260714120500", grid(), block);
        data = frame("260714120000");
    }

    static TORVProductFields grid()
    {
        TORVProductFields fields = ProductFiles::small();
        fields.siteName = "HALMERA";
        fields.xPoints = fields.yPoints = 32;
        fields.zPoints = 8;
        fields.xScale = fields.yScale = 100000;
        return fields;
    }

    static unsigned int block(int x, int y, int z)
    {
        return std::abs(x - 15) <= 4 && std::abs(y - 7) <= 4 && std::abs(z - 3) <= 1 ? 184U : 0U;
    }

    // What the run has logged is in `lines`.
    void show()
    {
        const int mark = static_cast<int>(log.lines().size());
        const int before = observer.finished;
        visualization.setSourceData(data);
        visualization.updateVisualization(false);
        ASSERT_TRUE(waitForFinished(before + 1));
        lines = linesSince(mark);
    }

    // As a request does that finds the frame in the sequence.
    void reuse()
    {
        data->setMoment(data->getMoment(), data->getTimeWindow());
        data->setDataParams3d(data->getProduct(), data->getConfiguration());
        data->setDataParams2d(data->getProduct2d());
        ASSERT_TRUE(data->updateData3d());
        data->updateDataRest();
    }

    Props props() const
    {
        Props result;
        for (const TORVDisplayGroup::Ptr& group : visualization.getResultItem()->getDisplayState()->getMembers()) {
            for (const TORVDisplayLayer::Ptr& layer : group->getMembers()) {
                result[layer->getKey()] = layer->getElement()->getProp();
            }
        }
        return result;
    }

    int count(const char* words) const { return static_cast<int>(lines.filter(QLatin1String(words)).size()); }

    void expectNothingBuilt() const
    {
        EXPECT_EQ(count("::update(): "), 7) << qUtf8Printable(lines.join('\n'));
        EXPECT_EQ(count("::update(): No need to update."), 6);
        EXPECT_EQ(count("TORV2DVisualElement::update(): layer parameters not set."), 1);
        EXPECT_EQ(count("Running algorithm.."), 0);
        EXPECT_EQ(count("Reading data: "), 0);
    }

    TORVDataFrame::Ptr data;
    TORVVisualization visualization{&observer};
    QStringList lines;
};

} // namespace

TEST_F(TORVKeptSceneTest, ASecondShowingBuildsNothing)
{
    show();
    const Props built = props();
    const TORVVisualization::ItemPtr item = visualization.getResultItem();
    EXPECT_EQ(count("Creating new  visualization.") + count("Creating new visualization."), 6);
    show();
    expectNothingBuilt();
    EXPECT_EQ(props(), built);
    EXPECT_EQ(visualization.getResultItem(), item);
}

TEST_F(TORVKeptSceneTest, SettingsThatAreLoadedAnewButSayTheSameBuildNothing)
{
    show();
    const Props built = props();
    const auto before = data->getProductSettings();
    reuse();
    data->updateProductSettings();
    ASSERT_NE(data->getProductSettings(), before);
    observer.general = boost::make_shared<TORVGeneralSettings>(*observer.general);
    show();
    expectNothingBuilt();
    EXPECT_EQ(count("No changes!"), 1);
    EXPECT_EQ(props(), built);
}

TEST_F(TORVKeptSceneTest, OnlyTheLayerWhoseSettingsSayAnotherThingIsBuilt)
{
    show();
    const Props built = props();
    TORVProductSettings changed(*data->getProductSettings());
    changed.setSurfaces({{35.0, 100}});
    changed.save();
    reuse();
    show();
    for (const auto& [key, prop] : props()) {
        EXPECT_EQ(prop == built.at(key), key != TORVDisplayLayer::LAYER_3DPRODUCT) << key;
    }
}

TEST_F(TORVKeptSceneTest, WhatARunReplacesGoesWhenTheSceneIsFinished)
{
    show();
    const vtkWeakPointer<vtkProp> before = props()[TORVDisplayLayer::LAYER_3DPRODUCT].GetPointer();
    TORVProductSettings changed(*data->getProductSettings());
    changed.setSurfaces({{35.0, 100}});
    changed.save();
    reuse();
    show();
    EXPECT_FALSE(before);
}

// At least the image of the volume, a byte a point; another layer on adds what it draws.
TEST_F(TORVKeptSceneTest, CountsItsMemoryWhenItIsFinished)
{
    EXPECT_EQ(visualization.getMemoryBytes(), 0);
    showProductAlone();
    show();
    const qint64 productAlone = visualization.getMemoryBytes();
    EXPECT_GE(productAlone, 32 * 32 * 8);
    data = frame("260714120500");
    show();
    EXPECT_EQ(visualization.getMemoryBytes(), productAlone);
    visualization.resetVisualization();
    EXPECT_EQ(visualization.getMemoryBytes(), 0);
}

TEST_F(TORVKeptSceneTest, LetsGoOfWhatItHasDrawnWhenItIsReset)
{
    show();
    std::vector<vtkWeakPointer<vtkProp>> watched;
    for (const auto& entry : props()) {
        if (entry.second) {
            watched.emplace_back(entry.second);
        }
    }
    const vtkWeakPointer<vtkDataSet> image = visualization.getVTKDataSet();
    ASSERT_EQ(watched.size(), 6U);
    ASSERT_TRUE(image);
    visualization.resetVisualization();
    for (const auto& prop : watched) {
        EXPECT_FALSE(prop);
    }
    EXPECT_FALSE(image);
    show();
    EXPECT_TRUE(visualization.getVTKDataSet());
}
