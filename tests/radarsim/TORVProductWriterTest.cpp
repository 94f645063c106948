#include "radarsim/TORVProductWriter.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

#include <sys/mount.h>

namespace
{

QByteArray headerOf(const TORVProductFields& fields)
{
    return TORVProductWriter::header(fields, 0);
}

/// A header field at an edge of its range, and the bytes that the format wants for it, low byte first.
struct Edge
{
    const char* name;
    int offset;
    QByteArray bytes;
    void (*set)(TORVProductFields&);
};

using F = TORVProductFields;
constexpr int16_t Min16 = std::numeric_limits<int16_t>::min();
constexpr int16_t Max16 = std::numeric_limits<int16_t>::max();
constexpr int32_t Min32 = std::numeric_limits<int32_t>::min();
constexpr int32_t Max32 = std::numeric_limits<int32_t>::max();

QByteArray hex(const char* text)
{
    return QByteArray::fromHex(text);
}

const Edge Edges[] = {
    {"structureId", 0, hex("0080"), [](F& f) { f.structureId = Min16; }},
    {"structureId", 0, hex("ff7f"), [](F& f) { f.structureId = Max16; }},
    {"totalBytes", 4, hex("01000080"), [](F& f) { f.totalBytes = Min32 + 1; }},
    {"totalBytes", 4, hex("ffffff7f"), [](F& f) { f.totalBytes = Max32; }},
    {"configStructureId", 12, hex("0080"), [](F& f) { f.configStructureId = Min16; }},
    {"configStructureId", 12, hex("ff7f"), [](F& f) { f.configStructureId = Max16; }},
    {"productType", 24, hex("ffff"), [](F& f) { f.productType = 65535; }},
    {"dataSeconds", 44, hex("ffffffff"), [](F& f) { f.dataSeconds = 4294967295U; }},
    {"dataYear", 50, hex("ffff"), [](F& f) { f.dataYear = 65535; }},
    {"dataMonth", 52, hex("ffff"), [](F& f) { f.dataMonth = 65535; }},
    {"dataDay", 54, hex("ffff"), [](F& f) { f.dataDay = 65535; }},
    {"xScale", 100, hex("00000080"), [](F& f) { f.xScale = Min32; }},
    {"xScale", 100, hex("ffffff7f"), [](F& f) { f.xScale = Max32; }},
    {"yScale", 104, hex("00000080"), [](F& f) { f.yScale = Min32; }},
    {"zScale", 108, hex("00000080"), [](F& f) { f.zScale = Min32; }},
    {"xPoints", 112, hex("00000080"), [](F& f) { f.xPoints = Min32; }},
    {"yPoints", 116, hex("00000080"), [](F& f) { f.yPoints = Min32; }},
    {"zPoints", 120, hex("00000080"), [](F& f) { f.zPoints = Min32; }},
    {"xRadar", 124, hex("00000080"), [](F& f) { f.xRadar = Min32; }},
    {"yRadar", 128, hex("00000080"), [](F& f) { f.yRadar = Min32; }},
    {"zRadar", 132, hex("00000080"), [](F& f) { f.zRadar = Min32; }},
    {"dataType", 142, hex("ffff"), [](F& f) { f.dataType = 65535; }},
    {"projectionType", 158, hex("ff"), [](F& f) { f.projectionType = 255; }},
    {"siteLatitude", 440, hex("ffffffff"), [](F& f) { f.siteLatitude = 4294967295U; }},
    {"siteLongitude", 444, hex("ffffffff"), [](F& f) { f.siteLongitude = 4294967295U; }},
    {"groundElevation", 448, hex("0080"), [](F& f) { f.groundElevation = Min16; }},
    {"groundElevation", 448, hex("ff7f"), [](F& f) { f.groundElevation = Max16; }},
    {"radarHeight", 450, hex("0080"), [](F& f) { f.radarHeight = Min16; }},
    {"prf", 452, hex("00000080"), [](F& f) { f.prf = Min32; }},
    {"prf", 452, hex("ffffff7f"), [](F& f) { f.prf = Max32; }},
    {"prfRatioCode", 462, hex("ffff"), [](F& f) { f.prfRatioCode = 65535; }},
    {"wavelength", 480, hex("00000080"), [](F& f) { f.wavelength = Min32; }},
    {"nyquistHalvingCode", 504, hex("ffff"), [](F& f) { f.nyquistHalvingCode = 65535; }},
    {"earthRadius", 552, hex("ffffffff"), [](F& f) { f.earthRadius = 4294967295U; }},
    {"earthInvFlattening", 556, hex("ffffffff"), [](F& f) { f.earthInvFlattening = 4294967295U; }},
};

class TORVProductWriterEdge : public testing::TestWithParam<Edge>
{
};

TEST_P(TORVProductWriterEdge, StandsInItsBytesAndNowhereElse)
{
    TORVProductFields fields;
    GetParam().set(fields);
    QByteArray expected = headerOf({});
    expected.replace(GetParam().offset, GetParam().bytes.size(), GetParam().bytes);
    EXPECT_EQ(headerOf(fields), expected);
}

INSTANTIATE_TEST_SUITE_P(Header, TORVProductWriterEdge, testing::ValuesIn(Edges),
                         [](const auto& test) { return std::string(test.param.name) + std::to_string(test.index); });

TEST(TORVProductWriter, WritesAHeaderOf640Bytes)
{
    EXPECT_EQ(headerOf({}).size(), 640);
}

TEST(TORVProductWriter, PutsTheTwoIdentifiersThereByDefault)
{
    const QByteArray header = headerOf({});
    EXPECT_EQ(header.mid(0, 2), hex("1b00"));  // 27
    EXPECT_EQ(header.mid(12, 2), hex("1a00")); // 26
}

TEST(TORVProductWriter, LeavesWhatTheFormatDoesNotReadAtZero)
{
    const QByteArray header = headerOf({});
    EXPECT_EQ(header.mid(2, 2), QByteArray(2, '\0'));
    EXPECT_EQ(header.mid(56, 44), QByteArray(44, '\0'));
    EXPECT_EQ(header.mid(159, 263), QByteArray(263, '\0'));
    EXPECT_EQ(header.mid(560, 80), QByteArray(80, '\0'));
}

TEST(TORVProductWriter, PadsAShortSiteNameWithBlanks)
{
    TORVProductFields fields;
    fields.siteName = "ABC";
    EXPECT_EQ(headerOf(fields).mid(422, 16), QByteArray("ABC             "));
}

TEST(TORVProductWriter, CutsALongSiteNameAt16Bytes)
{
    TORVProductFields fields;
    fields.siteName = "ABCDEFGHIJKLMNOPQRS";
    const QByteArray header = headerOf(fields);
    EXPECT_EQ(header.mid(422, 16), QByteArray("ABCDEFGHIJKLMNOP"));
    EXPECT_EQ(header.mid(438, 2), QByteArray(2, '\0'));
}

TEST(TORVProductWriter, CountsHeaderAndDataAsTotalBytes)
{
    // 640 + 100 = 740 = 0x2e4
    EXPECT_EQ(TORVProductWriter::header({}, 100).mid(4, 4), hex("e4020000"));
}

TEST(TORVProductWriter, HoldsTotalBytesAtTheLargestIntWhereTheDataAreLarger)
{
    EXPECT_EQ(TORVProductWriter::header({}, qint64{1} << 40).mid(4, 4), hex("ffffff7f"));
}

TEST(TORVProductWriter, PutsTheDataBehindTheHeader)
{
    const QByteArray file = TORVProductWriter::file({}, "data");
    EXPECT_EQ(file.size(), 644);
    EXPECT_EQ(file.right(4), QByteArray("data"));
}

TEST(TORVProductWriter, WritesTheBytesUnderTheName)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("a.CAPZ"));
    EXPECT_EQ(TORVProductWriter::write(path, "bytes"), QString());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("bytes"));
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden), QStringList(QStringLiteral("a.CAPZ")));
}

