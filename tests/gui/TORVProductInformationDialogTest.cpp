#include "gui/TORVProductInformationDialog.h"

#include "ProductInformationTest.h"

namespace
{

using TORVProductInformationDialogTest = ProductInformationTest;
using TORVProductInformationDialogDeathTest = ProductInformationTest;

} // namespace

TEST_F(TORVProductInformationDialogTest, IsCalledProductInformation)
{
    EXPECT_EQ(dialog.windowTitle(), QLatin1String("Product information"));
    EXPECT_FALSE(dialog.isModal());
}

TEST_F(TORVProductInformationDialogTest, TellsQuantityUnitSiteProductAndTime)
{
    give(reflectivity());
    dialog.updateValues();
    EXPECT_EQ(text("label_headline"), QLatin1String("Reflectivity, dBZ"));
    const QString line = text("label_product");
    EXPECT_TRUE(line.startsWith("HALMERA"));
    EXPECT_TRUE(line.contains("CAPPI - Z"));
    EXPECT_TRUE(line.endsWith("Tue 2026-07-14 12:00")) << qUtf8Printable(line);
}

TEST_F(TORVProductInformationDialogTest, TellsWhatTheHeaderHolds)
{
    TORVProductFields fields = reflectivity(); // of 4 x 3 x 2 points
    fields.xScale = 100000;
    fields.yScale = 50000;
    fields.zScale = 75050;
    give(fields);
    dialog.updateValues();
    EXPECT_EQ(text("label_location"), QString::fromUtf8("60.0000° N, 25.0000° E"));
    EXPECT_EQ(text("label_siteHeight"), QLatin1String("125 m (100 m + 25 m ASL)"));
    EXPECT_EQ(text("label_grid"), QLatin1String("4 x 3 x 2"));
    EXPECT_EQ(text("label_gridStep"), QLatin1String("1000 m, 500 m, 750.50 m"));
    EXPECT_EQ(text("label_extent"), QLatin1String("3.0 x 1.0 x 0.8 km")); // one step less than points
    EXPECT_EQ(text("label_projection"), QLatin1String("Azimuthal Equidistant"));
    EXPECT_EQ(text("label_earth"), QLatin1String("Sphere, 6371.0 km"));
    EXPECT_EQ(text("label_range"), QLatin1String("-31.5 to 95.0 dBZ"));
    EXPECT_EQ(text("label_size"), QLatin1String("664 bytes, 8 bits a point")); // 640 and 4 x 3 x 2
    EXPECT_EQ(text("label_file"), frame->getData3d()->getFile()->getName());
    EXPECT_TRUE(find<QLabel>("label_file")->toolTip().contains(frame->getData3d()->getPath()));
}

TEST_F(TORVProductInformationDialogTest, FollowsTheUnitsThatTheUserHasChosen)
{
    window.settings->setMetricUnits(false);
    window.settings->setLatLonFormat(TORVGeneralSettings::LATLON_DMS);
    give(reflectivity());
    dialog.updateValues();
    EXPECT_EQ(text("label_siteHeight"), QLatin1String("410 ft (328 ft + 82 ft ASL)")); // 3.2808 ft a metre
    EXPECT_TRUE(text("label_extent").endsWith(" NM"));
    EXPECT_EQ(text("label_location"),
              window.settings->formatCoordinates(frame->getData3d()->getFile()->getSiteCoordinates(),
                                                 TORVCoordinate::LATITUDE_AND_LONGITUDE));
}

TEST_F(TORVProductInformationDialogTest, TellsOfAnEllipsoidAndOfMercator)
{
    TORVProductFields fields = reflectivity();
    fields.projectionType = 1;
    fields.earthRadius = 637813700;
    fields.earthInvFlattening = 298257224;
    give(fields);
    dialog.updateValues();
    EXPECT_EQ(text("label_projection"), QLatin1String("Mercator"));
    EXPECT_EQ(text("label_earth"), QLatin1String("Ellipsoid, 6378.1 km, 1/298.257"));
}

