#include "visualization/TORVVisualization.h"

#include "SceneTest.h"
#include "support/LogFile.h"
#include "support/OffscreenScene.h"
#include "utils/TORVLog.h"

#include <QFile>

#include <vtkCamera.h>
#include <vtkMatrix4x4.h>
#include <vtkProp3D.h>
#include <vtkPropCollection.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <cmath>

namespace
{

class TORVVisualizationTest : public SceneTest
{
protected:
    using Frame = TORVDataFrame::Ptr;

    // 21 x 11 x 6 points of 1 km, 2 km and 500 m; the radar off the middle, 100 m above the sea; one block of 60 dBZ.
    static TORVProductFields grid()
    {
        TORVProductFields fields = ProductFiles::small();
        fields.siteName = "HALMERA";
        fields.xPoints = 21;
        fields.yPoints = 11;
        fields.zPoints = 6;
        fields.xScale = 100000;
        fields.yScale = 200000;
        fields.zScale = 50000;
        fields.xRadar = 5000;
        fields.yRadar = 4000;
        fields.groundElevation = 80;
        fields.radarHeight = 20;
        return fields;
    }

    static unsigned int block(int x, int y, int z)
    {
        return std::abs(x - 15) <= 1 && std::abs(y - 7) <= 1 && std::abs(z - 3) <= 1 ? 184U : 0U;
    }

    void add(const char* key) { SceneTest::add(key, grid(), block); }

    Frame defaultFrame()
    {
        add("260714120000");
        return frame("260714120000");
    }

    TORVVisualizationTest() : SceneTest({{30.0, 100}}) { showProductAlone(); }

    // Whatever is still under way has been delivered, and nobody called the observer since.
    void expectFinishedStays(int count)
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return !visualization.isGenerating(); }, Patience_ms));
        QCoreApplication::processEvents();
        EXPECT_EQ(observer.finished, count);
    }

    static vtkProp3D* product(const TORVVisualization& of)
    {
        return vtkProp3D::SafeDownCast(of.getResultItem()->getDisplayState()->getLayer(12)->getElement()->getProp());
    }

    static int parts(const TORVVisualization& of)
    {
        return of.getResultItem()->getResults()->GetParts()->GetNumberOfItems();
    }

    // Of rings round a volume of that grid.
    double ringRange(const TORVProductFields& fields, bool metric)
    {
        SceneTest::add("260714120000", fields, [](int, int, int) { return 0U; });
        const Frame data = frame("260714120000");
        observer.general->setMetricUnits(metric);
        TORVVisualizationParameters parameters;
        parameters.set(data, *observer.general, *data->getProductSettings());
        EXPECT_EQ(parameters._parsRadarRings.isMetricUnits(), metric);
        return parameters._parsRadarRings.getRange();
    }

    TORVVisualization visualization{&observer};
};

// 64 x 48 km at 1 km: half the diagonal is 40 km.
TORVProductFields fortyKilometres()
{
    TORVProductFields fields = ProductFiles::small();
    fields.siteName = "HALMERA";
    fields.xPoints = 65;
    fields.yPoints = 49;
    fields.xScale = fields.yScale = 100000;
    return fields;
}

} // namespace

TEST_F(TORVVisualizationTest, BuildsASceneAndTellsOnce)
{
    visualization.setSourceData(defaultFrame());
    EXPECT_FALSE(visualization.isGenerating());
    EXPECT_FALSE(visualization.getVTKDataSet());
    visualization.updateVisualization(false);
    EXPECT_TRUE(visualization.isGenerating());
    ASSERT_TRUE(waitForFinished(1));
    EXPECT_EQ(observer.last, &visualization);
    EXPECT_FALSE(visualization.isGenerating());
    ASSERT_TRUE(visualization.getResultItem());
    EXPECT_EQ(visualization.getResultItem()->getSite(), QStringLiteral("HALMERA"));
    EXPECT_EQ(parts(visualization), 1);
    EXPECT_TRUE(visualization.getVTKDataSet());
    expectFinishedStays(1);
}

TEST_F(TORVVisualizationTest, PutsGridPointsWhereProjectionAndScalesSay)
{
    visualization.setSourceData(defaultFrame());
    visualization.updateVisualization(false);
    ASSERT_TRUE(waitForFinished(1));
    vtkProp3D* const prop = product(visualization);
    ASSERT_TRUE(prop);
    const double levels = 5.0; // the product's own coordinates are columns, rows and five times levels
    const double point[4] = {15.0, 7.0, 3.0 * levels, 1.0};
    double scene[4];
    prop->GetMatrix()->MultiplyPoint(point, scene);
    EXPECT_NEAR(scene[0], (15 - 5) * 1000.0, 1e-6);
    EXPECT_NEAR(scene[1], (7 - 4) * 2000.0, 1e-6);
    EXPECT_NEAR(scene[2], (100.0 + 3 * 500.0) * 5.0, 1e-6); // the default vertical scale is 5
    const TORVPoint3D& radar = visualization.getResultItem()->getRadarPosition();
    EXPECT_EQ(radar.x, 0.0);
    EXPECT_EQ(radar.y, 0.0);
    EXPECT_EQ(radar.z, 500.0); // 100 m, five times as tall
}

