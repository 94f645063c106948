#include "GUITest.h"

#include "settings/TORVDisplayState.h"
#include "settings/TORVGeneralSettings.h"
#include "visualization/TORVCameraInteractor.h"
#include "visualization/TORVRenderer.h"

#include <QAction>
#include <QDialog>
#include <QPushButton>

#include <boost/make_shared.hpp>

namespace
{

class TORVGUILayersTest : public GUITest
{
protected:
    // One preset without terrain, one view from the south.
    void openWithPresets()
    {
        writeVolume("HALMERA", 0);
        TORVGeneralSettings settings;
        const auto plain = boost::make_shared<TORVDisplayState>();
        plain->setName(QStringLiteral("Plain"));
        plain->getLayer(TORVDisplayLayer::LAYER_3DTERRAIN)->setEnabled(false);
        settings.setDisplayStates({plain});
        const auto south = boost::make_shared<TORVViewAngle>(
            QStringLiteral("South"), TORVPoint3D{0.0, -30000.0, 20000.0}, TORVPoint3D{0.0, 0.8, -0.6});
        settings.setViewAngles({south});
        configureLive();
        settings.saveDisplayStates(boost::make_shared<TORVDisplayState>());
        settings.saveViewAngles(boost::make_shared<TORVViewAngle>());
        openAndWait(1);
    }

    bool isOn(int key) const { return window->getCurrentDisplayState()->getLayer(key)->isEnabled(); }

    // What the finished scene was told to show.
    bool isDrawn(int key) const
    {
        const auto item = window->getAnimation().getCurrentVisualization()->getResultItem();
        return item->getDisplayState()->getLayer(key)->isEnabled();
    }

    bool waitIdle() const
    {
        return waitFor([this] { return isShown(); });
    }
};

} // namespace

TEST_F(TORVGUILayersTest, SwitchesEachLayerAndSaysSo)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    const struct
    {
        QPushButton* button;
        int key;
        const char* word;
    } rows[] = {
        {window->pushButton_OutlineVisible, TORVDisplayLayer::LAYER_3DOUTLINE, "D: Outline visibility off"},
        {window->pushButton_3DProductVisible, TORVDisplayLayer::LAYER_3DPRODUCT, "D: 3D product visibility off"},
        {window->pushButton_2DProductVisible, TORVDisplayLayer::LAYER_2DPRODUCT, "D: 2D product visibility off"},
        {window->pushButton_3DTerrainVisible, TORVDisplayLayer::LAYER_3DTERRAIN, "D: Terrain visibility off"},
        {window->pushButton_LatLonGridVisible, TORVDisplayLayer::LAYER_LATLONGRID, "D: Lat/lon grid visibility off"},
        {window->pushButton_RangeRingsVisible, TORVDisplayLayer::LAYER_RANGERINGS, "D: Range rings visibility off"},
        {window->pushButton_LandmarksVisible, TORVDisplayLayer::LAYER_GEOLABELS, "D: Landmarks visibility off"},
        {window->pushButton_RadarLayersVisible, TORVDisplayLayer::GROUP_RADARLAYERS, "D: Radar layers visibility off"},
        {window->pushButton_GEOLayersVisible, TORVDisplayLayer::GROUP_GEOLAYERS, "D: Geo visibility off"},
    };
    for (const auto& row : rows) {
        row.button->click();
        EXPECT_FALSE(isOn(row.key)) << row.word;
        EXPECT_TRUE(log.lines().contains(QLatin1String(row.word))) << row.word;
        ASSERT_TRUE(waitIdle());
        EXPECT_FALSE(isDrawn(row.key)) << row.word;
    }
}

TEST_F(TORVGUILayersTest, SwitchesAllLayersOfAGroup)
{
    window = std::make_unique<TORVGUI>();
    window->pushButton_GEOLayersVisible->click();
    for (const int key :
         {TORVDisplayLayer::GROUP_GEOLAYERS, TORVDisplayLayer::LAYER_3DTERRAIN, TORVDisplayLayer::LAYER_LATLONGRID,
          TORVDisplayLayer::LAYER_RANGERINGS, TORVDisplayLayer::LAYER_GEOLABELS}) {
        EXPECT_FALSE(isOn(key)) << key;
    }
    EXPECT_FALSE(window->pushButton_LandmarksVisible->isChecked());
    EXPECT_TRUE(isOn(TORVDisplayLayer::LAYER_3DPRODUCT));
}

