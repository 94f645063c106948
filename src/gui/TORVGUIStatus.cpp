// What the user is told: history, status bar, the disk, and the service that works in the background.

#include "gui/DisplayMode.h"
#include "gui/TORVGUI.h"
#include "gui/TORVServiceCheck.h"
#include "settings/TORVBackgroundSettings.h"
#include "utils/TORVLog.h"

#include <QAction>
#include <QLabel>

namespace
{

constexpr int MostHistoryLines = 512; // a window may stand open for months

enum BackgroundStatus : int
{
    BACKGROUND_UNREADABLE = -1,
    BACKGROUND_STOPPED = 0,
    BACKGROUND_INACTIVE = 1,
    BACKGROUND_ACTIVE = 2
};

int backgroundStatus(bool isRunning)
{
    if (!isRunning) {
        return BACKGROUND_STOPPED;
    }
    const TORVBackgroundSettings settings;
    if (settings.status() >= TORVBackgroundSettings::STATUS_NONE) {
        return BACKGROUND_UNREADABLE;
    }
    return settings.isActivated() ? BACKGROUND_ACTIVE : BACKGROUND_INACTIVE;
}

const char* historyLine(int status)
{
    switch (status) {
    case BACKGROUND_UNREADABLE:
        return QT_TRANSLATE_NOOP("App", "Background task activity check failed");
    case BACKGROUND_INACTIVE:
        return QT_TRANSLATE_NOOP("App", "Background task is running but inactive");
    case BACKGROUND_ACTIVE:
        return QT_TRANSLATE_NOOP("App", "Background task is active");
    default:
        return QT_TRANSLATE_NOOP("App", "Background task is stopped");
    }
}

} // namespace

void TORVGUI::historyAdd(QString const& text)
{
    historyAdd(QStringList{text});
}

// Lines that come together are painted together.
void TORVGUI::historyAdd(QStringList const& lines)
{
    for (const QString& line : lines) {
        listWidget_history->addItem(line);
        listWidget_history->item(listWidget_history->count() - 1)->setToolTip(line);
        while (listWidget_history->count() > MostHistoryLines) {
            delete listWidget_history->takeItem(0);
            TORVLog::Instance()->logDebug(
                QStringLiteral("Removed history item. left=%1").arg(listWidget_history->count()));
        }
    }
    listWidget_history->scrollToBottom();
    listWidget_history->repaint();
}

void TORVGUI::statusAdd(QString const& text, int seconds)
{
    if (seconds < 1) {
        statusbar->showMessage(text);
        return;
    }
    TORVLog::Instance()->logDebug(QLatin1String("FLASH: ") + text);
    statusbar->showMessage(text, seconds * 1000);
}

void TORVGUI::showDiskSpace(int percent)
{
    _label_diskSpace->setText(percent < 0 ? QString() : QStringLiteral("%1%").arg(percent));
}

void TORVGUI::checkBackgroundStatus()
{
    _serviceCheck->start();
}

void TORVGUI::takeBackgroundStatus(bool isRunning)
{
    const int status = backgroundStatus(isRunning);
    if (status == _backgroundStatus) {
        return;
    }
    if (status == BACKGROUND_ACTIVE || _backgroundStatus == BACKGROUND_ACTIVE) {
        toggleBackgroundIndicator(status == BACKGROUND_ACTIVE);
    }
    TORVLog::Instance()->logHistory(translate("App", historyLine(status)));
    _backgroundStatus = status;
}

void TORVGUI::toggleBackgroundIndicator(bool on)
{
    const Face off = {QStringLiteral("snapshot"), QString(),
                      translate("App", "Export tool - background output is stopped")};
    const Face active = {QStringLiteral("snapshot_rec"), QString(),
                         translate("App", "Export tool - background output is active")};
    toggleButton(snapshot, on ? active : off);
}

// An action's icon goes by its object name, a button's by its accessible description.
void TORVGUI::toggleButton(QObject* object, const Face& face)
{
    if (auto* const action = qobject_cast<QAction*>(object)) {
        action->setObjectName(face.name);
        action->setToolTip(face.toolTip);
        action->setText(face.text);
    } else if (auto* const button = qobject_cast<QAbstractButton*>(object)) {
        button->setAccessibleDescription(face.name);
        button->setToolTip(face.toolTip);
        button->setText(face.text);
    }
    _displayMode->getSingleIcon(object);
}
