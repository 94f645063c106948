#include "datalib/TORVFile.h"
#include "datalib/TORVProductData.h"
#include "support/SharedData.h"

#include <QDirIterator>

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

struct Product
{
    const char* name;
    const char* site;
    const char* product;
    const char* configuration;
    const char* time;
    int points[3];
    double step_m[3];
    int itemSize;
    double lat;
    double lon;
    int ground;
    double nyquist; ///< of one-byte velocities, 0 where the product has none
};

// From the table that came with the products.
const Product Products[] = {
    {"3d/LEM220628071928.CAPZ",
     "MONTE LEMA",
     "CAPPI",
     "Z",
     "2022-06-28T07:19:28Z",
     {240, 240, 20},
     {1000, 1000, 750},
     1,
     46.0408,
     8.8332,
     1586,
     0},
    {"3d/LEM220628071928.CAPV",
     "MONTE LEMA",
     "CAPPI",
     "V",
     "2022-06-28T07:19:28Z",
     {240, 240, 20},
     {1000, 1000, 750},
     1,
     46.0408,
     8.8332,
     1586,
     20.62},
    {"3d/LEM220628071928.CAPW",
     "MONTE LEMA",
     "CAPPI",
     "W",
     "2022-06-28T07:19:28Z",
     {240, 240, 20},
     {1000, 1000, 750},
     1,
     46.0408,
     8.8332,
     1586,
     0},
    {"3d/LEM220628071928.CAPZH",
     "MONTE LEMA",
     "CAPPI",
     "Z",
     "2022-06-28T07:19:28Z",
     {480, 480, 32},
     {500, 500, 500},
     1,
     46.0408,
     8.8332,
     1586,
     0},
    {"3d/LEM220628071928.CAPZ2H",
     "MONTE LEMA",
     "CAPPI",
     "Z",
     "2022-06-28T07:19:28Z",
     {480, 480, 32},
     {500, 500, 500},
     2,
     46.0408,
     8.8332,
     1586,
     0},
    {"3d/KTL990503235621.CAPZ",
     "TWIN_LAKES_KTLX",
     "CAPPI",
     "Z",
     "1999-05-03T23:56:21Z",
     {240, 240, 20},
     {1000, 1000, 750},
     1,
     35.3331,
     -97.2778,
     370,
     0},
    {"3d/KTL990503235621.CAPV",
     "TWIN_LAKES_KTLX",
     "CAPPI",
     "V",
     "1999-05-03T23:56:21Z",
     {240, 240, 20},
     {1000, 1000, 750},
     1,
     35.3331,
     -97.2778,
     370,
     30.41},
    {"3d/KTL990503235621.CAPZ2S",
     "TWIN_LAKES_KTLX",
     "CAPPI",
     "Z",
     "1999-05-03T23:56:21Z",
     {120, 120, 16},
     {2000, 2000, 0},
     2,
     35.3331,
     -97.2778,
     370,
     0},
    {"3d/MTY210114101500.CAPZ",
     "MONTANCY",
     "CAPPI",
     "Z",
     "2021-01-14T10:15:00Z",
     {181, 181, 12},
     {1000, 1000, 500},
     1,
     47.3686,
     7.0190,
     910,
     0},
    {"3d/MTY210114101500.CAPV",
     "MONTANCY",
     "CAPPI",
     "V",
     "2021-01-14T10:15:00Z",
     {181, 181, 12},
     {1000, 1000, 500},
     1,
     47.3686,
     7.0190,
     910,
     60.50},
    {"2d/LEM220628071928.MAX",
     "MONTE LEMA",
     "MAX",
     "Z",
     "2022-06-28T07:19:28Z",
     {240, 240, 1},
     {1000, 1000, 0},
     1,
     46.0408,
     8.8332,
     1586,
     0},
    {"2d/LEM220628071928.SRI",
     "MONTE LEMA",
     "SRI",
     "R",
     "2022-06-28T07:19:28Z",
     {240, 240, 1},
     {1000, 1000, 0},
     2,
     46.0408,
     8.8332,
     1586,
     0},
    {"2d/TER181220050432.PPIZ",
     "",
     "PPI",
     "Z",
     "2018-12-20T05:04:32Z",
     {170, 170, 1},
     {500, 500, 0},
     1,
     -33.70,
     151.21,
     195,
     0},
};

