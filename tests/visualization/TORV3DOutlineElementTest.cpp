#include "visualization/TORV3DOutlineElement.h"

#include "support/ImageCompare.h"
#include "support/LogFile.h"
#include "support/OffscreenScene.h"
#include "support/SandboxedHome.h"
#include "utils/TORVDisplayMode.h"
#include "utils/TORVLog.h"
#include "visualization/TORVVisualGroup.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkAssembly.h>
#include <vtkCamera.h>
#include <vtkCell.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProp3DCollection.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <boost/make_shared.hpp>

#include <cmath>
#include <limits>
#include <set>

namespace
{

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

class TORV3DOutlineElementTest : public testing::Test
{
protected:
    TORV3DOutlineElementTest() { scene.window()->AddRenderer(renderer); }
    ~TORV3DOutlineElementTest() override { TORVDisplayMode::setNight(false); }

    void build(double altitude, double height, double interval)
    {
        auto params = boost::make_shared<TORVLayerParameters3dOutline>();
        params->setSiteAltitude(altitude);
        params->setDataHeight(height);
        params->setTickInterval(interval);
        element.update(params, true, abort);
    }

    vtkAssembly* assembly() { return vtkAssembly::SafeDownCast(element.getProp()); }

    vtkActor* part(int index) { return vtkActor::SafeDownCast(assembly()->GetParts()->GetItemAsObject(index)); }

    vtkPolyData* tickLines() { return vtkPolyData::SafeDownCast(part(1)->GetMapper()->GetInputDataObject(0, 0)); }

    // In the unit box, millionths, each once.
    std::set<long> tickHeights()
    {
        std::set<long> heights;
        for (vtkIdType i = 0; i < tickLines()->GetNumberOfPoints(); ++i) {
            heights.insert(std::lround(tickLines()->GetPoint(i)[2] * 1e6));
        }
        return heights;
    }

    // From the south, a little above the horizon.
    QImage picture()
    {
        renderer->RemoveAllViewProps();
        renderer->AddViewProp(element.getProp());
        vtkCamera* const camera = renderer->GetActiveCamera();
        camera->SetFocalPoint(0.0, 0.0, 0.5);
        camera->SetPosition(0.0, -3.0, 1.2);
        camera->SetViewUp(0.0, 0.0, 1.0);
        camera->SetClippingRange(0.5, 10.0);
        return scene.picture();
    }

    // Whether there is that colour within a pixel of the place.
    static bool isNear(const QImage& picture, const QPointF& place, QRgb color)
    {
        const QPoint at = place.toPoint();
        for (int y = at.y() - 1; y <= at.y() + 1; ++y) {
            for (int x = at.x() - 1; x <= at.x() + 1; ++x) {
                if (picture.pixel(x, y) == color) {
                    return true;
                }
            }
        }
        return false;
    }

    void writeStyle()
    {
        home.write(QStringLiteral(".config/Halmera/TORV3DVisStyles.conf"),
                   "[OUTLINE3D_DAY]\n"
                   "line\\color\\r=1\nline\\color\\g=0\nline\\color\\b=0\nline\\width=4\n"
                   "tick\\color\\r=0\ntick\\color\\g=1\ntick\\color\\b=0\ntick\\width=3\n"
                   "[OUTLINE3D_NIGHT]\n"
                   "line\\color\\r=0\nline\\color\\g=0\nline\\color\\b=1\nline\\width=1\n"
                   "tick\\color\\r=1\ntick\\color\\g=1\ntick\\color\\b=0\ntick\\width=2\n");
    }

    SandboxedHome home;
    TORVVisualGroup group{10};
    TORV3DOutlineElement element{&group, 11};
    std::atomic<bool> abort{false};
    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
};

} // namespace

TEST_F(TORV3DOutlineElementTest, MakesAUnitBox)
{
    build(100.0, 10000.0, 2500.0);
    const double* const bounds = part(0)->GetBounds();
    const double expected[] = {-0.5, 0.5, -0.5, 0.5, 0.0, 1.0};
    for (int i = 0; i < 6; ++i) {
        EXPECT_NEAR(bounds[i], expected[i], 1e-6) << i;
    }
    EXPECT_EQ(part(0)->GetProperty()->GetRepresentation(), VTK_WIREFRAME);
    EXPECT_FALSE(part(0)->GetProperty()->GetLighting());
    EXPECT_FALSE(part(1)->GetProperty()->GetLighting());
    EXPECT_EQ(assembly()->GetParts()->GetNumberOfItems(), 2);
}

