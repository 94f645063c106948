#include "datalib/TORVLandmarkList.h"

#include "radarsim/TORVDemoSettings.h"
#include "radarsim/TORVSiteInfo.h"
#include "radarsim/TORVTerrainModel.h"

#include "support/LogFile.h"
#include "support/SandboxedHome.h"
#include "support/SharedData.h"

#include <QDir>
#include <QFile>
#include <QSettings>

#include <gtest/gtest.h>

namespace
{

const QString File = QStringLiteral(".config/Halmera/TORV3DLandmarks.conf");
const TORVCoordinate Center(0.0, 0.0);
const TORVCoordinate SouthWest(-90.0, -180.0);
const TORVCoordinate NorthEast(90.0, 180.0);

class TORVLandmarkListTest : public testing::Test
{
protected:
    // The list of a file with these entries, given without their number.
    TORVLandmarkSet::Landmarks withEntries(const QList<QByteArrayList>& entries) const
    {
        QByteArray bytes = "[LANDMARKS]\n";
        for (int i = 0; i < entries.size(); ++i) {
            for (const QByteArray& line : entries[i]) {
                bytes += "landmarks\\" + QByteArray::number(i + 1) + '\\' + line + '\n';
            }
        }
        return withBytes(bytes + "landmarks\\size=" + QByteArray::number(entries.size()) + '\n');
    }

    TORVLandmarkSet::Landmarks withBytes(const QByteArray& bytes) const
    {
        home.write(File, bytes);
        return TORVLandmarkList().getLandmarks();
    }

    const SandboxedHome home;
};

QByteArrayList at(double lat, double lon)
{
    return {"location\\lat=" + QByteArray::number(lat, 'g', 10), "location\\lon=" + QByteArray::number(lon, 'g', 10)};
}

QStringList labelsOf(const TORVLandmarkSet& set)
{
    QStringList labels;
    for (const TORVLandmark::CPtr& landmark : set.getLandmarks()) {
        labels << landmark->getLabel();
    }
    return labels;
}

} // namespace

TEST_F(TORVLandmarkListTest, IsEmptyWithoutAFile)
{
    const LogFile log(TORVLog::LEVEL_WARNING);
    EXPECT_TRUE(TORVLandmarkList().getLandmarks().isEmpty());
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_FALSE(QFile::exists(home.filePath(File)));
}

TEST_F(TORVLandmarkListTest, ReadsEveryKeyOfAnEntry)
{
    const auto landmarks =
        withEntries({{"label=Z\xC3\xBCrich", "priority=3", "location\\lat=47.37999", "location\\lon=8.55001",
                      "location\\alt=484", "color\\r=0.886", "color\\g=0.847", "color\\b=0.776"}});
    ASSERT_EQ(landmarks.size(), 1);
    const TORVLandmark& zurich = *landmarks.first();
    EXPECT_EQ(zurich.getLabel(), QStringLiteral("Z\u00fcrich"));
    EXPECT_EQ(zurich.getPriority(), 3);
    EXPECT_EQ(zurich.getLocation().getLat(), 47.37999);
    EXPECT_EQ(zurich.getLocation().getLon(), 8.55001);
    EXPECT_EQ(zurich.getAltitude(), 484.0);
    EXPECT_TRUE(zurich.hasAltitude());
    EXPECT_EQ(zurich.getRed(), 0.886);
    EXPECT_EQ(zurich.getGreen(), 0.847);
    EXPECT_EQ(zurich.getBlue(), 0.776);
}

TEST_F(TORVLandmarkListTest, HasDefaultsForAllButThePosition)
{
    const auto landmarks = withEntries({at(1.0, 2.0)});
    ASSERT_EQ(landmarks.size(), 1);
    const TORVLandmark& landmark = *landmarks.first();
    EXPECT_TRUE(landmark.getLabel().isEmpty());
    EXPECT_EQ(landmark.getPriority(), 0);
    EXPECT_EQ(landmark.getAltitude(), 0.0);
    EXPECT_FALSE(landmark.hasAltitude());
    EXPECT_EQ(landmark.getRed() + landmark.getGreen() + landmark.getBlue(), 0.0);
}

