#pragma once

#include "gui/TORVPathProbe.h"

#include <QProgressBar>
#include <QTimer>

/**
 * How full the disk of a directory is: a bar in green, yellow (above 70 percent) or red (above 90), with the figures as
 * tool tip. Crossing either limit is told once in the history, and again only when the level has been below it in
 * between or the directory lies on another disk.
 *
 * What only the administrator may use counts as used. A directory that doesn't exist, or a disk that gives no figures,
 * leaves the bar empty and alerts nobody. Disks are asked on another thread, so a server that has gone holds up nobody;
 * the bar then keeps what it showed.
 *
 * Thread: main thread only.
 */
class TORVDiskSpaceIndicator final : public QProgressBar
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVDiskSpaceIndicator)

public:
    static constexpr int RedLimit_percent = 90;
    static constexpr int YellowLimit_percent = 70;

    explicit TORVDiskSpaceIndicator(QWidget* parent = nullptr);

    /// The directory to watch, from the next check on.
    void setPath(const QString& path);
    QString path() const { return _path; }

    /// Checks every so many seconds, one at least; the first time after as long.
    void startPolling(int seconds);
    void stopPolling();

    /// Of the last check, rounded down; -1 where that isn't known.
    int percent() const { return _percent; }

    /// "721.4 GB/924.9 GB": used and total; empty where that isn't known.
    QString sizesText() const;

    /// In mebibytes. A total that isn't above 0 stands for sizes that aren't known.
    void setSpaceValues(int total, int used);
    void setSpaceTooltip(int percent);

    /// The colour of the bar and, where a limit has been crossed, the lines of the history.
    void giveAlert(int percent);

public Q_SLOTS:
    /// Sets the path and checks at once.
    void pathChanged(const QString& path);

    /// Answered by `percentChanged` in a while.
    void checkSpace();
    void periodicCheck();

Q_SIGNALS:
    /// After each check; -1 for not known.
    void percentChanged(int percent);

protected:
    void changeEvent(QEvent* event) override;

private:
    void take(const TORVPathProbe::Reading& reading);
    void setDevice(quint64 device);
    void historyAlert(int limit) const;
    void setChunkStyle(const QString& style);
    void dimByNight();

    TORVPathProbe _probe;
    QTimer _timer{this};
    QString _path;
    quint64 _device = 0; // the last that gave figures, 0 before
    int _total_MiB = 0;
    int _used_MiB = 0;
    int _percent = -1;
    bool _isAlertedRed = false;
    bool _isAlertedYellow = false;
};
