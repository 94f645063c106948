#include "gui/TORVDoubleModeDialog.h"

#include "../visualization/SceneTest.h"
#include "FakeDialogParent.h"
#include "settings/TORVConfig.h"
#include "support/OffscreenScene.h"
#include "utils/TORVDisplayMode.h"
#include "visualization/TORVCameraInteractor.h"
#include "visualization/TORVFramePacer.h"
#include "visualization/TORVRenderer.h"

#include <QSettings>
#include <QSignalSpy>
#include <QWheelEvent>

#include <vtkPropCollection.h>
#include <vtkRenderer.h>

namespace
{

constexpr const char* Noon = "260714120000";
constexpr const char* Later = "260714120500";

const QString NoData = QStringLiteral("(No data loaded.)");
const QString NoonTitle = QStringLiteral("HALMERA: Tue 2026-07-14 12:00");
const QString LaterTitle = QStringLiteral("HALMERA: Tue 2026-07-14 12:05");
const QString Loading = QStringLiteral("Loading: ");

/// A window that has two volumes, each with a block of echo, and a view of them.
class TORVDoubleModeDialogTest : public SceneTest
{
protected:
    using Dialog = TORVDoubleModeDialog;

    TORVDoubleModeDialogTest() : SceneTest({{20.0, 100}})
    {
        TORVProductFields fields;
        fields.siteName = "HALMERA";
        fields.xPoints = fields.yPoints = 20;
        fields.zPoints = 5;
        const auto block = [](int x, int y, int) { return std::abs(x - 10) < 4 && std::abs(y - 10) < 4 ? 164U : 0U; };
        add(Noon, fields, block);
        fields.dataSeconds += 300;
        add(Later, fields, block);
        window.settings->setDataShrinkH(1);
        window.settings->save();
        window.frame = frame(Noon);
        window.angle->setPosition({100.0, -200000.0, 150000.0});
        window.angle->setDirection({0.0, 0.8, -0.6});
        home.write(QStringLiteral(".config/Halmera/TORV3DVisStyles.conf"),
                   "[RENDERER_DAY]\nbackground\\color\\r=0.2\nbackground\\color\\g=0.4\nbackground\\color\\b=0.6\n\n"
                   "[RENDERER_NIGHT]\nbackground\\color\\r=0\nbackground\\color\\g=0.2\nbackground\\color\\b=0\n");
    }

    ~TORVDoubleModeDialogTest() override
    {
        TORVDisplayMode::setNight(false);
        TORVConfig::destroy();
    }

    void setData(Dialog& dialog) const { dialog.setData(window.frame, window.state, window.angle); }

    /// As the action of the main window does it, up to the finished scene.
    void open(Dialog& dialog) const
    {
        setData(dialog);
        dialog.showDialog();
        EXPECT_TRUE(waitForScene(dialog));
    }

    static bool waitForScene(const Dialog& dialog)
    {
        return QTest::qWaitFor([&] { return !dialog.windowTitle().startsWith(Loading); }, Patience_ms);
    }

    static int propsOf(const Dialog& dialog)
    {
        return dialog.getRenderer()->getRenderer()->GetViewProps()->GetNumberOfItems();
    }

    static double greenOf(const Dialog& dialog) { return dialog.getRenderer()->getRenderer()->GetBackground()[1]; }

    static QVariant storedPosition()
    {
        const QVariant value =
            TORVConfig::instance()->get()->value(QStringLiteral("DIALOG/") + TORVConfig::DIALOG_EXTRAWIN_POS);
        TORVConfig::instance()->release();
        return value;
    }

    static void storePosition(const QVariant& value)
    {
        TORVConfig::instance()->get()->setValue(QStringLiteral("DIALOG/") + TORVConfig::DIALOG_EXTRAWIN_POS, value);
        TORVConfig::instance()->release();
    }

    QStringList loggedSince(int mark, const char* part) const { return linesSince(mark).filter(QLatin1String(part)); }

    int mark() const { return static_cast<int>(log.lines().size()); }

