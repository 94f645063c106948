#include "utils/TORVLog.h"

#include "support/LogFile.h"
#include "support/MessageGuard.h"
#include "support/ProcessRun.h"
#include "support/SandboxedHome.h"
#include "utils/HistoryReceiver.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QSignalSpy>
#include <QThread>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace
{

const QString Probe = QStringLiteral(TORV_APP_PROBE);

bool connectTo(const HistoryReceiver& receiver)
{
    return TORVLog::Instance()->logConnect(&receiver, SLOT(historyAdd(QString)), SLOT(statusAdd(QString, int)));
}

QStringList loggedAt(int level)
{
    const LogFile log(static_cast<TORVLog::Level>(level));
    TORVLog::Instance()->logError(QStringLiteral("an error"));
    TORVLog::Instance()->logWarning(QStringLiteral("a warning"));
    TORVLog::Instance()->logNotice(QStringLiteral("a notice"));
    TORVLog::Instance()->logDebug(QStringLiteral("a detail"));
    return log.lines();
}

const QStringList AllLines = {QStringLiteral("E: an error"), QStringLiteral("W: a warning"),
                              QStringLiteral("N: a notice"), QStringLiteral("D: a detail")};

} // namespace

TEST(TORVLog, IsOneForTheWholeProcess)
{
    EXPECT_EQ(TORVLog::Instance(), TORVLog::Instance());
}

TEST(TORVLog, ShowsAsManyPrefixesAsItsLevelAllows)
{
    for (int level = 0; level <= 3; ++level) {
        EXPECT_EQ(loggedAt(level), AllLines.mid(0, level + 1)) << level;
    }
}

TEST(TORVLog, BringsALevelIntoItsRange)
{
    EXPECT_EQ(loggedAt(7), AllLines);
    EXPECT_EQ(loggedAt(-1), AllLines.mid(0, 1));
}

TEST(TORVLog, LogsATextAtAGivenLevelAsItIs)
{
    const LogFile log(TORVLog::LEVEL_WARNING);
    TORVLog::Instance()->logLog(QStringLiteral("E: kept"), TORVLog::LEVEL_WARNING);
    TORVLog::Instance()->logLog(QStringLiteral("E: dropped"), TORVLog::LEVEL_NOTICE);
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral("E: kept")));
}

TEST(TORVLog, BeginsAFileWithTheNameOfTheProgram)
{
    const LogFile log(TORVLog::LEVEL_ERROR);
    TORVLog::Instance()->logInit(QStringLiteral("viewer"), log.path());
    ASSERT_EQ(log.stampedLines().size(), 1);
    EXPECT_TRUE(log.stampedLines().first().endsWith(QLatin1String(" viewer starting")));
}

TEST(TORVLog, StampsEachLineOfAFileWithTheLocalTime)
{
    const LogFile log(TORVLog::LEVEL_ERROR);
    // A stamp has whole seconds.
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    TORVLog::Instance()->logError(QStringLiteral("an error"));
    const QDateTime after = QDateTime::currentDateTime();
    const QString line = log.stampedLines().value(0);
    const int stampLength = line.indexOf(QLatin1String(" E: an error"));
    ASSERT_GT(stampLength, 0) << qUtf8Printable(line);
    const QDateTime stamp = QDateTime::fromString(line.left(stampLength), Qt::TextDate);
    EXPECT_LE(before, stamp);
    EXPECT_LE(stamp, after);
}

TEST(TORVLog, HasNoTimeStampOnTheConsole)
{
    TORVLog::Instance()->logOpen(QString());
    EXPECT_TRUE(TORVLog::Instance()->timestamp().isEmpty());
}

TEST(TORVLog, HasATimeStampAndABlankInAFile)
{
    const LogFile log(TORVLog::LEVEL_ERROR);
    EXPECT_TRUE(TORVLog::Instance()->timestamp().endsWith(QLatin1Char(' ')));
}

TEST(TORVLog, AppendsToAFileThatIsThere)
{
    const LogFile log(TORVLog::LEVEL_ERROR);
    TORVLog::Instance()->logError(QStringLiteral("first"));
    TORVLog::Instance()->logOpen(log.path());
    TORVLog::Instance()->logError(QStringLiteral("second"));
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("E: first"), QStringLiteral("E: second")}));
}

TEST(TORVLog, StaysWithItsFileWhenToldToReopenIt)
{
    const LogFile log(TORVLog::LEVEL_ERROR);
    const QString moved = log.path() + QLatin1String(".1");
    ASSERT_TRUE(QFile::rename(log.path(), moved));
    TORVLog::Instance()->logReopen();
    TORVLog::Instance()->logError(QStringLiteral("an error"));
    EXPECT_FALSE(QFile::exists(log.path()));
    EXPECT_GT(QFile(moved).size(), 0);
}

TEST(TORVLog, DropsWhatIsLoggedBeforeItIsOpen)
{
    // The probe logs an error before anything else.
    const ProcessRun::Outcome outcome = ProcessRun(Probe)({QStringLiteral("levels")});
    EXPECT_EQ(outcome.logLines(), QStringList({QStringLiteral("test_app_probe starting"), AllLines.first()}));
    EXPECT_FALSE(outcome.errors.contains(QLatin1String("too early")));
}

