#include "utils/TORVApplication.h"

#include "support/LogFile.h"
#include "support/ProcessRun.h"
#include "support/SandboxedHome.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <pwd.h>
#include <unistd.h>

namespace
{

const QString Probe = QStringLiteral(TORV_APP_PROBE);

const char* const Passwd = "root:x:0:0:root:/root:/bin/bash\n"
                           "mytorv3d:x:1001:1001::/home/wrong:/bin/sh\n"
                           "torv3d:x:1002:1002:Radar,,,:/srv/torv3d:/bin/sh\n"
                           "axb:x:1003:1003::/home/wrong:/bin/sh\n"
                           "a.b:x:1004:1004::/home/a.b:/bin/sh\n"
                           "shellless:x:1005:1005::/home/shellless\n"
                           "homeless:x:1006:1006:::/bin/sh\n"
                           "last:x:1007:1007::/home/last:/bin/sh";

// Shell scripts that take the place of system commands.
class FakeCommands final
{
public:
    explicit FakeCommands(const SandboxedHome& home) : _home(home) {}

    void write(const QString& name, const QByteArray& script) const
    {
        const QString path = _home.write(QLatin1String("bin/") + name, "#!/bin/sh\n" + script + '\n');
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    void writeWhereis(const QByteArray& answer) const
    {
        write(QStringLiteral("whereis"), "echo \"$@\" >> whereis.calls\nprintf '" + answer + "'");
    }

    // Both commands, the service with a script of the test.
    void writeService(const QByteArray& script) const
    {
        writeWhereis("service: " + QFile::encodeName(path(QStringLiteral("service"))) + " /usr/share/service\\n");
        write(QStringLiteral("service"), "echo \"$@\" >> service.calls\n" + script);
    }

    QString path(const QString& name) const { return _home.filePath(QLatin1String("bin/") + name); }

    ProcessRun::Outcome run(const QStringList& words) const
    {
        return ProcessRun(Probe)
            .with(QStringLiteral("PATH"), path(QString()))
            .in(_home.path())(QStringList{QStringLiteral("--loglevel=3")} + words);
    }

    QByteArray calls(const QString& name) const
    {
        QFile file(_home.filePath(name + QLatin1String(".calls")));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    const SandboxedHome& _home;
};

class TORVApplicationServicesTest : public testing::Test
{
protected:
    QString homeOf(const QString& user) const { return TORVApplication::getUserHomeDirectory(user, passwd); }

    const SandboxedHome home;
    const QString passwd = home.write(QStringLiteral("passwd"), Passwd);
    const FakeCommands commands{home};
};

// A figure of coreutils' stat.
qint64 statFigure(const QStringList& arguments)
{
    return ProcessRun(QStringLiteral("stat"))(arguments).output.trimmed().toLongLong();
}

} // namespace

TEST_F(TORVApplicationServicesTest, FindsTheHomeOfAUserInThePasswdFile)
{
    EXPECT_EQ(homeOf(QStringLiteral("root")), QLatin1String("/root"));
    EXPECT_EQ(homeOf(QStringLiteral("last")), QLatin1String("/home/last"));
}

TEST_F(TORVApplicationServicesTest, TakesNoUserWhoseNameOnlyEndsLikeTheOneAskedFor)
{
    EXPECT_EQ(homeOf(QStringLiteral("torv3d")), QLatin1String("/srv/torv3d"));
}

TEST_F(TORVApplicationServicesTest, TakesAPointInANameForAPoint)
{
    EXPECT_EQ(homeOf(QStringLiteral("a.b")), QLatin1String("/home/a.b"));
}

TEST_F(TORVApplicationServicesTest, EndsTheHomeAtTheEndOfTheLine)
{
    EXPECT_EQ(homeOf(QStringLiteral("shellless")), QLatin1String("/home/shellless"));
}

TEST_F(TORVApplicationServicesTest, HasNoHomeForAnUnknownOrEmptyUser)
{
    EXPECT_TRUE(homeOf(QStringLiteral("nobodyknows")).isEmpty());
    EXPECT_TRUE(homeOf(QString()).isEmpty());
    EXPECT_TRUE(TORVApplication::getUserHomeDirectory(QString()).isEmpty());
    EXPECT_TRUE(TORVApplication::getUserHomeDirectory(QStringLiteral("nobodyknows")).isEmpty());
}

TEST_F(TORVApplicationServicesTest, HasNoHomeForAUserWithoutOne)
{
    EXPECT_TRUE(homeOf(QStringLiteral("homeless")).isEmpty());
}

TEST_F(TORVApplicationServicesTest, TakesNoFieldsForPartOfAName)
{
    // As a pattern this would match with the fields moved by one, and the shell would be the home.
    EXPECT_TRUE(homeOf(QStringLiteral("root:x")).isEmpty());
}

TEST_F(TORVApplicationServicesTest, GivesTheRootPathWithoutPasswdFile)
{
    const QString missing = home.filePath(QStringLiteral("missing"));
    EXPECT_EQ(TORVApplication::getUserHomeDirectory(QStringLiteral("anna"), missing), QLatin1String("/"));
}

TEST_F(TORVApplicationServicesTest, GivesTheUsualHomeWhenThePasswdFileCanNotBeRead)
{
    // A directory is there and can't be read as a file, not even by root.
    const LogFile log(TORVLog::LEVEL_NOTICE);
    EXPECT_EQ(TORVApplication::getUserHomeDirectory(QStringLiteral("anna"), home.path()), QLatin1String("/home/anna"));
    EXPECT_EQ(
        log.lines(),
        QStringList({QStringLiteral("W: Error reading %1, using default home directory for user anna").arg(home.path()),
                     QStringLiteral("N:   - default home directory is /home/anna")}));
}

TEST_F(TORVApplicationServicesTest, FindsTheOwnUserOfTheProcess)
{
    const struct passwd* const self = ::getpwuid(::geteuid());
    if (!self) {
        GTEST_SKIP() << "the user of this process has no entry in the user data base";
    }
    EXPECT_EQ(TORVApplication::getUserHomeDirectory(QString::fromLocal8Bit(self->pw_name)),
              QString::fromLocal8Bit(self->pw_dir));
}

TEST_F(TORVApplicationServicesTest, AsksTheNameServiceForAUserThatThePasswdFileLacks)
{
    TORV_NEEDS_PRIVATE_MOUNTS();
    // An entry without password field content is one that only the name service accepts.
    const QString file = home.write(QStringLiteral("odd"), "anna::1000:1000::/home/anna:/bin/sh\n");
    const ProcessRun::Outcome outcome = ProcessRun(Probe)
                                            .with(QStringLiteral("FILE"), file)
                                            .privately(QStringLiteral("mount --bind \"$FILE\" /etc/passwd"))(
                                                {QStringLiteral("home"), QStringLiteral("anna")});
    EXPECT_EQ(outcome.output, QLatin1String("/home/anna\n")) << qUtf8Printable(outcome.errors);
    EXPECT_TRUE(TORVApplication::getUserHomeDirectory(QStringLiteral("anna"), file).isEmpty());
}

TEST_F(TORVApplicationServicesTest, HasSettingsBelowTheHomeOfAUser)
{
    const struct passwd* const root = ::getpwnam("root");
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(TORVApplication::getUserSettingsDirectory(QStringLiteral("root")),
              QString::fromLocal8Bit(root->pw_dir) + QLatin1String("/.config/Halmera"));
}

TEST_F(TORVApplicationServicesTest, HasNoSettingsDirectoryWithoutAHome)
{
    EXPECT_TRUE(TORVApplication::getUserSettingsDirectory(QStringLiteral("nobodyknows")).isEmpty());
    EXPECT_TRUE(TORVApplication::getUserSettingsDirectory(QString()).isEmpty());
}

TEST_F(TORVApplicationServicesTest, ReadsTheEnvironment)
{
    qputenv("TORV_TEST_VALUE", "some text");
    qputenv("TORV_TEST_EMPTY", "");
    EXPECT_EQ(TORVApplication::getEnvVar(QStringLiteral("TORV_TEST_VALUE")), QLatin1String("some text"));
    EXPECT_FALSE(TORVApplication::getEnvVar(QStringLiteral("TORV_TEST_EMPTY")).isNull());
    EXPECT_TRUE(TORVApplication::getEnvVar(QStringLiteral("TORV_TEST_UNSET")).isNull());
    qunsetenv("TORV_TEST_VALUE");
    qunsetenv("TORV_TEST_EMPTY");
}

TEST_F(TORVApplicationServicesTest, TakesTheLoginUserFromTheEnvironment)
{
    const QByteArray before = qgetenv("USER");
    qputenv("USER", "anna");
    EXPECT_EQ(TORVApplication::getLoginUser(), QLatin1String("anna"));
    qunsetenv("USER");
    EXPECT_TRUE(TORVApplication::getLoginUser().isEmpty());
    if (!before.isNull()) {
        qputenv("USER", before);
    }
}

TEST_F(TORVApplicationServicesTest, TellsTheProcessId)
{
    EXPECT_EQ(TORVApplication::getMyPid(), ::getpid());
}

TEST_F(TORVApplicationServicesTest, LooksForTheSystemConfigurationInTwoPlaces)
{
    TORV_NEEDS_PRIVATE_MOUNTS();

    struct Row
    {
        const char* directories;
        const char* found;
    };

    for (const Row& row : {Row{"/etc/sysconfig /etc/default", "/etc/sysconfig\n"},
                           Row{"/etc/default", "/etc/default\n"}, Row{"/etc/other", "\n"}}) {
        const QString preparation =
            QLatin1String("mount -t tmpfs none /etc && mkdir ") + QLatin1String(row.directories);
        const ProcessRun::Outcome outcome = ProcessRun(Probe).privately(preparation)({QStringLiteral("etc")});
        EXPECT_EQ(outcome.output, QLatin1String(row.found)) << qUtf8Printable(outcome.errors);
    }
}

TEST_F(TORVApplicationServicesTest, CountsMebibytesInWholeKibibytesOfABlock)
{
    EXPECT_EQ(TORVApplication::mebibytes(4096, 512), 2); // 4 x 512 = 2048 KiB
    EXPECT_EQ(TORVApplication::mebibytes(4096, 511), 1); // 2044 KiB
    EXPECT_EQ(TORVApplication::mebibytes(5000, 512), 2); // 5000 bytes count as 4 KiB
    EXPECT_EQ(TORVApplication::mebibytes(4096, 0), 0);
}

TEST_F(TORVApplicationServicesTest, GivesNothingForBlocksBelowAKibibyte)
{
    EXPECT_EQ(TORVApplication::mebibytes(512, 1000000), 0);
    EXPECT_EQ(TORVApplication::mebibytes(0, 1000000), 0);
}

TEST_F(TORVApplicationServicesTest, CountsBeyondFourTebibytes)
{
    // 4 KiB x 2^31 = 2^33 KiB = 2^23 MiB; in 32 bits it would be 0.
    EXPECT_EQ(TORVApplication::mebibytes(4096, Q_UINT64_C(1) << 31), 8388608);
}

TEST_F(TORVApplicationServicesTest, StopsAtTheLargestInt)
{
    // 4 KiB x 2^39 = 2^41 KiB = 2^31 MiB, one more than an int holds.
    EXPECT_EQ(TORVApplication::mebibytes(4096, Q_UINT64_C(1) << 39), INT_MAX);
    EXPECT_EQ(TORVApplication::mebibytes(4096, (Q_UINT64_C(1) << 39) - 256), INT_MAX);
    EXPECT_EQ(TORVApplication::mebibytes(4096, (Q_UINT64_C(1) << 39) - 257), INT_MAX - 1);
    EXPECT_EQ(TORVApplication::mebibytes(Q_UINT64_C(1) << 20, std::numeric_limits<quint64>::max()), INT_MAX);
}

TEST_F(TORVApplicationServicesTest, ReckonsDiskSpaceWithTheBlockSizeOfTheFile)
{
    const QString path = home.path();
    const qint64 ioBlock = statFigure({QStringLiteral("-c"), QStringLiteral("%o"), path});
    const qint64 blocks = statFigure({QStringLiteral("-f"), QStringLiteral("-c"), QStringLiteral("%b"), path});
    ASSERT_GT(ioBlock, 0);
    int total = -1;
    int available = -1;
    ASSERT_TRUE(TORVApplication::getDiskSpace(path, total, available));
    EXPECT_EQ(total, qMin<qint64>(ioBlock / 1024 * blocks / 1024, INT_MAX));
    EXPECT_GE(available, 0);
    EXPECT_LE(available, total);
}

TEST_F(TORVApplicationServicesTest, TellsWhatIsAvailableNotWhatIsUsed)
{
    const QString path = home.path();
    const qint64 ioBlock = statFigure({QStringLiteral("-c"), QStringLiteral("%o"), path});
    const qint64 blocks = statFigure({QStringLiteral("-f"), QStringLiteral("-c"), QStringLiteral("%a"), path});
    int total = -1;
    int available = -1;
    ASSERT_TRUE(TORVApplication::getDiskSpace(path, total, available));
    // Others write to the disk meanwhile: a gibibyte is allowed for them.
    EXPECT_NEAR(available, static_cast<double>(qMin<qint64>(ioBlock / 1024 * blocks / 1024, INT_MAX)), 1024.0);
}

TEST_F(TORVApplicationServicesTest, TakesARelativePathFromTheWorkingDirectory)
{
    int total = -1;
    int available = -1;
    EXPECT_TRUE(TORVApplication::getDiskSpace(QStringLiteral("."), total, available));
}

TEST_F(TORVApplicationServicesTest, HasNoDiskSpaceForAPathThatIsNotThere)
{
    const LogFile log(TORVLog::LEVEL_DEBUG);
    int total = 5;
    int available = 5;
    EXPECT_FALSE(TORVApplication::getDiskSpace(home.filePath(QStringLiteral("nowhere")), total, available));
    EXPECT_EQ(total, 0);
    EXPECT_EQ(available, 0);
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral("D: stat returns 2"))); // ENOENT
}

