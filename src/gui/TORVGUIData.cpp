// Which data the window shows: live mode, archive, and what new files mean to it.

#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"
#include "datalib/TORVDataStore.h"
#include "gui/DisplayMode.h"
#include "gui/TORVAnimation.h"
#include "gui/TORVAnimationFrame.h"
#include "gui/TORVDataSelectionDialog.h"
#include "gui/TORVDiskSpaceIndicator.h"
#include "gui/TORVGUI.h"
#include "gui/TORVProductKey.h"
#include "settings/TORVGeneralSettings.h"
#include "utils/TORVLog.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QRegularExpression>
#include <QSplashScreen>
#include <QStyle>
#include <QTimer>

#include <algorithm>
#include <cassert>

namespace
{

constexpr int BackgroundPeriod_ms = 10000;
constexpr int DiskPeriod_s = 60;
constexpr int Hour_s = 3600;
constexpr int Minute_s = 60;
constexpr int FirstYearOf1900s = 70;

enum LiveIndex : int
{
    LIVE = 0,
    ARCHIVE = 1
};

void logDebug(const QString& text)
{
    TORVLog::Instance()->logDebug(text);
}

void logHistory(const QString& text)
{
    TORVLog::Instance()->logHistory(text);
}

// "yymmddhhmmss" as "yyyy-mm-dd hh:mm:ss"; any other key as it stands.
QString readableTime(const QString& key)
{
    static const QRegularExpression form(QStringLiteral("^(\\d\\d)(\\d\\d)(\\d\\d)(\\d\\d)(\\d\\d)(\\d\\d)$"));
    const QRegularExpressionMatch match = form.match(key);
    if (!match.hasMatch()) {
        return key;
    }
    const QString century = match.captured(1).toInt() < FirstYearOf1900s ? QStringLiteral("20") : QStringLiteral("19");
    return century + QStringLiteral("%1-%2-%3 %4:%5:%6")
                         .arg(match.captured(1), match.captured(2), match.captured(3), match.captured(4),
                              match.captured(5), match.captured(6));
}

} // namespace

void TORVGUI::initialize()
{
    _startupTimer->deleteLater();
    _startupTimer = nullptr;
    _backgroundStatus = -2; // so that the first answer is told
    checkBackgroundStatus();
    _backgroundTimer = new QTimer(this);
    connect(_backgroundTimer, &QTimer::timeout, this, &TORVGUI::checkBackgroundStatus);
    _backgroundTimer->start(BackgroundPeriod_ms);
    toggleLiveMode(_genSettings->isLiveMode());
    _splash.reset();
    updateBusyState();
    _diskSpaceBar->pathChanged(_genSettings->get3DDir());
    _diskSpaceBar->startPolling(DiskPeriod_s);
    if (_genSettings->get3DDir().isEmpty()) {
        logHistory(translate("App", "Please, set up your data paths."));
        showSettings();
    }
}

// The frame that was asked for last, which may still be being built.
TORVDataFrame::CPtr TORVGUI::askedFrame() const
{
    const TORVDataFrame::CPtr current = _animation->getCurrentDataFrame();
    return current ? current : _dataFrame;
}

void TORVGUI::toggleLiveMode(bool live)
{
    const bool wasLive = _genSettings->isLiveMode();
    _genSettings->setLiveMode(live);
    if (live != wasLive) {
        logHistory(live ? translate("App", "Changed to live mode.") : translate("App", "Changed to archive mode."));
    }
    markLiveMode();
    updateAvailableSites();
    updateAvailableProducts();
    if (live) {
        updateLiveMode();
        horizontalSlider_animation->setValue(horizontalSlider_animation->maximum());
    }
    updateDataIdLabel(_dataFrame);
    updateBusyState();
    _genSettings->save();
}

void TORVGUI::markLiveMode()
{
    const bool isLive = _genSettings->isLiveMode();
    comboBox_liveMode->setCurrentIndex(isLive ? LIVE : ARCHIVE);
    comboBox_liveMode->setItemIcon(LIVE, _displayMode->createIcon(QStringLiteral("live")));
    comboBox_liveMode->setItemIcon(ARCHIVE, _displayMode->createIcon(QStringLiteral("archive")));
    if (comboBox_liveMode->property("live").toBool() != isLive) {
        comboBox_liveMode->setProperty("live", isLive);
        style()->unpolish(comboBox_liveMode);
        style()->polish(comboBox_liveMode);
    }
}

