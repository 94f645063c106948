#include "visualization/TORV3DFilters.h"

#include "support/LogFile.h"
#include "support/ProductFiles.h"
#include "utils/TORVLog.h"

#include <QFile>

#include <gtest/gtest.h>

#include <vtkColorTransferFunction.h>
#include <vtkFlyingEdges3D.h>
#include <vtkLookupTable.h>
#include <vtkNew.h>
#include <vtkPiecewiseFunction.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkVolumeProperty.h>

#include <cmath>
#include <limits>

namespace
{

const TORVDataType Reflectivity(2); // raw = 2 dBZ + 64, 1 to 254
const TORVDataType Velocity(3, 1000, 0, 500, 0);

class TORV3DFiltersTest : public testing::Test
{
protected:
    TORV3DFiltersTest()
    {
        // Red grows with the stored value, so that a colour tells where it was taken.
        colours->AddRGBPoint(0.0, 0.0, 0.0, 1.0);
        colours->AddRGBPoint(255.0, 1.0, 0.0, 1.0);
        QObject::connect(TORVLog::Instance(), QOverload<QString const&>::of(&TORVLog::historyAdd), &receiver,
                         [this](const QString& line) { history << line; });
    }

    vtkLookupTable* table(const QMap<double, int>& surfaces)
    {
        vtk_lut_for_surfaces(mapper, surfaces, colours, Reflectivity);
        return vtkLookupTable::SafeDownCast(mapper->GetLookupTable());
    }

    vtkPiecewiseFunction* ramp(double low, double lowOpacity, double high, double highOpacity)
    {
        TORVLayerParameters3d params;
        params.setVolumeValueLow(low);
        params.setVolumeOpacityLow(lowOpacity);
        params.setVolumeValueHigh(high);
        params.setVolumeOpacityHigh(highOpacity);
        vtk_volume_functions_update(property, params, Reflectivity, colours, 1000.0);
        return property->GetScalarOpacity(0);
    }

    ProductFiles files;
    QObject receiver;
    QStringList history;
    vtkNew<vtkPolyDataMapper> mapper;
    vtkNew<vtkColorTransferFunction> colours;
    vtkNew<vtkVolumeProperty> property;
    const std::atomic<bool> abort{false};
};

} // namespace

TEST_F(TORV3DFiltersTest, BringsDisplayValuesIntoTheRangeOfTheType)
{
    EXPECT_EQ(storedValue(Reflectivity, 20.0), 104U);
    EXPECT_EQ(storedValue(Reflectivity, -9999.0), 1U);
    EXPECT_EQ(storedValue(Reflectivity, 9999.0), 254U);
    EXPECT_EQ(storedValue(Reflectivity, std::numeric_limits<double>::infinity()), 254U);
    EXPECT_EQ(storedValue(Reflectivity, std::nan("")), 1U);
}

TEST_F(TORV3DFiltersTest, ReadsAProduct)
{
    const TORVProductFields fields = ProductFiles::small(); // 4 x 3 x 2
    const TORVFile::CPtr file = TORVFile::openChecked(
        files.write(QStringLiteral("HAL260714120000.CAPZ"), fields,
                    ProductFiles::data(fields, [](int x, int y, int z) { return 10U + x + 10U * y + 100U * z; })));
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const auto image = vtk_3D_data_create(file, 1, 1, 0.0, abort);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->GetScalarComponentAsDouble(3, 2, 1, 0), 133.0);
    const QStringList lines = log.lines();
    EXPECT_TRUE(lines.contains(QStringLiteral("D: Reading data: HAL260714120000.CAPZ")));
    EXPECT_TRUE(lines.contains(QStringLiteral("D: ..one byte 3D data")));
    EXPECT_TRUE(lines.contains(QStringLiteral("D: Data type no data threshold: 0")));
    EXPECT_TRUE(lines.contains(QStringLiteral("D: Shrink filter: factor=(1/1, 1/1)")));
    EXPECT_FALSE(lines.contains(QStringLiteral("D: Applying shrink filter..")));
    EXPECT_TRUE(lines.contains(QStringLiteral("D: Smooth filter: amount=0")));
    EXPECT_FALSE(lines.contains(QStringLiteral("D: Applying smooth filter..")));
    EXPECT_EQ(
        lines.filter(QRegularExpression(QStringLiteral(R"(^D: \.\.data cached in \d+\.\d{3} seconds\.$)"))).size(), 1);
    EXPECT_EQ(lines.last(), QStringLiteral("D: vtk_3D_data_create() finished."));
}

