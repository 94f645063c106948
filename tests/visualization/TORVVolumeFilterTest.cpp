#include "visualization/TORVVolumeFilter.h"

#include "support/ProductFiles.h"
#include "support/SharedData.h"

#include <gtest/gtest.h>

#include <vtkImageCast.h>
#include <vtkImageData.h>
#include <vtkImageGaussianSmooth.h>
#include <vtkImageShrink3D.h>
#include <vtkNew.h>

#include <cmath>
#include <functional>

namespace
{

constexpr uint16_t Reflectivity8 = 2;
constexpr uint16_t Reflectivity16 = 9;
constexpr uint16_t Velocity8 = 3;

class TORVVolumeFilterTest : public testing::Test
{
protected:
    using Image = vtkSmartPointer<vtkImageData>;

    TORVFile::CPtr product(int x, int y, int z, const ProductFiles::Field& field, uint16_t dataType = Reflectivity8)
    {
        TORVProductFields fields = ProductFiles::small();
        fields.xPoints = x;
        fields.yPoints = y;
        fields.zPoints = z;
        fields.dataType = dataType;
        const int itemSize = dataType == Reflectivity16 ? 2 : 1;
        return TORVFile::openChecked(
            files.write(QStringLiteral("HAL260714120000.CAPZ"), fields, ProductFiles::data(fields, field, itemSize)));
    }

    static Image run(const TORVFile::CPtr& file, const TORVVolumeFilter& filter)
    {
        const std::atomic<bool> abort{false};
        return filter.run(*TORVProductData::read(*file), {file->getXPoints(), file->getYPoints(), file->getZPoints()},
                          file->getDataType(), abort);
    }

    Image run(int x, int y, int z, const ProductFiles::Field& field, const TORVVolumeFilter& filter,
              uint16_t dataType = Reflectivity8)
    {
        return run(product(x, y, z, field, dataType), filter);
    }

    static int at(vtkImageData* image, int x, int y = 0, int z = 0)
    {
        return static_cast<int>(image->GetScalarComponentAsDouble(x, y, z, 0));
    }

    // VTK's own two filters on floating-point numbers, where they don't cut off fractions, over the same blocks.
    static Image byVTK(vtkImageData* raw, const TORVVolumeFilter& filter)
    {
        const int h = filter.getShrinkHorizontal();
        const int v = filter.getShrinkVertical();
        vtkNew<vtkImageCast> cast;
        cast->SetInputData(raw);
        cast->SetOutputScalarTypeToFloat();
        vtkNew<vtkImageShrink3D> shrink;
        shrink->SetInputConnection(cast->GetOutputPort());
        shrink->AveragingOn();
        shrink->SetShrinkFactors(h, h, v);
        vtkNew<vtkImageGaussianSmooth> smooth;
        smooth->SetInputConnection(shrink->GetOutputPort());
        smooth->SetDimensionality(3);
        smooth->SetRadiusFactors(3.0, 3.0, 3.0);
        smooth->SetStandardDeviations(filter.getSmooth() / h, filter.getSmooth() / h, filter.getSmooth() / v);
        smooth->Update();
        return smooth->GetOutput();
    }

    void expectAsVTK(const TORVVolumeFilter& filter, uint16_t dataType)
    {
        const unsigned int most = dataType == Reflectivity16 ? 65534 : 254;
        const auto rough = [most](int x, int y, int z) {
            const auto mixed = static_cast<unsigned int>(x * 7919 + y * 104729 + z * 1299709);
            return 1 + (mixed * 2654435761U >> 8U) % most;
        };
        const TORVFile::CPtr file = product(24, 16, 12, rough, dataType);
        const Image raw = run(file, TORVVolumeFilter(1, 1, 0.0));
        const Image expected = byVTK(raw, filter);
        const Image actual = run(file, filter);
        int size[3];
        expected->GetDimensions(size);
        ASSERT_EQ(actual->GetNumberOfPoints(), expected->GetNumberOfPoints());
        // The mean of a block is rounded before it is smoothed, and the result once more.
        for (vtkIdType i = 0; i < actual->GetNumberOfPoints(); ++i) {
            const vtkIdType plane = static_cast<vtkIdType>(size[0]) * size[1];
            const int x = static_cast<int>(i % size[0]);
            const int y = static_cast<int>(i % plane / size[0]);
            const int z = static_cast<int>(i / plane);
            ASSERT_NEAR(at(actual, x, y, z), expected->GetScalarComponentAsDouble(x, y, z, 0), 1.0)
                << x << ' ' << y << ' ' << z;
        }
    }

