#include "gui/TORVCursorToolDialog.h"

#include "CursorToolTest.h"
#include "datalib/TORVTerrainSet.h"

#include <QApplication>
#include <QGraphicsEffect>

namespace
{

const QString White = QStringLiteral("QPushButton { background-color: rgb(255, 255, 255); }");

const char* const PlaceLabels[] = {"label_altitude", "label_latitude", "label_longitude"};
const char* const HomeLabels[] = {"label_home",  "label_homeAltitude",   "label_northSouth", "label_eastWest",
                                  "label_range", "label_groundDistance", "label_bearing",    "label_elevation"};

class TORVCursorToolDialogTest : public CursorToolTest
{
protected:
    void expectNoFigures() const
    {
        EXPECT_EQ(text("label_value"), QStringLiteral("NA"));
        EXPECT_EQ(text("label_terrain"), QStringLiteral("NA"));
        for (const char* const name : PlaceLabels) {
            EXPECT_EQ(text(name), QStringLiteral("NA")) << name;
        }
        for (const char* const name : HomeLabels) {
            EXPECT_EQ(text(name), QStringLiteral("NA")) << name;
            EXPECT_EQ(label(name)->property("textRole").toString(), QStringLiteral("missing")) << name;
        }
        EXPECT_EQ(swatch(), White);
    }

    void expectPlaceAndDirections() const
    {
        for (const char* const name : PlaceLabels) {
            EXPECT_NE(text(name), QStringLiteral("NA")) << name;
        }
        for (const char* const name : HomeLabels) {
            EXPECT_NE(text(name), QStringLiteral("NA")) << name;
            EXPECT_EQ(label(name)->property("textRole").toString(), QStringLiteral("value")) << name;
        }
    }
};

using TORVCursorToolDialogDeathTest = TORVCursorToolDialogTest;

} // namespace

TEST_F(TORVCursorToolDialogTest, ShowsNoFigureWithoutData)
{
    expectNoFigures();
    EXPECT_EQ(text("label_unit"), QStringLiteral("NA"));
    EXPECT_EQ(text("label_quantity"), QStringLiteral("Not available"));
    EXPECT_FALSE(homeCombo()->isEnabled());
    EXPECT_FALSE(button("homePointButton")->isEnabled());
    dialog->on_homePointButton_pressed();
    dialog->on_homeCombo_currentIndexChanged(1);
    point(10.0, 10.0, 1000.0);
    expectNoFigures();
    EXPECT_EQ(homeCombo()->currentIndex(), 0);
}

TEST_F(TORVCursorToolDialogTest, ShowsWhatIsUnderTheCursor)
{
    open();
    point(0.0, 50.0, 4125.0);
    EXPECT_EQ(text("label_value"), QStringLiteral("50.0"));
    EXPECT_EQ(text("label_unit"), QStringLiteral("dBZ"));
    EXPECT_EQ(text("label_quantity"), QStringLiteral("Reflectivity"));
    EXPECT_EQ(text("label_altitude"), QStringLiteral("4125 m"));
    EXPECT_EQ(text("label_latitude"), QStringLiteral("60.4497\u00B0 N")); // 50 km / 6371 km = 0.4497 degrees
    EXPECT_EQ(text("label_longitude"), QStringLiteral("25.0000\u00B0 E"));
}

TEST_F(TORVCursorToolDialogTest, PaintsTheColourOfTheValue)
{
    open();
    point(0.0, 50.0, 4125.0);
    const std::array<int, 3> rgb = window.colormap->getColor(50.0);
    EXPECT_EQ(swatch(),
              QStringLiteral("QPushButton { background-color: rgb(%1, %2, %3); }").arg(rgb[0]).arg(rgb[1]).arg(rgb[2]));
    EXPECT_NE(swatch(), White);
}

