#include "gui/TORVCursorReading.h"

#include "datalib/TORVTerrainSet.h"
#include "support/ProductFiles.h"
#include "utils/TORVGeoProjection.h"
#include "visualization/TORV3DFilters.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <vtkFloatArray.h>
#include <vtkPointData.h>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <tuple>

namespace
{

constexpr double Pi = 3.14159265358979323846;
constexpr int Columns = 61;
constexpr int Rows = 47;
constexpr int Levels = 13;
constexpr int HeaderBytes = 640;

// Steps of 1.5 km, 800 m and 750 m, the radar off the middle at (24.25, 30.5), 125 m above the sea.
TORVProductFields unevenGrid(int itemSize)
{
    TORVProductFields fields;
    fields.xPoints = Columns;
    fields.yPoints = Rows;
    fields.zPoints = Levels;
    fields.xScale = 150000;
    fields.yScale = 80000;
    fields.xRadar = 24250;
    fields.yRadar = 30500;
    fields.dataType = itemSize == 1 ? 2 : 9;
    return fields;
}

// A storm of two cores in clear air, with the special code at the top of the type's range here and there.
unsigned int stormAt(int x, int y, int z, int itemSize)
{
    const auto core = [&](double cx, double cy, double height, double width) {
        const double across = std::hypot(x - cx, y - cy) / width;
        return std::exp(-across * across) * std::max(1.0 - z / height, 0.0);
    };
    const double echo = std::max(core(20.0, 18.0, 12.0, 11.0), core(47.0, 33.0, 15.0, 8.0));
    if (echo < 0.08) {
        return 0;
    }
    if ((x * 7 + y * 3 + z) % 41 == 0) {
        return itemSize == 1 ? 255U : 65535U;
    }
    return static_cast<unsigned int>(itemSize == 1 ? 70.0 + 120.0 * echo : 30000.0 + 9000.0 * echo);
}

class TORVCursorReadingTest : public testing::Test
{
protected:
    TORVFile::CPtr write(const TORVProductFields& fields, const ProductFiles::Field& field, int itemSize = 1) const
    {
        return boost::make_shared<TORVFile>(
            files.write(QStringLiteral("HAL260714120000.CAPZ"), fields, ProductFiles::data(fields, field, itemSize)));
    }

    TORVFile::CPtr storm(int itemSize) const
    {
        return write(
            unevenGrid(itemSize), [itemSize](int x, int y, int z) { return stormAt(x, y, z, itemSize); }, itemSize);
    }

    static vtkSmartPointer<vtkImageData> drawn(const TORVFile::CPtr& file, int shrinkH, int shrinkV, double smooth)
    {
        const std::atomic<bool> abort{false};
        return vtk_3D_data_create(file, shrinkH, shrinkV, smooth, abort);
    }

    // From columns, rows and levels, which need not be whole.
    static TORVPoint3D scenePoint(double column, double row, double level)
    {
        return {(column - 24.25) * 1500.0, (row - 30.5) * 800.0, 125.0 + level * 750.0};
    }

    ProductFiles files;
};

// The stored items as they stand in the file's bytes.
class RawItems
{
public:
    RawItems(const QString& path, int itemSize) : _itemSize(itemSize)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        _bytes = file.readAll().mid(HeaderBytes);
        EXPECT_EQ(_bytes.size(), Columns * Rows * Levels * itemSize);
    }

    unsigned int at(int x, int y, int z) const
    {
        const int item = ((z * Rows + y) * Columns + x) * _itemSize;
        const auto byte = [this](int at) { return static_cast<unsigned int>(static_cast<uint8_t>(_bytes[at])); };
        return _itemSize == 1 ? byte(item) : byte(item) + 256U * byte(item + 1);
    }

    // Of the block of that point: the mean of its valid items, nothing where they are less than a quarter of it.
    std::optional<unsigned int> meanRound(int x, int y, int z, int shrinkH, int shrinkV) const
    {
        const unsigned int special = _itemSize == 1 ? 255U : 65535U;
        unsigned int sum = 0;
        unsigned int valid = 0;
        unsigned int all = 0;
        for (int k = z - z % shrinkV; k < std::min(z - z % shrinkV + shrinkV, Levels); ++k) {
            for (int j = y - y % shrinkH; j < std::min(y - y % shrinkH + shrinkH, Rows); ++j) {
                for (int i = x - x % shrinkH; i < std::min(x - x % shrinkH + shrinkH, Columns); ++i) {
                    const unsigned int raw = at(i, j, k);
                    const bool isValid = raw != 0 && raw != special;
                    sum += isValid ? raw : 0U;
                    valid += isValid ? 1U : 0U;
                    ++all;
                }
            }
        }
        if (valid == 0 || 4 * valid < all) {
            return {};
        }
        return static_cast<unsigned int>(std::floor(static_cast<double>(sum) / valid + 0.5));
    }

private:
    QByteArray _bytes;
    int _itemSize;
};

