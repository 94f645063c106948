#include "GUITest.h"

#include "settings/TORVGeneralSettings.h"
#include "visualization/TORVFramePacer.h"
#include "visualization/TORVRenderer.h"

#include <QDockWidget>
#include <QProgressBar>
#include <QSlider>

namespace
{

class TORVGUIAnimationTest : public GUITest
{
protected:
    // Four frames, five minutes apart.
    void openLoop(const QStringList& settings = {})
    {
        for (const int minute : {0, 5, 10, 15}) {
            writeVolume("HALMERA", minute);
        }
        configureLive(QStringLiteral("HALMERA"), settings);
        openAndWait(4);
    }

    int countBuilt() const
    {
        int count = 0;
        for (const TORVAnimation::FramePtr& frame : window->getAnimation().getFrames()) {
            count += frame->getVisualization()->getResultItem() ? 1 : 0;
        }
        return count;
    }

    int countLogged(const char* text) const { return log.lines().filter(QLatin1String(text)).size(); }
};

} // namespace

TEST_F(TORVGUIAnimationTest, OffersTheChoicesOfEachControl)
{
    window = std::make_unique<TORVGUI>();
    EXPECT_EQ(entries(window->comboBox_animTimeSpan),
              QStringLiteral("3 hours,6 hours,12 hours,24 hours").split(QLatin1Char(',')));
    EXPECT_EQ(entries(window->comboBox_animInterval),
              QStringLiteral("5 mins,15 mins,30 mins,60 mins").split(QLatin1Char(',')));
    EXPECT_EQ(entries(window->comboBox_animSpeed),
              QStringLiteral("Fastest,1 sec,3 secs,5 secs,10 secs").split(QLatin1Char(',')));
    EXPECT_EQ(entries(window->comboBox_animLoopMode), QStringLiteral("Off,On").split(QLatin1Char(',')));
}

TEST_F(TORVGUIAnimationTest, TellsTheTimesOfItsFrames)
{
    openLoop();
    EXPECT_EQ(window->label_animPosition->text(), QStringLiteral("Frame: 4 / 4"));
    EXPECT_EQ(window->label_animStart->text(), QStringLiteral("2026-07-14 12:00"));
    EXPECT_EQ(window->label_animCurrent->text(), QStringLiteral("2026-07-14 12:15"));
    EXPECT_EQ(window->label_animEnd->text(), QStringLiteral("2026-07-14 12:15"));
    EXPECT_EQ(window->horizontalSlider_animation->maximum(), 3);
}

TEST_F(TORVGUIAnimationTest, TellsATimeOnceWhereThereIsOneFrame)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    EXPECT_EQ(window->label_animStart->text(), QStringLiteral("2026-07-14 12:00"));
    EXPECT_EQ(window->label_animEnd->text(), QStringLiteral(" "));
}

TEST_F(TORVGUIAnimationTest, TellsNoTimesWithoutFrames)
{
    window = std::make_unique<TORVGUI>();
    EXPECT_EQ(window->label_animPosition->text(), QStringLiteral("Frame: 0 / 0"));
    for (const QLabel* const each : {window->label_animStart, window->label_animCurrent, window->label_animEnd}) {
        EXPECT_EQ(each->text(), QStringLiteral(" "));
    }
}

TEST_F(TORVGUIAnimationTest, DoesNotPlayASingleFrame)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    window->pushButton_animPlay->click();
    EXPECT_FALSE(window->isPlaying());
    EXPECT_EQ(history().last(), QStringLiteral("Not enough frames to animate."));
}

TEST_F(TORVGUIAnimationTest, PlaysOnceFromTheFirstFrameAndEndsAtTheLast)
{
    openLoop();
    window->pushButton_animPlay->click();
    EXPECT_TRUE(window->isPlaying());
    EXPECT_EQ(window->horizontalSlider_animation->value(), 0);
    EXPECT_EQ(window->pushButton_animPlay->accessibleName(), QStringLiteral("Pause animation"));
    EXPECT_FALSE(window->settings->isEnabled());
    ASSERT_TRUE(waitFor([this] { return !window->isPlaying(); }));
    EXPECT_EQ(minuteShown(), 15);
    EXPECT_EQ(window->horizontalSlider_animation->value(), 3);
    EXPECT_EQ(window->pushButton_animPlay->accessibleName(), QStringLiteral("Play animation"));
    EXPECT_EQ(countBuilt(), 4);
    EXPECT_EQ(countLogged("Animation sequence finished."), 1);
    EXPECT_TRUE(window->settings->isEnabled());
}

