#include "support/ProcessRun.h"
#include "support/SandboxedHome.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QThread>

#include <gtest/gtest.h>

#include <csignal>
#include <functional>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

const QString Probe = QStringLiteral(TORV_APP_PROBE);
constexpr int Parent = 2; // exit status of the probe as a daemon's parent
constexpr int Patience_ms = 30000;

bool eventually(const std::function<bool()>& condition)
{
    QElapsedTimer timer;
    timer.start();
    bool isTrue = condition();
    while (!isTrue && timer.elapsed() < Patience_ms) {
        QThread::msleep(5);
        isTrue = condition();
    }
    return isTrue;
}

QString content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// A background process that is stopped at the end of the test.
class Daemon final
{
public:
    explicit Daemon(const SandboxedHome& home) : _home(home)
    {
        // The daemon loses its parent; this process takes it over, so as to see how it ends.
        ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    }

    ~Daemon()
    {
        if (_pid > 0) {
            ::kill(_pid, SIGKILL);
            ::waitpid(_pid, nullptr, 0);
        }
    }

    Daemon(const Daemon&) = delete;
    Daemon& operator=(const Daemon&) = delete;

    ProcessRun::Outcome start()
    {
        const ProcessRun::Outcome outcome =
            ProcessRun(Probe)
                .with(QStringLiteral("PIDFILE"), pidFile())
                .in(QStringLiteral("/tmp"))({QStringLiteral("--daemon"), QStringLiteral("--loglevel=3"),
                                             QLatin1String("--logfile=") + logFile(), QStringLiteral("loop")});
        const QRegularExpression looping(QStringLiteral("N: looping as process (\\d+)\n"));
        EXPECT_TRUE(eventually([&] { return content(logFile()).contains(looping); }))
            << qUtf8Printable(content(logFile()));
        _pid = looping.match(content(logFile())).captured(1).toInt();
        return outcome;
    }

    void send(int signal) const { ASSERT_EQ(::kill(_pid, signal), 0); }

    // Its exit status as a shell would tell it; it is gone afterwards.
    int waitForEnd()
    {
        int status = 0;
        const bool isGone = eventually([&] { return ::waitpid(_pid, &status, WNOHANG) == _pid; });
        if (!isGone) {
            return -1;
        }
        _pid = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

    bool hasLogged(const QString& text) const
    {
        return eventually([&] { return content(logFile()).contains(text); });
    }

    // A link or a line of what the system knows about the process.
    QString procLink(const QString& name) const { return QFile::symLinkTarget(procPath(name)); }

    QString procText(const QString& name) const { return content(procPath(name)); }

    int pid() const { return _pid; }

    QString pidFile() const { return _home.filePath(QStringLiteral("probe.pid")); }

    QString logFile() const { return _home.filePath(QStringLiteral("probe.log")); }

private:
    QString procPath(const QString& name) const { return QStringLiteral("/proc/%1/").arg(_pid) + name; }

    const SandboxedHome& _home;
    pid_t _pid = 0;
};

class TORVApplicationDaemonTest : public testing::Test
{
protected:
    const SandboxedHome home;
    Daemon daemon{home};
};

} // namespace

TEST_F(TORVApplicationDaemonTest, TheParentEndsAndTheChildGoesOn)
{
    EXPECT_EQ(daemon.start().exitCode, Parent);
    EXPECT_EQ(::kill(daemon.pid(), 0), 0);
    EXPECT_TRUE(daemon.hasLogged(QStringLiteral("N: Daemon forked - parent stopping...")));
    EXPECT_TRUE(daemon.hasLogged(QStringLiteral("D:    ... child continues")));
}

TEST_F(TORVApplicationDaemonTest, WritesItsProcessIdAndALineEnd)
{
    daemon.start();
    EXPECT_EQ(content(daemon.pidFile()), QString::number(daemon.pid()) + QLatin1Char('\n'));
    EXPECT_TRUE(daemon.hasLogged(QLatin1String("D: Writing pidfile: ") + daemon.pidFile()));
}

TEST_F(TORVApplicationDaemonTest, LeadsASessionOfItsOwn)
{
    daemon.start();
    EXPECT_EQ(::getsid(daemon.pid()), daemon.pid());
}

TEST_F(TORVApplicationDaemonTest, WorksInTheHomeDirectory)
{
    daemon.start();
    EXPECT_EQ(daemon.procLink(QStringLiteral("cwd")), QFileInfo(home.path()).canonicalFilePath());
    EXPECT_TRUE(daemon.hasLogged(QLatin1String("D: Setting working directory to ") + home.path()));
}

