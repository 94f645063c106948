#include "visualization/TORVVisualizationPipeline.h"

#include "utils/TORVLog.h"

#include <QMutexLocker>

#include <cassert>

namespace
{

void logDebug(const char* text)
{
    TORVLog::Instance()->logDebug(QLatin1String(text));
}

} // namespace

TORVVisualizationPipeline::TORVVisualizationPipeline() = default;

TORVVisualizationPipeline::~TORVVisualizationPipeline()
{
    stop();
}

void TORVVisualizationPipeline::addInput(const Item::Ptr& item)
{
    assert(!item->isBusy());
    {
        const QMutexLocker lock(&_mutex);
        item->setBusy(true);
        _input.enqueue(item);
        _wait.wakeOne();
    }
    if (_running && !isRunning()) {
        start();
    }
}

TORVVisualizationPipeline::Item::Ptr TORVVisualizationPipeline::getResultItem()
{
    const QMutexLocker lock(&_mutex);
    return _results.isEmpty() ? Item::Ptr() : _results.dequeue();
}

void TORVVisualizationPipeline::abort()
{
    _abort = true;
}

void TORVVisualizationPipeline::stop()
{
    {
        const QMutexLocker lock(&_mutex);
        _abort = true;
        _running = false;
        _wait.wakeAll();
    }
    wait();
}

void TORVVisualizationPipeline::run()
{
    logDebug("TORVVisualizationPipeline::run() called.");
    while (Item::Ptr item = waitForInput()) {
        work(std::move(item));
    }
    logDebug("TORVVisualizationPipeline::run() finished.");
}

// Null when the pipeline stops.
TORVVisualizationPipeline::Item::Ptr TORVVisualizationPipeline::waitForInput()
{
    const QMutexLocker lock(&_mutex);
    while (_running && _input.isEmpty()) {
        logDebug("TORVVisualizationPipeline::run(): Input queue empty, going to wait.");
        _wait.wait(&_mutex);
        logDebug("TORVVisualizationPipeline::run(): Woke up.");
    }
    return _running ? _input.dequeue() : Item::Ptr();
}

void TORVVisualizationPipeline::work(Item::Ptr item)
{
    logDebug("TORVVisualizationPipeline::run(): New input data.");
    logDebug("Update visualization-->");
    item->update(_abort);
    if (!_abort) {
        item->readResults();
    }
    logDebug("<--Update visualization");
    addOutput(std::move(item));
    logDebug("Signal: visualizationFinished");
    if (_abort) {
        logDebug("TORVVisualizationPipeline::run(): ABORTED!");
    }
    Q_EMIT allDone();
}

// The last that this thread has to do with the item, also by reference.
void TORVVisualizationPipeline::addOutput(Item::Ptr item)
{
    const QMutexLocker lock(&_mutex);
    item->setBusy(false);
    QQueue<Item::Ptr>& queue = _abort ? _aborted : _results;
    queue.enqueue(std::move(item));
}
