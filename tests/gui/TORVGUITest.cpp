#include "GUITest.h"

#include "gui/TORVGeneralSettingsDialog.h"
#include "settings/TORVConfig.h"
#include "settings/TORVGeneralSettings.h"

#include <QAbstractButton>
#include <QAction>
#include <QDockWidget>
#include <QSettings>
#include <QSplashScreen>
#include <QToolBar>
#include <QToolButton>

namespace
{

class TORVGUITest : public GUITest
{
protected:
    // All of the scale is orange.
    void writeColours() const
    {
        home.write(QStringLiteral(".config/Halmera/TORV3DColors.conf"),
                   "[DATAMAPPING]\ndata\\size=3\ndata\\3\\data_index=1\n\n"
                   "[COLORSCALE%201]\nname=Default\ncolorset_index=1\ndata_index=1\n"
                   "points\\size=2\npoints\\1\\seam=0\npoints\\2\\seam=60\n\n"
                   "[COLORSET%201]\npoints\\size=2\n"
                   "points\\1\\lower\\r=250\npoints\\1\\lower\\g=170\npoints\\1\\lower\\b=40\n"
                   "points\\2\\lower\\r=250\npoints\\2\\lower\\g=170\npoints\\2\\lower\\b=40\n");
    }

    // The orange of the storm is the only one of the scene.
    bool isStormSeen() const
    {
        const QImage picture = window->sceneWidget->grabFramebuffer();
        int core = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor colour = picture.pixelColor(x, y);
                core += colour.red() > 140 && colour.red() > colour.blue() + 60;
            }
        }
        return core > picture.width() * picture.height() / 100;
    }
};

bool isAnySplashShown()
{
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (qobject_cast<QSplashScreen*>(widget) && widget->isVisible()) {
            return true;
        }
    }
    return false;
}

} // namespace

TEST_F(TORVGUITest, GreetsAndAsksForPathsAtTheFirstStart)
{
    open();
    ASSERT_TRUE(waitForHistory(QStringLiteral("Please, set up your data paths.")));
    EXPECT_EQ(history().first(), QStringLiteral("Welcome to TORV 3DView"));
    EXPECT_TRUE(window->settings->isChecked());
    EXPECT_TRUE(window->findChild<TORVGeneralSettingsDialog*>()->isVisible());
    EXPECT_EQ(label(), QStringLiteral("(No data loaded)"));
    EXPECT_EQ(window->comboBox_radarSite->count(), 0);
}

TEST_F(TORVGUITest, SaysThatThereIsNoDataBeforeTheStart)
{
    window = std::make_unique<TORVGUI>();
    EXPECT_EQ(label(), QStringLiteral("(No data available)"));
}

TEST_F(TORVGUITest, ShowsTheSplashScreenUntilTheStart)
{
    configure();
    window = std::make_unique<TORVGUI>();
    EXPECT_TRUE(isAnySplashShown());
    EXPECT_TRUE(window->isBusy());
    EXPECT_FALSE(window->fileOpen->isEnabled());
    window->findChild<QTimer*>(QStringLiteral("startupTimer"))->start(0);
    ASSERT_TRUE(waitFor([this] { return !window->isBusy(); }));
    EXPECT_FALSE(isAnySplashShown());
    EXPECT_TRUE(window->fileOpen->isEnabled());
}

TEST_F(TORVGUITest, WaitsFourSecondsBeforeItAsksForData)
{
    configure();
    window = std::make_unique<TORVGUI>();
    EXPECT_EQ(window->findChild<QTimer*>(QStringLiteral("startupTimer"))->interval(), 4000);
}

TEST_F(TORVGUITest, LoadsNothingInArchiveModeUntilTheUserOpensData)
{
    writeVolume("HALMERA", 0);
    configure();
    open();
    ASSERT_TRUE(waitFor([this] { return !window->isBusy(); }));
    EXPECT_EQ(window->comboBox_liveMode->currentText(), QStringLiteral("Archive"));
    EXPECT_FALSE(window->getCurrentDataFrame());
    EXPECT_EQ(label(), QStringLiteral("(No data loaded)"));
    EXPECT_EQ(history(),
              (QStringList{QStringLiteral("Welcome to TORV 3DView"), QStringLiteral("Background task is stopped")})
                  .mid(0, history().size()));
}

