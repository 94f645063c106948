#include "datalib/TORVDataType.h"

#include <gtest/gtest.h>

namespace
{

// 1000 Hz at 5.33 cm: 533 * 1000 / 40000 = 13.325 m/s.
constexpr int Prf = 1000;
constexpr int Wavelength = 533;
constexpr double Nyquist = 13.325;

TORVDataType scaled(int rawType, int ratioCode = 0, int halvingCode = 0)
{
    return TORVDataType(rawType, Prf, ratioCode, Wavelength, halvingCode);
}

} // namespace

struct RowCase
{
    int rawCode;
    int rawType;
    const char* name;
    const char* unit;
    int maxRaw;
};

class TORVDataTypeRow : public testing::TestWithParam<RowCase>
{
};

TEST_P(TORVDataTypeRow, TellsItsQuantityUnitAndRange)
{
    const RowCase& row = GetParam();
    const TORVDataType type(row.rawCode);
    EXPECT_EQ(type.getRawType(), row.rawType);
    EXPECT_EQ(type.getQuantityName(), QLatin1String(row.name));
    EXPECT_EQ(type.getQuantityUnit(), QLatin1String(row.unit));
    EXPECT_EQ(type.getMinAbsValue(), 1);
    EXPECT_EQ(type.getMaxAbsValue(), row.maxRaw);
    EXPECT_EQ(type.getNoDataValue(), 0);
    EXPECT_EQ(type.getDisplayStr(0), QStringLiteral("NA"));
}

INSTANTIATE_TEST_SUITE_P(
    EveryCode, TORVDataTypeRow,
    testing::Values(RowCase{2, 2, "Reflectivity", "dBZ", 254}, RowCase{9, 9, "Reflectivity", "dBZ", 65534},
                    RowCase{4, 4, "Spectrum width", "m/s", 254}, RowCase{11, 11, "Spectrum width", "m/s", 65534},
                    RowCase{13, 13, "Rainfall rate", "mm/h", 65534}, RowCase{3, 3, "Radial velocity", "m/s", 254},
                    RowCase{10, 10, "Radial velocity", "m/s", 65534}, RowCase{12, -1, "Not available", "NA", 254},
                    RowCase{5, -1, "Not available", "NA", 254}, RowCase{8, -1, "Not available", "NA", 254},
                    RowCase{1, -1, "Not available", "NA", 254}, RowCase{0, -1, "Not available", "NA", 254},
                    RowCase{-3, -1, "Not available", "NA", 254}, RowCase{14, -1, "Not available", "NA", 254}));

struct ValueCase
{
    int rawCode;
    unsigned int raw;
    double display;
};

class TORVDataTypeValue : public testing::TestWithParam<ValueCase>
{
};

TEST_P(TORVDataTypeValue, ReadsRawAsDisplayValue)
{
    const ValueCase& value = GetParam();
    EXPECT_NEAR(scaled(value.rawCode).absoluteToDisplayValue(value.raw), value.display, 1e-9);
}

TEST_P(TORVDataTypeValue, WritesDisplayValueAsRaw)
{
    const ValueCase& value = GetParam();
    EXPECT_EQ(scaled(value.rawCode).displayToAbsoluteValue(value.display), value.raw);
}

INSTANTIATE_TEST_SUITE_P(BothWays, TORVDataTypeValue,
                         testing::Values(ValueCase{2, 1, -31.5},         // (1 - 64) / 2
                                         ValueCase{2, 104, 20.0},        // (104 - 64) / 2
                                         ValueCase{2, 254, 95.0},        // (254 - 64) / 2
                                         ValueCase{9, 32768, 0.0},       // the middle
                                         ValueCase{9, 34768, 20.0},      // 32768 + 2000
                                         ValueCase{9, 1, -327.67},       // (1 - 32768) / 100
                                         ValueCase{4, 128, Nyquist / 2}, // 128 / 256
                                         ValueCase{11, 250, 2.5},        // hundredths
                                         ValueCase{3, 128, 0.0},         // the middle
                                         ValueCase{3, 255, Nyquist},     // 127 / 127
                                         ValueCase{3, 1, -Nyquist},      // -127 / 127
                                         ValueCase{10, 31168, -16.0},    // 32768 - 1600
                                         ValueCase{13, 1, 0.0},          // nothing falls
                                         ValueCase{13, 4095, 0.4094},    // the last linear code
                                         ValueCase{7, 77, 77.0}));       // unknown: as it stands

