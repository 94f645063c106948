#include "settings/TORVGeneralSettings.h"

#include "settings/TORVConfig.h"

#include "support/LogFile.h"
#include "support/SandboxedHome.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QSettings>
#include <QTranslator>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <vector>

namespace
{

using General = TORVGeneralSettings;

const QString SettingsFile = QStringLiteral(".config/Halmera/TORV3D.conf");

// Every key: what a file says, and how that reads and is set.
struct Key
{
    const char* name;
    const char* byDefault;
    const char* text;
    std::function<QString(const General&)> get;
    std::function<void(General&)> set;
};

QString flagText(bool on)
{
    return on ? QStringLiteral("true") : QStringLiteral("false");
}

const std::vector<Key>& keys()
{
    static const std::vector<Key> all = {
        {"animframeinterval", "0", "3", [](const General& g) { return QString::number(g.getAnimationFrameInterval()); },
         [](General& g) { g.setAnimationFrameInterval(3); }},
        {"animloopmode", "0", "1", [](const General& g) { return QString::number(g.getAnimationLoopMode()); },
         [](General& g) { g.setAnimationLoopMode(1); }},
        {"animspeed", "0", "4", [](const General& g) { return QString::number(g.getAnimationSpeed()); },
         [](General& g) { g.setAnimationSpeed(4); }},
        {"animtimespan", "0", "2", [](const General& g) { return QString::number(g.getAnimationTimeSpan()); },
         [](General& g) { g.setAnimationTimeSpan(2); }},
        {"clock24hours", "true", "false", [](const General& g) { return flagText(g.is24hClock()); },
         [](General& g) { g.set24hClock(false); }},
        {"data2d", "", "/data/2d", [](const General& g) { return g.get2DDir(); },
         [](General& g) { g.set2DDir(QStringLiteral("/data/2d")); }},
        {"data3d", "", "/data/3d", [](const General& g) { return g.get3DDir(); },
         [](General& g) { g.set3DDir(QStringLiteral("/data/3d")); }},
        {"datashrink_h", "4", "2", [](const General& g) { return QString::number(g.getDataShrinkH()); },
         [](General& g) { g.setDataShrinkH(2); }},
        {"datashrink_v", "1", "3", [](const General& g) { return QString::number(g.getDataShrinkV()); },
         [](General& g) { g.setDataShrinkV(3); }},
        {"datasmooth", "1", "0.5", [](const General& g) { return QString::number(g.getDataSmooth()); },
         [](General& g) { g.setDataSmooth(0.5); }},
        {"geolayer", "", "/data/geo", [](const General& g) { return g.getGeoDir(); },
         [](General& g) { g.setGeoDir(QStringLiteral("/data/geo")); }},
        {"latlonunits", "0", "DMs", [](const General& g) { return g.getLatLonFormat() == 2 ? "DMs" : "0"; },
         [](General& g) { g.setLatLonFormat(General::LATLON_DMS); }},
        {"livemode", "false", "true", [](const General& g) { return flagText(g.isLiveMode()); },
         [](General& g) { g.setLiveMode(true); }},
        {"livemode_product2d", "", "SRI", [](const General& g) { return g.getLiveProduct2D(); },
         [](General& g) { g.setLiveProduct2D(QStringLiteral("SRI")); }},
        {"livemode_product3d", "", "CAPPI - Z", [](const General& g) { return g.getLiveProduct3D(); },
         [](General& g) { g.setLiveProduct3D(QStringLiteral("CAPPI - Z")); }},
        {"livemode_site", "", "MONTE LEMA", [](const General& g) { return g.getLiveSite(); },
         [](General& g) { g.setLiveSite(QStringLiteral("MONTE LEMA")); }},
        {"metricunits", "true", "false", [](const General& g) { return flagText(g.isMetricUnits()); },
         [](General& g) { g.setMetricUnits(false); }},
        {"timewindow", "180", "3600", [](const General& g) { return QString::number(g.getTimeWindow()); },
         [](General& g) { g.setTimeWindow(3600); }},
        {"verticalscale", "5", "2.5", [](const General& g) { return QString::number(g.getVerticalScale()); },
         [](General& g) { g.setVerticalScale(2.5); }},
    };
    return all;
}

QByteArray wholeFile()
{
    QByteArray bytes = "[GENERAL]\n";
    for (const Key& key : keys()) {
        bytes += QByteArray(key.name) + '=' + key.text + '\n';
    }
    return bytes;
}

void expectValues(const General& settings, const char* Key::*expected)
{
    for (const Key& key : keys()) {
        EXPECT_EQ(key.get(settings), QLatin1String(key.*expected)) << key.name;
    }
}

class TORVGeneralSettingsTest : public testing::Test
{
protected:
    ~TORVGeneralSettingsTest() override { TORVConfig::destroy(); }

