#include "radarsim/TORVGrowingFile.h"

#include "datalib/TORVFile.h"
#include "radarsim/TORVFaultMaker.h"
#include "radarsim/TORVProductWriter.h"
#include "support/ProductFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <unistd.h>

namespace
{

using testing::ElementsAre;

constexpr int64_t Evening = 1784052000; // 2026-07-14 18:00 UTC

QByteArray product()
{
    const TORVProductFields fields = ProductFiles::small();
    return TORVProductWriter::file(fields, QByteArray(24, '\x40')); // 664 bytes
}

TEST(TORVGrowingFile, GrowsThroughEmptyHeaderAndData)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("HAR260714180000.CAPZ"));
    const QByteArray bytes(1000, 'x');
    std::vector<qint64> sizes;
    EXPECT_EQ(TORVGrowingFile::write(path, bytes, [&] { sizes.push_back(QFileInfo(path).size()); }), QString());
    sizes.push_back(QFileInfo(path).size());
    // Nothing, part of the header, then four quarters of 1000.
    EXPECT_THAT(sizes, ElementsAre(0, 100, 250, 500, 750, 1000));
}

TEST(TORVGrowingFile, IsAnIncompleteProductUntilItIsWhole)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("HAR260714180000.CAPZ"));
    std::vector<int> states;
    const auto look = [&] { states.push_back(TORVFile(path).getStatus()); };
    EXPECT_EQ(TORVGrowingFile::write(path, product(), look), QString());
    look();
    EXPECT_EQ(states.front(), TORVFile::FILE_NO_DATA);
    for (std::size_t i = 1; i + 1 < states.size(); ++i) {
        EXPECT_EQ(states[i], TORVFile::FILE_INCOMPLETE) << i;
    }
    EXPECT_EQ(states.back(), TORVFile::FILE_OK);
}

TEST(TORVGrowingFile, HoldsTheWholeBytesInTheEnd)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("a"));
    ASSERT_EQ(TORVGrowingFile::write(path, product(), [] {}), QString());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), product());
}

TEST(TORVGrowingFile, WritesAFileThatIsShorterThanAHeader)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("a"));
    ASSERT_EQ(TORVGrowingFile::write(path, "short", [] {}), QString());
    EXPECT_EQ(QFileInfo(path).size(), 5);
}

TEST(TORVGrowingFile, NamesTheFileThatItCannotWrite)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("missing/a"));
    EXPECT_TRUE(TORVGrowingFile::write(path, product(), [] {}).startsWith(path));
}

class TORVFaultMakerTest : public testing::Test
{
protected:
    QString write(TORVFaultMaker::Fault fault) const
    {
        EXPECT_EQ(TORVFaultMaker::write(fault, directory.path(), QStringLiteral("HAR"), Evening, product()), QString());
        return directory.filePath(TORVFaultMaker::fileName(fault, QStringLiteral("HAR"), Evening));
    }

    int statusOf(TORVFaultMaker::Fault fault) const { return TORVFile::openChecked(write(fault))->getStatus(); }

    const QTemporaryDir directory;
};

TEST_F(TORVFaultMakerTest, CutsAProductOff)
{
    EXPECT_EQ(statusOf(TORVFaultMaker::TRUNCATED), TORVFile::FILE_INCOMPLETE);
}

TEST_F(TORVFaultMakerTest, WritesGarbage)
{
    EXPECT_EQ(statusOf(TORVFaultMaker::GARBAGE), TORVFile::FILE_INVALID);
}

TEST_F(TORVFaultMakerTest, WritesAForeignFile)
{
    EXPECT_EQ(QFileInfo(write(TORVFaultMaker::FOREIGN)).fileName(), QStringLiteral("HAR260714180030.txt"));
    EXPECT_EQ(statusOf(TORVFaultMaker::FOREIGN), TORVFile::FILE_NO_DATA);
}

TEST_F(TORVFaultMakerTest, RepeatsAProductUnderItsOwnTime)
{
    const TORVFile file(write(TORVFaultMaker::DUPLICATE));
    EXPECT_EQ(file.getStatus(), TORVFile::FILE_OK);
    EXPECT_EQ(file.getTime(), QStringLiteral("260714180000"));
    EXPECT_NE(file.getName(), QStringLiteral("HAR260714180000.CAPZ"));
}

TEST_F(TORVFaultMakerTest, LocksAFile)
{
    constexpr uid_t Nobody = 65534;
    const QString path = write(TORVFaultMaker::UNREADABLE);
    const uid_t self = geteuid();
    // Root may read every file, so root looks as somebody else.
    const auto all = QFileDevice::ReadOther | QFileDevice::ExeOther | QFile::permissions(directory.path());
    ASSERT_TRUE(QFile::setPermissions(directory.path(), all));
    const bool isOther = self == 0 && seteuid(Nobody) == 0;
    const int status = TORVFile(path).getStatus();
    if (isOther) {
        ASSERT_EQ(seteuid(self), 0);
    }
    EXPECT_EQ(status, TORVFile::FILE_OPEN_FAILED);
}

TEST_F(TORVFaultMakerTest, GivesAWrongType)
{
    const TORVFile file(write(TORVFaultMaker::WRONGLY_TYPED));
    EXPECT_EQ(file.getRawType(), 99);
    EXPECT_EQ(file.getTime(), QStringLiteral("260714180030"));
}

TEST(TORVFaultMaker, TakesTheKindsInTurn)
{
    std::vector<int> kinds;
    for (int64_t turn = -1; turn < 7; ++turn) {
        kinds.push_back(TORVFaultMaker::faultOf(turn));
    }
    EXPECT_THAT(kinds, ElementsAre(5, 0, 1, 2, 3, 4, 5, 0));
}

} // namespace
