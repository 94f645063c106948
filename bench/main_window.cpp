// The whole main window on the storm of the demo (`TORV_DEMO_HOME`), surfaces with all layers, 1280 x 800:
//
// - a start with 10,000 files in the directory, to the window and, from the start-up timer on, to the first picture;
// - a new live file, to its picture;
// - the second pass of a loop of 36 frames at "Fastest", in pictures a second, and how many scenes it has built;
// - the memory of the process over many loops: `TORV_BENCH_LOOPS` says how many, 20 without it.
//
// Pictures stand beside the time that the pipeline alone takes for the same frame.

#include "datalib/TORV3DTop.h"
#include "datalib/TORVDataStore.h"
#include "datalib/TORVTerrainDir.h"
#include "gui/TORVAnimation.h"
#include "gui/TORVAnimationFrame.h"
#include "gui/TORVGUI.h"
#include "settings/TORVDisplayState.h"
#include "settings/TORVGeneralSettings.h"
#include "visualization/TORVFramePacer.h"
#include "visualization/TORVRenderer.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QSettings>
#include <QSurfaceFormat>
#include <QTemporaryDir>
#include <QTimer>
#include <QVTKOpenGLNativeWidget.h>
#include <QtEndian>

#include <benchmark/benchmark.h>

#include <boost/make_shared.hpp>

#include <vtkCallbackCommand.h>
#include <vtkCommand.h>
#include <vtkNew.h>
#include <vtkRenderer.h>

#include <functional>
#include <memory>

#include <malloc.h>

namespace
{

constexpr int Frames = 36;
constexpr int Minutes = 5;        // between two frames
constexpr int SecondsOffset = 44; // of the time of the data, in the header
constexpr int ManyFiles = 10000;
constexpr double Million = 1e6;

void waitUntil(const std::function<bool()>& isDone)
{
    QElapsedTimer timer;
    timer.start();
    while (!isDone()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        if (timer.elapsed() > 900000) {
            qFatal("the window doesn't come to what was waited for");
        }
    }
}

// A home of its own with settings like the demo's, but with directories of its own.
class Site
{
public:
    Site()
    {
        const QByteArray demo = qgetenv("TORV_DEMO_HOME");
        _demo = QString::fromLocal8Bit(demo);
        const QString settings = QStringLiteral("/.config/Halmera");
        QDir().mkpath(_home.path() + settings);
        for (const QFileInfo& file : QDir(_demo + settings).entryInfoList(QDir::Files)) {
            QFile::copy(file.filePath(), _home.path() + settings + QLatin1Char('/') + file.fileName());
        }
        QDir().mkpath(_home.filePath(QStringLiteral("3d")));
        QDir().mkpath(_home.filePath(QStringLiteral("2d")));
        QDir().mkpath(_demo + QStringLiteral("/.torv3d"));
        QFile::link(_demo + QStringLiteral("/.torv3d"),
                    _home.filePath(QStringLiteral(".torv3d"))); // ground converted once
        goHome(_demo);
        const TORVGeneralSettings shipped;
        _source3d = shipped.get3DDir();
        _source2d = shipped.get2DDir();
        goHome(_home.path());
        TORVGeneralSettings own;
        own.set3DDir(_home.filePath(QStringLiteral("3d")));
        own.set2DDir(_home.filePath(QStringLiteral("2d")));
        own.setLiveMode(true);
        own.setLiveProduct3D(QStringLiteral("CAPPI - Z"));
        own.setLiveProduct2D(QStringLiteral("MAX"));
        own.setLiveSite(QString());
        own.setAnimationLoopMode(1);
        own.save();
    }

    ~Site() { goHome(_demo); }

    Site(const Site&) = delete;
    Site& operator=(const Site&) = delete;

    // The frames of a storm, told anew from its beginning when it is over.
    void write(int first, int count) const
    {
        for (int i = first; i < first + count; ++i) {
            copy(_source3d, QStringLiteral("3d"), QStringLiteral("*.CAPZ"), i);
            copy(_source2d, QStringLiteral("2d"), QStringLiteral("*.MAX"), i);
        }
    }

