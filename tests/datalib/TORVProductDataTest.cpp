#include "datalib/TORVProductData.h"

#include "support/ProductFiles.h"

#include <QFile>

#include <gtest/gtest.h>

#include <limits>

namespace
{

class TORVProductDataTest : public testing::Test
{
protected:
    static unsigned int numbered(int x, int y, int z) { return static_cast<unsigned int>(1 + x + 10 * y + 100 * z); }

    TORVProductData::CPtr readBack(const TORVProductFields& fields, const QByteArray& data)
    {
        return TORVProductData::read(*TORVFile::openChecked(files.write(QStringLiteral("HAL.CAPZ"), fields, data)));
    }

    ProductFiles files;
};

} // namespace

TEST_F(TORVProductDataTest, HoldsOneByteItemsInFileOrder)
{
    const TORVProductFields fields = ProductFiles::small(); // 4 x 3 x 2
    const TORVProductData::CPtr data = readBack(fields, ProductFiles::data(fields, numbered));
    ASSERT_TRUE(data);
    EXPECT_EQ(data->itemCount(), 24);
    EXPECT_EQ(data->itemSize(), 1);
    EXPECT_EQ(data->item(0), 1U);
    EXPECT_EQ(data->item(1), 2U);    // x first
    EXPECT_EQ(data->item(4), 11U);   // then y
    EXPECT_EQ(data->item(12), 101U); // then z
    EXPECT_EQ(data->item(23), 124U); // 1 + 3 + 20 + 100
}

TEST_F(TORVProductDataTest, HoldsTwoByteItemsLittleEndian)
{
    const TORVProductFields fields = ProductFiles::small();
    const auto field = [](int x, int y, int z) { return 0x1234U + numbered(x, y, z); };
    const TORVProductData::CPtr data = readBack(fields, ProductFiles::data(fields, field, 2));
    ASSERT_TRUE(data);
    EXPECT_EQ(data->itemSize(), 2);
    EXPECT_EQ(data->item(0), 0x1235U);
    EXPECT_EQ(data->item(23), 0x1234U + 124U);
}

TEST_F(TORVProductDataTest, RefusesAFileLongerThanItsHeaderSays)
{
    TORVProductFields fields = ProductFiles::small();
    fields.totalBytes = 664;
    EXPECT_FALSE(readBack(fields, QByteArray(25, '\1')));
}

TEST_F(TORVProductDataTest, RefusesABlockTooSmallForItsGrid)
{
    EXPECT_FALSE(readBack(ProductFiles::small(), QByteArray(23, '\1'))); // 48 bytes are needed
    EXPECT_FALSE(readBack(ProductFiles::small(), {}));
}

TEST_F(TORVProductDataTest, RefusesAGridThatMultipliesBeyondAnInt)
{
    TORVProductFields fields = ProductFiles::small();
    fields.xPoints = fields.yPoints = fields.zPoints = std::numeric_limits<int32_t>::max();
    EXPECT_FALSE(readBack(fields, QByteArray(24, '\1')));
    fields.xPoints = 65536; // 2^16 * 2^16 * 1 wraps to 0 in an int
    fields.yPoints = 65536;
    fields.zPoints = 1;
    EXPECT_FALSE(readBack(fields, {}));
}

TEST_F(TORVProductDataTest, RefusesAGridWithoutPoints)
{
    TORVProductFields fields = ProductFiles::small();
    fields.xPoints = -4;
    fields.yPoints = -3; // the product is 24 all the same
    const TORVFile file(files.write(QStringLiteral("HAL.CAPZ"), fields, QByteArray(24, '\1')));
    EXPECT_FALSE(TORVProductData::read(file));
}

TEST_F(TORVProductDataTest, RefusesAFileThatHasVanished)
{
    const QString path = files.write(QStringLiteral("HAL.CAPZ"), ProductFiles::small());
    const TORVFile file(path);
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_FALSE(TORVProductData::read(file));
}

TEST_F(TORVProductDataTest, RefusesAFileThatHasShrunk)
{
    const QString path = files.write(QStringLiteral("HAL.CAPZ"), ProductFiles::small());
    const TORVFile file(path);
    ASSERT_TRUE(QFile::resize(path, 660));
    EXPECT_FALSE(TORVProductData::read(file));
}

TEST_F(TORVProductDataTest, RefusesADirectoryInItsPlace)
{
    const QString path = files.write(QStringLiteral("HAL.CAPZ"), ProductFiles::small());
    const TORVFile file(path);
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QDir().mkdir(path));
    EXPECT_FALSE(TORVProductData::read(file));
}

using TORVProductDataDeathTest = TORVProductDataTest;

TEST_F(TORVProductDataDeathTest, StopsWhenAskedForAFileThatIsNotValid)
{
    const TORVFile file(files.writeGarbage(QStringLiteral("garbage"), 1000));
    EXPECT_DEATH(TORVProductData::read(file), "isValid");
}