using Resolution = std::tuple<int, int, int>; // divisor along the ground, upwards, bytes of an item

class TORVCursorReadingAtResolution : public TORVCursorReadingTest, public testing::WithParamInterface<Resolution>
{
};

std::string resolutionName(const testing::TestParamInfo<Resolution>& info)
{
    return "H" + std::to_string(std::get<0>(info.param)) + "V" + std::to_string(std::get<1>(info.param)) + "Bytes" +
           std::to_string(std::get<2>(info.param));
}

} // namespace

TEST_P(TORVCursorReadingAtResolution, ReadsWhatTheFileHoldsAtFiveHundredPoints)
{
    const auto [shrinkH, shrinkV, itemSize] = GetParam();
    const TORVFile::CPtr file = storm(itemSize);
    const RawItems raw(file->getPath(), itemSize);
    const vtkSmartPointer<vtkImageData> image = drawn(file, shrinkH, shrinkV, 0.0);
    std::mt19937 random(7);
    std::uniform_real_distribution<double> column(0.0, Columns - 1.0);
    std::uniform_real_distribution<double> row(0.0, Rows - 1.0);
    std::uniform_real_distribution<double> level(0.0, Levels - 1.0);
    int withValue = 0;
    for (int point = 0; point < 500; ++point) {
        const double x = column(random);
        const double y = row(random);
        const double z = level(random);
        const std::optional<unsigned int> expected =
            raw.meanRound(static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)),
                          static_cast<int>(std::lround(z)), shrinkH, shrinkV);
        withValue += expected ? 1 : 0;
        EXPECT_EQ(TORVCursorReading::sample(*file, image, scenePoint(x, y, z)), expected) << x << ' ' << y << ' ' << z;
    }
    EXPECT_GT(withValue, 100);
    EXPECT_LT(withValue, 400);
}

INSTANTIATE_TEST_SUITE_P(All, TORVCursorReadingAtResolution,
                         testing::Combine(testing::Range(1, 5), testing::Range(1, 5), testing::Values(1, 2)),
                         resolutionName);

TEST_F(TORVCursorReadingTest, ReadsTheCellThatIsDrawnOfASmoothedVolume)
{
    const TORVFile::CPtr file = storm(1);
    const vtkSmartPointer<vtkImageData> image = drawn(file, 3, 2, 2.0);
    for (int x = 1; x < Columns; x += 5) {
        for (int y = 2; y < Rows; y += 4) {
            for (int z = 0; z < Levels; ++z) {
                // VTK's own search, in the image's own coordinates; off the middle, so that nothing is half-way.
                const vtkIdType cell = image->FindPoint(x + 0.1, y - 0.1, 5.0 * (z + 0.1));
                ASSERT_GE(cell, 0);
                const auto drawnValue = static_cast<unsigned int>(image->GetPointData()->GetScalars()->GetTuple1(cell));
                EXPECT_EQ(TORVCursorReading::sample(*file, image, scenePoint(x + 0.1, y - 0.1, z + 0.1)).value_or(0),
                          drawnValue);
            }
        }
    }
}

TEST_F(TORVCursorReadingTest, ReadsTheArrayWhateverItsName)
{
    const TORVFile::CPtr file = storm(1);
    const vtkSmartPointer<vtkImageData> image = drawn(file, 1, 1, 0.0);
    for (const char* const name : {"scalars", "ImageScalars", ""}) {
        image->GetPointData()->GetScalars()->SetName(name);
        EXPECT_EQ(TORVCursorReading::sample(*file, image, scenePoint(20, 18, 0)), 190U) << name;
    }
}

TEST_F(TORVCursorReadingTest, ReadsEachCornerOfTheGrid)
{
    const TORVFile::CPtr file =
        write(unevenGrid(1), [](int x, int y, int z) { return 10U + (x > 0) + 2U * (y > 0) + 4U * (z > 0); });
    const vtkSmartPointer<vtkImageData> image = drawn(file, 1, 1, 0.0);
    for (unsigned int corner = 0; corner < 8; ++corner) {
        const TORVPoint3D point =
            scenePoint(corner & 1U ? Columns - 1 : 0, corner & 2U ? Rows - 1 : 0, corner & 4U ? Levels - 1 : 0);
        EXPECT_EQ(TORVCursorReading::sample(*file, image, point), 10U + corner);
    }
}

