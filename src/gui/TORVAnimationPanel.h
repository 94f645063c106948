#pragma once

#include <QWidget>

class QGridLayout;

/**
 * The animation controls: buttons, time line and settings. A wide panel has them in one line, a narrow one has the
 * settings below the time line.
 *
 * Thread: main thread only.
 */
class TORVAnimationPanel final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVAnimationPanel)

public:
    explicit TORVAnimationPanel(QWidget* parent = nullptr);
    ~TORVAnimationPanel() override;

    /// The three parts, which become children of the panel. Once.
    void setParts(QWidget* buttons, QWidget* timeline, QWidget* settings);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOut();

    QGridLayout* _layout = nullptr; // null before the parts are known
    QWidget* _buttons = nullptr;
    QWidget* _timeline = nullptr;
    QWidget* _settings = nullptr;
    bool _isWide = false;
};