TEST_F(TORVVisualizationTest, DrawsABlockOfEchoAtItsPlace)
{
    for (const bool isVolume : {false, true}) {
        SCOPED_TRACE(isVolume ? "volume" : "surface");
        TORVProductSettings settings(QStringLiteral("CAPPI"), QStringLiteral("Z"), TORVDataType(2));
        settings.setRenderingType(isVolume ? TORVProductSettings::VOLUME : TORVProductSettings::SURFACE);
        settings.setVolumeValueLow(10.0);
        settings.setVolumeValueHigh(60.0);
        settings.save();
        OffscreenScene scene(300, 300);
        TORVVisualization drawn(&observer);
        const int before = observer.finished;
        drawn.setSourceData(defaultFrame());
        drawn.updateVisualization(false);
        ASSERT_TRUE(waitForFinished(before + 1));
        vtkNew<vtkRenderer> renderer;
        renderer->SetBackground(0.0, 0.0, 0.0);
        renderer->AddViewProp(drawn.getResultItem()->getResults());
        scene.window()->AddRenderer(renderer);
        // From straight above: x to the right, y up.
        vtkCamera* const camera = renderer->GetActiveCamera();
        camera->ParallelProjectionOn();
        camera->SetFocalPoint(5000.0, 6000.0, 0.0);
        camera->SetPosition(5000.0, 6000.0, 100000.0);
        camera->SetViewUp(0.0, 1.0, 0.0);
        camera->SetParallelScale(16000.0);
        renderer->ResetCameraClippingRange();
        const QImage picture = scene.picture();
        // The middle of the block at ((15 - 5) km, (7 - 4) * 2 km); its neighbours three cells away are empty.
        const auto brightness = [&](double x, double y) {
            return qGray(picture.pixel(OffscreenScene::pixelOf(renderer, x, y, 8000.0).toPoint()));
        };
        EXPECT_GT(brightness(10000.0, 6000.0), 40);
        EXPECT_EQ(brightness(7000.0, 6000.0), 0);
        EXPECT_EQ(brightness(13000.0, 6000.0), 0);
        EXPECT_EQ(brightness(10000.0, 0.0), 0);
        EXPECT_EQ(brightness(10000.0, 12000.0), 0);
        scene.window()->RemoveRenderer(renderer);
    }
}

TEST_F(TORVVisualizationTest, BuildsNothingAnewWhenNothingHasChanged)
{
    const Frame data = defaultFrame();
    visualization.setSourceData(data);
    visualization.updateVisualization(false);
    ASSERT_TRUE(waitForFinished(1));
    vtkProp* const prop = product(visualization);
    const int mark = log.lines().size();
    visualization.setSourceData(data);
    visualization.updateVisualization(false);
    ASSERT_TRUE(waitForFinished(2));
    EXPECT_EQ(product(visualization), prop);
    EXPECT_TRUE(linesSince(mark).contains(QStringLiteral("D: Reusing previous pipeline item..")));
    EXPECT_TRUE(linesSince(mark).contains(QStringLiteral("D: No changes!")));
    EXPECT_TRUE(linesSince(mark).filter(QStringLiteral("Reading data: ")).isEmpty());
}

TEST_F(TORVVisualizationTest, HidesAndShowsALayerWithoutBuildingIt)
{
    visualization.setSourceData(defaultFrame());
    visualization.updateVisualization(false);
    ASSERT_TRUE(waitForFinished(1));
    vtkProp* const prop = product(visualization);
    observer.state->getLayer(12)->setEnabled(false);
    visualization.updateVisualization(false);
    ASSERT_TRUE(waitForFinished(2));
    EXPECT_EQ(parts(visualization), 0);
    observer.state->getLayer(12)->setEnabled(true);
    visualization.updateVisualization(false);
    ASSERT_TRUE(waitForFinished(3));
    EXPECT_EQ(parts(visualization), 1);
    EXPECT_EQ(product(visualization), prop);
}

