#include "settings/TORVConfig.h"

#include "support/LogFile.h"
#include "support/SandboxedHome.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QSignalSpy>
#include <QTranslator>

#include <gtest/gtest.h>

#include <pwd.h>

#include <thread>
#include <vector>

namespace
{

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void put(const QString& key, const QVariant& value)
{
    TORVConfig::instance()->get()->setValue(key, value);
    TORVConfig::instance()->release();
}

QVariant take(const QString& key, const QVariant& byDefault = {})
{
    QVariant value = TORVConfig::instance()->get()->value(key, byDefault);
    TORVConfig::instance()->release();
    return value;
}

void setRoot(const QString& path)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path);
}

class TORVConfigTest : public testing::Test
{
protected:
    TORVConfigTest()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("Halmera"));
        QCoreApplication::setApplicationName(QStringLiteral("TORV3D"));
    }

    ~TORVConfigTest() override
    {
        TORVConfig::destroy();
        qputenv("PATH", searchPath);
    }

    // A shell script that is found in the place of the system's own "cp".
    void fakeCp(const QByteArray& script) const
    {
        const QString path = home.write(QStringLiteral("bin/cp"), "#!/bin/sh\n" + script + '\n');
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", QFile::encodeName(home.filePath(QStringLiteral("bin:"))) + searchPath);
    }

    QString makeDirectory(const QString& name) const
    {
        EXPECT_TRUE(QDir(home.path()).mkpath(name));
        return home.filePath(name);
    }

    // The place of the settings file taken by a directory: nobody can read or write it, not even root.
    void blockSettingsFile() const { makeDirectory(QStringLiteral(".config/Halmera/TORV3D.conf")); }

    const QByteArray searchPath = qgetenv("PATH");
    const SandboxedHome home;
};

using TORVConfigDeathTest = TORVConfigTest;
using TORVConfigUserTest = TORVConfigTest;
using TORVConfigCopyTest = TORVConfigTest;

QString homeOfRoot()
{
    const passwd* const root = ::getpwnam("root");
    return root ? QString::fromLocal8Bit(root->pw_dir) : QString();
}

} // namespace

TEST_F(TORVConfigTest, IsOneUntilItIsDestroyed)
{
    TORVConfig* const config = TORVConfig::instance();
    EXPECT_EQ(TORVConfig::instance(), config);
    const QSignalSpy destroyed(config, &QObject::destroyed);
    TORVConfig::destroy();
    EXPECT_EQ(destroyed.size(), 1);
    EXPECT_NE(TORVConfig::instance(), nullptr);
}

TEST_F(TORVConfigTest, CanBeDestroyedWhenThereIsNone)
{
    TORVConfig::destroy();
    TORVConfig::destroy();
    EXPECT_NE(TORVConfig::instance(), nullptr);
}

TEST_F(TORVConfigTest, LiesInTheDirectoryOfTheOrganisation)
{
    const QString name = TORVConfig::instance()->get()->fileName();
    TORVConfig::instance()->release();
    EXPECT_EQ(name, home.filePath(QStringLiteral(".config/Halmera/TORV3D.conf")));
}

TEST_F(TORVConfigTest, WritesTheFileAtRelease)
{
    TORVConfig::instance()->get()->setValue(QStringLiteral("VIEWANGLE/viewAngleName"), QStringLiteral("North"));
    TORVConfig::instance()->release();
    EXPECT_EQ(bytesOf(home.settingsFile()), "[VIEWANGLE]\nviewAngleName=North\n");
}

TEST_F(TORVConfigTest, GivesTheDefaultForWhatTheFileLacks)
{
    EXPECT_EQ(take(QStringLiteral("VIEWANGLE/viewAngleName"), QStringLiteral("none")).toString(),
              QLatin1String("none"));
}

TEST_F(TORVConfigTest, MakesFreshSettingsAtEachBorrow)
{
    QSettings* const first = TORVConfig::instance()->get();
    first->beginGroup(QStringLiteral("LEFTOPEN"));
    TORVConfig::instance()->release();
    const QString group = TORVConfig::instance()->get()->group();
    TORVConfig::instance()->release();
    EXPECT_TRUE(group.isEmpty());
}