TEST_F(TORVProductInformationDialogTest, SaysNotAvailableWhereTheFileHasNoValue)
{
    give(reflectivity());
    dialog.updateValues();
    EXPECT_EQ(text("label_nyquist"), QLatin1String("Not available"));
    EXPECT_EQ(find<QLabel>("label_nyquist")->property("textRole").toString(), QLatin1String("missing"));
    EXPECT_EQ(find<QLabel>("label_grid")->property("textRole").toString(), QLatin1String("value"));
}

TEST_F(TORVProductInformationDialogTest, TellsTheNyquistVelocityOfWhatScalesWithIt)
{
    give(velocity(1200), Noon, "V"); // 0.0533 m x 1200 Hz / 4
    dialog.updateValues();
    EXPECT_EQ(text("label_headline"), QLatin1String("Radial velocity, m/s"));
    EXPECT_EQ(text("label_nyquist"), QLatin1String("15.99 m/s"));
}

TEST_F(TORVProductInformationDialogTest, AnEndlessFileNameDoesNotWidenTheWindow)
{
    give(reflectivity());
    dialog.updateValues();
    const int width = dialog.sizeHint().width();
    const QString longKey = QLatin1String(After) + QString(180, QLatin1Char('W'));
    add3d(longKey, volume("HALMERA", Z, 300));
    open();
    show(After);
    button("expandButton")->setChecked(true);
    dialog.updateValues();
    EXPECT_LT(text("label_file").size(), 60);
    EXPECT_EQ(dialog.sizeHint().width(), width);
}

TEST_F(TORVProductInformationDialogTest, WithoutAProductNothingIsAvailable)
{
    give(reflectivity());
    recordSurfaces({{20.0, 50}, {30.0, 60}});
    dialog.updateValues();
    window.frame.reset();
    dialog.updateValues();
    for (const char* const label : {"label_headline", "label_product", "label_location", "label_grid", "label_file"}) {
        EXPECT_EQ(text(label), QLatin1String("Not available")) << label;
    }
    for (const char* const name : {"renderCombo", "colormapCombo", "surfaceCheckBox1", "surfaceValueBox1",
                                   "surfaceOpacityBox1", "volumeValueBoxLow", "resetButton", "applyButton"}) {
        EXPECT_FALSE(find<QWidget>(name)->isEnabled()) << name;
    }
    EXPECT_TRUE(button("expandButton")->isEnabled());
    EXPECT_EQ(swatch(1)->styleSheet(), QLatin1String(Empty));
    EXPECT_FALSE(dialog.getColormap());
    EXPECT_TRUE(dialog.getProductSettings()->getSurfaces().isEmpty());
}

TEST_F(TORVProductInformationDialogTest, AFrameThatHasFoundNothingIsNoProduct)
{
    open();
    window.frame = boost::make_shared<TORVDataFrame>(store);
    dialog.updateValues();
    EXPECT_EQ(text("label_headline"), QLatin1String("Not available"));
    EXPECT_FALSE(dialog.getColormap());
}

TEST_F(TORVProductInformationDialogTest, ControlsDoNothingWithoutAProduct)
{
    int applied = 0;
    QObject::connect(&dialog, &TORVProductInformationDialog::applyChanges, [&] { ++applied; });
    dialog.updateValues();
    dialog.saveConfiguration();
    dialog.resetConfiguration();
    dialog.cancelConfiguration();
    dialog.applyAction();
    EXPECT_EQ(applied, 0);
    EXPECT_TRUE(dialog.close());
}

TEST_F(TORVProductInformationDialogTest, AProductComesBackAfterNone)
{
    give(reflectivity());
    recordSurfaces({{20.0, 50}});
    dialog.updateValues();
    window.frame.reset();
    dialog.updateValues();
    window.frame = frame;
    dialog.updateValues();
    EXPECT_TRUE(check(1)->isChecked());
    EXPECT_EQ(value(1)->value(), 20.0);
    EXPECT_TRUE(button("applyButton")->isEnabled());
}

