// The window of the general settings as somebody finds it who works with keys, chooses directories, and waits.
#include "gui/GeneralSettingsDialogTest.h"

#include <QFileDialog>
#include <QRegularExpression>
#include <QSignalSpy>

#include <memory>

using TORVGeneralSettingsWindowTest = GeneralSettingsDialogTest;

namespace
{

struct Browse
{
    const char* button;
    const char* edit;
    const char* title;
};

const Browse Browses[] = {
    {"geoLayerLocationSelectButton", "geoLayerLocationEdit", "Select the elevation data directory"},
    {"data3DLocationSelectButton", "data3DLocationEdit", "Select the 3D data directory"},
    {"data2DLocationSelectButton", "data2DLocationEdit", "Select the 2D data directory"},
};

void PrintTo(const Browse& browse, std::ostream* out)
{
    *out << browse.edit;
}

class TORVGeneralSettingsBrowseTest : public GeneralSettingsDialogTest, public testing::WithParamInterface<Browse>
{
protected:
    QFileDialog* openChooser() const
    {
        press(GetParam().button);
        auto* const chooser = dialog.findChild<QFileDialog*>();
        EXPECT_TRUE(chooser && QTest::qWaitForWindowExposed(chooser, Patience_ms));
        return chooser;
    }

    TORVDirectoryEdit& line() const { return edit(GetParam().edit); }
};

// What the user works with: controls, without the parts that Qt makes them of.
QList<QWidget*> controls(const QDialog& dialog)
{
    QList<QWidget*> list;
    for (QWidget* const widget : dialog.findChildren<QWidget*>()) {
        const bool isPart = widget->objectName().isEmpty() || widget->objectName().startsWith(QLatin1String("qt_"));
        // Of radio buttons Qt leads the tab key to the one that is checked alone.
        const bool isStop = (widget->focusPolicy() & Qt::TabFocus) != 0 || qobject_cast<QRadioButton*>(widget);
        if (!isPart && isStop) {
            list << widget;
        }
    }
    return list;
}

} // namespace

TEST_P(TORVGeneralSettingsBrowseTest, TheChosenDirectoryGoesIntoTheLine)
{
    const QString chosen = makeDirectory(QStringLiteral("chosen"));
    open();
    QFileDialog* const chooser = openChooser();
    ASSERT_NE(chooser, nullptr);
    EXPECT_EQ(chooser->windowTitle(), QLatin1String(GetParam().title));
    EXPECT_EQ(chooser->fileMode(), QFileDialog::Directory);
    chooser->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(chosen);
    static_cast<QDialog*>(chooser)->accept();
    EXPECT_EQ(line().text(), chosen);
    EXPECT_TRUE(isBarOf(chosen));
}

TEST_P(TORVGeneralSettingsBrowseTest, CancellingLeavesTheLineAsItWas)
{
    open();
    line().setText(QStringLiteral("/before"));
    QFileDialog* const chooser = openChooser();
    ASSERT_NE(chooser, nullptr);
    chooser->reject();
    EXPECT_EQ(line().text(), QStringLiteral("/before"));
}

TEST_P(TORVGeneralSettingsBrowseTest, TheSearchBeginsInTheDirectoryOfTheLine)
{
    const QString directory = makeDirectory(QStringLiteral("here"));
    open();
    line().setText(directory);
    QFileDialog* const chooser = openChooser();
    ASSERT_NE(chooser, nullptr);
    EXPECT_EQ(chooser->directory().absolutePath(), directory);
}

TEST_P(TORVGeneralSettingsBrowseTest, TheSearchBeginsAtHomeWhereTheLineIsOfNoUse)
{
    open();
    line().setText(QStringLiteral("/nowhere"));
    EXPECT_TRUE(isMarked(line()));
    QFileDialog* const chooser = openChooser();
    ASSERT_NE(chooser, nullptr);
    EXPECT_EQ(chooser->directory().absolutePath(), home.path());
}

INSTANTIATE_TEST_SUITE_P(Directories, TORVGeneralSettingsBrowseTest, testing::ValuesIn(Browses));

TEST_F(TORVGeneralSettingsWindowTest, EscapeHidesTheWindowAndTellsIt)
{
    open();
    const QSignalSpy finished(&dialog, &QDialog::finished);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.dialogVisible());
    EXPECT_EQ(finished.size(), 1);
}

