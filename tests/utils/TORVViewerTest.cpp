// The program itself, from its command line to its exit status: the real one as far as no display is needed, then one
// whose main window is a stand-in that only tells what happens to it.
#include "support/ProcessRun.h"
#include "support/SandboxedHome.h"

#include <QFileInfo>

#include <gtest/gtest.h>

namespace
{

class TORVViewerTest : public testing::Test
{
protected:
    // Without any display and without a platform chosen by the user.
    ProcessRun viewer() const
    {
        return ProcessRun(QStringLiteral(TORV_VIEWER))
            .with(QStringLiteral("QT_QPA_PLATFORM"), {})
            .with(QStringLiteral("DISPLAY"), {})
            .with(QStringLiteral("WAYLAND_DISPLAY"), {})
            .in(home.path());
    }

    ProcessRun standIn() const
    {
        return ProcessRun(QStringLiteral(TORV_MAIN_PROBE)).with(QStringLiteral("USER"), QStringLiteral("nobodyknows"));
    }

    // The user anna has a home here, in the eyes of that process alone.
    ProcessRun standInWithAnna()
    {
        const QString line = QStringLiteral("anna:x:1000:1000::%1:/bin/sh\n").arg(annaHome());
        return standIn()
            .with(QStringLiteral("FILE"), home.write(QStringLiteral("passwd"), line.toLocal8Bit()))
            .privately(QStringLiteral("mount --bind \"$FILE\" /etc/passwd"));
    }

    QString annaHome() const { return home.filePath(QStringLiteral("anna")); }

    void giveAnnaSettings() { home.write(QStringLiteral("anna/.config/Halmera/TORV3D.conf"), ""); }

