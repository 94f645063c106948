#include "visualization/TORVColormap.h"

#include "datalib/TORVDataType.h"
#include "utils/TORVLog.h"

#include "support/LogFile.h"
#include "visualization/ColorFile.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <vtkColorTransferFunction.h>

#include <cmath>
#include <random>
#include <thread>

namespace
{

using Rgb = ColorFile::Rgb;
using Bands = std::vector<ColorFile::Band>;

const Bands TwoBands = {{{10, 20, 30}, {40, 50, 60}}, {{40, 50, 60}, {70, 80, 90}}};
// Raw types 2 and 9 are of group 1, 3 and 10 of group 2, 5 (water) of group 7, the others of none.
const std::array<int, 14> Groups = {0, 0, 1, 2, 3, 7, 0, 0, 0, 1, 2, 3, 0, 4};

const TORVDataType Reflectivity(2);

class TORVColormapFileTest : public testing::Test
{
protected:
    static TORVColormap loaded(int id = 1) { return TORVColormap(id, Reflectivity, TORVColormap::DISPLAY_VALUES); }

    void writeScaleWith(const QByteArray& keys) { file.scale(1, keys, {"0", "10"}).colors(1, TwoBands).write(); }

    static QStringList warnings(const LogFile& log) { return log.lines().filter(QStringLiteral("W: ")); }

    TORVColormap withSeams(const QList<QByteArray>& seams)
    {
        const Bands bands = {
            {{1, 1, 1}, {0, 0, 0}}, {{2, 2, 2}, {0, 0, 0}}, {{3, 3, 3}, {0, 0, 0}}, {{4, 4, 4}, {0, 0, 0}}};
        file.scale(1, "", seams).colors(1, bands).write();
        return loaded();
    }

    ColorFile file;
};

std::vector<int> redsOf(const TORVColormap& map)
{
    std::vector<int> reds;
    for (const TORVColormap::Point& point : map.getColors()) {
        reds.push_back(point.lowerR);
    }
    return reds;
}

} // namespace

TEST_F(TORVColormapFileTest, ReadsAScaleAndItsColours)
{
    file.scale(3, "name=Storm\nlow_saturate=true\nhi_saturate=false\nlabel_format=5.1f\ndata_units=dBZ\ndata_index=1\n",
               {"-31.5", "0", "75.25"})
        .colors(3, TwoBands, "name=Warm\ncolorspace=RGB\n")
        .write();
    const TORVColormap map = loaded(3);
    EXPECT_EQ(map.getScaleName(), QStringLiteral("Storm"));
    EXPECT_EQ(map.getColorSetName(), QStringLiteral("Warm"));
    EXPECT_TRUE(map.isLowSaturate());
    EXPECT_FALSE(map.isHiSaturate());
    EXPECT_EQ(map.getDataUnits(), QStringLiteral("dBZ"));
    EXPECT_EQ(map.getSeams(), (std::vector<double>{-31.5, 0, 75.25}));
    ASSERT_EQ(map.getNDefinedColors(), 2);
    const TORVColormap::Point& point = map.getColors().front();
    EXPECT_EQ((std::array<int, 6>{point.lowerR, point.lowerG, point.lowerB, point.upperR, point.upperG, point.upperB}),
              (std::array<int, 6>{10, 20, 30, 40, 50, 60}));
    EXPECT_FALSE(point.isConstant);
}

TEST_F(TORVColormapFileTest, FallsBackToTheDefaultOfEachKey)
{
    file.raw("[COLORSCALE 4]\npoints\\1\\seam=0\npoints\\size=2\n")
        .raw("[COLORSET 1]\npoints\\1\\lower\\g=7\npoints\\size=2\n")
        .write();
    const TORVColormap map = loaded(4); // colour set 1 by default
    EXPECT_EQ(map.getScaleName(), QStringLiteral("default"));
    EXPECT_EQ(map.getColorSetName(), QStringLiteral("default"));
    EXPECT_FALSE(map.isLowSaturate());
    EXPECT_TRUE(map.isHiSaturate());
    EXPECT_EQ(map.getDataUnits(), QStringLiteral("N/A"));
    EXPECT_EQ(map.getLabel(12.0), QStringLiteral("12"));
    EXPECT_EQ(map.getSeams(), (std::vector<double>{0, 1}));
    EXPECT_EQ(map.getColor(0.0), (Rgb{0, 7, 0}));
    EXPECT_EQ(map.getColor(1.0), (Rgb{0, 0, 0}));
}

