// The layers round the 3-D product: all of them from scratch with 64 blocks of ground from the cache, and a change of
// frame at one site, where only what depends on the moment should be built. Counters tell the milliseconds of each
// layer and how many layers were built.

#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"
#include "datalib/TORVDataFrame.h"
#include "datalib/TORVDataStore.h"
#include "datalib/TORVTerrainDir.h"
#include "datalib/TORVTerrainSet.h"
#include "radarsim/TORVProductWriter.h"
#include "settings/TORVDisplayLayer.h"
#include "settings/TORVDisplayState.h"
#include "settings/TORVGeneralSettings.h"
#include "settings/TORVProductSettings.h"
#include "visualization/TORVVisualElement.h"
#include "visualization/TORVVisualGroup.h"
#include "visualization/TORVVisualization.h"
#include "visualization/TORVVisualizationObserver.h"
#include "visualization/TORVVisualizationParameters.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QtEndian>

#include <benchmark/benchmark.h>

#include <boost/make_shared.hpp>

#include <vtkProp.h>

#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace
{

constexpr double RadarLat = 46.0408;
constexpr double RadarLon = 8.8332;
constexpr int FirstLatitude = 42;
constexpr int FirstLongitude = 5;
constexpr int TilesASide = 8;
constexpr int Points = 1201;
constexpr int Landmarks = 60;
constexpr int TimeWindow = 180;
constexpr double TerrainFactor = 1.5;
const char* const Moments[] = {"260714120000", "260714120500"};

uint32_t binaryAngle(double degrees)
{
    return static_cast<uint32_t>(std::lround(degrees / 360.0 * 4294967296.0));
}

void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("can't write %s", qUtf8Printable(path));
    }
}

// Products of two moments, ground and landmarks of one radar, all on a disk of their own.
class World
{
public:
    World()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("Halmera"));
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path("config"));
        for (const char* const directory : {"3d", "2d", "ground", "config/Halmera"}) {
            QDir(_directory.path()).mkpath(QLatin1String(directory));
        }
        for (const char* const moment : Moments) {
            writeProducts(QLatin1String(moment));
        }
        writeTiles();
        writeLandmarks();
        openStore();
    }

    TORVDataFrame::Ptr frame(const char* moment) const
    {
        return boost::make_shared<TORVDataFrame>(_store, QStringLiteral("BENCH"), QLatin1String(moment),
                                                 QStringLiteral("CAPPI"), QStringLiteral("Z"), QStringLiteral("MAX"),
                                                 TimeWindow, TerrainFactor);
    }

    // The ground of a frame that nobody has loaded.
    boost::shared_ptr<TORVTerrainSet> unloadedGround(const TORVDataFrame& frame) const
    {
        const TORVTerrainSet& set = *frame.getTerrainSet();
        TORVTerrainDir directory(path("ground"), path("cache"));
        directory.scanFiles();
        return directory.getTerrainSet(set.getProjection(), set.getLowerLeft(), set.getUpperRight());
    }