    void write(const QByteArray& bytes) const { home.write(SettingsFile, bytes); }

    QByteArray settings() const
    {
        QFile file(home.settingsFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // What a file with that line in its general group makes of it.
    General withLine(const QByteArray& line) const
    {
        write("[GENERAL]\n" + line + '\n');
        return {};
    }

    const SandboxedHome home;
};

using TORVGeneralSettingsTextTest = TORVGeneralSettingsTest;

QStringList reasonsOf(const General& one, const General& other)
{
    QStringList reasons;
    EXPECT_TRUE(one.hasChanged(other, &reasons));
    return reasons;
}

} // namespace

TEST_F(TORVGeneralSettingsTest, HasDefaultsWithoutAFile)
{
    expectValues(General(), &Key::byDefault);
    EXPECT_TRUE(General().getDisplayStates().isEmpty());
    EXPECT_TRUE(General().getViewAngles().isEmpty());
}

TEST_F(TORVGeneralSettingsTest, HasDefaultsWithAnEmptyFile)
{
    write({});
    expectValues(General(), &Key::byDefault);
}

TEST_F(TORVGeneralSettingsTest, ReadsEveryKeyOfAFileWrittenByHand)
{
    write(wholeFile());
    expectValues(General(), &Key::text);
}

TEST_F(TORVGeneralSettingsTest, WritesEveryKeyThatTheFileLacks)
{
    General general;
    for (const Key& key : keys()) {
        key.set(general);
    }
    general.save();
    EXPECT_EQ(settings(), wholeFile().replace("[GENERAL]", "[%General]"));
    expectValues(General(), &Key::text);
}

TEST_F(TORVGeneralSettingsTest, WritesDefaultsToo)
{
    General().save();
    EXPECT_EQ(settings().count('\n'), static_cast<int>(keys().size()) + 1);
    EXPECT_TRUE(settings().contains("latlonunits=d\n"));
    EXPECT_TRUE(settings().contains("clock24hours=true\n"));
}

TEST_F(TORVGeneralSettingsTest, ChangesOneKeyOfTheFileAtATime)
{
    for (const Key& key : keys()) {
        General().save();
        const QByteArray before = settings();
        General general;
        key.set(general);
        general.save();
        const QByteArray line = QByteArray(key.name) + '=';
        QList<QByteArray> old = before.split('\n');
        const QList<QByteArray> now = settings().split('\n');
        ASSERT_EQ(now.size(), old.size()) << key.name;
        for (int i = 0; i < now.size(); ++i) {
            EXPECT_EQ(now[i], old[i].startsWith(line) ? line + key.text : old[i]) << key.name;
        }
        QFile::remove(home.settingsFile());
    }
}

TEST_F(TORVGeneralSettingsTest, LeavesWhatAnotherViewerHasChanged)
{
    General first;
    General second;
    first.save();
    second.set3DDir(QStringLiteral("/data/of the second"));
    second.save();
    first.setTimeWindow(60);
    first.save();
    EXPECT_EQ(General().get3DDir(), QLatin1String("/data/of the second"));
    EXPECT_EQ(General().getTimeWindow(), 60);
}

TEST_F(TORVGeneralSettingsTest, WritesAChangeOnce)
{
    General first;
    first.set3DDir(QStringLiteral("/data/first"));
    first.save();
    General second;
    second.set3DDir(QStringLiteral("/data/second"));
    second.save();
    first.save();
    EXPECT_EQ(General().get3DDir(), QLatin1String("/data/second"));
}

TEST_F(TORVGeneralSettingsTest, TriesAgainToWriteWhatItCouldNot)
{
    General general;
    general.set3DDir(QStringLiteral("/data/3d"));
    ASSERT_TRUE(QDir().mkpath(home.settingsFile())); // nobody writes a file in the place of a directory
    general.save();
    ASSERT_TRUE(QDir().rmdir(home.settingsFile()));
    write("[%General]\ndata3d=/data/old\n");
    general.save();
    EXPECT_TRUE(settings().contains("data3d=/data/3d\n"));
}

TEST_F(TORVGeneralSettingsTest, KeepsWhatAnotherVersionWrote)
{
    write("[%General]\nanimspeed=9\nlatlonunits=gradians\nfuturekey=42\nverticalscaling=3\n\n[FUTURE]\nkey=\"a, b\"\n");
    General general;
    general.setTimeWindow(60);
    general.save();
    for (const char* line : {"animspeed=9\n", "latlonunits=gradians\n", "futurekey=42\n", "verticalscaling=3\n",
                             "[FUTURE]\nkey=\"a, b\"\n"}) {
        EXPECT_TRUE(settings().contains(line)) << line;
    }
}

TEST_F(TORVGeneralSettingsTest, BringsNumbersOfTheFileIntoTheirRange)
{
    struct Row
    {
        const char* key;
        const char* low;
        const char* high;
    };
    const Row rows[] = {
        {"animtimespan", "0", "3"},   {"animframeinterval", "0", "3"}, {"animloopmode", "0", "1"},
        {"animspeed", "0", "4"},      {"datashrink_h", "1", "4"},      {"datashrink_v", "1", "4"},
        {"verticalscale", "1", "50"}, {"datasmooth", "0", "10"},       {"timewindow", "0", "2147483647"}};
    for (const Row& row : rows) {
        const auto key =
            std::find_if(keys().begin(), keys().end(), [&row](const Key& k) { return qstrcmp(k.name, row.key) == 0; });
        ASSERT_NE(key, keys().end()) << row.key;
        const QByteArray name = QByteArray(row.key) + '=';
        EXPECT_EQ(key->get(withLine(name + "-99999")), QLatin1String(row.low)) << row.key;
        EXPECT_EQ(key->get(withLine(name + "99999999999")), QLatin1String(row.high)) << row.key;
        for (const char* nonsense : {"nan", "inf", "-inf", "1e9999", "several", "", "3,4", "@Invalid()"}) {
            EXPECT_EQ(key->get(withLine(name + nonsense)), QLatin1String(key->byDefault)) << row.key << nonsense;
        }
    }
}

TEST_F(TORVGeneralSettingsTest, ReadsAnyOtherLatLonTextAsDecimal)
{
    EXPECT_EQ(withLine("latlonunits=d").getLatLonFormat(), General::LATLON_D);
    EXPECT_EQ(withLine("latlonunits=Dm").getLatLonFormat(), General::LATLON_DM);
    EXPECT_EQ(withLine("latlonunits=DMs").getLatLonFormat(), General::LATLON_DMS);
    EXPECT_EQ(withLine("latlonunits=dms").getLatLonFormat(), General::LATLON_D);
    EXPECT_EQ(withLine("latlonunits=2").getLatLonFormat(), General::LATLON_D);
}

TEST_F(TORVGeneralSettingsTest, ReadsAPathWithAComma)
{
    EXPECT_EQ(withLine("data3d=/data/a,b").get3DDir(), QLatin1String("/data/a,b"));
}

TEST_F(TORVGeneralSettingsTest, KeepsPathsOfAllKinds)
{
    for (const QString& path : {QStringLiteral("/data/a,b"), QStringLiteral("/data/Z\u00fcrich \u96e8"),
                                QStringLiteral("/data/\"x\";y=z\\[1]"), QStringLiteral(" /data/blank ")}) {
        General general;
        general.set3DDir(path);
        general.save();
        EXPECT_EQ(General().get3DDir(), path);
    }
}

TEST_F(TORVGeneralSettingsTest, SurvivesTruncatedAndGarbledFiles)
{
    const QByteArray whole = wholeFile();
    for (int size = 0; size < whole.size(); size += 23) {
        write(whole.left(size));
        General general;
        general.save();
        EXPECT_GE(general.getVerticalScale(), 1.0);
        QByteArray garbled = whole;
        garbled[size] = static_cast<char>(garbled[size] ^ 0x5A);
        write(garbled);
        General().save();
    }
}

TEST_F(TORVGeneralSettingsTest, ResetsAllButDirectoriesAndPresets)
{
    write(wholeFile());
    General general;
    general.setDisplayStates({TORVDisplayState::Ptr(new TORVDisplayState)});
    general.reset(false);
    for (const Key& key : keys()) {
        const bool isDirectory = QByteArrayList({"data2d", "data3d", "geolayer"}).contains(key.name);
        EXPECT_EQ(key.get(general), QLatin1String(isDirectory ? key.text : key.byDefault)) << key.name;
    }
    EXPECT_EQ(general.getDisplayStates().size(), 1);
}

TEST_F(TORVGeneralSettingsTest, ResetsTheDisplayAloneWhenTheSessionIsKept)
{
    write(wholeFile());
    General general;
    general.reset(true);
    const QByteArrayList reset = {"clock24hours", "metricunits",  "latlonunits", "verticalscale",
                                  "datashrink_h", "datashrink_v", "datasmooth"};
    for (const Key& key : keys()) {
        EXPECT_EQ(key.get(general), QLatin1String(reset.contains(key.name) ? key.byDefault : key.text)) << key.name;
    }
}

TEST_F(TORVGeneralSettingsTest, IsUnchangedAgainstItsCopy)
{
    QStringList reasons;
    EXPECT_FALSE(General().hasChanged(General(), &reasons));
    EXPECT_FALSE(General().hasChanged(General(), nullptr));
    EXPECT_TRUE(reasons.isEmpty());
}

TEST_F(TORVGeneralSettingsTest, TellsWhatHasChanged)
{
    const QMap<QByteArray, QString> reasons = {
        {"clock24hours", QStringLiteral("- Unit settings changed")},
        {"metricunits", QStringLiteral("- Unit settings changed")},
        {"latlonunits", QStringLiteral("- Unit settings changed")},
        {"datashrink_h", QStringLiteral("- Data resolution changed")},
        {"datashrink_v", QStringLiteral("- Data resolution changed")},
        {"datasmooth", QStringLiteral("- Data smoothing changed")},
        {"verticalscale", QStringLiteral("- Vertical scaling changed")},
        {"geolayer", QStringLiteral("- Geo data path changed")},
        {"data3d", QStringLiteral("- 3d data path changed")},
        {"data2d", QStringLiteral("- 2d data path changed")},
    };
    for (const Key& key : keys()) {
        General other;
        key.set(other);
        QStringList told;
        const bool isLive = QByteArray(key.name).startsWith("livemode");
        EXPECT_EQ(General().hasChanged(other, &told), !isLive) << key.name;
        EXPECT_EQ(told.join(QLatin1Char('|')), reasons.value(key.name)) << key.name;
    }
}

TEST_F(TORVGeneralSettingsTest, TellsAllChangesInOneOrder)
{
    write(wholeFile());
    const General other;
    QFile::remove(home.settingsFile());
    EXPECT_EQ(reasonsOf(General(), other),
              QStringList({QStringLiteral("- Unit settings changed"), QStringLiteral("- Data resolution changed"),
                           QStringLiteral("- Data smoothing changed"), QStringLiteral("- Vertical scaling changed"),
                           QStringLiteral("- Geo data path changed"), QStringLiteral("- 3d data path changed"),
                           QStringLiteral("- 2d data path changed")}));
}

TEST_F(TORVGeneralSettingsTest, AppendsReasonsToTheList)
{
    General other;
    other.set3DDir(QStringLiteral("/data"));
    QStringList reasons(QStringLiteral("before"));
    EXPECT_TRUE(General().hasChanged(other, &reasons));
    EXPECT_EQ(reasons, QStringList({QStringLiteral("before"), QStringLiteral("- 3d data path changed")}));
}

TEST_F(TORVGeneralSettingsTest, CountsANumberThatIsNoneAsDifferent)
{
    General general;
    general.setDataSmooth(std::numeric_limits<double>::quiet_NaN());
    general.setVerticalScale(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(reasonsOf(general, general),
              QStringList({QStringLiteral("- Data smoothing changed"), QStringLiteral("- Vertical scaling changed")}));
}

TEST_F(TORVGeneralSettingsTest, ReadsDefaultsFromNumbersThatWereNone)
{
    General general;
    general.setDataSmooth(std::numeric_limits<double>::quiet_NaN());
    general.setVerticalScale(std::numeric_limits<double>::infinity());
    general.save();
    expectValues(General(), &Key::byDefault);
}

TEST_F(TORVGeneralSettingsTextTest, SpeaksTheLanguageOfTheUser)
{
    QTranslator translator;
    ASSERT_TRUE(translator.load(QStringLiteral("torv3d_fi"), QStringLiteral(":/translations")));
    ASSERT_TRUE(QCoreApplication::installTranslator(&translator));
    General general;
    general.set24hClock(false);
    const QDateTime time(QDate(2026, 11, 16), QTime(14, 5), Qt::UTC); // a Monday
    EXPECT_EQ(general.formattedTime(time), QLatin1String("ma 2026-11-16 02:05 IP."));
    EXPECT_EQ(reasonsOf(General(), general), QStringList(QStringLiteral("- Yksikk\u00f6asetukset muuttuivat")));
    EXPECT_EQ(general.getDisplayStateNames(), QStringList(QStringLiteral("Oletus")));
    QCoreApplication::removeTranslator(&translator);
}

TEST_F(TORVGeneralSettingsTextTest, WritesTimesOnTheClockOfTheUser)
{
    const QDateTime afternoon(QDate(2026, 11, 16), QTime(14, 5, 59), Qt::UTC); // a Monday
    const QDateTime midnight(QDate(2026, 11, 15), QTime(0, 0), Qt::UTC);
    General general;
    EXPECT_EQ(general.formattedTime(afternoon), QLatin1String("Mon 2026-11-16 14:05"));
    EXPECT_EQ(general.formattedTimeShort(afternoon), QLatin1String("2026-11-16 14:05"));
    EXPECT_EQ(general.formattedTime(midnight), QLatin1String("Sun 2026-11-15 00:00"));
    general.set24hClock(false);
    EXPECT_EQ(general.formattedTime(afternoon), QLatin1String("Mon 2026-11-16 02:05 PM"));
    EXPECT_EQ(general.formattedTimeShort(afternoon), QLatin1String("2026-11-16 02:05 PM"));
    EXPECT_EQ(general.formattedTimeShort(midnight), QLatin1String("2026-11-15 12:00 AM"));
}

TEST_F(TORVGeneralSettingsTextTest, WritesTimesWithoutRegardToTheSystem)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(General().formattedTime(QDateTime(QDate(2026, 11, 17), QTime(14, 5), Qt::UTC)),
              QLatin1String("Tue 2026-11-17 14:05"));
    QLocale::setDefault(before);
}

TEST_F(TORVGeneralSettingsTextTest, WritesNothingForATimeThatIsNone)
{
    EXPECT_TRUE(General().formattedTime(QDateTime()).isEmpty());
}

TEST_F(TORVGeneralSettingsTextTest, LeavesMetricLengthsAlone)
{
    const General general;
    EXPECT_EQ(general.getCorrectLengthBig(12.5), 12.5);
    EXPECT_EQ(general.getCorrectLengthSmall(12.5), 12.5);
    EXPECT_EQ(general.getLengthUnitBig(), QLatin1String("km"));
    EXPECT_EQ(general.getLengthUnitSmall(), QLatin1String("m"));
    EXPECT_EQ(general.formattedBigLength(12.345, 1), QLatin1String("12.3 km"));
    EXPECT_EQ(general.formattedSmallLength(1234.4, 0), QLatin1String("1234 m"));
}

TEST_F(TORVGeneralSettingsTextTest, ConvertsLengthsToEnglishUnits)
{
    General general;
    general.setMetricUnits(false);
    EXPECT_EQ(general.getCorrectLengthSmall(1000.0), 3280.8399);
    EXPECT_EQ(general.getCorrectLengthBig(1.853184), 1.0);
    EXPECT_EQ(general.formattedSmallLength(1000.0, 4), QLatin1String("3280.8399 ft"));
    EXPECT_EQ(general.formattedSmallLength(-100.0, 2), QLatin1String("-328.08 ft"));
    EXPECT_EQ(general.formattedBigLength(1.853184, 3), QLatin1String("1.000 NM"));
}

TEST_F(TORVGeneralSettingsTextTest, WritesCoordinatesInTheFormatOfTheUser)
{
    // 46.0408 degrees: 2.448 minutes, that is 2 minutes 26.88 seconds. 8.8332: 49.992 minutes, 49 minutes 59.52
    // seconds.
    const TORVCoordinate lema(46.0408, 8.8332);
    General general;
    EXPECT_EQ(general.formatLatitude(lema), QStringLiteral("46.0408\u00b0 N"));
    EXPECT_EQ(general.formatLongitude(lema), QStringLiteral("8.8332\u00b0 E"));
    general.setLatLonFormat(General::LATLON_DM);
    EXPECT_EQ(general.formatLatitude(lema), QStringLiteral("46\u00b0 2.448\" N"));
    EXPECT_EQ(general.formatLongitude(lema), QStringLiteral("8\u00b0 49.992\" E"));
    general.setLatLonFormat(General::LATLON_DMS);
    EXPECT_EQ(general.formatLatitude(lema), QStringLiteral("46\u00b0 2' 26.88\" N"));
    EXPECT_EQ(general.formatCoordinates(lema, TORVCoordinate::LATITUDE_AND_LONGITUDE),
              QStringLiteral("46\u00b0 2' 26.88\" N, 8\u00b0 49' 59.52\" E"));
}

TEST_F(TORVGeneralSettingsTextTest, ReadsTheTextsOfTheLatLonFormats)
{
    EXPECT_EQ(General::getLatLonFormatFromString(QStringLiteral("d")), 0);
    EXPECT_EQ(General::getLatLonFormatFromString(QStringLiteral("Dm")), 1);
    EXPECT_EQ(General::getLatLonFormatFromString(QStringLiteral("DMs")), 2);
    EXPECT_EQ(General::getLatLonFormatFromString(QStringLiteral("DM")), 0);
    EXPECT_EQ(General::getLatLonFormatFromString(QString()), 0);
}