    static QStringList outputLines(const ProcessRun::Outcome& outcome)
    {
        return outcome.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    const SandboxedHome home;
};

} // namespace

TEST_F(TORVViewerTest, ShowsItsHelpWithoutADisplay)
{
    for (const QString& argument : {QStringLiteral("--help"), QStringLiteral("-help")}) {
        const ProcessRun::Outcome outcome = viewer()({argument});
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_TRUE(outcome.output.startsWith(QLatin1String("Usage: torv3dview [options]\nOptions:\n\t--help\t\t")));
        EXPECT_TRUE(outcome.output.contains(
            QLatin1String("\n\t--user\t\tuser='username', use settings of 'username'\n\t--version\t")));
    }
}

TEST_F(TORVViewerTest, ShowsItsVersionWithoutADisplay)
{
    for (const QString& argument : {QStringLiteral("--version"), QStringLiteral("-version")}) {
        const ProcessRun::Outcome outcome = viewer()({argument});
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_EQ(outcome.output, QLatin1String("Version: 1.0.2\n"));
    }
}

TEST_F(TORVViewerTest, ShowsItsVersionOnADisplayThatDoesNotAnswer)
{
    const ProcessRun::Outcome outcome =
        viewer().with(QStringLiteral("DISPLAY"), QStringLiteral(":54321"))({QStringLiteral("--version")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, QLatin1String("Version: 1.0.2\n"));
}

TEST_F(TORVViewerTest, RefusesAnUnknownOptionWithoutADisplay)
{
    const ProcessRun::Outcome outcome = viewer()({QStringLiteral("--bogus"), QStringLiteral("-x=1")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, QLatin1String("Invalid option: bogus\nInvalid option: x\n"));
}

TEST_F(TORVViewerTest, RefusesToBeADaemon)
{
    const ProcessRun::Outcome outcome = viewer()({QStringLiteral("--daemon")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, QLatin1String("Invalid option: daemon\n"));
}

TEST_F(TORVViewerTest, SaysThatThereIsNoDisplay)
{
    const ProcessRun::Outcome outcome = viewer()({QStringLiteral("somefile")});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.errors.contains(QLatin1String("There is no display"))) << qUtf8Printable(outcome.errors);
    EXPECT_TRUE(outcome.output.isEmpty());
}

TEST_F(TORVViewerTest, SaysInFinnishThatThereIsNoDisplay)
{
    const ProcessRun::Outcome outcome = viewer()({QStringLiteral("--language=fi")});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.errors.contains(QStringLiteral("Kuvalle ei ole näyttöä"))) << qUtf8Printable(outcome.errors);
}

TEST_F(TORVViewerTest, LogsToTheConsoleEvenIfAFileIsNamed)
{
    const ProcessRun::Outcome outcome = viewer()({QStringLiteral("--logfile=x")});
    EXPECT_EQ(outcome.logLines(), QStringList(QStringLiteral("torv3dview starting")));
    EXPECT_FALSE(QFileInfo::exists(home.filePath(QStringLiteral("x"))));
    EXPECT_FALSE(QFileInfo::exists(home.filePath(QStringLiteral("torv3dview.log"))));
}

TEST_F(TORVViewerTest, ShowsTheWindowUntilItsExitActionIsTriggered)
{
    const ProcessRun::Outcome outcome = standIn()({QStringLiteral("somefile")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outputLines(outcome), QStringList({QLatin1String("settings: ") + home.settingsFile(),
                                                 QStringLiteral("title: Halmera TORV 3DView"), QStringLiteral("shown"),
                                                 QStringLiteral("gone")}));
}

TEST_F(TORVViewerTest, TakesTheSettingsOfAnotherUser)
{
    TORV_NEEDS_PRIVATE_MOUNTS();
    giveAnnaSettings();
    const ProcessRun::Outcome outcome = standInWithAnna()({QStringLiteral("--user=anna")});
    EXPECT_EQ(outputLines(outcome),
              QStringList({QLatin1String("settings: ") + annaHome() + QLatin1String("/.config/Halmera/TORV3D.conf"),
                           QStringLiteral("title: Halmera TORV 3DView"), QStringLiteral("shown"),
                           QStringLiteral("history: Active username is anna"), QStringLiteral("gone")}));
}

TEST_F(TORVViewerTest, TellsTheUserNameInFinnish)
{
    TORV_NEEDS_PRIVATE_MOUNTS();
    giveAnnaSettings();
    const ProcessRun::Outcome outcome =
        standInWithAnna()({QStringLiteral("--user=anna"), QStringLiteral("--language=fi")});
    EXPECT_TRUE(outputLines(outcome).contains(QStringLiteral("history: Aktiivinen käyttäjätunnus on anna")));
}

TEST_F(TORVViewerTest, StaysWithTheLoginUserWhenTheOtherHasNoSettings)
{
    TORV_NEEDS_PRIVATE_MOUNTS();
    const ProcessRun::Outcome outcome = standInWithAnna()({QStringLiteral("--user=anna")});
    EXPECT_EQ(outputLines(outcome).first(), QLatin1String("settings: ") + home.settingsFile());
    EXPECT_FALSE(outcome.output.contains(QLatin1String("history: ")));
}

TEST_F(TORVViewerTest, StaysWithTheLoginUserWhenTheOtherIsUnknown)
{
    const ProcessRun::Outcome outcome = standIn()({QStringLiteral("--user=nobodyknows")});
    EXPECT_EQ(outputLines(outcome).first(), QLatin1String("settings: ") + home.settingsFile());
    EXPECT_FALSE(outcome.output.contains(QLatin1String("history: ")));
}

TEST_F(TORVViewerTest, TakesTheLastOfTwoUsers)
{
    TORV_NEEDS_PRIVATE_MOUNTS();
    giveAnnaSettings();
    const ProcessRun::Outcome outcome =
        standInWithAnna()({QStringLiteral("--user=nobodyknows"), QStringLiteral("--user=anna")});
    EXPECT_TRUE(outputLines(outcome).contains(QLatin1String("history: Active username is anna")));
}

TEST_F(TORVViewerTest, NamesTheLoginUserWithoutChangingTheSettings)
{
    TORV_NEEDS_PRIVATE_MOUNTS();
    giveAnnaSettings();
    const ProcessRun::Outcome outcome =
        standInWithAnna().with(QStringLiteral("USER"), QStringLiteral("anna"))({QStringLiteral("--user=")});
    EXPECT_EQ(outputLines(outcome).first(), QLatin1String("settings: ") + home.settingsFile());
    EXPECT_TRUE(outputLines(outcome).contains(QLatin1String("history: Active username is anna")));
}

TEST_F(TORVViewerTest, NamesNobodyWithoutLoginUser)
{
    const ProcessRun::Outcome outcome = standIn().with(QStringLiteral("USER"), {})({});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_FALSE(outcome.output.contains(QLatin1String("history: ")));
}
