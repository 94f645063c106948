#pragma once

#include <QSlider>
#include <QVector>

/**
 * The slider of the animation: a horizontal slider with a mark above the groove for each frame, whatever the tick
 * position says. Where the marks of many frames would run together only every second, fifth, tenth, ... frame has one,
 * counted from the first.
 *
 * (Qt paints no marks on sliders that a style sheet has to do with.)
 *
 * A press of the left button beside the handle brings the handle to the nearest frame and takes hold of it. Keys are
 * those of any slider.
 *
 * Thread: main thread only.
 */
class TORVFrameSlider final : public QSlider
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVFrameSlider)

public:
    explicit TORVFrameSlider(QWidget* parent = nullptr);
    ~TORVFrameSlider() override;

    /// The values that have marks, ascending; none where there is but one frame.
    QVector<int> getMarkedValues() const;

    /// The middle of the handle when the slider stands at that value, in the widget's pixels.
    QPoint placeOf(int value) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QRect handleAt(int value) const;
    int frameAt(int x) const;
};