TEST_F(TORVCursorToolDialogTest, AsksAScaleOfStoredValuesByTheStoredValue)
{
    open();
    const TORVDataType type(2);
    window.colormap = boost::make_shared<TORVColormap>(TORVColormap(), type, TORVColormap::ABSOLUTE_VALUES);
    point(0.0, 50.0, 4125.0);
    const std::array<int, 3> rgb = TORVColormap().getColor(50.0);
    const std::array<int, 3> painted = window.colormap->getColor(164.0); // (164 - 64) / 2 = 50
    for (std::size_t channel = 0; channel < 3; ++channel) {
        EXPECT_NEAR(rgb[channel], painted[channel], 3);
    }
    EXPECT_EQ(swatch(), QStringLiteral("QPushButton { background-color: rgb(%1, %2, %3); }")
                            .arg(painted[0])
                            .arg(painted[1])
                            .arg(painted[2]));
}

TEST_F(TORVCursorToolDialogTest, TheSwatchIsWhiteOverNoData)
{
    open();
    point(0.0, 50.0, 4125.0);
    point(0.0, -50.0, 4125.0);
    EXPECT_EQ(swatch(), White);
    EXPECT_EQ(text("label_value"), QStringLiteral("NA"));
    EXPECT_EQ(text("label_unit"), QStringLiteral("dBZ"));
    expectPlaceAndDirections();
}

TEST_F(TORVCursorToolDialogTest, AnEmptySwatchIsDimmedAtNight)
{
    open();
    point(0.0, -50.0, 4125.0);
    QGraphicsEffect* const dimming = button("colorButton")->graphicsEffect();
    ASSERT_TRUE(dimming);
    EXPECT_FALSE(dimming->isEnabled());
    TORVDisplayMode::setNight(true);
    QEvent change(QEvent::StyleChange);
    QApplication::sendEvent(dialog.get(), &change);
    EXPECT_TRUE(dimming->isEnabled());
    point(0.0, 50.0, 4125.0);
    EXPECT_FALSE(dimming->isEnabled());
}

TEST_F(TORVCursorToolDialogTest, OutsideTheDataOnlyTheValueIsMissing)
{
    open();
    point(0.0, 150.0, 4125.0);
    EXPECT_EQ(text("label_value"), QStringLiteral("NA"));
    EXPECT_EQ(swatch(), White);
    expectPlaceAndDirections();
}

TEST_F(TORVCursorToolDialogTest, WhileTheImageIsBuiltOnlyTheValueIsMissing)
{
    open();
    window.dataSet = nullptr;
    point(0.0, 50.0, 4125.0);
    EXPECT_EQ(text("label_value"), QStringLiteral("NA"));
    expectPlaceAndDirections();
}

TEST_F(TORVCursorToolDialogTest, APointThatIsNoneHasNoFigures)
{
    open();
    dialog->newCursorPosition({std::nan(""), 0.0, 0.0});
    expectNoFigures();
    point(0.0, 50.0, 4125.0);
    expectPlaceAndDirections();
}

TEST_F(TORVCursorToolDialogTest, FollowsTheUnitsOfTheSettings)
{
    open();
    window.settings->setMetricUnits(false);
    point(0.0, 18.52, 3048.0);
    EXPECT_EQ(text("label_altitude"), QStringLiteral("10000 ft"));
    EXPECT_EQ(text("label_homeAltitude"), QStringLiteral("410 ft")); // 125 m
    EXPECT_EQ(text("label_groundDistance"), QStringLiteral("10.0 NM"));
    window.settings->setLatLonFormat(TORVGeneralSettings::LATLON_DMS);
    dialog->updateValues();
    EXPECT_EQ(text("label_home"), QStringLiteral("60\u00B0 0' 0.00\" N, 25\u00B0 0' 0.00\" E"));
}

TEST_F(TORVCursorToolDialogTest, StraightNorthIsNorthAndNothingEast)
{
    open();
    point(0.0, 50.0, 125.0);
    EXPECT_TRUE(text("label_northSouth").endsWith(QLatin1String(" km N"))) << text("label_northSouth").toStdString();
    EXPECT_EQ(text("label_eastWest"), QStringLiteral("0.0 km E"));
    EXPECT_EQ(text("label_groundDistance"), QStringLiteral("50.0 km"));
    EXPECT_EQ(text("label_bearing"), QStringLiteral("0.0\u00B0"));
    EXPECT_EQ(text("label_elevation"), QStringLiteral("0.0\u00B0"));
}

