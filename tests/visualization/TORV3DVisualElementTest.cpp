#include "visualization/TORV3DVisualElement.h"

#include "support/LogFile.h"
#include "support/ProductFiles.h"
#include "support/SandboxedHome.h"
#include "utils/TORVLog.h"
#include "visualization/TORVColormap.h"
#include "visualization/TORVVisualGroup.h"

#include <QFile>

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkAssembly.h>
#include <vtkCellArray.h>
#include <vtkFeatureEdges.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkPolyDataConnectivityFilter.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkScalarsToColors.h>
#include <vtkTrivialProducer.h>

#include <boost/make_shared.hpp>

#include <cmath>
#include <set>

namespace
{

constexpr int Side = 30;
constexpr uint16_t Reflectivity8 = 2;
constexpr uint16_t Velocity8 = 3;

// 0 at `radius` from the centre of the grid, positive inside.
double sphere(int x, int y, int z, double radius)
{
    const double c = (Side - 1) / 2.0;
    return radius - std::sqrt((x - c) * (x - c) + (y - c) * (y - c) + (z - c) * (z - c));
}

double torus(int x, int y, int z)
{
    const double c = (Side - 1) / 2.0;
    const double ring = std::hypot(x - c, y - c) - 9.0;
    return 3.5 - std::hypot(ring, z - c);
}

unsigned int stored(double height)
{
    return static_cast<unsigned int>(std::lround(std::min(254.0, std::max(1.0, 124.0 + 20.0 * height)))); // 30 dBZ at 0
}

class TORV3DVisualElementTest : public testing::Test
{
protected:
    using Parameters = boost::shared_ptr<TORVLayerParameters3d>;

    Parameters parameters(const ProductFiles::Field& field, uint16_t dataType = Reflectivity8)
    {
        TORVProductFields fields = ProductFiles::small();
        fields.xPoints = fields.yPoints = fields.zPoints = Side;
        fields.dataType = dataType;
        path = files.write(QStringLiteral("HAL260714120000.CAPZ"), fields, ProductFiles::data(fields, field));
        auto params = boost::make_shared<TORVLayerParameters3d>();
        params->setDataFile(TORVFile::openChecked(path));
        params->setDataShrinkH(1);
        params->setDataSmooth(0.0);
        params->setSurfacePars({{30.0, 100}});
        return params;
    }

    Parameters ballParameters()
    {
        return parameters([](int x, int y, int z) { return stored(sphere(x, y, z, 8.0)); });
    }

    vtkPolyData* surface()
    {
        const auto actor = vtkActor::SafeDownCast(element.getProp());
        return actor ? vtkPolyData::SafeDownCast(actor->GetMapper()->GetInputDataObject(0, 0)) : nullptr;
    }

    // Vertices - edges + faces of a closed surface of triangles, each of which has one and a half edges.
    static int eulerNumber(vtkPolyData* surface)
    {
        const int faces = static_cast<int>(surface->GetNumberOfPolys());
        return static_cast<int>(surface->GetNumberOfPoints()) - faces * 3 / 2 + faces;
    }

    static int openEdges(vtkPolyData* surface)
    {
        vtkNew<vtkFeatureEdges> edges;
        edges->SetInputData(surface);
        edges->FeatureEdgesOff();
        edges->ManifoldEdgesOff();
        edges->BoundaryEdgesOn();
        edges->NonManifoldEdgesOn();
        edges->Update();
        return static_cast<int>(edges->GetOutput()->GetNumberOfCells());
    }

    static int pieces(vtkPolyData* surface)
    {
        vtkNew<vtkPolyDataConnectivityFilter> filter;
        filter->SetInputData(surface);
        filter->SetExtractionModeToAllRegions();
        filter->Update();
        return filter->GetNumberOfExtractedRegions();
    }

    SandboxedHome home;
    ProductFiles files;
    QString path;
    TORVVisualGroup group{10};
    TORV3DVisualElement element{&group, 12};
    std::atomic<bool> abort{false};
};

} // namespace

