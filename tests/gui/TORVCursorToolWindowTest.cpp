#include "CursorToolTest.h"
#include "gui/DisplayMode.h"
#include "settings/TORVConfig.h"

#include <QApplication>
#include <QLayout>
#include <QMouseEvent>
#include <QSettings>
#include <QSignalSpy>
#include <QWheelEvent>

#include <limits>

namespace
{

class TORVCursorToolWindowTest : public CursorToolTest
{
protected:
    static QByteArray storedPosition()
    {
        QSettings* const settings = TORVConfig::instance()->get();
        const QByteArray position =
            settings->value(TORVConfig::DIALOG_GROUP + QLatin1Char('/') + TORVConfig::DIALOG_CURSORTOOL_POS)
                .toByteArray();
        TORVConfig::instance()->release();
        return position;
    }

    static void putPosition(const QByteArray& position)
    {
        QSettings* const settings = TORVConfig::instance()->get();
        settings->setValue(TORVConfig::DIALOG_GROUP + QLatin1Char('/') + TORVConfig::DIALOG_CURSORTOOL_POS, position);
        TORVConfig::instance()->release();
    }

    void remake(QWidget* parent = nullptr)
    {
        dialog.reset();
        dialog = std::make_unique<TORVCursorToolDialog>(parent, &window);
    }

    // Where each label stands and how wide it is.
    QVector<QRect> places() const
    {
        QVector<QRect> places;
        for (const QLabel* const label : dialog->findChildren<QLabel*>()) {
            places << label->geometry();
        }
        return places;
    }

    // That the Tab key goes to.
    static QWidget* nextControl(QWidget* from)
    {
        QWidget* next = from->nextInFocusChain();
        while ((next->focusPolicy() & Qt::TabFocus) == 0 && next != from) {
            next = next->nextInFocusChain();
        }
        return next;
    }

    TORVDataFrame::Ptr frameOf(const char* site, const char* key)
    {
        return boost::make_shared<TORVDataFrame>(store, QLatin1String(site), QLatin1String(key),
                                                 QStringLiteral("CAPPI"), QStringLiteral("Z"), QString(), 180, 1.5);
    }

    static unsigned int binaryAngle(double degrees)
    {
        return static_cast<unsigned int>(degrees / 360.0 * 4294967296.0);
    }
};

} // namespace

TEST_F(TORVCursorToolWindowTest, TheCursorIsOnWhileTheDialogIsOnShow)
{
    open();
    dialog->updateValues();
    EXPECT_FALSE(renderer.isPointWidgetOn());
    dialog->showDialog();
    EXPECT_TRUE(dialog->dialogVisible());
    EXPECT_TRUE(renderer.isPointWidgetOn());
    dialog->hideDialog();
    EXPECT_FALSE(dialog->dialogVisible());
    EXPECT_FALSE(renderer.isPointWidgetOn());
}

TEST_F(TORVCursorToolWindowTest, TheCursorIsOffWithoutData)
{
    dialog->showDialog();
    EXPECT_FALSE(renderer.isPointWidgetOn());
    put(frame(Noon));
    dialog->updateValues();
    EXPECT_TRUE(renderer.isPointWidgetOn());
    close();
    dialog->updateValues();
    EXPECT_FALSE(renderer.isPointWidgetOn());
}

TEST_F(TORVCursorToolWindowTest, EscapeHidesItAndSaysSo)
{
    open();
    dialog->showDialog();
    const QSignalSpy finished(dialog.get(), &QDialog::finished);
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_EQ(finished.size(), 1);
    EXPECT_FALSE(dialog->dialogVisible());
    EXPECT_FALSE(renderer.isPointWidgetOn());
    EXPECT_FALSE(storedPosition().isEmpty());
}

TEST_F(TORVCursorToolWindowTest, ClosingHidesItAndSaysSo)
{
    open();
    dialog->showDialog();
    const QSignalSpy finished(dialog.get(), &QDialog::finished);
    dialog->close();
    EXPECT_EQ(finished.size(), 1);
    EXPECT_FALSE(renderer.isPointWidgetOn());
    EXPECT_FALSE(storedPosition().isEmpty());
}

