#include "visualization/TORVGeoLabelsElement.h"

#include "datalib/TORVLandmarkSet.h"
#include "datalib/TORVTerrainDir.h"
#include "datalib/TORVTerrainSet.h"
#include "support/ImageCompare.h"
#include "support/LogFile.h"
#include "support/OffscreenScene.h"
#include "support/SandboxedHome.h"
#include "support/TerrainFiles.h"
#include "utils/TORVDisplayMode.h"
#include "visualization/TORVLandmarkLabel.h"
#include "visualization/TORVVisualGroup.h"

#include <gtest/gtest.h>

#include <vtkCamera.h>
#include <vtkPropAssembly.h>
#include <vtkPropCollection.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <boost/make_shared.hpp>

#include <cmath>

namespace
{

using LandmarkSet = boost::shared_ptr<TORVLandmarkSet>;
using Parameters = boost::shared_ptr<TORVLayerParametersGeoLabels>;

const TORVLandmark::Color Cream = {0.886, 0.847, 0.776};

class TORVGeoLabelsElementTest : public testing::Test
{
protected:
    ~TORVGeoLabelsElementTest() override { TORVDisplayMode::setNight(false); }

    static LandmarkSet makeSet()
    {
        return boost::make_shared<TORVLandmarkSet>(TORVCoordinate(46.0, 8.0), TORVCoordinate(42.0, 4.0),
                                                   TORVCoordinate(50.0, 12.0));
    }

    static void add(const LandmarkSet& set, const char* name, double lat, double lon, double altitude, int priority = 0,
                    const TORVLandmark::Color& color = Cream)
    {
        set->append(boost::make_shared<TORVLandmark>(QString::fromUtf8(name), TORVCoordinate(lat, lon), altitude, true,
                                                     color, priority));
    }

    static void addOnGround(const LandmarkSet& set, const char* name, double lat, double lon)
    {
        set->append(
            boost::make_shared<TORVLandmark>(QLatin1String(name), TORVCoordinate(lat, lon), 0.0, false, Cream, 0));
    }

    Parameters parameters(const LandmarkSet& set, double verticalScale = 5.0) const
    {
        auto params = boost::make_shared<TORVLayerParametersGeoLabels>();
        params->setLandmarkSet(set);
        params->setGeoProjection(projection);
        params->setVerticalScale(verticalScale);
        return params;
    }

    // A run of the pipeline, and what the main thread does after it.
    void run(const Parameters& params)
    {
        element.update(params, true, abort);
        element.place();
    }

    static LandmarkSet threePlaces()
    {
        const LandmarkSet set = makeSet();
        add(set, "Radar", 46.0408, 8.8332, 1626.0);
        add(set, "Milan", 45.46998, 9.20501, 130.0);
        add(set, "Bern", 46.94, 7.43, 565.0);
        return set;
    }

    const double* placeOf(int i) const
    {
        return element.getLabels().at(static_cast<std::size_t>(i))->GetWorldPosition();
    }

    int parts() const { return vtkPropAssembly::SafeDownCast(prop())->GetParts()->GetNumberOfItems(); }

    vtkProp* prop() const { return const_cast<TORVGeoLabelsElement&>(element).getProp(); }

    // From straight above, 600 km across.
    QImage picture()
    {
        if (!renderer->GetRenderWindow()) {
            renderer->SetBackground(0.212, 0.267, 0.310);
            vtkCamera* const camera = renderer->GetActiveCamera();
            camera->ParallelProjectionOn();
            camera->SetParallelScale(200000.0);
            camera->SetPosition(0.0, 0.0, 500000.0);
            camera->SetClippingRange(1000.0, 1000000.0);
            scene.window()->AddRenderer(renderer);
        }
        renderer->RemoveAllViewProps();
        renderer->AddViewProp(prop());
        return scene.picture();
    }

    LogFile log{TORVLog::LEVEL_DEBUG};
    SandboxedHome home;
    std::atomic<bool> abort{false};
    TORVVisualGroup group{40};
    TORVGeoLabelsElement element{&group, 43};
    TORVGeoProjection::CPtr projection = TerrainFiles::projection(46.0, 8.0);
    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
};

using TORVGeoLabelsElementDeathTest = TORVGeoLabelsElementTest;

// One flat tile of 1200 m.
class Ground
{
public:
    Ground()
    {
        files.writeSrtm(QStringLiteral("N46E008.hgt"), TerrainFiles::flat(1200));
        TORVTerrainDir directory(files.sourcePath(), files.cachePath());
        directory.scanFiles();
        set = directory.getTerrainSet(TerrainFiles::projection(46.0, 8.0), TORVCoordinate(46.0, 8.0),
                                      TORVCoordinate(47.0, 9.0));
    }