TEST_F(TORVGUILayersTest, SwitchesAGroupOnWithItsFirstLayer)
{
    window = std::make_unique<TORVGUI>();
    window->pushButton_GEOLayersVisible->click();
    window->pushButton_RangeRingsVisible->click();
    EXPECT_TRUE(isOn(TORVDisplayLayer::GROUP_GEOLAYERS));
    EXPECT_TRUE(window->pushButton_GEOLayersVisible->isChecked());
    EXPECT_FALSE(isOn(TORVDisplayLayer::LAYER_3DTERRAIN));
}

TEST_F(TORVGUILayersTest, LeavesAGroupOnWithoutItsLastLayer)
{
    window = std::make_unique<TORVGUI>();
    for (QPushButton* const button : {window->pushButton_OutlineVisible, window->pushButton_3DProductVisible,
                                      window->pushButton_2DProductVisible}) {
        button->click();
    }
    EXPECT_TRUE(isOn(TORVDisplayLayer::GROUP_RADARLAYERS));
    EXPECT_TRUE(window->pushButton_RadarLayersVisible->isChecked());
}

TEST_F(TORVGUILayersTest, ThreeQuickClicksEndWithTheScenethatTheButtonsTell)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    window->pushButton_OutlineVisible->click();
    window->pushButton_RangeRingsVisible->click();
    window->pushButton_LatLonGridVisible->click();
    ASSERT_TRUE(waitIdle());
    EXPECT_FALSE(isDrawn(TORVDisplayLayer::LAYER_3DOUTLINE));
    EXPECT_FALSE(isDrawn(TORVDisplayLayer::LAYER_RANGERINGS));
    EXPECT_FALSE(isDrawn(TORVDisplayLayer::LAYER_LATLONGRID));
}

TEST_F(TORVGUILayersTest, AClickDuringALoadIsInThePictureOfTheNewFrame)
{
    writeVolume("HALMERA", 0);
    writeVolume("HALMERA", 5);
    configureLive();
    openAndWait(2);
    window->horizontalSlider_animation->setSliderDown(true);
    window->horizontalSlider_animation->setValue(0);
    window->horizontalSlider_animation->setSliderDown(false);
    ASSERT_TRUE(waitFor([this] { return window->getAnimation().getCurrentIndex() == 0; }));
    window->pushButton_OutlineVisible->click();
    ASSERT_TRUE(waitForMinute(0));
    EXPECT_FALSE(isDrawn(TORVDisplayLayer::LAYER_3DOUTLINE));
}

TEST_F(TORVGUILayersTest, ListsCustomDefaultPresetsAndTheManager)
{
    openWithPresets();
    EXPECT_EQ(entries(window->comboBox_displayState),
              QStringLiteral("Custom,Default,Plain,(Manage presets)").split(QLatin1Char(',')));
    EXPECT_EQ(entries(window->comboBox_viewAngle),
              QStringLiteral("Custom,Default,South,(Manage presets)").split(QLatin1Char(',')));
}

TEST_F(TORVGUILayersTest, AppliesAPresetOfTheDisplayState)
{
    openWithPresets();
    choose(window->comboBox_displayState, QStringLiteral("Plain"));
    EXPECT_EQ(countInHistory(QStringLiteral("Display state: Plain")), 1);
    EXPECT_FALSE(window->pushButton_3DTerrainVisible->isChecked());
    ASSERT_TRUE(waitIdle());
    EXPECT_FALSE(isDrawn(TORVDisplayLayer::LAYER_3DTERRAIN));
    choose(window->comboBox_displayState, QStringLiteral("Default"));
    EXPECT_EQ(countInHistory(QStringLiteral("Display state: Default")), 1);
    EXPECT_TRUE(window->pushButton_3DTerrainVisible->isChecked());
    ASSERT_TRUE(waitIdle());
    EXPECT_TRUE(isDrawn(TORVDisplayLayer::LAYER_3DTERRAIN));
}

