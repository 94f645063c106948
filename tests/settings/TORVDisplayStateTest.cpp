#include "settings/TORVDisplayState.h"

#include "settings/TORVLayerParameters.h"
#include "visualization/TORVVisualElement.h"

#include "support/LogFile.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

namespace
{

class FakeElement final : public TORVVisualElement
{
public:
    FakeElement() : TORVVisualElement(nullptr, 0) {}

    void update(boost::shared_ptr<const TORVLayerParameters>, bool, const std::atomic<bool>&) override {}
    void invalidate() override { ++invalidations; }

    int invalidations = 0;
};

QVector<int> keysOf(const TORVDisplayState& state)
{
    QVector<int> keys;
    for (const TORVDisplayGroup::Ptr& group : state.getMembers()) {
        keys.append(group->getKey());
        for (const TORVDisplayLayer::Ptr& layer : group->getMembers()) {
            keys.append(layer->getKey());
        }
    }
    return keys;
}

const QVector<int> Shape = {10, 11, 12, 13, 40, 41, 42, 44, 43};

} // namespace

TEST(TORVDisplayStateTest, HoldsSevenLayersInTwoGroups)
{
    EXPECT_EQ(keysOf(TORVDisplayState()), Shape);
}

TEST(TORVDisplayStateTest, StartsWithEverythingShown)
{
    const TORVDisplayState state;
    EXPECT_EQ(state.getName(), QStringLiteral("Default"));
    for (const int key : Shape) {
        EXPECT_TRUE(state.getLayer(key)->isEnabled()) << key;
        EXPECT_EQ(state.getLayer(key)->getOpacity(), 100) << key;
    }
    EXPECT_TRUE(state.getGroup(10)->isOpen());
    EXPECT_TRUE(state.getGroup(40)->isOpen());
}

TEST(TORVDisplayStateTest, DoesNotUseTheNameItIsMadeWith)
{
    const TORVDisplayState state(QStringLiteral("Storm"));
    EXPECT_EQ(state.getName(), QStringLiteral("Default"));
    EXPECT_EQ(keysOf(state), Shape);
}

TEST(TORVDisplayStateTest, GoesBackToTheDefaultState)
{
    TORVDisplayState state;
    state.setName(QStringLiteral("Storm"));
    state.getLayer(12)->setEnabled(false);
    state.constructDefaultState();
    EXPECT_EQ(state.getName(), QStringLiteral("Default"));
    EXPECT_TRUE(state.getLayer(12)->isEnabled());
    EXPECT_EQ(keysOf(state), Shape);
}

TEST(TORVDisplayStateTest, FindsGroupsAndLayersByKey)
{
    const TORVDisplayState state;
    EXPECT_EQ(state.getLayer(40), state.getGroup(40));
    EXPECT_EQ(state.getLayer(43)->getName(), QStringLiteral("LAYER_GEOLABELS"));
    EXPECT_EQ(state.getLayer(44)->getName(), QStringLiteral("LAYER_RANGERINGS"));
}

TEST(TORVDisplayStateTest, FindsNothingForAnUnknownKey)
{
    const TORVDisplayState state;
    EXPECT_FALSE(state.getLayer(99));
    EXPECT_FALSE(state.getGroup(99));
    EXPECT_FALSE(state.getGroup(12)); // a layer is no group
}

TEST(TORVDisplayStateTest, CopiesTheUsersChoice)
{
    TORVDisplayState source;
    source.setName(QStringLiteral("Storm"));
    source.getLayer(13)->setEnabled(false);
    source.getLayer(40)->setOpacity(30);
    source.getGroup(40)->setOpen(false);
    TORVDisplayState target;
    target.copyState(source);
    EXPECT_EQ(target.getName(), QStringLiteral("Storm"));
    EXPECT_FALSE(target.getLayer(13)->isEnabled());
    EXPECT_EQ(target.getLayer(40)->getOpacity(), 30);
    EXPECT_FALSE(target.getGroup(40)->isOpen());
    EXPECT_NE(target.getLayer(13), source.getLayer(13));
}