TEST_F(TORVColormapFileTest, ReadsNamesInUtf8)
{
    writeScaleWith("name=\"Vihreä °\"\ndata_units=m²\n");
    EXPECT_EQ(loaded().getScaleName(), QString::fromUtf8("Vihreä °"));
    EXPECT_EQ(loaded().getDataUnits(), QString::fromUtf8("m²"));
}

TEST_F(TORVColormapFileTest, KeepsACommaInAName)
{
    writeScaleWith("name=Storm, warm\n");
    EXPECT_EQ(loaded().getScaleName(), QStringLiteral("Storm,warm"));
}

TEST_F(TORVColormapFileTest, NeverWritesTheFile)
{
    writeScaleWith("name=Default\n");
    loaded();
    QFile written(file.path());
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    const QByteArray before = written.readAll();
    TORVColormap::getColormapId(QStringLiteral("Nobody"), 2);
    written.seek(0);
    EXPECT_EQ(written.readAll(), before); // never written
}

TEST_F(TORVColormapFileTest, ListsTheScalesOfADataTypeByNumber)
{
    file.mapping(Groups);
    for (const int number : {10, 2, 1, 3}) {
        const QByteArray group = number == 3 ? "data_index=2\n" : "data_index=1\n";
        file.scale(number, "name=S" + QByteArray::number(number) + "\n" + group, {"0", "1"});
    }
    file.raw("[COLORSCALE 01]\nname=Odd\ndata_index=1\n[COLORSCALE x]\nname=Odd\ndata_index=1\n").write();
    for (const int type : {2, 9}) {
        const QVector<TORVColormap::ColorScaleListItem> items = TORVColormap::getScalesForDataType(type);
        ASSERT_EQ(items.size(), 3) << type;
        EXPECT_EQ(items.at(0).number, 1);
        EXPECT_EQ(items.at(1).number, 2);
        EXPECT_EQ(items.at(2).number, 10);
        EXPECT_EQ(items.at(2).name, QStringLiteral("S10"));
    }
    EXPECT_EQ(TORVColormap::getScalesForDataType(10).size(), 1);
}

TEST_F(TORVColormapFileTest, KnowsTheGroupAndTheLegendOfADataType)
{
    file.mapping(Groups).write();
    EXPECT_EQ(TORVColormap::getColorGroupIdForDataType(13), 4);
    const TORVColormap::DataTypeLegendInfo rain = TORVColormap::getDataTypeLegendInfo(13);
    EXPECT_EQ(rain.name, QStringLiteral("Quantity 13"));
    EXPECT_EQ(rain.type, QStringLiteral("T13"));
    EXPECT_FALSE(rain.isLinear);
    EXPECT_TRUE(TORVColormap::getDataTypeLegendInfo(2).isLinear);
}

TEST_F(TORVColormapFileTest, KnowsNothingOfDataTypesOutsideTheFile)
{
    file.mapping(Groups).scale(1, "name=Default\ndata_index=0\n", {"0"}).write();
    for (const int type : {-1, 14, 65536, 2147483647, -2147483647}) {
        EXPECT_EQ(TORVColormap::getColorGroupIdForDataType(type), TORVColormap::None) << type;
        EXPECT_EQ(TORVColormap::getDataTypeLegendInfo(type).name, QString()) << type;
        EXPECT_TRUE(TORVColormap::getScalesForDataType(type).isEmpty()) << type;
    }
}

TEST_F(TORVColormapFileTest, LeavesOutScalesWithoutAGroup)
{
    file.scale(1, "name=Default\n", {"0"}).write();
    EXPECT_TRUE(TORVColormap::getScalesForDataType(2).isEmpty());
}

TEST_F(TORVColormapFileTest, FindsTheFirstScaleOfAName)
{
    file.mapping(Groups)
        .scale(1, "name=Default\ndata_index=1\n", {"0"})
        .scale(2, "name=Default\ndata_index=2\n", {"0"})
        .scale(3, "name=Default\ndata_index=2\n", {"0"})
        .write();
    EXPECT_EQ(TORVColormap::getColormapId(QStringLiteral("Default"), 2), 1);
    EXPECT_EQ(TORVColormap::getColormapId(QStringLiteral("Default"), 3), 2);
}

TEST_F(TORVColormapFileTest, WarnsOnceOfANameThatIsNotThere)
{
    file.mapping(Groups).scale(1, "name=Default\ndata_index=1\n", {"0", "1"}).colors(1, TwoBands).write();
    const LogFile log(TORVLog::LEVEL_WARNING);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(TORVColormap::getColormapId(QStringLiteral("100%1 %2"), 3), 1);
    }
    ASSERT_EQ(warnings(log).size(), 1);
    EXPECT_TRUE(warnings(log).at(0).contains(QLatin1String("COLORMAP NOT FOUND: mapname 100%1 %2, type 3")));
    TORVColormap::getColormapId(QStringLiteral("100%1 %2"), 2);
    EXPECT_EQ(warnings(log).size(), 2); // another type
}

