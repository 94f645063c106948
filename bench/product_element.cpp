// A product file to finished iso-surfaces, and to a ready volume, by the viewer's own element, against the same job
// written straight in VTK: once with its classic filters, once with the fastest that it has. Real storms are measured
// where TORV_REAL_PRODUCTS names their directory. Counters tell the memory beyond that of the file.

#include "radarsim/TORVProductWriter.h"
#include "settings/TORVLayerParameters.h"
#include "visualization/TORV3DVisualElement.h"
#include "visualization/TORVVisualGroup.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <boost/make_shared.hpp>

#include <vtkContourFilter.h>
#include <vtkFlyingEdges3D.h>
#include <vtkImageData.h>
#include <vtkImageGaussianSmooth.h>
#include <vtkImageImport.h>
#include <vtkImageShrink3D.h>
#include <vtkImageThreshold.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkStripper.h>

#include <chrono>
#include <cmath>
#include <map>
#include <thread>

#include <malloc.h>

namespace
{

constexpr double SurfacesDbz[] = {55.0, 45.0, 35.0, 20.0};

struct Volume
{
    QString name;
    QString path;
};

// Towers of echo in a mostly empty sky, as storms are, with a rough surface.
double storm(double x, double y, double z)
{
    double most = -40.0;
    for (int i = 0; i < 12; ++i) {
        const double cx = 0.1 + 0.8 * std::fmod(i * 0.618, 1.0);
        const double cy = 0.1 + 0.8 * std::fmod(i * 0.377, 1.0);
        const double distance = std::hypot(x - cx, y - cy) / (0.03 + 0.01 * (i % 4));
        most = std::max(most, 62.0 - 18.0 * distance - 25.0 * z * z);
    }
    return most + 3.0 * std::sin(97.0 * x) * std::cos(83.0 * y + 31.0 * z);
}

class Volumes
{
public:
    Volumes()
    {
        for (const int itemSize : {1, 2}) {
            write(240, 20, itemSize);
            write(480, 32, itemSize);
            write(1000, 40, itemSize);
        }
        const QDir real(qEnvironmentVariable("TORV_REAL_PRODUCTS"));
        for (const char* const name : {"LEM220628071928.CAPZ", "LEM220628071928.CAPZH", "LEM220628071928.CAPZ2H"}) {
            if (real.exists(QLatin1String(name))) {
                _all.push_back({QLatin1String(name), real.filePath(QLatin1String(name))});
            }
        }
    }

    const std::vector<Volume>& all() const { return _all; }

private:
    void write(int side, int levels, int itemSize)
    {
        TORVProductFields fields;
        fields.xPoints = fields.yPoints = static_cast<uint32_t>(side);
        fields.zPoints = static_cast<uint32_t>(levels);
        fields.dataType = itemSize == 1 ? 2 : 9;
        QByteArray data(side * side * levels * itemSize, '\0');
        int item = 0;
        for (int z = 0; z < levels; ++z) {
            for (int y = 0; y < side; ++y) {
                for (int x = 0; x < side; ++x, ++item) {
                    const double dbz = storm(double(x) / side, double(y) / side, double(z) / levels);
                    if (dbz > 5.0 && itemSize == 1) {
                        data[item] = static_cast<char>(std::lround(2.0 * dbz + 64.0));
                    } else if (dbz > 5.0) {
                        const auto raw = static_cast<uint16_t>(std::lround(100.0 * dbz + 32768.0));
                        data[2 * item] = static_cast<char>(raw & 0xFF);
                        data[2 * item + 1] = static_cast<char>(raw >> 8);
                    }
                }
            }
        }
        const QString name = QStringLiteral("%1x%1x%2, %3 byte").arg(side).arg(levels).arg(itemSize);
        const QString path = _directory.filePath(
            QStringLiteral("SIM26071412%1%2.CAPZ").arg(side % 100, 2, 10, QLatin1Char('0')).arg(itemSize, 2));
        TORVProductWriter::write(path, TORVProductWriter::file(fields, data));
        _all.push_back({name, path});
    }

