#include "gui/TORVHelp.h"

#include "gui/TORVHelpAction.h"
#include "support/LogFile.h"
#include "support/SandboxedHome.h"
#include "utils/TORVLog.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QSignalSpy>
#include <QtTest>

#include <gtest/gtest.h>

namespace
{

class TORVHelpTest : public testing::Test
{
protected:
    void configure(const QByteArray& text) const { home.write(QStringLiteral(".config/Halmera/TORV3D.conf"), text); }

    static QStringList titles(const TORVHelp& menu)
    {
        QStringList texts;
        for (const QAction* const action : menu.actions()) {
            texts << (action->isSeparator() ? QStringLiteral("----") : action->text());
        }
        return texts;
    }

    QString historyLine() const { return history.isEmpty() ? QString() : history.last().first().toString(); }

    SandboxedHome home;
    QSignalSpy history{TORVLog::Instance(), SIGNAL(historyAdd(QString))};
};

const QByteArray ThreeItems = "[HELP]\n"
                              "HELPITEMS\\size=3\n"
                              "HELPITEMS\\1\\title=Manual\n"
                              "HELPITEMS\\1\\command=viewer\n"
                              "HELPITEMS\\1\\arg=/usr/share/manual.pdf\n"
                              "HELPITEMS\\2\\title=SEPARATOR\n"
                              "HELPITEMS\\3\\title=About\n";

} // namespace

TEST_F(TORVHelpTest, HoldsAnEntryForEachItemInTheirOrder)
{
    configure(ThreeItems);
    EXPECT_EQ(titles(TORVHelp(nullptr)), QStringList({"Manual", "----", "About"}));
}

TEST_F(TORVHelpTest, LogsWhatItFinds)
{
    configure(ThreeItems);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const TORVHelp menu(nullptr);
    EXPECT_EQ(log.lines(), QStringList({"D: Create help menu", "D:    ... found  3 help items",
                                        "D:    ... add help item Manual to help menu",
                                        "D:    ... add help item SEPARATOR to help menu",
                                        "D:    ... add help item About to help menu"}));
}

TEST_F(TORVHelpTest, IsEmptyWithoutSettings)
{
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_TRUE(TORVHelp(nullptr).isEmpty());
    EXPECT_EQ(log.lines(), QStringList({"D: Create help menu", "D:    ... found  0 help items"}));
}

TEST_F(TORVHelpTest, IsEmptyForAnEmptyArray)
{
    configure("[HELP]\nHELPITEMS\\size=0\nHELPITEMS\\1\\title=Manual\n");
    EXPECT_TRUE(TORVHelp(nullptr).isEmpty());
}

TEST_F(TORVHelpTest, ReadsOfAnArrayThatCallsItselfEndlessWhatIsThere)
{
    configure("[HELP]\nHELPITEMS\\size=2147483647\nHELPITEMS\\2\\title=Manual\n");
    EXPECT_EQ(titles(TORVHelp(nullptr)), QStringList("Manual"));
}

TEST_F(TORVHelpTest, IsEmptyForAnArrayOfLessThanNothing)
{
    configure("[HELP]\nHELPITEMS\\size=-5\nHELPITEMS\\1\\title=Manual\n");
    EXPECT_TRUE(TORVHelp(nullptr).isEmpty());
}

TEST_F(TORVHelpTest, TakesACommaForPartOfATitle)
{
    configure("[HELP]\nHELPITEMS\\size=1\nHELPITEMS\\1\\title=Radars, sites\n");
    EXPECT_EQ(titles(TORVHelp(nullptr)), QStringList("Radars,sites"));
}

TEST_F(TORVHelpTest, LeavesTheSettingsAsTheyAre)
{
    configure(ThreeItems);
    {
        const TORVHelp menu(nullptr);
    }
    QFile file(home.settingsFile());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), ThreeItems);
}