TEST_F(TORVApplicationDaemonTest, HoldsNoneOfTheStreamsThatItWasStartedWith)
{
    daemon.start();
    for (const QString& stream : {QStringLiteral("fd/0"), QStringLiteral("fd/1"), QStringLiteral("fd/2")}) {
        EXPECT_EQ(daemon.procLink(stream), QLatin1String("/dev/null"));
    }
}

TEST_F(TORVApplicationDaemonTest, MasksNoPermissionsOfItsFiles)
{
    daemon.start();
    EXPECT_TRUE(daemon.procText(QStringLiteral("status")).contains(QLatin1String("Umask:\t0000")));
}

TEST_F(TORVApplicationDaemonTest, LogsToTheFileWithTimeStamps)
{
    const ProcessRun::Outcome outcome = daemon.start();
    EXPECT_TRUE(outcome.logLines().isEmpty()) << qUtf8Printable(outcome.errors);
    // Such as "Fri Nov 21 10:56:31 2025 test_app_probe starting"
    const QRegularExpression line(
        QStringLiteral("^\\S+ \\S+ +\\d+ \\d\\d:\\d\\d:\\d\\d \\d{4} test_app_probe starting\n"));
    EXPECT_TRUE(content(daemon.logFile()).contains(line)) << qUtf8Printable(content(daemon.logFile()));
}

TEST_F(TORVApplicationDaemonTest, OutlivesAHangup)
{
    daemon.start();
    daemon.send(SIGHUP);
    EXPECT_TRUE(daemon.hasLogged(QStringLiteral("N: HANGUP signal received\n")));
    daemon.send(SIGTERM);
    EXPECT_EQ(daemon.waitForEnd(), 0);
}

TEST_F(TORVApplicationDaemonTest, EachOfTwoHangupsIsLogged)
{
    daemon.start();
    daemon.send(SIGHUP);
    ASSERT_TRUE(daemon.hasLogged(QStringLiteral("N: HANGUP signal received\n")));
    daemon.send(SIGHUP);
    EXPECT_TRUE(eventually(
        [this] { return content(daemon.logFile()).count(QLatin1String("N: HANGUP signal received\n")) == 2; }));
}

TEST_F(TORVApplicationDaemonTest, EndsOrderlyAtTheTerminationSignal)
{
    daemon.start();
    daemon.send(SIGTERM);
    EXPECT_EQ(daemon.waitForEnd(), 0);
    EXPECT_TRUE(content(daemon.logFile()).contains(QLatin1String("N: Termination signal received - quitting...\n")));
}

TEST_F(TORVApplicationDaemonTest, FailsToStartWhereNoProcessCanBeMade)
{
    const ProcessRun control(QStringLiteral("setpriv"));
    const QStringList unprivileged = {QStringLiteral("--reuid=65534"),
                                      QStringLiteral("--clear-groups"),
                                      QStringLiteral("--inh-caps=-all"),
                                      QStringLiteral("--bounding-set=-all"),
                                      QStringLiteral("prlimit"),
                                      QStringLiteral("--nproc=1"),
                                      Probe};
    if (control(unprivileged + QStringList{QStringLiteral("number")}).exitCode != 0) {
        GTEST_SKIP() << "this process can't start another one with fewer rights";
    }
    const ProcessRun::Outcome outcome = control(
        unprivileged + QStringList{QStringLiteral("--daemon"), QStringLiteral("--logfile="), QStringLiteral("loop")});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.logLines().contains(QLatin1String("E: Failed to start daemon")))
        << qUtf8Printable(outcome.errors);
}

TEST_F(TORVApplicationDaemonTest, WarnsWhenNoPidFileIsNamed)
{
    for (const QString& name : {QString(), QStringLiteral("")}) {
        const ProcessRun::Outcome outcome = ProcessRun(Probe).with(QStringLiteral("PIDFILE"), name)(
            {QStringLiteral("--loglevel=3"), QStringLiteral("pidfile")});
        EXPECT_EQ(outcome.logLines().mid(1), QStringList(QStringLiteral("W: No pid-file")));
    }
}

TEST_F(TORVApplicationDaemonTest, GoesOnWhenThePidFileCanNotBeWritten)
{
    const QString path = home.filePath(QStringLiteral("nowhere/probe.pid"));
    const ProcessRun::Outcome outcome = ProcessRun(Probe).with(QStringLiteral("PIDFILE"), path)(
        {QStringLiteral("--loglevel=3"), QStringLiteral("pidfile")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.logLines().mid(1), QStringList({QLatin1String("D: Writing pidfile: ") + path,
                                                      QLatin1String("E: Opening pid-file failed: ") + path}));
}