    QTemporaryDir _directory;
    std::vector<Volume> _all;
};

const Volumes& volumes()
{
    static const Volumes instance;
    return instance;
}

// ---- Memory: what the process held at most and holds now, from Linux itself ----

long kilobytes(const char* what)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(what)) {
            return line.mid(static_cast<int>(qstrlen(what)) + 1).simplified().split(' ').first().toLong();
        }
    }
    return 0;
}

void forgetPeak()
{
    ::malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (file.open(QIODevice::WriteOnly)) {
        file.write("5");
    }
}

// ---- The viewer's element ----

struct Settings
{
    int shrink;
    bool isVolume;
};

boost::shared_ptr<TORVLayerParameters3d> parameters(const QString& path, const Settings& settings)
{
    auto params = boost::make_shared<TORVLayerParameters3d>();
    params->setDataFile(TORVFile::openChecked(path));
    params->setDataShrinkH(settings.shrink);
    params->setDataShrinkV(1);
    params->setDataSmooth(1.0);
    params->setRenderingType(settings.isVolume ? TORVProductSettings::VOLUME : TORVProductSettings::SURFACE);
    QMap<double, int> surfaces;
    for (const double value : SurfacesDbz) {
        surfaces[value] = 50;
    }
    params->setSurfacePars(surfaces);
    params->setVolumeValueLow(10.0);
    params->setVolumeValueHigh(60.0);
    return params;
}

void element(benchmark::State& state, const QString& path, const Settings& settings)
{
    const std::atomic<bool> abort{false};
    const auto params = parameters(path, settings);
    TORVVisualGroup group(10);
    for (auto _ : state) {
        TORV3DVisualElement made(&group, 12);
        made.update(params, true, abort);
        benchmark::DoNotOptimize(made.getProp().Get());
    }
    forgetPeak();
    const long before = kilobytes("VmRSS:");
    TORV3DVisualElement made(&group, 12);
    made.update(params, true, abort);
    state.counters["peak_MB"] = static_cast<double>(kilobytes("VmHWM:") - before) / 1024.0;
    ::malloc_trim(0);
    state.counters["kept_MB"] = static_cast<double>(kilobytes("VmRSS:") - before) / 1024.0;
    const TORVFile& file = *params->getDataFile();
    state.counters["file_MB"] = file.getTotalFileSize() / 1048576.0;
}

void unchanged(benchmark::State& state)
{
    const std::atomic<bool> abort{false};
    const auto params = parameters(volumes().all().front().path, {1, false});
    TORVVisualGroup group(10);
    TORV3DVisualElement made(&group, 12);
    made.update(params, true, abort);
    for (auto _ : state) {
        made.update(boost::make_shared<TORVLayerParameters3d>(*params), true, abort);
    }
}

// From the abort's being set, 30 ms into the largest build, to the element's return.
void answerToAbort(benchmark::State& state, const QString& path)
{
    const auto params = parameters(path, {1, false});
    TORVVisualGroup group(10);
    for (auto _ : state) {
        std::atomic<bool> abort{false};
        TORV3DVisualElement made(&group, 12);
        std::thread worker([&] { made.update(params, true, abort); });
        std::this_thread::sleep_for(std::chrono::milliseconds(state.range(0)));
        const auto begin = std::chrono::steady_clock::now();
        abort = true;
        worker.join();
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
    }
}

// ---- The same in VTK ----

struct Chain
{
    QByteArray bytes;
    vtkNew<vtkImageImport> import;
    vtkNew<vtkImageThreshold> threshold;
    vtkNew<vtkImageShrink3D> shrink;
    vtkNew<vtkImageGaussianSmooth> smooth;

