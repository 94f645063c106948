#include "visualization/TORVLatLonGridElement.h"

#include "support/ImageCompare.h"
#include "support/LogFile.h"
#include "support/OffscreenScene.h"
#include "support/SandboxedHome.h"
#include "utils/TORVDisplayMode.h"
#include "utils/TORVLog.h"
#include "visualization/TORV2DLayerActor.h"
#include "visualization/TORVVisualGroup.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkCell.h>
#include <vtkLine.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProp3DCollection.h>
#include <vtkPropAssembly.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr double Range_m = 530000.0; // of a square of 500 km

class TORVLatLonGridElementTest : public testing::Test
{
protected:
    TORVLatLonGridElementTest() { scene.window()->AddRenderer(renderer); }
    ~TORVLatLonGridElementTest() override { TORVDisplayMode::setNight(false); }

    void build(double lat, double lon, double range = Range_m, const char* type = "aeqd")
    {
        auto params = boost::make_shared<TORVLayerParametersLatLonGrid>();
        params->setGeoProjection(
            boost::make_shared<TORVGeoProjection>(QLatin1String(type), TORVCoordinate(lat, lon), 6371000.0, 298.257));
        params->setRange(range);
        element.update(params, true, abort);
    }

    TORV2DLayerActor* layer() { return TORV2DLayerActor::SafeDownCast(element.getProp()); }

    vtkActor* part(int index) { return vtkActor::SafeDownCast(layer()->GetParts()->GetItemAsObject(index)); }

    int labels() { return layer()->GetParts()->GetNumberOfItems() - 1; }

    vtkPolyData* lines() { return vtkPolyData::SafeDownCast(part(0)->GetMapper()->GetInputDataObject(0, 0)); }

    // How many lines come closer to the place than so many metres.
    int linesAt(double x, double y, double metres)
    {
        int count = 0;
        for (vtkIdType i = 0; i < lines()->GetNumberOfCells(); ++i) {
            vtkCell* const line = lines()->GetCell(i);
            double least = std::numeric_limits<double>::infinity();
            for (int k = 0; k + 1 < line->GetNumberOfPoints(); ++k) {
                double from[3];
                double to[3];
                const double place[] = {x, y, 0.0};
                lines()->GetPoint(line->GetPointId(k), from);
                lines()->GetPoint(line->GetPointId(k + 1), to);
                double along = 0.0;
                double closest[3];
                least = std::min(least, vtkLine::DistanceToLine(place, from, to, along, closest));
            }
            count += std::sqrt(least) < metres ? 1 : 0;
        }
        return count;
    }

    // Between two neighbouring points of a line.
    double longestStep()
    {
        double longest = 0.0;
        for (vtkIdType i = 0; i < lines()->GetNumberOfCells(); ++i) {
            vtkCell* const line = lines()->GetCell(i);
            for (int k = 0; k + 1 < line->GetNumberOfPoints(); ++k) {
                double from[3];
                double to[3];
                lines()->GetPoint(line->GetPointId(k), from);
                lines()->GetPoint(line->GetPointId(k + 1), to);
                longest = std::max(longest, std::hypot(to[0] - from[0], to[1] - from[1]));
            }
        }
        return longest;
    }

    bool isFinite()
    {
        for (vtkIdType i = 0; i < lines()->GetNumberOfPoints(); ++i) {
            const double* const point = lines()->GetPoint(i);
            if (!std::isfinite(point[0]) || !std::isfinite(point[1]) || point[2] != 0.0) {
                return false;
            }
        }
        return true;
    }

    // Straight from above, 1800 km of height: 600 pixels of 3 km.
    QImage picture()
    {
        renderer->RemoveAllViewProps();
        vtkNew<vtkPropAssembly> assembly;
        assembly->AddPart(element.getProp());
        renderer->AddViewProp(assembly);
        vtkCamera* const camera = renderer->GetActiveCamera();
        camera->ParallelProjectionOn();
        camera->SetParallelScale(900000.0);
        camera->SetPosition(0.0, 0.0, 1000.0);
        camera->SetClippingRange(1.0, 2000.0);
        return scene.picture();
    }

