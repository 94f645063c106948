#include "gui/TORVDisplayStateManager.h"

#include "DialogControls.h"
#include "PresetManagerTest.h"
#include "utils/TORVLog.h"

#include <QSignalSpy>

namespace
{

class TORVDisplayStateManagerTest : public PresetManagerTest
{
protected:
    using Manager = TORVDisplayStateManager;

    static QStringList rowsOf(const Manager& manager)
    {
        QStringList rows;
        for (int row = 0; row < manager.presetList->count(); ++row) {
            rows << manager.presetList->item(row)->text();
        }
        return rows;
    }

    static void save(Manager& manager, const QString& name)
    {
        manager.nameEdit->setText(name);
        manager.saveButton->click();
    }

    static void remove(Manager& manager, int row)
    {
        manager.presetList->setCurrentRow(row);
        manager.removeButton->click();
    }

    /// As another viewer on the same file does it.
    void saveElsewhere(const QList<TORVDisplayState::Ptr>& states) const
    {
        TORVGeneralSettings settings;
        settings.setDisplayStates(states);
        settings.saveDisplayStates(displayState("", 77));
    }

    static void expectRefused(Manager& manager, const QString& name)
    {
        manager.nameEdit->setText(name);
        EXPECT_FALSE(manager.saveButton->isEnabled()) << qUtf8Printable(name);
        EXPECT_EQ(manager.nameMessage->text(), QStringLiteral("This name is in use by the program"));
        manager.clickedSave();
        EXPECT_EQ(rowsOf(manager), QStringList({"Default", "Cells", "Ground"}));
    }
};

} // namespace

TEST_F(TORVDisplayStateManagerTest, ListsTheDefaultAndThePresets)
{
    const Manager manager(nullptr, &window);
    EXPECT_EQ(manager.windowTitle(), QStringLiteral("Display presets"));
    EXPECT_EQ(rowsOf(manager), QStringList({"Default", "Cells", "Ground"}));
    expectControlsNamed(manager);
}

TEST_F(TORVDisplayStateManagerTest, HasNothingSelectedAtFirst)
{
    const Manager manager(nullptr, &window);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_EQ(manager.selectedItem(), -1);
    EXPECT_EQ(log.lines(), QStringList("D: selected none"));
    EXPECT_FALSE(manager.applyButton->isEnabled());
    EXPECT_FALSE(manager.removeButton->isEnabled());
}

TEST_F(TORVDisplayStateManagerTest, TellsWhichRowIsToBeApplied)
{
    Manager manager(nullptr, &window);
    QSignalSpy applied(&manager, &TORVPresetManager::presetItemApplied);
    for (const int row : {0, 2, 1}) {
        manager.presetList->setCurrentRow(row);
        EXPECT_EQ(manager.selectedItem(), row);
        manager.applyButton->click();
        ASSERT_EQ(applied.count(), 1);
        EXPECT_EQ(applied.takeFirst().first().toInt(), row);
    }
}

TEST_F(TORVDisplayStateManagerTest, StaysOpenWhenAPresetIsApplied)
{
    Manager manager(nullptr, &window);
    manager.show();
    manager.presetList->setCurrentRow(1);
    manager.applyButton->click();
    EXPECT_TRUE(manager.isVisible());
}

TEST_F(TORVDisplayStateManagerTest, AppliesNothingWithoutASelection)
{
    Manager manager(nullptr, &window);
    const QSignalSpy applied(&manager, &TORVPresetManager::presetItemApplied);
    manager.clickedApplySelected();
    EXPECT_EQ(applied.count(), 0);
}

