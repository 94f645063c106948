#include "support/ProductFiles.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

TEST(ProductFiles, LaysDataOutWithXFastest)
{
    const QByteArray data = ProductFiles::data(
        ProductFiles::small(), [](int x, int y, int z) { return static_cast<unsigned int>(x + 10 * y + 100 * z); });
    ASSERT_EQ(data.size(), 24);
    EXPECT_EQ(data.at(1), 1);
    EXPECT_EQ(data.at(4), 10);
    EXPECT_EQ(data.at(12), 100);
}

TEST(ProductFiles, WritesTwoByteItemsLowByteFirst)
{
    const QByteArray data = ProductFiles::data(
        ProductFiles::small(), [](int, int, int) { return 0x0102U; }, 2);
    EXPECT_EQ(data.left(4), QByteArray("\x02\x01\x02\x01"));
}

TEST(ProductFiles, TruncatesAndFillsWithGarbageThatIsAlwaysTheSame)
{
    const ProductFiles files;
    EXPECT_EQ(QFileInfo(files.writeTruncated(QStringLiteral("a"), ProductFiles::small(), 100)).size(), 100);
    QFile first(files.writeGarbage(QStringLiteral("b"), 1000));
    QFile second(files.writeGarbage(QStringLiteral("c"), 1000));
    ASSERT_TRUE(first.open(QIODevice::ReadOnly) && second.open(QIODevice::ReadOnly));
    EXPECT_EQ(first.readAll(), second.readAll());
}
