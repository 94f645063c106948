// How fast the scene of the demo is drawn, all layers, 1280 x 800: while the camera moves and at rest, as surfaces and
// as a volume; how many pictures a burst of mouse moves costs. The rival draws the same surfaces or the same volume, so
// it stands against ours alone: `TORV_PVPYTHON` names the program, without it there is none. `TORV_DEMO_HOME` is the
// home directory of the demo.

#include "datalib/TORV3DTop.h"
#include "datalib/TORVDataFrame.h"
#include "settings/TORVDisplayState.h"
#include "settings/TORVGeneralSettings.h"
#include "settings/TORVProductSettings.h"
#include "visualization/TORVCameraInteractor.h"
#include "visualization/TORVFramePacer.h"
#include "visualization/TORVRenderer.h"
#include "visualization/TORVVisualization.h"
#include "visualization/TORVVisualizationObserver.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <boost/make_shared.hpp>

#include <vtkActor.h>
#include <vtkAppendPolyData.h>
#include <vtkAssemblyNode.h>
#include <vtkAssemblyPath.h>
#include <vtkImageData.h>
#include <vtkMapper.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkProp3D.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>
#include <vtkTransform.h>
#include <vtkTransformPolyDataFilter.h>
#include <vtkXMLImageDataWriter.h>
#include <vtkXMLPolyDataWriter.h>

