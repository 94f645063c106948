#include "support/ProcessRun.h"

#include <QProcess>

#include <utility>

namespace
{

constexpr int TimeLimit_ms = 60000;

} // namespace

QStringList ProcessRun::Outcome::logLines() const
{
    QStringList lines;
    for (const QString& line : errors.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const bool isPrefixed = line.size() > 3 && line.mid(1, 2) == QLatin1String(": ");
        if (isPrefixed || line.endsWith(QLatin1String(" starting"))) {
            lines << line;
        }
    }
    return lines;
}

ProcessRun::ProcessRun(QString program)
    : _program(std::move(program)), _environment(QProcessEnvironment::systemEnvironment())
{
    _environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("minimal"));
    _environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
}

ProcessRun& ProcessRun::with(const QString& name, const QString& value)
{
    if (value.isNull()) {
        _environment.remove(name);
    } else {
        _environment.insert(name, value);
    }
    return *this;
}

ProcessRun& ProcessRun::in(const QString& directory)
{
    _directory = directory;
    return *this;
}

ProcessRun& ProcessRun::privately(const QString& preparation)
{
    _preparation = preparation;
    return *this;
}

bool ProcessRun::isPrivatePossible()
{
    static const bool isPossible =
        ProcessRun(QStringLiteral("true")).privately(QStringLiteral("mount -t tmpfs none /mnt"))({}).exitCode == 0;
    return isPossible;
}

ProcessRun::Outcome ProcessRun::operator()(const QStringList& arguments) const
{
    QProcess process;
    process.setProcessEnvironment(_environment);
    if (!_directory.isEmpty()) {
        process.setWorkingDirectory(_directory);
    }
    if (_preparation.isEmpty()) {
        process.start(_program, arguments);
    } else {
        const QString script = _preparation + QLatin1String(" && exec \"$0\" \"$@\"");
        process.start(QStringLiteral("unshare"), QStringList{QStringLiteral("-rm"), QStringLiteral("/bin/sh"),
                                                             QStringLiteral("-c"), script, _program} +
                                                     arguments);
    }
    const bool isDone = process.waitForFinished(TimeLimit_ms) && process.exitStatus() == QProcess::NormalExit;
    Outcome outcome;
    outcome.exitCode = isDone ? process.exitCode() : -1;
    outcome.output = QString::fromUtf8(process.readAllStandardOutput());
    outcome.errors = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}
