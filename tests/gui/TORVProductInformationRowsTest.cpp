// The rows of surfaces and volume in the product information, and the colour scale.

#include "ProductInformationTest.h"

#include <QGraphicsOpacityEffect>

namespace
{

using TORVProductInformationRowsTest = ProductInformationTest;

} // namespace

TEST_F(TORVProductInformationRowsTest, ARowForEachSurfaceInAscendingOrder)
{
    giveSurfaces({{50.0, 100}, {20.0, 18}, {35.0, 32}});
    EXPECT_EQ(combo("renderCombo")->currentText(), QLatin1String("Surface rendering"));
    const double values[] = {20.0, 35.0, 50.0};
    const double opacities[] = {18.0, 32.0, 100.0};
    for (int row = 1; row <= 3; ++row) {
        EXPECT_TRUE(check(row)->isChecked());
        EXPECT_EQ(value(row)->value(), values[row - 1]);
        EXPECT_EQ(opacity(row)->value(), opacities[row - 1]);
        EXPECT_TRUE(value(row)->isEnabled());
    }
    EXPECT_FALSE(check(4)->isChecked());
    EXPECT_FALSE(value(4)->isEnabled());
    EXPECT_FALSE(opacity(4)->isEnabled());
    EXPECT_FALSE(isEdited());
}

TEST_F(TORVProductInformationRowsTest, ShowsTheRampOfAVolume)
{
    giveVolume(10.0, 0.3, 60.0, 25.0);
    EXPECT_EQ(combo("renderCombo")->currentText(), QLatin1String("Volume rendering"));
    EXPECT_EQ(box("volumeValueBoxLow")->value(), 10.0);
    EXPECT_EQ(box("volumeOpacityBoxLow")->value(), 0.3);
    EXPECT_EQ(box("volumeValueBoxHigh")->value(), 60.0);
    EXPECT_EQ(box("volumeOpacityBoxHigh")->value(), 25.0);
    EXPECT_FALSE(isEdited());
}

TEST_F(TORVProductInformationRowsTest, ShowsTheRowsOfTheRenderingThatIsChosen)
{
    giveSurfaces({{20.0, 50}});
    dialog.show();
    EXPECT_TRUE(value(1)->isVisible());
    EXPECT_FALSE(box("volumeValueBoxLow")->isVisible());
    combo("renderCombo")->setCurrentIndex(TORVProductSettings::VOLUME);
    EXPECT_FALSE(check(1)->isVisible());
    EXPECT_FALSE(value(4)->isVisible());
    EXPECT_TRUE(box("volumeValueBoxLow")->isVisible());
    EXPECT_TRUE(box("volumeOpacityBoxHigh")->isVisible());
    EXPECT_EQ(dialog.getProductSettings()->getRenderingType(), TORVProductSettings::VOLUME);
}

TEST_F(TORVProductInformationRowsTest, NothingMovesWhenTheRenderingIsChanged)
{
    giveSurfaces({{20.0, 50}});
    dialog.show();
    const QRect place = button("applyButton")->geometry();
    const QSize size = dialog.sizeHint();
    combo("renderCombo")->setCurrentIndex(TORVProductSettings::VOLUME);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(button("applyButton")->geometry(), place);
    EXPECT_EQ(dialog.sizeHint(), size);
}

TEST_F(TORVProductInformationRowsTest, GivesTheRecordOfTheControls)
{
    giveSurfaces({{20.0, 50}});
    check(2)->setChecked(true);
    value(2)->setValue(41.5);
    opacity(2)->setValue(77.0);
    box("volumeValueBoxLow")->setValue(5.0);
    const TORVProductSettings::Ptr settings = dialog.getProductSettings();
    EXPECT_EQ(settings->getProduct(), QLatin1String("CAPPI"));
    EXPECT_EQ(settings->getConfiguration(), QLatin1String("Z"));
    EXPECT_EQ(settings->getRenderingType(), TORVProductSettings::SURFACE);
    EXPECT_EQ(settings->getSurfaces(), (QMap<double, int>{{20.0, 50}, {41.5, 77}}));
    EXPECT_EQ(settings->getVolumeValueLow(), 5.0);
    EXPECT_EQ(settings->getColorScaleName(), QLatin1String("Default"));
    EXPECT_NE(dialog.getProductSettings(), settings); // a new one each time
}