TEST_F(TORVCursorReadingTest, ReadsNothingOutsideTheGrid)
{
    const TORVFile::CPtr file = write(unevenGrid(1), [](int, int, int) { return 100U; });
    for (const int shrink : {1, 4}) { // the last block of four columns has one
        const vtkSmartPointer<vtkImageData> image = drawn(file, shrink, shrink, 0.0);
        EXPECT_TRUE(TORVCursorReading::sample(*file, image, scenePoint(0, 0, 0)));
        for (const auto& [x, y, z] :
             {std::tuple(-0.6, 0.0, 0.0), std::tuple(Columns - 0.4, 0.0, 0.0), std::tuple(0.0, -0.6, 0.0),
              std::tuple(0.0, Rows - 0.4, 0.0), std::tuple(0.0, 0.0, -0.6), std::tuple(0.0, 0.0, Levels - 0.4)}) {
            EXPECT_FALSE(TORVCursorReading::sample(*file, image, scenePoint(x, y, z))) << x << ' ' << y << ' ' << z;
        }
    }
}

TEST_F(TORVCursorReadingTest, ReadsNothingAtAPointThatIsNone)
{
    const TORVFile::CPtr file = write(unevenGrid(1), [](int, int, int) { return 100U; });
    const vtkSmartPointer<vtkImageData> image = drawn(file, 1, 1, 0.0);
    for (const double bad : {std::nan(""), std::numeric_limits<double>::infinity(), 1e300, -1e300}) {
        EXPECT_FALSE(TORVCursorReading::sample(*file, image, {bad, 0.0, 125.0}));
        EXPECT_FALSE(TORVCursorReading::sample(*file, image, {0.0, 0.0, bad}));
    }
}

TEST_F(TORVCursorReadingTest, ReadsNothingWithoutAnImage)
{
    const TORVFile::CPtr file = storm(1);
    EXPECT_FALSE(TORVCursorReading::sample(*file, nullptr, scenePoint(20, 18, 0)));
    EXPECT_FALSE(TORVCursorReading::sample(*file, vtkSmartPointer<vtkImageData>::New(), scenePoint(20, 18, 0)));
}

TEST_F(TORVCursorReadingTest, ReadsNothingOfAnImageWithOtherItems)
{
    const TORVFile::CPtr twoBytes = storm(2);
    const vtkSmartPointer<vtkImageData> image = drawn(twoBytes, 1, 1, 0.0);
    const TORVFile::CPtr oneByte = storm(1);
    EXPECT_TRUE(TORVCursorReading::sample(*twoBytes, image, scenePoint(20, 18, 0)));
    EXPECT_FALSE(TORVCursorReading::sample(*oneByte, image, scenePoint(20, 18, 0)));
    image->GetPointData()->SetScalars(vtkSmartPointer<vtkFloatArray>::New());
    EXPECT_FALSE(TORVCursorReading::sample(*twoBytes, image, scenePoint(20, 18, 0)));
}

TEST_F(TORVCursorReadingTest, TheBoxGoesFromTheFirstGridPointToTheLast)
{
    // (0 - 24.25) * 1.5 km, (60 - 24.25) * 1.5 km, (0 - 30.5) * 0.8 km, (46 - 30.5) * 0.8 km, 125 m, 125 m + 9 km
    const std::array<double, 6> expected = {-36375.0, 53625.0, -24400.0, 12400.0, 125.0, 9125.0};
    const std::array<double, 6> bounds = TORVCursorReading::calculateBounds(*storm(1));
    for (std::size_t side = 0; side < expected.size(); ++side) {
        EXPECT_NEAR(bounds[side], expected[side], 1e-6) << side;
    }
}

TEST_F(TORVCursorReadingTest, APointThatIsNoneIsNotOnTheEarth)
{
    const TORVFile::CPtr file = storm(1);
    EXPECT_TRUE(TORVCursorReading::isOnEarth(*file, {1000.0, 2000.0, 3000.0}));
    EXPECT_FALSE(TORVCursorReading::isOnEarth(*file, {2.5e7, 0.0, 0.0})); // beyond the antipode
    for (const double bad : {std::nan(""), std::numeric_limits<double>::infinity()}) {
        EXPECT_FALSE(TORVCursorReading::isOnEarth(*file, {bad, 0.0, 0.0}));
        EXPECT_FALSE(TORVCursorReading::isOnEarth(*file, {0.0, bad, 0.0}));
        EXPECT_FALSE(TORVCursorReading::isOnEarth(*file, {0.0, 0.0, bad}));
    }
}