TEST_F(TORVConfigTest, CountsArraysFromOneInTheFile)
{
    QSettings* const settings = TORVConfig::instance()->get();
    settings->beginWriteArray(TORVConfig::VIEW_ANGLE_ARRAY);
    settings->setArrayIndex(0);
    settings->setValue(TORVConfig::VIEW_ANGLE_NAME, QStringLiteral("North"));
    settings->endArray();
    TORVConfig::instance()->release();
    EXPECT_EQ(bytesOf(home.settingsFile()), "[VIEWANGLES]\n1\\viewAngleName=North\nsize=1\n");
}

TEST_F(TORVConfigTest, WritesTextInUtf8)
{
    put(QStringLiteral("VIEWANGLE/viewAngleName"), QStringLiteral("Zürich"));
    EXPECT_EQ(bytesOf(home.settingsFile()), "[VIEWANGLE]\nviewAngleName=Z\xC3\xBCrich\n");
}

TEST_F(TORVConfigTest, ReadsTextInUtf8)
{
    home.write(QStringLiteral(".config/Halmera/TORV3D.conf"), "[VIEWANGLE]\nviewAngleName=Z\xC3\xBCrich\n");
    EXPECT_EQ(take(QStringLiteral("VIEWANGLE/viewAngleName")).toString(), QStringLiteral("Zürich"));
}

TEST_F(TORVConfigTest, GivesDefaultsForAGarbledFile)
{
    home.write(QStringLiteral(".config/Halmera/TORV3D.conf"), QByteArrayLiteral("\0\xFF[VIEW\n]=[=\n\x01garbage"));
    EXPECT_EQ(take(QStringLiteral("VIEWANGLE/viewAngleName"), QStringLiteral("none")).toString(),
              QLatin1String("none"));
}

TEST_F(TORVConfigTest, ReportsADamagedFileOnce)
{
    home.write(QStringLiteral(".config/Halmera/TORV3D.conf"), "[VIEWANGLE\nviewAngleName\n");
    const QSignalSpy history(TORVLog::Instance(), SIGNAL(historyAdd(QString)));
    take(QStringLiteral("VIEWANGLE/viewAngleName"));
    take(QStringLiteral("VIEWANGLE/viewAngleName"));
    EXPECT_EQ(history.size(), 1);
}

TEST_F(TORVConfigTest, ReportsOnceThatTheFileCanNotBeWritten)
{
    blockSettingsFile();
    const LogFile log(TORVLog::LEVEL_WARNING);
    const QSignalSpy history(TORVLog::Instance(), SIGNAL(historyAdd(QString)));
    put(QStringLiteral("VIEWANGLE/viewAngleName"), QStringLiteral("North"));
    put(QStringLiteral("VIEWANGLE/viewAngleName"), QStringLiteral("South"));
    EXPECT_EQ(log.lines(),
              QStringList(QLatin1String("W: Settings file can't be read or written: ") + home.settingsFile()));
    ASSERT_EQ(history.size(), 1);
    EXPECT_EQ(history.at(0).at(0).toString(),
              QLatin1String("Settings may be lost, the file can't be read or written: ") + home.settingsFile());
}

TEST_F(TORVConfigTest, CanBeBorrowedByWhoeverShowsTheReport)
{
    blockSettingsFile();
    QString shown;
    QObject receiver;
    QObject::connect(TORVLog::Instance(), QOverload<QString const&>::of(&TORVLog::historyAdd), &receiver,
                     [&shown] { shown = take(QStringLiteral("any"), QStringLiteral("borrowed")).toString(); });
    put(QStringLiteral("VIEWANGLE/viewAngleName"), QStringLiteral("North"));
    EXPECT_EQ(shown, QLatin1String("borrowed"));
}

TEST_F(TORVConfigTest, ReportsNothingWhenAllIsWell)
{
    const LogFile log(TORVLog::LEVEL_WARNING);
    const QSignalSpy history(TORVLog::Instance(), SIGNAL(historyAdd(QString)));
    put(QStringLiteral("VIEWANGLE/viewAngleName"), QStringLiteral("North"));
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_TRUE(history.isEmpty());
}

