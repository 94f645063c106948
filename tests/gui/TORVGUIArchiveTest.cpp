#include "GUITest.h"

#include "gui/TORVDataSelectionDialog.h"
#include "settings/TORVGeneralSettings.h"

#include <QAction>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

namespace
{

class TORVGUIArchiveTest : public GUITest
{
protected:
    void openArchiveWindow()
    {
        open();
        ASSERT_TRUE(waitFor([this] { return !window->isBusy(); }));
    }

    // Picks the file of that key of time in the tree of the dialog, once it stands open.
    void pick(const QString& time)
    {
        QTimer::singleShot(0, window.get(), [time] {
            auto* const dialog = qobject_cast<TORVDataSelectionDialog*>(QApplication::activeModalWidget());
            ASSERT_TRUE(dialog);
            auto* const tree = dialog->findChild<QTreeWidget*>();
            for (QTreeWidgetItemIterator item(tree); *item; ++item) {
                if ((*item)->flags() & Qt::ItemIsSelectable && (*item)->data(4, Qt::UserRole).toString() == time) {
                    tree->setCurrentItem(*item);
                    dialog->accept();
                    return;
                }
            }
            dialog->reject();
        });
        window->fileOpen->trigger();
    }
};

} // namespace

TEST_F(TORVGUIArchiveTest, OpensWhatTheUserPicksWithTheTimeBeforeIt)
{
    for (const int minute : {0, 5, 10}) {
        writeVolume("HALMERA", minute);
    }
    configure();
    openArchiveWindow();
    pick(QStringLiteral("260714120500"));
    ASSERT_TRUE(waitForMinute(5));
    EXPECT_EQ(minutesOfFrames(), (QVector<int>{0, 5}));
    EXPECT_EQ(window->comboBox_liveMode->currentText(), QStringLiteral("Archive"));
    EXPECT_EQ(entries(window->comboBox_radarSite), (QStringList{QStringLiteral("HALMERA")}));
    const int line = history().indexOf(QStringLiteral("Loading archive data:"));
    ASSERT_GE(line, 0);
    EXPECT_EQ(history().value(line + 1), QStringLiteral("- 2026-07-14 12:05:00 HALMERA/CAPPI/Z"));
    EXPECT_EQ(history().value(line + 2), QStringLiteral("  and  3 h back with 5 min interval."));
    EXPECT_EQ(history().value(line + 3), QStringLiteral("- Frames loaded: 2"));
}

TEST_F(TORVGUIArchiveTest, LeavesTheLiveModeByOpeningAFile)
{
    writeVolume("HALMERA", 0);
    writeVolume("HALMERA", 5);
    configureLive();
    openAndWait(2);
    pick(QStringLiteral("260714120000"));
    ASSERT_TRUE(waitForMinute(0));
    EXPECT_FALSE(window->getCurrentGeneralSettings()->isLiveMode());
    writeVolume("HALMERA", 10);
    writeVolume("OTHER", 10); // a sign that the first was seen, too
    ASSERT_TRUE(waitFor([this] { return log.lines().filter(QStringLiteral("added file #")).size() >= 2; }));
    EXPECT_EQ(minuteShown(), 0);
}

TEST_F(TORVGUIArchiveTest, KeepsTheViewWhenTheSelectionIsCancelled)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    pick(QStringLiteral("no such time"));
    EXPECT_EQ(minuteShown(), 0);
    EXPECT_TRUE(window->getCurrentGeneralSettings()->isLiveMode());
    EXPECT_TRUE(log.lines().contains(QStringLiteral("D: Open canceled.")));
}

TEST_F(TORVGUIArchiveTest, SaysThatNoDirectoryIsSetUp)
{
    open();
    ASSERT_TRUE(waitFor([this] { return !window->isBusy(); }));
    window->fileOpen->trigger();
    EXPECT_EQ(history().last(), QStringLiteral("3D data directory not defined."));
}

TEST_F(TORVGUIArchiveTest, SaysThatTheDirectoryIsNotThere)
{
    configure();
    ASSERT_TRUE(QDir(directory("3d")).removeRecursively());
    openArchiveWindow();
    window->fileOpen->trigger();
    EXPECT_EQ(history().mid(history().size() - 2),
              (QStringList{QStringLiteral("3D data directory not available:"), QLatin1String("- ") + directory("3d")}));
}