    ProductFiles files;
};

unsigned int ball(int x, int y, int z, unsigned int inside)
{
    return (x - 10) * (x - 10) + (y - 10) * (y - 10) + (z - 10) * (z - 10) <= 36 ? inside : 0U;
}

} // namespace

TEST_F(TORVVolumeFilterTest, BringsSettingsIntoTheirLimits)
{
    const TORVVolumeFilter low(0, -3, -1.0);
    EXPECT_EQ(low.getShrinkHorizontal(), 1);
    EXPECT_EQ(low.getShrinkVertical(), 1);
    EXPECT_EQ(low.getSmooth(), 0.0);
    const TORVVolumeFilter high(9, 5, 25.0);
    EXPECT_EQ(high.getShrinkHorizontal(), 4);
    EXPECT_EQ(high.getShrinkVertical(), 4);
    EXPECT_EQ(high.getSmooth(), 10.0);
    EXPECT_EQ(TORVVolumeFilter(1, 1, std::nan("")).getSmooth(), 0.0);
}

TEST_F(TORVVolumeFilterTest, KeepsValuesAndDropsSpecialCodes)
{
    // 0 is no data, 255 a special code of the one-byte types.
    const unsigned int values[] = {0, 1, 254, 255};
    const Image image = run(
        4, 1, 1, [&](int x, int, int) { return values[x]; }, TORVVolumeFilter(1, 1, 0.0));
    EXPECT_EQ(image->GetScalarType(), VTK_UNSIGNED_CHAR);
    EXPECT_EQ(at(image, 0), 0);
    EXPECT_EQ(at(image, 1), 1);
    EXPECT_EQ(at(image, 2), 254);
    EXPECT_EQ(at(image, 3), 0);
}

TEST_F(TORVVolumeFilterTest, KeepsTwoByteValuesAndDropsSpecialCodes)
{
    const unsigned int values[] = {0, 1, 65534, 65535};
    const Image image = run(
        4, 1, 1, [&](int x, int, int) { return values[x]; }, TORVVolumeFilter(1, 1, 0.0), Reflectivity16);
    EXPECT_EQ(image->GetScalarType(), VTK_UNSIGNED_SHORT);
    EXPECT_EQ(at(image, 1), 1);
    EXPECT_EQ(at(image, 2), 65534);
    EXPECT_EQ(at(image, 3), 0);
}

TEST_F(TORVVolumeFilterTest, StandsInGridPointsWithLevelsFiveApart)
{
    const Image image = run(
        4, 3, 2, [](int, int, int) { return 1U; }, TORVVolumeFilter(1, 1, 0.0));
    const double* const spacing = image->GetSpacing();
    const double* const origin = image->GetOrigin();
    EXPECT_EQ(spacing[0], 1.0);
    EXPECT_EQ(spacing[1], 1.0);
    EXPECT_EQ(spacing[2], 5.0);
    EXPECT_EQ(origin[0], 0.0);
    EXPECT_EQ(origin[1], 0.0);
    EXPECT_EQ(origin[2], 0.0);
}

TEST_F(TORVVolumeFilterTest, PutsABlockInItsMiddle)
{
    const Image image = run(
        8, 8, 4, [](int, int, int) { return 1U; }, TORVVolumeFilter(4, 2, 0.0));
    const double* const spacing = image->GetSpacing();
    const double* const origin = image->GetOrigin();
    EXPECT_EQ(spacing[0], 4.0);
    EXPECT_EQ(spacing[1], 4.0);
    EXPECT_EQ(spacing[2], 10.0);
    EXPECT_EQ(origin[0], 1.5); // the middle of 0, 1, 2, 3
    EXPECT_EQ(origin[1], 1.5);
    EXPECT_EQ(origin[2], 2.5); // half a level
}

