#pragma once

#include "visualization/TORVVisualizationPipelineItem.h"

#include <QMutex>
#include <QQueue>
#include <QThread>
#include <QWaitCondition>

#include <atomic>

/**
 * A worker thread that builds scenes, one after the other in the order in which they came.
 *
 *     main thread                         worker
 *     addInput(item) -> busy -> input --> update, readResults
 *     getResultItem() <------- results <- not busy, allDone()
 *
 * An item that was aborted comes back by another queue and is let go by the main thread, since what it draws may have
 * been drawn in a window. The thread starts with the first item: an idle pipeline costs nothing.
 *
 * Thread: made, used and destroyed on the main thread.
 */
class TORVVisualizationPipeline final : public QThread
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVVisualizationPipeline)

public:
    using Item = TORVVisualizationPipelineItem;

    TORVVisualizationPipeline();

    /// Stops.
    ~TORVVisualizationPipeline() override;

    /// Queues an item, which must not be in the queue or at work: it is busy from now on until its `allDone`.
    void addInput(const Item::Ptr& item);

    /// The item that was finished first; null when there is none.
    Item::Ptr getResultItem();

    /// From now on nothing is built any more; what is queued is let through untouched.
    void abort();

    /// Aborts, ends the thread and waits for it, as long as the element at work needs to see the abort. Final.
    void stop();

Q_SIGNALS:
    /// After each item, aborted or not, when it is no longer busy.
    void allDone();

protected:
    void run() override;

private:
    Item::Ptr waitForInput();
    void work(Item::Ptr item);
    void addOutput(Item::Ptr item);

    std::atomic<bool> _running{true};
    std::atomic<bool> _abort{false};
    QMutex _mutex; // guards the queues
    QWaitCondition _wait;
    QQueue<Item::Ptr> _input;
    QQueue<Item::Ptr> _results;
    QQueue<Item::Ptr> _aborted;
};
