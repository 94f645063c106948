#include "settings/TORVDisplayLayer.h"

#include "settings/TORVLayerParameters.h"
#include "visualization/TORVVisualElement.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <vtkActor2D.h>
#include <vtkAssembly.h>

namespace
{

class FakeElement final : public TORVVisualElement
{
public:
    explicit FakeElement(vtkSmartPointer<vtkProp> prop = nullptr) : TORVVisualElement(nullptr, 0), _prop(prop) {}

    vtkSmartPointer<vtkProp> getProp() override { return _prop; }
    void update(boost::shared_ptr<const TORVLayerParameters>, bool, const std::atomic<bool>&) override {}
    void invalidate() override { ++invalidations; }

    int invalidations = 0;

private:
    vtkSmartPointer<vtkProp> _prop;
};

vtkSmartPointer<vtkProp> anyProp()
{
    return vtkSmartPointer<vtkActor2D>::New();
}

vtkSmartPointer<vtkAssembly> assemblyOf(int parts)
{
    auto assembly = vtkSmartPointer<vtkAssembly>::New();
    for (int i = 0; i < parts; ++i) {
        assembly->AddPart(vtkSmartPointer<vtkAssembly>::New());
    }
    return assembly;
}

bool isEmpty(int key, const vtkSmartPointer<vtkProp>& prop)
{
    TORVDisplayLayer layer(key);
    layer.setElement(boost::make_shared<FakeElement>(prop));
    return layer.isEmpty();
}

template <class Parameters>
void expectCopyOfItsClass()
{
    const auto given = boost::make_shared<Parameters>();
    TORVDisplayLayer layer(TORVDisplayLayer::LAYER_3DPRODUCT);
    layer.setParameters(given);
    ASSERT_TRUE(layer.getParameters());
    EXPECT_NE(layer.getParameters(), given);
    const TORVLayerParameters& copy = *layer.getParameters();
    EXPECT_EQ(typeid(copy).name(), typeid(Parameters).name());
}

struct ForeignParameters final : TORVLayerParameters
{
};

} // namespace

TEST(TORVDisplayLayerTest, StartsEnabledAndOpaqueWithNothingBuilt)
{
    const TORVDisplayLayer layer(12);
    EXPECT_EQ(layer.getKey(), 12);
    EXPECT_EQ(layer.getName(), QStringLiteral("LAYER_3DPRODUCT"));
    EXPECT_EQ(layer.getTag(), 301);
    EXPECT_EQ(layer.getDescription(), QString());
    EXPECT_TRUE(layer.isEnabled());
    EXPECT_EQ(layer.getOpacity(), 100);
    EXPECT_FALSE(layer.getParameters());
    EXPECT_FALSE(layer.getElement());
}

TEST(TORVDisplayLayerTest, NamesEveryKey)
{
    const QMap<int, QString> names = {
        {10, QStringLiteral("GROUP_RADARLAYERS")}, {11, QStringLiteral("LAYER_3DOUTLINE")},
        {12, QStringLiteral("LAYER_3DPRODUCT")},   {13, QStringLiteral("LAYER_2DPRODUCT")},
        {40, QStringLiteral("GROUP_GEOLAYERS")},   {41, QStringLiteral("LAYER_3DTERRAIN")},
        {42, QStringLiteral("LAYER_LATLONGRID")},  {43, QStringLiteral("LAYER_GEOLABELS")},
        {44, QStringLiteral("LAYER_RANGERINGS")}};
    for (int key = -1; key < 100; ++key) {
        EXPECT_EQ(TORVDisplayLayer::nameOf(key), names.value(key)) << key;
    }
}

TEST(TORVDisplayLayerTest, ListsItsKeysAsSettingsFilesDo)
{
    const std::array<int, 9> expected = {10, 40, 11, 12, 13, 44, 41, 42, 43};
    EXPECT_EQ(TORVDisplayLayer::persistedKeys(), expected);
}

TEST(TORVDisplayLayerTest, BringsItsOpacityIntoPercent)
{
    TORVDisplayLayer layer(11);
    layer.setOpacity(-1);
    EXPECT_EQ(layer.getOpacity(), 0);
    layer.setOpacity(101);
    EXPECT_EQ(layer.getOpacity(), 100);
    layer.setOpacity(37);
    EXPECT_EQ(layer.getOpacity(), 37);
}