TEST_F(TORVVolumeFilterTest, TakesTheMeanOfTheValidPointsAlone)
{
    // Block 0: 100, no data, 103, special: (100 + 103) / 2 = 101.5, rounded up. Block 1: 10, 20, 30, 40: 25.
    const unsigned int values[] = {100, 0, 10, 20, 103, 255, 30, 40};
    const Image image = run(
        4, 2, 1, [&](int x, int y, int) { return values[4 * y + x]; }, TORVVolumeFilter(2, 1, 0.0));
    EXPECT_EQ(at(image, 0), 102);
    EXPECT_EQ(at(image, 1), 25);
}

TEST_F(TORVVolumeFilterTest, TakesLessThanAQuarterOfABlockForNoData)
{
    // Two blocks of 4 x 4: one holds three valid points, the other four.
    const Image image = run(
        8, 4, 1, [](int x, int y, int) { return y == 0 && x % 4 < (x < 4 ? 3 : 4) ? 80U : 0U; },
        TORVVolumeFilter(4, 1, 0.0));
    EXPECT_EQ(at(image, 0), 0);
    EXPECT_EQ(at(image, 1), 80);
}

TEST_F(TORVVolumeFilterTest, AveragesTheLastBlockOverWhatItHas)
{
    // Columns 0..3 and 4..5, levels 0..1 and 2: four blocks, the last of 2 x 1 points.
    const Image image = run(
        6, 1, 3, [](int x, int, int z) { return static_cast<unsigned int>(10 + x + 100 * (z == 2)); },
        TORVVolumeFilter(4, 2, 0.0));
    int size[3];
    image->GetDimensions(size);
    EXPECT_EQ(size[0], 2);
    EXPECT_EQ(size[1], 1);
    EXPECT_EQ(size[2], 2);
    EXPECT_EQ(at(image, 0, 0, 0), 12);  // (10 + 11 + 12 + 13) / 4 = 11.5
    EXPECT_EQ(at(image, 1, 0, 0), 15);  // (14 + 15) / 2 = 14.5
    EXPECT_EQ(at(image, 1, 0, 1), 115); // (114 + 115) / 2 = 114.5
}

TEST_F(TORVVolumeFilterTest, EqualsVTKWhereEveryPointIsValid)
{
    for (const uint16_t dataType : {Reflectivity8, Reflectivity16}) {
        for (const double smooth : {0.4, 1.0, 2.7, 10.0}) {
            SCOPED_TRACE(testing::Message() << "type " << dataType << " smooth " << smooth);
            expectAsVTK(TORVVolumeFilter(1, 1, smooth), dataType);
            expectAsVTK(TORVVolumeFilter(4, 1, smooth), dataType);
            expectAsVTK(TORVVolumeFilter(2, 3, smooth), dataType);
        }
    }
}

TEST_F(TORVVolumeFilterTest, LeavesAnEvenEchoAsItIs)
{
    // Without the mask the rim of the ball would sink towards 0.
    const Image image = run(
        21, 21, 21, [](int x, int y, int z) { return ball(x, y, z, 120); }, TORVVolumeFilter(1, 1, 1.0));
    for (int z = 0; z < 21; ++z) {
        for (int y = 0; y < 21; ++y) {
            for (int x = 0; x < 21; ++x) {
                const int value = at(image, x, y, z);
                EXPECT_TRUE(value == 120 || (value == 0 && ball(x, y, z, 1) == 0)) << value;
            }
        }
    }
}

TEST_F(TORVVolumeFilterTest, KeepsAPointThatStandsAlone)
{
    const Image image = run(
        9, 9, 9, [](int x, int y, int z) { return x == 4 && y == 4 && z == 4 ? 90U : 0U; },
        TORVVolumeFilter(1, 1, 2.0));
    EXPECT_EQ(at(image, 4, 4, 4), 90);
    EXPECT_EQ(at(image, 5, 4, 4), 0);
}

TEST_F(TORVVolumeFilterTest, GrowsNoEdge)
{
    const Image image = run(
        20, 9, 9, [](int x, int, int) { return x < 10 ? 90U : 0U; }, TORVVolumeFilter(1, 1, 1.0));
    EXPECT_EQ(at(image, 9, 4, 4), 90);
    EXPECT_EQ(at(image, 10, 4, 4), 0);
    EXPECT_EQ(at(image, 10, 0, 0), 0); // nor at the rim of the grid
}