TEST_F(TORVColormapFileTest, ShowsScaleOneForANameThatIsNotThere)
{
    file.mapping(Groups).scale(1, "name=First\ndata_index=1\n", {"0", "1"}).colors(1, TwoBands).write();
    const LogFile log(TORVLog::LEVEL_WARNING);
    const TORVColormap map(QStringLiteral("Nobody"), Reflectivity, TORVColormap::DISPLAY_VALUES);
    EXPECT_EQ(map.getScaleName(), QStringLiteral("First"));
}

TEST_F(TORVColormapFileTest, AsksWithTheFilesCodeForATypeThatIsNotInTheTable)
{
    file.mapping(Groups)
        .scale(1, "name=Default\ndata_index=1\n", {"0", "1"})
        .scale(2, "name=Default\ndata_units=kg/m2\ndata_index=7\n", {"0", "50"})
        .colors(2, TwoBands)
        .write();
    const LogFile log(TORVLog::LEVEL_WARNING);
    const TORVColormap map(QStringLiteral("Default"), TORVDataType(5), TORVColormap::DISPLAY_VALUES, 5);
    EXPECT_EQ(map.getDataUnits(), QStringLiteral("kg/m2"));
    EXPECT_EQ(warnings(log), QStringList());
    // A type that is in the table has a code of its own.
    EXPECT_EQ(TORVColormap::codeOf(Reflectivity, 5), 2);
    EXPECT_EQ(TORVColormap::codeOf(TORVDataType(5), 5), 5);
}

TEST_F(TORVColormapFileTest, ShowsBuiltInColoursWithoutAFile)
{
    const LogFile log(TORVLog::LEVEL_WARNING);
    QSignalSpy history(TORVLog::Instance(), SIGNAL(historyAdd(QString)));
    for (int i = 0; i < 3; ++i) {
        const TORVColormap map(QStringLiteral("Default"), Reflectivity, TORVColormap::DISPLAY_VALUES);
        EXPECT_EQ(map.getScaleName(), QStringLiteral("Fixed"));
    }
    ASSERT_EQ(warnings(log).size(), 1);
    EXPECT_TRUE(warnings(log).at(0).contains(file.path()));
    ASSERT_EQ(history.size(), 1);
    EXPECT_TRUE(history.at(0).at(0).toString().contains(file.path()));
}

TEST_F(TORVColormapFileTest, ShowsBuiltInColoursForAnUnknownNumber)
{
    writeScaleWith("name=Default\n");
    const LogFile log(TORVLog::LEVEL_WARNING);
    QSignalSpy history(TORVLog::Instance(), SIGNAL(historyAdd(QString)));
    for (const int number : {99, 99, -1, 2147483647}) {
        EXPECT_EQ(loaded(number).getScaleName(), QStringLiteral("Fixed"));
    }
    EXPECT_EQ(warnings(log).size(), 3);
    EXPECT_EQ(history.size(), 3);
    EXPECT_TRUE(history.at(0).at(0).toString().contains(QLatin1String("99")));
}

TEST_F(TORVColormapFileTest, BuiltInColoursBecomeStoredValuesToo)
{
    const LogFile log(TORVLog::LEVEL_WARNING);
    const TORVColormap map(1, Reflectivity, TORVColormap::ABSOLUTE_VALUES);
    EXPECT_EQ(map.getSeams().at(1), 2 * 16 + 64);
    EXPECT_EQ(map.getValueRange(), TORVColormap::ABSOLUTE_VALUES);
}

TEST_F(TORVColormapFileTest, ShowsBuiltInColoursWithoutSeamsOrColours)
{
    file.scale(1, "", {})
        .colors(1, TwoBands)
        .scale(2, "", {"0", "1"})
        .colors(2, {})
        .scale(3, "", {"nan"})
        .colors(3, TwoBands);
    file.write();
    const LogFile log(TORVLog::LEVEL_WARNING);
    for (const int number : {1, 2, 3}) {
        EXPECT_EQ(loaded(number).getScaleName(), QStringLiteral("Fixed")) << number;
    }
}

TEST_F(TORVColormapFileTest, BringsColoursIntoTheirRange)
{
    file.scale(1, "", {"0", "10"}).colors(1, {{{-5, 256, 1000000}, {0, 0, 0}}, {{1, 2, 3}, {4, 5, 6}}}).write();
    EXPECT_EQ(loaded().getColor(0.0), (Rgb{0, 255, 255}));
}

