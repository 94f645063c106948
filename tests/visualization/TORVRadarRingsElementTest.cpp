#include "visualization/TORVRadarRingsElement.h"

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
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProp3DCollection.h>
#include <vtkPropAssembly.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <boost/make_shared.hpp>

#include <cmath>
#include <limits>

namespace
{

constexpr double NauticalMile_m = 1853.184;
constexpr double Near_m = 0.5; // single precision, and 64 angles of eleven digits

class TORVRadarRingsElementTest : public testing::Test
{
protected:
    TORVRadarRingsElementTest() { scene.window()->AddRenderer(renderer); }
    ~TORVRadarRingsElementTest() override { TORVDisplayMode::setNight(false); }

    void build(double range, bool metric = true)
    {
        auto params = boost::make_shared<TORVLayerParametersRadarRings>();
        params->setSiteLocation(TORVCoordinate(60.5, -22.25));
        params->setRange(range);
        params->setMetricUnits(metric);
        element.update(params, true, abort);
    }

    TORV2DLayerActor* layer() { return TORV2DLayerActor::SafeDownCast(element.getProp()); }

    vtkActor* part(int index) { return vtkActor::SafeDownCast(layer()->GetParts()->GetItemAsObject(index)); }

    vtkPolyData* lines() { return vtkPolyData::SafeDownCast(part(0)->GetMapper()->GetInputDataObject(0, 0)); }

    // Straight from above, 480 km of height: 600 pixels of 800 m.
    QImage picture()
    {
        renderer->RemoveAllViewProps();
        vtkNew<vtkPropAssembly> assembly;
        assembly->AddPart(element.getProp());
        renderer->AddViewProp(assembly);
        vtkCamera* const camera = renderer->GetActiveCamera();
        camera->ParallelProjectionOn();
        camera->SetParallelScale(240000.0);
        camera->SetPosition(0.0, 0.0, 1000.0);
        camera->SetClippingRange(1.0, 2000.0);
        return scene.picture();
    }

    // Within a pixel of the place.
    bool isRedAt(const QImage& picture, double x, double y)
    {
        const QPoint at = OffscreenScene::pixelOf(renderer, x, y, 0.0).toPoint();
        int red = 0;
        for (int row = at.y() - 1; row <= at.y() + 1; ++row) {
            for (int column = at.x() - 1; column <= at.x() + 1; ++column) {
                red += picture.pixel(column, row) == 0xFFFF0000 ? 1 : 0;
            }
        }
        return red > 0;
    }

    void writeStyle()
    {
        home.write(QStringLiteral(".config/Halmera/TORV3DVisStyles.conf"),
                   "[RADARRINGS_DAY]\n"
                   "line\\color\\r=1\nline\\color\\g=0\nline\\color\\b=0\nline\\width=3\n"
                   "label\\color\\r=0\nlabel\\color\\g=1\nlabel\\color\\b=0\nlabel\\size=20000\n"
                   "[RADARRINGS_NIGHT]\n"
                   "line\\color\\r=0\nline\\color\\g=0\nline\\color\\b=1\nline\\width=1\n"
                   "label\\color\\r=1\nlabel\\color\\g=1\nlabel\\color\\b=0\nlabel\\size=5000\n");
    }

    SandboxedHome home;
    TORVVisualGroup group{40};
    TORVRadarRingsElement element{&group, 44};
    std::atomic<bool> abort{false};
    OffscreenScene scene{600, 600};
    vtkNew<vtkRenderer> renderer;
};

} // namespace

TEST_F(TORVRadarRingsElementTest, MakesFourClosedRingsOf64Segments)
{
    build(200000.0);
    ASSERT_EQ(lines()->GetNumberOfCells(), 4 + 12);
    for (int ring = 0; ring < 4; ++ring) {
        vtkCell* const cell = lines()->GetCell(ring);
        ASSERT_EQ(cell->GetNumberOfPoints(), 65);
        EXPECT_EQ(cell->GetPointId(0), cell->GetPointId(64));
        for (int i = 0; i < 65; ++i) {
            double point[3];
            lines()->GetPoint(cell->GetPointId(i), point);
            EXPECT_NEAR(std::hypot(point[0], point[1]), 200000.0 - 50000.0 * ring, Near_m);
            EXPECT_EQ(point[2], 0.0);
        }
    }
    EXPECT_EQ(lines()->GetNumberOfPoints(), 256 + 24);
}

