#include "gui/GeneralSettingsDialogTest.h"

#include <QSignalSpy>

#include <functional>

using TORVGeneralSettingsDialogTest = GeneralSettingsDialogTest;

namespace
{

QStringList entries(const QComboBox& combo)
{
    QStringList texts;
    for (int i = 0; i < combo.count(); ++i) {
        texts << combo.itemText(i);
    }
    return texts;
}

} // namespace

TEST_F(TORVGeneralSettingsDialogTest, ShowsTheDefaultsOfANewUser)
{
    open();
    EXPECT_TRUE(control<QRadioButton>("radioButton_24hClock").isChecked());
    EXPECT_TRUE(control<QRadioButton>("radioButton_metric").isChecked());
    EXPECT_EQ(control<QComboBox>("comboBox_latLonUnit").currentIndex(), 0);
    EXPECT_EQ(control<QDoubleSpinBox>("doubleSpinBox_verticalScale").value(), 5.0);
    EXPECT_EQ(control<QComboBox>("comboBox_dataShrinkH").currentText(), QStringLiteral("1/4x"));
    EXPECT_EQ(control<QComboBox>("comboBox_dataShrinkV").currentText(), QStringLiteral("Full"));
    EXPECT_EQ(control<QSlider>("horizontalSlider_dataSmooth").value(), 10);
    EXPECT_EQ(control<QLabel>("label_dataSmoothValue").text(), QStringLiteral("1.0"));
    EXPECT_EQ(edit("data3DLocationEdit").text(), QString());
}

TEST_F(TORVGeneralSettingsDialogTest, ShowsWhatIsInTheFileWhenItIsShown)
{
    TORVGeneralSettings settings;
    settings.set24hClock(false);
    settings.setMetricUnits(false);
    settings.setLatLonFormat(TORVGeneralSettings::LATLON_DMS);
    settings.setVerticalScale(12.5);
    settings.setDataShrinkH(2);
    settings.setDataShrinkV(3);
    settings.setDataSmooth(0.4);
    settings.setGeoDir(QStringLiteral("/g"));
    settings.set3DDir(QStringLiteral("/3"));
    settings.set2DDir(QStringLiteral("/2"));
    settings.save();
    open();
    EXPECT_TRUE(control<QRadioButton>("radioButton_12hClock").isChecked());
    EXPECT_TRUE(control<QRadioButton>("radioButton_english").isChecked());
    EXPECT_EQ(control<QComboBox>("comboBox_latLonUnit").currentIndex(), 2);
    EXPECT_EQ(control<QDoubleSpinBox>("doubleSpinBox_verticalScale").value(), 12.5);
    EXPECT_EQ(control<QComboBox>("comboBox_dataShrinkH").currentText(), QStringLiteral("Half"));
    EXPECT_EQ(control<QComboBox>("comboBox_dataShrinkV").currentText(), QStringLiteral("1/3x"));
    EXPECT_EQ(control<QSlider>("horizontalSlider_dataSmooth").value(), 4);
    EXPECT_EQ(edit("geoLayerLocationEdit").text(), QStringLiteral("/g"));
    EXPECT_EQ(edit("data3DLocationEdit").text(), QStringLiteral("/3"));
    EXPECT_EQ(edit("data2DLocationEdit").text(), QStringLiteral("/2"));
}

TEST_F(TORVGeneralSettingsDialogTest, TheResolutionsAreListedFromFullToAQuarter)
{
    const QStringList resolutions = {QStringLiteral("Full"), QStringLiteral("Half"), QStringLiteral("1/3x"),
                                     QStringLiteral("1/4x")};
    EXPECT_EQ(entries(control<QComboBox>("comboBox_dataShrinkH")), resolutions);
    EXPECT_EQ(entries(control<QComboBox>("comboBox_dataShrinkV")), resolutions);
}

TEST_F(TORVGeneralSettingsDialogTest, TheFormatsOfCoordinatesAreListedWithAHint)
{
    EXPECT_EQ(entries(control<QComboBox>("comboBox_latLonUnit")),
              QStringList({QStringLiteral("Decimal degrees (dd.dddd\u00B0)"),
                           QStringLiteral("Degrees, decimal minutes (DD\u00B0 mm.mmm')"),
                           QStringLiteral("Degrees, minutes, decimal seconds (DD\u00B0 MM' ss.s\")")}));
}

