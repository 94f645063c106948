// What the classes that save settings do to a file that holds more than their own groups, and to files of other users.
#include "datalib/TORVDataType.h"
#include "radarsim/TORVDemoSettings.h"
#include "settings/TORVConfig.h"
#include "settings/TORVExportSettings.h"
#include "settings/TORVGeneralSettings.h"
#include "settings/TORVProductSettings.h"

#include "support/SandboxedHome.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QSettings>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace
{

const TORVDataType Reflectivity(2);

class SettingsFilesTest : public testing::Test
{
protected:
    SettingsFilesTest()
    {
        EXPECT_EQ(TORVDemoSettings(home.path())
                      .writeViewer(QStringLiteral("/demo/3d"), QStringLiteral("/demo/2d"), QStringLiteral("/demo/geo")),
                  QString());
        // What a user has beside the demo's settings.
        QFile file(home.settingsFile());
        EXPECT_TRUE(file.open(QIODevice::Append));
        file.write("\n[ZOO]\nZ\\c=@Size(1 2)\na=\"x, y\"\nb=1\n\n[DIALOG]\nmainwindowpos=@ByteArray(\\x1\\xd9\\0)\n"
                   "nightmode=true\n");
    }

    ~SettingsFilesTest() override
    {
        TORVConfig::destroy();
        QDir::setCurrent(before);
    }

    // By the lines in brackets.
    QMap<QByteArray, QByteArray> sections() const
    {
        QFile file(home.settingsFile());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        QMap<QByteArray, QByteArray> all;
        const QByteArray bytes = file.readAll().trimmed();
        for (int from = 0; from >= 0;) {
            const int to = bytes.indexOf("\n[", from);
            const QByteArray section = bytes.mid(from, to < 0 ? -1 : to - from).trimmed();
            all.insert(section.left(section.indexOf('\n')), section);
            from = to < 0 ? -1 : to + 1;
        }
        return all;
    }

    // The names of the sections that are not the same after the change.
    QByteArrayList changedBy(const std::function<void()>& change) const
    {
        const QMap<QByteArray, QByteArray> old = sections();
        change();
        const QMap<QByteArray, QByteArray> after = sections();
        QByteArrayList names;
        for (const QByteArray& name : old.keys() + after.keys()) {
            if (old.value(name) != after.value(name) && !names.contains(name)) {
                names << name;
            }
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    const SandboxedHome home;
    const QString before = QDir::currentPath();
};

} // namespace

TEST_F(SettingsFilesTest, OfTheDemoAreReadAsTheyWereMeant)
{
    const TORVGeneralSettings general;
    EXPECT_EQ(general.get3DDir(), QLatin1String("/demo/3d"));
    EXPECT_EQ(general.get2DDir(), QLatin1String("/demo/2d"));
    EXPECT_EQ(general.getGeoDir(), QLatin1String("/demo/geo"));
    EXPECT_EQ(general.getDataSmooth(), 0.5);
    EXPECT_EQ(general.getDataShrinkH(), 1);
    EXPECT_EQ(general.getDataShrinkV(), 1);
    const TORVProductSettings product(QStringLiteral("CAPPI"), QStringLiteral("Z"), Reflectivity);
    EXPECT_EQ(product.getRenderingType(), TORVProductSettings::SURFACE);
    EXPECT_EQ(product.getSurfaces().size(), 3);
    EXPECT_EQ(product.getSurfaces().lastKey(), 50.0);
    EXPECT_EQ(product.getVolumeValueLow(), 10.0);
    EXPECT_EQ(product.getVolumeOpacityLow(), 0.3);
}

TEST_F(SettingsFilesTest, KeepOtherGroupsWhenGeneralSettingsAreSaved)
{
    EXPECT_EQ(changedBy([] {
                  TORVGeneralSettings general;
                  general.reset(false);
                  general.save();
              }),
              QByteArrayList({"[%General]"}));
}

TEST_F(SettingsFilesTest, KeepOtherGroupsWhenPresetsAreSaved)
{
    EXPECT_EQ(changedBy([] {
                  TORVGeneralSettings general;
                  general.saveDisplayStates(boost::make_shared<TORVDisplayState>());
                  general.saveViewAngles(boost::make_shared<TORVViewAngle>());
              }),
              QByteArrayList({"[DISPLAYSTATE]", "[VIEWANGLE]"}));
}

TEST_F(SettingsFilesTest, KeepOtherGroupsWhenAProductIsSaved)
{
    EXPECT_EQ(changedBy([] {
                  TORVProductSettings product(QStringLiteral("CAPPI"), QStringLiteral("Z"), Reflectivity);
                  product.setVolumeValueLow(12.0);
                  product.save();
              }),
              QByteArrayList({"[PRODUCT%20CAPPI%20Z]"}));
}

TEST_F(SettingsFilesTest, StayAsTheyAreWhenAProductIsSavedUnchanged)
{
    EXPECT_TRUE(changedBy([] {
                    TORVProductSettings(QStringLiteral("CAPPI"), QStringLiteral("Z"), Reflectivity).save();
                }).isEmpty());
}

TEST_F(SettingsFilesTest, KeepOtherGroupsWhenExportSettingsAreSaved)
{
    EXPECT_EQ(changedBy([] { TORVExportSettings().save(); }), QByteArrayList({"[EXPORT]"}));
}

TEST_F(SettingsFilesTest, LoseNothingByALineWithoutAKey)
{
    home.write(QStringLiteral(".config/Halmera/TORV3D.conf"),
               "=first\n[GENERAL]\n=x\ndata3d=/data\n[%General]\n=y\n[ZOO]\n=z\na=1\n");
    TORVGeneralSettings general;
    EXPECT_EQ(general.get3DDir(), QLatin1String("/data"));
    general.save();
    EXPECT_TRUE(sections().value("[%General]").contains("data3d=/data"));
    EXPECT_TRUE(sections().value("[ZOO]").contains("a=1"));
}

TEST_F(SettingsFilesTest, StayWhereTheyAreForUsersWhoseNamesMeanSomethingElsewhere)
{
    QDir::setCurrent(home.path());
    for (const char* user : {".*", "roo.", "(root|x)", "r[o]ot", "root:x", "$(touch pwned)", "; touch pwned #",
                             "`touch pwned`", "../../root", "root\nroot", "-rf", "%s%n", "*", "\\", ""}) {
        TORVConfig::changeUser(QString::fromLatin1(user));
        EXPECT_EQ(QSettings().fileName(), home.settingsFile()) << user;
        TORVConfig::restoreUser();
        EXPECT_EQ(QSettings().fileName(), home.settingsFile()) << user;
    }
    EXPECT_FALSE(QFile::exists(home.filePath(QStringLiteral("pwned"))));
}

TEST_F(SettingsFilesTest, AreCopiedIntoADirectoryWhoseNameMeansSomethingToAShell)
{
    QDir::setCurrent(home.path());
    for (const char* name :
         {"a b", "$(touch pwned)", "; touch pwned #", "`touch pwned`", "\"'\\", "*", "(.+)", "%1 %2"}) {
        const QString directory = home.filePath(QString::fromLatin1(name));
        ASSERT_TRUE(QDir().mkpath(directory));
        EXPECT_TRUE(TORVConfig::instance()->copy(directory)) << name;
        EXPECT_TRUE(QFile::exists(directory + QLatin1String("/TORV3D.conf"))) << name;
    }
    EXPECT_FALSE(QFile::exists(home.filePath(QStringLiteral("pwned"))));
}

TEST_F(SettingsFilesTest, OfAnotherHomeAreReadAndWrittenUntilTheOwnComeBack)
{
    const QString other = home.filePath(QStringLiteral("other/.config"));
    home.write(QStringLiteral("other/.config/Halmera/TORV3D.conf"), "[%General]\ndata3d=/other/3d\n");
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, other);
    TORVGeneralSettings general;
    EXPECT_EQ(general.get3DDir(), QLatin1String("/other/3d"));
    general.setTimeWindow(77);
    general.save();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, home.filePath(QStringLiteral(".config")));
    EXPECT_EQ(TORVGeneralSettings().get3DDir(), QLatin1String("/demo/3d"));
    EXPECT_EQ(TORVGeneralSettings().getTimeWindow(), 180);
}