TEST_F(TORV3DOutlineElementTest, PutsTicksAtTheMultiplesOfTheInterval)
{
    build(100.0, 10000.0, 2500.0); // 2500, 5000, 7500 and 10000 m between 100 and 10100 m
    EXPECT_EQ(tickHeights(), (std::set<long>{240000, 490000, 740000, 990000}));
    EXPECT_EQ(tickLines()->GetNumberOfLines(), 4 * 8);
}

TEST_F(TORV3DOutlineElementTest, PutsTicksAtFeet)
{
    build(0.0, 15240.0, 3047.99999536704); // 10000 feet; the fifth lies a hair below the top
    const std::set<long> heights = tickHeights();
    EXPECT_EQ(heights, (std::set<long>{0, 200000, 400000, 600000, 800000, 1000000}));
}

TEST_F(TORV3DOutlineElementTest, CountsTheFirstAndTheLastHeight)
{
    build(2500.0, 5000.0, 2500.0);
    EXPECT_EQ(tickHeights(), (std::set<long>{0, 500000, 1000000}));
}

TEST_F(TORV3DOutlineElementTest, PutsTicksBelowTheSea)
{
    build(-400.0, 2000.0, 1000.0); // 0 and 1000 m between -400 and 1600 m
    EXPECT_EQ(tickHeights(), (std::set<long>{200000, 700000}));
}

TEST_F(TORV3DOutlineElementTest, RunsEachTickFromItsEdgeAlongBothSides)
{
    build(0.0, 1500.0, 1000.0); // at 0 and 1000 m
    std::set<std::pair<long, long>> ends;
    for (vtkIdType i = 0; i < tickLines()->GetNumberOfCells(); ++i) {
        vtkCell* const line = tickLines()->GetCell(i);
        double from[3];
        double to[3];
        tickLines()->GetPoint(line->GetPointId(0), from);
        tickLines()->GetPoint(line->GetPointId(1), to);
        EXPECT_NEAR(std::abs(from[0]), 0.5, 1e-6);
        EXPECT_NEAR(std::abs(from[1]), 0.5, 1e-6);
        EXPECT_NEAR(std::hypot(to[0] - from[0], to[1] - from[1]), 0.015, 1e-6);
        EXPECT_EQ(from[2], to[2]);
        ends.insert({std::lround(to[0] * 1000.0), std::lround(to[1] * 1000.0)});
    }
    EXPECT_EQ(
        ends,
        (std::set<std::pair<long, long>>{
            {485, 500}, {500, 485}, {-485, 500}, {-500, 485}, {485, -500}, {500, -485}, {-485, -500}, {-500, -485}}));
}

TEST_F(TORV3DOutlineElementTest, HasNoTickInLessThanOneInterval)
{
    build(100.0, 2400.0, 2500.0);
    EXPECT_EQ(tickLines()->GetNumberOfCells(), 0);
    build(0.0, 2400.0, 2500.0); // although 0 is a multiple
    EXPECT_EQ(tickLines()->GetNumberOfCells(), 0);
    build(0.0, 0.0, 2500.0);
    EXPECT_EQ(tickLines()->GetNumberOfCells(), 0);
}

TEST_F(TORV3DOutlineElementTest, HasNoTickWhereNobodyCouldCountThem)
{
    const double rows[][3] = {{0.0, 1e4, 0.0},   {0.0, 1e4, -5.0}, {0.0, 1e4, NaN},      {0.0, 1e4, 1e-300},
                              {0.0, NaN, 1e3},   {0.0, -1e4, 1e3}, {0.0, Infinity, 1e3}, {NaN, 1e4, 1e3},
                              {1e300, 1e4, 1e3}, {0.0, 2e9, 1e3}};
    for (const auto& row : rows) {
        build(row[0], row[1], row[2]);
        ASSERT_TRUE(element.getProp());
        EXPECT_LE(tickLines()->GetNumberOfCells(), 0) << row[0] << ' ' << row[1] << ' ' << row[2];
    }
}

TEST_F(TORV3DOutlineElementTest, IsGreyWithoutAStyleFile)
{
    build(100.0, 10000.0, 2500.0);
    EXPECT_EQ(part(0)->GetProperty()->GetColor()[0], 0.3);
    EXPECT_EQ(part(0)->GetProperty()->GetLineWidth(), 2.0F);
    EXPECT_EQ(part(1)->GetProperty()->GetColor()[2], 0.3);
    EXPECT_EQ(part(1)->GetProperty()->GetLineWidth(), 1.0F);
}

