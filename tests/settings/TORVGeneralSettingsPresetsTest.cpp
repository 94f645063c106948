#include "settings/TORVConfig.h"
#include "settings/TORVGeneralSettings.h"

#include "support/LogFile.h"
#include "support/SandboxedHome.h"

#include <QFile>
#include <QSettings>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

namespace
{

const QString SettingsFile = QStringLiteral(".config/Halmera/TORV3D.conf");

// The order in which a file lists the layers.
const int LayerKeys[] = {10, 40, 11, 12, 13, 44, 41, 42, 43};

TORVDisplayState::Ptr displayState(const QString& name, int opacity = 100)
{
    auto state = boost::make_shared<TORVDisplayState>();
    state->setName(name);
    for (const int key : LayerKeys) {
        state->getLayer(key)->setOpacity(opacity);
    }
    return state;
}

TORVViewAngle::Ptr viewAngle(const QString& name, double x)
{
    return boost::make_shared<TORVViewAngle>(name, TORVPoint3D{x, 2.0, 3000.0}, TORVPoint3D{0.5, 0.25, -0.75});
}

class TORVGeneralSettingsPresetsTest : public testing::Test
{
protected:
    ~TORVGeneralSettingsPresetsTest() override { TORVConfig::destroy(); }

    void write(const QByteArray& bytes) const { home.write(SettingsFile, bytes); }

    QByteArray file() const
    {
        QFile bytes(home.settingsFile());
        return bytes.open(QIODevice::ReadOnly) ? bytes.readAll() : QByteArray();
    }

    QStringList loadedStateNames()
    {
        TORVGeneralSettings general;
        general.loadDisplayStates(current);
        return general.getDisplayStateNames();
    }

    QStringList loadedAngleNames()
    {
        TORVGeneralSettings general;
        general.loadViewAngles(angle);
        return general.getViewAngleNames();
    }

    const SandboxedHome home;
    const TORVDisplayState::Ptr current = displayState(QStringLiteral("live"), 70);
    const TORVViewAngle::Ptr angle = viewAngle(QStringLiteral("live"), 7.0);
};

using TORVGeneralSettingsStatesTest = TORVGeneralSettingsPresetsTest;
using TORVGeneralSettingsAnglesTest = TORVGeneralSettingsPresetsTest;

// All nine layers of entry `number`: those with an odd key are on, the opacity is the key.
QByteArray stateEntry(int number, const QByteArray& name)
{
    const QByteArray prefix = "DISPLAYSTATES\\" + QByteArray::number(number) + "\\displayState";
    QByteArray bytes = prefix + "Name=" + name + '\n';
    for (const int key : LayerKeys) {
        const QByteArray text = QByteArray::number(key);
        bytes += prefix + "LayerVisible" + text + '=' + (key % 2 == 1 ? "true" : "false") + '\n';
        bytes += prefix + "LayerOpacity" + text + '=' + text + '\n';
    }
    return bytes;
}

QByteArray statesFile(const QByteArrayList& names)
{
    QByteArray bytes = "[DISPLAYSTATE]\n";
    for (int i = 0; i < names.size(); ++i) {
        bytes += stateEntry(i + 1, names[i]);
    }
    return bytes + "DISPLAYSTATES\\size=" + QByteArray::number(names.size()) + '\n';
}

void expectKeysAsOpacity(const TORVDisplayState& state)
{
    for (const int key : LayerKeys) {
        EXPECT_EQ(state.getLayer(key)->isEnabled(), key % 2 == 1) << key;
        EXPECT_EQ(state.getLayer(key)->getOpacity(), key) << key;
    }
}

QByteArray angleFile(const QByteArray& secondEntry)
{
    return "[VIEWANGLE]\nVIEWANGLES\\1\\viewAngleName=x\n" + secondEntry + "VIEWANGLES\\size=2\n";
}

} // namespace

TEST_F(TORVGeneralSettingsStatesTest, LeaveAllAsItIsWithoutAFile)
{
    EXPECT_EQ(loadedStateNames(), QStringList(QStringLiteral("Default")));
    EXPECT_EQ(current->getName(), QLatin1String("live"));
    EXPECT_EQ(current->getLayer(11)->getOpacity(), 70);
}