TEST_F(TORVGUITest, ShowsTheNewestVolumeOfTheSiteThatWasLiveAtTheLastExit)
{
    writeVolume("OTHER", 40);
    writeVolume("HALMERA", 0);
    writeVolume("HALMERA", 30);
    configureLive();
    writeColours();
    openAndWait(2);
    EXPECT_EQ(label(), QStringLiteral("HALMERA: Tue 2026-07-14 12:30"));
    EXPECT_EQ(window->comboBox_radarSite->currentText(), QStringLiteral("HALMERA"));
    EXPECT_EQ(window->comboBox_3DProduct->currentText(), QStringLiteral("Reflectivity"));
    EXPECT_EQ(window->comboBox_3DProduct->currentData().toString(), QStringLiteral("CAPPI - Z"));
    EXPECT_EQ(entries(window->comboBox_radarSite), (QStringList{QStringLiteral("HALMERA"), QStringLiteral("OTHER")}));
    EXPECT_TRUE(waitFor([this] { return isStormSeen(); }));
    const QStringList lines = history();
    const int line = lines.indexOf(QStringLiteral("Updating live data:"));
    ASSERT_GE(line, 0);
    EXPECT_EQ(lines.value(line + 1), QStringLiteral("- 2026-07-14 12:30:00 HALMERA/CAPPI/Z"));
    EXPECT_EQ(lines.value(line + 2), QStringLiteral("  and 3 h back with 5 min interval."));
    EXPECT_TRUE(lines.contains(QStringLiteral("- Frames loaded: 2")));
}

TEST_F(TORVGUITest, LooksFromTwiceTheDiagonalAboveAtANewSite)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    // 16 points of 1000 m: 15000 m along each side; R = 2 * sqrt(7500^2 + 7500^2) = 21213.2 m.
    const TORVFile::CPtr file = window->getCurrentDataFrame()->getData3d()->getFile();
    const double reach = 2.0 * std::hypot(file->getLengthM() / 2.0, file->getWidthM() / 2.0);
    EXPECT_NEAR(window->getCurrentViewAngle()->getPosition().z, 2.0 * reach, 1.0);
    EXPECT_NEAR(window->getCurrentViewAngle()->getPosition().x, 0.0, 1e-6);
    EXPECT_NEAR(window->getCurrentViewAngle()->getDirection().z, -1.0, 1e-6);
}

TEST_F(TORVGUITest, TurnsIntoNightAndRemembersIt)
{
    window = std::make_unique<TORVGUI>();
    EXPECT_FALSE(window->nightMode->isChecked());
    window->nightMode->trigger();
    EXPECT_TRUE(TORVDisplayMode::isNight());
    window.reset();
    TORVDisplayMode::setNight(false);
    window = std::make_unique<TORVGUI>();
    EXPECT_TRUE(window->nightMode->isChecked());
    EXPECT_TRUE(TORVDisplayMode::isNight());
}

TEST_F(TORVGUITest, ShowsWhatTheLogTellsTheUser)
{
    window = std::make_unique<TORVGUI>();
    TORVLog::Instance()->logHistory(QStringList{QStringLiteral("one"), QStringLiteral("- two")});
    TORVLog::Instance()->logStatus(QStringLiteral("busy"), 0);
    EXPECT_EQ(history().mid(1), (QStringList{QStringLiteral("one"), QStringLiteral("- two")}));
    EXPECT_EQ(window->statusbar->currentMessage(), QStringLiteral("busy"));
}

TEST_F(TORVGUITest, SaysForHowLongAStatusIsMeant)
{
    window = std::make_unique<TORVGUI>();
    TORVLog::Instance()->logStatus(QStringLiteral("soon over"), 2);
    EXPECT_EQ(window->statusbar->currentMessage(), QStringLiteral("soon over"));
    EXPECT_TRUE(log.lines().contains(QStringLiteral("D: FLASH: soon over")));
}

TEST_F(TORVGUITest, KeepsFiveHundredAndTwelveLinesOfHistory)
{
    window = std::make_unique<TORVGUI>();
    for (int i = 1; i < 512; ++i) {
        TORVLog::Instance()->logHistory(QStringLiteral("line %1").arg(i));
    }
    ASSERT_EQ(history().size(), 512);
    EXPECT_EQ(history().first(), QStringLiteral("Welcome to TORV 3DView"));
    TORVLog::Instance()->logHistory(QStringLiteral("line 512"));
    EXPECT_EQ(history().size(), 512);
    EXPECT_EQ(history().first(), QStringLiteral("line 1"));
    EXPECT_EQ(history().last(), QStringLiteral("line 512"));
    EXPECT_TRUE(log.lines().contains(QStringLiteral("D: Removed history item. left=512")));
}

