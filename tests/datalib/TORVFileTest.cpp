#include "datalib/TORVFile.h"

#include "radarsim/TORVProductWriter.h"
#include "support/LogFile.h"
#include "support/ProductFiles.h"
#include "utils/TORVLog.h"
#include "utils/TORVPoint3D.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

#include <limits>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

using testing::HasSubstr;
using testing::Not;

constexpr uid_t Nobody = 65534;

class TORVFileTest : public testing::Test
{
protected:
    TORVFile open(const TORVProductFields& fields) { return TORVFile(write(fields)); }

    QString write(const TORVProductFields& fields)
    {
        return files.write(QStringLiteral("HAL260714120000.CAPZ"), fields);
    }

    // What the log says, at every level, while `action` runs.
    template <typename Action>
    static std::string logOf(Action action)
    {
        const LogFile log(TORVLog::LEVEL_DEBUG);
        action();
        return log.lines().join(QLatin1Char('\n')).toStdString() + '\n';
    }

    ProductFiles files;
};

std::string text(const QString& string)
{
    return string.toStdString();
}

} // namespace

TEST_F(TORVFileTest, IsOkWhenComplete)
{
    const TORVFile file(write(ProductFiles::small()));
    EXPECT_EQ(file.getStatus(), 0);
    EXPECT_TRUE(file.isValid());
    EXPECT_TRUE(file.getGeoProjection());
}

TEST_F(TORVFileTest, IsMissingWithTwoLinesWhenItDoesNotExist)
{
    const QString path = files.path(QStringLiteral("none.CAPZ"));
    const std::string log = logOf([&] {
        const TORVFile file(path);
        EXPECT_EQ(file.getStatus(), 1);
        EXPECT_FALSE(file.getGeoProjection());
    });
    EXPECT_THAT(log, HasSubstr("D: TORVFile::TORVFile(): file does not exist: " + text(path)));
    EXPECT_THAT(log, HasSubstr("E: TORVFile does not exist: " + text(path)));
}

TEST_F(TORVFileTest, IsMissingWhenItIsADanglingLink)
{
    const QString link = files.path(QStringLiteral("link.CAPZ"));
    ASSERT_TRUE(QFile::link(files.path(QStringLiteral("nowhere")), link));
    EXPECT_EQ(TORVFile(link).getStatus(), TORVFile::FILE_MISSING);
}

TEST_F(TORVFileTest, CannotBeOpenedWithoutRights)
{
    const QString path = write(ProductFiles::small());
    ASSERT_EQ(::chmod(files.path(QString()).toLocal8Bit().constData(), 0755), 0);
    ASSERT_EQ(::chmod(path.toLocal8Bit().constData(), 0), 0);
    const uid_t user = ::geteuid();
    if (user == 0) {
        ASSERT_EQ(::seteuid(Nobody), 0); // root may read everything
    }
    const int status = TORVFile(path).getStatus();
    ASSERT_EQ(::seteuid(user), 0);
    EXPECT_EQ(status, TORVFile::FILE_OPEN_FAILED);
}

TEST_F(TORVFileTest, CannotBeOpenedWhenItIsADirectory)
{
    const QString path = files.path(QStringLiteral("directory.CAPZ"));
    ASSERT_TRUE(QDir().mkdir(path));
    const std::string log = logOf([&] { EXPECT_EQ(TORVFile(path).getStatus(), 6); });
    EXPECT_THAT(log, HasSubstr("D: TORVFile::TORVFile(): Cannot open file: " + text(path)));
    EXPECT_THAT(log, HasSubstr("E: Cannot open TORVfile: " + text(path)));
}

TEST_F(TORVFileTest, HasNoDataWhenItIsAPipeWithoutAWriter)
{
    const QString path = files.path(QStringLiteral("pipe.CAPZ"));
    ASSERT_EQ(::mkfifo(path.toLocal8Bit().constData(), 0600), 0);
    EXPECT_EQ(TORVFile(path).getStatus(), TORVFile::FILE_NO_DATA);
}

