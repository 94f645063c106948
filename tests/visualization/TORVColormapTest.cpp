#include "visualization/TORVColormap.h"

#include "datalib/TORVDataType.h"

#include "visualization/ColorFile.h"

#include <gtest/gtest.h>

#include <vtkColorTransferFunction.h>

#include <string>
#include <type_traits>

namespace
{

using Rgb = ColorFile::Rgb;
using Bands = std::vector<ColorFile::Band>;

const Rgb A = {10, 20, 30};
const Rgb B = {110, 60, 230};
const Rgb C = {210, 200, 0};
const Rgb D = {250, 0, 90};

const TORVDataType Reflectivity(2);

void expectColor(const TORVColormap& map, double value, const std::array<double, 3>& expected)
{
    double rgb[3];
    vtkColorTransferFunction::SafeDownCast(map.getMap())->GetColor(value, rgb);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(rgb[i] * 255.0, expected.at(i), 1e-6) << "component " << i << " at " << value;
    }
}

std::array<double, 3> blend(const Rgb& a, const Rgb& b, double weight)
{
    std::array<double, 3> color{};
    for (std::size_t i = 0; i < 3; ++i) {
        color.at(i) = a.at(i) + (b.at(i) - a.at(i)) * weight;
    }
    return color;
}

std::array<double, 3> plain(const Rgb& color)
{
    return blend(color, color, 0.0);
}

std::array<double, 6> node(const TORVColormap& map, int index)
{
    std::array<double, 6> values{};
    vtkColorTransferFunction::SafeDownCast(map.getMap())->GetNodeValue(index, values.data());
    return values;
}

int nodesOf(const TORVColormap& map)
{
    return vtkColorTransferFunction::SafeDownCast(map.getMap())->GetSize();
}

class TORVColormapTest : public testing::Test
{
protected:
    // The only scale of the file, for the seams and bands given.
    TORVColormap load(const QList<QByteArray>& seams, const Bands& bands,
                      TORVColormap::ValueRange range = TORVColormap::DISPLAY_VALUES,
                      const TORVDataType& type = Reflectivity)
    {
        file.scale(1, "name=Default\n", seams).colors(1, bands).write();
        return TORVColormap(1, type, range);
    }

    ColorFile file;
};

const QList<QByteArray> ThreeSeams = {"0", "10", "20"};
const Bands Running = {{A, B}, {B, C}, {C, D}};
const Bands Standing = {{A, A}, {B, B}, {C, C}};
const Bands Mixture = {{A, A}, {B, C}, {C, C}};

} // namespace

TEST_F(TORVColormapTest, RunsFromSeamToSeam)
{
    const TORVColormap map = load(ThreeSeams, Running);
    EXPECT_EQ(map.getInterpolation(), 0);
    expectColor(map, -5.0, plain(A));
    expectColor(map, 0.0, plain(A));
    expectColor(map, 2.5, blend(A, B, 0.25));
    expectColor(map, 10.0, plain(B));
    expectColor(map, 15.0, blend(B, C, 0.5));
    expectColor(map, 20.0, plain(C));
    expectColor(map, 25.0, plain(C)); // the upper colour plays no part
}

TEST_F(TORVColormapTest, StepsHalfWayBetweenSeams)
{
    const TORVColormap map = load(ThreeSeams, Standing);
    EXPECT_EQ(map.getInterpolation(), 1);
    expectColor(map, -5.0, plain(A));
    expectColor(map, 4.99, plain(A));
    expectColor(map, 5.01, plain(B));
    expectColor(map, 14.99, plain(B));
    expectColor(map, 15.01, plain(C));
    expectColor(map, 99.0, plain(C));
}

TEST_F(TORVColormapTest, RunsAndStepsFromBandToBand)
{
    const TORVColormap map = load(ThreeSeams, Mixture);
    EXPECT_EQ(map.getInterpolation(), 2);
    expectColor(map, 4.99, plain(A));
    expectColor(map, 5.01, plain(B));
    expectColor(map, 10.0, plain(B));
    expectColor(map, 17.5, blend(B, C, 0.75));
    expectColor(map, 20.0, plain(C));
}