TEST_F(TORVGeneralSettingsStatesTest, ReadEveryKeyOfAFileWrittenByHand)
{
    write(statesFile({"Whatever", "Storm", "Terrain"}));
    TORVGeneralSettings general;
    general.loadDisplayStates(current);
    EXPECT_EQ(current->getName(), QLatin1String("Custom"));
    expectKeysAsOpacity(*current);
    ASSERT_EQ(general.getDisplayStates().size(), 2);
    EXPECT_EQ(general.getDisplayStates().at(0)->getName(), QLatin1String("Storm"));
    expectKeysAsOpacity(*general.getDisplayStates().at(1));
}

TEST_F(TORVGeneralSettingsStatesTest, WriteEveryKeyBack)
{
    const QByteArray bytes = statesFile({"Custom", "Storm", "Terrain"});
    write(bytes);
    TORVGeneralSettings general;
    general.loadDisplayStates(current);
    general.saveDisplayStates(current);
    QByteArrayList before = bytes.split('\n');
    QByteArrayList after = file().split('\n');
    std::sort(before.begin(), before.end());
    std::sort(after.begin(), after.end());
    EXPECT_EQ(after, before);
}

TEST_F(TORVGeneralSettingsStatesTest, CountFromOneInTheFileAndBeginWithTheCurrentOne)
{
    TORVGeneralSettings general;
    general.setDisplayStates({displayState(QStringLiteral("Storm"), 30)});
    general.saveDisplayStates(current);
    for (const char* line :
         {"DISPLAYSTATES\\1\\displayStateName=Custom\n", "DISPLAYSTATES\\1\\displayStateLayerOpacity43=70\n",
          "DISPLAYSTATES\\2\\displayStateName=Storm\n", "DISPLAYSTATES\\2\\displayStateLayerOpacity43=30\n",
          "DISPLAYSTATES\\2\\displayStateLayerVisible10=true\n", "DISPLAYSTATES\\size=2\n"}) {
        EXPECT_TRUE(file().contains(line)) << line;
    }
    EXPECT_EQ(current->getName(), QLatin1String("live"));
}

TEST_F(TORVGeneralSettingsStatesTest, AreAppendedAtEachLoad)
{
    write(statesFile({"Custom", "Storm"}));
    TORVGeneralSettings general;
    general.loadDisplayStates(current);
    general.loadDisplayStates(current);
    EXPECT_EQ(general.getDisplayStateNames(),
              QStringList({QStringLiteral("Default"), QStringLiteral("Storm"), QStringLiteral("Storm")}));
}

TEST_F(TORVGeneralSettingsStatesTest, MayBeCalledAsTheCurrentOne)
{
    write(statesFile({"Custom", "Custom"}));
    EXPECT_EQ(loadedStateNames(), QStringList({QStringLiteral("Default"), QStringLiteral("Custom")}));
}

TEST_F(TORVGeneralSettingsStatesTest, HideALayerThatTheFileLacks)
{
    write("[DISPLAYSTATE]\nDISPLAYSTATES\\1\\displayStateLayerVisible12=true\nDISPLAYSTATES\\size=1\n");
    loadedStateNames();
    EXPECT_TRUE(current->getLayer(12)->isEnabled());
    EXPECT_EQ(current->getLayer(12)->getOpacity(), 0);
    EXPECT_FALSE(current->getLayer(43)->isEnabled());
    EXPECT_EQ(current->getLayer(43)->getOpacity(), 0);
}

TEST_F(TORVGeneralSettingsStatesTest, BringOpacitiesIntoTheirRange)
{
    write("[DISPLAYSTATE]\nDISPLAYSTATES\\1\\displayStateLayerOpacity10=101\n"
          "DISPLAYSTATES\\1\\displayStateLayerOpacity40=-1\nDISPLAYSTATES\\1\\displayStateLayerOpacity11=1e300\n"
          "DISPLAYSTATES\\1\\displayStateLayerOpacity12=nan\nDISPLAYSTATES\\size=1\n");
    loadedStateNames();
    EXPECT_EQ(current->getLayer(10)->getOpacity(), 100);
    EXPECT_EQ(current->getLayer(40)->getOpacity(), 0);
    EXPECT_EQ(current->getLayer(11)->getOpacity(), 100);
    EXPECT_EQ(current->getLayer(12)->getOpacity(), 0);
}