TEST_F(TORVFileTest, HasNoDataWhenEmpty)
{
    const std::string log =
        logOf([&] { EXPECT_EQ(TORVFile(files.writeBytes(QStringLiteral("empty"), {})).getStatus(), 3); });
    EXPECT_THAT(log, Not(HasSubstr("DATA")));
}

TEST_F(TORVFileTest, HasNoDataWhenTooShortForAHeaderWithoutIdentifiers)
{
    const QString path = files.writeBytes(QStringLiteral("short"), QByteArray(639, '\0'));
    EXPECT_EQ(TORVFile(path).getStatus(), TORVFile::FILE_NO_DATA);
}

TEST_F(TORVFileTest, IsInvalidWhenAThousandZeros)
{
    const QString path = files.writeBytes(QStringLiteral("zeros"), QByteArray(1000, '\0'));
    const std::string log = logOf([&] { EXPECT_EQ(TORVFile(path).getStatus(), 4); });
    EXPECT_THAT(log, HasSubstr("D: DATA LOOKS INVALID: " + text(QFileInfo(path).absolutePath()) + "\n"));
    EXPECT_THAT(log, HasSubstr("D: File size: 1000\n"));
}

TEST_F(TORVFileTest, IsInvalidWithOneOfTheTwoIdentifiers)
{
    TORVProductFields fields = ProductFiles::small();
    fields.configStructureId = 27;
    EXPECT_EQ(open(fields).getStatus(), TORVFile::FILE_INVALID);
    fields = ProductFiles::small();
    fields.structureId = 26;
    EXPECT_EQ(open(fields).getStatus(), TORVFile::FILE_INVALID);
}

TEST_F(TORVFileTest, IsIncompleteWhileItsHeaderIsStillShort)
{
    const QString path = files.writeTruncated(QStringLiteral("growing"), ProductFiles::small(), 100);
    EXPECT_EQ(TORVFile(path).getStatus(), TORVFile::FILE_INCOMPLETE);
}

TEST_F(TORVFileTest, GrowsThroughThreeStates)
{
    const TORVProductFields fields = ProductFiles::small(); // 640 + 24 bytes
    const auto statusAt = [&](int bytes) {
        return TORVFile(files.writeTruncated(QStringLiteral("growing"), fields, bytes)).getStatus();
    };
    EXPECT_EQ(statusAt(13), TORVFile::FILE_NO_DATA);
    EXPECT_EQ(statusAt(14), TORVFile::FILE_INCOMPLETE);
    EXPECT_EQ(statusAt(640), TORVFile::FILE_INCOMPLETE);
    EXPECT_EQ(statusAt(663), TORVFile::FILE_INCOMPLETE);
    EXPECT_EQ(statusAt(664), TORVFile::FILE_OK);
}

TEST_F(TORVFileTest, TellsTheDirectoryAndTheSizesOfAnIncompleteFile)
{
    const QString path = files.writeTruncated(QStringLiteral("growing"), ProductFiles::small(), 650);
    const std::string log = logOf([&] { const TORVFile file(path); });
    EXPECT_THAT(log,
                HasSubstr("D: DATA FILE SIZE SMALLER THAN SHOULD: " + text(QFileInfo(path).absolutePath()) + "\n"));
    EXPECT_THAT(log, HasSubstr("D: Expected size: 664\n"));
    EXPECT_THAT(log, HasSubstr("D: Real size: 650\n"));
}

TEST_F(TORVFileTest, IsOkWhenLongerThanItsHeaderSays)
{
    TORVProductFields fields = ProductFiles::small();
    fields.totalBytes = 650;
    const TORVFile file = TORVFile(write(fields));
    EXPECT_EQ(file.getStatus(), TORVFile::FILE_OK);
    EXPECT_EQ(file.getTotalFileSize(), 650);
    EXPECT_EQ(file.getDataSize(), 10);
}