    TerrainFiles files;
    boost::shared_ptr<TORVTerrainSet> set;
};

} // namespace

TEST_F(TORVGeoLabelsElementTest, PutsLandmarksWhereTheProjectionSays)
{
    run(parameters(threePlaces(), 5.0));
    ASSERT_EQ(element.getLabels().size(), 3U);
    // printf '8.8332 46.0408\n9.20501 45.46998\n7.43 46.94\n' | cs2cs -f %.3f +proj=longlat +a=6378137 +rf=298.257
    //     +no_defs +to +proj=aeqd +lat_0=46 +lon_0=8 +a=6378137 +rf=298.257 +no_defs
    const double expected[3][3] = {{64493.794, 4872.398, (1626.0 + 150.0) * 5.0},
                                   {94229.062, -58198.991, (130.0 + 150.0) * 5.0},
                                   {-43401.991, 104646.987, (565.0 + 150.0) * 5.0}};
    for (int i = 0; i < 3; ++i) {
        for (int axis = 0; axis < 3; ++axis) {
            EXPECT_NEAR(placeOf(i)[axis], expected[i][axis], 0.05) << i << ", " << axis;
        }
    }
}

TEST_F(TORVGeoLabelsElementTest, ALandmarkIsSeenAtItsPixel)
{
    const LandmarkSet set = makeSet();
    add(set, "Milan", 45.46998, 9.20501, 130.0, 0, {1.0, 0.0, 1.0});
    run(parameters(set));
    const QImage seen = picture();
    const QPointF pixel = OffscreenScene::pixelOf(renderer, 94229.062, -58198.991, 1400.0);
    EXPECT_NEAR(pixel.x(), 150.0 + 94229.062 / 400000.0 * 300.0, 1.0);
    EXPECT_NEAR(pixel.y(), 150.0 + 58198.991 / 400000.0 * 300.0, 1.0);
    EXPECT_EQ(seen.pixel(pixel.toPoint()), qRgb(255, 0, 255));
}

TEST_F(TORVGeoLabelsElementTest, TellsWhatItCreatesAndWhatItMoves)
{
    const LandmarkSet set = threePlaces();
    run(parameters(set, 5.0));
    QStringList lines = log.lines();
    const auto has = [&lines](const char* words) { return lines.filter(QLatin1String(words)).size() == 1; };
    EXPECT_TRUE(has("TORVGeoLabelsElement::update(): Creating new  visualization."));
    EXPECT_TRUE(has("Create landmark labels:"));
    EXPECT_TRUE(has("- vertScale=5"));
    EXPECT_FALSE(has("Update landmark labels:"));
    run(parameters(set, 2.5));
    lines = log.lines().mid(lines.size());
    EXPECT_TRUE(has("TORVGeoLabelsElement::update(): Re-creating changed visualization.."));
    EXPECT_TRUE(has("Update landmark labels:"));
    EXPECT_TRUE(has("- vertScale=2.5"));
    EXPECT_FALSE(has("Create landmark labels:"));
}

TEST_F(TORVGeoLabelsElementTest, ALabelHasNameAndColorOfItsLandmark)
{
    const LandmarkSet set = makeSet();
    add(set, "Zürich", 47.38, 8.55, 400.0, 0, {0.25, 0.5, 0.75});
    run(parameters(set));
    const TORVLandmarkLabel& label = *element.getLabels().at(0);
    EXPECT_EQ(label.GetText(), "Zürich");
    EXPECT_EQ(label.GetColor()[0], 0.25);
    EXPECT_EQ(label.GetColor()[1], 0.5);
    EXPECT_EQ(label.GetColor()[2], 0.75);
}

