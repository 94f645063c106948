#include "settings/TORVBackgroundSettings.h"

#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"

#include "support/LogFile.h"
#include "support/ProductFiles.h"
#include "support/SandboxedHome.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTranslator>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace
{

using Background = TORVBackgroundSettings;

class TORVBackgroundSettingsTest : public testing::Test
{
protected:
    QString path() const { return home.filePath(QStringLiteral("service/torv3dviewd.conf")); }
    QString write(const QByteArray& bytes) const
    {
        return home.write(QStringLiteral("service/torv3dviewd.conf"), bytes);
    }

    QByteArray file() const
    {
        QFile bytes(path());
        return bytes.open(QIODevice::ReadOnly) ? bytes.readAll() : QByteArray();
    }

    Background withLines(const QByteArray& lines) const { return Background(write("[BACKGROUND]\n" + lines)); }

    const SandboxedHome home;
};

using TORVBackgroundUserTest = TORVBackgroundSettingsTest;
using TORVBackgroundStatusTest = TORVBackgroundSettingsTest;

const QByteArray EveryKey = "[BACKGROUND]\nactivated=true\ndirectory=/pictures\ndisplaystate=Storm\nheight=768\n"
                            "outputformat=PNG\nproducts\\1\\configuration=V\nproducts\\1\\product=MAX\n"
                            "products\\2\\configuration=Z\nproducts\\2\\product=SRI\nproducts\\size=2\n"
                            "viewangle=North\nwidth=1024\n";

void expectDefaults(const Background& settings)
{
    EXPECT_FALSE(settings.isActivated());
    EXPECT_EQ(settings.getDirectory(), QLatin1String("."));
    EXPECT_EQ(settings.getOutputFormat(), TORVExportSettings::FORMAT_TIFF);
    EXPECT_EQ(settings.getDisplayStateName(), QLatin1String("Default"));
    EXPECT_EQ(settings.getViewAngleName(), QLatin1String("Default"));
    EXPECT_EQ(settings.getHeight(), 1200);
    EXPECT_EQ(settings.getWidth(), 1600);
    EXPECT_EQ(settings.get2DProduct(QStringLiteral("Z")), QLatin1String("SRI"));
}

} // namespace

TEST_F(TORVBackgroundSettingsTest, HasDefaultsWithoutAFile)
{
    expectDefaults(Background(path()));
    expectDefaults(Background(QString()));
    EXPECT_FALSE(QFileInfo::exists(QFileInfo(path()).path()));
}

TEST_F(TORVBackgroundSettingsTest, HasDefaultsWithAGarbledFile)
{
    expectDefaults(Background(write(QByteArrayLiteral("\0\xFF[BACK\n]=[=\n\x01garbage"))));
}

TEST_F(TORVBackgroundSettingsTest, ReadsEveryKeyOfAFileWrittenByHand)
{
    const Background settings(write(EveryKey));
    EXPECT_TRUE(settings.isActivated());
    EXPECT_EQ(settings.getDirectory(), QLatin1String("/pictures"));
    EXPECT_EQ(settings.getOutputFormat(), TORVExportSettings::FORMAT_PNG);
    EXPECT_EQ(settings.getOutputFormatString(), QLatin1String("PNG"));
    EXPECT_EQ(settings.getOutputFileExtension(), QLatin1String("png"));
    EXPECT_EQ(settings.getDisplayStateName(), QLatin1String("Storm"));
    EXPECT_EQ(settings.getViewAngleName(), QLatin1String("North"));
    EXPECT_EQ(settings.getHeight(), 768);
    EXPECT_EQ(settings.getWidth(), 1024);
    EXPECT_EQ(settings.get2DProduct(QStringLiteral("V")), QLatin1String("MAX"));
    EXPECT_EQ(settings.get2DProduct(QStringLiteral("Z")), QLatin1String("SRI"));
}

TEST_F(TORVBackgroundSettingsTest, WritesEveryKey)
{
    Background settings(path());
    settings.setActivated(true);
    settings.setDirectory(QStringLiteral("/pictures"));
    settings.setOutputFormat(TORVExportSettings::FORMAT_PNG);
    settings.setDisplayStateName(QStringLiteral("Storm"));
    settings.setViewAngleName(QStringLiteral("North"));
    settings.setHeight(768);
    settings.setWidth(1024);
    settings.set2DProduct(QStringLiteral("Z"), QStringLiteral("SRI"));
    settings.set2DProduct(QStringLiteral("V"), QStringLiteral("MAX"));
    EXPECT_TRUE(settings.save());
    EXPECT_EQ(file(), EveryKey);
}

TEST_F(TORVBackgroundSettingsTest, LogsWhatItDoes)
{
    write(EveryKey);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_TRUE(Background(path()).save());
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("D: Loading background settings from %1, status: 0").arg(path()),
                                        QLatin1String("D: Saving background settings to ") + path()}));
}