TEST_F(TORVGeneralSettingsStatesTest, AreReadAsFarAsTheyAreThereWhateverTheSizeSays)
{
    write(statesFile({"Custom", "Storm"}).replace("size=2", "size=1000000000"));
    EXPECT_EQ(loadedStateNames(), QStringList({QStringLiteral("Default"), QStringLiteral("Storm")}));
}

TEST_F(TORVGeneralSettingsStatesTest, TakeNoPresetForTheCurrentOneWhereThatIsMissing)
{
    write("[DISPLAYSTATE]\n" + stateEntry(2, "Storm") + "DISPLAYSTATES\\size=1000000000\n");
    EXPECT_EQ(loadedStateNames(), QStringList({QStringLiteral("Default"), QStringLiteral("Storm")}));
    EXPECT_EQ(current->getLayer(11)->getOpacity(), 0);
}

TEST_F(TORVGeneralSettingsStatesTest, AreNotReadWhereTheSizeIsNone)
{
    for (const char* size : {"0", "-5", "many"}) {
        write(statesFile({"Custom", "Storm"}).replace("size=2", QByteArray("size=") + size));
        EXPECT_EQ(loadedStateNames().size(), 1) << size;
        EXPECT_EQ(current->getName(), QLatin1String("live")) << size;
    }
}

TEST_F(TORVGeneralSettingsStatesTest, LeaveNothingOfRemovedPresets)
{
    write(statesFile({"Custom", "Storm", "Terrain"}));
    TORVGeneralSettings().saveDisplayStates(current);
    EXPECT_FALSE(file().contains("DISPLAYSTATES\\2"));
    EXPECT_TRUE(file().contains("DISPLAYSTATES\\size=1\n"));
}

TEST_F(TORVGeneralSettingsStatesTest, KeepWithTheirNameWhatAnotherVersionWrote)
{
    write("[DISPLAYSTATE]\nDISPLAYSTATES\\1\\displayStateLayerVisible50=true\n"
          "DISPLAYSTATES\\2\\displayStateName=Gone\nDISPLAYSTATES\\2\\displayStateLayerVisible50=false\n"
          "DISPLAYSTATES\\3\\displayStateName=Storm\nDISPLAYSTATES\\3\\displayStateLayerOpacity50=33\n"
          "DISPLAYSTATES\\3\\fold\\open=true\nDISPLAYSTATES\\size=3\nDISPLAYSTATES\\sorted=yes\nversion=2\n");
    TORVGeneralSettings general;
    general.setDisplayStates({displayState(QStringLiteral("Storm"))});
    general.saveDisplayStates(current);
    for (const char* line :
         {"DISPLAYSTATES\\1\\displayStateLayerVisible50=true\n", "DISPLAYSTATES\\2\\displayStateLayerOpacity50=33\n",
          "DISPLAYSTATES\\2\\fold\\open=true\n", "DISPLAYSTATES\\sorted=yes\n", "version=2\n"}) {
        EXPECT_TRUE(file().contains(line)) << line;
    }
    EXPECT_FALSE(file().contains("DISPLAYSTATES\\2\\displayStateLayerVisible50"));
    EXPECT_FALSE(file().contains("DISPLAYSTATES\\3"));
}

TEST_F(TORVGeneralSettingsStatesTest, StayWhenOnlyTheCurrentOneIsWritten)
{
    write(statesFile({"Custom", "Storm"}));
    TORVGeneralSettings().saveCurrentDisplayState(current);
    EXPECT_EQ(loadedStateNames(), QStringList({QStringLiteral("Default"), QStringLiteral("Storm")}));
    EXPECT_EQ(current->getLayer(44)->getOpacity(), 70);
    EXPECT_EQ(current->getName(), QLatin1String("Custom"));
}