TEST_F(TORV3DOutlineElementTest, TakesTheStyleOfTheMode)
{
    writeStyle();
    build(100.0, 10000.0, 2500.0);
    EXPECT_EQ(part(0)->GetProperty()->GetColor()[0], 1.0);
    EXPECT_EQ(part(0)->GetProperty()->GetLineWidth(), 4.0F);
    TORVDisplayMode::setNight(true);
    build(100.0, 10000.0, 2000.0);
    EXPECT_EQ(part(0)->GetProperty()->GetColor()[2], 1.0);
    EXPECT_EQ(part(0)->GetProperty()->GetLineWidth(), 1.0F);
    EXPECT_EQ(part(1)->GetProperty()->GetColor()[0], 1.0);
    EXPECT_EQ(part(1)->GetProperty()->GetLineWidth(), 2.0F);
}

TEST_F(TORV3DOutlineElementTest, ChangesItsColoursInPlace)
{
    writeStyle();
    build(100.0, 10000.0, 2500.0);
    const auto prop = element.getProp();
    vtkPolyData* const lines = tickLines();
    TORVDisplayMode::setNight(true);
    element.restyle();
    EXPECT_EQ(element.getProp(), prop);
    EXPECT_EQ(tickLines(), lines);
    EXPECT_EQ(part(0)->GetProperty()->GetColor()[2], 1.0);
    EXPECT_EQ(part(0)->GetProperty()->GetLineWidth(), 1.0F);
    EXPECT_EQ(part(1)->GetProperty()->GetColor()[0], 1.0);
    EXPECT_EQ(part(1)->GetProperty()->GetLineWidth(), 2.0F);
}

TEST_F(TORV3DOutlineElementTest, IsNotRestyledWhileItIsEmpty)
{
    element.restyle();
    EXPECT_FALSE(element.getProp());
    build(100.0, 10000.0, 2500.0);
    element.invalidate();
    element.restyle();
    EXPECT_FALSE(element.getProp());
}

TEST_F(TORV3DOutlineElementTest, ShowsATickAtItsHeight)
{
    writeStyle();
    build(0.0, 10000.0, 4000.0); // ticks at 0.4 and 0.8
    const QImage drawn = picture();
    constexpr QRgb Green = 0xFF00FF00;
    for (const double z : {0.4, 0.8}) {
        EXPECT_TRUE(isNear(drawn, OffscreenScene::pixelOf(renderer, -0.492, -0.5, z), Green)) << z;
        EXPECT_TRUE(isNear(drawn, OffscreenScene::pixelOf(renderer, 0.492, -0.5, z), Green)) << z;
    }
    EXPECT_FALSE(isNear(drawn, OffscreenScene::pixelOf(renderer, -0.492, -0.5, 0.6), Green));
    constexpr QRgb Red = 0xFFFF0000;
    EXPECT_TRUE(isNear(drawn, OffscreenScene::pixelOf(renderer, 0.0, -0.5, 1.0), Red));
    EXPECT_TRUE(isNear(drawn, OffscreenScene::pixelOf(renderer, 0.5, -0.5, 0.2), Red));
}

TEST_F(TORV3DOutlineElementTest, DrawsLinesAsWideAsTheStyleSays)
{
    writeStyle();
    build(0.0, 100.0, 4000.0);
    const QImage drawn = picture();
    const QPoint at = OffscreenScene::pixelOf(renderer, 0.0, -0.5, 1.0).toPoint();
    int width = 0;
    for (int y = at.y() - 10; y <= at.y() + 10; ++y) {
        width += qRed(drawn.pixel(at.x(), y)) > 128 ? 1 : 0;
    }
    EXPECT_EQ(width, 4);
}

TEST_F(TORV3DOutlineElementTest, LooksAsItAlwaysDid)
{
    writeStyle();
    build(100.0, 10000.0, 2500.0);
    EXPECT_EQ(ImageCompare::againstBaseline(picture(), QStringLiteral("outline-box")), QString());
}

TEST_F(TORV3DOutlineElementTest, SaysWhetherItCreatesOrCreatesAnew)
{
    const LogFile log(TORVLog::LEVEL_DEBUG);
    build(100.0, 10000.0, 2500.0);
    build(100.0, 10000.0, 2500.0);
    build(100.0, 10000.0, 1000.0);
    element.update({}, true, abort);
    EXPECT_EQ(log.lines(),
              (QStringList{QStringLiteral("D: TORV3DOutlineElement::update(): Creating new  visualization."),
                           QStringLiteral("D: TORV3DOutlineElement::update(): No need to update."),
                           QStringLiteral("D: TORV3DOutlineElement::update(): Re-creating changed visualization.."),
                           QStringLiteral("D: TORV3DOutlineElement::update(): layer parameters not set.")}));
    EXPECT_FALSE(element.getProp());
}