TEST_F(TORVConfigTest, LetsOneThreadBorrowAtATime)
{
    constexpr int ThreadCount = 4;
    constexpr int BorrowCount = 50;
    std::vector<std::thread> threads;
    threads.reserve(ThreadCount);
    for (int i = 0; i < ThreadCount; ++i) {
        threads.emplace_back([] {
            for (int borrow = 0; borrow < BorrowCount; ++borrow) {
                QSettings* const settings = TORVConfig::instance()->get();
                // Lost if two threads did this at the same time.
                settings->setValue(QStringLiteral("COUNT/n"),
                                   settings->value(QStringLiteral("COUNT/n"), 0).toInt() + 1);
                TORVConfig::instance()->release();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(take(QStringLiteral("COUNT/n")).toInt(), ThreadCount * BorrowCount);
}

TEST_F(TORVConfigDeathTest, StopsAThreadThatBorrowsTwice)
{
    EXPECT_DEATH(
        {
            TORVConfig::instance()->get();
            TORVConfig::instance()->get();
        },
        "borrowed the settings already");
}

TEST_F(TORVConfigDeathTest, StopsAThreadThatGivesBackWhatItHasNotBorrowed)
{
    EXPECT_DEATH(TORVConfig::instance()->release(), "only the borrower");
}

TEST_F(TORVConfigTest, TellsTheConfigurationRoot)
{
    EXPECT_EQ(TORVConfig::getSettingsPath(), home.filePath(QStringLiteral(".config")));
}

TEST_F(TORVConfigTest, KnowsNoRootForAHomeWithABlank)
{
    setRoot(makeDirectory(QStringLiteral("two words/.config")));
    EXPECT_TRUE(TORVConfig::getSettingsPath().isEmpty());
}

TEST_F(TORVConfigTest, KnowsNoRootThatHasAnotherName)
{
    setRoot(makeDirectory(QStringLiteral("configuration")));
    EXPECT_TRUE(TORVConfig::getSettingsPath().isEmpty());
}

TEST_F(TORVConfigTest, TellsTheRootWhileSettingsAreBorrowed)
{
    TORVConfig::instance()->get();
    EXPECT_EQ(TORVConfig::getSettingsPath(), home.filePath(QStringLiteral(".config")));
    TORVConfig::instance()->release();
}

TEST_F(TORVConfigUserTest, PointsToTheFileOfAnotherUser)
{
    const LogFile log(TORVLog::LEVEL_DEBUG);
    TORVConfig::changeUser(QStringLiteral("root"));
    EXPECT_EQ(QSettings().fileName(), homeOfRoot() + QLatin1String("/.config/Halmera/TORV3D.conf"));
    EXPECT_EQ(log.lines(),
              QStringList(QLatin1String("D: Remember settings path: ") + home.filePath(QStringLiteral(".config"))));
}

TEST_F(TORVConfigUserTest, PointsBackToTheOwnFile)
{
    TORVConfig::changeUser(QStringLiteral("root"));
    const LogFile log(TORVLog::LEVEL_DEBUG);
    TORVConfig::restoreUser();
    EXPECT_EQ(QSettings().fileName(), home.settingsFile());
    EXPECT_EQ(log.lines(),
              QStringList(QLatin1String("D: Restored settings path to: ") + home.filePath(QStringLiteral(".config"))));
}

TEST_F(TORVConfigUserTest, PointsBackToAHomeWithABlank)
{
    setRoot(makeDirectory(QStringLiteral("two words/.config")));
    const QString before = QSettings().fileName();
    TORVConfig::changeUser(QStringLiteral("root"));
    TORVConfig::restoreUser();
    EXPECT_EQ(QSettings().fileName(), before);
}

TEST_F(TORVConfigUserTest, PointsBackToARootThatHasAnotherName)
{
    setRoot(makeDirectory(QStringLiteral("configuration")));
    const QString before = QSettings().fileName();
    TORVConfig::changeUser(QStringLiteral("root"));
    TORVConfig::restoreUser();
    EXPECT_EQ(QSettings().fileName(), before);
}

TEST_F(TORVConfigUserTest, StaysWhereItIsForAUserWithoutHome)
{
    TORVConfig::changeUser(QStringLiteral("nobodyknows"));
    EXPECT_EQ(QSettings().fileName(), home.settingsFile());
}

TEST_F(TORVConfigUserTest, RemembersWhereItWasEvenForAUserWithoutHome)
{
    TORVConfig::changeUser(QStringLiteral("nobodyknows"));
    setRoot(makeDirectory(QStringLiteral("elsewhere/.config")));
    TORVConfig::changeUser(QStringLiteral("nobodyknows"));
    setRoot(home.filePath(QStringLiteral(".config")));
    TORVConfig::restoreUser();
    EXPECT_EQ(QSettings().fileName(), home.filePath(QStringLiteral("elsewhere/.config/Halmera/TORV3D.conf")));
}

TEST_F(TORVConfigUserTest, HasNothingToRestoreBeforeAChange)
{
    const LogFile log(TORVLog::LEVEL_WARNING);
    TORVConfig::restoreUser();
    EXPECT_EQ(QSettings().fileName(), home.settingsFile());
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral("W: No settings path to restore")));
}

TEST_F(TORVConfigCopyTest, CopiesTheSettingsFile)
{
    put(QStringLiteral("VIEWANGLE/viewAngleName"), QStringLiteral("North"));
    const QString directory = makeDirectory(QStringLiteral("other user"));
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_TRUE(TORVConfig::instance()->copy(directory));
    const QString copy = directory + QLatin1String("/TORV3D.conf");
    EXPECT_EQ(bytesOf(copy), "[VIEWANGLE]\nviewAngleName=North\n");
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("D: Make copy of %1 ...").arg(home.settingsFile()),
                                        QLatin1String("D: ... to ") + copy, QStringLiteral("D: SUCCESS")}));
}