TEST_F(TORVCursorToolDialogTest, StraightSouthIsWrittenWithoutASign)
{
    open();
    point(0.0, -50.0, 125.0);
    EXPECT_TRUE(text("label_northSouth").endsWith(QLatin1String(" km S")));
    EXPECT_FALSE(text("label_northSouth").startsWith(QLatin1Char('-')));
    EXPECT_EQ(text("label_bearing"), QStringLiteral("180.0\u00B0"));
}

TEST_F(TORVCursorToolDialogTest, WestIsWest)
{
    open();
    point(-50.0, 0.0, 125.0);
    EXPECT_TRUE(text("label_eastWest").endsWith(QLatin1String(" km W")));
    point(50.0, 0.0, 125.0);
    EXPECT_TRUE(text("label_eastWest").endsWith(QLatin1String(" km E")));
}

TEST_F(TORVCursorToolDialogTest, TheVerticalScaleDoesNotEnterTheElevation)
{
    open();
    for (const double scale : {1.0, 5.0, 12.0}) {
        window.settings->setVerticalScale(scale);
        dialog->updateValues();
        point(6.0, 8.0, 5125.0); // 10 km away, 5 km up: atan(1 / 2)
        EXPECT_EQ(text("label_elevation"), QStringLiteral("26.6\u00B0")) << scale;
        EXPECT_EQ(text("label_altitude"), QStringLiteral("5125 m")) << scale;
        EXPECT_EQ(text("label_value"), QStringLiteral("50.0")) << scale;
    }
}

TEST_F(TORVCursorToolDialogTest, TellsTheWayThroughTheAirBesideThatInThePlane)
{
    open();
    point(3.0, 4.0, 12125.0);
    EXPECT_EQ(text("label_groundDistance"), QStringLiteral("5.0 km"));
    EXPECT_TRUE(label("label_groundDistance")->toolTip().contains(QLatin1String("13.0 km")));
}

TEST_F(TORVCursorToolDialogTest, TheGroundIsMissingUntilItIsLoaded)
{
    open();
    point(0.0, 50.0, 4125.0);
    EXPECT_EQ(text("label_terrain"), QStringLiteral("NA"));
    const boost::shared_ptr<TORVTerrainSet> terrain = window.frame->getTerrainSet();
    ASSERT_TRUE(terrain);
    const std::atomic<bool> abort{false};
    terrain->loadFiles(abort);
    dialog->updateValues();
    EXPECT_EQ(text("label_terrain"), QStringLiteral("0 m"));
}

TEST_F(TORVCursorToolDialogTest, InvalidatedFiguresComeBackWithTheNextUpdate)
{
    open();
    point(0.0, 50.0, 4125.0);
    dialog->invalidateValues();
    expectNoFigures();
    dialog->updateValues();
    EXPECT_EQ(text("label_value"), QStringLiteral("50.0"));
    expectPlaceAndDirections();
}

TEST_F(TORVCursorToolDialogTest, ReadsWhereTheCursorIsDragged)
{
    open();
    dialog->showDialog();
    cursor()->setCursor({0.0, 50000.0, 4125.0 * 5.0});
    cursor()->update();
    EXPECT_EQ(text("label_value"), QStringLiteral("50.0"));
    EXPECT_EQ(text("label_altitude"), QStringLiteral("4125 m"));
}

TEST_F(TORVCursorToolDialogTest, AResetPutsTheCursorAtTheRadar)
{
    open();
    point(0.0, 50.0, 4125.0);
    dialog->resetCursor();
    const std::array<double, 6> box = {-100000.0, 100000.0, -100000.0, 100000.0, 125.0 * 5.0, 10125.0 * 5.0};
    for (std::size_t side = 0; side < box.size(); ++side) {
        EXPECT_NEAR(cursor()->getBounds()[side], box[side], 1e-6);
    }
    EXPECT_NEAR(cursor()->getCursor().z, 625.0, 1e-6);
    EXPECT_EQ(text("label_altitude"), QStringLiteral("125 m"));
    EXPECT_EQ(text("label_range"), QStringLiteral("0.0 km"));
}