TEST_F(TORVProductInformationRowsTest, OpacitiesOfTheVolumeAreTaken)
{
    giveVolume(10.0, 0.3, 60.0, 25.0);
    box("volumeOpacityBoxLow")->setValue(1.5);
    box("volumeOpacityBoxHigh")->setValue(80.0);
    box("volumeValueBoxHigh")->setValue(55.5);
    const TORVProductSettings::Ptr settings = dialog.getProductSettings();
    EXPECT_EQ(settings->getVolumeOpacityLow(), 1.5);
    EXPECT_EQ(settings->getVolumeOpacityHigh(), 80.0);
    EXPECT_EQ(settings->getVolumeValueHigh(), 55.5);
    EXPECT_TRUE(isEdited());
}

TEST_F(TORVProductInformationRowsTest, WhatNobodyTouchedKeepsItsExactValue)
{
    giveSurfaces({{20.123456, 50}, {35.0, 32}});
    EXPECT_EQ(value(1)->value(), 20.1);
    EXPECT_FALSE(isEdited());
    value(2)->setValue(36.0);
    EXPECT_EQ(dialog.getProductSettings()->getSurfaces(), (QMap<double, int>{{20.123456, 50}, {36.0, 32}}));
}

TEST_F(TORVProductInformationRowsTest, AValueThatIsPutBackIsTheOldOne)
{
    giveSurfaces({{20.123456, 50}});
    value(1)->setValue(25.0);
    EXPECT_TRUE(isEdited());
    value(1)->setValue(20.1);
    EXPECT_FALSE(isEdited());
}

TEST_F(TORVProductInformationRowsTest, ARecordBeyondTheRangeIsKeptUntilItIsTouched)
{
    giveSurfaces({{200.0, 50}});
    EXPECT_EQ(value(1)->value(), 95.0); // raw 254
    EXPECT_FALSE(isEdited());
    value(1)->stepDown();
    EXPECT_EQ(dialog.getProductSettings()->getSurfaces(), (QMap<double, int>{{94.5, 50}}));
}

TEST_F(TORVProductInformationRowsTest, ValuesStayInTheRangeOfTheDataType)
{
    giveSurfaces({{20.0, 50}});
    for (QDoubleSpinBox* const found : {value(1), box("volumeValueBoxLow"), box("volumeValueBoxHigh")}) {
        EXPECT_EQ(found->minimum(), -31.5); // raw 1
        EXPECT_EQ(found->maximum(), 95.0);  // raw 254
        EXPECT_EQ(found->singleStep(), 0.5);
        EXPECT_EQ(found->decimals(), 1);
    }
    EXPECT_EQ(opacity(1)->minimum(), 0.0);
    EXPECT_EQ(opacity(1)->maximum(), 100.0);
}

TEST_F(TORVProductInformationRowsTest, TheEndsOfTheRangeLieInsideItWhereTheBoxRounds)
{
    give(velocity(1200), Noon, "V"); // Nyquist 15.99; raw 1 is -127/127, raw 254 is 126/127 of it
    dialog.updateValues();
    EXPECT_EQ(value(1)->minimum(), -15.9);
    EXPECT_EQ(value(1)->maximum(), 15.8); // 15.864
}

TEST_F(TORVProductInformationRowsTest, RainIsEditedInHundredths)
{
    TORVProductFields rain = reflectivity();
    rain.dataType = 13;
    add3d(Noon, rain);
    open();
    show(Noon, "R");
    dialog.updateValues();
    EXPECT_EQ(value(1)->decimals(), 2);
    EXPECT_EQ(find<QLabel>("valueLabel")->text(), QLatin1String("&Value, mm/h"));
}

