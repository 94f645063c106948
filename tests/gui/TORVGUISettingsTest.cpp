#include "GUITest.h"

#include "datalib/TORVTerrainSet.h"
#include "gui/TORVCursorToolDialog.h"
#include "gui/TORVDoubleModeDialog.h"
#include "gui/TORVGeneralSettingsDialog.h"
#include "gui/TORVProductInformationDialog.h"
#include "settings/TORVGeneralSettings.h"
#include "settings/TORVProductSettings.h"
#include "visualization/TORVRenderer.h"

#include <QAction>

namespace
{

class TORVGUISettingsTest : public GUITest
{
protected:
    // As the dialog does it: what it saves is told by its signal.
    void apply(const std::function<void(TORVGeneralSettings&)>& change)
    {
        TORVGeneralSettings settings;
        change(settings);
        settings.save();
        Q_EMIT dialog<TORVGeneralSettingsDialog>()->applyChanges();
    }

    template <class Dialog>
    Dialog* dialog() const
    {
        return window->findChild<Dialog*>();
    }
};

} // namespace

TEST_F(TORVGUISettingsTest, SaysThatThereIsNothingToApply)
{
    configure();
    window = std::make_unique<TORVGUI>();
    apply([](TORVGeneralSettings&) {});
    EXPECT_EQ(history().mid(1),
              (QStringList{QStringLiteral("General settings applied:"), QStringLiteral("- No changes.")}));
    EXPECT_EQ(window->statusbar->currentMessage(), QStringLiteral("No changes to apply.."));
}

TEST_F(TORVGUISettingsTest, TakesUnitsIntoTheWindow)
{
    configure();
    window = std::make_unique<TORVGUI>();
    apply([](TORVGeneralSettings& settings) { settings.setMetricUnits(false); });
    EXPECT_FALSE(window->getCurrentGeneralSettings()->isMetricUnits());
    EXPECT_TRUE(history().contains(QStringLiteral("General settings applied:")));
}

TEST_F(TORVGUISettingsTest, DrawsTheSceneInItsNewHeight)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    const auto visualization = window->getAnimation().getCurrentVisualization();
    const double before = visualization->getVerticalScale();
    apply([before](TORVGeneralSettings& settings) { settings.setVerticalScale(before + 3.0); });
    ASSERT_TRUE(waitFor([this] { return isShown(); }));
    EXPECT_DOUBLE_EQ(visualization->getVerticalScale(), before + 3.0);
}

TEST_F(TORVGUISettingsTest, FollowsOtherDirectoriesAndStaysLive)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    const QString other = home.filePath(QStringLiteral("other"));
    ASSERT_TRUE(QDir().mkpath(other));
    ASSERT_TRUE(QFile::copy(directory("3d") + QStringLiteral("/HAL260714120000.CAPZ"),
                            other + QStringLiteral("/HAL260714123000.CAPZ")));
    apply([&other](TORVGeneralSettings& settings) { settings.set3DDir(other); });
    EXPECT_TRUE(history().contains(QStringLiteral("Data paths changed:")));
    EXPECT_TRUE(history().contains(QStringLiteral("- Current data will be closed.")));
    ASSERT_TRUE(waitFor([this] {
        return isShown() && window->getCurrentDataFrame()->getData3d()->getTime() == QLatin1String("260714123000");
    }));
    EXPECT_TRUE(window->getCurrentGeneralSettings()->isLiveMode());
    EXPECT_TRUE(TORVGeneralSettings().isLiveMode());
}

TEST_F(TORVGUISettingsTest, CanApplyWithoutAnyData)
{
    open();
    ASSERT_TRUE(waitForHistory(QStringLiteral("Please, set up your data paths.")));
    writeVolume("HALMERA", 0);
    apply([this](TORVGeneralSettings& settings) {
        settings.set3DDir(directory("3d"));
        settings.setMetricUnits(false);
    });
    ASSERT_TRUE(waitFor([this] { return window->getCurrentGeneralSettings()->get3DDir() == directory("3d"); }));
    EXPECT_FALSE(window->getCurrentDataFrame());
}

TEST_F(TORVGUISettingsTest, MakesTheGroundAnewWhenItsCacheIsCleared)
{
    ASSERT_TRUE(QFile::remove(terrainCache())); // that of the other tests stays
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    const auto before = window->getCurrentDataFrame()->getTerrainSet();
    Q_EMIT dialog<TORVGeneralSettingsDialog>()->clearGeoCache();
    ASSERT_TRUE(waitFor([this] { return isShown(); }));
    EXPECT_NE(window->getCurrentDataFrame()->getTerrainSet(), before);
    EXPECT_TRUE(window->getCurrentDataFrame()->getTerrainSet()->isLoaded());
}