TEST_F(TORV3DVisualElementTest, IsEmptyAtFirst)
{
    EXPECT_FALSE(element.getProp());
    EXPECT_FALSE(element.getData());
    EXPECT_EQ(element.getId(), 12);
}

TEST_F(TORV3DVisualElementTest, ReadsTheFileOfAHiddenLayerAndDrawsNothing)
{
    element.update(ballParameters(), false, abort);
    EXPECT_TRUE(element.getData());
    EXPECT_FALSE(element.getProp());
}

TEST_F(TORV3DVisualElementTest, DrawsWhatItHasWhenTheLayerIsShownLater)
{
    const Parameters params = ballParameters();
    element.update(params, false, abort);
    ASSERT_TRUE(QFile::remove(path)); // it need not be read again
    const LogFile log(TORVLog::LEVEL_DEBUG);
    element.update(boost::make_shared<TORVLayerParameters3d>(*params), true, abort);
    EXPECT_TRUE(element.getProp());
    EXPECT_TRUE(log.lines().contains(QStringLiteral("D: TORV3DVisualElement::update(): No need to update.")));
    EXPECT_EQ(log.lines().filter(QStringLiteral("..updated in ")).size(), 1);
}

TEST_F(TORV3DVisualElementTest, DoesNothingWhenNothingHasChanged)
{
    const Parameters params = ballParameters();
    element.update(params, true, abort);
    const auto prop = element.getProp();
    const LogFile log(TORVLog::LEVEL_DEBUG);
    element.update(boost::make_shared<TORVLayerParameters3d>(*params), true, abort);
    EXPECT_EQ(element.getProp(), prop);
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral("D: TORV3DVisualElement::update(): No need to update.")));
}

TEST_F(TORV3DVisualElementTest, SaysWhetherItCreatesOrCreatesAnew)
{
    const Parameters params = ballParameters();
    const LogFile log(TORVLog::LEVEL_DEBUG);
    element.update(params, false, abort);
    EXPECT_EQ(log.lines().first(), QStringLiteral("D: TORV3DVisualElement::update(): Creating new  visualization."));
    const auto other = boost::make_shared<TORVLayerParameters3d>(*params);
    other->setSurfacePars({{20.0, 100}});
    element.update(other, false, abort);
    EXPECT_TRUE(
        log.lines().contains(QStringLiteral("D: TORV3DVisualElement::update(): Re-creating changed visualization..")));
}

TEST_F(TORV3DVisualElementTest, BecomesEmptyWithoutParameters)
{
    element.update(ballParameters(), true, abort);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    element.update({}, true, abort);
    EXPECT_FALSE(element.getProp());
    EXPECT_FALSE(element.getData());
    EXPECT_EQ(log.lines().first(), QStringLiteral("D: TORV3DVisualElement::update(): layer parameters not set."));
    EXPECT_TRUE(log.lines().contains(QStringLiteral("D: Removing old 3D visualization..")));
    element.invalidate(); // a second time does no harm
    EXPECT_FALSE(element.getProp());
}

TEST_F(TORV3DVisualElementTest, BecomesEmptyWithParametersOfAnotherClass)
{
    element.update(ballParameters(), true, abort);
    element.update(boost::make_shared<TORVLayerParameters2d>(), true, abort);
    EXPECT_FALSE(element.getProp());
}

TEST_F(TORV3DVisualElementTest, IsEmptyAfterAnAbortAndIsBuiltAgain)
{
    const Parameters params = ballParameters();
    abort = true;
    element.update(params, true, abort);
    EXPECT_FALSE(element.getProp());
    EXPECT_FALSE(element.getData());
    abort = false;
    element.update(params, true, abort);
    EXPECT_TRUE(element.getProp());
}