TEST_F(TORVVisualizationTest, BuildsEverythingAnewByForce)
{
    visualization.setSourceData(defaultFrame());
    visualization.updateVisualization(false);
    ASSERT_TRUE(waitForFinished(1));
    const int mark = log.lines().size();
    visualization.updateVisualization(true);
    ASSERT_TRUE(waitForFinished(2));
    EXPECT_TRUE(linesSince(mark).contains(QStringLiteral("D: Force enabled -> reset layers first!")));
    EXPECT_EQ(linesSince(mark).filter(QStringLiteral("Reading data: ")).size(), 1);
    EXPECT_EQ(parts(visualization), 1);
}

TEST_F(TORVVisualizationTest, ManyChangesDuringARunMakeOneMoreRunAndOneFinish)
{
    const Frame data = defaultFrame();
    visualization.setSourceData(data);
    visualization.updateVisualization(false);
    const int mark = log.lines().size();
    for (const double smooth : {0.5, 1.0, 2.0}) { // the finish can't come before the event loop runs
        observer.general->setDataSmooth(smooth);
        visualization.setParameters(observer.general, data->getProductSettings());
        visualization.updateVisualization(false);
    }
    ASSERT_TRUE(waitForFinished(1));
    expectFinishedStays(1);
    const QStringList lines = linesSince(mark);
    EXPECT_EQ(lines.count(QStringLiteral("D: Already generating visualization! -> return.")), 3);
    EXPECT_EQ(lines.count(QStringLiteral("D: Visualization dirty -> generate again!")), 1);
    EXPECT_EQ(lines.count(QStringLiteral("D: Force enabled -> reset layers first!")), 1);
    EXPECT_TRUE(lines.contains(QStringLiteral("D: Smooth filter: amount=2")));
    EXPECT_FALSE(lines.contains(QStringLiteral("D: Smooth filter: amount=1")));
}

TEST_F(TORVVisualizationTest, AVisibilityThatChangesDuringARunIsShownInTheEnd)
{
    visualization.setSourceData(defaultFrame());
    visualization.updateVisualization(false);
    observer.state->getLayer(12)->setEnabled(false);
    const int mark = log.lines().size();
    visualization.updateVisualization(false);
    ASSERT_TRUE(waitForFinished(1));
    expectFinishedStays(1);
    EXPECT_EQ(parts(visualization), 0);
    EXPECT_FALSE(linesSince(mark).contains(QStringLiteral("D: Force enabled -> reset layers first!")));
}

TEST_F(TORVVisualizationTest, TheSameFrameDuringARunGetsAnItemOfItsOwn)
{
    const Frame data = defaultFrame();
    visualization.setSourceData(data);
    visualization.updateVisualization(false);
    visualization.setSourceData(data); // the worker may have finished, but then the item is free to be used again
    visualization.updateVisualization(false);
    ASSERT_TRUE(waitForFinished(1));
    expectFinishedStays(1);
    EXPECT_EQ(parts(visualization), 1);
    EXPECT_TRUE(product(visualization));
}

TEST_F(TORVVisualizationTest, ShowsTheFrameThatWasAskedForLast)
{
    add("260714120000");
    add("260714120500");
    const Frame first = frame("260714120000");
    const Frame second = frame("260714120500");
    visualization.setSourceData(first);
    visualization.updateVisualization(false);
    visualization.setSourceData(second);
    visualization.updateVisualization(false);
    ASSERT_TRUE(waitForFinished(1));
    expectFinishedStays(1);
    EXPECT_EQ(visualization.getDataFrame(), second);
    EXPECT_EQ(parts(visualization), 1);
}

TEST_F(TORVVisualizationTest, SaysNothingAfterAnAbort)
{
    visualization.setSourceData(defaultFrame());
    visualization.updateVisualization(false);
    visualization.abort();
    QCoreApplication::processEvents();
    EXPECT_EQ(observer.finished, 0);
    visualization.updateVisualization(true); // no way leads back
    QCoreApplication::processEvents();
    EXPECT_EQ(observer.finished, 0);
}

TEST_F(TORVVisualizationTest, LetsGoOfEverythingDuringARun)
{
    visualization.setSourceData(defaultFrame());
    visualization.updateVisualization(false);
    visualization.resetVisualization();
    EXPECT_FALSE(visualization.isGenerating());
    EXPECT_FALSE(visualization.getDataFrame());
    EXPECT_FALSE(visualization.getResultItem());
    visualization.setSourceData(frame("260714120000"));
    visualization.updateVisualization(false);
    ASSERT_TRUE(waitForFinished(1));
    expectFinishedStays(1);
    EXPECT_EQ(parts(visualization), 1);
}