TEST_F(TORVCursorToolWindowTest, ReturnPressesNoButton)
{
    open();
    dialog->showDialog();
    point(0.0, 50.0, 4125.0);
    QTest::keyClick(dialog.get(), Qt::Key_Return);
    EXPECT_TRUE(dialog->dialogVisible());
    EXPECT_EQ(homeCombo()->currentIndex(), 0);
    EXPECT_FALSE(button("expandButton")->isChecked());
}

TEST_F(TORVCursorToolWindowTest, ADoubleClickIsIgnored)
{
    dialog->showDialog();
    QMouseEvent twice(QEvent::MouseButtonDblClick, QPointF(5.0, 5.0), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(dialog.get(), &twice);
    EXPECT_FALSE(twice.isAccepted());
    EXPECT_TRUE(dialog->dialogVisible());
}

TEST_F(TORVCursorToolWindowTest, UnfoldingChangesTheHeightOnly)
{
    dialog->showDialog();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog.get(), 60000));
    const QRect folded = dialog->geometry();
    button("expandButton")->click();
    ASSERT_TRUE(QTest::qWaitFor([&] { return dialog->height() > folded.height(); }, 60000));
    EXPECT_TRUE(label("label_range")->isVisible());
    EXPECT_EQ(dialog->width(), folded.width());
    EXPECT_EQ(dialog->geometry().topLeft(), folded.topLeft());
    button("expandButton")->click();
    ASSERT_TRUE(QTest::qWaitFor([&] { return dialog->geometry() == folded; }, 60000));
    EXPECT_FALSE(label("label_range")->isVisible());
}

TEST_F(TORVCursorToolWindowTest, IsAsWideAsItWasDrawn)
{
    const QPalette palette = QApplication::palette();
    DisplayMode mode;
    for (const bool day : {true, false}) {
        mode.toggleDisplayMode(day);
        remake();
        dialog->showDialog();
        EXPECT_EQ(dialog->width(), 304);
        button("expandButton")->setChecked(true);
        dialog->layout()->activate();
        EXPECT_EQ(dialog->width(), 304);
    }
    dialog.reset();
    qApp->setStyleSheet(QString());
    QApplication::setPalette(palette);
}

TEST_F(TORVCursorToolWindowTest, CannotBeResized)
{
    dialog->showDialog();
    EXPECT_GE(dialog->width(), 304);
    EXPECT_EQ(dialog->minimumSize(), dialog->size());
    EXPECT_EQ(dialog->maximumSize(), dialog->size());
}

TEST_F(TORVCursorToolWindowTest, NothingMovesWhenNumbersChange)
{
    open();
    dialog->showDialog();
    button("expandButton")->setChecked(true);
    point(0.0, 0.0, 125.0);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog.get(), 60000));
    dialog->layout()->activate();
    const QVector<QRect> before = places();
    const QRect frame = dialog->geometry();
    for (const TORVPoint3D& at : {TORVPoint3D{-99.9, -99.9, 10125.0}, TORVPoint3D{99.9, 99.9, 5125.0},
                                  TORVPoint3D{0.0, -0.1, 125.0}, TORVPoint3D{0.0, 500.0, 99999.0}}) {
        point(at.x, at.y, at.z);
        dialog->layout()->activate();
        EXPECT_EQ(places(), before);
        EXPECT_EQ(dialog->geometry(), frame);
    }
}

TEST_F(TORVCursorToolWindowTest, IsAsWideWithoutDataAsWithIt)
{
    window.settings->setLatLonFormat(TORVGeneralSettings::LATLON_DMS);
    dialog->showDialog();
    dialog->layout()->activate();
    const int width = dialog->width();
    open();
    dialog->layout()->activate();
    EXPECT_EQ(dialog->width(), width);
}

TEST_F(TORVCursorToolWindowTest, ComesBackWhereItWasLeft)
{
    dialog->showDialog();
    button("expandButton")->setChecked(true);
    dialog->move(123, 77);
    QCoreApplication::processEvents();
    const QPoint left = dialog->pos();
    dialog->hideDialog();
    remake();
    EXPECT_FALSE(button("expandButton")->isChecked());
    dialog->showDialog();
    EXPECT_EQ(dialog->pos(), left);
    EXPECT_TRUE(button("expandButton")->isChecked());
}