TEST_F(TORVBackgroundSettingsTest, ChangesNothingThatIsAlreadyThere)
{
    const QByteArray odd =
        "[BACKGROUND]\nactivated=maybe\ndirectory=\"/a, b\"\ndisplaystate=Default\nfuture=1\nheight=0\n"
        "outputformat=WEBP\nproducts\\1\\configuration=Z\nproducts\\1\\product=MAX\n"
        "products\\1\\weight=2\nproducts\\size=1\nviewangle=Default\nwidth=99999\n\n[OTHER]\nkey=1\n";
    EXPECT_TRUE(Background(write(odd)).save());
    EXPECT_EQ(file(), odd);
}

TEST_F(TORVBackgroundSettingsTest, LeavesWhatWasWrittenMeanwhile)
{
    Background first(write(EveryKey));
    Background second(path());
    second.setDirectory(QStringLiteral("/of the second"));
    EXPECT_TRUE(second.save());
    first.setActivated(false);
    EXPECT_TRUE(first.save());
    EXPECT_EQ(Background(path()).getDirectory(), QLatin1String("/of the second"));
    EXPECT_FALSE(Background(path()).isActivated());
}

TEST_F(TORVBackgroundSettingsTest, BringsTheSizeIntoItsRange)
{
    EXPECT_EQ(withLines("width=0\n").getWidth(), 1);
    EXPECT_EQ(withLines("width=-5\n").getWidth(), 1);
    EXPECT_EQ(withLines("height=1000000000\n").getHeight(), TORVExportSettings::MaxSide);
    EXPECT_EQ(withLines("height=nan\n").getHeight(), 1200);
}

TEST_F(TORVBackgroundSettingsTest, ReadsOfAHugeArrayWhatIsThere)
{
    EXPECT_EQ(withLines("products\\2\\configuration=W\nproducts\\2\\product=MAX\nproducts\\size=1000000000\n")
                  .get2DProduct(QStringLiteral("W")),
              QLatin1String("MAX"));
}

TEST_F(TORVBackgroundSettingsTest, ResetsWhatIsNotAChoiceOfFormatOrPresets)
{
    Background settings(write(EveryKey));
    settings.reset({QStringLiteral("V"), QStringLiteral("W")});
    EXPECT_FALSE(settings.isActivated());
    EXPECT_EQ(settings.getDirectory(), QLatin1String("."));
    EXPECT_EQ(settings.getHeight(), 1200);
    EXPECT_EQ(settings.getWidth(), 1600);
    EXPECT_EQ(settings.get2DProduct(QStringLiteral("V")), QLatin1String("SRI"));
    EXPECT_EQ(settings.getOutputFormat(), TORVExportSettings::FORMAT_PNG);
    EXPECT_EQ(settings.getDisplayStateName(), QLatin1String("Storm"));
    EXPECT_EQ(settings.getViewAngleName(), QLatin1String("North"));
    EXPECT_TRUE(settings.save());
    EXPECT_TRUE(file().contains("products\\2\\configuration=W\nproducts\\2\\product=SRI\nproducts\\size=2\n"));
    EXPECT_FALSE(file().contains("=Z\n"));
}

TEST_F(TORVBackgroundSettingsTest, CallsTheDefaultPresetInTheLanguageOfTheUser)
{
    QTranslator translator;
    ASSERT_TRUE(translator.load(QStringLiteral("torv3d_fi"), QStringLiteral(":/translations")));
    ASSERT_TRUE(QCoreApplication::installTranslator(&translator));
    Background settings(path());
    EXPECT_EQ(settings.getDisplayStateName(), QLatin1String("Oletus"));
    EXPECT_EQ(settings.getViewAngleName(), QLatin1String("Oletus"));
    settings.setDisplayStateName(QStringLiteral("Storm"));
    settings.setDisplayStateName(QStringLiteral("Oletus"));
    settings.setViewAngleName(QStringLiteral("Oletus"));
    EXPECT_TRUE(settings.save());
    QCoreApplication::removeTranslator(&translator);
    EXPECT_TRUE(file().contains("displaystate=Default\n"));
    EXPECT_TRUE(file().contains("viewangle=Default\n"));
}

