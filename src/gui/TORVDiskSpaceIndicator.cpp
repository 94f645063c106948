#include "gui/TORVDiskSpaceIndicator.h"

#include "utils/TORVDisplayMode.h"
#include "utils/TORVLog.h"

#include <QEvent>
#include <QGraphicsOpacityEffect>

#include <algorithm>

namespace
{

constexpr double NightOpacity = 0.75;

constexpr int MostMegabytes = 1024;
constexpr double GigabytesPerMegabyte = 0.0009765625;

constexpr int MostSeconds = 24 * 60 * 60;

QString sizeText(int megabytes)
{
    if (megabytes <= MostMegabytes) {
        return TORVDiskSpaceIndicator::tr("%1 MB").arg(megabytes);
    }
    return TORVDiskSpaceIndicator::tr("%1 GB").arg(megabytes * GigabytesPerMegabyte, 0, 'f', 1);
}

} // namespace

TORVDiskSpaceIndicator::TORVDiskSpaceIndicator(QWidget* parent) : QProgressBar(parent)
{
    setTextVisible(false);
    setSpaceValues(0, 0);
    setSpaceTooltip(_percent);
    dimByNight();
    connect(&_timer, &QTimer::timeout, this, &TORVDiskSpaceIndicator::periodicCheck);
    connect(&_probe, &TORVPathProbe::answered, this, &TORVDiskSpaceIndicator::take);
}

void TORVDiskSpaceIndicator::setPath(const QString& path)
{
    _path = TORVPathProbe::absolutePath(path);
}

void TORVDiskSpaceIndicator::pathChanged(const QString& path)
{
    setPath(path);
    checkSpace();
}

void TORVDiskSpaceIndicator::startPolling(int seconds)
{
    _timer.start(std::clamp(seconds, 1, MostSeconds) * 1000);
}

void TORVDiskSpaceIndicator::stopPolling()
{
    _timer.stop();
}

void TORVDiskSpaceIndicator::periodicCheck()
{
    checkSpace();
}

void TORVDiskSpaceIndicator::checkSpace()
{
    _probe.ask(_path);
}

void TORVDiskSpaceIndicator::take(const TORVPathProbe::Reading& reading)
{
    setSpaceValues(reading.total_MiB, reading.total_MiB - reading.available_MiB);
    setSpaceTooltip(_percent);
    if (_percent >= 0) {
        setDevice(reading.device);
        giveAlert(_percent);
    }
    Q_EMIT percentChanged(_percent);
}

void TORVDiskSpaceIndicator::setDevice(quint64 device)
{
    if (device != _device) {
        _device = device;
        _isAlertedRed = false;
        _isAlertedYellow = false;
    }
}

void TORVDiskSpaceIndicator::setSpaceValues(int total, int used)
{
    _total_MiB = std::max(total, 0);
    _used_MiB = std::clamp(used, 0, _total_MiB);
    setRange(0, std::max(_total_MiB, 1)); // a range of nothing would stand for being busy
    if (_total_MiB == 0) {
        _percent = -1;
        reset();
        return;
    }
    _percent = static_cast<int>(qint64(_used_MiB) * 100 / _total_MiB);
    setValue(_used_MiB);
}

QString TORVDiskSpaceIndicator::sizesText() const
{
    return _percent < 0 ? QString() : sizeText(_used_MiB) + QLatin1Char('/') + sizeText(_total_MiB);
}

void TORVDiskSpaceIndicator::setSpaceTooltip(int percent)
{
    const QString text = percent < 0 || _percent < 0
                             ? tr("Disk space information not available")
                             : tr("%1% of disk space is used (%2)").arg(percent).arg(sizesText());
    setToolTip(text);
    setAccessibleDescription(text);
}

void TORVDiskSpaceIndicator::giveAlert(int percent)
{
    const bool isRed = percent > RedLimit_percent;
    const bool isYellow = !isRed && percent > YellowLimit_percent;
    setChunkStyle(isRed      ? QStringLiteral("QProgressBar::chunk {background-color: red;}")
                  : isYellow ? QStringLiteral("QProgressBar::chunk {background-color: yellow;}")
                             : QStringLiteral("QProgressBar::chunk {background-color: green;}"));
    if (isRed && !_isAlertedRed) {
        historyAlert(RedLimit_percent);
    }
    if (isYellow && !_isAlertedYellow) {
        historyAlert(YellowLimit_percent);
    }
    _isAlertedRed = isRed;
    _isAlertedYellow = isYellow || (isRed && _isAlertedYellow);
}

void TORVDiskSpaceIndicator::historyAlert(int limit) const
{
    TORVLog::Instance()->logHistory(tr("Disk space used more than %1%").arg(limit));
    TORVLog::Instance()->logHistory(tr("  - path: %1").arg(_path));
}

void TORVDiskSpaceIndicator::setChunkStyle(const QString& style)
{
    if (style != styleSheet()) {
        setStyleSheet(style);
    }
}

// The colours of the alerts are those of the day.
void TORVDiskSpaceIndicator::dimByNight()
{
    const bool isNight = TORVDisplayMode::isNight();
    if (isNight == (graphicsEffect() != nullptr)) {
        return;
    }
    auto* const effect = isNight ? new QGraphicsOpacityEffect(this) : nullptr;
    if (effect) {
        effect->setOpacity(NightOpacity);
    }
    setGraphicsEffect(effect);
}

void TORVDiskSpaceIndicator::changeEvent(QEvent* event)
{
    QProgressBar::changeEvent(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::PaletteChange) {
        dimByNight();
    }
}