    void writeStyle()
    {
        home.write(QStringLiteral(".config/Halmera/TORV3DVisStyles.conf"),
                   "[LATLONGRID_DAY]\n"
                   "line\\color\\r=1\nline\\color\\g=0\nline\\color\\b=0\nline\\width=3\nline\\segments=16\n"
                   "label\\color\\r=0\nlabel\\color\\g=1\nlabel\\color\\b=0\nlabel\\size=40000\n"
                   "[LATLONGRID_NIGHT]\n"
                   "line\\color\\r=0\nline\\color\\g=0\nline\\color\\b=1\nline\\width=1\n"
                   "label\\color\\r=1\nlabel\\color\\g=1\nlabel\\color\\b=0\nlabel\\size=20000\n");
    }

    SandboxedHome home;
    TORVVisualGroup group{40};
    TORVLatLonGridElement element{&group, 42};
    std::atomic<bool> abort{false};
    OffscreenScene scene{600, 600};
    vtkNew<vtkRenderer> renderer;
};

struct Crossing
{
    double x;
    double y;
};

// At 24 E 61 N, 16 E 57 N, 36 E 65 N and 14 E 55 N:
// cs2cs -f %.1f +proj=longlat +a=6371000 +rf=298.257
//   +to +proj=aeqd +lat_0=60.27 +lon_0=24.87 +a=6371000 +rf=298.257
constexpr Crossing Crossings[] = {
    {-47020.7, 81558.5}, {-537167.6, -328047.6}, {522463.2, 571494.9}, {-692831.4, -530028.5}};

} // namespace

TEST_F(TORVLatLonGridElementTest, PutsItsCrossingsWhereTheProjectionSays)
{
    build(60.27, 24.87);
    for (const Crossing& crossing : Crossings) {
        EXPECT_EQ(linesAt(crossing.x, crossing.y, 50.0), 2) << crossing.x << ' ' << crossing.y;
    }
    EXPECT_EQ(linesAt(30000.0, 20000.0, 50.0), 0);
}

TEST_F(TORVLatLonGridElementTest, DrawsItsCrossingsWhereTheProjectionSays)
{
    writeStyle();
    build(60.27, 24.87);
    const QImage drawn = picture();
    for (const Crossing& crossing : Crossings) {
        EXPECT_EQ(drawn.pixel(OffscreenScene::pixelOf(renderer, crossing.x, crossing.y, 0.0).toPoint()), 0xFFFF0000)
            << crossing.x << ' ' << crossing.y;
    }
}

TEST_F(TORVLatLonGridElementTest, DrawsMeridiansTheFurtherApartTheShorterADegreeIs)
{
    // The reach of 530 km is 4.8 degrees, so 5; as many degrees of longitude, rounded up, as are as long.
    const struct
    {
        double lat;
        int parallels;
        int meridians;
    } rows[] = {
        {0.0, 11, 11},                   // 5 S to 5 N, 5 either way
        {60.27, 11, 12},                 // 1 / cos is 2.01: 11 either way, every second
        {68.3, 11, 10},                  // 2.70: 14 either way, every third
        {-68.3, 11, 10}, {84.0, 11, 13}, // 9.51: 48 either way, every eighth and not every tenth
        {89.0, 7, 45},                   // touches the pole: all round, every eighth
        {-89.0, 7, 45},  {90.0, 6, 45},  {-90.0, 6, 45},
    };
    for (const auto& row : rows) {
        build(row.lat, 20.0);
        EXPECT_EQ(lines()->GetNumberOfCells(), row.parallels + row.meridians) << row.lat;
        EXPECT_EQ(labels(), row.parallels + row.meridians) << row.lat;
        EXPECT_TRUE(isFinite()) << row.lat;
    }
}

