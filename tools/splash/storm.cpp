// Draws the storm of the splash screen: a simulated supercell as three nested shells over range rings. It needs a
// display, so its picture is kept with the sources; resources/README.md tells how it was made.
#include "datalib/TORVFile.h"
#include "visualization/TORV3DFilters.h"
#include "visualization/TORVMatt.h"
#include "visualization/TORVSceneGrid.h"

#include <QColor>
#include <QCoreApplication>
#include <QImage>
#include <QTextStream>

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkFlyingEdges3D.h>
#include <vtkImageConstantPad.h>
#include <vtkImageGaussianSmooth.h>
#include <vtkLight.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRegularPolygonSource.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkUnsignedCharArray.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>

namespace
{

constexpr int Width_px = 1280; // twice the size in which it is shown
constexpr int Height_px = 720;
constexpr int Supersampling = 2;
constexpr double VerticalScale = 4.0;
constexpr float NoEcho_dBZ = -32.0F;
constexpr int SmoothPoints = 2; // standard deviation
constexpr int LevelsAbove = 6;  // room in which the tops close

// What belongs to other storms fades away beyond this distance from the storm's middle, which lies ahead of the
// strongest column: its rain and its anvil drift away to the north.
constexpr double MiddleAhead_m[] = {8e3, 22e3};
constexpr double StormRadius_m = 46e3;
constexpr double Fade_dBZ_m = 2e-3;

const QColor Ground(0x18, 0x15, 0x12);
const QColor RingColor(0x4A, 0x44, 0x3C);
constexpr double RingRadii_m[] = {40e3, 80e3, 120e3};
constexpr int RingSides = 360;
constexpr float RingWidth_px = 2.5F;

struct Shell
{
    double value_dBZ;
    QColor color;
    double opacity;
};

const Shell Shells[] = {
    {20.0, QColor(0x0A, 0x83, 0x8C), 0.20},
    {35.0, QColor(0x7B, 0xD5, 0x50), 0.35},
    {50.0, QColor(0xF7, 0x7C, 0x10), 1.0},
};

struct Column
{
    int x = 0;
    int y = 0;
};

// Where the most echo stands in one column.
Column strongestColumn(vtkImageData* echo)
{
    const int* const size = echo->GetDimensions();
    Column strongest;
    double most = 0.0;
    for (int y = 0; y < size[1]; ++y) {
        for (int x = 0; x < size[0]; ++x) {
            double sum = 0.0;
            for (int z = 0; z < size[2]; ++z) {
                sum += std::max(0.0, echo->GetScalarComponentAsDouble(x, y, z, 0));
            }
            if (sum > most) {
                most = sum;
                strongest = {x, y};
            }
        }
    }
    return strongest;
}

void fadeOtherStorms(vtkImageData* echo)
{
    const Column storm = strongestColumn(echo);
    const int* const size = echo->GetDimensions();
    const double* const step = echo->GetSpacing();
    for (int y = 0; y < size[1]; ++y) {
        for (int x = 0; x < size[0]; ++x) {
            const double beyond =
                std::hypot((x - storm.x) * step[0] - MiddleAhead_m[0], (y - storm.y) * step[1] - MiddleAhead_m[1]) -
                StormRadius_m;
            for (int z = 0; z < size[2]; ++z) {
                auto& value = *static_cast<float*>(echo->GetScalarPointer(x, y, z));
                value = std::max(NoEcho_dBZ, value - static_cast<float>(Fade_dBZ_m * std::max(0.0, beyond)));
            }
        }
    }
}

// The product in dBZ, in metres of the scene with the radar at x = y = 0.
vtkSmartPointer<vtkImageData> echoOf(const TORVFile::CPtr& file)
{
    const std::atomic<bool> abort{false};
    const vtkSmartPointer<vtkImageData> raw = vtk_3D_data_create(file, 1, 1, 0.0, abort);
    if (!raw) {
        return nullptr;
    }
    const TORVDataType type = file->getDataType();
    const TORVSceneGrid grid(*file);
    auto echo = vtkSmartPointer<vtkImageData>::New();
    echo->SetDimensions(raw->GetDimensions());
    echo->SetSpacing(grid.step.x, grid.step.y, grid.step.z * VerticalScale);
    echo->SetOrigin(-grid.radarX, -grid.radarY, 0.0);
    echo->AllocateScalars(VTK_FLOAT, 1);
    auto* const values = static_cast<float*>(echo->GetScalarPointer());
    for (vtkIdType i = 0; i < echo->GetNumberOfPoints(); ++i) {
        const auto stored = static_cast<unsigned int>(raw->GetPointData()->GetScalars()->GetTuple1(i));
        values[i] = stored == 0 ? NoEcho_dBZ : static_cast<float>(type.absoluteToDisplayValue(stored));
    }
    fadeOtherStorms(echo);
    return echo;
}

vtkSmartPointer<vtkActor> shellActor(vtkAlgorithmOutput* echo, const Shell& shell)
{
    vtkNew<vtkFlyingEdges3D> surface;
    surface->SetInputConnection(echo);
    surface->SetValue(0, shell.value_dBZ);
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputConnection(surface->GetOutputPort());
    mapper->ScalarVisibilityOff();
    auto actor = vtkSmartPointer<vtkActor>::New();
    actor->SetMapper(mapper);
    TORVMatt::apply(actor);
    actor->GetProperty()->SetColor(shell.color.redF(), shell.color.greenF(), shell.color.blueF());
    actor->GetProperty()->SetOpacity(shell.opacity);
    actor->GetProperty()->SetAmbient(0.45);
    actor->GetProperty()->SetDiffuse(0.75);
    return actor;
}

vtkSmartPointer<vtkActor> ringActor(double radius_m)
{
    vtkNew<vtkRegularPolygonSource> ring;
    ring->SetNumberOfSides(RingSides);
    ring->SetRadius(radius_m);
    ring->GeneratePolygonOff();
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputConnection(ring->GetOutputPort());
    auto actor = vtkSmartPointer<vtkActor>::New();
    actor->SetMapper(mapper);
    actor->GetProperty()->LightingOff();
    actor->GetProperty()->SetColor(RingColor.redF(), RingColor.greenF(), RingColor.blueF());
    actor->GetProperty()->SetLineWidth(RingWidth_px * Supersampling);
    return actor;
}

void lookAtStorm(vtkRenderer* renderer)
{
    vtkCamera* const camera = renderer->GetActiveCamera();
    camera->SetViewUp(0.0, 0.0, 1.0);
    camera->SetFocalPoint(8e3, 14e3, 22e3);
    camera->SetPosition(18e3, -170e3, 72e3);
    camera->SetViewAngle(31.0);
    renderer->ResetCameraClippingRange();
    vtkNew<vtkLight> light;
    light->SetLightTypeToSceneLight();
    light->SetPositional(false);
    light->SetPosition(-1.0e3, -1.2e3, 1.1e3);
    light->SetFocalPoint(0.0, 0.0, 0.0);
    renderer->RemoveAllLights();
    renderer->SetAutomaticLightCreation(0);
    renderer->AddLight(light);
}

QImage draw(vtkRenderer* renderer)
{
    vtkNew<vtkRenderWindow> window;
    window->SetOffScreenRendering(1);
    window->SetMultiSamples(0);
    window->SetSize(Width_px * Supersampling, Height_px * Supersampling);
    window->AddRenderer(renderer);
    renderer->SetUseDepthPeeling(1);
    renderer->SetMaximumNumberOfPeels(32);
    renderer->SetOcclusionRatio(0.0);
    window->Render();
    const int* const size = window->GetSize();
    vtkNew<vtkUnsignedCharArray> pixels;
    window->GetPixelData(0, 0, size[0] - 1, size[1] - 1, 0, pixels);
    const QImage bottomUp(pixels->GetPointer(0), size[0], size[1], 3 * size[0], QImage::Format_RGB888);
    return bottomUp.mirrored().scaled(Width_px, Height_px, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage pictureOf(const TORVFile::CPtr& file)
{
    const vtkSmartPointer<vtkImageData> echo = echoOf(file);
    if (!echo) {
        return {};
    }
    vtkNew<vtkImageConstantPad> pad;
    std::array<int, 6> extent{};
    echo->GetExtent(extent.data());
    extent[5] += LevelsAbove;
    pad->SetInputData(echo);
    pad->SetOutputWholeExtent(extent.data());
    pad->SetConstant(NoEcho_dBZ);
    vtkNew<vtkImageGaussianSmooth> smooth;
    smooth->SetInputConnection(pad->GetOutputPort());
    smooth->SetStandardDeviations(SmoothPoints, SmoothPoints, 1.0);
    vtkNew<vtkRenderer> renderer;
    renderer->SetBackground(Ground.redF(), Ground.greenF(), Ground.blueF());
    for (const double radius : RingRadii_m) {
        renderer->AddActor(ringActor(radius));
    }
    for (const Shell& shell : Shells) {
        renderer->AddActor(shellActor(smooth->GetOutputPort(), shell));
    }
    lookAtStorm(renderer);
    return draw(renderer);
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    QTextStream errors(stderr);
    if (argc != 3) {
        errors << "usage: splashstorm PRODUCT-FILE PICTURE.png\n";
        return 2;
    }
    const TORVFile::CPtr file = TORVFile::openChecked(QString::fromLocal8Bit(argv[1]));
    if (!file->isValid() || file->getDimensions() != 3) {
        errors << "splashstorm: " << argv[1] << ": not a complete volume\n";
        return 1;
    }
    const QImage picture = pictureOf(file);
    if (picture.isNull() || !picture.save(QString::fromLocal8Bit(argv[2]))) {
        errors << "splashstorm: " << argv[2] << ": can't be made\n";
        return 1;
    }
    return 0;
}