TEST_F(TORVGeneralSettingsStatesTest, AreNoneWhenOnlyTheCurrentOneWasEverWritten)
{
    TORVGeneralSettings().saveCurrentDisplayState(current);
    EXPECT_TRUE(file().contains("DISPLAYSTATES\\size=1\n"));
    EXPECT_EQ(loadedStateNames().size(), 1);
}

TEST_F(TORVGeneralSettingsStatesTest, KeepNamesOfAllKinds)
{
    const QStringList names = {QStringLiteral("a, b"), QStringLiteral("\"x\"=[y];\\z"),
                               QStringLiteral("\u96e8 Z\u00fcrich"), QString(), QStringLiteral("Default")};
    TORVGeneralSettings general;
    TORVGeneralSettings::DisplayStates states;
    for (const QString& name : names) {
        states << displayState(name);
    }
    general.setDisplayStates(states);
    general.saveDisplayStates(current);
    EXPECT_EQ(loadedStateNames(), QStringList(QStringLiteral("Default")) + names);
}

TEST_F(TORVGeneralSettingsStatesTest, AreToldToTheLogWhenWritten)
{
    TORVGeneralSettings general;
    general.setDisplayStates({displayState(QStringLiteral("Storm")), displayState(QStringLiteral("Terrain"))});
    const LogFile log(TORVLog::LEVEL_DEBUG);
    general.saveDisplayStates(current);
    EXPECT_EQ(log.lines().mid(1),
              QStringList({QStringLiteral("D: Write preset: #0"), QStringLiteral("D: name=Storm"),
                           QStringLiteral("D: Write preset: #1"), QStringLiteral("D: name=Terrain")}));
}

TEST_F(TORVGeneralSettingsAnglesTest, ReadEveryKeyOfAFileWrittenByHand)
{
    write(
        "[VIEWANGLE]\n"
        "VIEWANGLES\\1\\viewAngleName=Whatever\nVIEWANGLES\\1\\viewAngleCamPosX=1.5\n"
        "VIEWANGLES\\1\\viewAngleCamPosY=-2.5\nVIEWANGLES\\1\\viewAngleCamPosZ=250000\n"
        "VIEWANGLES\\1\\viewAngleCamDirX=0.25\nVIEWANGLES\\1\\viewAngleCamDirY=0.5\n"
        "VIEWANGLES\\1\\viewAngleCamDirZ=-0.75\n"
        "VIEWANGLES\\2\\viewAngleName=North\nVIEWANGLES\\2\\viewAngleCamPosY=1e3\nVIEWANGLES\\2\\viewAngleCamDirZ=-1\n"
        "VIEWANGLES\\size=2\n");
    TORVGeneralSettings general;
    general.loadViewAngles(angle);
    EXPECT_EQ(angle->getName(), QLatin1String("Custom"));
    EXPECT_EQ(angle->getPosition().x, 1.5);
    EXPECT_EQ(angle->getPosition().y, -2.5);
    EXPECT_EQ(angle->getPosition().z, 250000.0);
    EXPECT_EQ(angle->getDirection().x, 0.25);
    EXPECT_EQ(angle->getDirection().y, 0.5);
    EXPECT_EQ(angle->getDirection().z, -0.75);
    ASSERT_EQ(general.getViewAngles().size(), 1);
    EXPECT_EQ(general.getViewAngles().first()->getName(), QLatin1String("North"));
    EXPECT_EQ(general.getViewAngles().first()->getPosition().x, 0.0);
    EXPECT_EQ(general.getViewAngles().first()->getPosition().y, 1000.0);
    EXPECT_EQ(general.getViewAngles().first()->getDirection().z, -1.0);
}

