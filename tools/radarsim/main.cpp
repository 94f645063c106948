#include "radarsim/TORVCutPicture.h"
#include "radarsim/TORVProgress.h"
#include "radarsim/TORVSimulator.h"
#include "radarsim/TORVSimulatorOptions.h"

#include <QCoreApplication>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <thread>
#include <unistd.h>

namespace
{

enum ExitStatus : int
{
    DONE = 0,
    FAILED = 1,
    WRONG_USE = 2
};

std::atomic<bool> stopAsked{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may only touch lock-free atomics");

void askToStop(int)
{
    stopAsked = true;
}

/// Sleeps in short slices, so that Ctrl+C is answered at once.
bool waitFor(double seconds)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds Slice(50);
    const Clock::time_point end =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    while (!stopAsked && Clock::now() < end) {
        std::this_thread::sleep_for(Slice);
    }
    return !stopAsked;
}

int complain(const QString& words, ExitStatus status)
{
    std::fprintf(stderr, "torv3dsim: %s\n", qPrintable(words));
    return status;
}

int drawPicture(const TORVSimulatorOptions& options)
{
    const TORVFile::CPtr file = TORVFile::openChecked(options.pictureFrom);
    if (!file->isValid()) {
        return complain(QStringLiteral("%1: not a complete product").arg(options.pictureFrom), FAILED);
    }
    const QImage image = TORVCutPicture::draw(*file, {});
    if (image.isNull() || !image.save(options.pictureTo, "PNG")) {
        return complain(QStringLiteral("%1: the picture cannot be made").arg(options.pictureTo), FAILED);
    }
    return DONE;
}

int generate(const TORVSimulatorOptions& options)
{
    std::signal(SIGINT, askToStop);
    std::signal(SIGTERM, askToStop);
    TORVProgress progress(stdout, isatty(STDOUT_FILENO) != 0);
    TORVSimulator simulator(options, progress, waitFor);
    const QString error = simulator.run();
    if (!error.isEmpty()) {
        return complain(error, FAILED);
    }
    progress.say(QStringLiteral("show it with: HOME=%1 torv3dview").arg(simulator.home()));
    return DONE;
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    const TORVSimulatorOptions options = TORVSimulatorOptions::parse(QCoreApplication::arguments().mid(1));
    switch (options.action) {
    case TORVSimulatorOptions::SHOW_HELP:
        std::fputs(qPrintable(TORVSimulatorOptions::helpText()), stdout);
        return DONE;
    case TORVSimulatorOptions::REJECT:
        return complain(options.error + QStringLiteral("\nTry --help."), WRONG_USE);
    case TORVSimulatorOptions::DRAW_PICTURE:
        return drawPicture(options);
    case TORVSimulatorOptions::GENERATE:
        return generate(options);
    }
    return WRONG_USE;
}
