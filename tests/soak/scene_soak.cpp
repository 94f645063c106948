// Scenes built and drawn over and over, as surfaces and as volumes, some of them abandoned half-way: the memory must
// stand still. usage: soak_scenes DATA3D COUNT

#include "datalib/TORV3DTop.h"
#include "datalib/TORVDataStore.h"
#include "settings/TORVDisplayState.h"
#include "settings/TORVGeneralSettings.h"
#include "settings/TORVProductSettings.h"
#include "utils/TORVLog.h"
#include "visualization/TORVVisualization.h"
#include "visualization/TORVVisualizationObserver.h"

#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <boost/make_shared.hpp>

#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <malloc.h>
#include <unistd.h>

namespace
{

constexpr int WarmUp = 50;              // scenes until every cache is filled
constexpr int ReportPeriod = 100;       // scenes
constexpr double AllowedGrowth_MB = 24; // what the allocator keeps of blocks of changing sizes

double megabytes()
{
    ::malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0.0;
    }
    return file.readAll().split(' ').value(1).toDouble() * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1e6;
}

class Soak final : public TORVVisualizationObserver
{
public:
    explicit Soak(const QString& directory) : _store(boost::make_shared<TORVDataStore>(nullptr))
    {
        QEventLoop loop;
        QObject::connect(_store.get(), &TORVDataStore::initialized3d, &loop, &QEventLoop::quit);
        _store->setDirectories(directory, QString(), QString(), _cache.path());
        loop.exec();
        _store->getDataSequence(_leaves, QStringLiteral("*"), QStringLiteral("CAPPI"), QStringLiteral("*"));
        _window->SetOffScreenRendering(1);
        _window->SetSize(400, 300);
        _window->AddRenderer(_renderer);
        _visualization = boost::make_shared<TORVVisualization>(this);
    }

    bool isReady() const { return !_leaves.isEmpty(); }

    void build(int number)
    {
        const TORVFileLeaf& leaf = *_leaves.at(number % _leaves.size());
        TORVProductSettings settings(leaf.getProduct(), leaf.getConfiguration(), leaf.getFile()->getDataType());
        settings.setRenderingType(number % 2 == 0 ? TORVProductSettings::SURFACE : TORVProductSettings::VOLUME);
        settings.save();
        const auto frame = boost::make_shared<TORVDataFrame>(_store, leaf.getSite(), leaf.getTime(), leaf.getProduct(),
                                                             leaf.getConfiguration(), QString(), 180, 1.5);
        if (number % 7 == 0) {
            TORVVisualization abandoned(this);
            abandoned.setSourceData(frame);
            abandoned.updateVisualization(false);
        }
        _visualization->setSourceData(frame);
        _visualization->updateVisualization(number % 3 == 0);
        _loop.exec();
        _renderer->RemoveAllViewProps();
        _renderer->AddViewProp(_visualization->getResultItem()->getResults());
        _renderer->ResetCamera();
        _window->Render();
    }

    void visualizationFinished(TORVVisualization*) override { _loop.quit(); }
    boost::shared_ptr<const TORVGeneralSettings> getVisualizationGeneralSettings() override { return _general; }
    boost::shared_ptr<const TORVDisplayState> getVisualizationDisplayState() override { return _state; }

private:
    QTemporaryDir _cache;
    TORVDataStore::Ptr _store;
    QVector<TORVFileLeaf::Ptr> _leaves;
    QEventLoop _loop;
    boost::shared_ptr<TORVGeneralSettings> _general = boost::make_shared<TORVGeneralSettings>();
    boost::shared_ptr<TORVDisplayState> _state = boost::make_shared<TORVDisplayState>();
    vtkNew<vtkRenderWindow> _window;
    vtkNew<vtkRenderer> _renderer;
    TORVVisualization::Ptr _visualization; // the first to go: its props have been drawn in the window
};

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    QTextStream out(stdout);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        out << "usage: soak_scenes DATA3D COUNT\n";
        return 2;
    }
    TORVLog::Instance();
    Soak soak(arguments.at(1));
    if (!soak.isReady()) {
        out << "no volumes in " << arguments.at(1) << '\n';
        return 2;
    }
    double before = 0.0;
    const int count = arguments.at(2).toInt();
    for (int number = 0; number < count; ++number) {
        soak.build(number);
        if (number == WarmUp) {
            before = megabytes();
        }
        if (number % ReportPeriod == 0) {
            out << number << " scenes, " << megabytes() << " MB" << Qt::endl;
        }
    }
    const double growth = megabytes() - before;
    out << count << " scenes, grown by " << growth << " MB since the first " << WarmUp << Qt::endl;
    return growth < AllowedGrowth_MB ? 0 : 1;
}