TEST_F(TORVGUITest, ExitActionClosesTheWindow)
{
    window = std::make_unique<TORVGUI>();
    window->show();
    window->fileExit->trigger();
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(history().last(), QStringLiteral("Shutting down..."));
}

TEST_F(TORVGUITest, CanGoWhileItsPictureIsBeingMade)
{
    writeVolume("HALMERA", 0);
    configureLive();
    for (int i = 0; i < 3; ++i) {
        open();
        ASSERT_TRUE(waitFor([this] { return window->getAnimation().getFrameCount() == 1; }));
        window.reset();
    }
}

TEST_F(TORVGUITest, EndsAfterAnAbortWhenItIsClosedDuringABuild)
{
    writeVolume("HALMERA", 0);
    configureLive();
    open();
    ASSERT_TRUE(waitFor([this] { return window->getAnimation().getFrameCount() == 1; }));
    EXPECT_TRUE(window->close());
    EXPECT_FALSE(window->isVisible());
}

TEST_F(TORVGUITest, RemembersWhereTheWindowAndItsPanelsWere)
{
    configure();
    window = std::make_unique<TORVGUI>();
    window->show();
    window->resize(1210, 750);
    window->addDockWidget(Qt::RightDockWidgetArea, window->dockWidget_history);
    window.reset();
    window = std::make_unique<TORVGUI>();
    EXPECT_EQ(window->size(), QSize(1210, 750));
    EXPECT_EQ(window->dockWidgetArea(window->dockWidget_history), Qt::RightDockWidgetArea);
}

TEST_F(TORVGUITest, TogglesTheFullScreenAndLeavesItByEscape)
{
    window = std::make_unique<TORVGUI>();
    window->show();
    window->fullScreen->trigger();
    EXPECT_TRUE(window->isFullScreen());
    EXPECT_TRUE(window->fullScreen->isChecked());
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_FALSE(window->isFullScreen());
    EXPECT_FALSE(window->fullScreen->isChecked());
}

TEST_F(TORVGUITest, HidesAllPanelsAndBringsThemBack)
{
    window = std::make_unique<TORVGUI>();
    window->show();
    QAction* const action = window->floatsHide;
    action->trigger();
    for (const QDockWidget* const dock : window->findChildren<QDockWidget*>()) {
        EXPECT_TRUE(dock->isHidden()) << qUtf8Printable(dock->objectName());
    }
    EXPECT_EQ(action->objectName(), QStringLiteral("floatsShow"));
    EXPECT_FALSE(window->colorKey->isHidden());
    EXPECT_FALSE(window->mainToolBar->isHidden());
    action->trigger();
    for (const QDockWidget* const dock : window->findChildren<QDockWidget*>()) {
        EXPECT_FALSE(dock->isHidden()) << qUtf8Printable(dock->objectName());
    }
    EXPECT_EQ(action->objectName(), QStringLiteral("floatsHide"));
}

TEST_F(TORVGUITest, SaysThatTheHelpMenuIsNotConfigured)
{
    window = std::make_unique<TORVGUI>();
    window->help->trigger();
    EXPECT_EQ(history().last(), QStringLiteral("Help menu is not configured"));
}

TEST_F(TORVGUITest, NamesEveryControlAndSaysWhatItDoes)
{
    window = std::make_unique<TORVGUI>();
    for (const QAbstractButton* const button : window->findChildren<QAbstractButton*>()) {
        if (!button->window()->inherits("TORVGUI") || button->parent()->inherits("TORVDockTitle") ||
            button->objectName().startsWith(QLatin1String("qt_"))) { // Qt's own
            continue;
        }
        EXPECT_FALSE(button->accessibleName().isEmpty()) << qUtf8Printable(button->objectName());
        EXPECT_FALSE(button->toolTip().isEmpty()) << qUtf8Printable(button->objectName());
    }
    for (const QComboBox* const box : window->findChildren<QComboBox*>()) {
        if (box->window() == window.get()) {
            EXPECT_FALSE(box->accessibleName().isEmpty()) << qUtf8Printable(box->objectName());
            EXPECT_FALSE(box->toolTip().isEmpty()) << qUtf8Printable(box->objectName());
        }
    }
    for (const QAction* const action : window->mainToolBar->actions()) {
        if (!action->isSeparator() && !action->text().isEmpty()) {
            EXPECT_FALSE(action->toolTip().isEmpty()) << qUtf8Printable(action->objectName());
            EXPECT_FALSE(action->icon().isNull()) << qUtf8Printable(action->objectName());
        }
    }
}

