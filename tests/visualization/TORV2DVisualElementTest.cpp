#include "visualization/TORV2DVisualElement.h"

#include "support/ImageCompare.h"
#include "support/LogFile.h"
#include "support/OffscreenScene.h"
#include "support/ProductFiles.h"
#include "utils/TORVDisplayMode.h"
#include "utils/TORVLog.h"
#include "visualization/TORV2DLayerActor.h"
#include "visualization/TORVVisualGroup.h"

#include "visualization/ColorFile.h"

#include <QFile>

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkDataSetMapper.h>
#include <vtkPolyData.h>
#include <vtkProp3DCollection.h>
#include <vtkPropAssembly.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <boost/make_shared.hpp>

namespace
{

constexpr uint16_t Reflectivity8 = 2;  // raw = 2 dBZ + 64, 1 to 254
constexpr uint16_t Reflectivity16 = 9; // raw = 100 dBZ + 32768, 1 to 65534

constexpr QRgb Background = 0xFFFF00FF;
const QRgb Low = qRgb(255, 128, 64);
const QRgb Middle = qRgb(1, 200, 77);
const QRgb High = qRgb(37, 99, 254);

class TORV2DVisualElementTest : public testing::Test
{
protected:
    using Parameters = boost::shared_ptr<TORVLayerParameters2d>;

    // Steps at 10 and 30 dBZ: half-way between the seams.
    TORV2DVisualElementTest()
    {
        QObject::connect(TORVLog::Instance(), QOverload<QString const&>::of(&TORVLog::historyAdd), &receiver,
                         [this](const QString& line) { history << line; });
        const auto band = [](QRgb color) {
            const ColorFile::Rgb rgb = {qRed(color), qGreen(color), qBlue(color)};
            return ColorFile::Band{rgb, rgb};
        };
        colors.mapping({1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1})
            .scale(1, "name=Default\ndata_index=1\n", {"0", "20", "40"})
            .colors(1, {band(Low), band(Middle), band(High)})
            .write();
        scene.window()->AddRenderer(renderer);
    }
    ~TORV2DVisualElementTest() override { TORVDisplayMode::setNight(false); }

    Parameters parameters(const ProductFiles::Field& field, int columns = 4, int rows = 3,
                          uint16_t dataType = Reflectivity8, const char* time = "260714120000")
    {
        TORVProductFields fields = ProductFiles::small();
        fields.xPoints = columns;
        fields.yPoints = rows;
        fields.zPoints = 1;
        fields.dataType = dataType;
        path = files.write(QStringLiteral("HAL%1.MAX").arg(QLatin1String(time)), fields,
                           ProductFiles::data(fields, field, dataType == Reflectivity16 ? 2 : 1));
        auto params = boost::make_shared<TORVLayerParameters2d>();
        params->setDataFile(TORVFile::openChecked(path));
        return params;
    }

    // One cell alone in the second column of the lowest row, two at the right end of the highest one.
    Parameters threeCells()
    {
        return parameters([](int x, int y, int) {
            if (y == 0) {
                return x == 1 ? 64U : 0U; // 0 dBZ
            }
            return y == 2 && x > 1 ? (x == 2 ? 104U : 144U) : 0U; // 20 and 40 dBZ
        });
    }

    TORV2DLayerActor* layer() { return TORV2DLayerActor::SafeDownCast(element.getProp()); }

    vtkActor* sheet() { return vtkActor::SafeDownCast(layer()->GetParts()->GetItemAsObject(0)); }

    vtkPolyData* cells() { return vtkPolyData::SafeDownCast(element.getData()->GetOutputDataObject(0)); }

    // Straight from above, the layer's cells 60 pixels wide, its lower left corner in that of the picture.
    QImage picture()
    {
        renderer->RemoveAllViewProps();
        vtkNew<vtkPropAssembly> assembly;
        assembly->AddPart(element.getProp());
        renderer->AddViewProp(assembly);
        renderer->SetBackground(qRed(Background) / 255.0, qGreen(Background) / 255.0, qBlue(Background) / 255.0);
        vtkCamera* const camera = renderer->GetActiveCamera();
        camera->ParallelProjectionOn();
        camera->SetParallelScale(2.5);
        camera->SetFocalPoint(2.5, 2.5, 0.0);
        camera->SetPosition(2.5, 2.5, 10.0);
        camera->SetClippingRange(1.0, 20.0);
        return scene.picture();
    }

