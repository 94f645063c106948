#include "GUITest.h"

#include "gui/TORVDoubleModeDialog.h"
#include "visualization/TORVRenderer.h"

#include <QAction>

namespace
{

class TORVGUIExtraWindowTest : public GUITest
{
protected:
    void openTwoFrames(const QStringList& settings = {})
    {
        writeVolume("HALMERA", 0);
        writeVolume("HALMERA", 5);
        writeVolume("OTHER", 10);
        configureLive(QStringLiteral("HALMERA"), settings);
        openAndWait(2);
    }

    void openExtraWindow()
    {
        window->extraWindow->trigger();
        ASSERT_TRUE(waitFor([this] { return !extra()->isGenerating(); }));
    }

    TORVDoubleModeDialog* extra() const { return window->findChild<TORVDoubleModeDialog*>(); }

    QString title() const { return extra()->windowTitle(); }
};

} // namespace

TEST_F(TORVGUIExtraWindowTest, ShowsTheMomentOfTheMainWindow)
{
    openTwoFrames();
    openExtraWindow();
    EXPECT_EQ(title(), QStringLiteral("HALMERA: Tue 2026-07-14 12:05"));
    EXPECT_TRUE(extra()->getRenderer()->isLegendOn());
}

TEST_F(TORVGUIExtraWindowTest, IsEmptyWithoutData)
{
    configure();
    open();
    ASSERT_TRUE(waitFor([this] { return !window->isBusy(); }));
    window->extraWindow->trigger();
    EXPECT_TRUE(extra()->isVisible());
    EXPECT_EQ(title(), QStringLiteral("(No data loaded.)"));
}

TEST_F(TORVGUIExtraWindowTest, LoadsAnewWhenItIsOpenedAgain)
{
    openTwoFrames();
    openExtraWindow();
    window->extraWindow->trigger();
    EXPECT_FALSE(extra()->isVisible());
    EXPECT_EQ(title(), QStringLiteral("(No data loaded.)"));
    window->horizontalSlider_animation->setValue(0);
    ASSERT_TRUE(waitForMinute(0));
    openExtraWindow();
    EXPECT_EQ(title(), QStringLiteral("HALMERA: Tue 2026-07-14 12:00"));
}

TEST_F(TORVGUIExtraWindowTest, KeepsItsMomentBesideAPlayingLoop)
{
    openTwoFrames({QStringLiteral("animloopmode=1")});
    openExtraWindow();
    window->pushButton_animPlay->click();
    ASSERT_TRUE(
        waitFor([this] { return log.lines().filter(QStringLiteral("Animation sequence looped.")).size() >= 2; }));
    EXPECT_EQ(title(), QStringLiteral("HALMERA: Tue 2026-07-14 12:05"));
    EXPECT_TRUE(window->isPlaying());
}

TEST_F(TORVGUIExtraWindowTest, CanBeOpenedDuringALoop)
{
    openTwoFrames({QStringLiteral("animloopmode=1")});
    window->pushButton_animPlay->click();
    openExtraWindow();
    EXPECT_TRUE(title().startsWith(QStringLiteral("HALMERA: ")));
    EXPECT_TRUE(window->isPlaying());
}

TEST_F(TORVGUIExtraWindowTest, KeepsItsSiteWhenTheMainWindowChangesToAnother)
{
    openTwoFrames();
    openExtraWindow();
    choose(window->comboBox_radarSite, QStringLiteral("OTHER"));
    ASSERT_TRUE(waitForMinute(10));
    EXPECT_EQ(title(), QStringLiteral("HALMERA: Tue 2026-07-14 12:05"));
}

TEST_F(TORVGUIExtraWindowTest, StaysWhenTheDataOfTheMainWindowAreClosed)
{
    openTwoFrames();
    openExtraWindow();
    window->fileCloseData->trigger();
    EXPECT_TRUE(extra()->isVisible());
    EXPECT_EQ(title(), QStringLiteral("HALMERA: Tue 2026-07-14 12:05"));
}

TEST_F(TORVGUIExtraWindowTest, TurnsIntoNightWithTheMainWindow)
{
    openTwoFrames();
    openExtraWindow();
    window->nightMode->trigger();
    EXPECT_TRUE(TORVDisplayMode::isNight());
    ASSERT_TRUE(waitFor([this] { return !extra()->isGenerating(); }));
    EXPECT_EQ(title(), QStringLiteral("HALMERA: Tue 2026-07-14 12:05"));
}

TEST_F(TORVGUIExtraWindowTest, GoesWithTheMainWindowWhileItIsBeingBuilt)
{
    openTwoFrames();
    window->extraWindow->trigger();
    ASSERT_TRUE(extra()->isGenerating());
    EXPECT_TRUE(window->close());
    EXPECT_FALSE(extra()->isVisible());
}

TEST_F(TORVGUIExtraWindowTest, CanBeHiddenWhileItIsBeingBuilt)
{
    openTwoFrames();
    window->extraWindow->trigger();
    ASSERT_TRUE(extra()->isGenerating());
    window->extraWindow->trigger();
    EXPECT_FALSE(extra()->isVisible());
    openExtraWindow();
    EXPECT_EQ(title(), QStringLiteral("HALMERA: Tue 2026-07-14 12:05"));
}