#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace
{

constexpr int Width = 1280;
constexpr int Height = 800;
constexpr double TerrainFactor = 1.5;
constexpr double TurnStep = 0.01; // radians a picture
constexpr int MouseMoves = 200;

class Observer final : public TORVVisualizationObserver
{
public:
    void visualizationFinished(TORVVisualization* visualization) override
    {
        Q_UNUSED(visualization)
        isFinished = true;
    }
    boost::shared_ptr<const TORVGeneralSettings> getVisualizationGeneralSettings() override { return general; }
    boost::shared_ptr<const TORVDisplayState> getVisualizationDisplayState() override { return state; }

    boost::shared_ptr<TORVGeneralSettings> general = boost::make_shared<TORVGeneralSettings>();
    boost::shared_ptr<TORVDisplayState> state = boost::make_shared<TORVDisplayState>();
    bool isFinished = false;
};

void waitUntil(const std::function<bool()>& isDone)
{
    QElapsedTimer timer;
    timer.start();
    while (!isDone()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        if (timer.elapsed() > 300000) {
            qFatal("the scene of the demo doesn't come");
        }
    }
}

// The newest reflectivity of the demo's first site.
class Scene
{
public:
    /// @param isAlone  without all layers but the 3-D product
    Scene(TORVProductSettings::RenderingType type, bool isAlone)
    {
        for (const TORVDisplayGroup::Ptr& group : _observer.state->getMembers()) {
            for (const TORVDisplayLayer::Ptr& layer : group->getMembers()) {
                layer->setEnabled(!isAlone || layer->getKey() == TORVDisplayLayer::LAYER_3DPRODUCT);
            }
        }
        TORVProductSettings settings(QStringLiteral("CAPPI"), QStringLiteral("Z"), TORVDataType(2));
        const auto shipped = settings.getRenderingType();
        settings.setRenderingType(type);
        settings.save();
        makeWindow();
        openStore();
        const TORVFileLeaf::Ptr leaf =
            _store->getLatestData(QStringLiteral("*"), QStringLiteral("CAPPI"), QStringLiteral("Z"));
        _frame = boost::make_shared<TORVDataFrame>(_store, leaf->getSite(), leaf->getTime(), leaf->getProduct(),
                                                   leaf->getConfiguration(), QString(),
                                                   _observer.general->getTimeWindow(), TerrainFactor);
        settings.setRenderingType(shipped);
        settings.save();
        _visualization = std::make_unique<TORVVisualization>(&_observer);
        _visualization->setSourceData(_frame);
        _visualization->updateVisualization(true);
        waitUntil([this] { return _observer.isFinished; });
        show();
    }

    TORVRenderer& renderer() { return *_renderer; }
    vtkRenderWindow* window() { return _window; }
    vtkRenderWindowInteractor* interactor() { return _interactor; }
    TORVVisualization& visualization() { return *_visualization; }

    void turn()
    {
        TORVCameraInteractor* const camera = _renderer->getCameraInteractor();
        camera->rotateCameraTarget(TurnStep, 0.0);
        camera->applyCamera(false);
    }

private:
    void makeWindow()
    {
        _window->SetOffScreenRendering(1);
        _window->SetSize(Width, Height);
        _interactor->SetRenderWindow(_window);
        _renderer = std::make_unique<TORVRenderer>(_window, nullptr, nullptr, true);
        _renderer->toggleCompass(true);
    }

    void openStore()
    {
        _observer.general->load();
        _store = boost::make_shared<TORVDataStore>(nullptr);
        _store->setDirectories(_observer.general->get3DDir(), _observer.general->get2DDir(),
                               _observer.general->getGeoDir(),
                               QDir::homePath() + QStringLiteral("/.torv3d/cache/terrain"));
        waitUntil([this] { return _store->getDirTop3d() && _store->getDirTop2d(); });
    }

    // Seen aslant from the south-west, the whole storm in the window.
    void show()
    {
        _renderer->setVisualization(_visualization->getResultItem());
        const TORVFile& file = *_frame->getData3d()->getFile();
        const double reach = std::hypot(file.getLengthM(), file.getWidthM());
        TORVCameraInteractor* const camera = _renderer->getCameraInteractor();
        camera->resetCamera({0.0, 0.0, reach}, {0.0, 1e-6, -1.0}, 2.0 * reach, reach / 2.0);
        camera->setView({-0.45 * reach, -0.8 * reach, 0.5 * reach}, {0.45, 0.8, -0.45});
        camera->applyCamera(false);
        _renderer->renderNow();
    }

    vtkNew<vtkRenderWindow> _window;
    vtkNew<vtkRenderWindowInteractor> _interactor;
    Observer _observer;
    std::unique_ptr<TORVRenderer> _renderer;
    TORVDataStore::Ptr _store;
    TORVDataFrame::Ptr _frame;
    std::unique_ptr<TORVVisualization> _visualization;
};

// One at a time: two windows would share the memory that one has in the program.
Scene& scene(TORVProductSettings::RenderingType type, bool isAlone = false)
{
    static std::unique_ptr<Scene> current;
    static auto currentKind = std::make_pair(TORVProductSettings::UNKNOWN, false);
    const auto kind = std::make_pair(type, isAlone);
    if (!current || currentKind != kind) {
        current.reset();
        current = std::make_unique<Scene>(type, isAlone);
        currentKind = kind;
    }
    return *current;
}

void moving(benchmark::State& state, TORVProductSettings::RenderingType type, bool isAlone)
{
    Scene& demo = scene(type, isAlone);
    for (int i = 0; i < 5; ++i) { // a volume finds its sample distance
        demo.turn();
        demo.renderer().getPacer()->moved();
        demo.window()->Render();
    }
    for (auto _ : state) {
        demo.turn();
        demo.renderer().getPacer()->moved();
        demo.window()->Render();
    }
    state.counters["frames/s"] = benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
}

void atRest(benchmark::State& state, TORVProductSettings::RenderingType type, bool isAlone)
{
    Scene& demo = scene(type, isAlone);
    demo.renderer().renderNow(); // comes to rest
    for (auto _ : state) {
        demo.turn();
        demo.window()->Render();
    }
}

// Moves that come in faster than pictures go out.
void burstOfMouseMoves(benchmark::State& state)
{
    Scene& demo = scene(TORVProductSettings::SURFACE);
    vtkRenderWindowInteractor* const interactor = demo.interactor();
    int pictures = 0;
    for (auto _ : state) {
        const int before = demo.renderer().getPacer()->getDrawCount();
        interactor->SetEventInformation(600, 400);
        interactor->InvokeEvent(vtkCommand::LeftButtonPressEvent);
        for (int i = 0; i < MouseMoves; ++i) {
            interactor->SetEventInformation(600 + i, 400);
            interactor->InvokeEvent(vtkCommand::MouseMoveEvent);
        }
        interactor->InvokeEvent(vtkCommand::LeftButtonReleaseEvent);
        QCoreApplication::processEvents();
        pictures = demo.renderer().getPacer()->getDrawCount() - before;
    }
    state.counters["pictures"] = pictures;
}

// What the rival draws.

// The meshes of the scene where they stand in it.
void writeSurfaces(Scene& demo, const QString& file)
{
    vtkNew<vtkAppendPolyData> all;
    vtkPropAssembly* const results = demo.visualization().getResultItem()->getResults();
    results->InitPathTraversal();
    while (vtkAssemblyPath* const path = results->GetNextPath()) {
        vtkAssemblyNode* const leaf = path->GetLastNode();
        vtkActor* const actor = vtkActor::SafeDownCast(leaf->GetViewProp());
        vtkPolyData* const mesh = actor ? vtkPolyData::SafeDownCast(actor->GetMapper()->GetInput()) : nullptr;
        if (!mesh || mesh->GetNumberOfPoints() == 0) {
            continue;
        }
        vtkNew<vtkTransform> transform;
        if (leaf->GetMatrix()) {
            transform->SetMatrix(leaf->GetMatrix());
        }
        vtkNew<vtkPolyData> bare;
        bare->CopyStructure(mesh);
        vtkNew<vtkTransformPolyDataFilter> placed;
        placed->SetTransform(transform);
        placed->SetInputData(bare);
        placed->Update();
        all->AddInputData(placed->GetOutput());
    }
    vtkNew<vtkXMLPolyDataWriter> writer;
    writer->SetFileName(QFile::encodeName(file).constData());
    writer->SetInputConnection(all->GetOutputPort());
    writer->Write();
}

void writeVolume(Scene& demo, const QString& file)
{
    vtkNew<vtkXMLImageDataWriter> writer;
    writer->SetFileName(QFile::encodeName(file).constData());
    writer->SetInputData(demo.visualization().getVTKDataSet());
    writer->Write();
}

void rival(benchmark::State& state, TORVProductSettings::RenderingType type, const char* pace)
{
    const QString program = qEnvironmentVariable("TORV_PVPYTHON");
    if (program.isEmpty()) {
        state.SkipWithError("TORV_PVPYTHON is not set");
        return;
    }
    const QTemporaryDir directory;
    const bool isVolume = type == TORVProductSettings::VOLUME;
    const QString file = directory.filePath(isVolume ? QStringLiteral("scene.vti") : QStringLiteral("scene.vtp"));
    isVolume ? writeVolume(scene(type, true), file) : writeSurfaces(scene(type, true), file);
    for (auto _ : state) {
        QProcess process;
        process.start(program, {QStringLiteral(TORV_BENCH_SOURCES "/rival_frames.py"), file, QLatin1String(pace),
                                QString::number(Width), QString::number(Height)});
        process.waitForFinished(600000);
        bool isNumber = false;
        const double seconds = process.readAllStandardOutput().trimmed().split('\n').last().toDouble(&isNumber);
        if (!isNumber) {
            state.SkipWithError("the rival fails");
            return;
        }
        state.SetIterationTime(seconds);
        state.counters["frames/s"] = 1.0 / seconds;
    }
}

constexpr auto Surfaces = TORVProductSettings::SURFACE;
constexpr auto Volume = TORVProductSettings::VOLUME;

void ofOurs(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Unit(benchmark::kMillisecond)->UseRealTime();
}

void ofTheRival(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(1);
}

BENCHMARK_CAPTURE(moving, surfaces, Surfaces, false)->Apply(ofOurs);
BENCHMARK_CAPTURE(atRest, surfaces, Surfaces, false)->Apply(ofOurs);
BENCHMARK(burstOfMouseMoves)->Apply(ofOurs);
BENCHMARK_CAPTURE(moving, volume, Volume, false)->Apply(ofOurs);
BENCHMARK_CAPTURE(atRest, volume, Volume, false)->Apply(ofOurs);

BENCHMARK_CAPTURE(moving, surfaces alone, Surfaces, true)->Apply(ofOurs);
BENCHMARK_CAPTURE(rival, surfaces alone moving, Surfaces, "moving")->Apply(ofTheRival);
BENCHMARK_CAPTURE(atRest, surfaces alone, Surfaces, true)->Apply(ofOurs);
BENCHMARK_CAPTURE(rival, surfaces alone at rest, Surfaces, "rest")->Apply(ofTheRival);
BENCHMARK_CAPTURE(moving, volume alone, Volume, true)->Apply(ofOurs);
BENCHMARK_CAPTURE(rival, volume alone moving, Volume, "moving")->Apply(ofTheRival);
BENCHMARK_CAPTURE(atRest, volume alone, Volume, true)->Apply(ofOurs);
BENCHMARK_CAPTURE(rival, volume alone at rest, Volume, "rest")->Apply(ofTheRival);

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    const QByteArray home = qgetenv("TORV_DEMO_HOME");
    if (home.isEmpty() || qEnvironmentVariableIsEmpty("DISPLAY")) {
        qWarning("needs TORV_DEMO_HOME and a display");
        return 0;
    }
    qputenv("HOME", home);
    qunsetenv("XDG_CONFIG_HOME");
    const QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Halmera"));
    QCoreApplication::setApplicationName(QStringLiteral("TORV3D"));
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