TEST(TORVDataType, DecodesRainAboveTheLinearCodes)
{
    // 0x1000: exponent 1, mantissa 0: 4096 << 0 = 4096, less 1 = 4095 ten-thousandths.
    EXPECT_NEAR(TORVDataType(13).absoluteToDisplayValue(0x1000), 0.4095, 1e-9);
    // 0x5123: exponent 5: (0x123 | 0x1000) << 4 = 4387 * 16 = 70192, less 1.
    EXPECT_NEAR(TORVDataType(13).absoluteToDisplayValue(0x5123), 7.0191, 1e-9);
    // 65534 = 0xFFFE: exponent 15: (4094 + 4096) << 14 = 134184960, less 1.
    EXPECT_NEAR(TORVDataType(13).getMaxDisplayValue(), 13418.4959, 1e-6);
}

TEST(TORVDataType, DecodesTheNoRainCodeByUnsignedArithmetic)
{
    // 0 - 1 in 32 unsigned bits is 4294967295.
    EXPECT_NEAR(TORVDataType(13).absoluteToDisplayValue(0), 429496.7295, 1e-4);
}

TEST(TORVDataType, EncodesRainWithTheOneAddedToThePackedCode)
{
    const TORVDataType rain(13);
    // 4096 ten-thousandths: exponent 1, mantissa 0: 0x1000, and 1.
    EXPECT_EQ(rain.displayToAbsoluteValue(0.4096), 0x1001U);
    // 70192 halves to 4387 in four steps: exponent 5, mantissa 291: 0x5123, and 1.
    EXPECT_EQ(rain.displayToAbsoluteValue(7.0192), 0x5124U);
}

TEST(TORVDataType, RainIsItsOwnInverseOnlyBelow4096)
{
    const TORVDataType rain(13);
    for (const unsigned int raw : {1U, 2U, 1000U, 4095U}) {
        EXPECT_EQ(rain.displayToAbsoluteValue(rain.absoluteToDisplayValue(raw)), raw);
    }
    // 0x2000 reads (4096 << 1) - 1 = 8191, which encodes to 0x1000 | 0xFFF = 0x1FFF, and 1: the same by luck of the
    // carry; 0x2001 reads (4097 << 1) - 1 = 8193, which halves to 4096: 0x2000, and 1.
    EXPECT_EQ(rain.displayToAbsoluteValue(rain.absoluteToDisplayValue(0x2001)), 0x2001U);
    // 0x3002 reads (4098 << 2) - 1 = 16391, which halves twice to 4097: 0x3001, and 1: still; 0x3001 reads 16387,
    // halves to 4096: 0x3000, and 1. The step that shows is the first: 0x1000 reads 4095, which is linear: 4096.
    EXPECT_EQ(rain.displayToAbsoluteValue(rain.absoluteToDisplayValue(0x1000)), 4096U);
    // 0x1001 reads 4097 - 1 = 4096: 0x1000, and 1.
    EXPECT_EQ(rain.displayToAbsoluteValue(rain.absoluteToDisplayValue(0x1001)), 0x1001U);
}

TEST(TORVDataType, ShowsOneDecimal)
{
    EXPECT_EQ(TORVDataType(2).getDisplayStr(1), QStringLiteral("-31.5"));
    EXPECT_EQ(TORVDataType(9).getDisplayStr(32774), QStringLiteral("0.1")); // 0.06
}