TEST_F(TORVGeneralSettingsDialogTest, TheSliderShowsItsValueWithOneDecimal)
{
    auto& slider = control<QSlider>("horizontalSlider_dataSmooth");
    const auto& label = control<QLabel>("label_dataSmoothValue");
    slider.setValue(25);
    EXPECT_EQ(label.text(), QStringLiteral("2.5"));
    slider.setValue(slider.minimum());
    EXPECT_EQ(label.text(), QStringLiteral("0.0"));
    slider.setValue(slider.maximum());
    EXPECT_EQ(label.text(), QStringLiteral("10.0"));
}

// One row for each control: what the user does, and what a new object reads from the file after Apply.
struct Change
{
    const char* name;
    std::function<void(const QDialog& dialog)> act;
    std::function<QVariant(const TORVGeneralSettings& settings)> read;
    QVariant expected;
};

void PrintTo(const Change& change, std::ostream* out)
{
    *out << change.name;
}

template <typename Widget>
Widget& child(const QDialog& dialog, const char* name)
{
    return *dialog.findChild<Widget*>(QLatin1String(name));
}

std::function<void(const QDialog&)> check(const char* name)
{
    return [name](const QDialog& dialog) { child<QRadioButton>(dialog, name).click(); };
}

std::function<void(const QDialog&)> choose(const char* name, int index)
{
    return [name, index](const QDialog& dialog) { child<QComboBox>(dialog, name).setCurrentIndex(index); };
}

std::function<void(const QDialog&)> typePath(const char* name, const char* path)
{
    return
        [name, path](const QDialog& dialog) { QTest::keyClicks(&child<QLineEdit>(dialog, name), QLatin1String(path)); };
}

using Settings = TORVGeneralSettings;

const Change Changes[] = {
    {"clock", check("radioButton_12hClock"), [](const Settings& s) { return QVariant(s.is24hClock()); }, false},
    {"units", check("radioButton_english"), [](const Settings& s) { return QVariant(s.isMetricUnits()); }, false},
    {"minutes", choose("comboBox_latLonUnit", 1), [](const Settings& s) { return QVariant(s.getLatLonFormat()); }, 1},
    {"seconds", choose("comboBox_latLonUnit", 2), [](const Settings& s) { return QVariant(s.getLatLonFormat()); }, 2},
    {"scale", [](const QDialog& d) { child<QDoubleSpinBox>(d, "doubleSpinBox_verticalScale").setValue(7.5); },
     [](const Settings& s) { return QVariant(s.getVerticalScale()); }, 7.5},
    {"horizontal", choose("comboBox_dataShrinkH", 0), [](const Settings& s) { return QVariant(s.getDataShrinkH()); },
     1},
    {"vertical", choose("comboBox_dataShrinkV", 3), [](const Settings& s) { return QVariant(s.getDataShrinkV()); }, 4},
    {"smooth", [](const QDialog& d) { child<QSlider>(d, "horizontalSlider_dataSmooth").setValue(7); },
     [](const Settings& s) { return QVariant(s.getDataSmooth()); }, 0.7},
    {"geo", typePath("geoLayerLocationEdit", "/srv/geo"), [](const Settings& s) { return QVariant(s.getGeoDir()); },
     "/srv/geo"},
    {"3d", typePath("data3DLocationEdit", "/srv/3d"), [](const Settings& s) { return QVariant(s.get3DDir()); },
     "/srv/3d"},
    {"2d", typePath("data2DLocationEdit", "/srv/2d"), [](const Settings& s) { return QVariant(s.get2DDir()); },
     "/srv/2d"},
};

class TORVGeneralSettingsControlTest : public GeneralSettingsDialogTest, public testing::WithParamInterface<Change>
{
};

TEST_P(TORVGeneralSettingsControlTest, ApplySavesWhatTheControlShows)
{
    open();
    GetParam().act(dialog);
    EXPECT_NE(GetParam().read(TORVGeneralSettings()), GetParam().expected) << "saved before Apply";
    press("applyButton");
    EXPECT_EQ(GetParam().read(TORVGeneralSettings()), GetParam().expected);
}