TEST(TORVDisplayStateTest, KeepsParametersAndElementsWhenItTakesAChoice)
{
    TORVDisplayState live;
    QVector<TORVLayerParameters::Ptr> parameters;
    QVector<TORVVisualElement::Ptr> elements;
    for (const int key : Shape) {
        live.getLayer(key)->setParameters(boost::make_shared<TORVLayerParameters>());
        live.getLayer(key)->setElement(boost::make_shared<FakeElement>());
        parameters.append(live.getLayer(key)->getParameters());
        elements.append(live.getLayer(key)->getElement());
    }
    TORVDisplayState preset;
    preset.getLayer(12)->setEnabled(false);
    live.copyState(preset);
    for (int i = 0; i < Shape.size(); ++i) {
        EXPECT_EQ(live.getLayer(Shape.at(i))->getParameters(), parameters.at(i)) << Shape.at(i);
        EXPECT_EQ(live.getLayer(Shape.at(i))->getElement(), elements.at(i)) << Shape.at(i);
    }
    EXPECT_FALSE(live.getLayer(12)->isEnabled());
}

TEST(TORVDisplayStateTest, CopiesItself)
{
    TORVDisplayState state;
    state.getLayer(12)->setOpacity(5);
    state.copyState(state);
    EXPECT_EQ(keysOf(state), Shape);
    EXPECT_EQ(state.getLayer(12)->getOpacity(), 5);
}

TEST(TORVDisplayStateTest, AlwaysCountsAsChangedWithoutAReason)
{
    const TORVDisplayState one;
    const TORVDisplayState same;
    TORVDisplayState other;
    other.getLayer(12)->setEnabled(false);
    QStringList reasons;
    EXPECT_TRUE(one.hasChanged(same, &reasons));
    EXPECT_TRUE(one.hasChanged(other, &reasons));
    EXPECT_TRUE(one.hasChanged(other, nullptr));
    EXPECT_EQ(reasons, QStringList());
}

TEST(TORVDisplayStateTest, ResetsAllLayersAndTheirElements)
{
    TORVDisplayState state;
    QVector<boost::shared_ptr<FakeElement>> elements;
    for (const int key : Shape) {
        elements.append(boost::make_shared<FakeElement>());
        state.getLayer(key)->setElement(elements.last());
        state.getLayer(key)->setParameters(boost::make_shared<TORVLayerParameters>());
    }
    state.resetParameters();
    for (int i = 0; i < Shape.size(); ++i) {
        EXPECT_FALSE(state.getLayer(Shape.at(i))->getParameters()) << Shape.at(i);
        EXPECT_EQ(elements.at(i)->invalidations, 1) << Shape.at(i);
    }
}

TEST(TORVDisplayStateTest, AsksTheLayerAloneWhetherThe2DProductIsOn)
{
    TORVDisplayState state;
    EXPECT_TRUE(state.has2DEnabled());
    state.getGroup(10)->setEnabled(false);
    EXPECT_TRUE(state.has2DEnabled());
    state.getLayer(13)->setEnabled(false);
    EXPECT_FALSE(state.has2DEnabled());
}

TEST(TORVDisplayStateTest, DumpsEveryLayerAtDebugLevel)
{
    const LogFile log(TORVLog::LEVEL_DEBUG);
    TORVDisplayState state;
    state.getLayer(44)->setEnabled(false);
    state.getLayer(44)->setOpacity(7);
    state.getGroup(40)->setOpen(false);
    state.printDisplayState();
    const QString text = log.lines().join(QLatin1Char('\n'));
    EXPECT_EQ(log.lines().size(), 10);
    EXPECT_TRUE(text.contains(QLatin1String("44 LAYER_RANGERINGS: enabled=0, opacity=7")));
    EXPECT_TRUE(text.contains(QLatin1String("40 GROUP_GEOLAYERS: enabled=1, opacity=100, open=0")));
}

TEST(TORVDisplayStateDeathTest, StopsAtAStateOfAnotherShape)
{
    const TORVDisplayState one;
    TORVDisplayState other;
    other.getGroup(10)->addMember(boost::make_shared<TORVDisplayLayer>(13));
    EXPECT_DEATH(one.hasChanged(other, nullptr), "getMembers\\(\\).count\\(\\)");
}

TEST(TORVDisplayStateDeathTest, StopsWhereAnUnknownKeyIsTakenForALayer)
{
    const TORVDisplayState state;
    EXPECT_DEATH(state.getLayer(99)->isEnabled(), "px != 0");
}