TEST_F(TORVColormapTest, TheLastBandDoesNotTellTheKind)
{
    EXPECT_EQ(load(ThreeSeams, {{A, B}, {B, C}, {C, C}}).getInterpolation(), 0);
}

TEST_F(TORVColormapTest, ALaterBandOfAnotherKindMakesTheScaleMixed)
{
    EXPECT_EQ(load({"0", "1", "2", "3"}, {{A, B}, {B, B}, {C, D}, {D, D}}).getInterpolation(), 2);
}

TEST_F(TORVColormapTest, TwoBandsTakeTheirKindFromTheFirst)
{
    EXPECT_EQ(load({"0", "10"}, {{A, A}, {B, C}}).getInterpolation(), 1);
}

TEST_F(TORVColormapTest, TwoRunningBandsTakeTheirKindFromTheFirst)
{
    EXPECT_EQ(load({"0", "10"}, {{A, B}, {B, B}}).getInterpolation(), 0);
}

TEST_F(TORVColormapTest, MoreSeamsThanColoursCloseTheTopBand)
{
    const TORVColormap map = load({"0", "10", "20", "30"}, Running);
    EXPECT_EQ(nodesOf(map), 3);
    EXPECT_EQ(map.getNDefinedSeams(), 4);
    EXPECT_EQ(map.getNDefinedColors(), 3);
    EXPECT_EQ(map.getNColorsInUse(), 3);
    EXPECT_EQ(map.getNSeamsInUse(), 4);
}

TEST_F(TORVColormapTest, MoreColoursThanSeamsLeaveColoursUnused)
{
    const TORVColormap map = load({"0", "10"}, Running);
    EXPECT_EQ(nodesOf(map), 2);
    EXPECT_EQ(map.getNDefinedSeams(), 2);
    EXPECT_EQ(map.getNDefinedColors(), 3);
    EXPECT_EQ(map.getNColorsInUse(), 1);
    EXPECT_EQ(map.getNSeamsInUse(), 2);
}

TEST_F(TORVColormapTest, RunningScalesAreDrawnInManyShades)
{
    EXPECT_EQ(load(ThreeSeams, Running).getNRenderedColors(), 2048);
}

TEST_F(TORVColormapTest, SteppedScalesAreDrawnInTheirColours)
{
    EXPECT_EQ(load({"0", "10", "20", "30"}, Standing).getNRenderedColors(), 3);
}

TEST_F(TORVColormapTest, PiecewiseConstantKeepsTheNodesOfARunningScale)
{
    TORVColormap map = load(ThreeSeams, Running);
    map.setPiecewiseConstant();
    EXPECT_EQ(map.getInterpolation(), 1);
    ASSERT_EQ(nodesOf(map), 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(node(map, i)[0], 10.0 * i);
        EXPECT_EQ(node(map, i)[4], 0.5);
        EXPECT_EQ(node(map, i)[5], 1.0);
    }
    expectColor(map, 4.99, plain(A));
    expectColor(map, 5.01, plain(B));
}

TEST_F(TORVColormapTest, PiecewiseLinearMakesASteppedScaleRun)
{
    TORVColormap map = load(ThreeSeams, Standing);
    map.setPiecewiseLinear();
    EXPECT_EQ(map.getInterpolation(), 0);
    EXPECT_EQ(node(map, 1)[4], 0.5);
    EXPECT_EQ(node(map, 1)[5], 0.0);
    expectColor(map, 2.5, blend(A, B, 0.25));
}

TEST_F(TORVColormapTest, CopiesHaveAMapOfTheirOwn)
{
    const TORVColormap map = load(ThreeSeams, Running);
    TORVColormap copy(map);
    copy.setPiecewiseConstant();
    expectColor(map, 2.5, blend(A, B, 0.25));
    expectColor(copy, 2.5, plain(A));
    TORVColormap assigned;
    assigned = map;
    EXPECT_NE(assigned.getMap(), map.getMap());
    EXPECT_EQ(assigned.getScaleName(), QStringLiteral("Default"));
    expectColor(assigned, 15.0, blend(B, C, 0.5));
}

TEST_F(TORVColormapTest, SurvivesAssignmentToItself)
{
    TORVColormap map = load(ThreeSeams, Running);
    const TORVColormap& same = map;
    map = same;
    expectColor(map, 10.0, plain(B));
}

