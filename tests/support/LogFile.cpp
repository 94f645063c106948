#include "support/LogFile.h"

#include <QFile>
#include <QRegularExpression>

LogFile::LogFile(TORVLog::Level level)
{
    TORVLog::Instance()->logOpen(path());
    TORVLog::Instance()->setLevel(level);
}

LogFile::~LogFile()
{
    TORVLog::Instance()->logOpen(QString());
    TORVLog::Instance()->setLevel(TORVLog::LEVEL_ERROR);
}

QStringList LogFile::stampedLines() const
{
    QFile file(path());
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList LogFile::lines() const
{
    // A time stamp holds no blank behind a colon.
    static const QRegularExpression prefix(QStringLiteral("[EWND]: "));
    QStringList lines;
    for (const QString& line : stampedLines()) {
        lines << line.mid(line.indexOf(prefix));
    }
    return lines;
}