    // So many frames, of the site that the next window follows.
    void follow(int count) const
    {
        write(0, count);
        TORVGeneralSettings settings;
        settings.setLiveSite(siteName());
        settings.save();
    }

    // Headers and nothing more to look at, of another site.
    void writeMany() const
    {
        const QString source = files(_source3d, QStringLiteral("*.CAPZ")).last();
        QFile file(_source3d + QLatin1Char('/') + source);
        file.open(QIODevice::ReadOnly);
        const QByteArray bytes = file.read(640);
        for (int i = 0; i < ManyFiles; ++i) {
            QFile many(_home.filePath(QStringLiteral("3d/OLD26%1.CAPZ").arg(i, 10, 10, QLatin1Char('0'))));
            many.open(QIODevice::WriteOnly);
            many.write(bytes);
        }
    }

    QString siteName() const
    {
        TORVDataStore store(nullptr);
        store.setDirectories(_source3d, _source2d, QString(), _home.filePath(QStringLiteral("none")));
        waitUntil([&store] { return store.getDirTop3d() != nullptr; });
        return store.getDirTop3d()->findLeaf(files(_source3d, QStringLiteral("*.CAPZ")).last())->getSite();
    }

private:
    static void goHome(const QString& home)
    {
        qputenv("HOME", home.toLocal8Bit());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, home + QStringLiteral("/.config"));
    }

    static QStringList files(const QString& directory, const QString& pattern)
    {
        QStringList names = QDir(directory).entryList({pattern}, QDir::Files, QDir::Name);
        const QString site = names.last().left(3);
        return names.filter(QRegularExpression(QLatin1Char('^') + site));
    }

    void copy(const QString& source, const QString& target, const QString& pattern, int index) const
    {
        const QStringList names = files(source, pattern);
        const QString name = names[index % names.size()];
        QFile file(source + QLatin1Char('/') + name);
        file.open(QIODevice::ReadOnly);
        QByteArray bytes = file.readAll();
        const int seconds = index * Minutes * 60;
        const quint32 stored = qToLittleEndian(static_cast<quint32>(seconds));
        bytes.replace(SecondsOffset, sizeof stored,
                      QByteArray(reinterpret_cast<const char*>(&stored), static_cast<int>(sizeof stored)));
        const QString stamp = QTime(0, 0).addSecs(seconds).toString(QStringLiteral("hhmmss"));
        const QString whole = name.left(9) + stamp + name.mid(15);
        const QString written = _home.filePath(QLatin1String("written-") + whole);
        QFile out(written);
        out.open(QIODevice::WriteOnly);
        out.write(bytes);
        out.close();
        QFile::rename(written, _home.filePath(target + QLatin1Char('/') + whole));
    }

    QTemporaryDir _home;
    QString _demo;
    QString _source3d;
    QString _source2d;
};

std::unique_ptr<TORVGUI> makeWindow()
{
    auto window = std::make_unique<TORVGUI>();
    window->show();
    return window;
}

int drawCount(const TORVGUI& window)
{
    return window.getCurrentRenderer()->getPacer()->getDrawCount();
}

// And the whole picture has been drawn.
void waitUntilIdle(const TORVGUI& window)
{
    waitUntil([&window] {
        return window.getCurrentDataFrame() && !window.isBusy() && !window.getCurrentRenderer()->getPacer()->isMoving();
    });
    for (int i = 0; i < 100; ++i) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    }
}

// Tells when the first picture of another frame was drawn.
class PictureWatch
{
public:
    explicit PictureWatch(const TORVGUI& window) : _window(window), _before(window.getCurrentDataFrame())
    {
        _command->SetClientData(this);
        _command->SetCallback(
            [](vtkObject*, unsigned long, void* self, void*) { static_cast<PictureWatch*>(self)->onPicture(); });
        _window.getCurrentRenderer()->getRenderer()->AddObserver(vtkCommand::EndEvent, _command);
        _clock.start();
    }