void TORVGUI::comboBoxLiveMode(int index)
{
    const bool live = index == LIVE;
    if (live != _genSettings->isLiveMode()) {
        toggleLiveMode(live);
    }
}

// A tree that was read for the first time. Before the start-up timer nothing is asked for.
void TORVGUI::dataInitialized()
{
    if (_startupTimer) {
        return;
    }
    const QMutexLocker lock(&_dataStoreMutex);
    updateAvailableSites();
    updateAvailableProducts();
    updateLiveMode();
}

void TORVGUI::closeLive(const QStringList& history)
{
    TORVLog::Instance()->logHistory(history);
    updateData({});
}

void TORVGUI::updateLiveMode()
{
    if (!_genSettings->isLiveMode()) {
        return;
    }
    const QString site = comboBox_radarSite->currentText();
    const auto product = TORVProductKey::fromText(comboBox_3DProduct->currentData().toString());
    if (site.isEmpty() || product.name.isEmpty() || product.configuration.isEmpty()) {
        QStringList history{translate("App", "Cannot visualize data:")};
        if (site.isEmpty()) {
            history << QLatin1String("- ") + translate("App", "Site is not selected.");
        }
        if (product.name.isEmpty() || product.configuration.isEmpty()) {
            history << QLatin1String("- ") + translate("App", "3D product is not selected.");
        }
        closeLive(history);
        return;
    }
    const TORVFileLeaf::Ptr leaf = _dataStore->getLatestData(site, product.name, product.configuration);
    if (!leaf) {
        logDebug(QStringLiteral("Latest data not found."));
        closeLive({translate("App", "Requested data not available:"),
                   QLatin1String("- ") + site + QLatin1String(": ") + product.text()});
        return;
    }
    showLatest(leaf);
}

// Who watches the newest frame goes on watching the newest, who has stepped back stays with the moment.
void TORVGUI::showLatest(const TORVFileLeaf::Ptr& leaf)
{
    const QString site = comboBox_radarSite->currentText();
    const auto product = TORVProductKey::fromText(comboBox_3DProduct->currentData().toString());
    const QString product2d = comboBox_2DProduct->currentText();
    const bool atEnd = horizontalSlider_animation->value() >= horizontalSlider_animation->maximum();
    const bool isFull = !_dataFrame || _dataFrame->getSite() != site;
    logDebug(isFull ? QStringLiteral("Full update...") : QStringLiteral("Partial update..."));
    _genSettings->setLiveSite(site);
    _genSettings->setLiveProduct3D(product.text());
    _genSettings->setLiveProduct2D(product2d);
    _genSettings->save();
    TORVLog::Instance()->logHistory(
        QStringList{translate("App", "Updating live data:"), QLatin1String("- ") + getDataIdHistory(leaf),
                    getTimeSpanHistory(translate("App", "  and %1 h back with %2 min interval."))});
    if (_animation->updateFrames(_dataStore, site, product.name, product.configuration, product2d,
                                 leaf->getFile()->getDataTime(), getAnimTimeSpanInSecs(), getAnimFrameIntervalInSecs(),
                                 isFull || atEnd, true)) {
        syncSlider();
    }
    updateData(_animation->getCurrentDataFrame());
    logHistory(translate("App", "- Frames loaded: %1").arg(_animation->getFrameCount()));
}

QString TORVGUI::getTimeSpanHistory(const QString& pattern) const
{
    return pattern.arg(getAnimTimeSpanInSecs() / Hour_s).arg(getAnimFrameIntervalInSecs() / Minute_s);
}

void TORVGUI::dataStoreNewDataAvailable3d(TORVDataStore* /*store*/, const QStringList& added,
                                          const QStringList& removed)
{
    takeNews(true, added, removed);
}

void TORVGUI::dataStoreNewDataAvailable2d(TORVDataStore* /*store*/, const QStringList& added,
                                          const QStringList& removed)
{
    takeNews(false, added, removed);
}