TEST_F(TORVColormapFileTest, TakesColoursThatAreNoNumbersForNone)
{
    file.scale(1, "", {"0"})
        .raw("[COLORSET "
             "1]\npoints\\1\\lower\\r=red\npoints\\1\\lower\\g=nan\npoints\\1\\lower\\b=1e400\npoints\\size=1\n")
        .write();
    EXPECT_EQ(loaded().getColor(0.0), (Rgb{0, 0, 0}));
}

TEST_F(TORVColormapFileTest, LeavesOutSeamsThatAreNoNumbersWithTheirColours)
{
    const LogFile log(TORVLog::LEVEL_WARNING);
    const TORVColormap map = withSeams({"0", "nan", "20", "inf"});
    EXPECT_EQ(map.getSeams(), (std::vector<double>{0, 20}));
    EXPECT_EQ(redsOf(map), (std::vector<int>{1, 3}));
    loaded();
    ASSERT_EQ(warnings(log).size(), 1); // not again
    EXPECT_TRUE(warnings(log).at(0).contains(file.path()));
}

TEST_F(TORVColormapFileTest, LeavesOutSeamsThatAreTextsOrBeyondAllUnits)
{
    const LogFile log(TORVLog::LEVEL_WARNING);
    const TORVColormap map = withSeams({"zero", "10", "1e300", "-1e300"});
    EXPECT_EQ(map.getSeams(), (std::vector<double>{10}));
    EXPECT_EQ(redsOf(map), (std::vector<int>{2}));
}

TEST_F(TORVColormapFileTest, SortsSeamsThatDescend)
{
    const LogFile log(TORVLog::LEVEL_WARNING);
    const TORVColormap map = withSeams({"30", "20", "10", "0"});
    EXPECT_EQ(map.getSeams(), (std::vector<double>{0, 10, 20, 30}));
    EXPECT_EQ(redsOf(map), (std::vector<int>{4, 3, 2, 1}));
    EXPECT_EQ(warnings(log).size(), 1);
}

TEST_F(TORVColormapFileTest, LetsTheLastOfEqualSeamsCount)
{
    const LogFile log(TORVLog::LEVEL_WARNING);
    const TORVColormap map = withSeams({"0", "10", "10", "20"});
    EXPECT_EQ(map.getSeams(), (std::vector<double>{0, 10, 20}));
    EXPECT_EQ(redsOf(map), (std::vector<int>{1, 3, 4}));
}

TEST_F(TORVColormapFileTest, SaysNothingOfATidyFile)
{
    const LogFile log(TORVLog::LEVEL_WARNING);
    withSeams({"0", "10", "20", "30", "40"});
    EXPECT_EQ(warnings(log), QStringList());
}

TEST_F(TORVColormapFileTest, ReadsNoMoreEntriesThanAreThere)
{
    file.raw("[COLORSCALE "
             "1]\npoints\\1\\seam=0\npoints\\2\\seam=10\npoints\\2147483647\\seam=20\npoints\\size=2147483647\n")
        .raw("[COLORSET 1]\npoints\\1\\lower\\r=9\npoints\\3\\lower\\r=8\npoints\\size=2147483647\n")
        .write();
    const TORVColormap map = loaded();
    EXPECT_EQ(map.getNDefinedSeams(), 3);
    EXPECT_EQ(map.getNDefinedColors(), 2);
}

TEST_F(TORVColormapFileTest, TakesANegativeSizeForNone)
{
    file.raw("[COLORSCALE 1]\npoints\\1\\seam=0\npoints\\size=-3\n[COLORSET 1]\npoints\\size=-1\n").write();
    const LogFile log(TORVLog::LEVEL_WARNING);
    EXPECT_EQ(loaded().getScaleName(), QStringLiteral("Fixed"));
}

TEST_F(TORVColormapFileTest, BoundsTheNumberOfSeams)
{
    QByteArray text = "[COLORSCALE 1]\n";
    QByteArray colors = "[COLORSET 1]\n";
    for (int i = 1; i <= 5000; ++i) {
        text += "points\\" + QByteArray::number(i) + "\\seam=" + QByteArray::number(i) + "\n";
        colors += "points\\" + QByteArray::number(i) + "\\lower\\r=5\n";
    }
    file.raw(text + "points\\size=5000\n" + colors + "points\\size=5000\n").write();
    const TORVColormap map = loaded();
    EXPECT_EQ(map.getNDefinedSeams(), 2048);
    EXPECT_EQ(map.getNDefinedColors(), 2048);
}

