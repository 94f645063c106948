#include "gui/TORVViewAngleManager.h"

#include "PresetManagerTest.h"

#include <QSignalSpy>

namespace
{

class TORVViewAngleManagerTest : public PresetManagerTest
{
protected:
    using Manager = TORVViewAngleManager;

    TORVViewAngleManagerTest()
    {
        window.angle->setName(QStringLiteral("Custom"));
        window.angle->setPosition({1.0, -250000.0, 120000.0});
        window.angle->setDirection({0.0, 0.5, -0.25});
    }

    static void save(Manager& manager, const QString& name)
    {
        manager.nameEdit->setText(name);
        manager.saveButton->click();
    }

    static void expectCurrent(const TORVViewAngle& angle)
    {
        EXPECT_EQ(angle.getPosition().x, 1.0);
        EXPECT_EQ(angle.getPosition().y, -250000.0);
        EXPECT_EQ(angle.getPosition().z, 120000.0);
        EXPECT_EQ(angle.getDirection().x, 0.0);
        EXPECT_EQ(angle.getDirection().y, 0.5);
        EXPECT_EQ(angle.getDirection().z, -0.25);
    }
};

} // namespace

TEST_F(TORVViewAngleManagerTest, ListsTheDefaultAndTheViews)
{
    window.settings->setDisplayStates({});
    const Manager manager(nullptr, &window);
    EXPECT_EQ(manager.windowTitle(), QStringLiteral("View presets"));
    ASSERT_EQ(manager.presetList->count(), 3);
    EXPECT_EQ(manager.presetList->item(0)->text(), QStringLiteral("Default"));
    EXPECT_EQ(manager.presetList->item(2)->text(), QStringLiteral("Ground"));
}

TEST_F(TORVViewAngleManagerTest, SavesTheViewOfTheWindow)
{
    Manager manager(nullptr, &window);
    save(manager, QStringLiteral("From the south"));
    const TORVGeneralSettings file = inFile();
    ASSERT_EQ(file.getViewAngleNames(), QStringList({"Default", "Cells", "Ground", "From the south"}));
    EXPECT_EQ(window.settings->getViewAngleNames(), file.getViewAngleNames());
    expectCurrent(*file.getViewAngles().at(2));
    EXPECT_EQ(file.getViewAngles().at(0)->getPosition().x, 10.0);
}

TEST_F(TORVViewAngleManagerTest, KeepsAPresetApartFromTheViewItWasMadeOf)
{
    Manager manager(nullptr, &window);
    save(manager, QStringLiteral("From the south"));
    window.angle->setPosition({});
    expectCurrent(*window.settings->getViewAngles().at(2));
    EXPECT_EQ(window.angle->getName(), QStringLiteral("Custom"));
}

TEST_F(TORVViewAngleManagerTest, ReplacesTheViewThatHasTheName)
{
    Manager manager(nullptr, &window);
    save(manager, QStringLiteral("Cells"));
    const TORVGeneralSettings file = inFile();
    ASSERT_EQ(file.getViewAngleNames(), QStringList({"Default", "Cells", "Ground"}));
    expectCurrent(*file.getViewAngles().at(0));
}

TEST_F(TORVViewAngleManagerTest, WritesTheCurrentViewWithThePresets)
{
    Manager manager(nullptr, &window);
    save(manager, QStringLiteral("From the south"));
    const auto current = boost::make_shared<TORVViewAngle>();
    TORVGeneralSettings().loadViewAngles(current);
    expectCurrent(*current);
}

TEST_F(TORVViewAngleManagerTest, RemovesAView)
{
    Manager manager(nullptr, &window);
    manager.presetList->setCurrentRow(1);
    manager.removeButton->click();
    EXPECT_EQ(window.settings->getViewAngleNames(), QStringList({"Default", "Ground"}));
    EXPECT_EQ(inFile().getViewAngleNames(), QStringList({"Default", "Ground"}));
    EXPECT_EQ(inFile().getDisplayStateNames(), QStringList({"Default", "Cells", "Ground"}));
}

TEST_F(TORVViewAngleManagerTest, KeepsViewsThatAnotherViewerHasSavedMeanwhile)
{
    Manager manager(nullptr, &window);
    TORVGeneralSettings other;
    other.setViewAngles({viewAngle("Theirs", 30.0), viewAngle("Ground", 20.0)});
    other.saveViewAngles(viewAngle("", 77.0));
    save(manager, QStringLiteral("From the south"));
    EXPECT_EQ(inFile().getViewAngleNames(), QStringList({"Default", "Theirs", "Ground", "From the south"}));
    expectCurrent(*window.angle);
}

TEST_F(TORVViewAngleManagerTest, TellsWhichRowIsToBeApplied)
{
    Manager manager(nullptr, &window);
    const QSignalSpy applied(&manager, &TORVPresetManager::presetItemApplied);
    manager.presetList->setCurrentRow(2);
    manager.applyButton->click();
    ASSERT_EQ(applied.count(), 1);
    EXPECT_EQ(applied.first().first().toInt(), 2);
}