TEST_F(TORVFileTest, StaysAsItWasWhenTheFileGoes)
{
    const QString path = write(ProductFiles::small());
    const TORVFile file(path);
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_TRUE(file.isValid());
    EXPECT_EQ(file.getSite(), QStringLiteral("HALMERA"));
}

TEST_F(TORVFileTest, ReadsEveryFieldOfTheHeader)
{
    TORVProductFields fields = ProductFiles::small();
    fields.xScale = 50000;
    fields.yScale = 60000;
    fields.zScale = 25000;
    fields.xRadar = -1500;
    fields.yRadar = 1750;
    fields.zRadar = 12000;
    fields.groundElevation = -20;
    fields.radarHeight = 35;
    fields.dataType = 10;
    const TORVFile file(write(fields));
    EXPECT_EQ(file.getXPoints(), 4);
    EXPECT_EQ(file.getYPoints(), 3);
    EXPECT_EQ(file.getZPoints(), 2);
    EXPECT_EQ(file.getXScale(), 50000);
    EXPECT_EQ(file.getYScale(), 60000);
    EXPECT_EQ(file.getZScale(), 25000);
    EXPECT_EQ(file.getXRadar(), -1500);
    EXPECT_EQ(file.getYRadar(), 1750);
    EXPECT_EQ(file.getZRadar(), 12000);
    EXPECT_EQ(file.getHeaderSize(), 640);
    EXPECT_EQ(file.getNumberElevationAngles(), 1);
    EXPECT_EQ(file.getGroundElevation(), -20);
    EXPECT_EQ(file.getRadarElevation(), 15);
    EXPECT_EQ(file.getRawType(), 10);
}

TEST_F(TORVFileTest, MeasuresItsGridFromFirstToLastPoint)
{
    const TORVFile file(write(ProductFiles::small())); // 4 x 3 x 2 points of 1 km, 1 km, 750 m
    EXPECT_DOUBLE_EQ(file.getWidthM(), 3000.0);
    EXPECT_DOUBLE_EQ(file.getLengthM(), 2000.0);
    EXPECT_DOUBLE_EQ(file.getHeightM(), 750.0);
    EXPECT_EQ(file.getDimensions(), 3);
}

TEST_F(TORVFileTest, IsFlatWithOneLevel)
{
    TORVProductFields fields = ProductFiles::small();
    fields.zPoints = 1;
    const TORVFile file(write(fields));
    EXPECT_EQ(file.getDimensions(), 2);
    EXPECT_EQ(file.getHeightM(), 0.0);
}

TEST_F(TORVFileTest, PlacesPointsInMetres)
{
    TORVProductFields fields = ProductFiles::small();
    fields.xScale = 50000;
    const TORVFile file(write(fields));
    EXPECT_DOUBLE_EQ(file.getPointElevationM(17, -4, 3), 2250.0);
    const TORVPoint3D point = file.getPointM(1.5, -2.0, 4.0);
    EXPECT_DOUBLE_EQ(point.x, 750.0);
    EXPECT_DOUBLE_EQ(point.y, -2000.0);
    EXPECT_DOUBLE_EQ(point.z, 3000.0);
}

TEST_F(TORVFileTest, HasTheDefaultEarthWhereTheHeaderHasNone)
{
    const TORVFile file(write(ProductFiles::small()));
    EXPECT_DOUBLE_EQ(file.getEarthRadius(), 6371000.0);
    EXPECT_EQ(file.getEarthInvFlattening(), 3.4028234663852886e+38);
}

TEST_F(TORVFileTest, HasTheEarthOfItsHeader)
{
    TORVProductFields fields = ProductFiles::small();
    fields.earthRadius = 637813700;
    fields.earthInvFlattening = 298257224;
    const TORVFile file(write(fields));
    EXPECT_DOUBLE_EQ(file.getEarthRadius(), 6378137.0);
    EXPECT_NEAR(file.getEarthInvFlattening(), 298.257224, 1e-12);
}