TEST_F(TORVGeoLabelsElementTest, AChangeOfVerticalScaleMovesAllLabelsWithoutCreatingNewOnes)
{
    const LandmarkSet set = threePlaces();
    run(parameters(set, 5.0));
    const auto labels = element.getLabels();
    vtkProp* const before = prop();
    run(parameters(set, 10.0));
    EXPECT_EQ(prop(), before);
    EXPECT_EQ(element.getLabels(), labels);
    EXPECT_EQ(parts(), 3);
    EXPECT_NEAR(placeOf(0)[0], 64493.794, 0.05);
    EXPECT_NEAR(placeOf(0)[2], (1626.0 + 150.0) * 10.0, 1e-6);
    EXPECT_NEAR(placeOf(1)[2], (130.0 + 150.0) * 10.0, 1e-6);
    EXPECT_NEAR(placeOf(2)[2], (565.0 + 150.0) * 10.0, 1e-6);
}

TEST_F(TORVGeoLabelsElementTest, MovesNothingThatIsSeenWhileItWorks)
{
    const LandmarkSet set = threePlaces();
    run(parameters(set, 5.0));
    element.update(parameters(set, 10.0), true, abort);
    EXPECT_NEAR(placeOf(0)[2], (1626.0 + 150.0) * 5.0, 1e-6);
    element.place();
    EXPECT_NEAR(placeOf(0)[2], (1626.0 + 150.0) * 10.0, 1e-6);
}

TEST_F(TORVGeoLabelsElementTest, ASiteWithoutLandmarksGivesAnEmptyAssembly)
{
    run(parameters(makeSet()));
    ASSERT_TRUE(vtkPropAssembly::SafeDownCast(prop()));
    EXPECT_EQ(parts(), 0);
    EXPECT_TRUE(element.getLabels().empty());
    const QImage seen = picture();
    EXPECT_EQ(seen.pixel(150, 150), seen.pixel(0, 0));
}

TEST_F(TORVGeoLabelsElementTest, AnotherSetIsBuiltAnew)
{
    run(parameters(threePlaces()));
    const auto labels = element.getLabels();
    const vtkSmartPointer<vtkProp> before = prop();
    const LandmarkSet other = makeSet();
    add(other, "Como", 45.81, 9.08, 209.0);
    run(parameters(other));
    EXPECT_NE(prop(), before.Get());
    ASSERT_EQ(element.getLabels().size(), 1U);
    EXPECT_NE(element.getLabels().at(0), labels.at(0));
    EXPECT_EQ(element.getLabels().at(0)->GetText(), "Como");
    EXPECT_EQ(parts(), 1);
    EXPECT_EQ(vtkPropAssembly::SafeDownCast(before)->GetParts()->GetNumberOfItems(), 3); // may still be on the screen
}

TEST_F(TORVGeoLabelsElementTest, AnotherProjectionIsBuiltAnew)
{
    const LandmarkSet set = threePlaces();
    run(parameters(set));
    const vtkSmartPointer<vtkProp> before = prop();
    projection = TerrainFiles::projection(46.0408, 8.8332);
    run(parameters(set));
    EXPECT_NE(prop(), before.Get());
    EXPECT_NEAR(placeOf(0)[0], 0.0, 0.05);
    EXPECT_NEAR(placeOf(0)[1], 0.0, 0.05);
}

TEST_F(TORVGeoLabelsElementTest, TheSameParametersAreNoWork)
{
    const LandmarkSet set = threePlaces();
    run(parameters(set));
    vtkProp* const before = prop();
    const int mark = static_cast<int>(log.lines().size());
    run(parameters(set));
    EXPECT_EQ(prop(), before);
    EXPECT_EQ(log.lines().mid(mark).size(), 1);
    EXPECT_TRUE(log.lines().last().contains(QLatin1String("TORVGeoLabelsElement::update(): No need to update.")));
}

TEST_F(TORVGeoLabelsElementTest, ALandmarkWithoutAltitudeStandsOnTheTerrain)
{
    const Ground ground;
    ground.set->loadFiles(abort);
    const LandmarkSet set = makeSet();
    addOnGround(set, "Valley", 46.5, 8.5);
    add(set, "Coast", 46.5, 8.5, 0.0);
    addOnGround(set, "Beyond", 45.5, 8.5);
    const Parameters params = parameters(set, 2.0);
    params->setTerrainSet(ground.set);
    run(params);
    EXPECT_NEAR(placeOf(0)[2], (1200.0 + 150.0) * 2.0, 1e-3);
    EXPECT_NEAR(placeOf(1)[2], 150.0 * 2.0, 1e-6);
    EXPECT_NEAR(placeOf(2)[2], 150.0 * 2.0, 1e-6);
}