TEST_F(TORVLatLonGridElementTest, LeavesOutLatitudesBeyondThePole)
{
    build(89.0, 25.0);
    // The pole lies one degree to the north. The lowest parallel, 84 N, is 6 degrees from it on every side.
    const double* const bounds = lines()->GetBounds();
    EXPECT_NEAR(bounds[3], 111000.0 + 667000.0, 8000.0);
    EXPECT_NEAR(bounds[2], 111000.0 - 667000.0, 8000.0);
}

TEST_F(TORVLatLonGridElementTest, DrawsAboutEightParallelsInTheRange)
{
    for (const double range : {200000.0, 500000.0, 800000.0, 1200000.0, 2000000.0, 3500000.0}) {
        build(10.0, 25.0, range);
        int parallels = 0;
        for (vtkIdType i = 0; i < lines()->GetNumberOfCells(); ++i) {
            const double* const bounds = lines()->GetCell(i)->GetBounds();
            parallels += bounds[1] - bounds[0] > bounds[3] - bounds[2] ? 1 : 0;
        }
        EXPECT_GE(parallels, 7) << range;
        EXPECT_LE(parallels, 13) << range;
    }
}

TEST_F(TORVLatLonGridElementTest, RunsThroughTheDateLine)
{
    build(62.0, 179.5);
    EXPECT_TRUE(isFinite());
    EXPECT_LT(longestStep(), 40000.0);
    // 180 E 62 N, by cs2cs as above with +lat_0=62 +lon_0=179.5
    EXPECT_GE(linesAt(26169.5, 100.8, 50.0), 1);
}

TEST_F(TORVLatLonGridElementTest, PutsTheRadarOfAMercatorPlaneAtTheOrigin)
{
    build(60.0, 25.0, Range_m, "merc");
    EXPECT_GE(linesAt(0.0, 0.0, 50.0), 1); // the parallel of 60 N
    EXPECT_LT(lines()->GetBounds()[3], 2000000.0);
    EXPECT_GT(lines()->GetBounds()[2], -2000000.0);
}

TEST_F(TORVLatLonGridElementTest, EndsBeforeThePoleOfAMercatorPlane)
{
    for (const double lat : {89.0, -89.0}) {
        build(lat, 25.0, Range_m, "merc");
        EXPECT_TRUE(isFinite());
        EXPECT_LT(std::abs(lines()->GetBounds()[2]), 2e7);
        EXPECT_LT(std::abs(lines()->GetBounds()[3]), 2e7);
    }
}

TEST_F(TORVLatLonGridElementTest, IsFiniteForAnyRange)
{
    const double infinity = std::numeric_limits<double>::infinity();
    for (const char* const type : {"aeqd", "merc"}) {
        for (const double range : {0.0, -5.0, std::nan(""), infinity, -infinity, 1e7, 1e9, 1e300}) {
            for (const double lat : {0.0, 60.0, 90.0, -90.0}) {
                build(lat, 25.0, range, type);
                ASSERT_TRUE(element.getProp());
                EXPECT_TRUE(isFinite()) << type << ' ' << range << ' ' << lat;
                EXPECT_LE(lines()->GetNumberOfCells(), 60) << type << ' ' << range << ' ' << lat;
            }
        }
    }
}

TEST_F(TORVLatLonGridElementTest, LabelsLatitudes)
{
    EXPECT_EQ(TORVLatLonGridElement::getLatitudeLabel(60.0), QStringLiteral("60N"));
    EXPECT_EQ(TORVLatLonGridElement::getLatitudeLabel(-5.0), QStringLiteral("5S"));
    EXPECT_EQ(TORVLatLonGridElement::getLatitudeLabel(0.0), QStringLiteral("0"));
    EXPECT_EQ(TORVLatLonGridElement::getLatitudeLabel(90.0), QStringLiteral("90N"));
}