TEST_F(TORVFileTest, NamesItsProduct)
{
    const std::pair<uint16_t, const char*> rows[] = {{1, "PPI"},  {3, "CAPPI"}, {10, "VIL"}, {16, "MAX"},
                                                     {32, "SRI"}, {2, ""},      {0, ""}};
    for (const auto& [code, name] : rows) {
        TORVProductFields fields = ProductFiles::small();
        fields.productType = code;
        EXPECT_EQ(open(fields).getProduct(), QLatin1String(name)) << code;
    }
}

TEST_F(TORVFileTest, NamesItsConfiguration)
{
    const std::pair<uint16_t, const char*> rows[] = {{2, "Z"}, {9, "Z"},  {3, "V"}, {10, "V"},
                                                     {4, "W"}, {11, "W"}, {13, "R"}};
    for (const auto& [code, name] : rows) {
        TORVProductFields fields = ProductFiles::small();
        fields.dataType = code;
        EXPECT_EQ(open(fields).getConfiguration(), QLatin1String(name)) << code;
    }
}

TEST_F(TORVFileTest, HasANullConfigurationForOtherTypes)
{
    TORVProductFields fields = ProductFiles::small();
    fields.dataType = 12;
    EXPECT_TRUE(open(fields).getConfiguration().isNull());
}

TEST_F(TORVFileTest, ScalesItsDataTypeByItsOwnNyquistVelocity)
{
    TORVProductFields fields = ProductFiles::small();
    fields.dataType = 3;
    fields.prfRatioCode = 1;
    fields.nyquistHalvingCode = 2;
    EXPECT_EQ(open(fields).getDataType(), TORVDataType(3, 1000, 1, 533, 2));
}

TEST_F(TORVFileTest, HasItsDataTimeInUtc)
{
    TORVProductFields fields = ProductFiles::small();
    fields.dataYear = 2024;
    fields.dataMonth = 2;
    fields.dataDay = 29;
    fields.dataSeconds = 23 * 3600 + 59 * 60 + 7;
    EXPECT_EQ(open(fields).getDataTime(), QDateTime(QDate(2024, 2, 29), QTime(23, 59, 7), Qt::UTC));
    EXPECT_EQ(open(fields).getDataTime().timeSpec(), Qt::UTC);
}

TEST_F(TORVFileTest, StandsWhereItsHeaderSays)
{
    TORVProductFields fields = ProductFiles::small();
    fields.siteLatitude = 0xE0000000U;  // -45 degrees
    fields.siteLongitude = 0x20000000U; // 45 degrees
    const TORVFile file(write(fields));
    EXPECT_NEAR(file.getSiteCoordinates().getLat(), -45.0, 1e-9);
    EXPECT_NEAR(file.getSiteCoordinates().getLon(), 45.0, 1e-9);
    EXPECT_NEAR(file.getGeoProjection()->getCentre().getLat(), -45.0, 1e-9);
}

TEST_F(TORVFileTest, NamesItsProjection)
{
    TORVProductFields fields = ProductFiles::small();
    EXPECT_EQ(open(fields).getProjectionTypeProj4(), QStringLiteral("aeqd"));
    EXPECT_EQ(open(fields).getProjection(), QStringLiteral("Azimuthal Equidistant"));
    fields.projectionType = 1;
    EXPECT_EQ(open(fields).getProjectionTypeProj4(), QStringLiteral("merc"));
    EXPECT_EQ(open(fields).getProjection(), QStringLiteral("Mercator"));
}

TEST_F(TORVFileTest, HasNullProjectionNamesForAnUnknownType)
{
    TORVProductFields fields = ProductFiles::small();
    fields.projectionType = 2;
    fields.totalBytes = 100000; // incomplete: nothing is built on it
    EXPECT_TRUE(open(fields).getProjectionTypeProj4().isNull());
    EXPECT_TRUE(open(fields).getProjection().isNull());
}