// Nothing in here may spin an event loop: the other of the two would wait for this one for ever.
void TORVGUI::takeNews(bool is3d, const QStringList& added, const QStringList& removed)
{
    const QMutexLocker lock(&_dataStoreMutex);
    if (_startupTimer) {
        return; // the start takes what is there by then
    }
    updateAvailableSites();
    updateAvailableProducts();
    const TORVDirTop::CPtr top = is3d ? TORVDirTop::CPtr(_dataStore->getDirTop3d()) : _dataStore->getDirTop2d();
    bool isMeaningful = false;
    for (int i = 0; i < added.size(); ++i) {
        logDebug(QStringLiteral("added file #%1").arg(i));
        const TORVFileLeaf::Ptr leaf = top ? top->findLeaf(QFileInfo(added[i]).fileName()) : TORVFileLeaf::Ptr();
        if (!_dataFrame || (leaf && isWanted(*leaf, is3d))) {
            logDebug(QStringLiteral(" -> added meaningful!"));
            isMeaningful = true;
        }
    }
    const auto lost = std::find_if(removed.begin(), removed.end(),
                                   [this, is3d](const QString& path) { return isInSequence(path, is3d); });
    if (_genSettings->isLiveMode()) {
        if (isMeaningful || lost != removed.end()) {
            updateLiveMode();
        }
        return;
    }
    if (lost != removed.end()) {
        TORVLog::Instance()->logHistory(QStringList{translate("App", "Used file not available anymore:"), *lost,
                                                    translate("App", " -> Closing current data.")});
        updateData({});
    }
}

// A flat product that comes where none was chosen is as good as the first one.
bool TORVGUI::isWanted(const TORVFileLeaf& leaf, bool is3d) const
{
    if (leaf.getSite() != comboBox_radarSite->currentText()) {
        return false;
    }
    if (is3d) {
        return TORVProductKey{leaf.getProduct(), leaf.getConfiguration()}.text() ==
               comboBox_3DProduct->currentData().toString();
    }
    const QString chosen = comboBox_2DProduct->currentText();
    return chosen.isEmpty() || leaf.getProduct() == chosen;
}

bool TORVGUI::isInSequence(const QString& path, bool is3d) const
{
    const auto& frames = _animation->getFrames();
    return std::any_of(frames.begin(), frames.end(), [&path, is3d](const TORVAnimation::FramePtr& frame) {
        const TORVDataFrame::Ptr shown = frame->getDataFrame();
        const TORVFileLeaf::Ptr leaf = is3d ? shown->getData3d() : shown->getData2d();
        return leaf && leaf->getFile()->getPath() == path;
    });
}

void TORVGUI::comboBoxRadarSite(int index)
{
    const QString site = comboBox_radarSite->itemText(index);
    const TORVDataFrame::CPtr frame = askedFrame();
    if (!_genSettings->isLiveMode() || (frame && frame->getSite() == site)) {
        return;
    }
    logHistory(translate("App", "Radar site: %1").arg(site));
    updateAvailableProducts();
    updateLiveMode();
}

void TORVGUI::on_comboBox_3DProduct_activated(int index)
{
    if (_genSettings->isLiveMode()) {
        updateLiveMode();
        return;
    }
    assert(_dataFrame && _dataFrame->getData3d());
    const auto product = TORVProductKey::fromText(comboBox_3DProduct->itemData(index).toString());
    if (product.name == _dataFrame->getProduct() && product.configuration == _dataFrame->getConfiguration()) {
        return;
    }
    const QString display = comboBox_3DProduct->itemText(index);
    logDebug(QLatin1String("New data type selected from combo box: ") + display);
    TORVLog::Instance()->logHistory(
        QStringList{translate("App", "Changing 3d product to:"), QLatin1String("- ") + display});
    if (_animation->updateParams3d(product.name, product.configuration)) {
        syncSlider();
    }
    updateData(_animation->getCurrentDataFrame());
}