TEST_F(TORVCursorToolWindowTest, ADialogThatWasNotShownStoresNothing)
{
    putPosition(QByteArray("kept"));
    dialog->hideDialog();
    dialog->storePosition();
    EXPECT_EQ(storedPosition(), QByteArray("kept"));
}

TEST_F(TORVCursorToolWindowTest, IgnoresAPositionThatIsNone)
{
    QWidget parent;
    parent.setGeometry(50, 40, 900, 700);
    parent.show();
    for (const QByteArray& bad : {QByteArray("rubbish"), QByteArray(66, '\xFF'), QByteArray()}) {
        putPosition(bad);
        remake(&parent);
        dialog->showDialog();
        EXPECT_TRUE(parent.geometry().contains(dialog->geometry()));
        EXPECT_EQ(dialog->size(), dialog->minimumSize());
    }
    dialog.reset();
}

TEST_F(TORVCursorToolWindowTest, AMaximizedPositionDoesNotMaximizeIt)
{
    QDialog large;
    large.showMaximized();
    putPosition(large.saveGeometry());
    dialog->showDialog();
    EXPECT_FALSE(dialog->isMaximized());
    EXPECT_EQ(dialog->size(), dialog->minimumSize());
}

TEST_F(TORVCursorToolWindowTest, StandsFirstInTheLowerRightCornerOfTheSceneWithRoomToUnfold)
{
    QWidget parent;
    QWidget sceneWidget(&parent);
    sceneWidget.setObjectName(QStringLiteral("sceneWidget"));
    parent.setGeometry(0, 0, 1000, 800);
    sceneWidget.setGeometry(200, 50, 700, 600);
    parent.show();
    remake(&parent);
    dialog->showDialog();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog.get(), 60000));
    const QRect area(sceneWidget.mapToGlobal(QPoint(0, 0)), sceneWidget.size());
    EXPECT_EQ(area.right() - dialog->geometry().right(), 24);
    button("expandButton")->setChecked(true);
    dialog->layout()->activate();
    EXPECT_EQ(area.bottom() - dialog->geometry().bottom(), 24);
    dialog.reset();
}

TEST_F(TORVCursorToolWindowTest, TheHomePointIsTheRadarSite)
{
    open();
    point(0.0, 50.0, 4125.0);
    EXPECT_EQ(caption(), QStringLiteral("Home: HALMERA"));
    EXPECT_EQ(text("label_home"), QStringLiteral("60.0000\u00B0 N, 25.0000\u00B0 E"));
    EXPECT_EQ(text("label_homeAltitude"), QStringLiteral("125 m"));
}

TEST_F(TORVCursorToolWindowTest, SetHereMakesTheCursorTheHomePoint)
{
    open();
    point(0.0, 50.0, 4125.0);
    QTest::mousePress(button("homePointButton"), Qt::LeftButton);
    EXPECT_EQ(homeCombo()->currentText(), QStringLiteral("Custom"));
    EXPECT_EQ(caption(), QStringLiteral("Home: Custom"));
    EXPECT_EQ(text("label_homeAltitude"), QStringLiteral("4125 m"));
    EXPECT_EQ(text("label_range"), QStringLiteral("0.0 km"));
    point(0.0, 40.0, 4125.0);
    EXPECT_EQ(text("label_groundDistance"), QStringLiteral("10.0 km"));
    EXPECT_EQ(text("label_bearing"), QStringLiteral("180.0\u00B0"));
}

TEST_F(TORVCursorToolWindowTest, TheComboBoxGoesBetweenTheRadarAndTheOwnHomePoint)
{
    open();
    point(0.0, 50.0, 4125.0);
    dialog->on_homePointButton_pressed();
    point(0.0, 30.0, 125.0);
    homeCombo()->setCurrentIndex(0);
    EXPECT_EQ(text("label_groundDistance"), QStringLiteral("30.0 km"));
    EXPECT_EQ(caption(), QStringLiteral("Home: HALMERA"));
    homeCombo()->setCurrentIndex(1);
    EXPECT_EQ(text("label_groundDistance"), QStringLiteral("20.0 km"));
    EXPECT_EQ(text("label_homeAltitude"), QStringLiteral("4125 m"));
}