TEST_P(TORVGeneralSettingsControlTest, NothingElseIsChanged)
{
    TORVGeneralSettings before;
    open();
    GetParam().act(dialog);
    press("applyButton");
    QStringList reasons;
    before.hasChanged(TORVGeneralSettings(), &reasons);
    EXPECT_EQ(reasons.size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Controls, TORVGeneralSettingsControlTest, testing::ValuesIn(Changes));

TEST_F(TORVGeneralSettingsDialogTest, ApplyTellsWhenTheSettingsAreInTheFile)
{
    double seen = 0.0;
    int count = 0;
    QObject::connect(&dialog, &TORVGeneralSettingsDialog::applyChanges, &dialog, [&] {
        seen = TORVGeneralSettings().getVerticalScale();
        ++count;
    });
    open();
    control<QDoubleSpinBox>("doubleSpinBox_verticalScale").setValue(9.0);
    press("applyButton");
    EXPECT_EQ(seen, 9.0);
    EXPECT_EQ(count, 1);
    EXPECT_TRUE(dialog.dialogVisible());
}

TEST_F(TORVGeneralSettingsDialogTest, WhatTheMainWindowSavedMeanwhileSurvivesApply)
{
    open();
    TORVGeneralSettings others;
    others.setLiveMode(true);
    others.setLiveSite(QStringLiteral("Vantaa"));
    others.setLiveProduct3D(QStringLiteral("dBZ"));
    others.setLiveProduct2D(QStringLiteral("PPI"));
    others.setTimeWindow(600);
    others.setAnimationTimeSpan(2);
    others.setAnimationFrameInterval(3);
    others.setAnimationLoopMode(1);
    others.setAnimationSpeed(4);
    others.save();
    control<QDoubleSpinBox>("doubleSpinBox_verticalScale").setValue(9.0);
    press("applyButton");
    const TORVGeneralSettings after;
    EXPECT_EQ(after.getVerticalScale(), 9.0);
    EXPECT_TRUE(after.isLiveMode());
    EXPECT_EQ(after.getLiveSite(), QStringLiteral("Vantaa"));
    EXPECT_EQ(after.getLiveProduct3D(), QStringLiteral("dBZ"));
    EXPECT_EQ(after.getLiveProduct2D(), QStringLiteral("PPI"));
    EXPECT_EQ(after.getTimeWindow(), 600);
    EXPECT_EQ(after.getAnimationTimeSpan(), 2);
    EXPECT_EQ(after.getAnimationFrameInterval(), 3);
    EXPECT_EQ(after.getAnimationLoopMode(), 1);
    EXPECT_EQ(after.getAnimationSpeed(), 4);
}

TEST_F(TORVGeneralSettingsDialogTest, ApplyKeepsDigitsThatNoControlShows)
{
    TORVGeneralSettings settings;
    settings.setVerticalScale(2.25);
    settings.setDataSmooth(0.5625);
    settings.save();
    open();
    press("applyButton");
    EXPECT_EQ(TORVGeneralSettings().getVerticalScale(), 2.25);
    EXPECT_EQ(TORVGeneralSettings().getDataSmooth(), 0.5625);
}

TEST_F(TORVGeneralSettingsDialogTest, ApplyMakesDirectoriesAbsolute)
{
    open();
    type(edit("geoLayerLocationEdit"), QStringLiteral("~/geo"));
    type(edit("data3DLocationEdit"), QStringLiteral("products/3d"));
    press("applyButton");
    const TORVGeneralSettings after;
    EXPECT_EQ(after.getGeoDir(), home.filePath(QStringLiteral("geo")));
    EXPECT_EQ(after.get3DDir(), QDir::currentPath() + QLatin1String("/products/3d"));
    EXPECT_EQ(after.get2DDir(), QString());
    EXPECT_EQ(edit("geoLayerLocationEdit").text(), after.getGeoDir());
}

TEST_F(TORVGeneralSettingsDialogTest, ResetBringsTheDefaultsButSavesNothing)
{
    TORVGeneralSettings settings;
    settings.set24hClock(false);
    settings.setMetricUnits(false);
    settings.setLatLonFormat(TORVGeneralSettings::LATLON_DM);
    settings.setVerticalScale(20.0);
    settings.setDataShrinkH(1);
    settings.setDataShrinkV(2);
    settings.setDataSmooth(3.0);
    settings.setTimeWindow(600);
    settings.set3DDir(QStringLiteral("/srv/3d"));
    settings.save();
    open();
    press("resetButton");
    EXPECT_TRUE(control<QRadioButton>("radioButton_24hClock").isChecked());
    EXPECT_TRUE(control<QRadioButton>("radioButton_metric").isChecked());
    EXPECT_EQ(control<QComboBox>("comboBox_latLonUnit").currentIndex(), 0);
    EXPECT_EQ(control<QDoubleSpinBox>("doubleSpinBox_verticalScale").value(), 5.0);
    EXPECT_EQ(control<QComboBox>("comboBox_dataShrinkH").currentIndex(), 3);
    EXPECT_EQ(control<QComboBox>("comboBox_dataShrinkV").currentIndex(), 0);
    EXPECT_EQ(control<QSlider>("horizontalSlider_dataSmooth").value(), 10);
    EXPECT_EQ(edit("data3DLocationEdit").text(), QStringLiteral("/srv/3d"));
    EXPECT_EQ(TORVGeneralSettings().getVerticalScale(), 20.0);
    press("applyButton");
    EXPECT_EQ(TORVGeneralSettings().getVerticalScale(), 5.0);
    EXPECT_EQ(TORVGeneralSettings().getTimeWindow(), 600);
}

TEST_F(TORVGeneralSettingsDialogTest, ResetKeepsADirectoryThatHasBeenTyped)
{
    open();
    type(edit("data2DLocationEdit"), QStringLiteral("/srv/2d"));
    press("resetButton");
    EXPECT_EQ(edit("data2DLocationEdit").text(), QStringLiteral("/srv/2d"));
}

TEST_F(TORVGeneralSettingsDialogTest, TheCacheButtonAsksForTheCacheToGo)
{
    const QSignalSpy asked(&dialog, &TORVGeneralSettingsDialog::clearGeoCache);
    press("clearCacheButton");
    EXPECT_EQ(asked.size(), 1);
}

TEST_F(TORVGeneralSettingsDialogTest, WhatWasNotAppliedIsForgottenWhenTheWindowIsShownAgain)
{
    open();
    control<QDoubleSpinBox>("doubleSpinBox_verticalScale").setValue(9.0);
    dialog.hideDialog();
    EXPECT_FALSE(dialog.dialogVisible());
    open();
    EXPECT_EQ(control<QDoubleSpinBox>("doubleSpinBox_verticalScale").value(), 5.0);
}

TEST_F(TORVGeneralSettingsDialogTest, NewValuesAreShownUnlessTheUserHasChangedSomething)
{
    open();
    TORVGeneralSettings others;
    others.setVerticalScale(8.0);
    others.save();
    dialog.updateValues();
    EXPECT_EQ(control<QDoubleSpinBox>("doubleSpinBox_verticalScale").value(), 8.0);
    control<QComboBox>("comboBox_latLonUnit").setCurrentIndex(1);
    others.setVerticalScale(4.0);
    others.save();
    dialog.updateValues();
    EXPECT_EQ(control<QDoubleSpinBox>("doubleSpinBox_verticalScale").value(), 8.0);
    EXPECT_EQ(control<QComboBox>("comboBox_latLonUnit").currentIndex(), 1);
    open();
    EXPECT_EQ(control<QComboBox>("comboBox_latLonUnit").currentIndex(), 1);
}

TEST_F(TORVGeneralSettingsDialogTest, ADirectoryThatIsMissingIsMarkedBeforeApply)
{
    open();
    type(edit("data3DLocationEdit"), QStringLiteral("/nowhere"));
    EXPECT_TRUE(isMarked(edit("data3DLocationEdit")));
    EXPECT_FALSE(edit("geoLayerLocationEdit").isInvalid());
    EXPECT_EQ(control<QLabel>("label_directoryError").toolTip(), QStringLiteral("Invalid directory: /nowhere"));
    EXPECT_TRUE(control<QLabel>("label_directoryError").text().startsWith(QLatin1String("Invalid")));
}

TEST_F(TORVGeneralSettingsDialogTest, TheWordsAreThoseOfTheUppermostDirectoryAndGoWithTheLast)
{
    open();
    const auto& label = control<QLabel>("label_directoryError");
    const int height = label.sizeHint().height();
    type(edit("data2DLocationEdit"), QStringLiteral("/nowhere2"));
    EXPECT_TRUE(isMarked(edit("data2DLocationEdit")));
    type(edit("geoLayerLocationEdit"), QStringLiteral("/nowhere"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return label.toolTip().endsWith(QLatin1String("/nowhere")); }, Patience_ms));
    edit("geoLayerLocationEdit").clear();
    EXPECT_TRUE(QTest::qWaitFor([&] { return label.toolTip().endsWith(QLatin1String("/nowhere2")); }, Patience_ms));
    edit("data2DLocationEdit").clear();
    EXPECT_TRUE(QTest::qWaitFor([&] { return label.toolTip().isEmpty(); }, Patience_ms));
    EXPECT_EQ(label.sizeHint().height(), height);
}

TEST_F(TORVGeneralSettingsDialogTest, ADirectoryThatIsMissingMayBeApplied)
{
    open();
    type(edit("data3DLocationEdit"), QStringLiteral("/nowhere"));
    EXPECT_TRUE(isMarked(edit("data3DLocationEdit")));
    press("applyButton");
    EXPECT_EQ(TORVGeneralSettings().get3DDir(), QStringLiteral("/nowhere"));
}