TEST_F(TORVGeneralSettingsWindowTest, HidingByTheProgramIsNotTold)
{
    open();
    const QSignalSpy finished(&dialog, &QDialog::finished);
    dialog.hideDialog();
    EXPECT_EQ(finished.size(), 0);
}

TEST_F(TORVGeneralSettingsWindowTest, ReturnAppliesWhereverItIsPressed)
{
    const QSignalSpy applied(&dialog, &TORVGeneralSettingsDialog::applyChanges);
    open();
    QTest::keyClick(&edit("data3DLocationEdit"), Qt::Key_Return);
    QTest::keyClick(&control<QDoubleSpinBox>("doubleSpinBox_verticalScale"), Qt::Key_Return);
    QTest::keyClick(&control<QComboBox>("comboBox_latLonUnit"), Qt::Key_Return);
    EXPECT_EQ(applied.size(), 3);
}

TEST_F(TORVGeneralSettingsWindowTest, OpensWithTheFocusOnTheClockThatIsInUse)
{
    open();
    EXPECT_EQ(dialog.focusWidget(), &control<QRadioButton>("radioButton_24hClock"));
}

TEST_F(TORVGeneralSettingsWindowTest, NothingCanBeChangedWhileDataIsBuilt)
{
    open();
    const QList<QWidget*> list = controls(dialog);
    EXPECT_EQ(list.size(), 18);
    dialog.enableSettingControls(false);
    for (const QWidget* const widget : list) {
        EXPECT_FALSE(widget->isEnabled()) << qUtf8Printable(widget->objectName());
    }
    dialog.enableSettingControls(true);
    for (const QWidget* const widget : list) {
        EXPECT_TRUE(widget->isEnabled()) << qUtf8Printable(widget->objectName());
    }
}

TEST_F(TORVGeneralSettingsWindowTest, NothingIsAppliedByAKeyWhileDataIsBuilt)
{
    const QSignalSpy applied(&dialog, &TORVGeneralSettingsDialog::applyChanges);
    open();
    dialog.enableSettingControls(false);
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_EQ(applied.size(), 0);
}

TEST_F(TORVGeneralSettingsWindowTest, TheFocusComesBackWhenDataIsBuilt)
{
    open();
    edit("data2DLocationEdit").setFocus();
    dialog.enableSettingControls(false);
    dialog.enableSettingControls(false);
    dialog.enableSettingControls(true);
    EXPECT_EQ(dialog.focusWidget(), &edit("data2DLocationEdit"));
}

TEST_F(TORVGeneralSettingsWindowTest, TheBarShowsTheDiskOfThe3DDataAtFirst)
{
    TORVGeneralSettings settings;
    settings.set3DDir(makeDirectory(QStringLiteral("3d")));
    settings.save();
    open();
    EXPECT_TRUE(isBarOf(settings.get3DDir()));
    const auto& bar = control<TORVDiskSpaceIndicator>("diskSpaceBar");
    EXPECT_EQ(control<QLabel>("label_diskSpaceValue").text(),
              QStringLiteral("%1% (%2)").arg(bar.percent()).arg(bar.sizesText()));
}

TEST_F(TORVGeneralSettingsWindowTest, TheBarSaysSoWhereTheDiskIsNotKnown)
{
    open();
    const auto& label = control<QLabel>("label_diskSpaceValue");
    EXPECT_TRUE(QTest::qWaitFor([&] { return label.text() == QLatin1String("Not available"); }, Patience_ms));
}

TEST_F(TORVGeneralSettingsWindowTest, TheBarFollowsADirectoryWhenItsTypingIsFinished)
{
    const QString directory = makeDirectory(QStringLiteral("2d"));
    open();
    const auto& bar = control<TORVDiskSpaceIndicator>("diskSpaceBar");
    type(edit("data2DLocationEdit"), directory);
    EXPECT_EQ(bar.path(), QString());
    QTest::keyClick(&edit("data2DLocationEdit"), Qt::Key_Return);
    EXPECT_EQ(bar.path(), directory);
}

TEST_F(TORVGeneralSettingsWindowTest, TheBarStaysWhereADirectoryWasOnlyVisited)
{
    TORVGeneralSettings settings;
    settings.set3DDir(makeDirectory(QStringLiteral("3d")));
    settings.set2DDir(makeDirectory(QStringLiteral("2d")));
    settings.save();
    open();
    QTest::keyClick(&edit("data2DLocationEdit"), Qt::Key_Return);
    EXPECT_EQ(control<TORVDiskSpaceIndicator>("diskSpaceBar").path(), settings.get3DDir());
}

