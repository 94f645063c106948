#include "settings/TORVDisplayGroup.h"

#include "settings/TORVLayerParameters.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <initializer_list>

namespace
{

TORVDisplayGroup::Ptr groupOf(int key, std::initializer_list<int> layers)
{
    auto group = boost::make_shared<TORVDisplayGroup>(key);
    for (const int layer : layers) {
        group->addMember(boost::make_shared<TORVDisplayLayer>(layer));
    }
    return group;
}

QVector<int> keysOf(const TORVDisplayGroup& group)
{
    QVector<int> keys;
    for (const TORVDisplayLayer::Ptr& layer : group.getMembers()) {
        keys.append(layer->getKey());
    }
    return keys;
}

} // namespace

TEST(TORVDisplayGroupTest, StartsOpenWithTheTagOfAGroup)
{
    const TORVDisplayGroup group(40);
    EXPECT_TRUE(group.isOpen());
    EXPECT_EQ(group.getTag(), 1);
    EXPECT_EQ(group.getName(), QStringLiteral("GROUP_GEOLAYERS"));
    EXPECT_TRUE(group.getMembers().isEmpty());
    EXPECT_EQ(TORVDisplayGroup(40, false).getTag(), 0);
}

TEST(TORVDisplayGroupTest, FindsAMemberByItsKey)
{
    const auto group = groupOf(10, {11, 12});
    EXPECT_EQ(group->getLayer(12), group->getMembers().at(1));
    EXPECT_FALSE(group->getLayer(13));
    EXPECT_FALSE(group->getLayer(10)); // itself is no member
}

TEST(TORVDisplayGroupTest, CopiesItsFoldAndItsMembers)
{
    const auto source = groupOf(10, {11, 12});
    source->setOpen(false);
    source->setEnabled(false);
    source->setOpacity(50);
    source->getLayer(12)->setOpacity(25);
    const auto target = groupOf(10, {12, 11});
    target->copyState(*source);
    EXPECT_FALSE(target->isOpen());
    EXPECT_FALSE(target->isEnabled());
    EXPECT_EQ(target->getOpacity(), 50);
    EXPECT_EQ(target->getLayer(12)->getOpacity(), 25);
    EXPECT_EQ(target->getLayer(11)->getOpacity(), 100);
    EXPECT_EQ(keysOf(*target), QVector<int>({12, 11})); // matched by key, not by place
}

TEST(TORVDisplayGroupTest, MakesMembersThatItLacks)
{
    const auto source = groupOf(10, {11, 12});
    source->getLayer(12)->setEnabled(false);
    source->getLayer(12)->setParameters(boost::make_shared<TORVLayerParameters3d>());
    const auto target = groupOf(10, {11});
    target->copyState(*source);
    ASSERT_TRUE(target->getLayer(12));
    EXPECT_NE(target->getLayer(12), source->getLayer(12));
    EXPECT_EQ(target->getLayer(12)->getTag(), 301);
    EXPECT_FALSE(target->getLayer(12)->isEnabled());
    EXPECT_FALSE(target->getLayer(12)->getParameters());
}

TEST(TORVDisplayGroupTest, DropsMembersThatTheSourceLacks)
{
    const auto source = groupOf(10, {12});
    const auto target = groupOf(10, {11, 12, 13});
    const TORVDisplayLayer::Ptr kept = target->getLayer(12);
    target->copyState(*source);
    EXPECT_EQ(keysOf(*target), QVector<int>({12}));
    EXPECT_EQ(target->getLayer(12), kept);
}

TEST(TORVDisplayGroupTest, NeverSeesAChange)
{
    const auto group = groupOf(10, {11, 12});
    const auto other = groupOf(10, {11, 12});
    other->setEnabled(false);
    other->getLayer(11)->setOpacity(1);
    QStringList reasons;
    EXPECT_FALSE(group->hasChanged(other, &reasons));
    EXPECT_EQ(reasons, QStringList());
    EXPECT_FALSE(group->hasChanged(other, nullptr));
}

TEST(TORVDisplayGroupTest, ResetsItselfAndItsMembers)
{
    const auto group = groupOf(10, {11, 12});
    group->setParameters(boost::make_shared<TORVLayerParameters>());
    group->getLayer(11)->setParameters(boost::make_shared<TORVLayerParameters3dOutline>());
    group->resetParameters();
    EXPECT_FALSE(group->getParameters());
    EXPECT_FALSE(group->getLayer(11)->getParameters());
}

TEST(TORVDisplayGroupDeathTest, StopsAtAnotherKey)
{
    const auto group = groupOf(10, {});
    EXPECT_DEATH(group->hasChanged(groupOf(40, {}), nullptr), "getKey\\(\\) == prevGroup->getKey\\(\\)");
}

TEST(TORVDisplayGroupDeathTest, StopsAtAnotherNumberOfMembers)
{
    const auto group = groupOf(10, {11});
    EXPECT_DEATH(group->hasChanged(groupOf(10, {}), nullptr),
                 "getMembers\\(\\).count\\(\\) == prevGroup->getMembers\\(\\).count\\(\\)");
}