TEST_F(TORVLandmarkListTest, DropsEntriesWithoutAPosition)
{
    const auto landmarks = withEntries({{"label=no lat", "location\\lon=8"},
                                        {"label=no lon", "location\\lat=46"},
                                        at(90.0001, 0.0),
                                        at(-90.0001, 0.0),
                                        at(0.0, 180.0001),
                                        at(0.0, -180.0001),
                                        {"location\\lat=nan", "location\\lon=0"},
                                        {"location\\lat=north", "location\\lon=0"},
                                        {"location\\lat=1e308", "location\\lon=0"}});
    EXPECT_TRUE(landmarks.isEmpty());
}

TEST_F(TORVLandmarkListTest, TakesPlacesAtTheEndsOfTheGlobe)
{
    const auto landmarks = withEntries({at(90.0, 180.0), at(-90.0, -180.0)});
    ASSERT_EQ(landmarks.size(), 2);
    EXPECT_EQ(landmarks[0]->getLocation().getLat(), 90.0);
    EXPECT_EQ(landmarks[0]->getLocation().getLon(), 180.0);
    EXPECT_EQ(landmarks[1]->getLocation().getLon(), -180.0);
}

TEST_F(TORVLandmarkListTest, LimitsThePriority)
{
    const auto priority = [this](const char* text) {
        return withEntries({at(1.0, 2.0) << QByteArray("priority=") + text}).first()->getPriority();
    };
    EXPECT_EQ(priority("9"), 5);
    EXPECT_EQ(priority("5"), 5);
    EXPECT_EQ(priority("4294967295"), 5);
    EXPECT_EQ(priority("-1"), 0);
    EXPECT_EQ(priority("high"), 0);
}

TEST_F(TORVLandmarkListTest, BelievesNoColourOrAltitudeThatCanNotBe)
{
    const auto landmarks = withEntries({at(1.0, 2.0) << "location\\alt=1e300"
                                                     << "color\\r=255"
                                                     << "color\\g=-1"
                                                     << "color\\b=nan"});
    ASSERT_EQ(landmarks.size(), 1);
    EXPECT_FALSE(landmarks.first()->hasAltitude());
    EXPECT_EQ(landmarks.first()->getAltitude(), 0.0);
    EXPECT_EQ(landmarks.first()->getRed(), 1.0);
    EXPECT_EQ(landmarks.first()->getGreen(), 0.0);
    EXPECT_EQ(landmarks.first()->getBlue(), 0.0);
}

TEST_F(TORVLandmarkListTest, ReadsALabelWithAComma)
{
    EXPECT_EQ(withEntries({at(1.0, 2.0) << "label=Kingsford Smith,Sydney"}).first()->getLabel(),
              QLatin1String("Kingsford Smith,Sydney"));
}

TEST_F(TORVLandmarkListTest, ReadsWhatIsThereWhateverTheSizeSays)
{
    const QByteArray entry = "landmarks\\2\\location\\lat=1\nlandmarks\\2\\location\\lon=2\n";
    EXPECT_EQ(withBytes("[LANDMARKS]\n" + entry + "landmarks\\size=1000000000\n").size(), 1);
    EXPECT_EQ(withBytes("[LANDMARKS]\n" + entry + "landmarks\\size=1\n").size(), 0);
    EXPECT_EQ(withBytes("[LANDMARKS]\n" + entry + "landmarks\\size=-3\n").size(), 0);
    EXPECT_EQ(withBytes("[LANDMARKS]\n" + entry).size(), 0);
}