TEST_F(TORVLatLonGridElementTest, LabelsLongitudesWithinOneTurn)
{
    EXPECT_EQ(TORVLatLonGridElement::getLongitudeLabel(25.0), QStringLiteral("25E"));
    EXPECT_EQ(TORVLatLonGridElement::getLongitudeLabel(-71.0), QStringLiteral("71W"));
    EXPECT_EQ(TORVLatLonGridElement::getLongitudeLabel(0.0), QStringLiteral("0"));
    EXPECT_EQ(TORVLatLonGridElement::getLongitudeLabel(180.0), QStringLiteral("180"));
    EXPECT_EQ(TORVLatLonGridElement::getLongitudeLabel(-180.0), QStringLiteral("180"));
    EXPECT_EQ(TORVLatLonGridElement::getLongitudeLabel(190.0), QStringLiteral("170W"));
    EXPECT_EQ(TORVLatLonGridElement::getLongitudeLabel(-181.0), QStringLiteral("179E"));
    EXPECT_EQ(TORVLatLonGridElement::getLongitudeLabel(360.0), QStringLiteral("0"));
}

TEST_F(TORVLatLonGridElementTest, PutsALabelAtTheEndOfItsLine)
{
    build(60.27, 24.87);
    for (int i = 0; i < labels(); ++i) {
        vtkCell* const line = lines()->GetCell(i);
        double end[3];
        lines()->GetPoint(line->GetPointIds()->GetId(line->GetNumberOfPoints() - 1), end);
        const double* const bounds = part(1 + i)->GetBounds();
        if (i < 11) { // a parallel: to the right of its eastern end
            EXPECT_GT(bounds[0], end[0]) << i;
            EXPECT_LT(bounds[0], end[0] + 10000.0) << i;
            EXPECT_LT(bounds[2], end[1]) << i;
            EXPECT_GT(bounds[3], end[1]) << i;
        } else { // a meridian: below its southern end
            EXPECT_LT(bounds[3], end[1]) << i;
            EXPECT_GT(bounds[3], end[1] - 10000.0) << i;
            EXPECT_LT(bounds[0], end[0]) << i;
            EXPECT_GT(bounds[1], end[0]) << i;
        }
    }
}

TEST_F(TORVLatLonGridElementTest, KeepsItsLabelsApart)
{
    constexpr double Touching_m = 1000.0; // of labels of 10 km
    const double sites[][2] = {{60.27, 24.87}, {68.3, 28.2},  {-68.3, 28.2},  {-60.0, 25.0}, {0.0, 30.0},
                               {84.0, 20.0},   {-84.0, 20.0}, {82.0, 20.0},   {-82.0, 21.0}, {89.0, 25.0},
                               {89.0, -90.0},  {89.0, 90.0},  {-89.0, 90.0},  {89.0, 170.0}, {-89.0, 170.0},
                               {-85.5, -60.0}, {90.0, 0.0},   {-90.0, -90.0}, {62.0, 179.5}};
    for (const auto& site : sites) {
        build(site[0], site[1]);
        for (int i = 1; i <= labels(); ++i) {
            for (int k = 1; k < i; ++k) {
                const double* const a = part(i)->GetBounds();
                const double* const b = part(k)->GetBounds();
                const bool isApart = a[0] > b[1] - Touching_m || b[0] > a[1] - Touching_m || a[2] > b[3] - Touching_m ||
                                     b[2] > a[3] - Touching_m;
                EXPECT_TRUE(isApart) << site[0] << ' ' << site[1] << ": " << k << ' ' << i;
            }
        }
    }
}

TEST_F(TORVLatLonGridElementTest, IsGreyWithoutAStyleFile)
{
    build(60.0, 25.0);
    vtkProperty* const property = part(0)->GetProperty();
    EXPECT_EQ(property->GetColor()[0], 0.3);
    EXPECT_EQ(property->GetOpacity(), 1.0);
    EXPECT_EQ(property->GetLineWidth(), 1.0F);
    EXPECT_FALSE(property->GetLighting());
    EXPECT_EQ(part(1)->GetProperty()->GetColor()[1], 0.3);
    EXPECT_EQ(part(1)->GetScale()[0], 10000.0);
    EXPECT_EQ(lines()->GetCell(0)->GetNumberOfPoints(), 65);
}