TEST_F(TORVGUITest, FollowsTheOrderOfTheWindowByTheTabulator)
{
    window = std::make_unique<TORVGUI>();
    const QStringList wanted{QStringLiteral("comboBox_liveMode"),
                             QStringLiteral("comboBox_radarSite"),
                             QStringLiteral("comboBox_3DProduct"),
                             QStringLiteral("comboBox_2DProduct"),
                             QStringLiteral("pushButton_RadarLayersVisible"),
                             QStringLiteral("pushButton_OutlineVisible"),
                             QStringLiteral("pushButton_3DProductVisible"),
                             QStringLiteral("pushButton_2DProductVisible"),
                             QStringLiteral("pushButton_GEOLayersVisible"),
                             QStringLiteral("pushButton_3DTerrainVisible"),
                             QStringLiteral("pushButton_LatLonGridVisible"),
                             QStringLiteral("pushButton_RangeRingsVisible"),
                             QStringLiteral("pushButton_LandmarksVisible"),
                             QStringLiteral("comboBox_displayState"),
                             QStringLiteral("comboBox_viewAngle"),
                             QStringLiteral("sceneWidget"),
                             QStringLiteral("pushButton_animPrev"),
                             QStringLiteral("pushButton_animPlay"),
                             QStringLiteral("pushButton_animNext"),
                             QStringLiteral("horizontalSlider_animation"),
                             QStringLiteral("comboBox_animTimeSpan"),
                             QStringLiteral("comboBox_animInterval"),
                             QStringLiteral("comboBox_animSpeed"),
                             QStringLiteral("comboBox_animLoopMode"),
                             QStringLiteral("listWidget_history")};
    QStringList found;
    const QWidget* widget = window->comboBox_liveMode;
    do {
        if (wanted.contains(widget->objectName())) {
            found << widget->objectName();
        }
        widget = widget->nextInFocusChain();
    } while (widget != window->comboBox_liveMode);
    EXPECT_EQ(found, wanted);
}

TEST_F(TORVGUITest, GivesEveryActionItsKey)
{
    window = std::make_unique<TORVGUI>();
    const std::map<const QAction*, QString> keys{
        {window->fileOpen, QStringLiteral("Ctrl+O")}, {window->fileCloseData, QStringLiteral("Ctrl+W")},
        {window->fileExit, QStringLiteral("Ctrl+Q")}, {window->help, QStringLiteral("F1")},
        {window->productInfo, QStringLiteral("F2")},  {window->cursorTool, QStringLiteral("F3")},
        {window->extraWindow, QStringLiteral("F4")},  {window->snapshot, QStringLiteral("Ctrl+S")},
        {window->floatsHide, QStringLiteral("F6")},   {window->animation, QStringLiteral("F7")},
        {window->settings, QStringLiteral("Ctrl+,")}, {window->nightMode, QStringLiteral("F9")},
        {window->fullScreen, QStringLiteral("F11")}};
    for (const auto& [action, key] : keys) {
        EXPECT_EQ(action->shortcut().toString(), key);
    }
    EXPECT_EQ(window->pushButton_animPlay->shortcut().toString(), QStringLiteral("F5"));
    EXPECT_EQ(window->pushButton_animPrev->shortcut().toString(), QStringLiteral("Alt+Left"));
    EXPECT_EQ(window->pushButton_animNext->shortcut().toString(), QStringLiteral("Alt+Right"));
    EXPECT_EQ(window->pushButton_RadarLayersVisible->shortcut().toString(), QStringLiteral("Ctrl+1"));
    EXPECT_EQ(window->pushButton_LandmarksVisible->shortcut().toString(), QStringLiteral("Ctrl+9"));
}