TEST_F(TORVGeneralSettingsWindowTest, TheDiskIsPolledWhileTheWindowIsOpen)
{
    const auto* const timer = control<TORVDiskSpaceIndicator>("diskSpaceBar").findChild<QTimer*>();
    EXPECT_FALSE(timer->isActive());
    open();
    EXPECT_TRUE(timer->isActive());
    dialog.hideDialog();
    EXPECT_FALSE(timer->isActive());
}

TEST_F(TORVGeneralSettingsWindowTest, EveryControlHasAToolTipAndANameForThoseWhoDoNotSeeIt)
{
    for (const QWidget* const widget : controls(dialog)) {
        EXPECT_FALSE(widget->toolTip().isEmpty()) << qUtf8Printable(widget->objectName());
        EXPECT_FALSE(widget->accessibleName().isEmpty()) << qUtf8Printable(widget->objectName());
    }
}

TEST_F(TORVGeneralSettingsWindowTest, EveryControlWithWordsHasAKeyOfItsOwn)
{
    static const QRegularExpression mnemonic(QStringLiteral("&(.)"));
    QStringList texts;
    for (const QAbstractButton* const button : dialog.findChildren<QAbstractButton*>()) {
        texts << button->text();
    }
    for (const QLabel* const label : dialog.findChildren<QLabel*>()) {
        texts << (label->buddy() ? label->text() : QString());
    }
    QStringList keys;
    for (const QString& text : std::as_const(texts)) {
        const QString key = mnemonic.match(text).captured(1).toLower();
        EXPECT_TRUE(text.isEmpty() || !key.isEmpty()) << qUtf8Printable(text);
        keys << (key.isEmpty() ? QStringList() : QStringList(key));
    }
    EXPECT_EQ(keys.size(), 15);
    EXPECT_EQ(keys.removeDuplicates(), 0);
}

TEST_F(TORVGeneralSettingsWindowTest, TheTabKeyGoesFromTopToBottomAndThenAlongTheFooter)
{
    open();
    QStringList names;
    QWidget* widget = &dialog;
    do {
        widget = widget->nextInFocusChain();
        if (controls(dialog).contains(widget)) {
            names << widget->objectName();
        }
    } while (widget != &dialog);
    EXPECT_EQ(names.join(QLatin1Char(' ')),
              QStringLiteral("radioButton_12hClock radioButton_24hClock radioButton_english radioButton_metric "
                             "comboBox_latLonUnit doubleSpinBox_verticalScale comboBox_dataShrinkH "
                             "comboBox_dataShrinkV horizontalSlider_dataSmooth geoLayerLocationEdit "
                             "geoLayerLocationSelectButton data3DLocationEdit data3DLocationSelectButton "
                             "data2DLocationEdit data2DLocationSelectButton resetButton clearCacheButton "
                             "applyButton"));
}

TEST_F(TORVGeneralSettingsWindowTest, ItsTitleSaysWhatItIs)
{
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Settings window"));
    EXPECT_TRUE(dialog.isWindow());
    EXPECT_FALSE(dialog.isModal());
}

TEST_F(TORVGeneralSettingsWindowTest, TheWheelDoesNotChangeAControlInPassing)
{
    open();
    auto& scale = control<QDoubleSpinBox>("doubleSpinBox_verticalScale");
    const QPointF place = scale.rect().center();
    QWheelEvent event(place, scale.mapToGlobal(place.toPoint()), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&scale, &event);
    EXPECT_EQ(scale.value(), 5.0);
}

TEST_F(TORVGeneralSettingsWindowTest, ACommaDoesNotMakeTheScaleTenTimesAsLarge)
{
    open();
    auto& scale = control<QDoubleSpinBox>("doubleSpinBox_verticalScale");
    scale.selectAll();
    QTest::keyClicks(&scale, QStringLiteral("2,5"));
    EXPECT_EQ(scale.value(), 2.5);
}

TEST_F(TORVGeneralSettingsWindowTest, MayGoWhileSomebodyIsTyping)
{
    auto another = std::make_unique<TORVGeneralSettingsDialog>(nullptr, &window);
    another->showDialog();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(another.get(), Patience_ms));
    QApplication::setActiveWindow(another.get());
    auto* const line = another->findChild<QLineEdit*>(QStringLiteral("data3DLocationEdit"));
    line->setFocus();
    QTest::keyClicks(line, QStringLiteral("/srv"));
    another.reset();
    EXPECT_EQ(TORVGeneralSettings().get3DDir(), QString());
}