private:
    QString path(const char* name) const { return _directory.filePath(QLatin1String(name)); }

    void writeProducts(const QString& moment) const
    {
        TORVProductFields fields;
        fields.siteName = "BENCH";
        fields.siteLatitude = binaryAngle(RadarLat);
        fields.siteLongitude = binaryAngle(RadarLon);
        fields.dataSeconds += moment.mid(8, 2).toUInt() * 60;
        const QByteArray name = "BEN" + moment.toLatin1();
        write(path("3d/" + name + ".CAPZ"), TORVProductWriter::file(fields, QByteArray(240 * 240 * 20, '\x60')));
        fields.productType = 16;
        fields.zPoints = 1;
        write(path("2d/" + name + ".MAX"), TORVProductWriter::file(fields, QByteArray(240 * 240, '\x60')));
    }

    void writeTiles() const
    {
        for (int lat = FirstLatitude; lat < FirstLatitude + TilesASide; ++lat) {
            for (int lon = FirstLongitude; lon < FirstLongitude + TilesASide; ++lon) {
                QByteArray words(2 * Points * Points, '\0');
                for (int i = 0; i < Points * Points; ++i) {
                    const double y = lat - static_cast<double>(i / Points) / (Points - 1);
                    const double x = lon + static_cast<double>(i % Points) / (Points - 1);
                    const double height = 1500.0 + 900.0 * std::sin(9.0 * y) * std::cos(7.0 * x);
                    qToBigEndian(static_cast<qint16>(height), words.data() + 2 * i);
                }
                const QByteArray name =
                    "N" + QByteArray::number(lat) + "E" + QByteArray::number(lon).rightJustified(3, '0');
                write(path("ground/" + name + ".hgt"), words);
            }
        }
    }

    void writeLandmarks() const
    {
        QByteArray text = "[LANDMARKS]\n";
        for (int i = 1; i <= Landmarks; ++i) {
            const QByteArray key = "landmarks\\" + QByteArray::number(i) + '\\';
            const double north = std::fmod(i * 0.618034, 1.0) * 4.0 - 2.0;
            const double east = std::fmod(i * 0.414214, 1.0) * 4.0 - 2.0;
            text += key + "label=Place " + QByteArray::number(i) + '\n';
            text += key + "location\\lat=" + QByteArray::number(RadarLat + north) + '\n';
            text += key + "location\\lon=" + QByteArray::number(RadarLon + east) + '\n';
            text += key + "color\\r=0.9\n";
        }
        write(path("config/Halmera/TORV3DLandmarks.conf"),
              text + "landmarks\\size=" + QByteArray::number(Landmarks) + '\n');
    }

    void openStore()
    {
        _store = boost::make_shared<TORVDataStore>(nullptr);
        _store->setDirectories(path("3d"), path("2d"), path("ground"), path("cache"));
        while (!_store->getDirTop3d() || !_store->getDirTop2d()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        }
    }

    QString path(const QByteArray& name) const { return path(name.constData()); }

    QTemporaryDir _directory;
    TORVDataStore::Ptr _store;
};

World& world()
{
    static World instance;
    return instance;
}

struct Layer
{
    int key;
    const char* name;
};

const Layer Layers[] = {
    {TORVDisplayLayer::LAYER_3DOUTLINE, "outline"},     {TORVDisplayLayer::LAYER_3DPRODUCT, "product3d"},
    {TORVDisplayLayer::LAYER_2DPRODUCT, "product2d"},   {TORVDisplayLayer::LAYER_3DTERRAIN, "terrain"},
    {TORVDisplayLayer::LAYER_LATLONGRID, "latlongrid"}, {TORVDisplayLayer::LAYER_GEOLABELS, "geolabels"},
    {TORVDisplayLayer::LAYER_RANGERINGS, "rangerings"},
};

// Of all layers but the 3-D product.
std::map<int, boost::shared_ptr<TORVLayerParameters>> parameters(const TORVDataFrame::Ptr& frame)
{
    TORVVisualizationParameters all;
    all.set(frame, TORVGeneralSettings(), *frame->getProductSettings());
    const boost::shared_ptr<TORVTerrainSet> ground = world().unloadedGround(*frame);
    all._parsTerrain.setTerrainSet(ground);
    all._parsGeoLabels.setTerrainSet(ground);
    return {
        {TORVDisplayLayer::LAYER_3DOUTLINE, boost::make_shared<TORVLayerParameters3dOutline>(all._pars3dOutline)},
        {TORVDisplayLayer::LAYER_2DPRODUCT, boost::make_shared<TORVLayerParameters2d>(all._pars2d)},
        {TORVDisplayLayer::LAYER_3DTERRAIN, boost::make_shared<TORVLayerParametersTerrain>(all._parsTerrain)},
        {TORVDisplayLayer::LAYER_LATLONGRID, boost::make_shared<TORVLayerParametersLatLonGrid>(all._parsLatLonGrid)},
        {TORVDisplayLayer::LAYER_GEOLABELS, boost::make_shared<TORVLayerParametersGeoLabels>(all._parsGeoLabels)},
        {TORVDisplayLayer::LAYER_RANGERINGS, boost::make_shared<TORVLayerParametersRadarRings>(all._parsRadarRings)},
    };
}