TEST(TORVDisplayLayerTest, CopiesWhatTheUserChose)
{
    TORVDisplayLayer source(13);
    source.setName(QStringLiteral("name"));
    source.setDescription(QStringLiteral("description"));
    source.setEnabled(false);
    source.setOpacity(40);
    TORVDisplayLayer target(11);
    target.copyState(source);
    EXPECT_EQ(target.getKey(), 13);
    EXPECT_EQ(target.getName(), QStringLiteral("name"));
    EXPECT_EQ(target.getDescription(), QStringLiteral("description"));
    EXPECT_FALSE(target.isEnabled());
    EXPECT_EQ(target.getOpacity(), 40);
}

TEST(TORVDisplayLayerTest, CopiesNeitherTagNorParametersNorElement)
{
    TORVDisplayLayer source(13, 7);
    source.setParameters(boost::make_shared<TORVLayerParameters2d>());
    source.setElement(boost::make_shared<FakeElement>());
    TORVDisplayLayer target(13);
    target.copyState(source);
    EXPECT_EQ(target.getTag(), 301);
    EXPECT_FALSE(target.getParameters());
    EXPECT_FALSE(target.getElement());
}

TEST(TORVDisplayLayerTest, CopiesParametersOfEachClass)
{
    expectCopyOfItsClass<TORVLayerParameters>();
    expectCopyOfItsClass<TORVLayerParameters3d>();
    expectCopyOfItsClass<TORVLayerParameters3dOutline>();
    expectCopyOfItsClass<TORVLayerParameters2d>();
    expectCopyOfItsClass<TORVLayerParametersTerrain>();
    expectCopyOfItsClass<TORVLayerParametersGeoLabels>();
    expectCopyOfItsClass<TORVLayerParametersRadarRings>();
    expectCopyOfItsClass<TORVLayerParametersLatLonGrid>();
}

TEST(TORVDisplayLayerTest, IsNotReachedByLaterChangesOfTheGivenParameters)
{
    const auto given = boost::make_shared<TORVLayerParameters3d>();
    given->setDataShrinkH(2);
    TORVDisplayLayer layer(12);
    layer.setParameters(given);
    given->setDataShrinkH(8);
    const auto kept = boost::dynamic_pointer_cast<TORVLayerParameters3d>(layer.getParameters());
    EXPECT_EQ(kept->getDataShrinkH(), 2);
}

TEST(TORVDisplayLayerTest, KeepsItsElementWhenTheParametersGo)
{
    TORVDisplayLayer layer(12);
    const auto element = boost::make_shared<FakeElement>();
    layer.setElement(element);
    layer.setParameters(boost::make_shared<TORVLayerParameters3d>());
    layer.setParameters({});
    EXPECT_FALSE(layer.getParameters());
    EXPECT_EQ(layer.getElement(), element);
    EXPECT_EQ(element->invalidations, 0);
}

TEST(TORVDisplayLayerTest, ResetsParametersAndInvalidatesTheElement)
{
    TORVDisplayLayer layer(12);
    const auto element = boost::make_shared<FakeElement>();
    layer.setElement(element);
    layer.setParameters(boost::make_shared<TORVLayerParameters3d>());
    layer.resetParameters();
    EXPECT_FALSE(layer.getParameters());
    EXPECT_EQ(layer.getElement(), element);
    EXPECT_EQ(element->invalidations, 1);
}

TEST(TORVDisplayLayerTest, ResetsWithoutAnElement)
{
    TORVDisplayLayer layer(12);
    layer.setParameters(boost::make_shared<TORVLayerParameters3d>());
    layer.resetParameters();
    EXPECT_FALSE(layer.getParameters());
}

TEST(TORVDisplayLayerTest, IsEmptyWithoutElementOrProp)
{
    EXPECT_TRUE(TORVDisplayLayer(12).isEmpty());
    EXPECT_TRUE(isEmpty(12, nullptr));
    EXPECT_FALSE(isEmpty(12, anyProp()));
}

TEST(TORVDisplayLayerTest, TerrainWithoutATileIsEmpty)
{
    EXPECT_TRUE(isEmpty(41, nullptr));
    EXPECT_TRUE(isEmpty(41, assemblyOf(0)));
    EXPECT_FALSE(isEmpty(41, assemblyOf(1)));
}

TEST(TORVDisplayLayerTest, TerrainThatIsNoAssemblyIsEmpty)
{
    EXPECT_TRUE(isEmpty(41, anyProp()));
}

TEST(TORVDisplayLayerTest, OtherLayersMayBeAnAssemblyWithoutParts)
{
    EXPECT_FALSE(isEmpty(42, assemblyOf(0)));
}

TEST(TORVDisplayLayerDeathTest, StopsAtParametersOfAnUnknownClass)
{
    TORVDisplayLayer layer(12);
    EXPECT_DEATH(layer.setParameters(boost::make_shared<ForeignParameters>()), "can't be copied");
}
