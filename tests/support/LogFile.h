#pragma once

#include "utils/TORVLog.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/**
 * Leads the process-wide log into a file for as long as the object lives; afterwards it goes to the console again,
 * errors only.
 *
 * Thread: main thread of the test, while no other thread logs.
 */
class LogFile final
{
public:
    explicit LogFile(TORVLog::Level level);
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    /// As they stand in the file.
    QStringList stampedLines() const;

    /// From their prefix on.
    QStringList lines() const;

    QString path() const { return _directory.filePath(QStringLiteral("test.log")); }

private:
    QTemporaryDir _directory;
};