TEST_F(TORVGUILayersTest, BecomesCustomByAnyChangeOfALayer)
{
    openWithPresets();
    choose(window->comboBox_displayState, QStringLiteral("Plain"));
    window->pushButton_OutlineVisible->click();
    EXPECT_EQ(window->comboBox_displayState->currentText(), QStringLiteral("Custom"));
}

TEST_F(TORVGUILayersTest, AppliesAPresetOfTheView)
{
    openWithPresets();
    choose(window->comboBox_viewAngle, QStringLiteral("South"));
    EXPECT_EQ(countInHistory(QStringLiteral("View angle: South")), 1);
    EXPECT_EQ(window->comboBox_viewAngle->currentText(), QStringLiteral("South"));
    const TORVPoint3D position = window->getCurrentRenderer()->getCameraInteractor()->getPosition();
    EXPECT_NEAR(position.y, -30000.0, 1.0);
    EXPECT_NEAR(position.z, 20000.0, 1.0);
}

TEST_F(TORVGUILayersTest, GoesBackToTheHomeViewByDefault)
{
    openWithPresets();
    const double home_z = window->getCurrentViewAngle()->getPosition().z;
    choose(window->comboBox_viewAngle, QStringLiteral("South"));
    choose(window->comboBox_viewAngle, QStringLiteral("Default"));
    EXPECT_EQ(window->comboBox_viewAngle->currentText(), QStringLiteral("Default"));
    EXPECT_NEAR(window->getCurrentRenderer()->getCameraInteractor()->getPosition().z, home_z, 1.0);
}

TEST_F(TORVGUILayersTest, TheViewBecomesCustomByAnyMoveOfTheCamera)
{
    openWithPresets();
    choose(window->comboBox_viewAngle, QStringLiteral("South"));
    TORVCameraInteractor* const camera = window->getCurrentRenderer()->getCameraInteractor();
    camera->panCamera(10.0, 0.0);
    camera->userMoved();
    EXPECT_EQ(window->comboBox_viewAngle->currentText(), QStringLiteral("Custom"));
}

TEST_F(TORVGUILayersTest, ManagesPresetsAndKeepsTheChosenEntry)
{
    openWithPresets();
    choose(window->comboBox_displayState, QStringLiteral("Plain"));
    QTimer::singleShot(0, window.get(), [] {
        auto* const manager = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_TRUE(manager);
        EXPECT_EQ(QString::fromLatin1(manager->metaObject()->className()), QStringLiteral("TORVDisplayStateManager"));
        manager->reject();
    });
    choose(window->comboBox_displayState, QStringLiteral("(Manage presets)"));
    EXPECT_EQ(window->comboBox_displayState->currentText(), QStringLiteral("Plain"));
}

TEST_F(TORVGUILayersTest, RestoresDisplayStateAndViewAtTheNextStart)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    window->pushButton_OutlineVisible->click();
    TORVCameraInteractor* const camera = window->getCurrentRenderer()->getCameraInteractor();
    camera->setView({1000.0, -30000.0, 20000.0}, {0.0, 0.8, -0.6});
    camera->userMoved();
    const TORVPoint3D position = window->getCurrentViewAngle()->getPosition();
    window.reset();
    openAndWait(1);
    EXPECT_FALSE(window->pushButton_OutlineVisible->isChecked());
    EXPECT_NEAR(window->getCurrentRenderer()->getCameraInteractor()->getPosition().x, position.x, 1.0);
    EXPECT_NEAR(window->getCurrentRenderer()->getCameraInteractor()->getPosition().y, position.y, 1.0);
    EXPECT_NEAR(window->getCurrentRenderer()->getCameraInteractor()->getPosition().z, position.z, 1.0);
}

TEST_F(TORVGUILayersTest, KeepsTheViewOfTheLastSessionWhenNothingWasShown)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    TORVCameraInteractor* const camera = window->getCurrentRenderer()->getCameraInteractor();
    camera->setView({0.0, -30000.0, 20000.0}, {0.0, 0.8, -0.6});
    camera->userMoved();
    window.reset();
    window = std::make_unique<TORVGUI>(); // and gone again before its first picture
    window.reset();
    openAndWait(1);
    EXPECT_NEAR(window->getCurrentRenderer()->getCameraInteractor()->getPosition().y, -30000.0, 1.0);
}
