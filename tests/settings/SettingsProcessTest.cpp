// Settings as they look from the next process, from a machine with settings for all users, and after a crash.
#include "settings/TORVConfig.h"
#include "settings/TORVGeneralSettings.h"

#include "support/ProcessRun.h"
#include "support/SandboxedHome.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

#include <chrono>
#include <random>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

// TORV_SETTINGS_KILLS=500 for a long run.
int killCount()
{
    constexpr int ByDefault = 20;
    bool isSet = false;
    const int wanted = qEnvironmentVariableIntValue("TORV_SETTINGS_KILLS", &isSet);
    return isSet ? wanted : ByDefault;
}

class SettingsProcessTest : public testing::Test
{
protected:
    ~SettingsProcessTest() override { TORVConfig::destroy(); }

    static ProcessRun probe() { return ProcessRun(QStringLiteral(TORV_SETTINGS_PROBE)); }

    static QString run(const QStringList& words)
    {
        const ProcessRun::Outcome outcome = probe()(words);
        EXPECT_EQ(outcome.exitCode, 0) << qUtf8Printable(outcome.errors);
        return outcome.output;
    }

    QString directoriesWithSystem(const QByteArray& bytes) const
    {
        home.write(QStringLiteral("xdg/Halmera/TORV3D.conf"), bytes);
        return probe()
            .with(QStringLiteral("XDG_CONFIG_DIRS"),
                  home.filePath(QStringLiteral("xdg")))({QStringLiteral("directories")})
            .output;
    }

    void write(const QByteArray& bytes) const { home.write(QStringLiteral(".config/Halmera/TORV3D.conf"), bytes); }