TEST_F(TORVGUIAnimationTest, BuildsNothingTheSecondTime)
{
    openLoop();
    window->pushButton_animPlay->click();
    ASSERT_TRUE(waitFor([this] { return !window->isPlaying(); }));
    QVector<TORVVisualizationPipelineItem::Ptr> items;
    for (const TORVAnimation::FramePtr& frame : window->getAnimation().getFrames()) {
        items << frame->getVisualization()->getResultItem();
    }
    const int updates = countLogged("Updating groups and layers..");
    window->pushButton_animPlay->click();
    ASSERT_TRUE(waitFor([this] { return !window->isPlaying(); }));
    for (int i = 0; i < items.size(); ++i) {
        EXPECT_EQ(window->getAnimation().getFrameByIndex(i)->getVisualization()->getResultItem(), items[i]);
    }
    EXPECT_EQ(countLogged("Updating groups and layers.."), updates);
}

TEST_F(TORVGUIAnimationTest, LoopsUntilItIsStopped)
{
    openLoop({QStringLiteral("animloopmode=1")});
    window->pushButton_animPlay->click();
    ASSERT_TRUE(waitFor([this] { return countLogged("Animation sequence looped.") >= 2; }));
    EXPECT_TRUE(window->isPlaying());
    window->pushButton_animPlay->click();
    EXPECT_FALSE(window->isPlaying());
    EXPECT_EQ(window->statusbar->currentMessage(), QStringLiteral("Animation stopped."));
}

TEST_F(TORVGUIAnimationTest, EndsALoopThatIsSwitchedOffAtItsNextEnd)
{
    openLoop({QStringLiteral("animloopmode=1")});
    window->pushButton_animPlay->click();
    ASSERT_TRUE(waitFor([this] { return countLogged("Animation sequence looped.") >= 1; }));
    choose(window->comboBox_animLoopMode, QStringLiteral("Off"));
    EXPECT_TRUE(history().contains(QStringLiteral("Animation loop mode: Off")));
    ASSERT_TRUE(waitFor([this] { return !window->isPlaying(); }));
    EXPECT_EQ(window->horizontalSlider_animation->value(), 3);
}

TEST_F(TORVGUIAnimationTest, DrawsQuickPicturesWhilePlayingAtItsFastest)
{
    openLoop({QStringLiteral("animloopmode=1")});
    window->pushButton_animPlay->click();
    ASSERT_TRUE(waitFor([this] { return countLogged("Animation sequence looped.") >= 1; }));
    EXPECT_TRUE(window->getCurrentRenderer()->getPacer()->isMoving());
    choose(window->comboBox_animSpeed, QStringLiteral("10 secs"));
    EXPECT_TRUE(waitFor([this] { return !window->getCurrentRenderer()->getPacer()->isMoving(); }));
    EXPECT_TRUE(window->isPlaying());
}

TEST_F(TORVGUIAnimationTest, StepsToTheNextAndThePreviousFrame)
{
    openLoop();
    window->pushButton_animPrev->click();
    ASSERT_TRUE(waitForMinute(10));
    EXPECT_EQ(window->label_animPosition->text(), QStringLiteral("Frame: 3 / 4"));
    window->pushButton_animNext->click();
    ASSERT_TRUE(waitForMinute(15));
    window->pushButton_animNext->click();
    EXPECT_EQ(window->horizontalSlider_animation->value(), 3);
}

TEST_F(TORVGUIAnimationTest, LoadsOnlyTheFrameThatQuickSteppingComesToRestOn)
{
    openLoop();
    window->pushButton_animPrev->click();
    window->pushButton_animPrev->click();
    window->pushButton_animPrev->click();
    ASSERT_TRUE(waitForMinute(0));
    EXPECT_EQ(countBuilt(), 2);
}

TEST_F(TORVGUIAnimationTest, LoadsWhenTheSliderIsReleased)
{
    openLoop();
    QSlider* const slider = window->horizontalSlider_animation;
    slider->setSliderDown(true);
    slider->setSliderPosition(1);
    slider->setValue(1);
    EXPECT_EQ(minuteShown(), 15);
    EXPECT_EQ(window->label_animCurrent->text(), QStringLiteral("2026-07-14 12:05"));
    slider->setSliderDown(false);
    EXPECT_TRUE(waitForMinute(5));
}

