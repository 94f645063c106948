#include "gui/DisplayMode.h"

#include "gui/TORVPalette.h"
#include "utils/TORVDisplayMode.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QPushButton>
#include <QToolButton>

#include <algorithm>
#include <utility>

namespace
{

struct Variant
{
    const char* infix;
    QIcon::Mode mode;
    QIcon::State state;
};

const Variant Variants[] = {
    {"_", QIcon::Normal, QIcon::Off},
    {"_disabled_", QIcon::Disabled, QIcon::Off},
    {"_selected_", QIcon::Selected, QIcon::Off},
    {"_selected_", QIcon::Normal, QIcon::On},
};

// Qt finds files for whole scales by itself; this one serves the scale between.
const QLatin1String HalfScale("@1.5x");

void addFile(QIcon& icon, const QString& fileName, const Variant& variant)
{
    if (QFile::exists(fileName)) {
        icon.addFile(fileName, QSize(), variant.mode, variant.state);
    }
}

QString readStyleSheet(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

QString iconName(const QAction& action)
{
    return action.objectName();
}

QString iconName(const QWidget& button)
{
    return button.accessibleDescription();
}

template <typename Widget>
void addOnce(QVector<QPointer<Widget>>& list, Widget* widget)
{
    list.erase(std::remove(list.begin(), list.end(), nullptr), list.end());
    if (!list.contains(widget)) {
        list.append(widget);
    }
}

template <typename Widget>
void setIcon(const DisplayMode& mode, Widget* widget)
{
    if (!widget) {
        return;
    }
    const QIcon icon = mode.createIcon(iconName(*widget));
    if (!icon.isNull()) {
        widget->setIcon(icon);
    }
}

template <typename Widget>
void setIcons(const DisplayMode& mode, const QVector<QPointer<Widget>>& list)
{
    for (const QPointer<Widget>& widget : list) {
        setIcon(mode, widget.data());
    }
}

} // namespace

DisplayMode::DisplayMode(QObject* parent)
    : QObject(parent), _dayWord(QStringLiteral("day")), _nightWord(QStringLiteral("night")), _currentMode(_dayWord)
{
    loadStyleSheets();
}

void DisplayMode::loadStyleSheets()
{
    _dayStyleSheet = readStyleSheet(QStringLiteral(":/day_mode.qss"));
    _nightStyleSheet = readStyleSheet(QStringLiteral(":/night_mode.qss"));
}

void DisplayMode::addIcons(QVector<QObject*>& containers)
{
    for (QObject* const container : containers) {
        addIconsToVectors(container);
    }
    updateIcons();
}

void DisplayMode::addIconsToVectors(QObject* container)
{
    if (!container) {
        return;
    }
    QList<QObject*> objects = container->findChildren<QObject*>();
    objects.prepend(container);
    for (QObject* const object : std::as_const(objects)) {
        if (auto* const action = qobject_cast<QAction*>(object)) {
            addToActionIconArray(action);
        } else if (auto* const toolButton = qobject_cast<QToolButton*>(object)) {
            addToToolButtonIconArray(toolButton);
        } else if (auto* const pushButton = qobject_cast<QPushButton*>(object)) {
            addToPushButtonIconArray(pushButton);
        }
    }
}

void DisplayMode::addToActionIconArray(QAction* action)
{
    addOnce(_actions, action);
}

void DisplayMode::addToToolButtonIconArray(QToolButton* button)
{
    addOnce(_toolButtons, button);
}

void DisplayMode::addToPushButtonIconArray(QPushButton* button)
{
    addOnce(_pushButtons, button);
}

int DisplayMode::toggleDisplayMode(bool day)
{
    if (day) {
        switchToDayMode();
        return 0;
    }
    switchToNightMode();
    return 1;
}

void DisplayMode::switchToDayMode()
{
    switchTo(_dayWord, _dayStyleSheet);
}

void DisplayMode::switchToNightMode()
{
    switchTo(_nightWord, _nightStyleSheet);
}

// Widgets hear of the new sheet while it is being set, so by then everything they may ask is of the new mode.
void DisplayMode::switchTo(const QString& mode, const QString& styleSheet)
{
    _currentMode = mode;
    TORVDisplayMode::setNight(isCurrentModeNightMode());
    QApplication::setPalette(TORVPalette::instance().widgetPalette(isCurrentModeNightMode()));
    qApp->setStyleSheet(styleSheet);
    updateIcons();
}

void DisplayMode::updateIcons()
{
    setIcons(*this, _pushButtons);
    setIcons(*this, _toolButtons);
    setIcons(*this, _actions);
}

void DisplayMode::getSingleIcon(QObject* object)
{
    if (auto* const action = qobject_cast<QAction*>(object)) {
        addToActionIconArray(action);
        setIcon(*this, action);
    } else if (auto* const toolButton = qobject_cast<QToolButton*>(object)) {
        addToToolButtonIconArray(toolButton);
        setIcon(*this, toolButton);
    } else if (auto* const pushButton = qobject_cast<QPushButton*>(object)) {
        addToPushButtonIconArray(pushButton);
        setIcon(*this, pushButton);
    }
}

QIcon DisplayMode::createIcon(const QString& name) const
{
    QIcon icon;
    for (const Variant& variant : Variants) {
        const QString stem = QLatin1String(":/icons/") + name + QLatin1String(variant.infix) + _currentMode;
        addFile(icon, stem + QLatin1String(".png"), variant);
        addFile(icon, stem + HalfScale + QLatin1String(".png"), variant);
    }
    return icon;
}