TEST_F(TORVDisplayStateManagerTest, AppliesByDoubleClick)
{
    Manager manager(nullptr, &window);
    const QSignalSpy applied(&manager, &TORVPresetManager::presetItemApplied);
    manager.show();
    const QPoint place = manager.presetList->visualItemRect(manager.presetList->item(2)).center();
    QTest::mouseClick(manager.presetList->viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(manager.presetList->viewport(), Qt::LeftButton, {}, place);
    ASSERT_EQ(applied.count(), 1);
    EXPECT_EQ(applied.first().first().toInt(), 2);
}

TEST_F(TORVDisplayStateManagerTest, ReturnInTheListAppliesAndSavesNothing)
{
    Manager manager(nullptr, &window);
    const QSignalSpy applied(&manager, &TORVPresetManager::presetItemApplied);
    manager.show();
    manager.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&manager));
    manager.nameEdit->setFocus();
    manager.nameEdit->setText(QStringLiteral("Wind"));
    manager.presetList->setFocus();
    manager.presetList->setCurrentRow(1);
    QTest::keyClick(manager.presetList, Qt::Key_Return);
    EXPECT_EQ(applied.count(), 1);
    EXPECT_EQ(rowsOf(manager), QStringList({"Default", "Cells", "Ground"}));
}

TEST_F(TORVDisplayStateManagerTest, ReturnInTheNameSavesAndAppliesNothing)
{
    Manager manager(nullptr, &window);
    const QSignalSpy applied(&manager, &TORVPresetManager::presetItemApplied);
    manager.show();
    manager.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&manager));
    manager.presetList->setCurrentRow(1);
    manager.nameEdit->setFocus();
    manager.nameEdit->setText(QStringLiteral("Wind"));
    QTest::keyClick(manager.nameEdit, Qt::Key_Return);
    EXPECT_EQ(applied.count(), 0);
    EXPECT_EQ(rowsOf(manager), QStringList({"Default", "Cells", "Ground", "Wind"}));
    EXPECT_TRUE(manager.isVisible());
}

TEST_F(TORVDisplayStateManagerTest, NeedsANameToSave)
{
    Manager manager(nullptr, &window);
    EXPECT_FALSE(manager.saveButton->isEnabled());
    manager.nameEdit->setText(QStringLiteral("W"));
    EXPECT_TRUE(manager.saveButton->isEnabled());
    manager.nameEdit->setText(QStringLiteral("   "));
    EXPECT_FALSE(manager.saveButton->isEnabled());
    manager.clickedSave();
    EXPECT_EQ(rowsOf(manager).size(), 3);
}

TEST_F(TORVDisplayStateManagerTest, RefusesTheNamesOfTheProgram)
{
    Manager manager(nullptr, &window);
    for (const char* const name : {"Default", "Custom", "(Manage presets)", " Custom ", "default"}) {
        expectRefused(manager, QLatin1String(name));
    }
}

TEST_F(TORVDisplayStateManagerTest, RefusesTheNamesOfTheProgramInTheUsersLanguage)
{
    const Translator custom("App", "Custom", QStringLiteral("Mukautettu"));
    const Translator manage("App", "(Manage presets)", QStringLiteral("(Hallitse)"));
    Manager manager(nullptr, &window);
    expectRefused(manager, QStringLiteral("Mukautettu"));
    expectRefused(manager, QStringLiteral("(Hallitse)"));
    expectRefused(manager, QStringLiteral("Custom"));
}

TEST_F(TORVDisplayStateManagerTest, TakesTheRefusalBackWithTheName)
{
    Manager manager(nullptr, &window);
    manager.nameEdit->setText(QStringLiteral("Custom"));
    manager.nameEdit->setText(QStringLiteral("Customs"));
    EXPECT_TRUE(manager.saveButton->isEnabled());
    EXPECT_EQ(manager.nameMessage->text(), QString());
}

TEST_F(TORVDisplayStateManagerTest, SavesWhatTheWindowShows)
{
    setOpacity(*window.state, 55);
    Manager manager(nullptr, &window);
    save(manager, QStringLiteral("Wind"));
    EXPECT_EQ(rowsOf(manager), QStringList({"Default", "Cells", "Ground", "Wind"}));
    EXPECT_EQ(window.settings->getDisplayStateNames(), rowsOf(manager));
    const TORVGeneralSettings file = inFile();
    ASSERT_EQ(file.getDisplayStateNames(), rowsOf(manager));
    EXPECT_EQ(opacityOf(*file.getDisplayStates().at(2)), 55);
    EXPECT_EQ(opacityOf(*file.getDisplayStates().at(0)), 10);
}