TEST_F(TORVHelpTest, FollowsTheSettingsToAnotherUsersHome)
{
    configure(ThreeItems);
    home.write(QStringLiteral("colleague/.config/Halmera/TORV3D.conf"),
               "[HELP]\nHELPITEMS\\size=1\nHELPITEMS\\1\\title=Colleague\n");
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       home.filePath(QStringLiteral("colleague/.config")));
    EXPECT_EQ(titles(TORVHelp(nullptr)), QStringList("Colleague"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, home.filePath(QStringLiteral(".config")));
}

TEST_F(TORVHelpTest, StartsTheCommandOfTheEntryThatIsTriggered)
{
    const QString made = home.filePath(QStringLiteral("made"));
    configure("[HELP]\nHELPITEMS\\size=1\nHELPITEMS\\1\\title=Manual\n"
              "HELPITEMS\\1\\command=touch\nHELPITEMS\\1\\arg=" +
              made.toUtf8() + "\n");
    const TORVHelp menu(nullptr);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    menu.actions().first()->trigger();
    EXPECT_EQ(log.lines(), QStringList("D: Launch help item Manual"));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(made), 60000);
    EXPECT_EQ(history.count(), 0);
}

TEST_F(TORVHelpTest, SplitsCommandAndArgumentAtBlanks)
{
    const QString first = home.filePath(QStringLiteral("first"));
    const QString second = home.filePath(QStringLiteral("second"));
    TORVHelpAction action(QStringLiteral("Manual"), QStringLiteral("touch -c"), first + QLatin1Char(' ') + second,
                          nullptr);
    TORVHelpAction making(QStringLiteral("Manual"), QStringLiteral("touch -a"), first + QLatin1Char(' ') + second,
                          nullptr);
    action.launch();
    making.launch();
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(first) && QFile::exists(second), 60000);
}

TEST_F(TORVHelpTest, KeepsTogetherWhatStandsInQuotes)
{
    const QString made = home.filePath(QStringLiteral("a manual"));
    TORVHelpAction action(QStringLiteral("Manual"), QStringLiteral("touch"), QLatin1Char('"') + made + QLatin1Char('"'),
                          nullptr);
    action.launch();
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(made), 60000);
}

TEST_F(TORVHelpTest, GivesNothingToAShell)
{
    const QString made = home.filePath(QStringLiteral("a;$(b)&c"));
    TORVHelpAction action(QStringLiteral("Manual"), QStringLiteral("touch"), made, nullptr);
    action.launch();
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(made), 60000);
}

TEST_F(TORVHelpTest, SaysThatNoCommandIsConfigured)
{
    TORVHelpAction action(QStringLiteral("About"), QString(), QStringLiteral("/usr/share/manual.pdf"), nullptr);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    action.launch();
    EXPECT_EQ(historyLine(), QStringLiteral("Help command not configured for About"));
    EXPECT_EQ(log.lines(), QStringList("D: Launch help item About"));
}

TEST_F(TORVHelpTest, SaysThatACommandCanNotBeStarted)
{
    TORVHelpAction action(QStringLiteral("Manual"), QStringLiteral("/no/such/program"), QString(), nullptr);
    action.launch();
    EXPECT_EQ(historyLine(), QStringLiteral("Help command could not be started for Manual"));
}

TEST_F(TORVHelpTest, SaysThatACommandOfNothingButBlanksOrQuotesCanNotBeStarted)
{
    for (const QString& command : {QStringLiteral("  "), QStringLiteral("\"\"")}) {
        history.clear();
        TORVHelpAction action(QStringLiteral("Manual"), command, QString(), nullptr);
        action.launch();
        EXPECT_EQ(historyLine(), QStringLiteral("Help command could not be started for Manual"));
    }
}

TEST_F(TORVHelpTest, ASeparatorStartsNothing)
{
    configure("[HELP]\nHELPITEMS\\size=1\nHELPITEMS\\1\\title=SEPARATOR\n");
    const TORVHelp menu(nullptr);
    menu.actions().first()->trigger();
    EXPECT_EQ(history.count(), 0);
}