TEST_F(TORVGeoLabelsElementTest, TerrainThatIsNotLoadedCountsAsTheSea)
{
    const Ground ground;
    const LandmarkSet set = makeSet();
    addOnGround(set, "Valley", 46.5, 8.5);
    const Parameters params = parameters(set, 2.0);
    params->setTerrainSet(ground.set);
    run(params);
    EXPECT_NEAR(placeOf(0)[2], 150.0 * 2.0, 1e-6);
    run(parameters(set, 3.0)); // and no terrain at all
    EXPECT_NEAR(placeOf(0)[2], 150.0 * 3.0, 1e-6);
}

TEST_F(TORVGeoLabelsElementTest, TheHigherPriorityComesFirstAndElseTheOrderOfTheSet)
{
    const LandmarkSet set = makeSet();
    add(set, "a", 46.1, 8.1, 0.0, 1);
    add(set, "b", 46.2, 8.1, 0.0, 5);
    add(set, "c", 46.3, 8.1, 0.0, 1);
    add(set, "d", 46.4, 8.1, 0.0, 3);
    run(parameters(set));
    std::string order;
    for (const auto& label : element.getLabels()) {
        order += label->GetText();
    }
    EXPECT_EQ(order, "bdac");
    EXPECT_NEAR(placeOf(0)[1], 22232.0, 100.0); // that of b: 0.2 degrees
}

TEST_F(TORVGeoLabelsElementTest, WhereNamesWouldOverlapThatOfTheHigherPriorityIsWritten)
{
    const LandmarkSet set = makeSet();
    add(set, "Village", 46.0, 8.0, 0.0, 1);
    add(set, "Town", 46.01, 8.01, 0.0, 4);
    add(set, "Far", 47.0, 8.0, 0.0, 0);
    run(parameters(set));
    picture();
    const auto& labels = element.getLabels();
    EXPECT_EQ(labels.at(0)->GetText(), "Town");
    EXPECT_TRUE(labels.at(0)->IsTextShown());
    EXPECT_FALSE(labels.at(1)->IsTextShown());
    EXPECT_TRUE(labels.at(2)->IsTextShown());
}

TEST_F(TORVGeoLabelsElementTest, RestylesTheLabelsInPlace)
{
    home.write(QStringLiteral(".config/Halmera/TORV3DVisStyles.conf"),
               "[RENDERER_DAY]\nbackground\\color\\r=1\nbackground\\color\\g=0\nbackground\\color\\b=0\n"
               "[RENDERER_NIGHT]\nbackground\\color\\r=0\nbackground\\color\\g=1\nbackground\\color\\b=0\n");
    const LandmarkSet set = makeSet();
    add(set, "Halmera", 46.0, 8.0, 0.0, 0, {0.0, 0.0, 0.0}); // so that all colour is the line's
    run(parameters(set));
    const auto labels = element.getLabels();
    vtkProp* const before = prop();
    const auto strongest = [&](int (*part)(QRgb)) {
        const QImage seen = picture();
        int most = 0;
        for (int x = 160; x < 220; ++x) {
            for (int y = 140; y < 165; ++y) {
                most = std::max(most, part(seen.pixel(x, y)));
            }
        }
        return most;
    };
    EXPECT_GT(strongest(qRed), 200);
    EXPECT_LT(strongest(qGreen), 80);
    TORVDisplayMode::setNight(true);
    element.restyle();
    EXPECT_EQ(prop(), before);
    EXPECT_EQ(element.getLabels(), labels);
    EXPECT_GT(strongest(qGreen), 180);
    EXPECT_LT(strongest(qRed), 80);
}

TEST_F(TORVGeoLabelsElementTest, IsBuiltInThePresentMode)
{
    const auto brightest = [&] {
        run(parameters(threePlaces()));
        const QImage seen = picture();
        int most = 0;
        for (int x = 230; x < 270; ++x) { // the name at Milan, right of its dot
            for (int y = 175; y < 205; ++y) {
                most = std::max(most, qRed(seen.pixel(x, y)));
            }
        }
        return most;
    };
    const int day = brightest();
    TORVDisplayMode::setNight(true);
    element.invalidate();
    const int night = brightest();
    EXPECT_NEAR(day, 0.886 * 255.0, 6.0);
    EXPECT_LT(night, day - 10); // nine of ten parts
    EXPECT_GT(night, day - 40);
}