TEST_F(TORV3DFiltersTest, SaysWhichFiltersItApplies)
{
    const TORVFile::CPtr file =
        TORVFile::openChecked(files.write(QStringLiteral("HAL260714120000.CAPZ"), ProductFiles::small()));
    const LogFile log(TORVLog::LEVEL_DEBUG);
    vtk_3D_data_create(file, 9, 0, 25.0, abort);
    const QStringList lines = log.lines();
    EXPECT_TRUE(lines.contains(QStringLiteral("D: Shrink filter: factor=(1/4, 1/1)")));
    EXPECT_TRUE(lines.contains(QStringLiteral("D: Applying shrink filter..")));
    EXPECT_TRUE(lines.contains(QStringLiteral("D: Smooth filter: amount=10")));
    EXPECT_TRUE(lines.contains(QStringLiteral("D: Applying smooth filter..")));
}

TEST_F(TORV3DFiltersTest, TellsTheUserOfAFileThatHasShrunk)
{
    const QString path = files.write(QStringLiteral("HAL260714120000.CAPZ"), ProductFiles::small());
    const TORVFile::CPtr file = TORVFile::openChecked(path);
    ASSERT_TRUE(QFile::resize(path, 650));
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_FALSE(vtk_3D_data_create(file, 1, 1, 0.0, abort));
    EXPECT_EQ(log.lines().filter(QRegularExpression(QStringLiteral("^E: "))),
              (QStringList{QLatin1String("E: Tried to load invalid 3D data file: ") + path,
                           QStringLiteral("E: Aborting 3D visualization.")}));
    EXPECT_EQ(history,
              (QStringList{QStringLiteral("Visualizing 3D data failed:"), QStringLiteral(" -HAL260714120000.CAPZ")}));
}

TEST_F(TORV3DFiltersTest, TellsTheUserOfAFileThatIsGone)
{
    const QString path = files.write(QStringLiteral("HAL260714120000.CAPZ"), ProductFiles::small());
    const TORVFile::CPtr file = TORVFile::openChecked(path);
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_FALSE(vtk_3D_data_create(file, 1, 1, 0.0, abort));
    EXPECT_EQ(history.size(), 2);
}

TEST_F(TORV3DFiltersTest, SaysNothingWhenAborted)
{
    const TORVFile::CPtr file =
        TORVFile::openChecked(files.write(QStringLiteral("HAL260714120000.CAPZ"), ProductFiles::small()));
    const std::atomic<bool> aborted{true};
    EXPECT_FALSE(vtk_3D_data_create(file, 1, 1, 1.0, aborted));
    EXPECT_EQ(history, QStringList());
}

TEST_F(TORV3DFiltersTest, GivesTheHighestSurfaceIndexZero)
{
    vtkNew<vtkFlyingEdges3D> filter;
    vtk_3D_surface_filter_update(filter, {{20.0, 50}, {35.0, 70}, {55.0, 100}}, Reflectivity);
    ASSERT_EQ(filter->GetNumberOfContours(), 3);
    EXPECT_EQ(filter->GetValue(0), 174.0);
    EXPECT_EQ(filter->GetValue(1), 134.0);
    EXPECT_EQ(filter->GetValue(2), 104.0);
    vtk_3D_surface_filter_update(filter, {{35.0, 70}}, Reflectivity);
    ASSERT_EQ(filter->GetNumberOfContours(), 1);
    EXPECT_EQ(filter->GetValue(0), 134.0);
}

TEST_F(TORV3DFiltersTest, ColoursASurfaceByItsOwnValue)
{
    vtkLookupTable* const lut = table({{20.0, 40}, {60.0, 80}}); // raw 104 and 184
    EXPECT_EQ(lut->GetNumberOfTableValues(), 256);
    EXPECT_EQ(lut->GetTableRange()[0], 104.0);
    EXPECT_EQ(lut->GetTableRange()[1], 184.0);
    const double* const first = lut->GetTableValue(0);
    EXPECT_NEAR(first[0], 104.0 / 255.0, 0.003);
    EXPECT_NEAR(first[3], 0.4, 1e-9);
    const double* const last = lut->GetTableValue(255);
    EXPECT_NEAR(last[0], 184.0 / 255.0, 0.003);
    EXPECT_NEAR(last[3], 0.8, 1e-9);
}

TEST_F(TORV3DFiltersTest, PrefersTheLowerOfTwoSurfacesAtOneDistance)
{
    // Entry 128 stands for 104 + 128 * 80 / 256 = 144, half-way.
    vtkLookupTable* const lut = table({{20.0, 40}, {60.0, 80}});
    EXPECT_NEAR(lut->GetTableValue(128)[3], 0.4, 1e-9);
    EXPECT_NEAR(lut->GetTableValue(129)[3], 0.8, 1e-9);
}