class RealProduct : public testing::TestWithParam<Product>
{
protected:
    void SetUp() override { TORV_NEEDS_SHARED_DATA(); }
};

} // namespace

TEST_P(RealProduct, IsReadAsItsTableSays)
{
    const Product& expected = GetParam();
    const TORVFile::CPtr file = TORVFile::openChecked(SharedData::path(QLatin1String(expected.name)));
    ASSERT_EQ(file->getStatus(), TORVFile::FILE_OK);
    if (*expected.site != '\0') {
        EXPECT_EQ(file->getSite(), QLatin1String(expected.site));
    }
    EXPECT_EQ(file->getProduct(), QLatin1String(expected.product));
    EXPECT_EQ(file->getConfiguration(), QLatin1String(expected.configuration));
    EXPECT_EQ(file->getDataTime(), QDateTime::fromString(QLatin1String(expected.time), Qt::ISODate));
    EXPECT_EQ(file->getXPoints(), expected.points[0]);
    EXPECT_EQ(file->getYPoints(), expected.points[1]);
    EXPECT_EQ(file->getZPoints(), expected.points[2]);
    EXPECT_DOUBLE_EQ(file->getWidthM(), (expected.points[0] - 1) * expected.step_m[0]);
    EXPECT_DOUBLE_EQ(file->getLengthM(), (expected.points[1] - 1) * expected.step_m[1]);
    if (expected.step_m[2] > 0.0) {
        EXPECT_DOUBLE_EQ(file->getHeightM(), (expected.points[2] - 1) * expected.step_m[2]);
    }
    EXPECT_EQ(file->getItemSize(), expected.itemSize);
    EXPECT_NEAR(file->getSiteCoordinates().getLat(), expected.lat, 0.01);
    EXPECT_NEAR(file->getSiteCoordinates().getLon(), expected.lon, 0.01);
    EXPECT_EQ(file->getGroundElevation(), expected.ground);
    if (expected.nyquist > 0.0) {
        EXPECT_NEAR(file->getDataType().getMinDisplayValue(), -expected.nyquist, 0.01);
    }
}

INSTANTIATE_TEST_SUITE_P(Table, RealProduct, testing::ValuesIn(Products));

TEST(RealProducts, AllOpenAndReadWhole)
{
    TORV_NEEDS_SHARED_DATA();
    int count = 0;
    for (const char* const folder : {"3d", "2d"}) {
        QDirIterator entries(SharedData::path(QLatin1String(folder)), QDir::Files);
        while (entries.hasNext()) {
            const TORVFile::CPtr file = TORVFile::openChecked(entries.next());
            ASSERT_EQ(file->getStatus(), TORVFile::FILE_OK) << qUtf8Printable(file->getName());
            EXPECT_TRUE(TORVProductData::read(*file)) << qUtf8Printable(file->getName());
            std::cout << qUtf8Printable(file->getName()) << ": " << qUtf8Printable(file->getSite()) << ' '
                      << qUtf8Printable(file->getProduct()) << ' ' << qUtf8Printable(file->getConfiguration()) << ' '
                      << qUtf8Printable(file->getDataTime().toString(Qt::ISODate)) << ' ' << file->getXPoints() << 'x'
                      << file->getYPoints() << 'x' << file->getZPoints() << ' ' << file->getWidthM() << 'x'
                      << file->getLengthM() << 'x' << file->getHeightM() << " m, " << file->getItemSize() << " byte\n";
            ++count;
        }
    }
    EXPECT_GT(count, 80);
}

TEST(RealProducts, ShowTheHailStormWhereItWas)
{
    TORV_NEEDS_SHARED_DATA();
    const TORVFile::CPtr file = TORVFile::openChecked(SharedData::path(QStringLiteral("3d/LEM220628071928.CAPZ")));
    const TORVProductData::CPtr data = TORVProductData::read(*file);
    ASSERT_TRUE(data);
    unsigned int strongest = 0;
    for (qint64 i = 0; i < data->itemCount(); ++i) {
        strongest = std::max(strongest, data->item(i));
    }
    EXPECT_GT(file->getDataType().absoluteToDisplayValue(strongest), 60.0); // hail
    EXPECT_LT(file->getDataType().absoluteToDisplayValue(strongest), 80.0);
}