TEST_F(TORVLandmarkListTest, SurvivesTruncatedFiles)
{
    QByteArray bytes = "[LANDMARKS]\nlandmarks\\size=3\n";
    for (int i = 1; i <= 3; ++i) {
        bytes += QByteArray("landmarks\\1\\location\\lat=1\nlandmarks\\1\\location\\lon=2\n")
                     .replace('1', QByteArray::number(i));
    }
    for (int size = 0; size < bytes.size(); ++size) {
        EXPECT_LE(withBytes(bytes.left(size)).size(), 3);
    }
}

TEST_F(TORVLandmarkListTest, ReadsTheFileAgain)
{
    home.write(File, "[LANDMARKS]\nlandmarks\\1\\location\\lat=1\nlandmarks\\1\\location\\lon=2\nlandmarks\\size=1\n");
    TORVLandmarkList list;
    EXPECT_EQ(list.getLandmarks().size(), 1);
    list.load();
    EXPECT_EQ(list.getLandmarks().size(), 1);
    ASSERT_TRUE(QFile::remove(home.filePath(File)));
    list.load();
    EXPECT_TRUE(list.getLandmarks().isEmpty());
}

TEST_F(TORVLandmarkListTest, LogsWhatItTakes)
{
    const LogFile log(TORVLog::LEVEL_DEBUG);
    withEntries({{"label=nowhere"}, at(1.0, 2.0)});
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("D: count=2"), QStringLiteral("D: Landmark: #1")}));
}

TEST_F(TORVLandmarkListTest, GivesTheLandmarksOfAnArea)
{
    withEntries({at(46.0, 8.0) << "label=corner", at(50.0, 9.0) << "label=outside", at(47.0, 9.0) << "label=inside"});
    const TORVLandmarkList list;
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const TORVLandmarkSet::Ptr set =
        list.getLandmarkSet(TORVCoordinate(47.0, 9.0), TORVCoordinate(46.0, 8.0), TORVCoordinate(48.0, 10.0));
    EXPECT_EQ(labelsOf(*set), QStringList({QStringLiteral("corner"), QStringLiteral("inside")}));
    EXPECT_EQ(set->getLandmarks().first(), list.getLandmarks().first());
    EXPECT_EQ(set->getCenter().getLat(), 47.0);
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("D: accepted: corner"), QStringLiteral("D: rejected: outside"),
                                        QStringLiteral("D: accepted: inside")}));
}

TEST_F(TORVLandmarkListTest, GivesAnEmptySetWhereThereIsNothing)
{
    EXPECT_TRUE(TORVLandmarkList().getLandmarkSet(Center, SouthWest, NorthEast)->getLandmarks().isEmpty());
}

TEST_F(TORVLandmarkListTest, GivesTheSetOfAnAreaAgainWhileSomebodyHoldsIt)
{
    TORVLandmarkList list;
    const TORVLandmarkSet::Ptr set = list.getLandmarkSet(Center, SouthWest, NorthEast);
    EXPECT_EQ(list.getLandmarkSet(Center, SouthWest, NorthEast), set);
    EXPECT_NE(list.getLandmarkSet(SouthWest, SouthWest, NorthEast), set);
}

TEST_F(TORVLandmarkListTest, GivesAnotherSetAfterLoadingAnew)
{
    TORVLandmarkList list;
    const TORVLandmarkSet::Ptr set = list.getLandmarkSet(Center, SouthWest, NorthEast);
    list.load();
    EXPECT_NE(list.getLandmarkSet(Center, SouthWest, NorthEast), set);
}