TEST_F(TORVColormapFileTest, AcceptsLabelFormatsOfOneNumber)
{
    const QList<std::pair<QByteArray, QString>> formats = {
        {"3.0f", QStringLiteral("12")},      {"%3.0f", QStringLiteral("12")},  {"4.1f", QStringLiteral("12.3")},
        {"%+.2f", QStringLiteral("+12.35")}, {"g", QStringLiteral("12.3456")}, {"5.1e", QStringLiteral("1.2e+01")},
        {"05.1f", QStringLiteral("012.3")}};
    for (int i = 0; i < formats.size(); ++i) {
        file.scale(i + 1, "label_format=" + formats.at(i).first + "\n", {"0"}).colors(i + 1, TwoBands);
    }
    file.write();
    for (int i = 0; i < formats.size(); ++i) {
        EXPECT_EQ(loaded(i + 1).getLabel(12.3456), formats.at(i).second) << formats.at(i).first.constData();
    }
}

TEST_F(TORVColormapFileTest, RefusesEveryOtherLabelFormat)
{
    const QList<QByteArray> formats = {"%s",          "%n",     "3.0f%s", "%%f", "%d",       "%3.0lf",     "f3", "%1$f",
                                       "%999999999f", "%.999f", "%*f",    "''",  "%3.0f\\n", "\"%3.0f \"", "%a"};
    for (int i = 0; i < formats.size(); ++i) {
        file.scale(i + 1, "label_format=" + formats.at(i) + "\n", {"0"}).colors(i + 1, TwoBands);
    }
    file.write();
    for (int i = 0; i < formats.size(); ++i) {
        EXPECT_EQ(loaded(i + 1).getLabel(12.3456), QStringLiteral("12")) << formats.at(i).constData();
    }
}

TEST_F(TORVColormapFileTest, WritesTheLargestNumberWithoutHarm)
{
    writeScaleWith("label_format=99.99f\n");
    EXPECT_LT(loaded().getLabel(1e308).size(), 500);
}

TEST_F(TORVColormapFileTest, GarbageGivesBuiltInColours)
{
    std::mt19937 random(7);
    QByteArray bytes;
    for (int i = 0; i < 20000; ++i) {
        bytes.append(static_cast<char>(random()));
    }
    file.raw(bytes).write();
    const LogFile log(TORVLog::LEVEL_WARNING);
    const TORVColormap map(QStringLiteral("Default"), Reflectivity, TORVColormap::ABSOLUTE_VALUES);
    EXPECT_EQ(map.getScaleName(), QStringLiteral("Fixed"));
}

TEST_F(TORVColormapFileTest, AFileCutOffAnywhereGivesSomeScale)
{
    file.mapping(Groups).scale(1, "name=Default\ndata_index=1\n", {"0", "10"}).colors(1, TwoBands);
    const QString path = file.write();
    QFile whole(path);
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    const QByteArray bytes = whole.readAll();
    const LogFile log(TORVLog::LEVEL_WARNING);
    for (int length = 0; length < bytes.size(); length += 7) {
        ColorFile part; // of its own name: Qt remembers what it has read from a file of that time and size
        part.raw(bytes.left(length)).write();
        const TORVColormap map(QStringLiteral("Default"), Reflectivity, TORVColormap::ABSOLUTE_VALUES);
        EXPECT_GE(map.getNDefinedSeams(), 1) << length;
    }
}

TEST_F(TORVColormapFileTest, IsMadeByManyThreadsAtOnce)
{
    file.mapping(Groups).scale(1, "name=Default\ndata_index=1\n", {"0", "10"}).colors(1, TwoBands).write();
    std::vector<std::thread> threads;
    std::array<int, 4> right = {0, 0, 0, 0};
    for (std::size_t i = 0; i < right.size(); ++i) {
        threads.emplace_back([&right, i] {
            for (int round = 0; round < 50; ++round) {
                const TORVColormap map(QStringLiteral("Default"), Reflectivity, TORVColormap::ABSOLUTE_VALUES);
                right.at(i) += map.getColor(64.0) == Rgb{10, 20, 30} ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, (std::array<int, 4>{50, 50, 50, 50}));
}

TEST_F(TORVColormapFileTest, ManyThreadsWithoutAFileSayItOnce)
{
    const LogFile log(TORVLog::LEVEL_WARNING);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back(
            [] { TORVColormap(QStringLiteral("Default"), Reflectivity, TORVColormap::DISPLAY_VALUES); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(warnings(log).size(), 1);
}