TEST_F(TORVGeneralSettingsAnglesTest, WriteEveryKey)
{
    TORVGeneralSettings general;
    general.setViewAngles({viewAngle(QStringLiteral("North"), 0.1)});
    general.saveViewAngles(angle);
    EXPECT_EQ(file(), "[VIEWANGLE]\n"
                      "VIEWANGLES\\1\\viewAngleCamDirX=0.5\nVIEWANGLES\\1\\viewAngleCamDirY=0.25\n"
                      "VIEWANGLES\\1\\viewAngleCamDirZ=-0.75\nVIEWANGLES\\1\\viewAngleCamPosX=7\n"
                      "VIEWANGLES\\1\\viewAngleCamPosY=2\nVIEWANGLES\\1\\viewAngleCamPosZ=3000\n"
                      "VIEWANGLES\\1\\viewAngleName=Custom\n"
                      "VIEWANGLES\\2\\viewAngleCamDirX=0.5\nVIEWANGLES\\2\\viewAngleCamDirY=0.25\n"
                      "VIEWANGLES\\2\\viewAngleCamDirZ=-0.75\nVIEWANGLES\\2\\viewAngleCamPosX=0.1\n"
                      "VIEWANGLES\\2\\viewAngleCamPosY=2\nVIEWANGLES\\2\\viewAngleCamPosZ=3000\n"
                      "VIEWANGLES\\2\\viewAngleName=North\n"
                      "VIEWANGLES\\size=2\n");
}

TEST_F(TORVGeneralSettingsAnglesTest, LeaveAllAsItIsWithoutAFile)
{
    EXPECT_EQ(loadedAngleNames(), QStringList(QStringLiteral("Default")));
    EXPECT_EQ(angle->getName(), QLatin1String("live"));
    EXPECT_EQ(angle->getPosition().x, 7.0);
}

TEST_F(TORVGeneralSettingsAnglesTest, StandForTheDefaultWhereANumberCanNotBeMeant)
{
    for (const char* number : {"nan", "inf", "-inf", "1e308", "-1e10"}) {
        write(angleFile(QByteArray("VIEWANGLES\\2\\viewAngleName=Odd\nVIEWANGLES\\2\\viewAngleCamDirZ=-1\n"
                                   "VIEWANGLES\\2\\viewAngleCamPosX=") +
                        number + '\n'));
        TORVGeneralSettings general;
        general.loadViewAngles(angle);
        ASSERT_EQ(general.getViewAngles().size(), 1) << number;
        EXPECT_EQ(general.getViewAngles().first()->getName(), QLatin1String("Odd")) << number;
        EXPECT_EQ(general.getViewAngles().first()->getDirection().z, 0.0) << number;
        EXPECT_EQ(general.getViewAngles().first()->getPosition().x, 0.0) << number;
    }
}

TEST_F(TORVGeneralSettingsAnglesTest, StayWhenOnlyTheCurrentOneIsWritten)
{
    TORVGeneralSettings general;
    general.setViewAngles({viewAngle(QStringLiteral("North"), 1.0)});
    general.saveViewAngles(angle);
    TORVGeneralSettings().saveCurrentViewAngle(viewAngle(QStringLiteral("live"), 8.0));
    EXPECT_EQ(loadedAngleNames(), QStringList({QStringLiteral("Default"), QStringLiteral("North")}));
    EXPECT_EQ(angle->getPosition().x, 8.0);
    EXPECT_EQ(angle->getName(), QLatin1String("Custom"));
}

TEST_F(TORVGeneralSettingsAnglesTest, AreAppendedAtEachLoad)
{
    write(angleFile("VIEWANGLES\\2\\viewAngleName=North\n"));
    TORVGeneralSettings general;
    general.loadViewAngles(angle);
    general.loadViewAngles(angle);
    EXPECT_EQ(general.getViewAngles().size(), 2);
}

TEST_F(TORVGeneralSettingsAnglesTest, AreToldToTheLogWhenRead)
{
    write(angleFile("VIEWANGLES\\2\\viewAngleName=North\n"));
    const LogFile log(TORVLog::LEVEL_DEBUG);
    loadedAngleNames();
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("D: Read preset: #0"), QStringLiteral("D: name=x"),
                                        QStringLiteral("D: Read preset: #1"), QStringLiteral("D: name=North")}));
}