TEST_F(TORV3DFiltersTest, ColoursASingleSurface)
{
    vtkLookupTable* const lut = table({{20.0, 40}});
    double rgb[3];
    lut->GetColor(104.0, rgb);
    EXPECT_NEAR(rgb[0], 104.0 / 255.0, 0.003);
    EXPECT_NEAR(lut->GetOpacity(104.0), 0.4, 0.003);
}

TEST_F(TORV3DFiltersTest, MakesAnEmptyListInvisible)
{
    vtkLookupTable* const lut = table({});
    ASSERT_EQ(lut->GetNumberOfTableValues(), 256);
    for (int i = 0; i < 256; ++i) {
        ASSERT_EQ(lut->GetTableValue(i)[3], 0.0);
    }
}

TEST_F(TORV3DFiltersTest, TheRampOfAVolumeRisesLate)
{
    vtkPiecewiseFunction* const function = ramp(0.0, 10.0, 60.0, 90.0); // raw 64 to 184
    EXPECT_EQ(function->GetSize(), 16);
    EXPECT_EQ(function->GetValue(0.0), 0.0);
    EXPECT_EQ(function->GetValue(64.0), 0.0); // whatever the low opacity says
    // Point i: x = 64 + 8 i, y = (i / 15)^5 * 0.8 + 0.1.
    EXPECT_NEAR(function->GetValue(72.0), 0.1, 1e-4);
    EXPECT_NEAR(function->GetValue(144.0), std::pow(10.0 / 15.0, 5) * 0.8 + 0.1, 1e-9);
    EXPECT_NEAR(function->GetValue(184.0), 0.9, 1e-9);
    EXPECT_NEAR(function->GetValue(254.0), 0.9, 1e-9);
}

TEST_F(TORV3DFiltersTest, ARampFromHighToLowIsTurnedRound)
{
    vtkPiecewiseFunction* const function = ramp(60.0, 90.0, 0.0, 10.0);
    EXPECT_EQ(function->GetValue(64.0), 0.0);
    EXPECT_NEAR(function->GetValue(144.0), std::pow(10.0 / 15.0, 5) * 0.8 + 0.1, 1e-9);
    EXPECT_NEAR(function->GetValue(184.0), 0.9, 1e-9);
}

TEST_F(TORV3DFiltersTest, ARampOfOneValueIsAStep)
{
    vtkPiecewiseFunction* const function = ramp(40.0, 1.0, 40.0, 70.0); // raw 144
    EXPECT_EQ(function->GetValue(143.0), 0.0);
    EXPECT_NEAR(function->GetValue(144.0), 0.7, 1e-9);
    EXPECT_NEAR(function->GetValue(254.0), 0.7, 1e-9);
}

TEST_F(TORV3DFiltersTest, GivesAVolumeItsColoursAndNoShade)
{
    ramp(0.0, 1.0, 60.0, 100.0);
    EXPECT_EQ(property->GetRGBTransferFunction(0), colours.Get());
    EXPECT_EQ(property->GetScalarOpacityUnitDistance(0), 1000.0);
    EXPECT_EQ(property->GetInterpolationType(), VTK_LINEAR_INTERPOLATION);
    EXPECT_EQ(property->GetShade(0), 0);
}

TEST_F(TORV3DFiltersTest, DrawsVelocitiesWithoutMixingThem)
{
    vtk_volume_functions_update(property, TORVLayerParameters3d(), Velocity, colours, 1000.0);
    EXPECT_EQ(property->GetInterpolationType(), VTK_NEAREST_INTERPOLATION);
}

TEST_F(TORV3DFiltersTest, ContoursReflectivityAsItIs)
{
    vtkNew<vtkImageData> image;
    EXPECT_EQ(contouredImage(image, Reflectivity), image.Get());
}

TEST_F(TORV3DFiltersTest, PutsNoDataToRestWhereVelocityIsContoured)
{
    vtkNew<vtkImageData> image;
    image->SetDimensions(3, 1, 1);
    image->AllocateScalars(VTK_UNSIGNED_CHAR, 1);
    auto* const values = static_cast<unsigned char*>(image->GetScalarPointer());
    values[0] = 0;
    values[1] = 100;
    values[2] = 200;
    const auto contoured = contouredImage(image, Velocity);
    EXPECT_EQ(contoured->GetScalarComponentAsDouble(0, 0, 0, 0), 128.0); // raw 128 is 0 m/s
    EXPECT_EQ(contoured->GetScalarComponentAsDouble(1, 0, 0, 0), 100.0);
    EXPECT_EQ(values[0], 0); // the image itself stays
}