TEST_F(TORVCursorToolDialogTest, TheFirstUpdateWithDataPutsTheCursorAtTheRadar)
{
    put(frame(Noon));
    dialog->updateValues();
    EXPECT_EQ(text("label_altitude"), QStringLiteral("125 m"));
    EXPECT_NEAR(cursor()->getBounds()[5], 50625.0, 1e-6);
}

TEST_F(TORVCursorToolDialogTest, AResetAtAnotherRadarTakesItsHeightWhateverTheOldBoxWas)
{
    TORVProductFields high = grid();
    high.siteName = "MOUNTAIN";
    high.siteLatitude = 0;
    high.groundElevation = 1600;
    add("260714120001", high, echo);
    open();
    point(0.0, 0.0, 9000.0);
    cursor()->setCursor({0.0, 0.0, 45000.0});
    put(boost::make_shared<TORVDataFrame>(store, QStringLiteral("MOUNTAIN"), QStringLiteral("260714120001"),
                                          QStringLiteral("CAPPI"), QStringLiteral("Z"), QString(), 180, 1.5));
    dialog->resetCursor();
    EXPECT_EQ(text("label_altitude"), QStringLiteral("1625 m"));
    EXPECT_NEAR(cursor()->getCursor().z, 1625.0 * 5.0, 1e-6);
}

TEST_F(TORVCursorToolDialogTest, AForcedResetComesWithTheNextUpdate)
{
    open();
    point(0.0, 50.0, 4125.0);
    dialog->forceReset();
    EXPECT_EQ(log.lines().filter(QStringLiteral("Force reset cursor tool!")).size(), 1);
    EXPECT_EQ(text("label_altitude"), QStringLiteral("4125 m"));
    dialog->updateValues();
    EXPECT_EQ(text("label_altitude"), QStringLiteral("125 m"));
    point(0.0, 50.0, 4125.0);
    dialog->updateValues();
    EXPECT_EQ(text("label_altitude"), QStringLiteral("4125 m"));
}

TEST_F(TORVCursorToolDialogTest, AForcedResetWaitsForData)
{
    open();
    const TORVDataFrame::CPtr frame = window.frame;
    point(0.0, 50.0, 4125.0);
    dialog->forceReset();
    close();
    dialog->updateValues();
    expectNoFigures();
    window.frame = frame;
    dialog->updateValues();
    EXPECT_EQ(text("label_altitude"), QStringLiteral("125 m"));
}

TEST_F(TORVCursorToolDialogDeathTest, AResetNeedsData)
{
    EXPECT_DEATH(dialog->resetCursor(), "file3d");
}

TEST_F(TORVCursorToolDialogTest, ANewVerticalScaleKeepsTheAltitude)
{
    open();
    cursor()->setCursor({0.0, 50000.0, 4125.0 * 5.0});
    point(0.0, 50.0, 4125.0);
    window.settings->setVerticalScale(10.0);
    dialog->updateValues();
    EXPECT_EQ(text("label_altitude"), QStringLiteral("4125 m"));
    EXPECT_NEAR(cursor()->getCursor().z, 41250.0, 1e-3);
    EXPECT_NEAR(cursor()->getBounds()[5], 101250.0, 1e-6);
}

TEST_F(TORVCursorToolDialogTest, AnotherBoxTakesTheCursorAlong)
{
    TORVProductFields half = grid();
    half.zPoints = 6; // 5 km high
    add("260714120500", half, echo);
    open();
    cursor()->setCursor({0.0, 50000.0, 8125.0 * 5.0});
    point(0.0, 50.0, 8125.0);
    put(frame("260714120500"));
    dialog->updateValues();
    EXPECT_EQ(text("label_altitude"), QStringLiteral("4125 m")); // at 0.8 of the height
    EXPECT_NEAR(cursor()->getCursor().z, 4125.0 * 5.0, 1e-3);
}

TEST_F(TORVCursorToolDialogTest, WorksWithoutARenderer)
{
    window.renderer = nullptr;
    open();
    dialog->showDialog();
    point(0.0, 50.0, 4125.0);
    EXPECT_EQ(text("label_value"), QStringLiteral("50.0"));
    dialog->hideDialog();
}
