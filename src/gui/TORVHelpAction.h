#pragma once

#include <QAction>
#include <QString>

/**
 * An entry of the help menu: a command that is started when the entry is chosen.
 *
 * Thread: main thread only.
 */
class TORVHelpAction final : public QAction
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVHelpAction)

public:
    TORVHelpAction(const QString& title, QString command, QString argument, QObject* parent);

public Q_SLOTS:
    /**
     * Starts the command with the argument, both split at blanks into program and arguments; what stands in double
     * quotes stays together, and three quotes stand for one. No shell is involved: nothing else has a meaning. A
     * command that is not configured, or can't be started, is told in the history.
     */
    void launch();

private:
    QString _command;
    QString _argument;
};