TEST_F(TORVConfigCopyTest, FailsIntoADirectoryThatIsNotThere)
{
    put(QStringLiteral("VIEWANGLE/viewAngleName"), QStringLiteral("North"));
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_FALSE(TORVConfig::instance()->copy(home.filePath(QStringLiteral("nowhere"))));
    EXPECT_EQ(log.lines().last(), QLatin1String("D: FAILED"));
}

TEST_F(TORVConfigCopyTest, FailsWithoutASettingsFile)
{
    EXPECT_FALSE(TORVConfig::instance()->copy(makeDirectory(QStringLiteral("other"))));
}

TEST_F(TORVConfigCopyTest, FailsWhenTheCommandCrashes)
{
    put(QStringLiteral("VIEWANGLE/viewAngleName"), QStringLiteral("North"));
    fakeCp("kill -9 $$");
    EXPECT_FALSE(TORVConfig::instance()->copy(makeDirectory(QStringLiteral("other"))));
}

TEST_F(TORVConfigCopyTest, GivesTheSettingsBackAfterwards)
{
    EXPECT_FALSE(TORVConfig::instance()->copy(home.filePath(QStringLiteral("nowhere"))));
    put(QStringLiteral("VIEWANGLE/viewAngleName"), QStringLiteral("North"));
    EXPECT_TRUE(TORVConfig::instance()->copy(makeDirectory(QStringLiteral("other"))));
    EXPECT_EQ(take(QStringLiteral("VIEWANGLE/viewAngleName")).toString(), QLatin1String("North"));
}

TEST_F(TORVConfigCopyTest, LetsNobodyBorrowMeanwhile)
{
    const QString started = home.filePath(QStringLiteral("started"));
    const QString waiting = home.filePath(QStringLiteral("waiting"));
    const QString done = home.filePath(QStringLiteral("done"));
    // The copy ends only when the other thread is about to borrow; were it let in, it would not find the third file.
    fakeCp("touch '" + QFile::encodeName(started) + "'\nwhile [ ! -e '" + QFile::encodeName(waiting) +
           "' ]; do sleep 0.01; done\nsleep 0.2\ntouch '" + QFile::encodeName(done) + "'");
    bool wasDone = false;
    std::thread borrower([&] {
        while (!QFileInfo::exists(started)) {
            std::this_thread::yield();
        }
        QFile(waiting).open(QIODevice::WriteOnly);
        TORVConfig::instance()->get();
        wasDone = QFileInfo::exists(done);
        TORVConfig::instance()->release();
    });
    EXPECT_TRUE(TORVConfig::instance()->copy(home.path()));
    borrower.join();
    EXPECT_TRUE(wasDone);
}

TEST_F(TORVConfigTest, NamesTheBuiltInPreset)
{
    EXPECT_EQ(TORVConfig::defaultValueTranslated(), QLatin1String("Default"));
}

TEST_F(TORVConfigTest, NamesTheBuiltInPresetInTheLanguageOfTheUser)
{
    QTranslator translator;
    ASSERT_TRUE(translator.load(QStringLiteral("torv3d_fi"), QStringLiteral(":/translations")));
    ASSERT_TRUE(QCoreApplication::installTranslator(&translator));
    EXPECT_EQ(TORVConfig::defaultValueTranslated(), QLatin1String("Oletus"));
    EXPECT_EQ(TORVConfig::VALUE_DEFAULT, QLatin1String("Default"));
    QCoreApplication::removeTranslator(&translator);
}