TEST_F(TORVCursorReadingTest, TheRadarIsAtItsOwnCoordinates)
{
    const TORVCoordinate place = TORVCursorReading::location(*storm(1), {0.0, 0.0, 5000.0});
    EXPECT_NEAR(place.getLat(), 60.0, 1e-6);
    EXPECT_NEAR(place.getLon(), 25.0, 1e-6);
}

TEST_F(TORVCursorReadingTest, StraightNorthIsNeitherEastNorWest)
{
    const auto result = TORVCursorReading::homePointCalculations(storm(1), {0.0, 0.0, 125.0}, {0.0, 12000.0, 125.0});
    EXPECT_EQ(result.eastKm, 0.0);
    EXPECT_GT(result.northKm, 11.9);
    EXPECT_NEAR(result.bearingDeg, 0.0, 1e-6);
}

TEST_F(TORVCursorReadingTest, StraightSouthIsNegative)
{
    const auto result = TORVCursorReading::homePointCalculations(storm(1), {0.0, 0.0, 125.0}, {0.0, -12000.0, 125.0});
    EXPECT_EQ(result.eastKm, 0.0);
    EXPECT_LT(result.northKm, -11.9);
    EXPECT_NEAR(result.bearingDeg, 180.0, 1e-6);
}

TEST_F(TORVCursorReadingTest, EastIsPositiveAndWestIsNegative)
{
    const TORVFile::CPtr file = storm(1);
    const TORVPoint3D home = {0.0, 0.0, 125.0};
    EXPECT_NEAR(TORVCursorReading::homePointCalculations(file, home, {12000.0, 0.0, 125.0}).eastKm, 12.0, 0.1);
    EXPECT_NEAR(TORVCursorReading::homePointCalculations(file, home, {-12000.0, 0.0, 125.0}).eastKm, -12.0, 0.1);
}

TEST_F(TORVCursorReadingTest, AtTheHomePointAllIsZero)
{
    const TORVPoint3D point = {-12345.0, 6789.0, 4000.0};
    const auto result = TORVCursorReading::homePointCalculations(storm(1), point, point);
    EXPECT_EQ(result.northKm, 0.0);
    EXPECT_EQ(result.eastKm, 0.0);
    EXPECT_NEAR(result.rangeKm, 0.0, 1e-4);
    EXPECT_EQ(result.groundKm, 0.0);
    EXPECT_EQ(result.slantKm, 0.0);
    EXPECT_EQ(result.elevationDeg, 0.0);
}

TEST_F(TORVCursorReadingTest, DistancesInTheSceneAreThoseOfItsMetres)
{
    const auto result =
        TORVCursorReading::homePointCalculations(storm(1), {-1000.0, -2000.0, 500.0}, {2000.0, 2000.0, 12500.0});
    EXPECT_DOUBLE_EQ(result.groundKm, 5.0);          // 3 and 4
    EXPECT_DOUBLE_EQ(result.slantKm, 13.0);          // 5 and 12
    EXPECT_NEAR(result.elevationDeg, 67.3801, 1e-4); // atan(12 / 5)
}

TEST_F(TORVCursorReadingTest, StraightUpIsNinetyDegrees)
{
    const TORVFile::CPtr file = storm(1);
    EXPECT_NEAR(TORVCursorReading::homePointCalculations(file, {0, 0, 125}, {0, 0, 5000}).elevationDeg, 90.0, 1e-6);
    EXPECT_NEAR(TORVCursorReading::homePointCalculations(file, {0, 0, 5000}, {0, 0, 125}).elevationDeg, -90.0, 1e-6);
}

TEST_F(TORVCursorReadingTest, CalculationsNeedAFile)
{
    EXPECT_DEATH(TORVCursorReading::homePointCalculations(nullptr, {}, {}), "file3d");
}

TEST_F(TORVCursorReadingTest, ThereIsNoGroundUntilItIsLoaded)
{
    const TORVCoordinate place(60.0, 25.0);
    EXPECT_FALSE(TORVCursorReading::groundElevation(nullptr, place));
    const TORVTerrainSet set(storm(1)->getGeoProjection(), TORVCoordinate(59.0, 24.0), TORVCoordinate(61.0, 26.0));
    EXPECT_FALSE(TORVCursorReading::groundElevation(&set, place));
    const std::atomic<bool> abort{false};
    set.loadFiles(abort);
    EXPECT_EQ(TORVCursorReading::groundElevation(&set, place), 0.0); // of a set without blocks
}