TEST_F(TORVColormapTest, AnswersColoursCutToWholeNumbers)
{
    const TORVColormap map = load({"0", "8"}, {{{0, 100, 255}, B}, {{7, 200, 0}, C}});
    EXPECT_EQ(map.getColor(0.0), (Rgb{0, 100, 255}));
    // 7 / 8 of the way down from 255 is 31.875, 7 / 8 of 7 is 6.125, 100 + 87.5.
    EXPECT_EQ(map.getColor(7.0), (Rgb{6, 187, 31}));
}

TEST_F(TORVColormapTest, OtherColourSpacesRunThroughTheHues)
{
    file.scale(1, "", {"0", "10"}).colors(1, {{{255, 0, 0}, B}, {{0, 255, 0}, C}}, "colorspace=HSV\n").write();
    const TORVColormap map(1, Reflectivity, TORVColormap::DISPLAY_VALUES);
    expectColor(map, 5.0, {255.0, 255.0, 0.0}); // between red and green lies yellow
}

TEST_F(TORVColormapTest, TheBuiltInScaleHasSeamsEvery16)
{
    const TORVColormap map;
    EXPECT_EQ(map.getScaleName(), QStringLiteral("Fixed"));
    EXPECT_EQ(map.getColorSetName(), QStringLiteral("Fixed"));
    EXPECT_EQ(map.getDataUnits(), QStringLiteral("%"));
    ASSERT_GE(map.getNDefinedSeams(), 3);
    for (int i = 0; i < map.getNDefinedSeams(); ++i) {
        EXPECT_EQ(map.getSeams().at(static_cast<std::size_t>(i)), 16.0 * i);
    }
    EXPECT_EQ(nodesOf(map), map.getNDefinedSeams());
}

TEST_F(TORVColormapTest, IsMadeForDeletionThroughItsBase)
{
    EXPECT_TRUE(std::has_virtual_destructor<TORVColormap>::value);
}

namespace
{

struct TypeCase
{
    const char* name;
    TORVDataType type;
    QList<QByteArray> seams;           // display values
    std::array<double, 3> storedSeams; // by the arithmetic of the format
};

class TORVColormapTypeTest : public TORVColormapTest, public testing::WithParamInterface<TypeCase>
{
};

// Nyquist velocities: wavelength * prf / 40000, so 1000 * 640 gives 16 m/s, 1000 * 1016 gives 25.4.
const TypeCase Types[] = {
    {"UnknownType", TORVDataType(5), {"16", "32", "48"}, {16, 32, 48}},
    {"Reflectivity8", TORVDataType(2), {"0", "10", "20"}, {64, 84, 104}},                 // 2 d + 64
    {"Reflectivity16", TORVDataType(9), {"0", "10", "20"}, {32768, 33768, 34768}},        // 100 d + 32768
    {"Width8", TORVDataType(4, 640, 0, 1000, 0), {"1", "2", "4"}, {16, 32, 64}},          // 256 d / 16
    {"Width16", TORVDataType(11), {"1", "2", "4"}, {100, 200, 400}},                      // 100 d
    {"Velocity8", TORVDataType(3, 1016, 0, 1000, 0), {"-5", "0", "10"}, {103, 128, 178}}, // 127 d / 25.4 + 128
    {"Velocity16", TORVDataType(10), {"-5", "0", "10"}, {32268, 32768, 33768}},           // 100 d + 32768
    // 1000 + 1; 3000 + 1; 100000 is 6250 << 4: exponent 5, mantissa 6250 - 4096, + 1.
    {"Rain16", TORVDataType(13), {"0.1", "0.3", "10"}, {1001, 3001, 5 * 4096 + 2154 + 1}},
};

std::string nameOf(const testing::TestParamInfo<TypeCase>& info)
{
    return info.param.name;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(All, TORVColormapTypeTest, testing::ValuesIn(Types), nameOf);

TEST_P(TORVColormapTypeTest, KeepsDisplayValues)
{
    const TORVColormap map = load(GetParam().seams, Running, TORVColormap::DISPLAY_VALUES, GetParam().type);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(map.getSeams().at(static_cast<std::size_t>(i)), GetParam().seams.at(i).toDouble());
    }
    EXPECT_EQ(map.getValueRange(), TORVColormap::DISPLAY_VALUES);
}

TEST_P(TORVColormapTypeTest, TurnsSeamsIntoStoredValues)
{
    const TORVColormap map = load(GetParam().seams, Running, TORVColormap::ABSOLUTE_VALUES, GetParam().type);
    ASSERT_EQ(map.getNDefinedSeams(), 3);
    const Rgb colors[] = {A, B, C};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(map.getSeams().at(i), GetParam().storedSeams.at(i));
        expectColor(map, GetParam().storedSeams.at(i), plain(colors[i]));
    }
    const double middle = (GetParam().storedSeams[0] + GetParam().storedSeams[1]) / 2.0;
    expectColor(map, middle, blend(A, B, 0.5));
    EXPECT_EQ(map.getValueRange(), TORVColormap::ABSOLUTE_VALUES);
}