    static void expectView(const Dialog& dialog, const TORVPoint3D& position, const TORVPoint3D& direction)
    {
        const TORVCameraInteractor& camera = *dialog.getRenderer()->getCameraInteractor();
        EXPECT_NEAR(camera.getPosition().x, position.x, 1e-6);
        EXPECT_NEAR(camera.getPosition().y, position.y, 1e-6);
        EXPECT_NEAR(camera.getPosition().z, position.z, 1e-6);
        EXPECT_NEAR(camera.getDirection().x, direction.x, 1e-12);
        EXPECT_NEAR(camera.getDirection().y, direction.y, 1e-12);
        EXPECT_NEAR(camera.getDirection().z, direction.z, 1e-12);
    }

    FakeDialogParent window;
};

} // namespace

TEST_F(TORVDoubleModeDialogTest, IsEmptyAndHiddenAtFirst)
{
    const int begin = mark();
    const Dialog dialog(nullptr, &window);
    EXPECT_EQ(dialog.windowTitle(), NoData);
    EXPECT_FALSE(dialog.dialogVisible());
    EXPECT_FALSE(dialog.isGenerating());
    EXPECT_EQ(dialog.minimumSize(), QSize(480, 360));
    EXPECT_FALSE(dialog.sceneWidget->accessibleName().isEmpty());
    const QStringList lines = linesSince(begin);
    const int vtk = lines.indexOf(QStringLiteral("D: Initializing VTK.."));
    const int renderer = lines.indexOf(QStringLiteral("D: *** Initializing renderer.."));
    const int restore = lines.indexOf(QStringLiteral("D: Restore TORVDoubleModeDialog location.."));
    EXPECT_GE(vtk, 0);
    EXPECT_GT(renderer, vtk);
    EXPECT_GT(restore, renderer);
    EXPECT_EQ(lines.last(), QStringLiteral("D: Previous dialog position not found!"));
}

TEST_F(TORVDoubleModeDialogTest, FillsTheWholeWindowWithTheScene)
{
    Dialog dialog(nullptr, &window);
    dialog.show();
    EXPECT_EQ(dialog.sceneWidget->geometry(), dialog.rect());
}

TEST_F(TORVDoubleModeDialogTest, TellsWhatItIsLoading)
{
    Dialog dialog(nullptr, &window);
    const int begin = mark();
    setData(dialog);
    EXPECT_EQ(dialog.windowTitle(), Loading + NoonTitle);
    const QStringList lines = linesSince(begin);
    int last = -1;
    for (const char* const line :
         {"D: Copying current data..", "D: Initializing general settings..", "D: Initializing background settings.."}) {
        const int place = lines.indexOf(QLatin1String(line));
        EXPECT_GT(place, last) << line;
        last = place;
    }
}

TEST_F(TORVDoubleModeDialogTest, ShowsWhatItIsGiven)
{
    Dialog dialog(nullptr, &window);
    open(dialog);
    EXPECT_TRUE(dialog.dialogVisible());
    EXPECT_EQ(dialog.windowTitle(), NoonTitle);
    EXPECT_TRUE(dialog.getRenderer()->isLegendOn());
    EXPECT_TRUE(dialog.getRenderer()->isCompassOn());
    EXPECT_TRUE(dialog.getRenderer()->isColorScaleOn());
    expectView(dialog, {100.0, -200000.0, 150000.0}, {0.0, 0.8, -0.6});
}

TEST_F(TORVDoubleModeDialogTest, DrawsTheEcho)
{
    Dialog dialog(nullptr, &window);
    open(dialog);
    const auto isEchoSeen = [&dialog] {
        const QColor middle = dialog.sceneWidget->grabFramebuffer().pixelColor(360, 300);
        return std::abs(middle.greenF() - 0.4) > 0.05; // the background is all that is green like this
    };
    window.angle->setPosition({0.0, 0.0, 30000.0});
    window.angle->setDirection({0.0, 1e-6, -1.0});
    open(dialog);
    EXPECT_TRUE(QTest::qWaitFor(isEchoSeen, Patience_ms));
}

