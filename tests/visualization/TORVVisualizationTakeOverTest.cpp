// What a change of frame costs at one site: what doesn't depend on the moment stays as it is.
#include "SceneTest.h"

#include "datalib/TORVLandmarkSet.h"
#include "datalib/TORVTerrainSet.h"
#include "settings/TORVDisplayLayer.h"

#include <vtkProp.h>

namespace
{

class TORVVisualizationTakeOverTest : public SceneTest
{
protected:
    TORVVisualizationTakeOverTest() : SceneTest({{30.0, 100}}) {}

    static TORVProductFields grid()
    {
        TORVProductFields fields = ProductFiles::small();
        fields.siteName = "HALMERA";
        fields.xPoints = 21;
        fields.yPoints = 21;
        fields.zPoints = 6;
        fields.xScale = 100000;
        fields.yScale = 100000;
        fields.zScale = 50000;
        fields.xRadar = 10000;
        fields.yRadar = 10000;
        return fields;
    }

    void addMoment(const char* key, int column)
    {
        add(key, grid(), [column](int x, int y, int z) {
            return std::abs(x - column) <= 1 && std::abs(y - 7) <= 1 && std::abs(z - 3) <= 1 ? 184U : 0U;
        });
    }

    // Shows the frame and waits for it. What the run has logged is in `lines`.
    void show(const TORVDataFrame::Ptr& data)
    {
        const int mark = static_cast<int>(log.lines().size());
        visualization.setSourceData(data);
        visualization.updateVisualization(false);
        ASSERT_TRUE(waitForFinished(++shown));
        lines = linesSince(mark);
    }

    vtkSmartPointer<vtkProp> prop(int key) const
    {
        return visualization.getResultItem()->getDisplayState()->getLayer(key)->getElement()->getProp();
    }

    bool says(const char* words) const { return lines.filter(QLatin1String(words)).size() == 1; }

    TORVVisualization visualization{&observer};
    QStringList lines;
    int shown = 0;
};

} // namespace

TEST_F(TORVVisualizationTakeOverTest, TheGroundStaysWhenTheMomentChanges)
{
    addMoment("260714120000", 5);
    addMoment("260714120500", 15);
    const TORVDataFrame::Ptr first = frame("260714120000");
    const TORVDataFrame::Ptr second = frame("260714120500");
    show(first);
    ASSERT_TRUE(first->getTerrainSet());
    const vtkSmartPointer<vtkProp> ground = prop(TORVDisplayLayer::LAYER_3DTERRAIN);
    const vtkSmartPointer<vtkProp> product = prop(TORVDisplayLayer::LAYER_3DPRODUCT);
    ASSERT_TRUE(ground);
    ASSERT_TRUE(product);
    EXPECT_TRUE(says("TORV3DTerrainElement::update(): Creating new  visualization."));
    show(second);
    EXPECT_EQ(prop(TORVDisplayLayer::LAYER_3DTERRAIN), ground);
    EXPECT_NE(prop(TORVDisplayLayer::LAYER_3DPRODUCT), product);
    EXPECT_TRUE(says("TORV3DTerrainElement::update(): No need to update."));
    EXPECT_TRUE(says("TORV3DVisualElement::update(): Re-creating changed visualization.."));
}

TEST_F(TORVVisualizationTakeOverTest, TheLabelsStayWhereTheFrameIsTheSame)
{
    addMoment("260714120000", 5);
    const TORVDataFrame::Ptr data = frame("260714120000");
    show(data);
    const vtkSmartPointer<vtkProp> labels = prop(TORVDisplayLayer::LAYER_GEOLABELS);
    ASSERT_TRUE(labels);
    observer.general->setVerticalScale(8.0);
    show(data);
    EXPECT_EQ(prop(TORVDisplayLayer::LAYER_GEOLABELS), labels);
    EXPECT_TRUE(says("Update landmark labels:"));
    EXPECT_TRUE(says("- vertScale=8"));
}