TEST_F(TORVProductInformationRowsTest, SwatchesShowTheColourOfTheirValue)
{
    giveSurfaces({{20.0, 50}, {40.0, 60}});
    EXPECT_EQ(swatch(1)->styleSheet(), painted("Default", 20.0));
    EXPECT_EQ(swatch(2)->styleSheet(), painted("Default", 40.0));
    EXPECT_EQ(swatch(3)->styleSheet(), QLatin1String(Empty));
    value(2)->setValue(10.0);
    EXPECT_EQ(swatch(2)->styleSheet(), painted("Default", 10.0));
    box("volumeValueBoxLow")->setValue(3.0);
    EXPECT_EQ(button("volumeColorButtonLow")->styleSheet(), painted("Default", 3.0));
    box("volumeValueBoxHigh")->setValue(33.0);
    EXPECT_EQ(button("volumeColorButtonHigh")->styleSheet(), painted("Default", 33.0));
}

TEST_F(TORVProductInformationRowsTest, EachRowHasItsOwnSwatch)
{
    giveSurfaces({{5.0, 50}, {15.0, 60}, {25.0, 60}, {35.0, 60}});
    for (int row = 1; row <= 4; ++row) {
        value(row)->setValue(10.0 * row + 1.0);
        EXPECT_EQ(swatch(row)->styleSheet(), painted("Default", 10.0 * row + 1.0));
    }
}

TEST_F(TORVProductInformationRowsTest, ACheckBoxTurnsItsRowOnAndOff)
{
    giveSurfaces({{5.0, 50}, {15.0, 60}, {25.0, 60}, {35.0, 60}});
    for (int row = 1; row <= 4; ++row) {
        check(row)->setChecked(false);
        EXPECT_FALSE(value(row)->isEnabled());
        EXPECT_FALSE(opacity(row)->isEnabled());
        EXPECT_EQ(swatch(row)->styleSheet(), QLatin1String(Empty));
        check(row)->setChecked(true);
        EXPECT_TRUE(value(row)->isEnabled());
        EXPECT_TRUE(opacity(row)->isEnabled());
        EXPECT_EQ(swatch(row)->styleSheet(), painted("Default", value(row)->value()));
    }
    EXPECT_FALSE(isEdited());
}

TEST_F(TORVProductInformationRowsTest, ARowThatIsTurnedOnHasAValueOfItsOwn)
{
    giveSurfaces({{20.0, 50}});
    check(2)->setChecked(true);
    EXPECT_EQ(dialog.getProductSettings()->getSurfaces(), (QMap<double, int>{{20.0, 50}, {50.0, 100}})); // a seam
}

TEST_F(TORVProductInformationRowsTest, EmptySwatchesAreDimmedAtNight)
{
    TORVDisplayMode::setNight(true);
    giveSurfaces({{20.0, 50}});
    EXPECT_FALSE(swatch(1)->graphicsEffect());
    const auto* const dimmed = qobject_cast<QGraphicsOpacityEffect*>(swatch(2)->graphicsEffect());
    ASSERT_TRUE(dimmed);
    EXPECT_DOUBLE_EQ(dimmed->opacity(), 0.12);
    check(2)->setChecked(true);
    EXPECT_FALSE(swatch(2)->graphicsEffect());
    TORVDisplayMode::setNight(false);
    QEvent change(QEvent::StyleChange);
    QCoreApplication::sendEvent(&dialog, &change);
    EXPECT_FALSE(swatch(3)->graphicsEffect());
}

TEST_F(TORVProductInformationRowsTest, ListsTheScalesOfTheDataType)
{
    giveSurfaces({{20.0, 50}});
    EXPECT_EQ(combo("colormapCombo")->count(), 2);
    EXPECT_EQ(combo("colormapCombo")->currentText(), QLatin1String("Default"));
    EXPECT_EQ(combo("colormapCombo")->itemText(1), QLatin1String("Other"));
    EXPECT_TRUE(combo("colormapCombo")->isEnabled());
}