TEST_F(TORVDoubleModeDialogTest, KeepsACopyOfWhatItIsGiven)
{
    Dialog dialog(nullptr, &window);
    window.state->getLayer(TORVDisplayLayer::LAYER_3DTERRAIN)->setOpacity(40);
    window.settings->setVerticalScale(7.0);
    window.settings->save();
    setData(dialog);
    window.state->getLayer(TORVDisplayLayer::LAYER_3DTERRAIN)->setOpacity(90);
    window.settings->setVerticalScale(9.0);
    window.angle->setPosition({});
    EXPECT_EQ(dialog.getVisualizationDisplayState()->getLayer(TORVDisplayLayer::LAYER_3DTERRAIN)->getOpacity(), 40);
    EXPECT_EQ(dialog.getVisualizationGeneralSettings()->getVerticalScale(), 7.0);
    dialog.showDialog();
    ASSERT_TRUE(waitForScene(dialog));
    expectView(dialog, {100.0, -200000.0, 150000.0}, {0.0, 0.8, -0.6});
}

TEST_F(TORVDoubleModeDialogTest, HasALayerStateOfItsOwnBesideThePresetsOfTheFile)
{
    window.settings->setDisplayStates({boost::make_shared<TORVDisplayState>()});
    window.settings->saveDisplayStates(boost::make_shared<TORVDisplayState>());
    window.state->getLayer(TORVDisplayLayer::LAYER_RANGERINGS)->setEnabled(false);
    Dialog dialog(nullptr, &window);
    setData(dialog);
    EXPECT_FALSE(dialog.getVisualizationDisplayState()->getLayer(TORVDisplayLayer::LAYER_RANGERINGS)->isEnabled());
}

TEST_F(TORVDoubleModeDialogTest, LooksAsFarAndAsHighAsTheMainWindow)
{
    OffscreenScene scene;
    TORVRenderer main(scene.window(), nullptr, nullptr, true);
    main.getCameraInteractor()->resetCamera({0.0, 0.0, 1000.0}, {0.0, 1e-6, -1.0}, 640000.0, 160000.0);
    window.renderer = &main;
    Dialog dialog(nullptr, &window);
    setData(dialog);
    TORVCameraInteractor& camera = *dialog.getRenderer()->getCameraInteractor();
    EXPECT_EQ(camera.getMaxDistance(), 640000.0);
    EXPECT_EQ(camera.getTargetLimit(), 160000.0);
    camera.setView({0.0, 0.0, 5000.0}, {0.0, 0.6, -0.8});
    dialog.getRenderer()->resetCamera();
    expectView(dialog, {100.0, -200000.0, 150000.0}, {0.0, 0.8, -0.6});
}

TEST_F(TORVDoubleModeDialogTest, KeepsItsOwnViewWhereThereIsNoneToTake)
{
    OffscreenScene scene;
    TORVRenderer main(scene.window(), nullptr, nullptr, true);
    window.renderer = &main;
    window.angle = boost::make_shared<TORVViewAngle>();
    Dialog dialog(nullptr, &window);
    open(dialog);
    const TORVCameraInteractor& camera = *dialog.getRenderer()->getCameraInteractor();
    EXPECT_EQ(camera.getPosition().z, 2000000.0);
    EXPECT_NEAR(camera.getDirection().z, -1.0, 1e-9);
}