TEST_P(TORVColormapTypeTest, GivesEveryStoredValueTheStepOfItsDisplayValue)
{
    const TORVDataType& type = GetParam().type;
    const TORVColormap stored = load(GetParam().seams, Standing, TORVColormap::ABSOLUTE_VALUES, type);
    const double first = (GetParam().seams.at(0).toDouble() + GetParam().seams.at(1).toDouble()) / 2.0;
    const double second = (GetParam().seams.at(1).toDouble() + GetParam().seams.at(2).toDouble()) / 2.0;
    for (int raw = type.getMinAbsValue(); raw <= type.getMaxAbsValue(); ++raw) {
        const double display = type.absoluteToDisplayValue(static_cast<unsigned int>(raw));
        const Rgb& expected = display < first ? A : display < second ? B : C;
        ASSERT_EQ(stored.getColor(raw), expected) << raw;
    }
}

TEST_P(TORVColormapTypeTest, ComesBackFromStoredValues)
{
    const TORVColormap stored = load(GetParam().seams, Running, TORVColormap::ABSOLUTE_VALUES, GetParam().type);
    const TORVColormap map(stored, GetParam().type, TORVColormap::DISPLAY_VALUES);
    EXPECT_EQ(map.getValueRange(), TORVColormap::DISPLAY_VALUES);
    for (int i = 0; i < 3; ++i) {
        // Stored rain is read a step of its mantissa lower than it was written: 16 of 100000 here.
        EXPECT_NEAR(map.getSeams().at(static_cast<std::size_t>(i)), GetParam().seams.at(i).toDouble(), 2e-3);
    }
}

namespace
{

// 1000 * 824 / 40000 = 20.6 m/s, a scale that goes far beyond on both sides.
const TORVDataType Velocity(3, 824, 0, 1000, 0);
const QList<QByteArray> WideSeams = {"-60", "-30", "0", "30", "60"};
const Rgb E = {0, 240, 120};

} // namespace

TEST_F(TORVColormapTest, CutsASeamBeyondTheRangeOff)
{
    const TORVColormap map =
        load(WideSeams, {{A, B}, {B, C}, {C, D}, {D, E}, {E, A}}, TORVColormap::ABSOLUTE_VALUES, Velocity);
    // Stored 1 is -20.6 m/s: 9.4 of the 30 from B to C; stored 254 is 126 / 127 of 20.6.
    const double high = 20.6 * 126.0 / 127.0;
    ASSERT_EQ(nodesOf(map), 3);
    EXPECT_EQ(node(map, 0)[0], 1.0);
    EXPECT_EQ(node(map, 1)[0], 128.0);
    EXPECT_EQ(node(map, 2)[0], 254.0);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(node(map, 0).at(1 + i) * 255.0, blend(B, C, 9.4 / 30.0).at(i), 0.51);
        EXPECT_NEAR(node(map, 2).at(1 + i) * 255.0, blend(C, D, high / 30.0).at(i), 0.51);
    }
}