    static QRgb cellOf(const QImage& drawn, int column, int row)
    {
        return drawn.pixel(60 * column + 30, drawn.height() - 1 - 60 * row - 30);
    }

    ColorFile colors;
    ProductFiles files;
    QString path;
    QObject receiver;
    QStringList history;
    TORVVisualGroup group{10};
    TORV2DVisualElement element{&group, 13};
    std::atomic<bool> abort{false};
    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
};

} // namespace

TEST_F(TORV2DVisualElementTest, IsEmptyAtFirst)
{
    EXPECT_FALSE(element.getProp());
    EXPECT_FALSE(element.getData());
}

TEST_F(TORV2DVisualElementTest, MakesACellOfEachValidPointAndOfNoOther)
{
    element.update(threeCells(), true, abort);
    ASSERT_TRUE(element.getData());
    EXPECT_EQ(cells()->GetNumberOfCells(), 3);
    EXPECT_EQ(cells()->GetCellData()->GetScalars()->GetTuple1(0), 64.0);
    EXPECT_EQ(cells()->GetCellData()->GetScalars()->GetTuple1(2), 144.0);
    double bounds[6];
    cells()->GetCellBounds(0, bounds);
    const double expected[] = {1.0, 2.0, 0.0, 1.0, 0.0, 0.0}; // column 1, row 0
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(bounds[i], expected[i]) << i;
    }
}

TEST_F(TORV2DVisualElementTest, ShowsEachCellAtItsPlaceInTheExactColourOfTheScale)
{
    element.update(threeCells(), true, abort);
    const QImage drawn = picture();
    const QRgb expected[3][4] = {{Background, Low, Background, Background},
                                 {Background, Background, Background, Background},
                                 {Background, Background, Middle, High}}; // from the south
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 4; ++column) {
            EXPECT_EQ(cellOf(drawn, column, row), expected[row][column]) << column << ' ' << row;
        }
    }
}

TEST_F(TORV2DVisualElementTest, FillsTheWholeSquareOfACell)
{
    element.update(threeCells(), true, abort);
    const QImage drawn = picture();
    int pixels = 0;
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) {
            pixels += drawn.pixel(x, y) == Low ? 1 : 0;
        }
    }
    EXPECT_EQ(pixels, 60 * 60);
}

TEST_F(TORV2DVisualElementTest, LooksAsItAlwaysDid)
{
    element.update(parameters(
                       [](int x, int y, int) {
                           const unsigned int raw = 40U + static_cast<unsigned int>(20 * x + 7 * y);
                           return (x + y) % 3 == 0 ? 0U : raw;
                       },
                       5, 5),
                   true, abort);
    EXPECT_EQ(ImageCompare::againstBaseline(picture(), QStringLiteral("flat-cells")), QString());
}

TEST_F(TORV2DVisualElementTest, LeavesOutTheCodesBeyondTheValidRange)
{
    element.update(parameters([](int x, int, int) { return x == 0 ? 255U : (x == 1 ? 254U : 1U); }), true, abort);
    EXPECT_EQ(cells()->GetNumberOfCells(), 9); // 255 is no value
}

TEST_F(TORV2DVisualElementTest, ShowsItemsOfTwoBytes)
{
    const auto field = [](int x, int y, int) { return x == 3 && y == 1 ? 32768U + 4000U : 0U; }; // 40 dBZ
    element.update(parameters(field, 4, 3, Reflectivity16), true, abort);
    ASSERT_TRUE(element.getProp());
    EXPECT_EQ(cells()->GetNumberOfCells(), 1);
    EXPECT_EQ(cellOf(picture(), 3, 1), High);
}