TEST_F(TORVFileTest, CountsItemsAndBytes)
{
    const TORVFile file(write(ProductFiles::small()));
    EXPECT_EQ(file.getItemCount(), 24);
    EXPECT_EQ(file.getDataSize(), 24);
    EXPECT_EQ(file.getTotalFileSize(), 664);
    EXPECT_EQ(file.getItemSize(), 1);
}

TEST_F(TORVFileTest, HasTwoByteItemsWheneverTheSizeIsNotTheCount)
{
    const TORVProductFields fields = ProductFiles::small();
    EXPECT_EQ(TORVFile(files.write(QStringLiteral("two"), fields, QByteArray(48, '\1'))).getItemSize(), 2);
    EXPECT_EQ(TORVFile(files.write(QStringLiteral("odd"), fields, QByteArray(25, '\1'))).getItemSize(), 2);
    EXPECT_EQ(TORVFile(files.write(QStringLiteral("few"), fields, QByteArray(23, '\1'))).getItemSize(), 2);
}

TEST_F(TORVFileTest, CountsNoFurtherThanAnInt)
{
    TORVProductFields fields = ProductFiles::small();
    fields.xPoints = fields.yPoints = fields.zPoints = std::numeric_limits<int32_t>::max();
    fields.totalBytes = std::numeric_limits<int32_t>::max();
    const TORVFile file(files.write(QStringLiteral("huge"), fields, QByteArray(24, '\0'))); // incomplete
    EXPECT_EQ(file.getItemCount(), std::numeric_limits<int>::max());
    EXPECT_EQ(file.getDataSize(), std::numeric_limits<int>::max() - 640);
    EXPECT_EQ(file.getItemSize(), 2);
}

TEST_F(TORVFileTest, KeepsSixteenLettersOfASiteWithoutNul)
{
    TORVProductFields fields = ProductFiles::small();
    fields.siteName = "abcdefghijklmnop"; // the byte behind is not part of it
    EXPECT_EQ(open(fields).getSite(), QStringLiteral("ABCDEFGHIJKLMNOP"));
}

TEST_F(TORVFileTest, TidiesTheSiteName)
{
    TORVProductFields fields = ProductFiles::small();
    fields.siteName = "  monte   lema ";
    EXPECT_EQ(open(fields).getSite(), QStringLiteral("MONTE LEMA"));
}

TEST_F(TORVFileTest, EndsTheSiteNameAtTheFirstNul)
{
    TORVProductFields fields = ProductFiles::small();
    fields.siteName = QByteArray("abc\0def", 7);
    EXPECT_EQ(open(fields).getSite(), QStringLiteral("ABC"));
}

TEST_F(TORVFileTest, TakesItsKeyFromCharactersFourToFifteenOfTheName)
{
    const TORVProductFields fields = ProductFiles::small();
    EXPECT_EQ(TORVFile(files.write(QStringLiteral("abc26071412ab34.capz"), fields)).getTime(),
              QStringLiteral("26071412AB34"));
    EXPECT_EQ(TORVFile(files.write(QStringLiteral("abc26.capz"), fields)).getTime(), QStringLiteral("26.CAPZ"));
    EXPECT_EQ(TORVFile(files.write(QStringLiteral("abc"), fields)).getTime(), QString());
    EXPECT_EQ(TORVFile(files.write(QStringLiteral("a"), fields)).getTime(), QString());
}

TEST_F(TORVFileTest, KnowsItsPathAndNames)
{
    const QString path = files.write(QStringLiteral("HAL260714120000.CAPZ.gz"), ProductFiles::small());
    const TORVFile file(path);
    EXPECT_EQ(file.getPath(), path);
    EXPECT_EQ(file.getName(), QStringLiteral("HAL260714120000.CAPZ.gz"));
    EXPECT_EQ(file.getBaseName(), QStringLiteral("HAL260714120000"));
}