TEST_F(TORVGUIArchiveTest, SaysThatTheFileHasGoneWhileTheSelectionWasOpen)
{
    writeVolume("HALMERA", 0);
    const QString path = writeVolume("HALMERA", 5);
    configure();
    openArchiveWindow();
    QTimer::singleShot(0, window.get(), [this, path] {
        auto* const dialog = qobject_cast<TORVDataSelectionDialog*>(QApplication::activeModalWidget());
        ASSERT_TRUE(dialog);
        auto* const tree = dialog->findChild<QTreeWidget*>();
        for (QTreeWidgetItemIterator item(tree); *item; ++item) {
            if ((*item)->data(4, Qt::UserRole).toString() == QLatin1String("260714120500")) {
                tree->setCurrentItem(*item);
            }
        }
        ASSERT_TRUE(QFile::remove(path));
        EXPECT_TRUE(waitFor([this] { return !log.lines().filter(QStringLiteral(" - removed filename=")).isEmpty(); }));
        dialog->accept();
    });
    window->fileOpen->trigger();
    EXPECT_TRUE(history().contains(QStringLiteral("Requested data not available:")));
    EXPECT_FALSE(window->getCurrentDataFrame());
}

TEST_F(TORVGUIArchiveTest, ClosesTheData)
{
    writeVolume("HALMERA", 0);
    configureLive();
    openAndWait(1);
    window->fileCloseData->trigger();
    EXPECT_FALSE(window->getCurrentDataFrame());
    EXPECT_EQ(label(), QStringLiteral("(No data loaded)"));
    EXPECT_EQ(window->getAnimation().getFrameCount(), 0);
    EXPECT_TRUE(history().contains(QStringLiteral("Current data file closed.")));
    EXPECT_FALSE(window->getCurrentGeneralSettings()->isLiveMode());
    EXPECT_EQ(window->comboBox_radarSite->count(), 0);
}

TEST_F(TORVGUIArchiveTest, CanCloseTheDataTwice)
{
    configure();
    openArchiveWindow();
    window->fileCloseData->trigger();
    window->fileCloseData->trigger();
    EXPECT_FALSE(history().contains(QStringLiteral("Current data file closed.")));
}

TEST_F(TORVGUIArchiveTest, ClosesTheViewWhenAFileOfItsSequenceIsRemoved)
{
    const QString older = writeVolume("HALMERA", 0);
    writeVolume("HALMERA", 5);
    configure();
    openArchiveWindow();
    pick(QStringLiteral("260714120500"));
    ASSERT_TRUE(waitForMinute(5));
    ASSERT_TRUE(QFile::remove(older));
    ASSERT_TRUE(waitForHistory(QStringLiteral("Used file not available anymore:")));
    EXPECT_FALSE(window->getCurrentDataFrame());
    const int line = history().indexOf(QStringLiteral("Used file not available anymore:"));
    EXPECT_EQ(QFileInfo(history().value(line + 1)).fileName(), QStringLiteral("HAL260714120000.CAPZ"));
    EXPECT_EQ(history().value(line + 2), QStringLiteral(" -> Closing current data."));
}

TEST_F(TORVGUIArchiveTest, StaysOpenWhenAFileOfAnotherSiteIsRemoved)
{
    writeVolume("HALMERA", 0);
    const QString other = writeVolume("OTHER", 0);
    configure();
    openArchiveWindow();
    pick(QStringLiteral("260714120000"));
    ASSERT_TRUE(waitForMinute(0));
    const QString site = window->getCurrentDataFrame()->getSite();
    const QString victim =
        site == QLatin1String("HALMERA") ? other : directory("3d") + QStringLiteral("/HAL260714120000.CAPZ");
    ASSERT_TRUE(QFile::remove(victim));
    ASSERT_TRUE(waitFor([this] { return !log.lines().filter(QStringLiteral(" - removed filename=")).isEmpty(); }));
    EXPECT_EQ(minuteShown(), 0);
}

TEST_F(TORVGUIArchiveTest, ChangesTheProductOfTheSameTime)
{
    writeVolume("HALMERA", 0);
    writeVolume("HALMERA", 0, 4, "CAPW");
    configure();
    openArchiveWindow();
    pick(QStringLiteral("260714120000"));
    ASSERT_TRUE(waitForMinute(0));
    ASSERT_EQ(window->comboBox_3DProduct->count(), 2);
    const QString present = window->comboBox_3DProduct->currentData().toString();
    const QString other =
        present == QLatin1String("CAPPI - Z") ? QStringLiteral("CAPPI - W") : QStringLiteral("CAPPI - Z");
    window->comboBox_3DProduct->setCurrentIndex(window->comboBox_3DProduct->findData(other));
    Q_EMIT window->comboBox_3DProduct->activated(window->comboBox_3DProduct->currentIndex());
    EXPECT_TRUE(history().contains(QStringLiteral("Changing 3d product to:")));
    ASSERT_TRUE(waitFor([this, &other] {
        return isShown() && other.endsWith(window->getCurrentDataFrame()->getData3d()->getConfiguration());
    }));
    EXPECT_EQ(minuteShown(), 0);
}