TEST_F(TORVRadarRingsElementTest, MakesASpokeAtEach30Degrees)
{
    build(120000.0);
    std::array<int, 12> found{};
    for (int i = 4; i < 16; ++i) {
        vtkCell* const cell = lines()->GetCell(i);
        ASSERT_EQ(cell->GetNumberOfPoints(), 2);
        double inner[3];
        double outer[3];
        lines()->GetPoint(cell->GetPointId(0), inner);
        lines()->GetPoint(cell->GetPointId(1), outer);
        EXPECT_NEAR(std::hypot(inner[0], inner[1]), 30000.0, Near_m);
        EXPECT_NEAR(std::hypot(outer[0], outer[1]), 120000.0, Near_m);
        const double angle = std::atan2(outer[1], outer[0]) * 6.0 / M_PI;
        EXPECT_NEAR(std::atan2(inner[1], inner[0]) * 6.0 / M_PI, angle, 1e-5);
        EXPECT_NEAR(angle, std::round(angle), 1e-5);
        ++found.at(static_cast<std::size_t>((std::lround(angle) + 12) % 12));
    }
    for (const int count : found) {
        EXPECT_EQ(count, 1);
    }
}

TEST_F(TORVRadarRingsElementTest, CountsInThousandthsOfANauticalMile)
{
    build(100000.0, false); // 100 NM
    double point[3];
    lines()->GetPoint(lines()->GetCell(0)->GetPointId(0), point);
    EXPECT_NEAR(std::hypot(point[0], point[1]), 100.0 * NauticalMile_m, Near_m);
}