TEST_F(TORV3DVisualElementTest, StaysEmptyOfABadFileAndRecoversWithAGoodOne)
{
    const Parameters bad = ballParameters();
    ASSERT_TRUE(QFile::resize(path, 700));
    element.update(bad, true, abort);
    EXPECT_FALSE(element.getProp());
    EXPECT_FALSE(element.getData());
    const Parameters good = ballParameters();
    good->setDataSmooth(1.0);
    element.update(good, true, abort);
    EXPECT_TRUE(element.getProp());
}

TEST_F(TORV3DVisualElementTest, KeepsTheFinishedImageAlone)
{
    element.update(ballParameters(), true, abort);
    EXPECT_TRUE(element.getData()->IsA("vtkTrivialProducer"));
    EXPECT_EQ(element.getData()->GetTotalNumberOfInputConnections(), 0);
    const auto image = vtkImageData::SafeDownCast(element.getData()->GetOutputDataObject(0));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->GetScalarType(), VTK_UNSIGNED_CHAR);
    EXPECT_EQ(image->GetNumberOfPoints(), Side * Side * Side);
    const auto actor = vtkActor::SafeDownCast(element.getProp());
    EXPECT_TRUE(actor->GetMapper()->GetInputAlgorithm()->IsA("vtkTrivialProducer"));
}

TEST_F(TORV3DVisualElementTest, GivesSurfacesTheLookOfTheScene)
{
    element.update(ballParameters(), true, abort);
    vtkProperty* const property = vtkActor::SafeDownCast(element.getProp())->GetProperty();
    EXPECT_EQ(property->GetInterpolation(), VTK_GOURAUD);
    EXPECT_EQ(property->GetAmbient(), 0.7);
    EXPECT_EQ(property->GetDiffuse(), 1.0);
    EXPECT_EQ(property->GetSpecular(), 0.0);
    EXPECT_EQ(property->GetSpecularPower(), 4.0);
}

TEST_F(TORV3DVisualElementTest, ColoursASurfaceByTheScale)
{
    element.update(ballParameters(), true, abort);
    const auto mapper = vtkActor::SafeDownCast(element.getProp())->GetMapper();
    double drawn[3];
    mapper->GetLookupTable()->GetColor(124.0, drawn);
    double scale[3];
    element.getColormap()->getMap()->GetColor(124.0, scale);
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(drawn[i], scale[i], 0.003) << i;
    }
}

TEST_F(TORV3DVisualElementTest, DrawsNoSurfaceWithoutAList)
{
    const Parameters params = ballParameters();
    params->setSurfacePars({});
    element.update(params, true, abort);
    ASSERT_TRUE(surface());
    EXPECT_EQ(surface()->GetNumberOfCells(), 0);
}

TEST_F(TORV3DVisualElementTest, MakesOneClosedSurfaceOfASphere)
{
    element.update(ballParameters(), true, abort);
    EXPECT_EQ(openEdges(surface()), 0);
    EXPECT_EQ(pieces(surface()), 1);
    EXPECT_EQ(eulerNumber(surface()), 2);
}

TEST_F(TORV3DVisualElementTest, MakesOneClosedSurfaceWithAHoleOfATorus)
{
    element.update(parameters([](int x, int y, int z) { return stored(torus(x, y, z)); }), true, abort);
    EXPECT_EQ(openEdges(surface()), 0);
    EXPECT_EQ(pieces(surface()), 1);
    EXPECT_EQ(eulerNumber(surface()), 0);
}

TEST_F(TORV3DVisualElementTest, MakesTwoSurfacesOfTwoValues)
{
    const Parameters params = ballParameters();
    params->setSurfacePars({{30.0, 50}, {50.0, 100}});
    element.update(params, true, abort);
    EXPECT_EQ(pieces(surface()), 2);
    EXPECT_EQ(eulerNumber(surface()), 4);
}