/*
 * 200 pairs of points in a volume of 240 km, against geod on the ellipsoid of the cursor tool's distances.
 *
 * Range and bearing are those of the azimuthal equidistant projection centred on the home point, which on an ellipsoid
 * are the geodesic's own. The definition of that projection is written with six decimals of a degree, so its centre is
 * off by up to half a millionth of a degree each way: 0.056 m along the meridian and 0.028 m along the parallel at
 * 60 degrees, 0.063 m in all. The nine digits of pi shift the cursor's place by 1.2e-9 of its degrees, 0.007 m.
 * Together 0.07 m of range, and as an angle 0.07 m across the range, 0.004 degrees at the 1 km that pairs are apart at
 * least.
 *
 * Elevations are measured in the plane of the scene, whose distances are right from the radar only. Across, at a
 * distance r, it is stretched by 1 + r * r / (6 R * R): 1.2e-4 in the corners (r = 170 km). An angle is off by at most
 * half of that in radians, 0.0034 degrees. That the Earth curves away under the plane is not taken into account.
 */
TEST_F(TORVCursorReadingTest, AgreesWithGeodOnTwoHundredPairs)
{
    const QString program = QStandardPaths::findExecutable(QStringLiteral("geod"));
    if (program.isEmpty()) {
        GTEST_SKIP() << "geod (package proj-bin) is not on this machine";
    }
    TORVProductFields fields;
    fields.earthRadius = 637813700;
    fields.earthInvFlattening = 298257000;
    const TORVFile::CPtr file =
        boost::make_shared<TORVFile>(files.write(QStringLiteral("HAL260714120000.CAPZ"), fields));
    std::mt19937 random(11);
    std::uniform_real_distribution<double> across(-119500.0, 119500.0);
    std::uniform_real_distribution<double> up(125.0, 14375.0);
    const auto somewhere = [&] { return TORVPoint3D{across(random), across(random), up(random)}; };
    std::vector<std::pair<TORVPoint3D, TORVPoint3D>> pairs;
    QByteArray questions;
    while (pairs.size() < 200) {
        const std::pair<TORVPoint3D, TORVPoint3D> pair{somewhere(), somewhere()};
        if (std::hypot(pair.first.x - pair.second.x, pair.first.y - pair.second.y) < 1000.0) {
            continue;
        }
        pairs.push_back(pair);
        for (const TORVPoint3D& point : {pair.first, pair.second}) {
            const TORVCoordinate place = TORVCursorReading::location(*file, point);
            questions +=
                QByteArray::number(place.getLat(), 'f', 12) + ' ' + QByteArray::number(place.getLon(), 'f', 12) + ' ';
        }
        questions += '\n';
    }
    QProcess geod;
    geod.start(program, {QStringLiteral("-I"), QStringLiteral("-f"), QStringLiteral("%.9f"), QStringLiteral("-F"),
                         QStringLiteral("%.6f"), QStringLiteral("+a=6378137"), QStringLiteral("+rf=298.257")});
    ASSERT_TRUE(geod.waitForStarted());
    geod.write(questions);
    geod.closeWriteChannel();
    ASSERT_TRUE(geod.waitForFinished(-1));
    const QList<QByteArray> answers = geod.readAllStandardOutput().split('\n');
    ASSERT_GE(answers.size(), 200);
    for (std::size_t at = 0; at < pairs.size(); ++at) {
        const auto& [home, cursor] = pairs[at];
        const QList<QByteArray> answer = answers[static_cast<int>(at)].simplified().split(' ');
        ASSERT_EQ(answer.size(), 3);
        const double bearing = std::fmod(answer[0].toDouble() + 360.0, 360.0);
        const double range = answer[2].toDouble();
        const double elevation = std::atan2(cursor.z - home.z, range) * 180.0 / Pi;
        const auto result = TORVCursorReading::homePointCalculations(file, home, cursor);
        EXPECT_NEAR(result.rangeKm * 1000.0, range, 0.07);
        EXPECT_NEAR(std::remainder(result.bearingDeg - bearing, 360.0), 0.0, 0.07 / range * 180.0 / Pi);
        EXPECT_NEAR(result.elevationDeg, elevation, 0.0034);
        EXPECT_NEAR(result.groundKm * 1000.0, range, 1.2e-4 * range);
    }
}
