// What becomes of the record that is edited in the product information.

#include "ProductInformationTest.h"
#include "support/MessageGuard.h"

#include <QApplication>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTimer>
#include <QWindow>

namespace
{

class TORVProductInformationRecordTest : public ProductInformationTest
{
protected:
    /// What the main window does when it is told to apply.
    void connectWindow()
    {
        QObject::connect(&dialog, &TORVProductInformationDialog::applyChanges, &dialog, [this] {
            const TORVProductSettings::Ptr edited = dialog.getProductSettings();
            if (recordInUse().hasChanged(edited, nullptr)) {
                record(*edited);
            }
        });
    }

    /// Answers the question that comes next. @return its texts, once it has come
    QStringList closeAndAnswer(QMessageBox::StandardButton answer)
    {
        // A window that is hidden before the display has come to giving it the focus.
        MessageGuard::allow(QStringLiteral("(SetInputFocus)"));
        QStringList texts;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            auto* const question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (question && question->windowHandle() && question->windowHandle()->isExposed()) {
                texts << question->text() << question->informativeText();
                question->button(answer)->click();
            }
        });
        timer.start(10);
        EXPECT_TRUE(dialog.close());
        return texts;
    }
};

} // namespace
TEST_F(TORVProductInformationRecordTest, ResetShowsTheDefaultsAndSavesNothing)
{
    giveVolume(10.0, 0.3, 60.0, 25.0);
    combo("colormapCombo")->setCurrentIndex(1);
    button("resetButton")->click();
    EXPECT_EQ(combo("renderCombo")->currentIndex(), TORVProductSettings::SURFACE);
    EXPECT_EQ(combo("colormapCombo")->currentText(), QLatin1String("Default"));
    EXPECT_EQ(value(1)->value(), -31.0); // -31.5 cut towards zero
    EXPECT_EQ(opacity(1)->value(), 100.0);
    EXPECT_FALSE(check(2)->isChecked());
    EXPECT_DOUBLE_EQ(box("volumeValueBoxHigh")->value(), 66.5); // 70 % of 95
    EXPECT_EQ(recordOfFile().getRenderingType(), TORVProductSettings::VOLUME);
    EXPECT_TRUE(isEdited());
}

TEST_F(TORVProductInformationRecordTest, CancelShowsTheRecordInUseAgain)
{
    giveSurfaces({{20.0, 50}, {35.0, 60}});
    value(1)->setValue(25.0);
    check(2)->setChecked(false);
    combo("colormapCombo")->setCurrentIndex(1);
    combo("renderCombo")->setCurrentIndex(0);
    dialog.show();
    button("cancelButton")->click();
    EXPECT_FALSE(isEdited());
    EXPECT_EQ(value(1)->value(), 20.0);
    EXPECT_TRUE(check(2)->isChecked());
    EXPECT_TRUE(dialog.isVisible());
}

TEST_F(TORVProductInformationRecordTest, ApplyOnlyAsksTheWindow)
{
    giveSurfaces({{20.0, 50}});
    value(1)->setValue(25.0);
    const QSignalSpy spy(&dialog, &TORVProductInformationDialog::applyChanges);
    button("applyButton")->click();
    EXPECT_EQ(spy.count(), 1);
    EXPECT_EQ(recordOfFile().getSurfaces(), (QMap<double, int>{{20.0, 50}}));
    EXPECT_EQ(dialog.getProductSettings()->getSurfaces(), (QMap<double, int>{{25.0, 50}}));
}

TEST_F(TORVProductInformationRecordTest, SaveStoresShowsInOrderAndAsksTheWindow)
{
    giveSurfaces({{20.0, 50}, {35.0, 60}});
    value(1)->setValue(45.0);
    QMap<double, int> whenAsked;
    QObject::connect(&dialog, &TORVProductInformationDialog::applyChanges,
                     [&] { whenAsked = recordOfFile().getSurfaces(); });
    button("saveButton")->click();
    EXPECT_EQ(whenAsked, (QMap<double, int>{{35.0, 60}, {45.0, 50}}));
    EXPECT_EQ(value(1)->value(), 35.0);
    EXPECT_EQ(value(2)->value(), 45.0);
}

TEST_F(TORVProductInformationRecordTest, SavingKeepsWhatDrawsNoDifferently)
{
    giveSurfaces({{20.0, 50}});
    box("volumeValueBoxLow")->setValue(12.0);
    EXPECT_FALSE(isEdited());
    dialog.saveConfiguration();
    EXPECT_EQ(recordOfFile().getVolumeValueLow(), 12.0);
    EXPECT_EQ(recordOfFile().getRenderingType(), TORVProductSettings::SURFACE);
}

TEST_F(TORVProductInformationRecordTest, SavingNoSurfaceAtAllIsAReset)
{
    giveSurfaces({{20.0, 50}});
    check(1)->setChecked(false);
    const LogFile log(TORVLog::LEVEL_NOTICE);
    dialog.saveConfiguration();
    EXPECT_EQ(log.lines().filter("No surfaces defined -> Reset.").size(), 1);
    EXPECT_EQ(recordOfFile().getSurfaces(), (QMap<double, int>{{-31.0, 100}}));
    EXPECT_TRUE(check(1)->isChecked());
}

TEST_F(TORVProductInformationRecordTest, AVolumeNeedsNoSurfaces)
{
    giveVolume(10.0, 0.3, 60.0, 25.0);
    check(1)->setChecked(false);
    dialog.saveConfiguration();
    EXPECT_EQ(recordOfFile().getRenderingType(), TORVProductSettings::VOLUME);
    EXPECT_EQ(recordOfFile().getVolumeValueHigh(), 60.0);
}