TEST_F(TORVProductInformationRowsTest, AnotherScaleRecoloursEverythingAtOnce)
{
    giveSurfaces({{20.0, 50}});
    dialog.show();
    const QImage before = find<QLabel>("colorBar")->pixmap(Qt::ReturnByValue).toImage();
    combo("colormapCombo")->setCurrentIndex(1);
    EXPECT_EQ(swatch(1)->styleSheet(), painted("Other", 20.0));
    EXPECT_EQ(button("volumeColorButtonLow")->styleSheet(), painted("Other", box("volumeValueBoxLow")->value()));
    const QImage bar = find<QLabel>("colorBar")->pixmap(Qt::ReturnByValue).toImage();
    EXPECT_NE(bar, before);
    EXPECT_NEAR(bar.pixelColor(bar.width() / 2, 6).green(), 200, 1);
    EXPECT_EQ(dialog.getProductSettings()->getColorScaleName(), QLatin1String("Other"));
    EXPECT_TRUE(isEdited());
}

TEST_F(TORVProductInformationRowsTest, TheBarRunsFromTheFirstSeamToTheLast)
{
    giveSurfaces({{20.0, 50}});
    dialog.show();
    const QImage bar = find<QLabel>("colorBar")->pixmap(Qt::ReturnByValue).toImage();
    ASSERT_EQ(bar.width(), find<QLabel>("colorBar")->width());
    int left = 0;
    while (left < bar.width() && bar.pixelColor(left, 6).alpha() == 0) {
        ++left;
    }
    int right = bar.width() - 1;
    while (right > left && bar.pixelColor(right, 6).alpha() == 0) {
        --right;
    }
    EXPECT_NEAR(bar.pixelColor(left + 1, 6).red(), 100, 3);
    EXPECT_NEAR(bar.pixelColor(right - 1, 6).blue(), 250, 3);
    EXPECT_NEAR(bar.pixelColor((left + right) / 2, 6).blue(), 125, 3);
    EXPECT_EQ(bar.pixelColor((left + right) / 2, 12).alpha(), 0); // 12 pixels high
}

TEST_F(TORVProductInformationRowsTest, FixedStandsForAProductWhoseColoursCanNotBeChosen)
{
    TORVProductFields rain = reflectivity();
    rain.dataType = 13;
    add3d(Noon, rain);
    open();
    show(Noon, "R");
    dialog.updateValues();
    EXPECT_EQ(combo("colormapCombo")->currentText(), QLatin1String("Fixed"));
    EXPECT_FALSE(combo("colormapCombo")->isEnabled());
    EXPECT_TRUE(combo("renderCombo")->isEnabled());
    EXPECT_EQ(dialog.getProductSettings()->getColorScaleName(), QLatin1String("Default"));
    EXPECT_FALSE(isEdited());
}

TEST_F(TORVProductInformationRowsTest, AScaleThatIsGoneStaysInTheRecordUntilAnotherIsChosen)
{
    give(reflectivity());
    TORVProductSettings settings = recordInUse();
    settings.setColorScaleName("Gone");
    record(settings);
    dialog.updateValues();
    EXPECT_EQ(combo("colormapCombo")->currentText(), QLatin1String("Default")); // number 1, as it is drawn
    EXPECT_EQ(dialog.getProductSettings()->getColorScaleName(), QLatin1String("Gone"));
    EXPECT_FALSE(isEdited());
    combo("colormapCombo")->setCurrentIndex(1);
    EXPECT_EQ(dialog.getProductSettings()->getColorScaleName(), QLatin1String("Other"));
}

TEST_F(TORVProductInformationRowsTest, KnowsTheColoursInUseWithoutHavingBeenShown)
{
    give(reflectivity());
    const TORVColormap::CPtr colormap = dialog.getColormap();
    ASSERT_TRUE(colormap);
    EXPECT_EQ(colormap->getScaleName(), QLatin1String("Default"));
    EXPECT_EQ(colormap->getValueRange(), TORVColormap::DISPLAY_VALUES);
    EXPECT_EQ(colormap->getSeams(), (std::vector<double>{0.0, 50.0}));
    EXPECT_EQ(dialog.getColormap(), colormap);
}

TEST_F(TORVProductInformationRowsTest, TheColoursInUseFollowTheProduct)
{
    add3d(After, velocity(1200));
    give(reflectivity());
    EXPECT_EQ(dialog.getColormap()->getSeams(), (std::vector<double>{0.0, 50.0}));
    show(After, "V");
    EXPECT_EQ(dialog.getColormap()->getSeams(), (std::vector<double>{-10.0, 10.0}));
}