TEST(TORVProductWriter, ReplacesAFileThatIsThere)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("a.CAPZ"));
    ASSERT_EQ(TORVProductWriter::write(path, "the old and longer one"), QString());
    EXPECT_EQ(TORVProductWriter::write(path, "new"), QString());
    EXPECT_EQ(QFile(path).size(), 3);
}

TEST(TORVProductWriter, NamesTheFileThatItCannotWrite)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("missing/a.CAPZ"));
    EXPECT_TRUE(TORVProductWriter::write(path, "bytes").startsWith(path + QStringLiteral(": ")));
}

TEST(TORVProductWriter, LeavesNothingWhereADirectoryHasTheName)
{
    const QTemporaryDir directory;
    ASSERT_TRUE(QDir(directory.path()).mkdir(QStringLiteral("a.CAPZ")));
    EXPECT_NE(TORVProductWriter::write(directory.filePath(QStringLiteral("a.CAPZ")), "bytes"), QString());
    EXPECT_TRUE(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

TEST(TORVProductWriter, LeavesNothingOnAFullDisk)
{
    const QTemporaryDir directory;
    const QByteArray place = QFile::encodeName(directory.path());
    if (mount("tmpfs", place.constData(), "tmpfs", 0, "size=64k") != 0) {
        GTEST_SKIP() << "only root can make a small disk";
    }
    const QString error =
        TORVProductWriter::write(directory.filePath(QStringLiteral("a.CAPZ")), QByteArray(100000, 'x'));
    const QStringList left = QDir(directory.path()).entryList(QDir::Files | QDir::Hidden);
    umount(place.constData());
    EXPECT_TRUE(error.contains(QStringLiteral("No space left"))) << qPrintable(error);
    EXPECT_TRUE(left.isEmpty());
}

} // namespace