void layersFromScratch(benchmark::State& state)
{
    const TORVDataFrame::Ptr frame = world().frame(Moments[0]);
    if (!frame->getData2d() || !frame->getTerrainSet()) {
        state.SkipWithError("the data of the frame is not there");
        return;
    }
    const std::atomic<bool> abort{false};
    world().unloadedGround(*frame)->loadFiles(abort); // fills the cache
    std::map<int, double> milliseconds;
    TORVVisualGroup group(TORVDisplayLayer::GROUP_GEOLAYERS);
    for (auto _ : state) {
        state.PauseTiming();
        const auto wanted = parameters(frame);
        std::vector<TORVVisualElement::Ptr> elements;
        state.ResumeTiming();
        for (const Layer& layer : Layers) {
            if (layer.key == TORVDisplayLayer::LAYER_3DPRODUCT) {
                continue;
            }
            QElapsedTimer timer;
            timer.start();
            elements.push_back(TORVVisualElement::makeElement(&group, layer.key));
            elements.back()->update(wanted.at(layer.key), true, abort);
            milliseconds[layer.key] += static_cast<double>(timer.nsecsElapsed()) * 1e-6;
        }
        state.PauseTiming();
        elements.clear();
        state.ResumeTiming();
    }
    for (const Layer& layer : Layers) {
        if (milliseconds.count(layer.key) == 1) {
            state.counters[layer.name] = milliseconds[layer.key] / static_cast<double>(state.iterations());
        }
    }
    state.counters["blocks"] = frame->getTerrainSet()->getBlocks().size();
}

class Observer final : public TORVVisualizationObserver
{
public:
    void visualizationFinished(TORVVisualization* /*visualization*/) override { ++finished; }
    boost::shared_ptr<const TORVGeneralSettings> getVisualizationGeneralSettings() override { return general; }
    boost::shared_ptr<const TORVDisplayState> getVisualizationDisplayState() override { return state; }

    boost::shared_ptr<TORVGeneralSettings> general = boost::make_shared<TORVGeneralSettings>();
    boost::shared_ptr<TORVDisplayState> state = boost::make_shared<TORVDisplayState>();
    int finished = 0;
};

using Props = std::map<int, vtkSmartPointer<vtkProp>>;

Props show(TORVVisualization& visualization, Observer& observer, const TORVDataFrame::Ptr& frame)
{
    const int before = observer.finished;
    visualization.setSourceData(frame);
    visualization.updateVisualization(false);
    while (observer.finished == before) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
    Props props;
    for (const Layer& layer : Layers) {
        props[layer.key] =
            visualization.getResultItem()->getDisplayState()->getLayer(layer.key)->getElement()->getProp();
    }
    return props;
}

void changeOfFrame(benchmark::State& state)
{
    Observer observer;
    TORVVisualization visualization(&observer);
    const TORVDataFrame::Ptr frames[] = {world().frame(Moments[0]), world().frame(Moments[1])};
    Props props = show(visualization, observer, frames[0]);
    std::map<int, int> built;
    int shown = 0;
    for (auto _ : state) {
        const Props now = show(visualization, observer, frames[++shown % 2]);
        for (const Layer& layer : Layers) {
            built[layer.key] += now.at(layer.key) != props.at(layer.key) ? 1 : 0;
        }
        props = now;
    }
    double all = 0.0;
    for (const Layer& layer : Layers) {
        const double share = static_cast<double>(built[layer.key]) / static_cast<double>(state.iterations());
        state.counters[layer.name] = share;
        all += share;
    }
    state.counters["layers_built"] = all;
}

} // namespace

BENCHMARK(layersFromScratch)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(changeOfFrame)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