TEST_F(TORVGeoLabelsElementTest, APlaceOppositeTheRadarIsLeftOut)
{
    projection = boost::make_shared<const TORVGeoProjection>(QStringLiteral("aeqd"), TORVCoordinate(10.0, 20.0),
                                                             6371000.0, double(std::numeric_limits<float>::max()));
    const LandmarkSet set = makeSet();
    add(set, "antipode", -10.0, -160.0, 0.0);
    add(set, "near it", -10.0, -160.3, 0.0);
    add(set, "far", -10.0, -150.0, 0.0);
    run(parameters(set));
    ASSERT_EQ(element.getLabels().size(), 1U);
    EXPECT_EQ(element.getLabels().at(0)->GetText(), "far");
    EXPECT_EQ(parts(), 1);
}

TEST_F(TORVGeoLabelsElementTest, ThePolesHaveAPlaceInMercator)
{
    projection = boost::make_shared<const TORVGeoProjection>(QStringLiteral("merc"), TORVCoordinate(60.0, 25.0),
                                                             6378137.0, 298.257);
    const LandmarkSet set = makeSet();
    add(set, "north", 90.0, 25.0, 0.0);
    add(set, "south", -90.0, -155.0, 0.0);
    run(parameters(set));
    ASSERT_EQ(element.getLabels().size(), 2U);
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(std::isfinite(placeOf(i)[0]) && std::isfinite(placeOf(i)[1])) << i;
    }
    picture(); // they are far outside
    EXPECT_FALSE(element.getLabels().at(0)->IsTextShown());
}

TEST_F(TORVGeoLabelsElementTest, NamesAreMadeFitToBeDrawn)
{
    const LandmarkSet set = makeSet();
    add(set, "  two\n words ", 46.5, 8.0, 0.0);
    add(set, " \t ", 45.5, 8.0, 0.0);
    add(set, QByteArray(100000, 'x').constData(), 45.0, 8.0, 0.0);
    run(parameters(set));
    EXPECT_EQ(element.getLabels().at(0)->GetText(), "two words");
    EXPECT_EQ(element.getLabels().at(1)->GetText(), "");
    EXPECT_EQ(element.getLabels().at(2)->GetText(), std::string(60, 'x') + "…");
    picture();
    EXPECT_FALSE(element.getLabels().at(1)->IsTextShown());
    EXPECT_TRUE(element.getLabels().at(2)->IsTextShown());
}

TEST_F(TORVGeoLabelsElementTest, BecomesEmptyWithoutParameters)
{
    run(parameters(threePlaces()));
    element.update({}, true, abort);
    EXPECT_FALSE(prop());
    EXPECT_TRUE(element.getLabels().empty());
    element.place();
    element.restyle();
    element.invalidate();
    EXPECT_FALSE(prop());
}

TEST_F(TORVGeoLabelsElementTest, AnAbortedRunLeavesItEmptyAndTheNextBuildsAnew)
{
    const LandmarkSet set = threePlaces();
    run(parameters(set, 5.0));
    const vtkSmartPointer<vtkProp> before = prop();
    abort = true;
    run(parameters(set, 10.0));
    EXPECT_FALSE(prop());
    abort = false;
    run(parameters(set, 10.0));
    EXPECT_NE(prop(), before.Get());
    EXPECT_EQ(parts(), 3);
}

TEST_F(TORVGeoLabelsElementTest, LooksAsItDidByDay)
{
    run(parameters(threePlaces()));
    EXPECT_EQ(ImageCompare::againstBaseline(picture(), QStringLiteral("labels-day")), QString());
}

TEST_F(TORVGeoLabelsElementTest, LooksAsItDidByNight)
{
    TORVDisplayMode::setNight(true);
    run(parameters(threePlaces()));
    EXPECT_EQ(ImageCompare::againstBaseline(picture(), QStringLiteral("labels-night")), QString());
}

TEST_F(TORVGeoLabelsElementDeathTest, NeedsALandmarkSet)
{
    EXPECT_DEATH(run(parameters({})), "_params->getLandmarkSet\\(\\)");
}
