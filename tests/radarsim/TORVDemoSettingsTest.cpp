#include "radarsim/TORVDemoSettings.h"

#include "radarsim/TORVColorScale.h"
#include "radarsim/TORVSiteInfo.h"
#include "radarsim/TORVTerrainModel.h"
#include "settings/TORVConfig.h"
#include "settings/TORVDisplayState.h"
#include "settings/TORVGeneralSettings.h"
#include "support/SandboxedHome.h"
#include "visualization/TORVCameraModel.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <set>

namespace
{

class TORVDemoSettingsTest : public testing::Test
{
protected:
    // The file as another process will read it.
    std::unique_ptr<QSettings> read(const char* name) const
    {
        auto file = std::make_unique<QSettings>(settings.path(QLatin1String(name)), QSettings::IniFormat);
        file->setIniCodec("UTF-8");
        return file;
    }

    QString directory(const char* name) const { return home.filePath(QLatin1String(name)); }

    const QTemporaryDir home;
    const TORVDemoSettings settings{home.path()};
    const TORVTerrainModel terrain{77};
};

TEST_F(TORVDemoSettingsTest, LieWhereTheViewerLooks)
{
    EXPECT_EQ(settings.path(QStringLiteral("TORV3D")), home.filePath(QStringLiteral(".config/Halmera/TORV3D.conf")));
}

TEST_F(TORVDemoSettingsTest, PointToTheDirectories)
{
    ASSERT_EQ(settings.writeViewer(directory("a"), directory("b"), directory("c")), QString());
    const auto file = read("TORV3D");
    EXPECT_EQ(file->value(QStringLiteral("General/data3d")).toString(), directory("a"));
    EXPECT_EQ(file->value(QStringLiteral("General/data2d")).toString(), directory("b"));
    EXPECT_EQ(file->value(QStringLiteral("General/geolayer")).toString(), directory("c"));
}

TEST(TORVDemoSettings, AreFoundByTheViewersOwnSettingsClass)
{
    const SandboxedHome sandbox;
    ASSERT_EQ(
        TORVDemoSettings(sandbox.path()).writeViewer(QStringLiteral("/a"), QStringLiteral("/b"), QStringLiteral("/c")),
        QString());
    TORVConfig::destroy();
    QSettings* viewer = TORVConfig::instance()->get();
    const QString data3d = viewer->value(TORVConfig::GENERAL_GROUP + QStringLiteral("/data3d")).toString();
    TORVConfig::instance()->release();
    TORVConfig::destroy();
    EXPECT_EQ(data3d, QStringLiteral("/a"));
}

TEST_F(TORVDemoSettingsTest, KeepWhatTheUserHasSetElsewhere)
{
    QSettings(settings.path(QStringLiteral("TORV3D")), QSettings::IniFormat)
        .setValue(QStringLiteral("DIALOG/nightmode"), true);
    ASSERT_EQ(settings.writeViewer(directory("a"), directory("b"), directory("c")), QString());
    EXPECT_TRUE(read("TORV3D")->value(QStringLiteral("DIALOG/nightmode")).toBool());
}

TEST(TORVDemoSettings, StartTheViewerLive)
{
    const SandboxedHome sandbox;
    ASSERT_EQ(TORVDemoSettings(sandbox.path()).writeStart(QStringLiteral("HARJUVAARA")), QString());
    TORVConfig::destroy();
    const TORVGeneralSettings general;
    EXPECT_TRUE(general.isLiveMode());
    EXPECT_EQ(general.getLiveSite(), QStringLiteral("HARJUVAARA"));
    EXPECT_EQ(general.getLiveProduct3D(), QStringLiteral("CAPPI - Z"));
    EXPECT_EQ(general.getLiveProduct2D(), QStringLiteral("MAX"));
    EXPECT_EQ(general.getAnimationTimeSpan(), 0) << "three hours";
    TORVConfig::destroy();
}

TEST(TORVDemoSettings, CarryPresetsOfTheScene)
{
    const SandboxedHome sandbox;
    ASSERT_EQ(TORVDemoSettings(sandbox.path()).writeStart(QStringLiteral("HARJUVAARA")), QString());
    TORVConfig::destroy();
    TORVGeneralSettings general;
    const auto current = boost::make_shared<TORVDisplayState>();
    general.loadDisplayStates(current);
    ASSERT_EQ(general.getDisplayStateNames().mid(1),
              QStringList({QStringLiteral("Surfaces"), QStringLiteral("With terrain"), QStringLiteral("Plain")}));
    const auto isShown = [](const TORVDisplayState& state, int key) { return state.getLayer(key)->isEnabled(); };
    EXPECT_FALSE(isShown(*current, TORVDisplayLayer::LAYER_3DTERRAIN));
    EXPECT_TRUE(isShown(*current, TORVDisplayLayer::LAYER_3DPRODUCT));
    const TORVDisplayState& all = *general.getDisplayStates().at(1);
    const TORVDisplayState& plain = *general.getDisplayStates().at(2);
    for (const int key : {10, 11, 12, 13, 40, 41, 42, 43, 44}) {
        EXPECT_TRUE(isShown(all, key)) << key;
        EXPECT_EQ(all.getLayer(key)->getOpacity(), 100) << key;
        EXPECT_EQ(isShown(plain, key), key == 10 || key == 12 || key == 40 || key == 44) << key;
    }
    TORVConfig::destroy();
}

TEST(TORVDemoSettings, CarryViewsThatTheCameraCanTake)
{
    const SandboxedHome sandbox;
    ASSERT_EQ(TORVDemoSettings(sandbox.path()).writeStart(QStringLiteral("HARJUVAARA")), QString());
    TORVConfig::destroy();
    TORVGeneralSettings general;
    general.loadViewAngles(boost::make_shared<TORVViewAngle>());
    ASSERT_EQ(general.getViewAngles().size(), 5);
    EXPECT_EQ(general.getViewAngles().first()->getName(), QStringLiteral("From south-east"));
    // As the window sets the camera up for a volume of 240 km by 240 km: its limit is four times the diagonal.
    const double reach = std::hypot(240e3, 240e3);
    for (const TORVViewAngle::Ptr& angle : general.getViewAngles()) {
        TORVCameraModel camera;
        camera.resetCamera({0.0, 0.0, 2.0 * reach}, {0.0, 1e-6, -1.0}, 4.0 * reach, reach);
        camera.setView(angle->getPosition(), angle->getDirection());
        EXPECT_EQ(camera.getPosition().z, angle->getPosition().z) << qPrintable(angle->getName());
        EXPECT_TRUE(camera.isTargetLegal()) << qPrintable(angle->getName());
        // All look at the volume: what they are turned about lies in it.
        EXPECT_LT(std::hypot(camera.getTarget().x, camera.getTarget().y), 340e3) << qPrintable(angle->getName());
    }
    TORVConfig::destroy();
}

TEST_F(TORVDemoSettingsTest, KeepLiveSiteAndPresetsOfAnEarlierRun)
{
    {
        QSettings file(settings.path(QStringLiteral("TORV3D")), QSettings::IniFormat);
        file.setValue(QStringLiteral("GENERAL/livemode_site"), QStringLiteral("ELSEWHERE"));
        file.setValue(QStringLiteral("General/animspeed"), 3);
        file.setValue(QStringLiteral("VIEWANGLE/VIEWANGLES/size"), 1);
    }
    ASSERT_EQ(settings.writeStart(QStringLiteral("HARJUVAARA")), QString());
    const auto file = read("TORV3D");
    EXPECT_FALSE(file->contains(QStringLiteral("General/livemode_site")));
    EXPECT_EQ(file->value(QStringLiteral("General/animspeed")).toInt(), 3);
    EXPECT_EQ(file->value(QStringLiteral("VIEWANGLE/VIEWANGLES/size")).toInt(), 1);
    EXPECT_EQ(file->value(QStringLiteral("DISPLAYSTATE/DISPLAYSTATES/size")).toInt(), 4);
}

TEST_F(TORVDemoSettingsTest, ShowReflectivityInThreeShells)
{
    ASSERT_EQ(settings.writeViewer(directory("a"), directory("b"), directory("c")), QString());
    const auto file = read("TORV3D");
    file->beginGroup(QStringLiteral("PRODUCT CAPPI Z"));
    EXPECT_EQ(file->value(QStringLiteral("rendering")).toString(), QStringLiteral("surface"));
    ASSERT_EQ(file->beginReadArray(QStringLiteral("surface")), 3);
    file->setArrayIndex(2);
    EXPECT_EQ(file->value(QStringLiteral("isovalue")).toDouble(), 50.0);
    EXPECT_EQ(file->value(QStringLiteral("opacity")).toInt(), 100);
    file->endArray();
    EXPECT_EQ(file->value(QStringLiteral("volumevaluelow")).toDouble(), 10.0);
    EXPECT_EQ(file->value(QStringLiteral("volumeopacitylow")).toDouble(), 0.3);
}

TEST_F(TORVDemoSettingsTest, HaveARecordForEachVolume)
{
    ASSERT_EQ(settings.writeViewer(directory("a"), directory("b"), directory("c")), QString());
    const QStringList groups = read("TORV3D")->childGroups();
    for (const char* product : {"Z", "V", "W", "R"}) {
        EXPECT_TRUE(groups.contains(QStringLiteral("PRODUCT CAPPI ") + QLatin1String(product))) << product;
    }
}

TEST_F(TORVDemoSettingsTest, MapEachDataTypeToScalesThatExist)
{
    ASSERT_EQ(settings.writeColors(), QString());
    const auto file = read("TORV3DColors");
    std::set<int> groups;
    for (const QString& group : file->childGroups()) {
        if (group.startsWith(QLatin1String("COLORSCALE "))) {
            groups.insert(file->value(group + QStringLiteral("/data_index")).toInt());
        }
    }
    file->beginGroup(QStringLiteral("DATAMAPPING"));
    EXPECT_EQ(file->beginReadArray(QStringLiteral("data")), 14);
    for (const int type : {2, 3, 4, 5, 9, 10, 11, 13}) {
        file->setArrayIndex(type);
        EXPECT_EQ(groups.count(file->value(QStringLiteral("data_index")).toInt()), 1U) << type;
    }
}

TEST_F(TORVDemoSettingsTest, CarryTheReflectivityScale)
{
    ASSERT_EQ(settings.writeColors(), QString());
    const auto file = read("TORV3DColors");
    EXPECT_EQ(file->value(QStringLiteral("COLORSCALE 1/name")).toString(), QStringLiteral("Default"));
    EXPECT_EQ(file->value(QStringLiteral("COLORSCALE 1/data_units")).toString(), QStringLiteral("dBZ"));
    const int set = file->value(QStringLiteral("COLORSCALE 1/colorset_index")).toInt();
    EXPECT_EQ(file->value(QStringLiteral("COLORSCALE 1/points/size")).toInt(), 19); // 18 colours and the seam above
    // 40 dBZ is the eleventh: #FAD900.
    EXPECT_EQ(file->value(QStringLiteral("COLORSCALE 1/points/11/seam")).toDouble(), 40.0);
    file->beginGroup(QStringLiteral("COLORSET %1").arg(set));
    EXPECT_EQ(file->value(QStringLiteral("points/11/lower/r")).toInt(), 0xFA);
    EXPECT_EQ(file->value(QStringLiteral("points/11/lower/g")).toInt(), 0xD9);
    EXPECT_EQ(file->value(QStringLiteral("points/11/lower/b")).toInt(), 0x00);
}

TEST_F(TORVDemoSettingsTest, LeaveNoBandOfOneColourInsideAScale)
{
    ASSERT_EQ(settings.writeColors(), QString());
    const auto file = read("TORV3DColors");
    for (const QString& group : file->childGroups()) {
        if (!group.startsWith(QLatin1String("COLORSET "))) {
            continue;
        }
        file->beginGroup(group);
        const int size = file->beginReadArray(QStringLiteral("points"));
        ASSERT_GT(size, 2);
        for (int i = 0; i + 1 < size; ++i) {
            file->setArrayIndex(i);
            bool isConstant = true;
            for (const char* part : {"r", "g", "b"}) {
                isConstant = isConstant && file->value(QStringLiteral("lower/") + QLatin1String(part)) ==
                                               file->value(QStringLiteral("upper/") + QLatin1String(part));
            }
            EXPECT_FALSE(isConstant) << qPrintable(group) << " " << i;
        }
        file->endArray();
        file->endGroup();
    }
}

TEST_F(TORVDemoSettingsTest, HaveSeamsThatRise)
{
    ASSERT_EQ(settings.writeColors(), QString());
    const auto file = read("TORV3DColors");
    for (int scale = 1; scale <= 10; ++scale) {
        file->beginGroup(QStringLiteral("COLORSCALE %1").arg(scale));
        const int size = file->beginReadArray(QStringLiteral("points"));
        double before = -1e9;
        for (int i = 0; i < size; ++i) {
            file->setArrayIndex(i);
            const double seam = file->value(QStringLiteral("seam")).toDouble();
            EXPECT_GT(seam, before) << scale;
            before = seam;
        }
        file->endArray();
        file->endGroup();
    }
}

TEST_F(TORVDemoSettingsTest, StyleTheSceneForDayAndForNight)
{
    ASSERT_EQ(settings.writeStyles(), QString());
    const auto file = read("TORV3DVisStyles");
    EXPECT_EQ(file->value(QStringLiteral("RENDERER_DAY/background/color/r")).toDouble(), 0.212);
    EXPECT_EQ(file->value(QStringLiteral("RENDERER_NIGHT/background/color/b")).toDouble(), 0.047);
    EXPECT_EQ(file->value(QStringLiteral("CURSORTOOL_DAY/line/selected/width")).toDouble(), 1.5);
    EXPECT_EQ(file->value(QStringLiteral("TERRAIN3D_NIGHT/tint/g")).toDouble(), 0.335);
    for (const char* group :
         {"RENDERER", "OUTLINE3D", "RADARRINGS", "LATLONGRID", "COMPASS", "CURSORTOOL", "TERRAIN3D"}) {
        const QString name = QLatin1String(group);
        EXPECT_TRUE(file->childGroups().contains(name + QStringLiteral("_DAY"))) << group;
        EXPECT_TRUE(file->childGroups().contains(name + QStringLiteral("_NIGHT"))) << group;
    }
}

TEST_F(TORVDemoSettingsTest, NameLandmarksInUtf8)
{
    ASSERT_EQ(settings.writeLandmarks(TORVSiteInfo::all(), 1, terrain), QString());
    const auto file = read("TORV3DLandmarks");
    EXPECT_EQ(file->value(QStringLiteral("LANDMARKS/landmarks/3/label")).toString(), QString::fromUtf8("Honkajärvi"));
}

TEST_F(TORVDemoSettingsTest, PutEveryLandmarkOnDryLand)
{
    ASSERT_EQ(settings.writeLandmarks(TORVSiteInfo::all(), 4, terrain), QString());
    const auto file = read("TORV3DLandmarks");
    file->beginGroup(QStringLiteral("LANDMARKS"));
    const int size = file->beginReadArray(QStringLiteral("landmarks"));
    ASSERT_EQ(size, 11 + 11 + 6 + 6);
    for (int i = 0; i < size; ++i) {
        file->setArrayIndex(i);
        const float height = terrain.height(file->value(QStringLiteral("location/lat")).toDouble(),
                                            file->value(QStringLiteral("location/lon")).toDouble());
        EXPECT_GT(height, 0.0F) << i;
        EXPECT_NEAR(file->value(QStringLiteral("location/alt")).toDouble(), static_cast<double>(height), 0.5001) << i;
        EXPECT_LE(file->value(QStringLiteral("priority")).toInt(), 5) << i;
    }
}

TEST_F(TORVDemoSettingsTest, SayWhenTheyCannotBeWritten)
{
    // A directory stands where the file should be.
    ASSERT_TRUE(QDir().mkpath(settings.path(QStringLiteral("TORV3DVisStyles"))));
    EXPECT_TRUE(settings.writeStyles().startsWith(settings.path(QStringLiteral("TORV3DVisStyles"))));
}

TEST(TORVColorScale, BlendsBetweenItsStops)
{
    // Half-way between 35 dBZ 7BD550 and 40 dBZ FAD900: BA.8, D7, 28.
    EXPECT_EQ(TORVColorScale::defaultOf(TORVColorGroup::REFLECTIVITY).colorAt(37.5), 0xBBD728U);
}

TEST(TORVColorScale, HoldsItsEndsBeyondThem)
{
    const TORVColorScale& scale = TORVColorScale::defaultOf(TORVColorGroup::REFLECTIVITY);
    EXPECT_EQ(scale.colorAt(-99.0), 0x262F36U);
    EXPECT_EQ(scale.colorAt(99.0), 0xF1D7F6U);
}

} // namespace