TEST_F(TORVCursorToolWindowTest, ChoosingCustomForTheFirstTimeTakesTheCursor)
{
    open();
    point(0.0, 50.0, 4125.0);
    homeCombo()->setCurrentIndex(1);
    EXPECT_EQ(text("label_homeAltitude"), QStringLiteral("4125 m"));
    EXPECT_EQ(text("label_range"), QStringLiteral("0.0 km"));
}

TEST_F(TORVCursorToolWindowTest, AHomePointOfOnesOwnStaysWhereItIsOnTheEarth)
{
    TORVProductFields other = grid();
    other.siteName = "NEIGHBOUR";
    other.siteLatitude = binaryAngle(60.5);
    add("260714120001", other, echo);
    open();
    point(0.0, 30.0, 4125.0);
    dialog->on_homePointButton_pressed();
    const QString place = text("label_home");
    EXPECT_TRUE(place.startsWith(QLatin1String("60.2"))) << place.toStdString();
    put(frameOf("NEIGHBOUR", "260714120001"));
    dialog->resetCursor();
    EXPECT_EQ(text("label_home"), place);
    EXPECT_EQ(caption(), QStringLiteral("Home: Custom"));
    EXPECT_EQ(text("label_homeAltitude"), QStringLiteral("4125 m"));
}

TEST_F(TORVCursorToolWindowTest, AHomePointFarFromTheNewRadarIsGivenUp)
{
    TORVProductFields other = grid();
    other.siteName = "FAR";
    other.siteLatitude = binaryAngle(46.0);
    add("260714120001", other, echo);
    open();
    point(0.0, 30.0, 4125.0);
    dialog->on_homePointButton_pressed();
    put(frameOf("FAR", "260714120001"));
    dialog->resetCursor();
    EXPECT_EQ(homeCombo()->currentIndex(), 0);
    EXPECT_EQ(caption(), QStringLiteral("Home: FAR"));
    EXPECT_TRUE(text("label_home").startsWith(QLatin1String("46.0000")));
}

TEST_F(TORVCursorToolWindowTest, TheWheelInPassingDoesNotMoveTheHomePoint)
{
    open();
    dialog->showDialog();
    button("expandButton")->setChecked(true);
    point(0.0, 30.0, 4125.0);
    button("expandButton")->setFocus();
    QWheelEvent wheel(QPointF(5.0, 5.0), homeCombo()->mapToGlobal(QPoint(5, 5)), QPoint(), QPoint(0, -120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(homeCombo(), &wheel);
    EXPECT_EQ(homeCombo()->currentIndex(), 0);
}

TEST_F(TORVCursorToolWindowTest, EachControlHasANameAndATip)
{
    for (QWidget* const control : dialog->findChildren<QWidget*>()) {
        if (!qobject_cast<QPushButton*>(control) && !qobject_cast<QComboBox*>(control)) {
            continue;
        }
        EXPECT_FALSE(control->accessibleName().isEmpty()) << control->objectName().toStdString();
        EXPECT_FALSE(control->toolTip().isEmpty()) << control->objectName().toStdString();
        if (const auto* const pressed = qobject_cast<QPushButton*>(control)) {
            EXPECT_FALSE(pressed->autoDefault()) << control->objectName().toStdString();
        }
    }
}

TEST_F(TORVCursorToolWindowTest, TheTabKeyGoesDownTheDialog)
{
    open();
    dialog->showDialog();
    button("expandButton")->setChecked(true);
    EXPECT_EQ(nextControl(button("expandButton")), homeCombo());
    EXPECT_EQ(nextControl(homeCombo()), button("homePointButton"));
    EXPECT_EQ(button("colorButton")->focusPolicy(), Qt::NoFocus);
}