TEST(TORVLog, FallsBackToTheConsoleWhenTheFileCanNotBeWritten)
{
    const SandboxedHome home;
    const QString path = home.filePath(QStringLiteral("nowhere/test.log"));
    const ProcessRun::Outcome outcome = ProcessRun(Probe)({QStringLiteral("log"), path, QStringLiteral("levels")});
    EXPECT_EQ(outcome.logLines(),
              QStringList({QStringLiteral("test_app_probe starting"),
                           QStringLiteral("E: ERROR 0 WHEN OPENING LOG FILE %1, LOGGING TO CONSOLE").arg(path),
                           QStringLiteral("probe starting"), AllLines.first()}));
}

TEST(TORVLog, WritesWholeLinesFromManyThreads)
{
    constexpr int ThreadCount = 4;
    constexpr int LineCount = 250;
    const LogFile log(TORVLog::LEVEL_ERROR);
    std::vector<std::thread> threads;
    threads.reserve(ThreadCount);
    for (int i = 0; i < ThreadCount; ++i) {
        threads.emplace_back([] {
            for (int line = 0; line < LineCount; ++line) {
                TORVLog::Instance()->logError(QStringLiteral("a line as long as any other"));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const QStringList lines = log.lines();
    EXPECT_EQ(lines.size(), ThreadCount * LineCount);
    EXPECT_EQ(lines.count(QStringLiteral("E: a line as long as any other")), ThreadCount * LineCount);
}

TEST(TORVLog, KeepsTheHistoryOutOfTheLog)
{
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const QSignalSpy texts(TORVLog::Instance(), SIGNAL(historyAdd(QString)));
    TORVLog::Instance()->logHistory(QStringLiteral("for the user"));
    ASSERT_EQ(texts.size(), 1);
    EXPECT_EQ(texts.at(0).at(0).toString(), QLatin1String("for the user"));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST(TORVLog, KeepsAListForTheHistoryOutOfTheLog)
{
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const QSignalSpy texts(TORVLog::Instance(), SIGNAL(historyAdd(QString)));
    const QSignalSpy lists(TORVLog::Instance(), SIGNAL(historyAdd(QStringList)));
    const QStringList lines = {QStringLiteral("- one"), QStringLiteral("- two")};
    TORVLog::Instance()->logHistory(lines);
    ASSERT_EQ(lists.size(), 1);
    EXPECT_EQ(lists.at(0).at(0).toStringList(), lines);
    EXPECT_TRUE(texts.isEmpty());
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST(TORVLog, LogsThatTheStatusChangedButNotItsText)
{
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const QSignalSpy spy(TORVLog::Instance(), SIGNAL(statusAdd(QString, int)));
    TORVLog::Instance()->logStatus(QStringLiteral("Busy"), 2000);
    ASSERT_EQ(spy.size(), 1);
    EXPECT_EQ(spy.at(0).at(0).toString(), QLatin1String("Busy"));
    EXPECT_EQ(spy.at(0).at(1).toInt(), 2000);
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral("D: Update status")));
}

TEST(TORVLog, GreetsWhoeverConnects)
{
    const HistoryReceiver receiver;
    EXPECT_TRUE(connectTo(receiver));
    EXPECT_EQ(receiver.history, QStringList(QStringLiteral("Welcome to TORV 3DView")));
}

TEST(TORVLog, FeedsWhoeverConnects)
{
    const HistoryReceiver receiver;
    ASSERT_TRUE(connectTo(receiver));
    TORVLog::Instance()->logHistory(QStringLiteral("for the user"));
    TORVLog::Instance()->logStatus(QStringLiteral("Busy"), 2000);
    EXPECT_EQ(receiver.history.value(1), QLatin1String("for the user"));
    EXPECT_EQ(receiver.status, QStringList(QStringLiteral("Busy 2000")));
}

TEST(TORVLog, LeavesTheListFormForTheReceiverToConnect)
{
    const HistoryReceiver receiver;
    ASSERT_TRUE(connectTo(receiver));
    TORVLog::Instance()->logHistory(QStringList(QStringLiteral("- one")));
    EXPECT_EQ(receiver.history.size(), 1);
}

TEST(TORVLog, TellsWhenTheStatusSlotIsMissing)
{
    MessageGuard::expect(QStringLiteral("No such slot"));
    const HistoryReceiver receiver;
    EXPECT_FALSE(TORVLog::Instance()->logConnect(&receiver, SLOT(historyAdd(QString)), SLOT(noSuchSlot(QString, int))));
    EXPECT_EQ(receiver.history.size(), 1);
}

TEST(TORVLog, BringsTheHistoryOfAWorkerToTheThreadOfTheReceiver)
{
    int argc = 0;
    const QCoreApplication application(argc, nullptr);
    const HistoryReceiver receiver;
    ASSERT_TRUE(connectTo(receiver));
    std::thread worker([] { TORVLog::Instance()->logHistory(QStringLiteral("from a worker")); });
    worker.join();
    EXPECT_EQ(receiver.history.size(), 1) << "it must wait for the event loop";
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(receiver.history.value(1), QLatin1String("from a worker"));
    EXPECT_EQ(receiver.thread, QThread::currentThread());
}