TEST_F(TORVProductInformationDialogDeathTest, ThereIsNothingToTellOfNoFile)
{
    EXPECT_DEATH(dialog.updateDialog(), "_file && _file->isValid\\(\\)");
}

TEST_F(TORVProductInformationDialogTest, ATypeThatIsNotKnownCanNotBeEdited)
{
    give(volume("HALMERA", NONE), Noon, "");
    dialog.updateValues();
    EXPECT_EQ(text("label_headline"), QLatin1String("Not available"));
    EXPECT_EQ(text("label_range"), QLatin1String("Not available"));
    EXPECT_EQ(text("label_grid"), QLatin1String("4 x 3 x 2"));
    EXPECT_FALSE(combo("renderCombo")->isEnabled());
    EXPECT_FALSE(button("saveButton")->isEnabled());
    dialog.enableProdSettings(true); // the window has become idle
    EXPECT_FALSE(combo("renderCombo")->isEnabled());
    EXPECT_TRUE(dialog.getColormap());
}

TEST_F(TORVProductInformationDialogTest, ABusyWindowCanNotBeEdited)
{
    give(reflectivity());
    recordSurfaces({{20.0, 50}});
    dialog.updateValues();
    dialog.enableProdSettings(false);
    for (const char* const name :
         {"renderCombo", "colormapCombo", "surfaceCheckBox1", "surfaceCheckBox2", "surfaceValueBox1",
          "surfaceOpacityBox1", "volumeValueBoxHigh", "volumeOpacityBoxHigh", "resetButton", "cancelButton",
          "saveButton", "applyButton"}) {
        EXPECT_FALSE(find<QWidget>(name)->isEnabled()) << name;
    }
    dialog.updateValues(); // a picture has come; the next one is being made
    EXPECT_FALSE(value(1)->isEnabled());
    dialog.enableProdSettings(true);
    EXPECT_TRUE(value(1)->isEnabled());
    EXPECT_TRUE(button("applyButton")->isEnabled());
    EXPECT_FALSE(value(2)->isEnabled()); // of a row that isn't checked
    EXPECT_TRUE(check(2)->isEnabled());
}

TEST_F(TORVProductInformationDialogTest, WhoWasTypingGoesOnWhenTheWindowIsIdleAgain)
{
    give(reflectivity());
    recordSurfaces({{20.0, 50}});
    dialog.updateValues();
    dialog.show();
    value(1)->setFocus();
    dialog.enableProdSettings(false);
    EXPECT_FALSE(dialog.focusWidget());
    dialog.enableProdSettings(true);
    EXPECT_EQ(dialog.focusWidget(), value(1));
}

TEST_F(TORVProductInformationDialogTest, FocusThatTheUserHasMovedStaysThere)
{
    give(reflectivity());
    dialog.updateValues();
    dialog.show();
    value(1)->setFocus();
    dialog.enableProdSettings(false);
    button("expandButton")->setFocus();
    dialog.enableProdSettings(true);
    EXPECT_EQ(dialog.focusWidget(), button("expandButton"));
}

TEST_F(TORVProductInformationDialogTest, FoldsWhatTheFileTells)
{
    give(reflectivity());
    dialog.updateValues();
    dialog.show();
    EXPECT_FALSE(find<QLabel>("label_location")->isVisible());
    const QPoint corner = dialog.pos();
    const int height = dialog.height();
    button("expandButton")->click();
    EXPECT_TRUE(find<QLabel>("label_location")->isVisible());
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(dialog.pos(), corner);
    EXPECT_GT(dialog.sizeHint().height(), height);
    button("expandButton")->click();
    EXPECT_FALSE(find<QLabel>("label_location")->isVisible());
}