TEST_F(TORVFileTest, MakesARelativePathAbsolute)
{
    files.write(QStringLiteral("HAL260714120000.CAPZ"), ProductFiles::small());
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(files.path(QString())));
    const TORVFile file(QStringLiteral("HAL260714120000.CAPZ"));
    QDir::setCurrent(before);
    EXPECT_TRUE(file.isValid());
}

TEST_F(TORVFileTest, OpensANameWithForeignLetters)
{
    const QString path = files.write(QString::fromUtf8("HÄL 260714\n雨.CAPZ"), ProductFiles::small());
    EXPECT_TRUE(TORVFile(path).isValid());
}

TEST_F(TORVFileTest, SharesOneProjectionAmongFilesOfOneRadar)
{
    const TORVFile a(files.write(QStringLiteral("a"), ProductFiles::small()));
    const TORVFile b(files.write(QStringLiteral("b"), ProductFiles::small()));
    TORVProductFields elsewhere = ProductFiles::small();
    elsewhere.siteLatitude += 1;
    const TORVFile c(files.write(QStringLiteral("c"), elsewhere));
    EXPECT_EQ(a.getGeoProjection(), b.getGeoProjection());
    EXPECT_NE(a.getGeoProjection(), c.getGeoProjection());
}

TEST_F(TORVFileTest, CheckedOpensAGoodFileAsUsual)
{
    const TORVFile::CPtr file = TORVFile::openChecked(write(ProductFiles::small()));
    EXPECT_EQ(file->getStatus(), TORVFile::FILE_OK);
    EXPECT_TRUE(file->getGeoProjection());
}

TEST_F(TORVFileTest, CheckedRefusesAHeaderThatCannotBeMeantWithOneWarning)
{
    TORVProductFields fields = ProductFiles::small();
    fields.projectionType = 2;
    const QString path = write(fields);
    const std::string log = logOf([&] {
        const TORVFile::CPtr file = TORVFile::openChecked(path);
        EXPECT_EQ(file->getStatus(), TORVFile::FILE_INVALID);
        EXPECT_FALSE(file->getGeoProjection());
    });
    EXPECT_THAT(log, HasSubstr("W: Invalid product file, projection type is unknown: " + text(path)));
    EXPECT_EQ(QString::fromStdString(log).count(QLatin1String("W: ")), 1);
}

TEST_F(TORVFileTest, CheckedKeepsTheStatusOfAFileThatIsNotComplete)
{
    TORVProductFields fields = ProductFiles::small();
    fields.projectionType = 2;
    const QString path = files.writeTruncated(QStringLiteral("growing"), fields, 650);
    EXPECT_EQ(TORVFile::openChecked(path)->getStatus(), TORVFile::FILE_INCOMPLETE);
}

using TORVFileDeathTest = TORVFileTest;

TEST_F(TORVFileDeathTest, StopsAtAnUnknownProjectionOfACompleteFile)
{
    TORVProductFields fields = ProductFiles::small();
    fields.projectionType = 2;
    const QString path = write(fields);
    EXPECT_DEATH(TORVFile{path}, "Assertion `0' failed");
}

TEST_F(TORVFileDeathTest, StopsWhenAFileThatIsNoProductIsAskedForItsContent)
{
    const TORVFile file(files.writeGarbage(QStringLiteral("garbage"), 1000));
    EXPECT_DEATH(file.getItemCount(), "fileIsValidProductFile");
    EXPECT_DEATH(file.getDataSize(), "fileIsValidProductFile");
    EXPECT_DEATH(file.getTotalFileSize(), "fileIsValidProductFile");
    EXPECT_DEATH(file.getItemSize(), "fileIsValidProductFile");
    EXPECT_DEATH(file.getSite(), "fileIsValidProductFile");
}
