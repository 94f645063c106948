// The main window beside a radar that writes on, playing its loop all the time, stepping and clicking now and then:
// memory must stand still, and in the end the window must show what a fresh look at the directory finds.
// usage: soak_window SECONDS; the home directory's settings name the products. The radar must stop by then.

#include "datalib/TORV3DTop.h"
#include "gui/TORVAnimation.h"
#include "gui/TORVAnimationFrame.h"
#include "gui/TORVGUI.h"
#include "settings/TORVGeneralSettings.h"
#include "visualization/TORVFramePacer.h"
#include "visualization/TORVRenderer.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPushButton>
#include <QSurfaceFormat>
#include <QTextStream>
#include <QTimer>
#include <QVTKOpenGLNativeWidget.h>

#include <algorithm>

#include <malloc.h>
#include <unistd.h>

namespace
{

constexpr int ReportPeriod_s = 30;
constexpr int Settling_s = 60; // after the radar has stopped: until the last file is in
constexpr double WarmUp = 0.3; // of the time, until every frame of the loop has been built
constexpr double AllowedGrowth_MB = 120;

double megabytes()
{
    ::malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0.0;
    }
    return file.readAll().split(' ').value(1).toDouble() * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1e6;
}

class Soak
{
public:
    Soak() { _window.show(); }

    void run(int seconds)
    {
        QElapsedTimer clock;
        clock.start();
        int reported = 0;
        while (clock.elapsed() < seconds * 1000LL) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
            if (!_window.isPlaying() && _window.getAnimation().getFrameCount() > 1) {
                _window.pushButton_animPlay->click();
            }
            const int now = static_cast<int>(clock.elapsed() / 1000);
            if (now >= reported + ReportPeriod_s) {
                reported = now;
                report(now);
                disturb(now / ReportPeriod_s);
                if (_warm_MB == 0.0 && now > WarmUp * seconds) {
                    _warm_MB = megabytes();
                }
            }
        }
    }

    // Plays no more and waits until nothing comes any more.
    void settle()
    {
        if (_window.isPlaying()) {
            _window.pushButton_animPlay->click();
        }
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < Settling_s * 1000LL || _window.isBusy()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
        }
        _window.horizontalSlider_animation->setValue(_window.horizontalSlider_animation->maximum());
        clock.restart();
        while (clock.elapsed() < 5000 || _window.isBusy()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
        }
    }

    bool check()
    {
        const auto settings = _window.getCurrentGeneralSettings();
        TORV3DTop fresh(settings->get3DDir());
        fresh.construct();
        const auto frame = _window.getCurrentDataFrame();
        if (!frame) {
            _out << "nothing is shown\n";
            return false;
        }
        const auto found =
            fresh.findLeaves(frame->getSite(), frame->getProduct(), frame->getConfiguration(), QStringLiteral("*"));
        qint64 newest = 0;
        for (const TORVDirectory::Ptr& node : qAsConst(*found)) {
            newest = std::max(newest, boost::dynamic_pointer_cast<TORVFileLeaf>(node)->dataTime_ms());
        }
        int missing = 0;
        for (const TORVAnimation::FramePtr& each : _window.getAnimation().getFrames()) {
            const TORVFileLeaf& leaf = *each->getDataFrame()->getData3d();
            missing +=
                fresh.findLeaf(leaf.getSite(), leaf.getProduct(), leaf.getConfiguration(), leaf.getTime()) ? 0 : 1;
        }
        const bool isNewest = frame->getData3d()->dataTime_ms() == newest;
        const double growth = megabytes() - _warm_MB;
        _out << "volumes in the directory: " << found->size() << ", frames: " << _window.getAnimation().getFrameCount()
             << ", frames without a file: " << missing << ", newest is shown: " << (isNewest ? "yes" : "no")
             << ", growth: " << growth << " MB\n";
        return isNewest && missing == 0 && growth < AllowedGrowth_MB;
    }

private:
    void report(int second)
    {
        _out << second << " s: " << megabytes() << " MB, frames " << _window.getAnimation().getFrameCount()
             << ", pictures " << _window.getCurrentRenderer()->getPacer()->getDrawCount() << '\n';
        _out.flush();
    }

    // What a user does meanwhile.
    void disturb(int number)
    {
        switch (number % 4) {
        case 0:
            _window.pushButton_RangeRingsVisible->click();
            break;
        case 1:
            _window.nightMode->trigger();
            break;
        case 2:
            _window.pushButton_animPrev->click();
            break;
        default:
            _window.pushButton_3DTerrainVisible->click();
            break;
        }
    }

    QTextStream _out{stdout};
    TORVGUI _window;
    double _warm_MB = 0.0;
};

} // namespace

int main(int argc, char* argv[])
{
    QSurfaceFormat::setDefaultFormat(QVTKOpenGLNativeWidget::defaultFormat());
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Halmera"));
    QCoreApplication::setApplicationName(QStringLiteral("TORV3D"));
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2) {
        QTextStream(stdout) << "usage: soak_window SECONDS\n";
        return 2;
    }
    Soak soak;
    soak.run(arguments.at(1).toInt());
    soak.settle();
    return soak.check() ? 0 : 1;
}