TEST_F(TORVApplicationServicesTest, AServiceWithStatusZeroIsRunning)
{
    commands.writeService("exit 0");
    const ProcessRun::Outcome outcome = commands.run({QStringLiteral("service"), QStringLiteral("torv3dviewd")});
    EXPECT_EQ(outcome.output, QLatin1String("torv3dviewd running\n")) << qUtf8Printable(outcome.errors);
    EXPECT_EQ(commands.calls(QStringLiteral("service")), "torv3dviewd status\n");
    EXPECT_EQ(commands.calls(QStringLiteral("whereis")), "-b service\n");
}

TEST_F(TORVApplicationServicesTest, AServiceWithAnotherStatusIsStopped)
{
    commands.writeService("exit 3");
    const ProcessRun::Outcome outcome = commands.run({QStringLiteral("service"), QStringLiteral("torv3dviewd")});
    EXPECT_EQ(outcome.output, QLatin1String("torv3dviewd stopped\n"));
    EXPECT_TRUE(outcome.logLines().contains(QLatin1String("D: Service status check: torv3dviewd -> 3")))
        << qUtf8Printable(outcome.errors);
}

TEST_F(TORVApplicationServicesTest, ACommandThatCrashesMeansStopped)
{
    commands.writeService("kill -9 $$");
    const ProcessRun::Outcome outcome = commands.run({QStringLiteral("service"), QStringLiteral("torv3dviewd")});
    EXPECT_EQ(outcome.output, QLatin1String("torv3dviewd stopped\n"));
}