TEST_F(TORVColormapTest, ColoursNearTheEndOfTheRangeAsTheLegendDoes)
{
    const Bands bands = {{A, B}, {B, C}, {C, D}, {D, E}, {E, A}};
    const TORVColormap stored = load(WideSeams, bands, TORVColormap::ABSOLUTE_VALUES, Velocity);
    const TORVColormap display(1, Velocity, TORVColormap::DISPLAY_VALUES);
    for (unsigned int raw = 1; raw <= 254; ++raw) {
        const Rgb expected = display.getColor(Velocity.absoluteToDisplayValue(raw));
        const Rgb actual = stored.getColor(raw);
        for (std::size_t i = 0; i < 3; ++i) {
            ASSERT_NEAR(actual.at(i), expected.at(i), 1) << raw;
        }
    }
}

TEST_F(TORVColormapTest, KeepsAStepInItsPlaceWhereTheRangeCutsItsBand)
{
    // Steps at -15, 0 and 20: the range ends at 20.44, between the last step and the seam above it.
    const Bands bands = {{A, A}, {B, B}, {C, C}, {D, D}};
    const TORVColormap map = load({"-25", "-5", "5", "35"}, bands, TORVColormap::ABSOLUTE_VALUES, Velocity);
    for (unsigned int raw = 1; raw <= 254; ++raw) {
        const double value = Velocity.absoluteToDisplayValue(raw);
        const Rgb& expected = value < -15.0 ? A : value < 0.0 ? B : value < 20.0 ? C : D;
        ASSERT_EQ(map.getColor(raw), expected) << value;
    }
}

TEST_F(TORVColormapTest, TakesSeamsBelowTheTypesRange)
{
    // -40 dBZ is stored nowhere; the range starts at -31.5.
    const TORVColormap map = load({"-40", "-20", "0"}, Standing, TORVColormap::ABSOLUTE_VALUES);
    EXPECT_EQ(map.getColor(1), A);  // -31.5
    EXPECT_EQ(map.getColor(4), B);  // -30: the step
    EXPECT_EQ(map.getColor(64), C); // 0
    EXPECT_EQ(node(map, 0)[0], 1.0);
}

TEST_F(TORVColormapTest, TakesAScaleThatLiesOutsideTheRangeAltogether)
{
    EXPECT_EQ(load({"200", "300", "400"}, Running, TORVColormap::ABSOLUTE_VALUES).getColor(100), A);
}

TEST_F(TORVColormapTest, TakesAScaleThatLiesBelowTheRangeAltogether)
{
    EXPECT_EQ(load({"-400", "-300", "-200"}, Running, TORVColormap::ABSOLUTE_VALUES).getColor(100), C);
}

TEST_F(TORVColormapTest, LetsTheUpperOfTwoSeamsHaveASharedStoredValue)
{
    const TORVColormap map =
        load({"0", "10", "10.1", "20"}, {{A, B}, {B, C}, {C, D}, {D, A}}, TORVColormap::ABSOLUTE_VALUES);
    ASSERT_EQ(nodesOf(map), 3);
    expectColor(map, 84.0, plain(C));
}

TEST_F(TORVColormapTest, TakesATypeWhoseNyquistVelocityIsNothing)
{
    const TORVDataType nothing(3, 0, 0, 0, 0);
    const TORVColormap map = load({"-5", "0", "5"}, Running, TORVColormap::ABSOLUTE_VALUES, nothing);
    EXPECT_GE(nodesOf(map), 1);
    const TORVColormap width(1, TORVDataType(4, 0, 0, 0, 0), TORVColormap::ABSOLUTE_VALUES);
    EXPECT_GE(nodesOf(width), 1);
}

TEST_F(TORVColormapTest, TakesATypeWhoseNyquistVelocityIsNegative)
{
    const TORVColormap map =
        load({"-5", "0", "5"}, Running, TORVColormap::ABSOLUTE_VALUES, TORVDataType(3, -1000, 0, 533, 0));
    EXPECT_GE(nodesOf(map), 1);
}

TEST_F(TORVColormapTest, KeepsAClosingSeamAmongStoredValues)
{
    const TORVColormap map = load({"0", "10", "20", "30"}, Running, TORVColormap::ABSOLUTE_VALUES);
    EXPECT_EQ(map.getSeams(), (std::vector<double>{64, 84, 104, 124}));
    EXPECT_EQ(map.getNColorsInUse(), 3);
}