TEST_F(TORVBackgroundSettingsTest, MakesAFileThatTheServiceCanRead)
{
    ASSERT_TRUE(Background(path()).save());
    struct stat status = {};
    ASSERT_EQ(::stat(QFile::encodeName(path()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

TEST_F(TORVBackgroundSettingsTest, KeepsTheRightsOfAFileThatIsThere)
{
    write(EveryKey);
    ASSERT_EQ(::chmod(QFile::encodeName(path()).constData(), 0640), 0);
    Background settings(path());
    settings.setActivated(false);
    ASSERT_TRUE(settings.save());
    struct stat status = {};
    ASSERT_EQ(::stat(QFile::encodeName(path()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(TORVBackgroundSettingsTest, SaysThatItCouldNotBeSaved)
{
    ASSERT_TRUE(QDir().mkpath(path())); // nobody writes a file in the place of a directory
    for (const QString& name : {path(), QString()}) {
        const Background settings(name);
        const LogFile log(TORVLog::LEVEL_WARNING);
        const QSignalSpy history(TORVLog::Instance(), SIGNAL(historyAdd(QString)));
        EXPECT_FALSE(settings.save());
        EXPECT_EQ(log.lines(), QStringList(QLatin1String("W: Background settings not writable: ") + name));
        ASSERT_EQ(history.size(), 1);
        EXPECT_EQ(history.at(0).at(0).toString(), QLatin1String("Background settings not writable."));
    }
}

TEST_F(TORVBackgroundSettingsTest, ListsTheNamesOfTheTrees)
{
    const ProductFiles files;
    TORVProductFields fields = ProductFiles::small();
    const auto add = [&files, &fields](const char* name, int type, const char* site) {
        fields.dataType = static_cast<uint16_t>(type);
        fields.siteName = site;
        files.write(QString::fromLatin1(name), fields, ProductFiles::zeros(fields));
    };
    add("AAA261121120000.CAPW", 4, "SITE 1");
    add("AAA261121120000.CAPZ", 2, "SITE 1");
    add("AAB261121120000.CAPZ", 2, "SITE 2");
    const TORV3DTop volumes(files.path({}));
    EXPECT_EQ(Background::getAllConfigurations(volumes), QStringList({QStringLiteral("W"), QStringLiteral("Z")}));
    EXPECT_TRUE(Background::getAll2DProducts(TORV2DTop(files.path({}))).isEmpty());
}

TEST_F(TORVBackgroundUserTest, IsToldByTheStartUpVariables)
{
    const auto user = [this](const QByteArray& text) {
        home.write(QStringLiteral("default/torv3dviewd"), text);
        return Background::getBgUsername(home.filePath(QStringLiteral("default")));
    };
    EXPECT_EQ(user("BG_USER=radar\n"), QLatin1String("radar"));
    EXPECT_EQ(user("# service\nexport BG_USER=radar weather\nBG_USER=other\n"), QLatin1String("radar"));
    EXPECT_EQ(user("BG_USER=\nBG_USER=other\n"), QLatin1String("torv3d"));
    EXPECT_EQ(user("USER=radar\n"), QLatin1String("torv3d"));
    EXPECT_EQ(user(QByteArray(1 << 20, 'x') + "BG_USER=radar\n"), QLatin1String("torv3d"));
}

TEST_F(TORVBackgroundUserTest, HasANameWhereNothingIsTold)
{
    const LogFile log(TORVLog::LEVEL_DEBUG);
    ASSERT_TRUE(QDir(home.path()).mkpath(QStringLiteral("taken/torv3dviewd")));
    EXPECT_EQ(Background::getBgUsername(QString()), QLatin1String("torv3d"));
    EXPECT_EQ(Background::getBgUsername(home.filePath(QStringLiteral("nowhere"))), QLatin1String("torv3d"));
    EXPECT_EQ(Background::getBgUsername(home.filePath(QStringLiteral("taken"))), QLatin1String("torv3d"));
    const QString line =
        QStringLiteral("D: Background user not configured - using default for background username torv3d");
    EXPECT_EQ(log.lines(), QStringList({line, line, line}));
}

TEST_F(TORVBackgroundStatusTest, IsWritableForAFileThatIs)
{
    EXPECT_EQ(Background(write(EveryKey)).status(), 0);
    EXPECT_EQ(file(), EveryKey);
}

TEST_F(TORVBackgroundStatusTest, JudgesAMissingFileByItsDirectoryAndMakesNone)
{
    EXPECT_EQ(Background(path()).status(), 0);
    EXPECT_FALSE(QFileInfo::exists(QFileInfo(path()).path()));
    home.write(QStringLiteral("plain"), "x");
    EXPECT_EQ(Background(home.filePath(QStringLiteral("plain/torv3dviewd.conf"))).status(), 2);
}

TEST_F(TORVBackgroundStatusTest, IsNoneWhereTheUserHasNoHome)
{
    EXPECT_EQ(Background(QString()).status(), 2);
}

TEST_F(TORVBackgroundStatusTest, IsNoneForWhatIsNoFile)
{
    const QString pipe = home.filePath(QStringLiteral("pipe"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(Background(pipe).status(), 2);
    EXPECT_EQ(Background(home.path()).status(), 2);
    const QString loop = home.filePath(QStringLiteral("loop"));
    ASSERT_TRUE(QFile::link(loop, loop));
    EXPECT_EQ(Background(loop).status(), 2);
}