TEST_F(TORVDisplayStateManagerTest, SelectsWhatItHasSavedAndClearsTheName)
{
    Manager manager(nullptr, &window);
    save(manager, QStringLiteral("Wind"));
    EXPECT_EQ(manager.selectedItem(), 3);
    EXPECT_EQ(manager.nameEdit->text(), QString());
    EXPECT_FALSE(manager.saveButton->isEnabled());
}

TEST_F(TORVDisplayStateManagerTest, KeepsAPresetApartFromTheStateItWasMadeOf)
{
    window.state->setName(QStringLiteral("Custom"));
    Manager manager(nullptr, &window);
    save(manager, QStringLiteral("Wind"));
    setOpacity(*window.state, 5);
    EXPECT_EQ(opacityOf(*window.settings->getDisplayStates().at(2)), 100);
    EXPECT_EQ(window.state->getName(), QStringLiteral("Custom"));
}

TEST_F(TORVDisplayStateManagerTest, ReplacesThePresetThatHasTheName)
{
    setOpacity(*window.state, 55);
    Manager manager(nullptr, &window);
    manager.nameEdit->setText(QStringLiteral("Cells"));
    EXPECT_EQ(manager.nameMessage->text(), QStringLiteral("Replaces the preset of this name"));
    manager.saveButton->click();
    EXPECT_EQ(rowsOf(manager), QStringList({"Default", "Cells", "Ground"}));
    const TORVGeneralSettings file = inFile();
    ASSERT_EQ(file.getDisplayStateNames(), rowsOf(manager));
    EXPECT_EQ(opacityOf(*file.getDisplayStates().at(0)), 55);
    EXPECT_EQ(opacityOf(*file.getDisplayStates().at(1)), 20);
}

TEST_F(TORVDisplayStateManagerTest, TakesBlanksRoundANameForNothing)
{
    Manager manager(nullptr, &window);
    save(manager, QStringLiteral("  Cells "));
    save(manager, QStringLiteral(" over   Lapland"));
    EXPECT_EQ(rowsOf(manager), QStringList({"Default", "Cells", "Ground", "over Lapland"}));
}

TEST_F(TORVDisplayStateManagerTest, KeepsANameOfAnyCharacters)
{
    const QString name = QString::fromUtf8("[a]/b\\c=1; \"d\" %1 &Ääkköset ∆");
    Manager manager(nullptr, &window);
    save(manager, name);
    EXPECT_EQ(rowsOf(manager).last(), name);
    EXPECT_EQ(inFile().getDisplayStateNames().last(), name);
}

TEST_F(TORVDisplayStateManagerTest, WritesTheCurrentStateWithThePresets)
{
    setOpacity(*window.state, 33);
    Manager manager(nullptr, &window);
    save(manager, QStringLiteral("Wind"));
    const auto current = boost::make_shared<TORVDisplayState>();
    TORVGeneralSettings().loadDisplayStates(current);
    EXPECT_EQ(opacityOf(*current), 33);
}

TEST_F(TORVDisplayStateManagerTest, RemovesAPresetFromListAndFile)
{
    Manager manager(nullptr, &window);
    remove(manager, 1);
    EXPECT_EQ(rowsOf(manager), QStringList({"Default", "Ground"}));
    EXPECT_EQ(window.settings->getDisplayStateNames(), rowsOf(manager));
    EXPECT_EQ(inFile().getDisplayStateNames(), rowsOf(manager));
    EXPECT_EQ(manager.selectedItem(), 1);
}

TEST_F(TORVDisplayStateManagerTest, SelectsTheLastRowWhenThatOneIsRemoved)
{
    Manager manager(nullptr, &window);
    remove(manager, 2);
    EXPECT_EQ(manager.selectedItem(), 1);
    remove(manager, 1);
    EXPECT_EQ(rowsOf(manager), QStringList("Default"));
    EXPECT_EQ(inFile().getDisplayStateNames(), QStringList("Default"));
    EXPECT_EQ(manager.selectedItem(), 0);
    EXPECT_FALSE(manager.removeButton->isEnabled());
}

