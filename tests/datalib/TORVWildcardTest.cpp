#include "datalib/TORVWildcard.h"

#include <gtest/gtest.h>

namespace
{

bool matches(const char* pattern, const char* name)
{
    return TORVWildcard(QString::fromUtf8(pattern)).matches(QString::fromUtf8(name));
}

} // namespace

TEST(TORVWildcard, StarIsAnyTextAndNone)
{
    EXPECT_TRUE(matches("*", ""));
    EXPECT_TRUE(matches("*", "HALMERA"));
    EXPECT_TRUE(matches("HAL*", "HAL"));
    EXPECT_TRUE(matches("*ME*", "HALMERA"));
    EXPECT_FALSE(matches("HAL*", "XHAL"));
}

TEST(TORVWildcard, QuestionMarkIsJustOneCharacter)
{
    EXPECT_TRUE(matches("SITE ?", "SITE 3"));
    EXPECT_FALSE(matches("SITE ?", "SITE "));
    EXPECT_FALSE(matches("SITE ?", "SITE 33"));
}

TEST(TORVWildcard, MatchesTheWholeName)
{
    EXPECT_TRUE(matches("Z", "Z"));
    EXPECT_FALSE(matches("Z", "ZZ"));
    EXPECT_FALSE(matches("Z", "Z\n"));
    EXPECT_FALSE(matches("", "Z"));
    EXPECT_TRUE(matches("", ""));
}

TEST(TORVWildcard, DisregardsCase)
{
    EXPECT_TRUE(matches("z", "Z"));
    EXPECT_TRUE(matches("CAPpi", "cappi"));
    EXPECT_TRUE(matches("[a-c]", "B"));
}

TEST(TORVWildcard, PassesSlashesAndLineEnds)
{
    EXPECT_TRUE(matches("*", "A/B"));
    EXPECT_TRUE(matches("A*", "A/B"));
    EXPECT_TRUE(matches("A?B", "A/B"));
    EXPECT_TRUE(matches("A*B", "A\nB"));
}

TEST(TORVWildcard, TakesDotsAndBackslashesAsTheyAre)
{
    EXPECT_TRUE(matches("A.B", "A.B"));
    EXPECT_FALSE(matches("A.B", "AXB"));
    EXPECT_TRUE(matches("A\\*", "A\\B"));
    EXPECT_FALSE(matches("A\\*", "A*"));
    EXPECT_TRUE(matches("(A|B)+$", "(A|B)+$"));
}

TEST(TORVWildcard, KnowsSets)
{
    EXPECT_TRUE(matches("X[1-3]", "X2"));
    EXPECT_FALSE(matches("X[1-3]", "X4"));
    EXPECT_FALSE(matches("X[1]", "X[1]"));
    EXPECT_TRUE(matches("X[^1]", "X2"));
    EXPECT_FALSE(matches("X[^1]", "X1"));
    EXPECT_TRUE(matches("X[]]", "X]"));
    EXPECT_TRUE(matches("[\\w]", "\\"));
    EXPECT_FALSE(matches("[\\w]", "A"));
}

TEST(TORVWildcard, TakesABracketThatOpensNoSetAsItIs)
{
    EXPECT_TRUE(matches("X[1", "X[1"));
    EXPECT_TRUE(matches("X]", "X]"));
    EXPECT_TRUE(matches("X[]", "X[]"));
}

TEST(TORVWildcard, MatchesNothingWithASetThatCannotBe)
{
    EXPECT_FALSE(matches("[z-a]", "b"));
}

TEST(TORVWildcard, PatternForANameMatchesThatNameAlone)
{
    const char* const names[] = {"HALMERA", "X[1]", "A*B", "WHO?", "A/B", "A\\B", "A.B", "[", "]", "[^A]", "", "**"};
    for (const char* const name : names) {
        const TORVWildcard pattern(TORVWildcard::patternFor(QString::fromUtf8(name)));
        for (const char* const other : names) {
            EXPECT_EQ(pattern.matches(QString::fromUtf8(other)), other == name) << name << " against " << other;
        }
    }
}

TEST(TORVWildcard, PatternForANameStillDisregardsCase)
{
    EXPECT_TRUE(TORVWildcard(TORVWildcard::patternFor(QStringLiteral("x[1]"))).matches(QStringLiteral("X[1]")));
}

TEST(TORVWildcard, PatternForAStarAloneIsTheStar)
{
    EXPECT_EQ(TORVWildcard::patternFor(QStringLiteral("*")), QStringLiteral("*"));
}
