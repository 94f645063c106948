// Playback. Its pace is that of the data: the next frame is asked for when the one before is on the screen.

#include "gui/DisplayMode.h"
#include "gui/TORVAnimation.h"
#include "gui/TORVGUI.h"
#include "settings/TORVGeneralSettings.h"
#include "utils/TORVLog.h"
#include "visualization/TORVFramePacer.h"
#include "visualization/TORVRenderer.h"

#include <QDockWidget>
#include <QTimer>

#include <array>

namespace
{

constexpr std::array<int, 4> TimeSpans_h = {3, 6, 12, 24};
constexpr std::array<int, 4> Intervals_min = {5, 15, 30, 60};
constexpr std::array<int, 5> Speeds_s = {0, 1, 3, 5, 10};
constexpr int Hour_s = 3600;
constexpr int Minute_s = 60;

constexpr int StatusTime_s = 2;
constexpr int StepDelay_ms = 500; // quick stepping loads only the frame that it comes to rest on
constexpr int NoDelay_ms = 1;
constexpr int VisibleState = 2;
const QString NoTime = QStringLiteral(" ");

enum LoopMode : int
{
    LOOP_OFF = 0,
    LOOP_ON = 1
};

template <std::size_t Count>
int valueAt(const std::array<int, Count>& table, int index)
{
    return index >= 0 && static_cast<std::size_t>(index) < Count ? table[static_cast<std::size_t>(index)] : 0;
}

void logDebug(const char* text)
{
    TORVLog::Instance()->logDebug(QLatin1String(text));
}

} // namespace

int TORVGUI::getAnimTimeSpanInSecs() const
{
    return valueAt(TimeSpans_h, comboBox_animTimeSpan->currentIndex()) * Hour_s;
}

int TORVGUI::getAnimFrameIntervalInSecs() const
{
    return valueAt(Intervals_min, comboBox_animInterval->currentIndex()) * Minute_s;
}

int TORVGUI::getAnimSpeedInSecs() const
{
    return valueAt(Speeds_s, comboBox_animSpeed->currentIndex());
}

void TORVGUI::connectAnimationControls()
{
    connect(pushButton_animPlay, &QPushButton::clicked, this, &TORVGUI::animPlay);
    connect(pushButton_animPrev, &QPushButton::clicked, this, &TORVGUI::animPrev);
    connect(pushButton_animNext, &QPushButton::clicked, this, &TORVGUI::animNext);
    connect(horizontalSlider_animation, &QSlider::valueChanged, this, &TORVGUI::animSliderChanged);
    connect(horizontalSlider_animation, &QSlider::sliderReleased, this, &TORVGUI::animSliderReleased);
    const struct
    {
        QComboBox* box;
        int index;
        void (TORVGUI::*slot)(int);
    } rows[] = {
        {comboBox_animTimeSpan, _genSettings->getAnimationTimeSpan(), &TORVGUI::comboBoxAnimTimeSpan},
        {comboBox_animInterval, _genSettings->getAnimationFrameInterval(), &TORVGUI::comboBoxAnimInterval},
        {comboBox_animSpeed, _genSettings->getAnimationSpeed(), &TORVGUI::comboBoxAnimSpeed},
        {comboBox_animLoopMode, _genSettings->getAnimationLoopMode(), &TORVGUI::comboBoxAnimLoopMode},
    };
    for (const auto& row : rows) {
        row.box->setCurrentIndex(row.index);
        connect(row.box, static_cast<void (QComboBox::*)(int)>(&QComboBox::activated), this, row.slot);
    }
    const char* const modes[] = {"day", "night"};
    for (int i = 0; i < 2; ++i) {
        _playIcons[i] = QIcon(QStringLiteral(":/icons/play_%1.png").arg(QLatin1String(modes[i])));
        _pauseIcons[i] = QIcon(QStringLiteral(":/icons/pause_%1.png").arg(QLatin1String(modes[i])));
    }
}

void TORVGUI::startAnimTimer(int ms)
{
    _animTimer->stop();
    _animTimer->start(ms);
}