    ~PictureWatch() { _window.getCurrentRenderer()->getRenderer()->RemoveObserver(_command); }

    PictureWatch(const PictureWatch&) = delete;
    PictureWatch& operator=(const PictureWatch&) = delete;

    double waitSeconds()
    {
        waitUntil([this] { return _seconds > 0.0; });
        return _seconds;
    }

private:
    void onPicture()
    {
        if (_seconds == 0.0 && _window.getCurrentDataFrame() != _before) {
            _seconds = static_cast<double>(_clock.nsecsElapsed()) * 1e-9;
        }
    }

    const TORVGUI& _window;
    const TORVDataFrame::CPtr _before;
    vtkNew<vtkCallbackCommand> _command;
    QElapsedTimer _clock;
    double _seconds = 0.0;
};

void start(TORVGUI& window)
{
    window.findChild<QTimer*>(QStringLiteral("startupTimer"))->start(0);
}

std::unique_ptr<TORVGUI> openWindow()
{
    auto window = makeWindow();
    start(*window);
    waitUntilIdle(*window);
    return window;
}

class BuildObserver final : public TORVVisualizationObserver
{
public:
    void visualizationFinished(TORVVisualization* /*visualization*/) override { isFinished = true; }
    boost::shared_ptr<const TORVGeneralSettings> getVisualizationGeneralSettings() override { return general; }
    boost::shared_ptr<const TORVDisplayState> getVisualizationDisplayState() override { return state; }

    boost::shared_ptr<const TORVGeneralSettings> general = boost::make_shared<TORVGeneralSettings>();
    boost::shared_ptr<const TORVDisplayState> state = boost::make_shared<TORVDisplayState>();
    bool isFinished = false;
};

// Seconds that the pipeline takes for the frame on show when nothing else is done. The ground is read again where the
// window had to read it, too.
double buildAlone(const TORVGUI& window, bool withGround)
{
    BuildObserver observer;
    TORVVisualization visualization(&observer);
    const auto frame = boost::make_shared<TORVDataFrame>(window.getCurrentDataFrame());
    if (withGround) {
        frame->getDataStore()->getTerrainDir()->scanFiles();
        frame->renewTerrain();
    }
    QElapsedTimer timer;
    timer.start();
    visualization.setSourceData(frame);
    visualization.updateVisualization(true);
    waitUntil([&observer] { return observer.isFinished; });
    return static_cast<double>(timer.nsecsElapsed()) * 1e-9;
}

void startWithManyFiles(benchmark::State& state)
{
    const Site site;
    site.writeMany();
    for (auto _ : state) {
        const auto window = makeWindow();
        QCoreApplication::processEvents();
        benchmark::DoNotOptimize(window.get());
    }
}

void firstPicture(benchmark::State& state)
{
    const Site site;
    site.follow(Frames);
    for (auto _ : state) {
        const auto window = makeWindow();
        waitUntil([&] { return drawCount(*window) > 0; });
        PictureWatch watch(*window);
        start(*window);
        const double seconds = watch.waitSeconds();
        waitUntilIdle(*window);
        const double alone = buildAlone(*window, true);
        state.SetIterationTime(seconds);
        state.counters["build_ms"] = 1000.0 * alone;
        state.counters["beyond_build_ms"] = 1000.0 * (seconds - alone);
    }
}

void liveFile(benchmark::State& state)
{
    const Site site;
    site.follow(Frames);
    const auto window = openWindow();
    int index = Frames;
    for (auto _ : state) {
        PictureWatch watch(*window);
        site.write(index++, 1);
        const double seconds = watch.waitSeconds();
        waitUntilIdle(*window);
        const double alone = buildAlone(*window, false);
        state.SetIterationTime(seconds);
        state.counters["build_ms"] = 1000.0 * alone;
        state.counters["beyond_build_ms"] = 1000.0 * (seconds - alone);
    }
}

