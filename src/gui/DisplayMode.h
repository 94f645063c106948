#pragma once

#include <QIcon>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVector>

class QAction;
class QPushButton;
class QToolButton;

/**
 * How the whole application looks, by day or by night: style sheet, palette and icons are of one mode. Switching also
 * tells `TORVDisplayMode`, which scenes ask.
 *
 * An icon's name is the object name of an action, and the accessible description of a tool button or push button; its
 * files are ":/icons/NAME_day.png", "NAME_disabled_day.png", "NAME_selected_day.png" and the same for the night.
 * Accessible descriptions of buttons must therefore not be translated.
 *
 * Whoever makes a window later passes it to `addIcons` and its icons follow the mode from then on. What is listed may
 * be deleted at any time.
 *
 * Thread: main thread only.
 */
class DisplayMode final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DisplayMode)

public:
    /// It is day; nothing is applied until a switch.
    explicit DisplayMode(QObject* parent = nullptr);

    /// Lists what carries icons in each of the containers; null ones are passed over. Their icons are set at once.
    void addIcons(QVector<QObject*>& containers);

    /// Lists the container itself, if it carries an icon, and its actions and buttons on every level below.
    void addIconsToVectors(QObject* container);

    /// @return 0 for the day, 1 for the night.
    int toggleDisplayMode(bool day);

    void switchToDayMode();
    void switchToNightMode();
    bool isCurrentModeNightMode() const { return _currentMode == _nightWord; }

    /// Sets the icon of each listed object anew. One without a name, or whose name has no file, keeps what it has.
    void updateIcons();

    /// For an object whose icon name has changed, or that was made alone: lists it and sets its icon at once.
    void getSingleIcon(QObject* object);

    /// In the current mode. Null where no file has that name; files that are missing are passed over in silence.
    QIcon createIcon(const QString& name) const;

private:
    void loadStyleSheets();
    void switchTo(const QString& mode, const QString& styleSheet);
    void addToActionIconArray(QAction* action);
    void addToToolButtonIconArray(QToolButton* button);
    void addToPushButtonIconArray(QPushButton* button);

    QString _dayStyleSheet;
    QString _nightStyleSheet;
    QString _dayWord;
    QString _nightWord;
    QString _currentMode;
    QVector<QPointer<QPushButton>> _pushButtons;
    QVector<QPointer<QToolButton>> _toolButtons;
    QVector<QPointer<QAction>> _actions;
};
