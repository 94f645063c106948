#pragma once

#include <QWidget>

class QDockWidget;
class QLabel;
class QToolButton;

/**
 * The title of a dock widget: none while the dock is in its window, so that panels are bare, and a bar with the title,
 * a button that puts the dock back and one that closes it when it floats. The dock can be dragged by the bar; a double
 * click on it puts it back. A floating dock has a frame, too, since no window manager gives it one.
 *
 * The buttons carry icon names as accessible descriptions. A button whose feature the dock lacks is hidden.
 *
 * Thread: main thread only.
 * Ownership: the dock's, once it is set as title bar widget.
 */
class TORVDockTitle final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVDockTitle)

public:
    /// Sets itself as the title bar widget of the dock.
    explicit TORVDockTitle(QDockWidget* dock);
    ~TORVDockTitle() override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QToolButton* addButton(const QString& objectName, const QString& icon);
    void follow();

    QDockWidget* _dock;
    QLabel* _text = nullptr;
    QToolButton* _dockButton = nullptr;
    QToolButton* _closeButton = nullptr;
};