TEST_F(TORVProductInformationRowsTest, ARecordWithoutSurfacesHasNoRowChecked)
{
    give(reflectivity());
    recordSurfaces({});
    const LogFile log(TORVLog::LEVEL_NOTICE);
    dialog.updateValues();
    EXPECT_EQ(log.lines().filter("No surface pars defined!").size(), 1);
    EXPECT_FALSE(check(1)->isChecked());
    EXPECT_FALSE(isEdited());
    dialog.updateValues(); // said once, not with every picture
    EXPECT_EQ(log.lines().filter("No surface pars defined!").size(), 1);
}

TEST_F(TORVProductInformationRowsTest, SurfacesBeyondTheFourthAreLoggedAndCarriedThrough)
{
    give(reflectivity());
    recordSurfaces({{10.0, 10}, {20.0, 20}, {30.0, 30}, {40.0, 40}, {50.0, 50}, {60.0, 60}});
    const LogFile log(TORVLog::LEVEL_WARNING);
    dialog.updateValues();
    EXPECT_EQ(log.lines().filter("2 surfaces").size(), 1);
    EXPECT_EQ(value(4)->value(), 40.0);
    EXPECT_FALSE(isEdited());
    check(1)->setChecked(false);
    EXPECT_EQ(dialog.getProductSettings()->getSurfaces(),
              (QMap<double, int>{{20.0, 20}, {30.0, 30}, {40.0, 40}, {50.0, 50}, {60.0, 60}}));
    dialog.saveConfiguration();
    EXPECT_EQ(recordOfFile().getSurfaces().size(), 5);
}

TEST_F(TORVProductInformationRowsTest, ARowWithTheValueOfAnotherIsMarkedAndLeftOut)
{
    giveSurfaces({{20.0, 50}, {35.0, 60}});
    dialog.show();
    EXPECT_FALSE(find<QLabel>("twinLabel")->isVisible());
    value(2)->setValue(20.0);
    EXPECT_EQ(value(1)->styleSheet(), QString());
    EXPECT_TRUE(value(2)->styleSheet().contains("#8f1b15")); // "err_text" by day
    EXPECT_TRUE(find<QLabel>("twinLabel")->isVisible());
    EXPECT_EQ(dialog.getProductSettings()->getSurfaces(), (QMap<double, int>{{20.0, 50}}));
    TORVDisplayMode::setNight(true);
    QEvent change(QEvent::StyleChange);
    QCoreApplication::sendEvent(&dialog, &change);
    EXPECT_TRUE(value(2)->styleSheet().contains("#ec9880"));
    check(1)->setChecked(false);
    EXPECT_EQ(value(2)->styleSheet(), QString());
    EXPECT_FALSE(find<QLabel>("twinLabel")->isVisible());
    EXPECT_EQ(dialog.getProductSettings()->getSurfaces(), (QMap<double, int>{{20.0, 60}}));
}

TEST_F(TORVProductInformationRowsTest, AnUnknownRenderingStaysUntilOneIsChosen)
{
    give(reflectivity());
    TORVProductSettings settings = recordInUse();
    settings.setRenderingType(TORVProductSettings::UNKNOWN);
    record(settings);
    dialog.updateValues();
    EXPECT_EQ(combo("renderCombo")->currentIndex(), -1);
    EXPECT_EQ(dialog.getProductSettings()->getRenderingType(), TORVProductSettings::UNKNOWN);
    EXPECT_FALSE(isEdited());
    combo("renderCombo")->setCurrentIndex(TORVProductSettings::SURFACE);
    EXPECT_TRUE(isEdited());
}

TEST_F(TORVProductInformationRowsTest, TheWheelChangesNothingInPassing)
{
    giveSurfaces({{20.0, 50}});
    dialog.show();
    button("expandButton")->setFocus();
    for (QWidget* const target : {static_cast<QWidget*>(value(1)), static_cast<QWidget*>(combo("renderCombo"))}) {
        QWheelEvent turn(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                         Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(target, &turn);
    }
    EXPECT_FALSE(isEdited());
}