TEST_F(TORV2DVisualElementTest, MakesAnEmptySheetOfAllNoData)
{
    const LogFile log(TORVLog::LEVEL_WARNING);
    element.update(parameters([](int, int, int) { return 0U; }), true, abort);
    ASSERT_TRUE(element.getProp());
    EXPECT_EQ(cells()->GetNumberOfCells(), 0);
    EXPECT_EQ(cellOf(picture(), 1, 1), Background);
    EXPECT_FALSE(layer()->GetBounds());
    EXPECT_EQ(log.lines(), QStringList());
    EXPECT_EQ(history, QStringList());
}

TEST_F(TORV2DVisualElementTest, ShowsTheLowestLevelOfAVolume)
{
    TORVProductFields fields = ProductFiles::small(); // two levels
    const auto params = boost::make_shared<TORVLayerParameters2d>();
    params->setDataFile(TORVFile::openChecked(
        files.write(QStringLiteral("HAL260714120000.CAPZ"), fields,
                    ProductFiles::data(fields, [](int, int, int z) { return z == 0 ? 144U : 64U; }))));
    element.update(params, true, abort);
    EXPECT_EQ(cells()->GetNumberOfCells(), 12);
    EXPECT_EQ(cellOf(picture(), 0, 0), High);
}

TEST_F(TORV2DVisualElementTest, HasTheLookOfAnUnlitSheet)
{
    element.update(threeCells(), true, abort);
    ASSERT_TRUE(layer());
    vtkProperty* const property = sheet()->GetProperty();
    EXPECT_EQ(property->GetInterpolation(), VTK_GOURAUD);
    EXPECT_EQ(property->GetDiffuse(), 0.0);
    EXPECT_EQ(property->GetAmbient(), 1.0);
    EXPECT_EQ(property->GetSpecular(), 0.0);
    EXPECT_EQ(property->GetSpecularPower(), 4.0);
    EXPECT_FALSE(property->GetBackfaceCulling());
    EXPECT_FALSE(property->GetFrontfaceCulling());
    EXPECT_FALSE(property->GetLighting());
    EXPECT_EQ(sheet()->GetMapper()->GetColorMode(), VTK_COLOR_MODE_MAP_SCALARS);
    EXPECT_FALSE(layer()->HasTranslucentPolygonalGeometry());
}

TEST_F(TORV2DVisualElementTest, KeepsTheFinishedCellsAlone)
{
    element.update(threeCells(), true, abort);
    EXPECT_TRUE(element.getData()->IsA("vtkTrivialProducer"));
    EXPECT_EQ(element.getData()->GetTotalNumberOfInputConnections(), 0);
    ASSERT_TRUE(sheet()->GetMapper()->IsA("vtkDataSetMapper"));
    EXPECT_EQ(sheet()->GetMapper()->GetInputDataObject(0, 0), cells());
}

TEST_F(TORV2DVisualElementTest, ReadsTheFileOfAHiddenLayerAndDrawsItWhenItIsShown)
{
    const Parameters params = threeCells();
    element.update(params, false, abort);
    EXPECT_TRUE(element.getData());
    EXPECT_FALSE(element.getProp());
    ASSERT_TRUE(QFile::remove(path)); // it need not be read again
    element.update(boost::make_shared<TORVLayerParameters2d>(*params), true, abort);
    EXPECT_TRUE(element.getProp());
}

TEST_F(TORV2DVisualElementTest, DoesNothingWhenNothingHasChanged)
{
    const Parameters params = threeCells();
    element.update(params, true, abort);
    const auto prop = element.getProp();
    const LogFile log(TORVLog::LEVEL_DEBUG);
    element.update(boost::make_shared<TORVLayerParameters2d>(*params), true, abort);
    EXPECT_EQ(element.getProp(), prop);
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral("D: TORV2DVisualElement::update(): No need to update.")));
}