TEST_F(TORVProductInformationRecordTest, ClosingAsksWhetherToSaveAndYesAppliesToo)
{
    giveSurfaces({{20.0, 50}});
    connectWindow();
    dialog.show();
    value(1)->setValue(25.0);
    const QSignalSpy finished(&dialog, &QDialog::finished);
    EXPECT_EQ(closeAndAnswer(QMessageBox::Yes), (QStringList{"Rendering parameters has been modified but not saved",
                                                             "Do you want to save your changes?"}));
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(finished.count(), 1);
    EXPECT_EQ(recordOfFile().getSurfaces(), (QMap<double, int>{{25.0, 50}}));
    EXPECT_EQ(recordInUse().getSurfaces(), (QMap<double, int>{{25.0, 50}}));
}

TEST_F(TORVProductInformationRecordTest, NoClosesAllTheSameAndForgetsTheChanges)
{
    giveSurfaces({{20.0, 50}});
    dialog.show();
    value(1)->setValue(25.0);
    EXPECT_EQ(closeAndAnswer(QMessageBox::No).size(), 2);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(recordOfFile().getSurfaces(), (QMap<double, int>{{20.0, 50}}));
    EXPECT_FALSE(isEdited());
}

TEST_F(TORVProductInformationRecordTest, ClosingAsksNothingWhereNothingWasChanged)
{
    giveSurfaces({{20.123456, 50}});
    dialog.show();
    const QSignalSpy finished(&dialog, &QDialog::finished);
    EXPECT_TRUE(dialog.close());
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(finished.count(), 1);
}

TEST_F(TORVProductInformationRecordTest, EscapeTakesBackWhatWasEditedAndThenHides)
{
    giveSurfaces({{20.0, 50}});
    dialog.show();
    value(1)->setValue(25.0);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_FALSE(isEdited());
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(TORVProductInformationRecordTest, ReturnApplies)
{
    giveSurfaces({{20.0, 50}});
    dialog.show();
    const QSignalSpy spy(&dialog, &TORVProductInformationDialog::applyChanges);
    QTest::keyClick(value(1), Qt::Key_Return);
    EXPECT_EQ(spy.count(), 1);
}

TEST_F(TORVProductInformationRecordTest, ANewFileDoesNotWipeWhatIsBeingEdited)
{
    add3d(After, volume("HALMERA", Z, 300));
    giveSurfaces({{20.0, 50}});
    value(1)->setValue(25.0);
    check(2)->setChecked(true);
    show(After);
    dialog.updateValues();
    EXPECT_TRUE(text("label_product").endsWith("12:05"));
    EXPECT_EQ(value(1)->value(), 25.0);
    EXPECT_TRUE(check(2)->isChecked());
    EXPECT_TRUE(isEdited());
}

TEST_F(TORVProductInformationRecordTest, AFileOfAnotherRangeKeepsTheEditsThatFitIt)
{
    add3d(After, velocity(600));
    give(velocity(1200), Noon, "V");
    recordSurfaces({{-5.0, 50}, {12.0, 60}});
    dialog.updateValues();
    value(1)->setValue(-6.0);
    show(After, "V"); // Nyquist 7.995
    dialog.updateValues();
    EXPECT_EQ(value(1)->value(), -6.0);
    EXPECT_EQ(value(2)->value(), 7.9); // 7.932
    EXPECT_EQ(dialog.getProductSettings()->getSurfaces(), (QMap<double, int>{{-6.0, 50}, {12.0, 60}}));
}

TEST_F(TORVProductInformationRecordTest, AnotherProductTakesTheControls)
{
    add3d(After, velocity(1200));
    giveSurfaces({{20.0, 50}});
    value(1)->setValue(25.0);
    show(After, "V");
    dialog.updateValues();
    EXPECT_EQ(value(1)->value(), -15.0); // the default of the smallest value, -15.99
    EXPECT_EQ(dialog.getProductSettings()->getConfiguration(), QLatin1String("V"));
    EXPECT_EQ(combo("colormapCombo")->count(), 1);
    EXPECT_FALSE(isEdited());
}

TEST_F(TORVProductInformationRecordTest, ARecordThatWasChangedElsewhereTakesTheControls)
{
    giveSurfaces({{20.0, 50}});
    value(1)->setValue(25.0);
    recordSurfaces({{44.0, 50}});
    dialog.updateValues();
    EXPECT_EQ(value(1)->value(), 44.0);
    EXPECT_FALSE(isEdited());
}

TEST_F(TORVProductInformationRecordTest, WhatIsEditedAfterApplyOutlivesThePictureOfTheApplied)
{
    giveSurfaces({{20.0, 50}});
    connectWindow();
    value(1)->setValue(25.0);
    dialog.applyAction();
    value(1)->setValue(30.0);
    dialog.updateValues(); // the picture is there
    EXPECT_EQ(value(1)->value(), 30.0);
    dialog.cancelConfiguration();
    EXPECT_EQ(value(1)->value(), 25.0);
}

TEST_F(TORVProductInformationRecordTest, NumbersOfTheOtherRenderingStayWhenPicturesCome)
{
    giveSurfaces({{20.0, 50}});
    connectWindow();
    box("volumeValueBoxLow")->setValue(12.0);
    dialog.applyAction();
    dialog.updateValues();
    EXPECT_EQ(box("volumeValueBoxLow")->value(), 12.0);
}

TEST_F(TORVProductInformationRecordTest, TheColoursInUseAreThoseThatWereApplied)
{
    giveSurfaces({{20.0, 50}});
    connectWindow();
    combo("colormapCombo")->setCurrentIndex(1);
    EXPECT_EQ(dialog.getColormap()->getScaleName(), QLatin1String("Default"));
    dialog.applyAction();
    EXPECT_EQ(dialog.getColormap()->getScaleName(), QLatin1String("Other"));
}
