#include "utils/TORVLog.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QMutexLocker>
#include <QTextStream>

#include <algorithm>
#include <array>
#include <cstdio>

namespace
{

const std::array<const char*, 4> Prefixes = {"E: ", "W: ", "N: ", "D: "};

QString prefixed(TORVLog::Level level, const QString& text)
{
    return QLatin1String(Prefixes[level]) + text;
}

} // namespace

TORVLog* TORVLog::Instance()
{
    static TORVLog instance;
    return &instance;
}

TORVLog::TORVLog() = default;

TORVLog::~TORVLog()
{
    // The stream flushes into the file, so it goes first.
    _stream.reset();
    _file.reset();
}

void TORVLog::setLevel(Level level)
{
    _level = std::clamp<int>(level, LEVEL_ERROR, LEVEL_DEBUG);
}

void TORVLog::logInit(const QString& programName, const QString& fileName)
{
    logOpen(fileName);
    const QMutexLocker lock(&_mutex);
    if (_stream) {
        writeLine(programName + QLatin1String(" starting"));
    }
}

void TORVLog::logOpen(const QString& fileName)
{
    _stream.reset();
    _file.reset();
    if (fileName.isEmpty()) {
        openConsole();
        return;
    }
    _file = std::make_unique<QFile>(fileName);
    if (_file->open(QIODevice::WriteOnly | QIODevice::Append) && _file->error() == QFileDevice::NoError) {
        _stream = std::make_unique<QTextStream>(_file.get());
        return;
    }
    _file.reset();
    openConsole();
    logError(QStringLiteral("ERROR 0 WHEN OPENING LOG FILE %1, LOGGING TO CONSOLE").arg(fileName));
}

void TORVLog::logReopen() {}

void TORVLog::logLog(const QString& text, Level level)
{
    if (!isShown(level)) {
        return;
    }
    const QMutexLocker lock(&_mutex);
    writeLine(text);
}

void TORVLog::logError(const QString& text)
{
    logLog(prefixed(LEVEL_ERROR, text), LEVEL_ERROR);
}

void TORVLog::logWarning(const QString& text)
{
    logLog(prefixed(LEVEL_WARNING, text), LEVEL_WARNING);
}

void TORVLog::logNotice(const QString& text)
{
    logLog(prefixed(LEVEL_NOTICE, text), LEVEL_NOTICE);
}

void TORVLog::logDebug(const QString& text)
{
    logLog(prefixed(LEVEL_DEBUG, text), LEVEL_DEBUG);
}

void TORVLog::logHistory(const QString& text)
{
    Q_EMIT historyAdd(text);
}

void TORVLog::logHistory(const QStringList& lines)
{
    Q_EMIT historyAdd(lines);
}

void TORVLog::logStatus(const QString& text, int timeout)
{
    logDebug(QStringLiteral("Update status"));
    Q_EMIT statusAdd(text, timeout);
}

bool TORVLog::logConnect(const QObject* receiver, const char* historySlot, const char* statusSlot)
{
    connect(this, SIGNAL(historyAdd(QString)), receiver, historySlot);
    Q_EMIT historyAdd(QCoreApplication::translate("TORVLog", "Welcome to TORV 3DView"));
    return static_cast<bool>(connect(this, SIGNAL(statusAdd(QString, int)), receiver, statusSlot));
}

QString TORVLog::timestamp() const
{
    if (!_file) {
        return {};
    }
    return QDateTime::currentDateTime().toString(Qt::TextDate) + QLatin1Char(' ');
}

void TORVLog::openConsole()
{
    _stream = std::make_unique<QTextStream>(stderr, QIODevice::ReadWrite);
}

void TORVLog::writeLine(const QString& text)
{
    *_stream << timestamp() << text << Qt::endl;
}