TEST_F(TORV2DVisualElementTest, LogsItsSteps)
{
    const Parameters params = threeCells();
    const LogFile log(TORVLog::LEVEL_DEBUG);
    element.update(params, true, abort);
    const QStringList lines = log.lines();
    EXPECT_EQ(lines.value(0), QStringLiteral("D: TORV2DVisualElement::update(): Creating new visualization."));
    EXPECT_EQ(lines.value(1), QStringLiteral("D: Reading data: HAL260714120000.MAX"));
    EXPECT_TRUE(lines.value(2).startsWith(QStringLiteral("D: ..data cached in "))) << qPrintable(lines.value(2));
    EXPECT_EQ(lines.value(3), QStringLiteral("D: ..one byte 2D data"));
    EXPECT_TRUE(lines.value(4).startsWith(QStringLiteral("D: ..2d data read in "))) << qPrintable(lines.value(4));
    EXPECT_EQ(lines.value(5), QStringLiteral("D: vtk_2D_data_create() finished."));
    EXPECT_TRUE(lines.last().startsWith(QStringLiteral("D: ..updated in "))) << qPrintable(lines.last());
    EXPECT_TRUE(lines.last().endsWith(QStringLiteral(" seconds.")));
}

TEST_F(TORV2DVisualElementTest, LogsTwoBytes)
{
    const Parameters params = parameters([](int, int, int) { return 0U; }, 4, 3, Reflectivity16);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    element.update(params, true, abort);
    EXPECT_TRUE(log.lines().contains(QStringLiteral("D: ..two byte 2D data")));
}

TEST_F(TORV2DVisualElementTest, TellsTheUserOfAFileThatHasShrunk)
{
    const Parameters params = threeCells();
    ASSERT_TRUE(QFile::resize(path, 645));
    const LogFile log(TORVLog::LEVEL_ERROR);
    element.update(params, true, abort);
    EXPECT_FALSE(element.getProp());
    EXPECT_FALSE(element.getData());
    EXPECT_EQ(log.lines(), (QStringList{QStringLiteral("E: Tried to load invalid 2D data file: ") + path,
                                        QStringLiteral("E: Aborting 2D visualization.")}));
    EXPECT_EQ(history,
              (QStringList{QStringLiteral("Visualizing 2D data failed:"), QStringLiteral(" -HAL260714120000.MAX")}));
}

TEST_F(TORV2DVisualElementTest, TellsTheUserOfAFileThatHasGone)
{
    const Parameters params = threeCells();
    ASSERT_TRUE(QFile::remove(path));
    element.update(params, true, abort);
    EXPECT_FALSE(element.getProp());
    EXPECT_EQ(history.size(), 2);
}

TEST_F(TORV2DVisualElementTest, RecoversWithAGoodFile)
{
    const Parameters bad = threeCells();
    ASSERT_TRUE(QFile::remove(path));
    element.update(bad, true, abort);
    element.update(parameters([](int, int, int) { return 64U; }, 5, 5, Reflectivity8, "260714120500"), true, abort);
    ASSERT_TRUE(element.getProp());
    EXPECT_EQ(cells()->GetNumberOfCells(), 25);
}

TEST_F(TORV2DVisualElementTest, BecomesEmptyWithoutParameters)
{
    element.update(threeCells(), true, abort);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    element.update({}, true, abort);
    EXPECT_FALSE(element.getProp());
    EXPECT_FALSE(element.getData());
    EXPECT_EQ(log.lines(), (QStringList{QStringLiteral("D: TORV2DVisualElement::update(): layer parameters not set."),
                                        QStringLiteral("D: Removing old 2D layer objects..")}));
    element.invalidate(); // a second time does no harm
    EXPECT_EQ(log.lines().size(), 2);
}

TEST_F(TORV2DVisualElementTest, IsEmptyAfterAnAbortAndIsBuiltAgain)
{
    const Parameters params = threeCells();
    abort = true;
    element.update(params, true, abort);
    EXPECT_FALSE(element.getProp());
    EXPECT_FALSE(element.getData());
    abort = false;
    element.update(params, true, abort);
    EXPECT_TRUE(element.getProp());
}

TEST_F(TORV2DVisualElementTest, IsTheSameByDayAndByNight)
{
    element.update(threeCells(), true, abort);
    const QImage day = picture();
    TORVDisplayMode::setNight(true);
    element.restyle();
    EXPECT_EQ(picture(), day);
}

TEST_F(TORV2DVisualElementTest, NeedsAFileInItsParameters)
{
    EXPECT_DEATH(element.update(boost::make_shared<TORVLayerParameters2d>(), true, abort), "file");
}
