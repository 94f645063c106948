#include "gui/TORVDockTitle.h"

#include "gui/TORVPalette.h"

#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

namespace
{

class TORVDockTitleTest : public testing::Test
{
protected:
    TORVDockTitleTest()
    {
        window.resize(600, 400);
        dock = new QDockWidget(QStringLiteral("Panel"), &window);
        title = new TORVDockTitle(dock);
        auto* const contents = new QWidget;
        contents->setMinimumSize(120, 80);
        dock->setWidget(contents);
        window.setCentralWidget(new QWidget);
        window.addDockWidget(Qt::LeftDockWidgetArea, dock);
        window.show();
    }

    QToolButton* button(const char* name) const { return title->findChild<QToolButton*>(QLatin1String(name)); }

    QMainWindow window;
    QDockWidget* dock = nullptr;
    TORVDockTitle* title = nullptr;
};

} // namespace

TEST_F(TORVDockTitleTest, IsTheTitleBarOfItsDock)
{
    EXPECT_EQ(dock->titleBarWidget(), title);
}

TEST_F(TORVDockTitleTest, HasNoHeightWhileDocked)
{
    EXPECT_EQ(title->sizeHint().height(), 0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return title->height() == 0; })) << title->height();
    EXPECT_EQ(dock->widget()->mapTo(dock, QPoint(0, 0)).y(), 0);
    EXPECT_FALSE(button("dockTitleDock")->isVisible());
    EXPECT_FALSE(button("dockTitleClose")->isVisible());
}

TEST_F(TORVDockTitleTest, IsTwentyEightPixelsHighWhenFloating)
{
    dock->setFloating(true);
    EXPECT_EQ(title->sizeHint().height(), 28);
    EXPECT_TRUE(QTest::qWaitFor([this] { return title->height() == 28; })) << title->height();
    EXPECT_TRUE(button("dockTitleDock")->isVisible());
    EXPECT_TRUE(button("dockTitleClose")->isVisible());
    EXPECT_EQ(title->findChild<QLabel*>()->text(), QStringLiteral("Panel"));
}

TEST_F(TORVDockTitleTest, GoesWhenTheDockIsPutBack)
{
    dock->setFloating(true);
    button("dockTitleDock")->click();
    EXPECT_FALSE(dock->isFloating());
    EXPECT_EQ(title->sizeHint().height(), 0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return title->height() == 0; })) << title->height();
}

TEST_F(TORVDockTitleTest, ClosesTheDock)
{
    dock->setFloating(true);
    button("dockTitleClose")->click();
    EXPECT_FALSE(dock->isVisible());
}

TEST_F(TORVDockTitleTest, OffersOnlyWhatTheDockCanDo)
{
    dock->setFloating(true);
    dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    EXPECT_TRUE(button("dockTitleDock")->isVisible());
    EXPECT_FALSE(button("dockTitleClose")->isVisible());
}

TEST_F(TORVDockTitleTest, FollowsTheTitleOfTheWindow)
{
    dock->setWindowTitle(QStringLiteral("Another"));
    EXPECT_EQ(title->findChild<QLabel*>()->text(), QStringLiteral("Another"));
}

TEST_F(TORVDockTitleTest, NamesIconsAndPurposeOfItsButtons)
{
    EXPECT_EQ(button("dockTitleDock")->accessibleDescription(), QStringLiteral("dock_float"));
    EXPECT_EQ(button("dockTitleClose")->accessibleDescription(), QStringLiteral("window_close"));
    for (const QToolButton* const one : title->findChildren<QToolButton*>()) {
        EXPECT_FALSE(one->accessibleName().isEmpty());
        EXPECT_FALSE(one->toolTip().isEmpty());
    }
}

TEST_F(TORVDockTitleTest, FramesAFloatingDock)
{
    dock->setFloating(true);
    const QColor frame = TORVPalette::instance().color(QStringLiteral("control"), false);
    EXPECT_EQ(dock->grab().toImage().pixelColor(0, dock->height() / 2), frame);
    dock->setFloating(false);
    EXPECT_NE(dock->grab().toImage().pixelColor(0, dock->height() / 2), frame);
}

TEST_F(TORVDockTitleTest, CutsATitleThatIsWiderThanTheDock)
{
    dock->setWindowTitle(QString(200, QLatin1Char('W')));
    dock->setFloating(true);
    EXPECT_LT(dock->minimumSizeHint().width(), 400);
}
