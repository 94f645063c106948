#include "utils/TORVSettingsReader.h"

#include "support/SandboxedHome.h"

#include <QRect>
#include <QSettings>
#include <QVariant>

#include <gtest/gtest.h>

#include <limits>

namespace
{

QString textOf(const QVariant& value)
{
    return TORVSettingsReader::text(value, QStringLiteral("none"));
}

double realOf(const QVariant& value)
{
    return TORVSettingsReader::real(value, 5.0, 1.0, 50.0);
}

int integerOf(const QVariant& value)
{
    return TORVSettingsReader::integer(value, 2, 0, 4);
}

// The indexes that are read of an array "a" in a file of these bytes.
QVector<int> indexesOf(const QByteArray& bytes)
{
    const SandboxedHome home;
    QSettings settings(home.write(QStringLiteral("a.conf"), bytes), QSettings::IniFormat);
    const int size = settings.beginReadArray(QStringLiteral("a"));
    return TORVSettingsReader::arrayIndexes(settings, size);
}

} // namespace

TEST(TORVSettingsReaderTest, TakesATextAsItIs)
{
    EXPECT_EQ(textOf(QStringLiteral("Z\u00fcrich")), QStringLiteral("Z\u00fcrich"));
    EXPECT_EQ(textOf(QString()), QString());
}

TEST(TORVSettingsReaderTest, JoinsATextThatQtTookForAList)
{
    EXPECT_EQ(textOf(QStringList({QStringLiteral("/data/a"), QStringLiteral("b")})), QLatin1String("/data/a,b"));
}

TEST(TORVSettingsReaderTest, GivesTheDefaultForATextThatIsNotThere)
{
    EXPECT_EQ(textOf(QVariant()), QLatin1String("none"));
    EXPECT_EQ(textOf(QRect(1, 2, 3, 4)), QLatin1String("none"));
}

TEST(TORVSettingsReaderTest, ReadsFlagsAsQtDoes)
{
    EXPECT_TRUE(TORVSettingsReader::flag(QStringLiteral("true"), false));
    EXPECT_TRUE(TORVSettingsReader::flag(QStringLiteral("1"), false));
    EXPECT_FALSE(TORVSettingsReader::flag(QStringLiteral("false"), true));
    EXPECT_FALSE(TORVSettingsReader::flag(QStringLiteral("0"), true));
    EXPECT_FALSE(TORVSettingsReader::flag(QString(), true));
    EXPECT_TRUE(TORVSettingsReader::flag(QVariant(), true));
}

TEST(TORVSettingsReaderTest, BringsNumbersIntoTheirRange)
{
    EXPECT_EQ(realOf(QStringLiteral("7.25")), 7.25);
    EXPECT_EQ(realOf(QStringLiteral("-3")), 1.0);
    EXPECT_EQ(realOf(QStringLiteral("1e300")), 50.0);
    EXPECT_EQ(integerOf(QStringLiteral("7")), 4);
    EXPECT_EQ(integerOf(QStringLiteral("-7")), 0);
    EXPECT_EQ(integerOf(QStringLiteral("99999999999999999999")), 4);
    EXPECT_EQ(integerOf(QStringLiteral("3.9")), 3);
}

TEST(TORVSettingsReaderTest, GivesTheDefaultForWhatIsNoNumber)
{
    for (const char* text : {"", "nan", "inf", "-inf", "1e999", "four", "5,0"}) {
        EXPECT_EQ(realOf(QString::fromLatin1(text)), 5.0) << text;
        EXPECT_EQ(integerOf(QString::fromLatin1(text)), 2) << text;
    }
    EXPECT_EQ(realOf(QVariant()), 5.0);
    EXPECT_EQ(realOf(std::numeric_limits<double>::quiet_NaN()), 5.0);
    EXPECT_EQ(realOf(QStringList({QStringLiteral("5"), QStringLiteral("0")})), 5.0);
}

TEST(TORVSettingsReaderTest, HoldsTheLargestNumbers)
{
    constexpr int Largest = std::numeric_limits<int>::max();
    EXPECT_EQ(TORVSettingsReader::integer(QStringLiteral("2147483647"), 0, 0, Largest), Largest);
    EXPECT_EQ(TORVSettingsReader::integer(QStringLiteral("2147483648"), 0, 0, Largest), Largest);
}

TEST(TORVSettingsReaderTest, GoesThroughAnArrayFromItsFirstEntry)
{
    EXPECT_EQ(indexesOf("[a]\n1\\n=5\n2\\n=6\nsize=2\n"), QVector<int>({0, 1}));
}

TEST(TORVSettingsReaderTest, TrustsTheSizeOfASmallArrayWithGaps)
{
    EXPECT_EQ(indexesOf("[a]\n3\\n=5\nsize=4\n"), QVector<int>({0, 1, 2, 3}));
}

TEST(TORVSettingsReaderTest, ReadsNothingOfAnArrayWithoutEntries)
{
    for (const char* size : {"0", "-1", "-2147483648", "many", ""}) {
        EXPECT_TRUE(indexesOf(QByteArray("[a]\n1\\n=5\nsize=") + size + '\n').isEmpty()) << size;
    }
    EXPECT_TRUE(indexesOf("[a]\n1\\n=5\n").isEmpty());
}

TEST(TORVSettingsReaderTest, ReadsOfAHugeArrayWhatIsThere)
{
    EXPECT_EQ(indexesOf("[a]\n10\\n=1\n2\\n=1\n02\\n=1\n0\\n=1\n-4\\n=1\nx\\n=1\n2000000000\\n=1\nsize=1000000000\n"),
              QVector<int>({1, 9}));
}
