// What a background process needs besides: fork, PID file, signals.
#include "utils/TORVApplication.h"

#include "utils/TORVLog.h"

#include <QDir>
#include <QFile>
#include <QSocketNotifier>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace
{

constexpr int DaemonFailed = -1;
constexpr int DaemonParent = -2;

void turnStandardStreamsToNullDevice()
{
    const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        ::dup2(null, descriptor);
    }
    if (null > STDERR_FILENO) {
        ::close(null);
    }
}

void openSocketPair(int (&pair)[2], const char* signalName)
{
    // Neither end may block: the writer is a signal handler, the reader the event loop.
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, pair) != 0) {
        TORVLog::Instance()->logError(QStringLiteral("Couldn't create %1 socketpair").arg(QLatin1String(signalName)));
    }
}

void writeByte(int descriptor)
{
    const int error = errno;
    const char one = 1;
    // There is nobody to tell in a signal handler: a full socket means that the event loop is told already.
    const ssize_t written = ::write(descriptor, &one, sizeof one);
    Q_UNUSED(written)
    errno = error;
}

bool installHandler(int signal, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    return ::sigaction(signal, &action, nullptr) == 0;
}

bool takeByte(QSocketNotifier& notifier)
{
    notifier.setEnabled(false);
    char byte = 0;
    const bool taken = ::read(static_cast<int>(notifier.socket()), &byte, sizeof byte) == sizeof byte;
    notifier.setEnabled(true);
    return taken;
}

} // namespace

int TORVApplication::sighupFd[2] = {-1, -1};
int TORVApplication::sigtermFd[2] = {-1, -1};

int TORVApplication::startDaemon()
{
    TORVLog* const log = TORVLog::Instance();
    const pid_t child = ::fork();
    if (child < 0) {
        log->logError(QStringLiteral("Failed to start daemon"));
        return DaemonFailed;
    }
    if (child > 0) {
        log->logNotice(QStringLiteral("Daemon forked - parent stopping..."));
        return DaemonParent;
    }
    log->logDebug(QStringLiteral("   ... child continues"));
    ::setsid();
    turnStandardStreamsToNullDevice();
    const QString directory = QDir::home().exists() ? QDir::homePath() : QDir::rootPath();
    log->logDebug(QLatin1String("Setting working directory to ") + directory);
    QDir::setCurrent(directory);
    updatePIDFile();
    ::umask(0);
    _isDaemon = true;
    return 0;
}

void TORVApplication::updatePIDFile() const
{
    TORVLog* const log = TORVLog::Instance();
    const QString path = getEnvVar(QStringLiteral("PIDFILE"));
    if (path.isEmpty()) {
        log->logWarning(QStringLiteral("No pid-file"));
        return;
    }
    log->logDebug(QLatin1String("Writing pidfile: ") + path);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        log->logError(QLatin1String("Opening pid-file failed: ") + path);
        return;
    }
    file.write(QByteArray::number(getMyPid()) + '\n');
}

void TORVApplication::setupNativeSignals()
{
    openSocketPair(sighupFd, "HUP");
    openSocketPair(sigtermFd, "TERM");
    _hupNotifier = makeNotifier(sighupFd[1], SLOT(handleSigHup()));
    _termNotifier = makeNotifier(sigtermFd[1], SLOT(handleSigTerm()));
    const bool hupInstalled = installHandler(SIGHUP, hupSignalHandler);
    const bool termInstalled = installHandler(SIGTERM, termSignalHandler);
    if (!hupInstalled || !termInstalled) {
        TORVLog::Instance()->logError(QStringLiteral("Error setting up signal handlers"));
    }
}

QSocketNotifier* TORVApplication::makeNotifier(int descriptor, const char* slot)
{
    if (descriptor < 0) {
        return nullptr;
    }
    auto* const notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
    // By name: the signal has a private argument that a queued connection to a function pointer would have to copy.
    connect(notifier, SIGNAL(activated(int)), this, slot, Qt::QueuedConnection);
    return notifier;
}

void TORVApplication::hupSignalHandler(int)
{
    writeByte(sighupFd[0]);
}

void TORVApplication::termSignalHandler(int)
{
    writeByte(sigtermFd[0]);
}

void TORVApplication::handleSigHup()
{
    if (takeByte(*_hupNotifier)) {
        TORVLog::Instance()->logNotice(QStringLiteral("HANGUP signal received"));
    }
}

void TORVApplication::handleSigTerm()
{
    if (takeByte(*_termNotifier)) {
        TORVLog::Instance()->logNotice(QStringLiteral("Termination signal received - quitting..."));
        quit();
    }
}
