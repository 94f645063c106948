#include "gui/TORVHelpAction.h"

#include "utils/TORVLog.h"

#include <QCoreApplication>
#include <QProcess>

#include <utility>

namespace
{

bool startDetached(const QString& commandLine)
{
    QStringList words = QProcess::splitCommand(commandLine);
    if (words.isEmpty() || words.first().isEmpty()) {
        return false;
    }
    const QString program = words.takeFirst();
    return QProcess::startDetached(program, words);
}

} // namespace

TORVHelpAction::TORVHelpAction(const QString& title, QString command, QString argument, QObject* parent)
    : QAction(title, parent), _command(std::move(command)), _argument(std::move(argument))
{
}

void TORVHelpAction::launch()
{
    TORVLog* const log = TORVLog::Instance();
    log->logDebug(QLatin1String("Launch help item ") + text());
    if (_command.isEmpty()) {
        log->logHistory(QCoreApplication::translate("App", "Help command not configured for %1").arg(text()));
        return;
    }
    if (!startDetached(_command + QLatin1Char(' ') + _argument)) {
        log->logHistory(QCoreApplication::translate("App", "Help command could not be started for %1").arg(text()));
    }
}