TEST(TORVDataType, VelocityRangeIsNotSymmetric)
{
    const TORVDataType velocity = scaled(3);
    EXPECT_DOUBLE_EQ(velocity.getMinDisplayValue(), -Nyquist);
    EXPECT_DOUBLE_EQ(velocity.getMaxDisplayValue(), 126.0 * Nyquist / 127.0);
}

TEST(TORVDataType, LimitsVelocityToOneAboveItsLargestRawValue)
{
    const TORVDataType velocity = scaled(3);
    EXPECT_EQ(velocity.displayToAbsoluteValue(1000.0), 255U);
    EXPECT_EQ(velocity.getMaxAbsValue(), 254);
    EXPECT_EQ(velocity.displayToAbsoluteValue(-1000.0), 1U);
}

TEST(TORVDataType, LimitsTwoByteVelocityToItsRange)
{
    EXPECT_EQ(TORVDataType(10).displayToAbsoluteValue(1000.0), 65534U);
    EXPECT_EQ(TORVDataType(10).displayToAbsoluteValue(-1000.0), 1U);
}

TEST(TORVDataType, HalvingCodeHalvesVelocityAndWidth)
{
    EXPECT_DOUBLE_EQ(scaled(3, 0, 2).getMinDisplayValue(), -Nyquist / 2.0);
    EXPECT_DOUBLE_EQ(scaled(4, 0, 2).absoluteToDisplayValue(256), Nyquist / 2.0);
}

TEST(TORVDataType, RatioCodesWidenVelocity)
{
    EXPECT_DOUBLE_EQ(scaled(3, 1).getMinDisplayValue(), -2.0 * Nyquist);
    EXPECT_DOUBLE_EQ(scaled(3, 2).getMinDisplayValue(), -3.0 * Nyquist);
    EXPECT_DOUBLE_EQ(scaled(3, 3).getMinDisplayValue(), -4.0 * Nyquist);
    EXPECT_DOUBLE_EQ(scaled(3, 4).getMinDisplayValue(), -Nyquist);
    EXPECT_DOUBLE_EQ(scaled(3, 3, 2).getMinDisplayValue(), -2.0 * Nyquist);
}

TEST(TORVDataType, WidthTakesNoAccountOfTheRatioCode)
{
    EXPECT_EQ(scaled(4, 3), scaled(4, 0));
}

TEST(TORVDataType, ComparesCodesByTheirLowSixteenBits)
{
    EXPECT_EQ(scaled(3, 0x10001), scaled(3, 1));
    EXPECT_EQ(scaled(3, 0, 0x20002), scaled(3, 0, 2));
}

TEST(TORVDataType, OtherTypesHaveTheFactorOne)
{
    EXPECT_EQ(scaled(2), TORVDataType(2));
    EXPECT_EQ(scaled(10, 3, 2), TORVDataType(10));
    EXPECT_EQ(scaled(99, 3, 2), TORVDataType(99));
}

TEST(TORVDataType, DiffersWhereTheFactorDiffers)
{
    EXPECT_NE(scaled(3), scaled(3, 1));
    EXPECT_NE(TORVDataType(3), scaled(3));
    EXPECT_NE(TORVDataType(2), TORVDataType(9));
    EXPECT_EQ(scaled(3), scaled(3));
}

TEST(TORVDataType, NyquistOfTheLargestHeaderValuesDoesNotOverflow)
{
    const TORVDataType velocity(3, 2147483647, 0, 2147483647, 0);
    EXPECT_NEAR(velocity.getMinDisplayValue(), -2147483647.0 * 2147483647.0 / 40000.0, 1.0);
}

TEST(TORVDataTypeDeathTest, StopsAtAReflectivityBelowItsRange)
{
    EXPECT_DEATH(TORVDataType(2).displayToAbsoluteValue(-40.0), "x\\+0.5 >= 0.0|x \\+ 0.5 >= 0.0");
}

TEST(TORVDataTypeDeathTest, StopsAtNotANumber)
{
    EXPECT_DEATH(TORVDataType(11).displayToAbsoluteValue(std::nan("")), "x \\+ 0.5 >= 0.0");
}
