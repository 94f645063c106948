#include "gui/TORVWheelGuard.h"

#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <qtestspontaneevent.h>

#include <gtest/gtest.h>

namespace
{

void turnWheel(QWidget& widget)
{
    const QPointF place = widget.rect().center();
    QWheelEvent event(place, widget.mapToGlobal(place.toPoint()), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event); // only such events go on to the parent
    qApp->notify(&widget, &event);
}

class TORVWheelGuardTest : public testing::Test
{
protected:
    TORVWheelGuardTest()
    {
        auto* const contents = new QWidget;
        auto* const layout = new QVBoxLayout(contents);
        combo->addItems({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
        combo->setCurrentIndex(1);
        spin->setValue(50.0);
        slider->setValue(50);
        for (QWidget* const widget : {static_cast<QWidget*>(combo), static_cast<QWidget*>(spin),
                                      static_cast<QWidget*>(slider), static_cast<QWidget*>(other)}) {
            layout->addWidget(widget);
        }
        contents->setMinimumHeight(2000);
        area.setWidget(contents);
        area.resize(200, 200);
        TORVWheelGuard::guard(&area);
        area.show();
        QApplication::setActiveWindow(&area);
    }

    QComboBox* const combo = new QComboBox;
    QDoubleSpinBox* const spin = new QDoubleSpinBox;
    QSlider* const slider = new QSlider(Qt::Horizontal);
    QLineEdit* const other = new QLineEdit;
    QScrollArea area; // owns the others
};

} // namespace

TEST_F(TORVWheelGuardTest, TheWheelDoesNotChangeAComboBoxWithoutTheFocus)
{
    other->setFocus();
    turnWheel(*combo);
    EXPECT_EQ(combo->currentIndex(), 1);
}

TEST_F(TORVWheelGuardTest, TheWheelDoesNotChangeASpinBoxWithoutTheFocus)
{
    other->setFocus();
    turnWheel(*spin);
    EXPECT_EQ(spin->value(), 50.0);
}

TEST_F(TORVWheelGuardTest, TheWheelDoesNotChangeASliderWithoutTheFocus)
{
    other->setFocus();
    turnWheel(*slider);
    EXPECT_EQ(slider->value(), 50);
}

TEST_F(TORVWheelGuardTest, TheWheelGoesOnToWhatLiesAround)
{
    other->setFocus();
    turnWheel(*combo);
    EXPECT_GT(area.verticalScrollBar()->value(), 0);
}

TEST_F(TORVWheelGuardTest, TheWheelOverTheLineOfASpinBoxDoesNotChangeItEither)
{
    other->setFocus();
    turnWheel(*spin->findChild<QLineEdit*>());
    EXPECT_EQ(spin->value(), 50.0);
}

TEST_F(TORVWheelGuardTest, TheWheelChangesWhatHasTheFocus)
{
    spin->setFocus();
    turnWheel(*spin);
    EXPECT_EQ(spin->value(), 49.0);
    combo->setFocus();
    turnWheel(*combo);
    EXPECT_EQ(combo->currentIndex(), 2);
}

TEST_F(TORVWheelGuardTest, TheWheelGivesNobodyTheFocus)
{
    EXPECT_EQ(combo->focusPolicy(), Qt::StrongFocus);
    EXPECT_EQ(spin->focusPolicy(), Qt::StrongFocus);
    EXPECT_EQ(slider->focusPolicy(), Qt::StrongFocus);
}

TEST_F(TORVWheelGuardTest, WhatWasNotToHaveTheFocusStillDoesNotGetIt)
{
    QComboBox quiet;
    quiet.setFocusPolicy(Qt::NoFocus);
    TORVWheelGuard::guard(&quiet);
    EXPECT_EQ(quiet.focusPolicy(), Qt::NoFocus);
}

TEST_F(TORVWheelGuardTest, WhatIsAddedLaterIsGuardedByASecondCall)
{
    auto* const late = new QSpinBox(area.widget());
    late->setValue(5);
    TORVWheelGuard::guard(&area);
    other->setFocus();
    turnWheel(*late);
    EXPECT_EQ(late->value(), 5);
    EXPECT_EQ(area.findChildren<TORVWheelGuard*>().size(), 1);
}