    QByteArray settings() const
    {
        QFile file(home.settingsFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    const SandboxedHome home;
};

int changeRights(const QString& path, unsigned int mode)
{
    return ::chmod(QFile::encodeName(path).constData(), mode);
}

struct stat statusOf(const QString& path)
{
    struct stat status = {};
    EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
    return status;
}

// To root no rights mean anything, unless it gives up the power to pass over them.
QString asNobodySpecial(const QStringList& words)
{
    const QString program = QStringLiteral(TORV_SETTINGS_PROBE);
    const ProcessRun::Outcome outcome =
        ::geteuid() != 0
            ? ProcessRun(program)(words)
            : ProcessRun(QStringLiteral("setpriv"))(
                  QStringList({QStringLiteral("--bounding-set=-dac_override,-dac_read_search"), program}) + words);
    EXPECT_EQ(outcome.exitCode, 0) << qUtf8Printable(outcome.errors);
    return outcome.output;
}

// A process that saves for ever until it is killed. The answer is the number of its last save that is known to be done.
int churnAndKill(int saves, int microseconds)
{
    QProcess process;
    process.start(QStringLiteral(TORV_SETTINGS_PROBE), {QStringLiteral("churn")});
    QByteArray output;
    while (output.count('\n') < saves && process.waitForReadyRead()) {
        output += process.readAllStandardOutput();
    }
    // Somewhere in one of the next saves.
    const auto until = std::chrono::steady_clock::now() + std::chrono::microseconds(microseconds);
    while (std::chrono::steady_clock::now() < until) {}
    process.kill();
    EXPECT_TRUE(process.waitForFinished());
    output += process.readAllStandardOutput();
    const QList<QByteArray> lines = output.split('\n');
    return lines.value(lines.size() - 2).toInt(); // the last one may be cut off
}

} // namespace

TEST_F(SettingsProcessTest, FindWhatAnotherProcessSaved)
{
    TORVGeneralSettings general;
    general.set3DDir(QStringLiteral("/data/3d"));
    general.set2DDir(QStringLiteral("/data/2d"));
    general.setGeoDir(QStringLiteral("/data/geo"));
    general.save();
    EXPECT_EQ(run({QStringLiteral("directories")}), QLatin1String("/data/3d|/data/2d|/data/geo\n"));
    EXPECT_EQ(run({QStringLiteral("directories")}), QLatin1String("/data/3d|/data/2d|/data/geo\n"));
}

TEST_F(SettingsProcessTest, FindGeneralValuesThatQtWroteForAllUsers)
{
    EXPECT_EQ(directoriesWithSystem("[%General]\ndata3d=/system/3d\n"), QLatin1String("/system/3d||\n"));
}

TEST_F(SettingsProcessTest, FindGeneralValuesThatWereWrittenByHandForAllUsers)
{
    EXPECT_EQ(directoriesWithSystem("[GENERAL]\ndata3d=/system/3d,x\n[General]\ndata2d=/system/2d\n"),
              QLatin1String("/system/3d,x|/system/2d|\n"));
}

TEST_F(SettingsProcessTest, PreferTheFileOfTheUserInWhateverForm)
{
    const QByteArray system = "[%General]\ndata3d=/system/3d\n[GENERAL]\ndata2d=/system/2d\n";
    for (const char* group : {"[GENERAL]", "[%General]", "[general]"}) {
        write(QByteArray(group) + "\ndata3d=/user/3d\ndata2d=/user/2d\n");
        EXPECT_EQ(directoriesWithSystem(system), QLatin1String("/user/3d|/user/2d|\n")) << group;
    }
}

TEST_F(SettingsProcessTest, ReadAFileThatMayOnlyBeRead)
{
    TORV_NEEDS_PRIVATE_MOUNTS();
    for (const char* group : {"[GENERAL]", "[%General]"}) {
        write(QByteArray(group) + "\ndata3d=/user/3d\n");
        const ProcessRun::Outcome outcome =
            probe()
                .with(QStringLiteral("DIRECTORY"), home.filePath(QStringLiteral(".config")))
                .privately(QStringLiteral("mount --bind \"$DIRECTORY\" \"$DIRECTORY\" && "
                                          "mount -o remount,bind,ro \"$DIRECTORY\""))({QStringLiteral("directories")});
        EXPECT_EQ(outcome.output, QLatin1String("/user/3d||\n")) << group << qUtf8Printable(outcome.errors);
    }
}

TEST_F(SettingsProcessTest, StayInAFileThatCanNotBeReadOrWritten)
{
    for (const unsigned int rights : {0U, 0222U, 0444U}) {
        const QByteArray bytes = "[VIEWANGLE]\nviewAngleName=North\n\n[%General]\ndata3d=/user/3d\n";
        write(bytes);
        ASSERT_EQ(changeRights(home.settingsFile(), rights), 0);
        EXPECT_EQ(asNobodySpecial({QStringLiteral("directories")}),
                  rights == 0444U ? QLatin1String("/user/3d||\n") : QLatin1String("||\n"));
        asNobodySpecial({QStringLiteral("save"), QStringLiteral("/new/3d")});
        ASSERT_EQ(changeRights(home.settingsFile(), 0644), 0);
        EXPECT_EQ(settings(), bytes) << rights;
    }
}

TEST_F(SettingsProcessTest, AreWholeAfterAKillAtAnyMoment)
{
    // Much for each save to write, and to keep.
    QByteArray other = "[OTHER]\n";
    for (int i = 100; i < 400; ++i) {
        other += "key" + QByteArray::number(i) + "=" + QByteArray(100, 'x') + '\n';
    }
    write("[%General]\ntimewindow=0\n\n" + other);
    std::mt19937 random(20221);
    std::uniform_int_distribution<int> saves(1, 5);
    std::uniform_int_distribution<int> microseconds(0, 5000);
    for (int i = 0; i < killCount(); ++i) {
        const int done = churnAndKill(saves(random), microseconds(random));
        const QString values = run({QStringLiteral("values")});
        EXPECT_TRUE(values.startsWith(QLatin1String("whole "))) << qUtf8Printable(values);
        EXPECT_GE(values.mid(6).toInt(), done);
        EXPECT_LE(values.mid(6).toInt(), done + 1);
        EXPECT_TRUE(settings().contains(other.trimmed()));
    }
}

TEST_F(SettingsProcessTest, OfTheServiceAreJudgedByTheirRights)
{
    const QString file = home.write(QStringLiteral("service/torv3dviewd.conf"), "[BACKGROUND]\nactivated=false\n");
    ASSERT_EQ(changeRights(file, 0444), 0);
    EXPECT_EQ(asNobodySpecial({QStringLiteral("background"), file}), QLatin1String("status 1\nnot saved\n"));
    ASSERT_EQ(changeRights(file, 0), 0);
    EXPECT_EQ(asNobodySpecial({QStringLiteral("background"), file}), QLatin1String("status 2\nnot saved\n"));
    const QString missing = home.filePath(QStringLiteral("service/none.conf"));
    ASSERT_EQ(changeRights(home.filePath(QStringLiteral("service")), 0555), 0);
    EXPECT_EQ(asNobodySpecial({QStringLiteral("background"), missing}), QLatin1String("status 2\nnot saved\n"));
    ASSERT_EQ(changeRights(home.filePath(QStringLiteral("service")), 0755), 0);
    EXPECT_EQ(asNobodySpecial({QStringLiteral("background"), missing}), QLatin1String("status 0\nsaved\n"));
}

TEST_F(SettingsProcessTest, OfTheServiceAreSavedInADirectoryThatCanNotBeWritten)
{
    const QString file = home.write(QStringLiteral("service/torv3dviewd.conf"), "[BACKGROUND]\nactivated=false\n");
    ASSERT_EQ(changeRights(file, 0640), 0);
    ASSERT_EQ(changeRights(home.filePath(QStringLiteral("service")), 0555), 0);
    const struct stat before = statusOf(file);
    EXPECT_EQ(asNobodySpecial({QStringLiteral("background"), file}), QLatin1String("status 0\nsaved\n"));
    const struct stat after = statusOf(file);
    ASSERT_EQ(changeRights(home.filePath(QStringLiteral("service")), 0755), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_mode, before.st_mode);
    QFile written(file);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_TRUE(written.readAll().contains("activated=true\n"));
}

TEST_F(SettingsProcessTest, AreBorrowedByTwoThreads)
{
    EXPECT_TRUE(run({QStringLiteral("borrow"), QStringLiteral("1")}).endsWith(QLatin1String(" saves\n")));
}