TEST_F(TORVVolumeFilterTest, ClosesAHole)
{
    const Image image = run(
        9, 9, 9, [](int x, int y, int z) { return x == 4 && y == 4 && z == 4 ? 0U : 90U; },
        TORVVolumeFilter(1, 1, 1.0));
    EXPECT_EQ(at(image, 4, 4, 4), 90);
}

TEST_F(TORVVolumeFilterTest, KeepsAThinLayer)
{
    // Two levels of 23 dBZ (raw 110) under a clear sky.
    const Image image = run(
        12, 12, 12, [](int, int, int z) { return z < 2 ? 110U : 0U; }, TORVVolumeFilter(4, 1, 1.0));
    EXPECT_EQ(at(image, 1, 1, 0), 110);
    EXPECT_EQ(at(image, 1, 1, 1), 110);
    EXPECT_EQ(at(image, 1, 1, 2), 0);
}

TEST_F(TORVVolumeFilterTest, NeverTurnsAVelocityRound)
{
    // Raw 128 is at rest; all of the ball moves outbound, so nothing may come out below.
    for (const TORVVolumeFilter& filter : {TORVVolumeFilter(1, 1, 1.0), TORVVolumeFilter(4, 1, 1.0)}) {
        const Image image = run(
            21, 21, 21, [](int x, int y, int z) { return ball(x, y, z, 180); }, filter, Velocity8);
        for (vtkIdType i = 0; i < image->GetNumberOfPoints(); ++i) {
            const auto value = static_cast<const unsigned char*>(image->GetScalarPointer())[i];
            ASSERT_TRUE(value == 0 || value >= 128) << int(value);
        }
    }
}

TEST_F(TORVVolumeFilterTest, MakesNothingOfNothing)
{
    const Image image = run(
        9, 8, 7, [](int, int, int) { return 0U; }, TORVVolumeFilter(2, 2, 3.0));
    for (vtkIdType i = 0; i < image->GetNumberOfPoints(); ++i) {
        ASSERT_EQ(static_cast<const unsigned char*>(image->GetScalarPointer())[i], 0);
    }
}

TEST_F(TORVVolumeFilterTest, WorksOnASinglePoint)
{
    const Image image = run(
        1, 1, 1, [](int, int, int) { return 77U; }, TORVVolumeFilter(4, 4, 10.0));
    EXPECT_EQ(at(image, 0), 77);
}

TEST_F(TORVVolumeFilterTest, GivesNothingWhenAborted)
{
    const TORVFile::CPtr file = product(4, 4, 4, [](int, int, int) { return 1U; });
    const std::atomic<bool> abort{true};
    EXPECT_FALSE(TORVVolumeFilter(1, 1, 1.0).run(*TORVProductData::read(*file), {4, 4, 4}, file->getDataType(), abort));
}

TEST_F(TORVVolumeFilterTest, KeepsTheCoresOfRealStorms)
{
    TORV_NEEDS_SHARED_DATA();
    for (const char* const name : {"LEM220628071928.CAPZ", "KTL990503235621.CAPZ", "MTY210114101500.CAPZ"}) {
        const TORVFile::CPtr file = TORVFile::openChecked(SharedData::path(QLatin1String("3d/") + QLatin1String(name)));
        const TORVDataType type = file->getDataType();
        double range[2];
        run(file, TORVVolumeFilter(1, 1, 0.0))->GetScalarRange(range);
        const double raw = type.absoluteToDisplayValue(static_cast<unsigned int>(range[1]));
        run(file, TORVVolumeFilter(4, 1, 1.0))->GetScalarRange(range);
        const double drawn = type.absoluteToDisplayValue(static_cast<unsigned int>(range[1]));
        std::cout << name << ": core " << raw << " dBZ, drawn at a quarter " << drawn << " dBZ\n";
        EXPECT_LE(drawn, raw);
        EXPECT_GE(drawn, raw - 8.0) << name; // a mean over 16 points, and nothing dragged towards no data
    }
}