TEST_F(TORVProductInformationDialogTest, StoresItsPlaceAndFoldWhenItIsHidden)
{
    dialog.showDialog();
    EXPECT_TRUE(dialog.dialogVisible());
    button("expandButton")->setChecked(true);
    dialog.hideDialog();
    EXPECT_FALSE(dialog.dialogVisible());
    const QSettings settings;
    EXPECT_EQ(settings.value("DIALOG/productinfopos").toByteArray(), dialog.saveGeometry());
    EXPECT_TRUE(settings.value("DIALOG/productinfoexpanded").toBool());
}

TEST_F(TORVProductInformationDialogTest, ADialogThatWasNotShownStoresNothing)
{
    QSettings().setValue("DIALOG/productinfopos", QByteArray("as it was"));
    dialog.hideDialog();
    EXPECT_EQ(QSettings().value("DIALOG/productinfopos").toByteArray(), QByteArray("as it was"));
    EXPECT_FALSE(QSettings().contains("DIALOG/productinfoexpanded"));
}

TEST_F(TORVProductInformationDialogTest, ComesBackToItsPlaceUnfolded)
{
    QDialog other;
    other.setGeometry(123, 45, 400, 300);
    QSettings().setValue("DIALOG/productinfopos", other.saveGeometry());
    QSettings().setValue("DIALOG/productinfoexpanded", true);
    dialog.showDialog();
    EXPECT_EQ(dialog.geometry().topLeft(), QPoint(123, 45));
    EXPECT_TRUE(button("expandButton")->isChecked());
    EXPECT_TRUE(find<QLabel>("label_grid")->isVisible());
}

TEST_F(TORVProductInformationDialogTest, APlaceThatIsNoneChangesNothing)
{
    const QPoint corner = dialog.pos();
    QSettings().setValue("DIALOG/productinfopos", QByteArray("nonsense"));
    QSettings().setValue("DIALOG/productinfoexpanded", QStringList{"a", "b"});
    dialog.restorePosition();
    EXPECT_EQ(dialog.pos(), corner);
    EXPECT_FALSE(button("expandButton")->isChecked());
}

TEST_F(TORVProductInformationDialogTest, EveryControlSaysWhatItIsAndDoes)
{
    QList<QWidget*> controls;
    controls << combo("renderCombo") << combo("colormapCombo");
    for (QPushButton* const found : dialog.findChildren<QPushButton*>()) {
        controls << found;
    }
    for (QDoubleSpinBox* const found : dialog.findChildren<QDoubleSpinBox*>()) {
        controls << found;
    }
    for (QCheckBox* const found : dialog.findChildren<QCheckBox*>()) {
        controls << found;
    }
    EXPECT_EQ(controls.size(), 2 + 5 + 6 + 12 + 4); // combo boxes, buttons, swatches, boxes, check boxes
    for (const QWidget* const control : controls) {
        EXPECT_FALSE(control->toolTip().isEmpty()) << qPrintable(control->objectName());
        EXPECT_FALSE(control->accessibleName().isEmpty()) << qPrintable(control->objectName());
    }
}

TEST_F(TORVProductInformationDialogTest, NoTwoShareAMnemonic)
{
    give(reflectivity());
    dialog.updateValues();
    QStringList letters;
    const auto add = [&letters](const QString& text) {
        const int place = text.indexOf(QLatin1Char('&'));
        if (place >= 0) {
            letters << text.mid(place + 1, 1).toLower();
        }
    };
    for (const QLabel* const label : dialog.findChildren<QLabel*>()) {
        if (label->buddy()) {
            add(label->text());
        }
    }
    for (const QAbstractButton* const found : dialog.findChildren<QAbstractButton*>()) {
        add(found->text());
    }
    EXPECT_EQ(letters.size(), 6 + 4 + 5); // labels, check boxes, buttons
    EXPECT_EQ(letters.removeDuplicates(), 0);
}
