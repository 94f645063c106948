#pragma once

#include <QObject>
#include <QStringList>
#include <QThread>

/**
 * Stands for the main window where only its history and its status bar matter.
 *
 * Thread: the one that made it.
 */
class HistoryReceiver final : public QObject
{
    Q_OBJECT

public:
    QStringList history;
    QStringList status;        ///< text, a blank, time in milliseconds
    QThread* thread = nullptr; ///< that the last line of the history came on

public Q_SLOTS:

    void historyAdd(QString const& text)
    {
        history << text;
        thread = QThread::currentThread();
    }

    void statusAdd(QString const& text, int timeout) { status << text + QLatin1Char(' ') + QString::number(timeout); }
};