TEST_F(TORV3DVisualElementTest, PutsEveryVertexWhereTheFieldHasTheValue)
{
    element.update(ballParameters(), true, abort);
    const auto image = vtkImageData::SafeDownCast(element.getData()->GetOutputDataObject(0));
    vtkPolyData* const drawn = surface();
    ASSERT_GT(drawn->GetNumberOfPoints(), 500);
    for (vtkIdType i = 0; i < drawn->GetNumberOfPoints(); ++i) {
        double point[3];
        drawn->GetPoint(i, point);
        point[2] /= 5.0; // levels stand five apart
        // A vertex lies on one edge of the grid: between its two ends the field is linear.
        int low[3];
        int high[3];
        double share = 0.0;
        for (int axis = 0; axis < 3; ++axis) {
            low[axis] = static_cast<int>(std::floor(point[axis] + 1e-5));
            const double rest = point[axis] - low[axis];
            high[axis] = low[axis] + (rest > 1e-5 ? 1 : 0);
            share = std::max(share, rest > 1e-5 ? rest : 0.0);
        }
        const double a = image->GetScalarComponentAsDouble(low[0], low[1], low[2], 0);
        const double b = image->GetScalarComponentAsDouble(high[0], high[1], high[2], 0);
        ASSERT_NEAR(a + share * (b - a), 124.0, 0.01) << point[0] << ' ' << point[1] << ' ' << point[2];
    }
}

TEST_F(TORV3DVisualElementTest, DrawsNoInboundWindRoundAnOutboundOne)
{
    const Parameters params =
        parameters([](int x, int y, int z) { return sphere(x, y, z, 8.0) > 0.0 ? 200U : 0U; }, Velocity8);
    const double inbound = params->getDataFile()->getDataType().absoluteToDisplayValue(100);
    const double outbound = params->getDataFile()->getDataType().absoluteToDisplayValue(150);
    params->setSurfacePars({{inbound, 100}});
    element.update(params, true, abort);
    EXPECT_EQ(surface()->GetNumberOfCells(), 0);
    const auto both = boost::make_shared<TORVLayerParameters3d>(*params);
    both->setSurfacePars({{outbound, 100}});
    element.update(both, true, abort);
    EXPECT_EQ(pieces(surface()), 1);
    EXPECT_EQ(openEdges(surface()), 0);
    // What the cursor reads is still no data.
    const auto image = vtkImageData::SafeDownCast(element.getData()->GetOutputDataObject(0));
    EXPECT_EQ(image->GetScalarComponentAsDouble(0, 0, 0, 0), 0.0);
}

TEST_F(TORV3DVisualElementTest, MakesAnAssemblyOfAVolume)
{
    const Parameters params = ballParameters();
    params->setRenderingType(TORVProductSettings::VOLUME);
    element.update(params, true, abort);
    EXPECT_TRUE(vtkAssembly::SafeDownCast(element.getProp()));
    const double* const bounds = element.getProp()->GetBounds();
    EXPECT_NEAR(bounds[1], Side - 1, 1e-6); // columns, rows, five times levels
    EXPECT_NEAR(bounds[3], Side - 1, 1e-6);
    EXPECT_NEAR(bounds[5], 5.0 * (Side - 1), 1e-6);
}

TEST_F(TORV3DVisualElementTest, ChangesFromSurfacesToAVolumeAndBack)
{
    const Parameters surfaces = ballParameters();
    element.update(surfaces, true, abort);
    const auto volume = boost::make_shared<TORVLayerParameters3d>(*surfaces);
    volume->setRenderingType(TORVProductSettings::VOLUME);
    element.update(volume, true, abort);
    EXPECT_TRUE(element.getProp()->IsA("vtkAssembly"));
    element.update(surfaces, true, abort);
    EXPECT_TRUE(element.getProp()->IsA("vtkActor"));
}