void TORVGUI::animPlay()
{
    if (_isPlaying) {
        logDebug("Stop.");
        TORVLog::Instance()->logStatus(translate("App", "Animation stopped."), StatusTime_s);
        stopPlaying();
        updateBusyState();
        return;
    }
    logDebug("Play.");
    if (_animation->getFrameCount() < 2) {
        TORVLog::Instance()->logHistory(translate("App", "Not enough frames to animate."));
        return;
    }
    TORVLog::Instance()->logStatus(translate("App", "Animating data set.."), StatusTime_s);
    _isPlaying = true;
    updatePace();
    updateBusyState();
    updateAnimIcons();
    if (horizontalSlider_animation->value() >= horizontalSlider_animation->maximum()) {
        horizontalSlider_animation->setValue(horizontalSlider_animation->minimum());
    }
    updateAnimControls();
    startAnimTimer(NoDelay_ms);
}

void TORVGUI::stopPlaying()
{
    _isPlaying = false;
    _animTimer->stop();
    updatePace();
    updateAnimIcons();
    updateAnimControls();
}

// A picture that is gone in a moment need not be a whole one.
void TORVGUI::updatePace()
{
    _renderer->getPacer()->keepMoving(_isPlaying && getAnimSpeedInSecs() == 0);
}

void TORVGUI::animTimerEvent()
{
    _animation->goToFrame(horizontalSlider_animation->value());
    _isStepDue = _isPlaying;
    updateData(_animation->getCurrentDataFrame());
    _isStepDue = false;
}

// Only the end of the run that the timer began goes on to the next frame; one whose picture nobody wanted any more is
// asked for again.
void TORVGUI::continuePlayback(const Run& run, bool isShown)
{
    if (!run.isStep) {
        return;
    }
    QSlider* const slider = horizontalSlider_animation;
    if (!isShown) {
        startAnimTimer(NoDelay_ms);
        return;
    }
    if (slider->value() < slider->maximum()) {
        slider->setValue(slider->value() + 1);
        startAnimTimer(getAnimSpeedInSecs() * 1000 + NoDelay_ms);
    } else if (comboBox_animLoopMode->currentIndex() == LOOP_ON) {
        logDebug("Animation sequence looped.");
        slider->setValue(slider->minimum());
        updateAnimControls();
    } else {
        logDebug("Animation sequence finished.");
        stopPlaying();
        updateBusyState();
        slider->setValue(slider->maximum());
    }
}

// Nothing is armed where there are no frames: the slider stands at 0 then, and no frame is current.
void TORVGUI::animSliderChanged(int value)
{
    const bool isOther = _animation->getFrameCount() > 0 && value != _animation->getCurrentIndex();
    if (!horizontalSlider_animation->isSliderDown() && isOther) {
        startAnimTimer(StepDelay_ms);
    }
    updateAnimControls();
}

void TORVGUI::animSliderReleased()
{
    if (_animation->getFrameCount() > 0 && horizontalSlider_animation->value() != _animation->getCurrentIndex()) {
        startAnimTimer(NoDelay_ms);
    }
}

void TORVGUI::animPrev()
{
    horizontalSlider_animation->setValue(horizontalSlider_animation->value() - 1);
}

void TORVGUI::animNext()
{
    horizontalSlider_animation->setValue(horizontalSlider_animation->value() + 1);
}

void TORVGUI::updateAnimIcons()
{
    const int mode = _displayMode->isCurrentModeNightMode() ? 1 : 0;
    pushButton_animPlay->setIcon(_isPlaying ? _pauseIcons[mode] : _playIcons[mode]);
    pushButton_animPlay->setAccessibleName(_isPlaying ? translate("MainWindow", "Pause animation")
                                                      : translate("MainWindow", "Play animation"));
    pushButton_animPlay->setToolTip(_isPlaying ? translate("MainWindow", "Pause animation (F5)")
                                               : translate("MainWindow", "Play animation (F5)"));
}