TEST_F(TORVVisualizationTest, CanGoDuringARun)
{
    const Frame data = defaultFrame();
    for (int i = 0; i < 20; ++i) {
        TORVVisualization brief(&observer);
        brief.setSourceData(data);
        brief.updateVisualization(false);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(observer.finished, 0);
}

TEST_F(TORVVisualizationTest, ShowsAHundredFramesInARow)
{
    for (int i = 0; i < 10; ++i) {
        add(qPrintable(QStringLiteral("26071412000%1").arg(i)));
    }
    for (int i = 0; i < 100; ++i) {
        visualization.setSourceData(frame(qPrintable(QStringLiteral("26071412000%1").arg(i % 10))));
        visualization.updateVisualization(false);
        ASSERT_TRUE(waitForFinished(i + 1));
        ASSERT_EQ(parts(visualization), 1);
    }
}

TEST_F(TORVVisualizationTest, AFileThatVanishesLeavesTheLayerEmptyAndTheViewerAlive)
{
    const Frame data = defaultFrame();
    ASSERT_TRUE(QFile::remove(files.path(QStringLiteral("HAL260714120000.CAPZ"))));
    visualization.setSourceData(data);
    visualization.updateVisualization(false);
    ASSERT_TRUE(waitForFinished(1));
    EXPECT_EQ(parts(visualization), 0);
    EXPECT_FALSE(visualization.getVTKDataSet());
}

TEST_F(TORVVisualizationTest, NeedsAFrameWithData)
{
    EXPECT_DEATH(visualization.setSourceData({}), "dataFrame");
    add("260714120000");
    const Frame none = frame("990101000000");
    EXPECT_DEATH(visualization.setSourceData(none), "getData3d");
    EXPECT_DEATH(visualization.updateVisualization(false), "_pipelineItem");
}

TEST_F(TORVVisualizationTest, NeedsAnObserver)
{
    EXPECT_DEATH(TORVVisualization(nullptr), "_observer");
}

TEST_F(TORVVisualizationTest, ComparesParametersButNotTheGridOrTheVerticalScale)
{
    const Frame data = defaultFrame();
    TORVVisualizationParameters a;
    TORVVisualizationParameters b;
    EXPECT_TRUE(a.isSame(b));
    a.set(data, *observer.general, *data->getProductSettings());
    EXPECT_FALSE(a.isSame(b));
    EXPECT_FALSE(b.isSame(a));
    b = a;
    EXPECT_TRUE(a.isSame(b));
    b._parsLatLonGrid.setRange(1.0);
    b._verticalScale = 17.0;
    EXPECT_TRUE(a.isSame(b));
    b._parsGeoLabels.setVerticalScale(17.0); // through which a change of scale is seen
    EXPECT_FALSE(a.isSame(b));
    b = a;
    b._leaf2d = a._leaf3d;
    EXPECT_FALSE(a.isSame(b));
    b = a;
    b._pars3d.setDataSmooth(3.0);
    EXPECT_FALSE(a.isSame(b));
}

TEST_F(TORVVisualizationTest, TicksAreMetricOrInFeet)
{
    const Frame data = defaultFrame();
    TORVVisualizationParameters parameters;
    parameters.set(data, *observer.general, *data->getProductSettings());
    EXPECT_EQ(parameters._pars3dOutline.getTickInterval(), 2500.0);
    EXPECT_EQ(parameters._pars3dOutline.getDataHeight(), 2500.0); // five steps of 500 m
    EXPECT_EQ(parameters._pars3dOutline.getSiteAltitude(), 100.0);
    observer.general->setMetricUnits(false);
    parameters.set(data, *observer.general, *data->getProductSettings());
    EXPECT_NEAR(parameters._pars3dOutline.getTickInterval(), 10000.0 / 3.2808399, 1e-9);
}

TEST_F(TORVVisualizationTest, TheGridReachesOneAndAHalfTimesAsFarAsTheData)
{
    const Frame data = defaultFrame();
    TORVVisualizationParameters parameters;
    parameters.set(data, *observer.general, *data->getProductSettings());
    EXPECT_NEAR(parameters._parsLatLonGrid.getRange(), std::sqrt(20000.0 * 20000.0 * 2.0) / 2.0 * 1.5, 1e-6);
}

TEST_F(TORVVisualizationTest, RingsReachToTheNextTwentyKilometres)
{
    EXPECT_EQ(ringRange(fortyKilometres(), true), 40000.0);
}

TEST_F(TORVVisualizationTest, RingsReachToTheNextTwentyKilometresBeyondAMetre)
{
    TORVProductFields fields = fortyKilometres();
    fields.xScale = fields.yScale = 100003; // half the diagonal is 40.0012 km
    EXPECT_EQ(ringRange(fields, true), 60000.0);
}

TEST_F(TORVVisualizationTest, RingsReachToTheNextTwentyNauticalMiles)
{
    // 40 km are 21.58 miles of 1853.184 m.
    EXPECT_EQ(ringRange(fortyKilometres(), false), 40000.0);
}