TEST_F(TORVGUIAnimationTest, ChangesTheIntervalAndShowsWhatIsLeft)
{
    openLoop();
    choose(window->comboBox_animInterval, QStringLiteral("15 mins"));
    const QStringList lines = history();
    const int line = lines.indexOf(QStringLiteral("Animation interval changed:"));
    ASSERT_GE(line, 0);
    EXPECT_EQ(lines.value(line + 1), QStringLiteral("- 15 mins"));
    ASSERT_TRUE(waitForFrames(2));
    EXPECT_EQ(minutesOfFrames(), (QVector<int>{0, 15}));
    EXPECT_EQ(window->horizontalSlider_animation->maximum(), 1);
    EXPECT_EQ(TORVGeneralSettings().getAnimationFrameInterval(), 1);
}

TEST_F(TORVGUIAnimationTest, ShowsTheClosestFrameWhenTheShownOneFellOut)
{
    openLoop();
    window->horizontalSlider_animation->setValue(2);
    ASSERT_TRUE(waitForMinute(10));
    choose(window->comboBox_animInterval, QStringLiteral("15 mins"));
    EXPECT_TRUE(waitForMinute(15));
}

TEST_F(TORVGUIAnimationTest, GoesOnPlayingWhenTheTimeSpanChanges)
{
    writeVolume("HALMERA", -240);
    openLoop({QStringLiteral("animloopmode=1")});
    window->pushButton_animPlay->click();
    choose(window->comboBox_animTimeSpan, QStringLiteral("6 hours"));
    EXPECT_TRUE(history().contains(QStringLiteral("- 6 hours")));
    EXPECT_EQ(window->getAnimation().getFrameCount(), 5);
    EXPECT_TRUE(window->isPlaying());
    EXPECT_TRUE(waitFor([this] { return countLogged("Animation sequence looped.") >= 2; }));
}

TEST_F(TORVGUIAnimationTest, GoesOnPlayingWhenAFileArrives)
{
    openLoop({QStringLiteral("animloopmode=1")});
    window->pushButton_animPlay->click();
    ASSERT_TRUE(waitFor([this] { return countLogged("Animation sequence looped.") >= 1; }));
    writeVolume("HALMERA", 20);
    ASSERT_TRUE(waitFor([this] { return window->getAnimation().getFrameCount() == 5; }));
    const int loops = countLogged("Animation sequence looped.");
    EXPECT_TRUE(waitFor([this, loops] { return countLogged("Animation sequence looped.") >= loops + 2; }));
    EXPECT_TRUE(window->isPlaying());
}

TEST_F(TORVGUIAnimationTest, StopsWhenTheFramesAreGone)
{
    openLoop({QStringLiteral("animloopmode=1")});
    window->pushButton_animPlay->click();
    for (const int minute : {0, 5, 10, 15}) {
        ASSERT_TRUE(QFile::remove(directory("3d") + QLatin1Char('/') + fileName("HALMERA", minute, "CAPZ")));
    }
    EXPECT_TRUE(waitFor([this] { return !window->isPlaying() && !window->getCurrentDataFrame(); }));
    EXPECT_TRUE(waitFor([this] { return !window->isBusy(); }));
}

TEST_F(TORVGUIAnimationTest, ShowsAndHidesItsControls)
{
    openLoop();
    window->animation->trigger();
    EXPECT_TRUE(window->dockWidget_animation->isHidden());
    EXPECT_FALSE(window->dockWidget_animation->isFloating());
    EXPECT_EQ(countLogged("Siding animation dock"), 1);
    window->animation->trigger();
    EXPECT_TRUE(window->dockWidget_animation->isVisible());
    EXPECT_EQ(countLogged("Showing animation dock"), 1);
}

TEST_F(TORVGUIAnimationTest, TellsOfTheFramesThatAreStillToBeBuilt)
{
    openLoop();
    auto* const progress = window->findChild<QProgressBar*>(QStringLiteral("progressBar"));
    window->pushButton_animPlay->click();
    EXPECT_TRUE(progress->isVisible());
    EXPECT_EQ(progress->maximum(), 4);
    ASSERT_TRUE(waitFor([this] { return !window->isPlaying(); }));
    EXPECT_FALSE(progress->isVisible());
}