TEST_F(TORVLatLonGridElementTest, MakesAsManySegmentsAsTheStyleSays)
{
    writeStyle();
    build(60.0, 25.0);
    EXPECT_EQ(lines()->GetCell(0)->GetNumberOfPoints(), 17);
}

TEST_F(TORVLatLonGridElementTest, TakesNoSegmentCountThatCannotBeMeant)
{
    for (const char* const count : {"0", "-7", "999999999", "many"}) {
        home.write(QStringLiteral(".config/Halmera/TORV3DVisStyles.conf"),
                   QByteArray("[LATLONGRID_DAY]\nline\\segments=") + count + "\n");
        element.invalidate();
        build(60.0, 25.0);
        EXPECT_GE(lines()->GetCell(0)->GetNumberOfPoints(), 2) << count;
        EXPECT_LE(lines()->GetCell(0)->GetNumberOfPoints(), 1025) << count;
    }
}

TEST_F(TORVLatLonGridElementTest, ChangesColoursWidthsAndSizesInPlace)
{
    writeStyle();
    build(60.0, 25.0);
    EXPECT_EQ(part(0)->GetProperty()->GetColor()[0], 1.0);
    EXPECT_EQ(part(1)->GetScale()[0], 40000.0);
    const auto prop = element.getProp();
    vtkPolyData* const before = lines();
    TORVDisplayMode::setNight(true);
    element.restyle();
    EXPECT_EQ(element.getProp(), prop);
    EXPECT_EQ(lines(), before);
    EXPECT_EQ(part(0)->GetProperty()->GetColor()[2], 1.0);
    EXPECT_EQ(part(0)->GetProperty()->GetLineWidth(), 1.0F);
    EXPECT_EQ(part(5)->GetProperty()->GetColor()[0], 1.0);
    EXPECT_EQ(part(5)->GetScale()[0], 20000.0);
}

TEST_F(TORVLatLonGridElementTest, IsNotRestyledWhileItIsEmpty)
{
    element.restyle();
    EXPECT_FALSE(element.getProp());
    build(60.0, 25.0);
    element.invalidate();
    element.restyle();
    EXPECT_FALSE(element.getProp());
}

TEST_F(TORVLatLonGridElementTest, LooksAsItAlwaysDid)
{
    writeStyle();
    build(60.27, 24.87);
    EXPECT_EQ(ImageCompare::againstBaseline(picture(), QStringLiteral("grid-day")), QString());
    TORVDisplayMode::setNight(true);
    build(89.0, 25.0);
    EXPECT_EQ(ImageCompare::againstBaseline(picture(), QStringLiteral("grid-pole-night")), QString());
}

TEST_F(TORVLatLonGridElementTest, SaysWhetherItCreatesOrCreatesAnew)
{
    const auto params = boost::make_shared<TORVLayerParametersLatLonGrid>();
    params->setGeoProjection(
        boost::make_shared<TORVGeoProjection>(QStringLiteral("aeqd"), TORVCoordinate(60.0, 25.0), 6371000.0, 298.257));
    const LogFile log(TORVLog::LEVEL_DEBUG);
    element.update(params, true, abort);
    element.update(boost::make_shared<TORVLayerParametersLatLonGrid>(*params), true, abort);
    const auto other = boost::make_shared<TORVLayerParametersLatLonGrid>(*params);
    other->setRange(700000.0);
    element.update(other, true, abort);
    element.update({}, true, abort);
    EXPECT_EQ(log.lines(),
              (QStringList{QStringLiteral("D: TORVLatLonGridElement::update(): Creating new  visualization."),
                           QStringLiteral("D: TORVLatLonGridElement::update(): No need to update."),
                           QStringLiteral("D: TORVLatLonGridElement::update(): Re-creating changed visualization.."),
                           QStringLiteral("D: TORVLatLonGridElement::update(): layer parameters not set.")}));
    EXPECT_FALSE(element.getProp());
}

TEST_F(TORVLatLonGridElementTest, NeedsAProjection)
{
    EXPECT_DEATH(element.update(boost::make_shared<TORVLayerParametersLatLonGrid>(), true, abort), "getGeoProjection");
}