void TORVGUI::on_comboBox_2DProduct_activated(int index)
{
    if (_genSettings->isLiveMode()) {
        updateLiveMode();
        return;
    }
    assert(_dataFrame);
    const QString product = comboBox_2DProduct->itemText(index);
    if (product == _dataFrame->getProduct2d()) {
        return;
    }
    logDebug(QLatin1String("New data type selected from combo box: ") + product);
    TORVLog::Instance()->logHistory(
        QStringList{translate("App", "Changing 2d product to:"), QLatin1String("- ") + product});
    if (_animation->updateParams2d(product)) {
        syncSlider();
    }
    updateData(_animation->getCurrentDataFrame());
}

void TORVGUI::fileOpen3DData()
{
    const QString directory = _genSettings->get3DDir();
    if (directory.isEmpty()) {
        logHistory(translate("App", "3D data directory not defined."));
        return;
    }
    if (!_dataStore->getDirTop3d()) {
        TORVLog::Instance()->logHistory(
            QStringList{translate("App", "3D data directory not available:"), QLatin1String("- ") + directory});
        return;
    }
    TORVDataSelectionDialog dialog(_dataStore, _dataFrame, this);
    dialog.setSizeGripEnabled(true);
    QVector<QObject*> windows{&dialog};
    _displayMode->addIcons(windows);
    if (dialog.exec() != QDialog::Accepted) {
        logDebug(QStringLiteral("Open canceled."));
        return;
    }
    const auto top = _dataStore->getDirTop3d(); // as it is now: the selection may have taken hours
    const TORVFileLeaf::Ptr leaf =
        top ? top->findLeaf(dialog.getSite(), dialog.getProduct(), dialog.getConfiguration(), dialog.getTime())
            : TORVFileLeaf::Ptr();
    if (!leaf) {
        const QString wanted =
            QStringList{dialog.getTime(), dialog.getSite(), dialog.getProduct(), dialog.getConfiguration()}.join(
                QLatin1Char(' '));
        TORVLog::Instance()->logHistory(
            QStringList{translate("App", "Requested data not available:"), QLatin1String("- ") + wanted});
        return;
    }
    openArchive(leaf);
}

void TORVGUI::openArchive(const TORVFileLeaf::Ptr& leaf)
{
    TORVLog::Instance()->logHistory(
        QStringList{translate("App", "Loading archive data:"), QLatin1String("- ") + getDataIdHistory(leaf),
                    getTimeSpanHistory(translate("App", "  and  %1 h back with %2 min interval."))});
    _animation->updateFrames(_dataStore, leaf->getSite(), leaf->getProduct(), leaf->getConfiguration(),
                             comboBox_2DProduct->currentText(), leaf->getFile()->getDataTime(), getAnimTimeSpanInSecs(),
                             getAnimFrameIntervalInSecs(), true, false);
    syncSlider();
    logHistory(translate("App", "- Frames loaded: %1").arg(_animation->getFrameCount()));
    updateData(_animation->getCurrentDataFrame());
    toggleLiveMode(false);
}

void TORVGUI::fileClose()
{
    updateData({});
    toggleLiveMode(false);
}

QString TORVGUI::getDataIdHistory(const TORVFileLeaf::CPtr& leaf) const
{
    if (!leaf) {
        return translate("App", "(no data)");
    }
    assert(leaf->getFile());
    return readableTime(leaf->getTime()) + QLatin1Char(' ') +
           QStringList{leaf->getSite(), leaf->getProduct(), leaf->getConfiguration()}.join(QLatin1Char('/'));
}

void TORVGUI::updateDataIdLabel(const TORVDataFrame::CPtr& frame)
{
    _label_dataId->setToolTip(frame ? frame->getDataId(_genSettings) : translate("App", "(No data loaded)"));
    fitDataIdLabel();
}

// Where there is no room for all of it, the site is cut, never the time.
void TORVGUI::fitDataIdLabel()
{
    const QString text = _label_dataId->toolTip();
    const QFontMetrics metrics = _label_dataId->fontMetrics();
    const int room = _label_dataId->contentsRect().width() - metrics.horizontalAdvance(text);
    const int siteEnd = text.lastIndexOf(QLatin1String(": "));
    if (room >= 0 || siteEnd < 0) {
        _label_dataId->setText(text);
        return;
    }
    const QString site = text.left(siteEnd);
    _label_dataId->setText(metrics.elidedText(site, Qt::ElideRight, metrics.horizontalAdvance(site) + room) +
                           text.mid(siteEnd));
}