TEST_F(TORVDoubleModeDialogTest, ZoomsByTheWheel)
{
    Dialog dialog(nullptr, &window);
    open(dialog);
    const double before = dialog.getRenderer()->getCameraInteractor()->getTargetDistance();
    const QPointF place = QRectF(dialog.sceneWidget->rect()).center();
    QWheelEvent turn(place, place, QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(dialog.sceneWidget, &turn);
    EXPECT_LT(dialog.getRenderer()->getCameraInteractor()->getTargetDistance(), before);
    EXPECT_EQ(window.angle->getPosition().y, -200000.0);
}

TEST_F(TORVDoubleModeDialogTest, IsEmptiedByAMissingFrame)
{
    Dialog dialog(nullptr, &window);
    open(dialog);
    const int begin = mark();
    dialog.setData({}, window.state, window.angle);
    EXPECT_EQ(dialog.windowTitle(), NoData);
    EXPECT_EQ(loggedSince(begin, "No data. Closing current data.."), QStringList("D: No data. Closing current data.."));
    EXPECT_TRUE(dialog.dialogVisible());
}

TEST_F(TORVDoubleModeDialogTest, IsEmptiedByAFrameWithoutAVolume)
{
    Dialog dialog(nullptr, &window);
    open(dialog);
    dialog.setData(boost::make_shared<TORVDataFrame>(store), window.state, window.angle);
    EXPECT_EQ(dialog.windowTitle(), NoData);
    EXPECT_FALSE(dialog.isGenerating());
}

TEST_F(TORVDoubleModeDialogTest, StopsWithoutAStateOrAView)
{
    Dialog dialog(nullptr, &window);
    EXPECT_DEATH(dialog.setData(window.frame, {}, window.angle), "state");
    EXPECT_DEATH(dialog.setData(window.frame, window.state, {}), "angle");
}

TEST_F(TORVDoubleModeDialogTest, CanBeShownEmpty)
{
    Dialog dialog(nullptr, &window);
    dialog.showDialog();
    EXPECT_TRUE(dialog.dialogVisible());
    EXPECT_FALSE(dialog.isGenerating());
    EXPECT_EQ(dialog.windowTitle(), NoData);
}

TEST_F(TORVDoubleModeDialogTest, TakesItsSceneAwayWhenItIsHidden)
{
    Dialog dialog(nullptr, &window);
    const int empty = propsOf(dialog);
    open(dialog);
    EXPECT_GT(propsOf(dialog), empty);
    const QSignalSpy finished(&dialog, &QDialog::finished);
    dialog.hideDialog();
    EXPECT_FALSE(dialog.dialogVisible());
    EXPECT_EQ(dialog.windowTitle(), NoData);
    dialog.getRenderer()->toggleCompass(false);
    EXPECT_EQ(propsOf(dialog), empty);
    EXPECT_EQ(finished.count(), 0);
}

TEST_F(TORVDoubleModeDialogTest, TellsOnceThatTheUserHasClosedIt)
{
    Dialog dialog(nullptr, &window);
    for (const bool isByKey : {false, true}) {
        open(dialog);
        const QSignalSpy finished(&dialog, &QDialog::finished);
        if (isByKey) {
            QTest::keyClick(dialog.sceneWidget, Qt::Key_Escape);
        } else {
            dialog.close();
        }
        EXPECT_FALSE(dialog.dialogVisible());
        EXPECT_EQ(finished.count(), 1);
        EXPECT_EQ(dialog.windowTitle(), NoData);
    }
}

TEST_F(TORVDoubleModeDialogTest, CanBeFilledAgain)
{
    Dialog dialog(nullptr, &window);
    open(dialog);
    dialog.hideDialog();
    window.frame = frame(Later);
    open(dialog);
    EXPECT_EQ(dialog.windowTitle(), LaterTitle);
}

TEST_F(TORVDoubleModeDialogTest, CanBeFilledAndHiddenWhileItIsBuilding)
{
    Dialog dialog(nullptr, &window);
    setData(dialog);
    dialog.showDialog();
    EXPECT_TRUE(dialog.isGenerating());
    window.frame = frame(Later);
    setData(dialog);
    dialog.showDialog();
    EXPECT_EQ(dialog.windowTitle(), Loading + LaterTitle);
    dialog.hideDialog();
    EXPECT_FALSE(dialog.isGenerating());
    EXPECT_EQ(dialog.windowTitle(), NoData);
    open(dialog);
    EXPECT_EQ(dialog.windowTitle(), LaterTitle);
}

TEST_F(TORVDoubleModeDialogTest, BuildsNothingMoreAfterAnAbort)
{
    Dialog dialog(nullptr, &window);
    dialog.abort();
    setData(dialog);
    dialog.showDialog();
    dialog.abort();
    const int begin = mark();
    dialog.showDialog();
    QCoreApplication::processEvents();
    EXPECT_EQ(loggedSince(begin, "..data visualized"), QStringList());
    EXPECT_EQ(dialog.windowTitle(), Loading + NoonTitle);
}

TEST_F(TORVDoubleModeDialogTest, CanGoWhileItIsBuilding)
{
    for (int i = 0; i < 3; ++i) {
        Dialog dialog(nullptr, &window);
        setData(dialog);
        dialog.showDialog();
    }
}

TEST_F(TORVDoubleModeDialogTest, TurnsIntoNightAndBackWithoutBuildingAnything)
{
    Dialog dialog(nullptr, &window);
    open(dialog);
    EXPECT_NEAR(greenOf(dialog), 0.4, 1e-6);
    const int begin = mark();
    dialog.toggleNightMode(true);
    EXPECT_TRUE(TORVDisplayMode::isNight());
    EXPECT_NEAR(greenOf(dialog), 0.2, 1e-6);
    dialog.toggleNightMode(false);
    EXPECT_NEAR(greenOf(dialog), 0.4, 1e-6);
    EXPECT_EQ(loggedSince(begin, "Updating visualization"), QStringList());
    EXPECT_FALSE(dialog.isGenerating());
}

TEST_F(TORVDoubleModeDialogTest, TurnsIntoNightWhileItIsEmptyOrBuilding)
{
    Dialog dialog(nullptr, &window);
    dialog.toggleNightMode(true);
    EXPECT_NEAR(greenOf(dialog), 0.2, 1e-6);
    setData(dialog);
    dialog.showDialog();
    dialog.toggleNightMode(false);
    EXPECT_TRUE(waitForScene(dialog));
    EXPECT_NEAR(greenOf(dialog), 0.4, 1e-6);
}

TEST_F(TORVDoubleModeDialogTest, UpdatesItsTitleByThePresentClock)
{
    Dialog dialog(nullptr, &window);
    setData(dialog);
    window.settings->set24hClock(false);
    const QString title = window.frame->getDataId(window.settings);
    ASSERT_NE(title, NoonTitle);
    dialog.updateValues();
    EXPECT_EQ(dialog.windowTitle(), Loading + title);
    dialog.showDialog();
    ASSERT_TRUE(waitForScene(dialog));
    EXPECT_EQ(dialog.windowTitle(), title);
    window.settings->set24hClock(true);
    dialog.updateValues();
    EXPECT_EQ(dialog.windowTitle(), NoonTitle);
    dialog.hideDialog();
    dialog.updateValues();
    EXPECT_EQ(dialog.windowTitle(), NoData);
}

TEST_F(TORVDoubleModeDialogTest, RemembersWhereItWas)
{
    {
        Dialog dialog(nullptr, &window);
        dialog.showDialog();
        dialog.resize(640, 480);
        const int begin = mark();
        dialog.hideDialog();
        EXPECT_EQ(loggedSince(begin, "location.."), QStringList("D: Store TORVDoubleModeDialog location.."));
    }
    const int begin = mark();
    Dialog dialog(nullptr, &window);
    EXPECT_EQ(linesSince(begin).last(), QStringLiteral("D: Previous dialog position found!"));
    dialog.showDialog();
    EXPECT_EQ(dialog.size(), QSize(640, 480));
}

TEST_F(TORVDoubleModeDialogTest, RemembersWhereItWasWhenTheUserClosesIt)
{
    Dialog dialog(nullptr, &window);
    dialog.showDialog();
    dialog.close();
    EXPECT_TRUE(storedPosition().isValid());
}

TEST_F(TORVDoubleModeDialogTest, StoresNoPositionOfAWindowThatWasNotShown)
{
    {
        Dialog dialog(nullptr, &window);
        setData(dialog);
        dialog.hideDialog();
        dialog.done(0);
    }
    EXPECT_FALSE(storedPosition().isValid());
}

TEST_F(TORVDoubleModeDialogTest, StaysWhereItIsWhenItIsShownOnceMore)
{
    Dialog dialog(nullptr, &window);
    dialog.showDialog();
    dialog.resize(600, 400);
    dialog.hideDialog();
    dialog.showDialog();
    dialog.resize(700, 500);
    dialog.showDialog();
    EXPECT_EQ(dialog.size(), QSize(700, 500));
}

TEST_F(TORVDoubleModeDialogTest, PassesOverAPositionThatIsNone)
{
    for (const QVariant& value : {QVariant(QByteArray("junk")), QVariant(QByteArray(200, '\xff')), QVariant(17),
                                  QVariant(QStringList{"a", "b"})}) {
        storePosition(value);
        const int begin = mark();
        const Dialog dialog(nullptr, &window);
        EXPECT_EQ(linesSince(begin).last(), QStringLiteral("D: Previous dialog position not found!"));
        EXPECT_EQ(dialog.size(), QSize(720, 560));
    }
}