QVector<TORVVisualizationPipelineItem::Ptr> scenes(const TORVGUI& window)
{
    QVector<TORVVisualizationPipelineItem::Ptr> items;
    for (const TORVAnimation::FramePtr& frame : window.getAnimation().getFrames()) {
        items << frame->getVisualization()->getResultItem();
    }
    return items;
}

void playTo(const TORVGUI& window, int index)
{
    waitUntil([&] { return window.getAnimation().getCurrentIndex() == index; });
}

void secondPass(benchmark::State& state)
{
    const Site site;
    site.follow(Frames);
    const auto window = openWindow();
    window->pushButton_animPlay->click();
    playTo(*window, Frames - 1);
    playTo(*window, 0);
    for (auto _ : state) {
        playTo(*window, 0);
        const auto before = scenes(*window);
        const int draws = drawCount(*window);
        QElapsedTimer timer;
        timer.start();
        playTo(*window, Frames - 1);
        const double seconds = static_cast<double>(timer.nsecsElapsed()) * 1e-9;
        const auto after = scenes(*window);
        int rebuilt = 0;
        for (int i = 0; i < after.size(); ++i) {
            rebuilt += before[i] == after[i] ? 0 : 1;
        }
        state.SetIterationTime(seconds);
        state.counters["frames_per_s"] = (Frames - 1) / seconds;
        state.counters["pictures_per_s"] = (drawCount(*window) - draws) / seconds;
        state.counters["rebuilt"] = rebuilt;
    }
    window->pushButton_animPlay->click();
    waitUntil([&] { return !window->isBusy(); });
}

double resident_MB()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    file.open(QIODevice::ReadOnly);
    return file.readAll().split(' ').value(1).toDouble() * 4096.0 / Million;
}

// What is in use, without what the allocator keeps.
double heap_MB()
{
    const struct mallinfo2 info = ::mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd) / Million;
}

void memoryOfLoops(benchmark::State& state)
{
    constexpr int FewFrames = 12;
    constexpr int WarmUp = 5;
    const int loops =
        qEnvironmentVariableIntValue("TORV_BENCH_LOOPS") > 0 ? qEnvironmentVariableIntValue("TORV_BENCH_LOOPS") : 20;
    const Site site;
    site.follow(FewFrames);
    const auto window = openWindow();
    window->pushButton_animPlay->click();
    for (auto _ : state) {
        for (int loop = 0; loop < WarmUp; ++loop) {
            playTo(*window, FewFrames - 1);
            playTo(*window, 0);
        }
        const double before = resident_MB();
        const double heapBefore = heap_MB();
        for (int loop = 0; loop < loops; ++loop) {
            playTo(*window, FewFrames - 1);
            playTo(*window, 0);
        }
        state.counters["loops"] = loops;
        state.counters["before_MB"] = before;
        state.counters["growth_MB"] = resident_MB() - before;
        state.counters["heap_growth_MB"] = heap_MB() - heapBefore;
    }
}

BENCHMARK(startWithManyFiles)->Name("start to the window, 10,000 files")->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(firstPicture)
    ->Name("start-up timer to the first picture")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(3);
BENCHMARK(liveFile)
    ->Name("live file to its picture")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(3);
BENCHMARK(secondPass)->Name("second pass of 36 frames")->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(2);
BENCHMARK(memoryOfLoops)->Name("memory over loops")->Unit(benchmark::kSecond)->Iterations(1);

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("TORV_DEMO_HOME")) {
        qWarning("TORV_DEMO_HOME names no home of the demo");
        return 0;
    }
    qunsetenv("XDG_CONFIG_HOME");
    QSurfaceFormat::setDefaultFormat(QVTKOpenGLNativeWidget::defaultFormat());
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Halmera"));
    QCoreApplication::setApplicationName(QStringLiteral("TORV3D"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