// The list of frames has changed: the slider takes its range and its current frame without asking for any.
void TORVGUI::syncSlider()
{
    const QSignalBlocker silence(horizontalSlider_animation);
    horizontalSlider_animation->setRange(0, std::max(0, _animation->getFrameCount() - 1));
    horizontalSlider_animation->setValue(_animation->getCurrentIndex());
    updateAnimControls();
}

void TORVGUI::updateAnimControls()
{
    const int count = _animation->getFrameCount();
    const QSignalBlocker silence(horizontalSlider_animation);
    const QString caption = translate("App", "Frame:");
    if (count == 0) {
        label_animPosition->setText(caption + QLatin1String(" 0 / 0"));
        horizontalSlider_animation->setRange(0, 0);
        horizontalSlider_animation->setValue(0);
        for (QLabel* const label : {label_animStart, label_animCurrent, label_animEnd}) {
            label->setText(NoTime);
        }
        return;
    }
    horizontalSlider_animation->setRange(0, count - 1);
    horizontalSlider_animation->setTickInterval(1);
    horizontalSlider_animation->setTickPosition(QSlider::TicksAbove);
    const int value = horizontalSlider_animation->value();
    label_animPosition->setText(caption + QStringLiteral(" %1 / %2").arg(value + 1).arg(count));
    label_animStart->setText(_genSettings->formattedTimeShort(_animation->getStartTime()));
    label_animCurrent->setText(_genSettings->formattedTimeShort(_animation->getFrameByIndex(value)->getTime()));
    label_animEnd->setText(count == 1 ? NoTime : _genSettings->formattedTimeShort(_animation->getEndTime()));
}

void TORVGUI::updateTimeParams()
{
    if (_animation->getFrameCount() == 0) {
        return;
    }
    if (_animation->updateTimeParams(getAnimTimeSpanInSecs(), getAnimFrameIntervalInSecs())) {
        syncSlider();
        updateData(_animation->getCurrentDataFrame());
    }
}

void TORVGUI::comboBoxAnimTimeSpan(int index)
{
    _genSettings->setAnimationTimeSpan(index);
    _genSettings->save();
    TORVLog::Instance()->logHistory(QStringList{translate("App", "Animation time span changed:"),
                                                QLatin1String("- ") + comboBox_animTimeSpan->itemText(index)});
    updateTimeParams();
}

void TORVGUI::comboBoxAnimInterval(int index)
{
    _genSettings->setAnimationFrameInterval(index);
    _genSettings->save();
    TORVLog::Instance()->logHistory(QStringList{translate("App", "Animation interval changed:"),
                                                QLatin1String("- ") + comboBox_animInterval->itemText(index)});
    updateTimeParams();
}

void TORVGUI::comboBoxAnimSpeed(int index)
{
    updatePace();
    _genSettings->setAnimationSpeed(index);
    _genSettings->save();
    TORVLog::Instance()->logHistory(QStringList{translate("App", "Animation speed changed:"),
                                                QLatin1String("- ") + comboBox_animSpeed->itemText(index)});
}

void TORVGUI::comboBoxAnimLoopMode(int index)
{
    _genSettings->setAnimationLoopMode(index);
    _genSettings->save();
    TORVLog::Instance()->logHistory(translate("App", "Animation loop mode: ") + comboBox_animLoopMode->itemText(index));
}

// A docked dock floats for the moment of the change: the layout of the window would jump otherwise.
void TORVGUI::toggleAnimControls(bool on)
{
    logDebug(on ? "Enabled." : "Disabled.");
    const bool wasFloating = dockWidget_animation->isFloating();
    if (!wasFloating) {
        dockWidget_animation->setFloating(true);
    }
    animationContents->setVisible(on);
    if (!wasFloating) {
        dockWidget_animation->setFloating(false);
    }
    animVisibility(on && !_arePanelsHidden ? VisibleState : 0);
}

void TORVGUI::animVisibility(int state)
{
    logDebug(state == VisibleState ? "Showing animation dock" : "Siding animation dock");
    dockWidget_animation->setVisible(state == VisibleState);
}