    Chain(const TORVFile& product, int factor)
    {
        QFile file(product.getPath());
        if (!file.open(QIODevice::ReadOnly)) {
            qFatal("can't read %s", qUtf8Printable(product.getPath()));
        }
        bytes = file.readAll();
        import->SetImportVoidPointer(bytes.data() + product.getHeaderSize());
        const int extent[6] = {0, product.getXPoints() - 1, 0, product.getYPoints() - 1, 0, product.getZPoints() - 1};
        import->SetWholeExtent(const_cast<int*>(extent));
        import->SetDataExtent(const_cast<int*>(extent));
        import->SetDataScalarType(product.getItemSize() == 1 ? VTK_UNSIGNED_CHAR : VTK_UNSIGNED_SHORT);
        import->SetDataSpacing(1.0, 1.0, 5.0);
        threshold->SetInputConnection(import->GetOutputPort());
        threshold->ReplaceOutOn();
        threshold->SetOutValue(0.0);
        threshold->ThresholdBetween(product.getDataType().getMinAbsValue(), product.getDataType().getMaxAbsValue());
        vtkAlgorithm* last = threshold;
        if (factor > 1) {
            shrink->SetInputConnection(last->GetOutputPort());
            shrink->AveragingOn();
            shrink->SetShrinkFactors(factor, factor, 1);
            last = shrink;
        }
        smooth->SetInputConnection(last->GetOutputPort());
        smooth->SetDimensionality(3);
        smooth->SetRadiusFactors(3.0, 3.0, 3.0);
        smooth->SetStandardDeviations(1.0 / factor, 1.0 / factor, 1.0);
        smooth->Update();
    }
};

template <class Filter>
void setValues(Filter* filter, const TORVDataType& type)
{
    int index = 0;
    for (const double value : SurfacesDbz) {
        filter->SetValue(index++, type.displayToAbsoluteValue(value));
    }
}

void classicVTK(benchmark::State& state, const QString& path, const Settings& settings)
{
    const TORVFile::CPtr file = TORVFile::openChecked(path);
    for (auto _ : state) {
        const Chain chain(*file, settings.shrink);
        if (settings.isVolume) {
            continue;
        }
        vtkNew<vtkContourFilter> contour;
        contour->SetInputData(chain.smooth->GetOutput());
        contour->ComputeNormalsOn();
        contour->ComputeGradientsOff();
        contour->ComputeScalarsOn();
        contour->UseScalarTreeOn();
        setValues(contour.Get(), file->getDataType());
        vtkNew<vtkStripper> stripper;
        stripper->SetMaximumLength(99999);
        stripper->SetInputConnection(contour->GetOutputPort());
        stripper->Update();
    }
}

void bestVTK(benchmark::State& state, const QString& path, const Settings& settings)
{
    const TORVFile::CPtr file = TORVFile::openChecked(path);
    for (auto _ : state) {
        const Chain chain(*file, settings.shrink);
        if (settings.isVolume) {
            continue;
        }
        vtkNew<vtkFlyingEdges3D> contour;
        contour->SetInputData(chain.smooth->GetOutput());
        contour->ComputeNormalsOn();
        contour->ComputeGradientsOff();
        contour->ComputeScalarsOn();
        setValues(contour.Get(), file->getDataType());
        contour->Update();
    }
}

using Job = void (*)(benchmark::State&, const QString&, const Settings&);

void add(const char* who, Job job, const Volume& volume, const Settings& settings)
{
    const QString name =
        QStringLiteral("%1, %2, %3, %4")
            .arg(volume.name, settings.isVolume ? QStringLiteral("volume") : QStringLiteral("surfaces"),
                 settings.shrink == 1 ? QStringLiteral("full") : QStringLiteral("a quarter"), QLatin1String(who));
    benchmark::RegisterBenchmark(qPrintable(name), [=](benchmark::State& state) { job(state, volume.path, settings); })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

} // namespace

int main(int argc, char** argv)
{
    for (const Volume& volume : volumes().all()) {
        for (const Settings settings : {Settings{1, false}, Settings{4, false}, Settings{1, true}, Settings{4, true}}) {
            add("ours", element, volume, settings);
            add("classic VTK", classicVTK, volume, settings);
            add("best VTK", bestVTK, volume, settings);
        }
    }
    benchmark::RegisterBenchmark("unchanged parameters", unchanged)->Unit(benchmark::kMicrosecond);
    const QString largest = volumes().all()[5].path;
    benchmark::RegisterBenchmark("answer to an abort", [=](benchmark::State& state) { answerToAbort(state, largest); })
        ->Unit(benchmark::kMillisecond)
        ->UseManualTime()
        ->Arg(30)
        ->Arg(100)
        ->Arg(200)
        ->Iterations(5);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