TEST_F(TORVLandmarkListTest, PrintsATextThatReadsAsTheSameList)
{
    const QString label = QStringLiteral("Z\u00fcrich, \"Kloten\"; a=b \\ %20");
    {
        QSettings settings(home.filePath(File), QSettings::IniFormat);
        settings.setIniCodec("UTF-8");
        settings.beginGroup(QStringLiteral("LANDMARKS"));
        settings.beginWriteArray(QStringLiteral("landmarks"));
        settings.setArrayIndex(0);
        settings.setValue(QStringLiteral("label"), label);
        settings.setValue(QStringLiteral("priority"), 9);
        settings.setValue(QStringLiteral("location/lat"), 47.464722222222221);
        settings.setValue(QStringLiteral("location/lon"), 0.1);
        settings.setValue(QStringLiteral("location/alt"), 432.5);
        settings.setValue(QStringLiteral("color/g"), 0.5);
        settings.endArray();
    }
    testing::internal::CaptureStdout();
    TORVLandmarkList().printIniFormat();
    const QByteArray text = QByteArray::fromStdString(testing::internal::GetCapturedStdout());
    EXPECT_EQ(text, "[LANDMARKS]\nlandmarks/size=1\n"
                    "landmarks/1/label=\"Z\xC3\xBCrich, \\\"Kloten\\\"; a=b \\\\ %20\"\nlandmarks/1/priority=5\n"
                    "landmarks/1/location/lat=47.46472222222222\nlandmarks/1/location/lon=0.1\n"
                    "landmarks/1/location/alt=432.5\nlandmarks/1/color/r=0\nlandmarks/1/color/g=0.5\n"
                    "landmarks/1/color/b=0\n");
    const auto landmarks = withBytes(text);
    ASSERT_EQ(landmarks.size(), 1);
    EXPECT_EQ(landmarks.first()->getLabel(), label);
    EXPECT_EQ(landmarks.first()->getLocation().getLat(), 47.464722222222221);
    EXPECT_EQ(landmarks.first()->getGreen(), 0.5);
}

TEST_F(TORVLandmarkListTest, PrintsAPlainLabelAsItIs)
{
    withEntries({at(1.0, 2.0) << "label=Will Rogers (KOKC)"});
    testing::internal::CaptureStdout();
    TORVLandmarkList().printIniFormat();
    EXPECT_NE(testing::internal::GetCapturedStdout().find("landmarks/1/label=Will Rogers (KOKC)\n"), std::string::npos);
}

TEST_F(TORVLandmarkListTest, ReadsTheDemoInstallation)
{
    const std::vector<TORVSiteInfo> sites = TORVSiteInfo::all();
    const TORVTerrainModel terrain(77);
    ASSERT_EQ(TORVDemoSettings(home.path()).writeLandmarks(sites, 1, terrain), QString());
    const auto landmarks = TORVLandmarkList().getLandmarks();
    ASSERT_EQ(static_cast<std::size_t>(landmarks.size()), sites.front().places.size());
    EXPECT_EQ(landmarks.first()->getLabel(), QString::fromUtf8(sites.front().places.front().name));
    EXPECT_TRUE(landmarks.first()->hasAltitude());
}

TEST_F(TORVLandmarkListTest, HoldsRealTowns)
{
    TORV_NEEDS_SHARED_DATA();
    QFile table(SharedData::path(QStringLiteral("landmarks/LEM.csv")));
    ASSERT_TRUE(table.open(QIODevice::ReadOnly));
    QList<QByteArrayList> entries;
    const QList<QByteArray> lines = table.readAll().split('\n').mid(1);
    for (const QByteArray& line : lines) {
        const QList<QByteArray> parts = line.split(',');
        if (parts.size() == 5) {
            entries.append({"label=\"" + parts[0] + '"', "location\\lat=" + parts[2], "location\\lon=" + parts[3]});
        }
    }
    EXPECT_EQ(withEntries(entries).size(), entries.size());
    // Half a degree round Monte Lema.
    const QStringList near = labelsOf(*TORVLandmarkList().getLandmarkSet(
        TORVCoordinate(46.0408, 8.8332), TORVCoordinate(45.5408, 8.3332), TORVCoordinate(46.5408, 9.3332)));
    EXPECT_TRUE(near.contains(QStringLiteral("Lugano")));
    EXPECT_FALSE(near.contains(QStringLiteral("Turin")));
}