TEST_F(TORVDisplayStateManagerTest, KeepsTheDefault)
{
    Manager manager(nullptr, &window);
    manager.presetList->setCurrentRow(0);
    EXPECT_TRUE(manager.applyButton->isEnabled());
    EXPECT_FALSE(manager.removeButton->isEnabled());
    manager.clickedRemoveSelected();
    EXPECT_EQ(rowsOf(manager), QStringList({"Default", "Cells", "Ground"}));
}

TEST_F(TORVDisplayStateManagerTest, RemovesNothingWithoutASelection)
{
    Manager manager(nullptr, &window);
    manager.clickedRemoveSelected();
    EXPECT_EQ(rowsOf(manager), QStringList({"Default", "Cells", "Ground"}));
}

// A file may hold anything. The default's own row is the first one.
TEST_F(TORVDisplayStateManagerTest, RemovesAPresetThatIsCalledLikeTheDefault)
{
    window.settings->setDisplayStates({displayState("Default", 10)});
    window.settings->saveDisplayStates(window.state);
    Manager manager(nullptr, &window);
    remove(manager, 1);
    EXPECT_EQ(inFile().getDisplayStateNames(), QStringList("Default"));
}

TEST_F(TORVDisplayStateManagerTest, KeepsPresetsThatAnotherViewerHasSavedMeanwhile)
{
    Manager manager(nullptr, &window);
    saveElsewhere({displayState("Theirs", 30), displayState("Cells", 40), displayState("Ground", 20)});
    save(manager, QStringLiteral("Wind"));
    EXPECT_EQ(rowsOf(manager), QStringList({"Default", "Theirs", "Cells", "Ground", "Wind"}));
    EXPECT_EQ(window.settings->getDisplayStateNames(), rowsOf(manager));
    EXPECT_EQ(inFile().getDisplayStateNames(), rowsOf(manager));
    EXPECT_EQ(opacityOf(*inFile().getDisplayStates().at(1)), 40);
}

TEST_F(TORVDisplayStateManagerTest, RemovesTheRightPresetWhenAnotherViewerHasMovedIt)
{
    Manager manager(nullptr, &window);
    saveElsewhere({displayState("Theirs", 30), displayState("Cells", 10), displayState("Ground", 20)});
    remove(manager, 1);
    EXPECT_EQ(rowsOf(manager), QStringList({"Default", "Theirs", "Ground"}));
    EXPECT_EQ(inFile().getDisplayStateNames(), rowsOf(manager));
}

TEST_F(TORVDisplayStateManagerTest, RemovesNothingElseWhenAnotherViewerHasRemovedIt)
{
    Manager manager(nullptr, &window);
    saveElsewhere({displayState("Ground", 20)});
    remove(manager, 1);
    EXPECT_EQ(rowsOf(manager), QStringList({"Default", "Ground"}));
    EXPECT_EQ(inFile().getDisplayStateNames(), rowsOf(manager));
}

TEST_F(TORVDisplayStateManagerTest, LeavesTheWindowsStateAloneWhenItReadsTheList)
{
    setOpacity(*window.state, 33);
    Manager manager(nullptr, &window);
    saveElsewhere({displayState("Cells", 10)}); // at exit that one had 77
    save(manager, QStringLiteral("Wind"));
    EXPECT_EQ(opacityOf(*window.state), 33);
}

TEST_F(TORVDisplayStateManagerTest, LeavesTheViewsAlone)
{
    Manager manager(nullptr, &window);
    remove(manager, 1);
    EXPECT_EQ(inFile().getViewAngleNames(), QStringList({"Default", "Cells", "Ground"}));
}

TEST_F(TORVDisplayStateManagerTest, ClosesByButtonAndByEscape)
{
    Manager manager(nullptr, &window);
    manager.show();
    manager.closeButton->click();
    EXPECT_FALSE(manager.isVisible());
    manager.show();
    QTest::keyClick(&manager, Qt::Key_Escape);
    EXPECT_FALSE(manager.isVisible());
}