TEST_F(TORV3DVisualElementTest, TellsTheUserOfAnUnknownRenderingType)
{
    QStringList history;
    QObject receiver;
    QObject::connect(TORVLog::Instance(), QOverload<QString const&>::of(&TORVLog::historyAdd), &receiver,
                     [&history](const QString& line) { history << line; });
    const Parameters params = ballParameters();
    params->setRenderingType(TORVProductSettings::UNKNOWN);
    const LogFile log(TORVLog::LEVEL_ERROR);
    element.update(params, true, abort);
    EXPECT_FALSE(element.getProp());
    EXPECT_EQ(history,
              QStringList(QStringLiteral("Unknown rendering type, 3D product not drawn: HAL260714120000.CAPZ")));
    EXPECT_EQ(log.lines(),
              (QStringList{QStringLiteral("E: TORV3DVisualElement::createVTK(): unknown rendering type."),
                           QStringLiteral("E: TORV3DVisualElement::updateVTK(): unknown rendering type.")}));
}

TEST_F(TORV3DVisualElementTest, NeedsAFileInItsParameters)
{
    EXPECT_DEATH(element.update(boost::make_shared<TORVLayerParameters3d>(), true, abort), "file");
}

TEST(TORVVisualElementTest, MakesAnElementForEachLayer)
{
    TORVVisualGroup group(10);
    for (const int key : {11, 12, 13, 41, 42, 43, 44}) {
        const TORVVisualElement::Ptr element = TORVVisualElement::makeElement(&group, key);
        ASSERT_TRUE(element);
        EXPECT_EQ(element->getId(), key);
        EXPECT_EQ(element->getParentGroup(), &group);
    }
}

TEST(TORVVisualElementTest, MakesNoneForAGroup)
{
    TORVVisualGroup group(10);
    EXPECT_DEATH(TORVVisualElement::makeElement(&group, 10), "element.get\\(\\)");
    EXPECT_DEATH(TORVVisualElement::makeElement(&group, 40), "element.get\\(\\)");
}

TEST(TORVVisualElementTest, BelongsToAGroup)
{
    EXPECT_DEATH(TORVVisualElement::makeElement(nullptr, 11), "parent");
}

TEST(TORVVisualElementTest, LayersWithoutDataKeepTheContractOfUpdates)
{
    struct Row
    {
        int key;
        const char* name;
        TORVLayerParameters::Ptr params;
    };
    const Row rows[] = {
        {11, "TORV3DOutlineElement", boost::make_shared<TORVLayerParameters3dOutline>()},
        {44, "TORVRadarRingsElement", boost::make_shared<TORVLayerParametersRadarRings>()},
    };
    const std::atomic<bool> abort{false};
    TORVVisualGroup group(40);
    for (const Row& row : rows) {
        const TORVVisualElement::Ptr element = TORVVisualElement::makeElement(&group, row.key);
        const LogFile log(TORVLog::LEVEL_DEBUG);
        element->update({}, true, abort);
        element->update(boost::make_shared<TORVLayerParameters>(), true, abort);
        element->update(row.params, true, abort);
        element->update(row.params, true, abort);
        const QString head = QStringLiteral("D: %1::update(): ").arg(QLatin1String(row.name));
        EXPECT_EQ(log.lines().filter(head), (QStringList{head + QLatin1String("layer parameters not set."),
                                                         head + QLatin1String("layer parameters not set."),
                                                         head + QLatin1String("Creating new  visualization."),
                                                         head + QLatin1String("No need to update.")}));
    }
}

TEST(TORVVisualGroupTest, TakesParametersAndLeavesItsElementsAlone)
{
    const auto group = TORVVisualGroup::makeGroup(10);
    const auto params = boost::make_shared<TORVLayerParameters>();
    group->update(params, false);
    EXPECT_EQ(group->getId(), 10);
    EXPECT_EQ(group->getParameters(), params);
    group->invalidate();
    EXPECT_FALSE(group->getParameters());
}

TEST(TORVVisualGroupTest, BecomesInvalidWithoutParameters)
{
    const auto group = TORVVisualGroup::makeGroup(40);
    group->addElement(TORVVisualElement::makeElement(group.get(), 44));
    group->update(boost::make_shared<TORVLayerParameters>(), true);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    group->update({}, true);
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral("D: No parameters -> invalidate visual group.")));
    EXPECT_FALSE(group->getParameters());
    EXPECT_EQ(group->getElements().size(), 1U);
}
