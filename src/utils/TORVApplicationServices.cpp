// What the rest of the program asks the operating system for.
#include "utils/TORVApplication.h"

#include "utils/TORVLog.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>

#include <pwd.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <mutex>
#include <vector>

namespace
{

const QString PasswdFile = QStringLiteral("/etc/passwd");
const QString InvalidCommand = QStringLiteral("INVALID");

constexpr std::size_t PasswdEntryLimit = 65536;
constexpr int KillTimeLimit_ms = 1000;

std::mutex serviceCommandMutex;

QString homeFromNameService(const QString& user)
{
    std::vector<char> buffer(PasswdEntryLimit);
    passwd entry{};
    passwd* found = nullptr;
    ::getpwnam_r(QFile::encodeName(user).constData(), &entry, buffer.data(), buffer.size(), &found);
    return found ? QFile::decodeName(found->pw_dir) : QString();
}

QString homeFromPasswdText(const QString& user, const QString& text)
{
    const QRegularExpression line(QLatin1Char('^') + QRegularExpression::escape(user) +
                                      QLatin1String(":[^:\\n]+:[^:\\n]*:[^:\\n]+:[^:\\n]*:([^:\\n]+)"),
                                  QRegularExpression::MultilineOption);
    return line.match(text).captured(1);
}

QString firstAbsolutePath(const QString& whereisAnswer)
{
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    const QStringList words = whereisAnswer.split(blanks);
    if (words.first() != QLatin1String("service:")) {
        return {};
    }
    const auto path = std::find_if(words.cbegin(), words.cend(), QDir::isAbsolutePath);
    return path == words.cend() ? QString() : *path;
}

} // namespace

QString TORVApplication::serviceCommand;

QString TORVApplication::getLoginUser()
{
    return getEnvVar(QStringLiteral("USER"));
}

QString TORVApplication::getEnvVar(const QString& name)
{
    return qEnvironmentVariable(name.toLocal8Bit().constData());
}

int TORVApplication::getMyPid()
{
    return static_cast<int>(applicationPid());
}

QString TORVApplication::getSystemConfigurationDirectory()
{
    for (const QString& directory : {QStringLiteral("/etc/sysconfig"), QStringLiteral("/etc/default")}) {
        if (QDir(directory).exists()) {
            return directory;
        }
    }
    return {};
}

QString TORVApplication::getUserHomeDirectory(const QString& user, const QString& passwdFile)
{
    // A colon would let a name match more fields than its own.
    if (user.isEmpty() || user.contains(QLatin1Char(':'))) {
        return {};
    }
    QFile file(passwdFile);
    if (!file.exists()) {
        return QDir::rootPath();
    }
    const QByteArray content = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    if (file.error() != QFileDevice::NoError) {
        QString byDefault = QLatin1String("/home/") + user;
        TORVLog::Instance()->logWarning(
            QStringLiteral("Error reading %1, using default home directory for user %2").arg(passwdFile, user));
        TORVLog::Instance()->logNotice(QLatin1String("  - default home directory is ") + byDefault);
        return byDefault;
    }
    const QString home = homeFromPasswdText(user, QString::fromLocal8Bit(content));
    return home.isEmpty() && passwdFile == PasswdFile ? homeFromNameService(user) : home;
}

QString TORVApplication::getUserSettingsDirectory(const QString& user)
{
    const QString home = getUserHomeDirectory(user);
    if (home.isEmpty()) {
        return {};
    }
    return home + QDir::separator() + QLatin1String(".config") + QDir::separator() + ORGANIZATION_NAME;
}

bool TORVApplication::getDiskSpace(const QString& path, int& total, int& available)
{
    total = 0;
    available = 0;
    const QByteArray name = QFile::encodeName(QDir(path).absolutePath());
    struct stat file = {};
    if (::stat(name.constData(), &file) != 0) {
        const int error = errno;
        TORVLog::Instance()->logDebug(QStringLiteral("stat returns %1").arg(error));
        return false;
    }
    struct statfs fileSystem = {};
    if (::statfs(name.constData(), &fileSystem) != 0) {
        const int error = errno;
        TORVLog::Instance()->logDebug(QStringLiteral("statfs returns %1").arg(error));
        return false;
    }
    const quint64 blockSize = static_cast<quint64>(std::max<blksize_t>(file.st_blksize, 0));
    total = mebibytes(blockSize, fileSystem.f_blocks);
    available = mebibytes(blockSize, fileSystem.f_bavail);
    return true;
}

int TORVApplication::mebibytes(quint64 blockSize, quint64 blocks)
{
    constexpr int largest = std::numeric_limits<int>::max();
    const quint64 kibibytes = blockSize / 1024;
    if (kibibytes != 0 && blocks > std::numeric_limits<quint64>::max() / kibibytes) {
        return largest;
    }
    return static_cast<int>(std::min<quint64>(kibibytes * blocks >> 10, largest));
}

bool TORVApplication::isServiceRunning(const QString& name, int timeLimit_ms)
{
    const QString command = resolveServiceCommand();
    if (command == InvalidCommand) {
        return false;
    }
    const int status = runCommand(command, {name, QStringLiteral("status")}, timeLimit_ms);
    TORVLog::Instance()->logDebug(QStringLiteral("Service status check: %1 -> %2").arg(name).arg(status));
    return status == 0;
}

QString TORVApplication::resolveServiceCommand()
{
    const std::lock_guard<std::mutex> lock(serviceCommandMutex);
    if (!serviceCommand.isEmpty()) {
        return serviceCommand;
    }
    QByteArray answer;
    runCommand(QStringLiteral("whereis"), {QStringLiteral("-b"), QStringLiteral("service")}, CommandTimeLimit_ms,
               &answer);
    // constData: the answer counts up to its first zero byte.
    serviceCommand = firstAbsolutePath(QString::fromLocal8Bit(answer.constData()));
    if (serviceCommand.isEmpty()) {
        TORVLog::Instance()->logError(QStringLiteral("Could not locate shell command 'service'"));
        TORVLog::Instance()->logNotice(QStringLiteral("Background task activity indicator will not work"));
        serviceCommand = InvalidCommand;
    } else {
        TORVLog::Instance()->logDebug(QLatin1String("Service command is: ") + serviceCommand);
    }
    return serviceCommand;
}

int TORVApplication::runCommand(const QString& program, const QStringList& arguments, int timeLimit_ms,
                                QByteArray* output)
{
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForFinished(timeLimit_ms)) {
        process.kill();
        process.waitForFinished(KillTimeLimit_ms);
        return -1;
    }
    if (output) {
        *output = process.readAllStandardOutput();
    }
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}
