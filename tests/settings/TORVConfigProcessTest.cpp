// What one process wrote and the next one reads. Qt keeps a parsed file in memory, so that a single process would not
// notice what gets lost on the way through the file.
#include "support/ProcessRun.h"
#include "support/SandboxedHome.h"

#include <QFile>

#include <gtest/gtest.h>

namespace
{

class TORVConfigProcessTest : public testing::Test
{
protected:
    static ProcessRun probe() { return ProcessRun(QStringLiteral(TORV_APP_PROBE)); }

    static QStringList run(const QStringList& words)
    {
        const ProcessRun::Outcome outcome = probe()(words);
        EXPECT_EQ(outcome.exitCode, 0) << qUtf8Printable(outcome.errors);
        return outcome.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    static void set(const QString& key, const QString& value) { run({QStringLiteral("set"), key, value}); }

    static QString get(const QString& key) { return run({QStringLiteral("get"), key}).value(0); }

    void writeSettings(const QByteArray& bytes) const
    {
        home.write(QStringLiteral(".config/Halmera/TORV3D.conf"), bytes);
    }

    QByteArray settings() const
    {
        QFile file(home.settingsFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // Settings for all users of the machine, behind the user's own.
    ProcessRun probeWithSystemSettings(const QByteArray& bytes) const
    {
        home.write(QStringLiteral("xdg/Halmera/TORV3D.conf"), bytes);
        return probe().with(QStringLiteral("XDG_CONFIG_DIRS"), home.filePath(QStringLiteral("xdg")));
    }

    const SandboxedHome home;
};

} // namespace

TEST_F(TORVConfigProcessTest, FindsWhatAnotherProcessWrote)
{
    set(QStringLiteral("VIEWANGLE/viewAngleName"), QStringLiteral("North"));
    EXPECT_EQ(get(QStringLiteral("VIEWANGLE/viewAngleName")), QLatin1String("VIEWANGLE/viewAngleName=North"));
}

TEST_F(TORVConfigProcessTest, FindsTheGeneralGroupThatAnotherProcessWrote)
{
    set(QStringLiteral("GENERAL/data3d"), QStringLiteral("/data/3d"));
    EXPECT_EQ(get(QStringLiteral("GENERAL/data3d")), QLatin1String("GENERAL/data3d=/data/3d"));
    EXPECT_EQ(get(QStringLiteral("GENERAL/data3d")), QLatin1String("GENERAL/data3d=/data/3d"));
}

TEST_F(TORVConfigProcessTest, KeepsOneGeneralGroupHoweverManyProcessesWrite)
{
    set(QStringLiteral("GENERAL/data3d"), QStringLiteral("/data/3d"));
    set(QStringLiteral("GENERAL/data2d"), QStringLiteral("/data/2d"));
    set(QStringLiteral("GENERAL/data3d"), QStringLiteral("/data/new"));
    EXPECT_EQ(settings(), "[%General]\ndata2d=/data/2d\ndata3d=/data/new\n");
}

TEST_F(TORVConfigProcessTest, FindsAGeneralGroupThatWasWrittenByHand)
{
    writeSettings("[GENERAL]\ndata3d=/data/3d\n\n[VIEWANGLE]\nviewAngleName=North\n");
    EXPECT_EQ(get(QStringLiteral("GENERAL/data3d")), QLatin1String("GENERAL/data3d=/data/3d"));
    EXPECT_EQ(get(QStringLiteral("GENERAL/data3d")), QLatin1String("GENERAL/data3d=/data/3d"));
    EXPECT_EQ(get(QStringLiteral("VIEWANGLE/viewAngleName")), QLatin1String("VIEWANGLE/viewAngleName=North"));
}

TEST_F(TORVConfigProcessTest, LeavesNothingOfAGeneralGroupThatWasWrittenByHand)
{
    writeSettings("[GENERAL]\ndata3d=/data/3d\n");
    EXPECT_EQ(get(QStringLiteral("data3d")), QLatin1String("data3d=(none)"));
    EXPECT_EQ(settings(), "[%General]\ndata3d=/data/3d\n");
}

TEST_F(TORVConfigProcessTest, PrefersWhatWasWrittenByHand)
{
    writeSettings("[%General]\ndata2d=/data/2d\ndata3d=/data/old\n\n[GENERAL]\ndata3d=/data/by-hand\n");
    EXPECT_EQ(get(QStringLiteral("GENERAL/data3d")), QLatin1String("GENERAL/data3d=/data/by-hand"));
    EXPECT_EQ(get(QStringLiteral("GENERAL/data2d")), QLatin1String("GENERAL/data2d=/data/2d"));
}

TEST_F(TORVConfigProcessTest, KeepsArraysInTheGeneralGroup)
{
    writeSettings("[%General]\npaths\\1\\name=a\npaths\\size=1\n");
    EXPECT_EQ(get(QStringLiteral("GENERAL/paths/1/name")), QLatin1String("GENERAL/paths/1/name=a"));
}

TEST_F(TORVConfigProcessTest, HasTheSettingsOfTheSystemBehindThoseOfTheUser)
{
    const ProcessRun withSystem = probeWithSystemSettings("[VIEWANGLE]\nviewAngleName=North\n");
    const QStringList words = {QStringLiteral("get"), QStringLiteral("VIEWANGLE/viewAngleName")};
    EXPECT_EQ(withSystem(words).output, QLatin1String("VIEWANGLE/viewAngleName=North\n"));
    writeSettings("[VIEWANGLE]\nviewAngleName=South\n");
    EXPECT_EQ(withSystem(words).output, QLatin1String("VIEWANGLE/viewAngleName=South\n"));
}

TEST_F(TORVConfigProcessTest, TakesNothingOfTheSystemIntoTheFileOfTheUser)
{
    const ProcessRun withSystem =
        probeWithSystemSettings("[%General]\ndata3d=/data/3d\n\n[GENERAL]\ndata2d=/data/2d\n");
    EXPECT_EQ(withSystem({QStringLiteral("file")}).output.trimmed(), home.settingsFile());
    EXPECT_FALSE(QFile::exists(home.settingsFile()));
}

TEST_F(TORVConfigProcessTest, MakesNoFileByReading)
{
    get(QStringLiteral("GENERAL/data3d"));
    EXPECT_FALSE(QFile::exists(home.settingsFile()));
}

TEST_F(TORVConfigProcessTest, DoesNotComplainAboutAFileThatItMayOnlyRead)
{
    TORV_NEEDS_PRIVATE_MOUNTS();
    writeSettings("[%General]\ndata3d=/data/3d\n");
    const ProcessRun::Outcome outcome =
        probe()
            .with(QStringLiteral("DIRECTORY"), home.filePath(QStringLiteral(".config")))
            .privately(QStringLiteral("mount --bind \"$DIRECTORY\" \"$DIRECTORY\" && "
                                      "mount -o remount,bind,ro \"$DIRECTORY\""))(
                {QStringLiteral("--loglevel=1"), QStringLiteral("get"), QStringLiteral("VIEWANGLE/viewAngleName")});
    EXPECT_EQ(outcome.exitCode, 0) << qUtf8Printable(outcome.errors);
    EXPECT_EQ(outcome.logLines().size(), 1) << qUtf8Printable(outcome.errors);
}

TEST_F(TORVConfigProcessTest, FollowsTheConfigurationHomeOfTheEnvironment)
{
    const QString root = home.filePath(QStringLiteral("own"));
    const ProcessRun::Outcome outcome = probe().with(QStringLiteral("XDG_CONFIG_HOME"), root)(
        {QStringLiteral("file"), QStringLiteral("path"), QStringLiteral("changeuser"), QStringLiteral("root"),
         QStringLiteral("restoreuser"), QStringLiteral("file")});
    const QString file = root + QLatin1String("/Halmera/TORV3D.conf\n");
    EXPECT_EQ(outcome.output, file + QLatin1Char('\n') + file);
}

TEST_F(TORVConfigProcessTest, ReadsTheFileOfAnotherUserUntilItIsToldToStop)
{
    TORV_NEEDS_PRIVATE_MOUNTS();
    home.write(QStringLiteral("anna/.config/Halmera/TORV3D.conf"), "[VIEWANGLE]\nviewAngleName=South\n");
    writeSettings("[VIEWANGLE]\nviewAngleName=North\n");
    const QString line = QStringLiteral("anna:x:1000:1000::%1:/bin/sh\n").arg(home.filePath(QStringLiteral("anna")));
    const QStringList get = {QStringLiteral("get"), QStringLiteral("VIEWANGLE/viewAngleName")};
    const QStringList words = get + QStringList{QStringLiteral("changeuser"), QStringLiteral("anna")} + get +
                              QStringList{QStringLiteral("restoreuser")} + get;
    const ProcessRun::Outcome outcome =
        probe()
            .with(QStringLiteral("FILE"), home.write(QStringLiteral("passwd"), line.toLocal8Bit()))
            .privately(QStringLiteral("mount --bind \"$FILE\" /etc/passwd"))(words);
    EXPECT_EQ(outcome.output, QLatin1String("VIEWANGLE/viewAngleName=North\n"
                                            "VIEWANGLE/viewAngleName=South\n"
                                            "VIEWANGLE/viewAngleName=North\n"))
        << qUtf8Printable(outcome.errors);
}