TEST_F(TORVGUISettingsTest, AppliesWhatTheProductDialogTells)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    auto* const product = dialog<TORVProductInformationDialog>();
    const TORVProductSettings::Ptr edited = product->getProductSettings();
    edited->setRenderingType(TORVProductSettings::VOLUME);
    product->setProductSettings(*edited);
    Q_EMIT product->applyChanges();
    EXPECT_TRUE(history().contains(QStringLiteral("Product settings applied:")));
    ASSERT_TRUE(waitFor([this] { return isShown(); }));
    EXPECT_EQ(window->getCurrentDataFrame()->getProductSettings()->getRenderingType(), TORVProductSettings::VOLUME);
    Q_EMIT product->applyChanges();
    EXPECT_EQ(countInHistory(QStringLiteral("Product settings applied:")), 1);
}

TEST_F(TORVGUISettingsTest, ShowsAndHidesEachToolAndKeepsItsActionInStep)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    const std::pair<QAction*, QDialog*> tools[] = {{window->settings, dialog<TORVGeneralSettingsDialog>()},
                                                   {window->productInfo, dialog<TORVProductInformationDialog>()},
                                                   {window->cursorTool, dialog<TORVCursorToolDialog>()},
                                                   {window->extraWindow, dialog<TORVDoubleModeDialog>()}};
    for (const auto& [action, tool] : tools) {
        action->trigger();
        EXPECT_TRUE(tool->isVisible()) << qUtf8Printable(action->objectName());
        EXPECT_TRUE(action->isChecked()) << qUtf8Printable(action->objectName());
        action->trigger();
        EXPECT_FALSE(tool->isVisible()) << qUtf8Printable(action->objectName());
        EXPECT_FALSE(action->isChecked()) << qUtf8Printable(action->objectName());
        action->trigger();
        tool->close();
        EXPECT_FALSE(action->isChecked()) << qUtf8Printable(action->objectName());
    }
}

TEST_F(TORVGUISettingsTest, ShowsTheCursorOnlyWithItsTool)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    EXPECT_FALSE(window->getCurrentRenderer()->isPointWidgetOn());
    window->cursorTool->trigger();
    EXPECT_TRUE(window->getCurrentRenderer()->isPointWidgetOn());
    window->cursorTool->trigger();
    EXPECT_FALSE(window->getCurrentRenderer()->isPointWidgetOn());
}

TEST_F(TORVGUISettingsTest, HidesToolsWithThePanelsAndBringsThemBack)
{
    configure();
    window = std::make_unique<TORVGUI>();
    window->show();
    window->cursorTool->trigger();
    ASSERT_TRUE(dialog<TORVCursorToolDialog>()->isVisible());
    window->floatsHide->trigger();
    EXPECT_FALSE(dialog<TORVCursorToolDialog>()->isVisible());
    window->floatsHide->trigger();
    EXPECT_TRUE(dialog<TORVCursorToolDialog>()->isVisible());
}

TEST_F(TORVGUISettingsTest, DisablesWhatCouldDisturbABuild)
{
    writeVolume("HALMERA", 0);
    configureLive();
    open();
    ASSERT_TRUE(waitFor([this] { return window->getAnimation().getFrameCount() == 1; }));
    ASSERT_TRUE(window->isBusy());
    for (const QAction* const action :
         {window->fileOpen, window->fileCloseData, window->settings, window->productInfo}) {
        EXPECT_FALSE(action->isEnabled()) << qUtf8Printable(action->objectName());
    }
    EXPECT_FALSE(window->comboBox_radarSite->isEnabled());
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    ASSERT_TRUE(waitFor([this] { return isShown(); }));
    EXPECT_TRUE(window->fileOpen->isEnabled());
    EXPECT_TRUE(window->comboBox_radarSite->isEnabled());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(TORVGUISettingsTest, OpensAToolAtTheRightEdgeOfTheSceneAndThenWhereTheUserLeftIt)
{
    configure();
    window = std::make_unique<TORVGUI>();
    window->show();
    window->productInfo->setEnabled(true);
    window->productInfo->trigger();
    auto* const tool = dialog<TORVProductInformationDialog>();
    const int sceneRight = window->sceneWidget->mapToGlobal(QPoint(window->sceneWidget->width(), 0)).x();
    EXPECT_EQ(sceneRight - tool->frameGeometry().right() - 1, 24);
    tool->move(50, 60);
    window->productInfo->trigger();
    window->productInfo->trigger();
    EXPECT_EQ(tool->pos(), QPoint(50, 60));
}
