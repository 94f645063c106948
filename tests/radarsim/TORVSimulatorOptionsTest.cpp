#include "radarsim/TORVSimulatorOptions.h"

#include "radarsim/TORVProductKind.h"

#include <gtest/gtest.h>

namespace
{

TORVSimulatorOptions parse(const char* line)
{
    return TORVSimulatorOptions::parse(QString::fromLatin1(line).split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

TEST(TORVSimulatorOptions, HaveTheDefaultsOfTheHelp)
{
    const TORVSimulatorOptions options = parse("--out x");
    EXPECT_EQ(options.action, TORVSimulatorOptions::GENERATE);
    EXPECT_EQ(options.out, QStringLiteral("x"));
    EXPECT_EQ(options.sites, 2);
    EXPECT_EQ(options.hours, 6.0);
    EXPECT_EQ(options.step, 5);
    EXPECT_EQ(options.size.x, 240);
    EXPECT_EQ(options.size.y, 240);
    EXPECT_EQ(options.size.z, 20);
    EXPECT_EQ(options.seed, 1U);
    EXPECT_FALSE(options.isLive());
    EXPECT_LT(options.keep, 0.0);
    EXPECT_FALSE(options.slow);
    EXPECT_FALSE(options.faults);
    EXPECT_FALSE(options.wide);
    EXPECT_TRUE(options.terrain);
}

TEST(TORVSimulatorOptions, WriteFiveProductsUnlessTold)
{
    QStringList names;
    for (const TORVProductKind* kind : parse("--out x").products) {
        names << QLatin1String(kind->name);
    }
    EXPECT_EQ(names.join(QLatin1Char(' ')), QStringLiteral("Z V W MAX SRI"));
}

TEST(TORVSimulatorOptions, TakeEveryOption)
{
    const TORVSimulatorOptions options =
        parse("--out x --sites 3 --hours 1.5 --step 10 --size 100x200x30 --seed 7 --live 20 --keep 2 --slow --faults "
              "--bytes 2 --threads 4 --no-terrain --end 2026-01-02T03:04 --products r,vil");
    EXPECT_EQ(options.action, TORVSimulatorOptions::GENERATE) << qPrintable(options.error);
    EXPECT_EQ(options.sites, 3);
    EXPECT_EQ(options.hours, 1.5);
    EXPECT_EQ(options.step, 10);
    EXPECT_EQ(options.size.x, 100);
    EXPECT_EQ(options.size.y, 200);
    EXPECT_EQ(options.size.z, 30);
    EXPECT_EQ(options.seed, 7U);
    EXPECT_EQ(options.live, 20.0);
    EXPECT_EQ(options.keep, 2.0);
    EXPECT_TRUE(options.slow);
    EXPECT_TRUE(options.faults);
    EXPECT_TRUE(options.wide);
    EXPECT_EQ(options.threads, 4);
    EXPECT_FALSE(options.terrain);
    EXPECT_EQ(options.end, QDateTime(QDate(2026, 1, 2), QTime(3, 4), Qt::UTC));
    ASSERT_EQ(options.products.size(), 2U);
    EXPECT_STREQ(options.products[0]->name, "R");
    EXPECT_STREQ(options.products[1]->name, "VIL");
}

TEST(TORVSimulatorOptions, TakeAValueBehindAnEqualsSign)
{
    EXPECT_EQ(parse("--out=x --sites=1").sites, 1);
}

TEST(TORVSimulatorOptions, KnowAllProductsByOneWord)
{
    EXPECT_EQ(parse("--out x --products all").products.size(), 9U);
    EXPECT_EQ(parse("--out x --products Z,all,Z").products.size(), 9U);
}

TEST(TORVSimulatorOptions, AllowTheLargestGridOfTheBenchmarks)
{
    EXPECT_EQ(parse("--out x --size 1000x1000x40").action, TORVSimulatorOptions::GENERATE);
}

TEST(TORVSimulatorOptions, NeedAPlaceToWriteTo)
{
    EXPECT_EQ(parse("--sites 1").action, TORVSimulatorOptions::REJECT);
    EXPECT_EQ(parse("--sites 1").error, QStringLiteral("--out is missing"));
}

TEST(TORVSimulatorOptions, DrawAPictureOfAFile)
{
    const TORVSimulatorOptions options = parse("--picture a.png b.CAPZ");
    EXPECT_EQ(options.action, TORVSimulatorOptions::DRAW_PICTURE);
    EXPECT_EQ(options.pictureTo, QStringLiteral("a.png"));
    EXPECT_EQ(options.pictureFrom, QStringLiteral("b.CAPZ"));
}

struct Refused
{
    const char* line;
    const char* words;
};

class TORVSimulatorOptionsRefused : public testing::TestWithParam<Refused>
{
};

TEST_P(TORVSimulatorOptionsRefused, WithWords)
{
    const TORVSimulatorOptions options = parse(GetParam().line);
    EXPECT_EQ(options.action, TORVSimulatorOptions::REJECT);
    EXPECT_TRUE(options.error.contains(QLatin1String(GetParam().words))) << qPrintable(options.error);
}

const Refused Lines[] = {
    {"--out x --wrong", "unknown option '--wrong'"},
    {"--out x stray", "unexpected argument 'stray'"},
    {"--out x --sites", "--sites needs a value"},
    {"--out x --sites 0", "'0' is not possible"},
    {"--out x --sites 5", "'5' is not possible"},
    {"--out x --sites two", "'two' is not possible"},
    {"--out x --hours -1", "'-1' is not possible"},
    {"--out x --hours nan", "'nan' is not possible"},
    {"--out x --step 0", "'0' is not possible"},
    {"--out x --size 240", "'240' is not possible"},
    {"--out x --size 1001x240x20", "'1001x240x20' is not possible"},
    {"--out x --size 240x240x41", "'240x240x41' is not possible"},
    {"--out x --size 1x240x20", "'1x240x20' is not possible"},
    {"--out x --seed -1", "'-1' is not possible"},
    {"--out x --end yesterday", "'yesterday' is not possible"},
    {"--out x --end 2095-01-01T00:00", "is not possible"},
    {"--out x --products Q", "'Q' is not possible"},
    {"--out x --products Z,", "'Z,' is not possible"},
    {"--out x --bytes 3", "'3' is not possible"},
    {"--out x --slow=1", "--slow takes no value"},
    {"--out=", "is not possible"},
    {"--picture a.png", "needs a product file"},
};

INSTANTIATE_TEST_SUITE_P(Lines, TORVSimulatorOptionsRefused, testing::ValuesIn(Lines));

TEST(TORVSimulatorOptions, ShowHelpWhateverElseIsThere)
{
    EXPECT_EQ(parse("--help").action, TORVSimulatorOptions::SHOW_HELP);
    EXPECT_EQ(parse("--sites 1 --help").action, TORVSimulatorOptions::SHOW_HELP);
}

TEST(TORVSimulatorOptions, HaveAHelpThatNamesEachOption)
{
    const QString help = TORVSimulatorOptions::helpText();
    for (const char* option : {"--out DIR", "--sites N", "--hours H", "--step MIN", "--end TIME", "--size XxYxZ",
                               "--products LIST", "--bytes N", "--seed N", "--live SECONDS", "--keep HOURS", "--slow",
                               "--faults", "--no-terrain", "--threads N", "--picture PNG", "--help"}) {
        EXPECT_TRUE(help.contains(QLatin1String("\n  ") + QLatin1String(option))) << option;
    }
}

TEST(TORVSimulatorOptions, HaveAHelpThatFitsATerminal)
{
    for (const QString& line : TORVSimulatorOptions::helpText().split(QLatin1Char('\n'))) {
        EXPECT_LE(line.size(), 90) << qPrintable(line);
    }
}

} // namespace