TEST_F(TORVApplicationServicesTest, ACommandThatGivesNoAnswerMeansStopped)
{
    commands.writeService("exec /bin/sleep 600");
    const ProcessRun::Outcome outcome = commands.run({QStringLiteral("briefly"), QStringLiteral("torv3dviewd")});
    EXPECT_EQ(outcome.output, QLatin1String("torv3dviewd stopped\n"));
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST_F(TORVApplicationServicesTest, TakesTheFirstAbsolutePathOfTheAnswer)
{
    commands.writeService("exit 0");
    const ProcessRun::Outcome outcome = commands.run({QStringLiteral("service"), QStringLiteral("torv3dviewd")});
    const QString line = QLatin1String("D: Service command is: ") + commands.path(QStringLiteral("service"));
    EXPECT_TRUE(outcome.logLines().contains(line)) << qUtf8Printable(outcome.errors);
}

TEST_F(TORVApplicationServicesTest, TakesTheAnswerUpToItsFirstZeroByte)
{
    commands.writeWhereis("service:\\000 /usr/sbin/service\\n");
    const ProcessRun::Outcome outcome = commands.run({QStringLiteral("service"), QStringLiteral("torv3dviewd")});
    EXPECT_TRUE(outcome.logLines().contains(QLatin1String("E: Could not locate shell command 'service'")))
        << qUtf8Printable(outcome.errors);
}

TEST_F(TORVApplicationServicesTest, TakesNoAnswerAboutSomethingElse)
{
    commands.writeWhereis("other: /usr/sbin/other\\n");
    const ProcessRun::Outcome outcome = commands.run({QStringLiteral("service"), QStringLiteral("torv3dviewd")});
    EXPECT_TRUE(outcome.logLines().contains(QLatin1String("E: Could not locate shell command 'service'")));
}

TEST_F(TORVApplicationServicesTest, SaysOnceThatTheCommandIsMissing)
{
    commands.writeWhereis("service:\\n");
    const ProcessRun::Outcome outcome = commands.run(
        {QStringLiteral("service"), QStringLiteral("first"), QStringLiteral("service"), QStringLiteral("second")});
    EXPECT_EQ(outcome.output, QLatin1String("first stopped\nsecond stopped\n"));
    EXPECT_EQ(outcome.logLines().mid(1),
              QStringList({QStringLiteral("E: Could not locate shell command 'service'"),
                           QStringLiteral("N: Background task activity indicator will not work")}));
    EXPECT_EQ(commands.calls(QStringLiteral("whereis")), "-b service\n");
}

TEST_F(TORVApplicationServicesTest, DoesWithoutWhereis)
{
    const ProcessRun::Outcome outcome = commands.run({QStringLiteral("service"), QStringLiteral("torv3dviewd")});
    EXPECT_EQ(outcome.output, QLatin1String("torv3dviewd stopped\n"));
    EXPECT_TRUE(outcome.logLines().contains(QLatin1String("E: Could not locate shell command 'service'")));
}

TEST_F(TORVApplicationServicesTest, SearchesTheCommandOnceForAllThreads)
{
    commands.writeService("exit 0");
    const ProcessRun::Outcome outcome = commands.run({QStringLiteral("threads"), QStringLiteral("torv3dviewd")});
    EXPECT_EQ(outcome.output.count(QLatin1String("torv3dviewd running\n")), 4);
    EXPECT_EQ(commands.calls(QStringLiteral("whereis")), "-b service\n");
}

TEST_F(TORVApplicationServicesTest, TellsAProgramThatDoesNotStartFromOneThatFails)
{
    const QString shell = QStringLiteral("/bin/sh");
    const QString option = QStringLiteral("-c");
    EXPECT_EQ(TORVApplication::runCommand(shell, {option, QStringLiteral("exit 7")}, 60000), 7);
    EXPECT_EQ(TORVApplication::runCommand(shell, {option, QStringLiteral("kill -9 $$")}, 60000), -1);
    EXPECT_EQ(TORVApplication::runCommand(home.filePath(QStringLiteral("missing")), {}, 60000), -1);
}

TEST_F(TORVApplicationServicesTest, GivesBackWhatAProgramWrote)
{
    QByteArray output;
    const QStringList arguments = {QStringLiteral("-c"), QStringLiteral("echo out; echo err >&2")};
    EXPECT_EQ(TORVApplication::runCommand(QStringLiteral("/bin/sh"), arguments, 60000, &output), 0);
    EXPECT_EQ(output, "out\n");
}