TEST_F(TORVRadarRingsElementTest, MakesFourRingsAtTheCentreOfNoRange)
{
    for (const double range :
         {0.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        build(range);
        ASSERT_TRUE(layer()) << range;
        EXPECT_EQ(lines()->GetNumberOfCells(), 16);
        EXPECT_EQ(lines()->GetBounds()[0], 0.0);
        EXPECT_EQ(lines()->GetBounds()[1], 0.0);
        EXPECT_FALSE(picture().isNull());
    }
}

TEST_F(TORVRadarRingsElementTest, PutsALabelOutsideTheNorthernPointOfEachRing)
{
    build(200000.0); // without a style file labels are 10 km high
    ASSERT_EQ(layer()->GetParts()->GetNumberOfItems(), 1 + 4);
    for (int ring = 0; ring < 4; ++ring) {
        const double north = 200000.0 - 50000.0 * ring;
        const double* const bounds = part(1 + ring)->GetBounds();
        EXPECT_GT(bounds[0], 0.0) << ring; // beside the spoke
        EXPECT_LT(bounds[0], 10000.0) << ring;
        EXPECT_GT(bounds[2], north) << ring;
        EXPECT_LT(bounds[2], north + 10000.0) << ring;
        EXPECT_NEAR(bounds[3] - bounds[2], 10000.0, 2000.0) << ring;
        EXPECT_EQ(bounds[5], 0.0) << ring;
    }
}

TEST_F(TORVRadarRingsElementTest, GivesTheCoordinatesOfASite)
{
    EXPECT_EQ(TORVRadarRingsElement::getLatitudeLabel(60.5), QStringLiteral("60.5N"));
    EXPECT_EQ(TORVRadarRingsElement::getLatitudeLabel(-33.25), QStringLiteral("33.25S"));
    EXPECT_EQ(TORVRadarRingsElement::getLatitudeLabel(0.0), QStringLiteral("0N"));
    EXPECT_EQ(TORVRadarRingsElement::getLongitudeLabel(25.0), QStringLiteral("25E"));
    EXPECT_EQ(TORVRadarRingsElement::getLongitudeLabel(-22.25), QStringLiteral("22.25W"));
    EXPECT_EQ(TORVRadarRingsElement::getLongitudeLabel(0.0), QStringLiteral("0E"));
}

TEST_F(TORVRadarRingsElementTest, LabelsInWholeUnits)
{
    EXPECT_EQ(TORVRadarRingsElement::getRangeLabel(240000.0, true), QStringLiteral("240 km"));
    EXPECT_EQ(TORVRadarRingsElement::getRangeLabel(60000.0, true), QStringLiteral("60 km"));
    EXPECT_EQ(TORVRadarRingsElement::getRangeLabel(140000.0, false), QStringLiteral("140 NM"));
    EXPECT_EQ(TORVRadarRingsElement::getRangeLabel(35000.4, false), QStringLiteral("35 NM"));
    EXPECT_EQ(TORVRadarRingsElement::getRangeLabel(0.0, true), QStringLiteral("0 km"));
}

TEST_F(TORVRadarRingsElementTest, IsGreyWithoutAStyleFile)
{
    build(200000.0);
    vtkProperty* const property = part(0)->GetProperty();
    EXPECT_EQ(property->GetColor()[0], 0.3);
    EXPECT_EQ(property->GetLineWidth(), 1.0F);
    EXPECT_FALSE(property->GetLighting());
    EXPECT_FALSE(property->GetBackfaceCulling());
    EXPECT_FALSE(property->GetFrontfaceCulling());
    EXPECT_EQ(part(1)->GetProperty()->GetColor()[1], 0.3);
    EXPECT_EQ(part(1)->GetScale()[0], 10000.0);
}

TEST_F(TORVRadarRingsElementTest, TakesTheStyleOfTheMode)
{
    writeStyle();
    TORVDisplayMode::setNight(true);
    build(200000.0);
    EXPECT_EQ(part(0)->GetProperty()->GetColor()[2], 1.0);
    EXPECT_EQ(part(1)->GetProperty()->GetColor()[0], 1.0);
    EXPECT_EQ(part(1)->GetScale()[1], 5000.0);
}

TEST_F(TORVRadarRingsElementTest, ChangesColoursWidthsAndSizesInPlace)
{
    writeStyle();
    build(200000.0);
    EXPECT_EQ(part(0)->GetProperty()->GetColor()[0], 1.0);
    EXPECT_EQ(part(0)->GetProperty()->GetLineWidth(), 3.0F);
    EXPECT_EQ(part(4)->GetScale()[0], 20000.0);
    const auto prop = element.getProp();
    vtkPolyData* const before = lines();
    vtkActor* const label = part(4);
    const double gap = label->GetBounds()[2] - 50000.0;
    TORVDisplayMode::setNight(true);
    element.restyle();
    EXPECT_EQ(element.getProp(), prop);
    EXPECT_EQ(lines(), before);
    EXPECT_EQ(part(4), label);
    EXPECT_EQ(part(0)->GetProperty()->GetColor()[2], 1.0);
    EXPECT_EQ(part(0)->GetProperty()->GetLineWidth(), 1.0F);
    EXPECT_EQ(label->GetProperty()->GetColor()[0], 1.0);
    EXPECT_EQ(label->GetScale()[0], 5000.0);
    EXPECT_NEAR(label->GetBounds()[2] - 50000.0, gap / 4.0, 1.0); // still at its ring
}

TEST_F(TORVRadarRingsElementTest, IsNotRestyledWhileItIsEmpty)
{
    element.restyle();
    EXPECT_FALSE(element.getProp());
    build(200000.0);
    element.invalidate();
    element.restyle();
    EXPECT_FALSE(element.getProp());
}

TEST_F(TORVRadarRingsElementTest, DrawsARingAtItsDistance)
{
    writeStyle();
    build(200000.0);
    const QImage drawn = picture();
    for (const double distance : {50000.0, 100000.0, 150000.0, 200000.0}) {
        for (const double degrees : {0.0, 90.0, 135.0, 180.0, 225.0, 270.0, 315.0}) { // corners beside the labels
            const double x = distance * std::cos(degrees * M_PI / 180.0);
            const double y = distance * std::sin(degrees * M_PI / 180.0);
            EXPECT_TRUE(isRedAt(drawn, x, y)) << distance << ' ' << degrees;
        }
        EXPECT_FALSE(isRedAt(drawn, 0.75 * distance, -0.75 * distance)) << distance; // 1.06 of it
    }
    EXPECT_FALSE(isRedAt(drawn, 10000.0, 0.0));
}

TEST_F(TORVRadarRingsElementTest, LooksAsItAlwaysDid)
{
    writeStyle();
    build(200000.0);
    EXPECT_EQ(ImageCompare::againstBaseline(picture(), QStringLiteral("rings-day")), QString());
    TORVDisplayMode::setNight(true);
    element.restyle();
    EXPECT_EQ(ImageCompare::againstBaseline(picture(), QStringLiteral("rings-night")), QString());
}

TEST_F(TORVRadarRingsElementTest, SaysWhetherItCreatesOrCreatesAnew)
{
    const LogFile log(TORVLog::LEVEL_DEBUG);
    build(200000.0);
    build(200000.0);
    build(220000.0);
    element.update({}, true, abort);
    const QStringList lines = log.lines().filter(QStringLiteral("::update()"));
    EXPECT_EQ(lines,
              (QStringList{QStringLiteral("D: TORVRadarRingsElement::update(): Creating new  visualization."),
                           QStringLiteral("D: TORVRadarRingsElement::update(): No need to update."),
                           QStringLiteral("D: TORVRadarRingsElement::update(): Re-creating changed visualization.."),
                           QStringLiteral("D: TORVRadarRingsElement::update(): layer parameters not set.")}));
    EXPECT_FALSE(element.getProp());
}

TEST_F(TORVRadarRingsElementTest, LogsWhereItsCentreIs)
{
    const LogFile log(TORVLog::LEVEL_DEBUG);
    build(200000.0);
    EXPECT_TRUE(log.lines().contains(QStringLiteral("D: Radar rings around 60.5N, 22.25W")));
}