TEST_F(TORVConfigTest, HasTheKeysThatStandInTheFiles)
{
    struct Row
    {
        const QString& name;
        const char* text;
    };

    const std::vector<Row> rows = {
        {TORVConfig::VALUE_DEFAULT, "Default"},
        {TORVConfig::VALUE_CUSTOM, "Custom"},
        {TORVConfig::GENERAL_GROUP, "GENERAL"},
        {TORVConfig::GENERAL_CLOCK, "clock24hours"},
        {TORVConfig::GENERAL_UNITS, "metricunits"},
        {TORVConfig::GENERAL_LATLON_UNITS, "latlonunits"},
        {TORVConfig::GENERAL_GEOLAYER_URL, "geolayer"},
        {TORVConfig::GENERAL_DATA3D_URL, "data3d"},
        {TORVConfig::GENERAL_DATA2D_URL, "data2d"},
        {TORVConfig::GENERAL_VERTICALSCALING, "verticalscaling"},
        {TORVConfig::PRODUCT_GROUP, "PRODUCT"},
        {TORVConfig::PRODUCT_RENDERING_TYPE, "rendering"},
        {TORVConfig::PRODUCT_SURFACE_ARRAY, "surface"},
        {TORVConfig::PRODUCT_SURFACE_VALUE, "isovalue"},
        {TORVConfig::PRODUCT_SURFACE_OPACITY, "opacity"},
        {TORVConfig::PRODUCT_VOLUME_VALUE_LOW, "volumevaluelow"},
        {TORVConfig::PRODUCT_VOLUME_OPACITY_LOW, "volumeopacitylow"},
        {TORVConfig::PRODUCT_VOLUME_VALUE_HIGH, "volumevaluehigh"},
        {TORVConfig::PRODUCT_VOLUME_OPACITY_HIGH, "volumeopacityhigh"},
        {TORVConfig::HELP_GROUP, "HELP"},
        {TORVConfig::HELP_COMMAND, "command"},
        {TORVConfig::HELP_FILE, "file"},
        {TORVConfig::DIALOG_GROUP, "DIALOG"},
        {TORVConfig::DIALOG_MAINWINDOW_POS, "mainwindowpos"},
        {TORVConfig::DIALOG_CURSORTOOL_POS, "cursortoolpos"},
        {TORVConfig::DIALOG_CURSORTOOL_EXPANDED, "cursortoolexpanded"},
        {TORVConfig::DIALOG_PRODUCTINFO_POS, "productinfopos"},
        {TORVConfig::DIALOG_PRODUCTINFO_EXPANDED, "productinfoexpanded"},
        {TORVConfig::DIALOG_EXTRAWIN_POS, "extrawinpos"},
        {TORVConfig::DISPLAY_STATE_GROUP, "DISPLAYSTATE"},
        {TORVConfig::DISPLAY_STATE_ARRAY, "DISPLAYSTATES"},
        {TORVConfig::DISPLAY_STATE_NAME, "displayStateName"},
        {TORVConfig::DISPLAY_STATE_LAYER_VISIBLE, "displayStateLayerVisible"},
        {TORVConfig::DISPLAY_STATE_LAYER_OPACITY, "displayStateLayerOpacity"},
        {TORVConfig::VIEW_ANGLE_GROUP, "VIEWANGLE"},
        {TORVConfig::VIEW_ANGLE_ARRAY, "VIEWANGLES"},
        {TORVConfig::VIEW_ANGLE_NAME, "viewAngleName"},
        {TORVConfig::VIEW_ANGLE_CAMPOS_X, "viewAngleCamPosX"},
        {TORVConfig::VIEW_ANGLE_CAMPOS_Y, "viewAngleCamPosY"},
        {TORVConfig::VIEW_ANGLE_CAMPOS_Z, "viewAngleCamPosZ"},
        {TORVConfig::VIEW_ANGLE_CAMDIR_X, "viewAngleCamDirX"},
        {TORVConfig::VIEW_ANGLE_CAMDIR_Y, "viewAngleCamDirY"},
        {TORVConfig::VIEW_ANGLE_CAMDIR_Z, "viewAngleCamDirZ"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.name, QLatin1String(row.text));
    }
}
