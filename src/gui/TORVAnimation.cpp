#include "gui/TORVAnimation.h"

#include "datalib/TORV3DTop.h"
#include "datalib/TORVWildcard.h"
#include "settings/TORVGeneralSettings.h"
#include "utils/TORVLog.h"
#include "visualization/TORVVisualization.h"
#include "visualization/TORVVisualizationObserver.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <cstdlib>
#include <limits>
#include <utility>

namespace
{

constexpr double TerrainFactor = 1.5; // half diagonals of the volume

void logDebug(const QString& text)
{
    TORVLog::Instance()->logDebug(text);
}

void logNumber(const char* words, int number)
{
    logDebug(QLatin1String(words) + QString::number(number));
}

void logRule()
{
    logDebug(QString(60, QLatin1Char('=')));
}

QString nameOf(TORVAnimation::UpdateType type)
{
    switch (type) {
    case TORVAnimation::UPDATE_CLEAR:
        return QStringLiteral("UPDATE_CLEAR");
    case TORVAnimation::UPDATE_NONE:
        return QStringLiteral("UPDATE_NONE");
    case TORVAnimation::UPDATE_PARAMS:
        return QStringLiteral("UPDATE_PARAMS");
    case TORVAnimation::UPDATE_PARTIAL:
        return QStringLiteral("UPDATE_PARTIAL");
    case TORVAnimation::UPDATE_FULL:
        return QStringLiteral("UPDATE_FULL");
    }
    return {};
}

qint64 seconds(qint64 from_ms, qint64 to_ms)
{
    return (to_ms - from_ms) / 1000;
}

// Among files of one time this tells which is which.
TORVAnimation::FramePtr findFrameOf(const TORVAnimation::Frames& frames, const TORVFileLeaf& leaf)
{
    const auto found = std::find_if(frames.begin(), frames.end(), [&leaf](const TORVAnimation::FramePtr& frame) {
        return frame->getDataFrame()->getData3d().get() == &leaf;
    });
    return found == frames.end() ? nullptr : *found;
}

} // namespace

TORVAnimation::TORVAnimation(TORVVisualizationObserver* observer) : _observer(observer)
{
    assert(_observer);
}

TORVAnimation::~TORVAnimation() = default;

bool TORVAnimation::updateFrames(const TORVDataStore::Ptr& store, const QString& site, const QString& product,
                                 const QString& configuration, const QString& product2d, const QDateTime& time,
                                 int timeLength, int timeInterval, bool resetToLast, bool live)
{
    return update({store, site, product, configuration, product2d, timeWindow(), time, timeLength, timeInterval},
                  resetToLast, live);
}

bool TORVAnimation::updateParams3d(const QString& product, const QString& configuration)
{
    Request request = _request;
    request.product = product;
    request.configuration = configuration;
    request.timeWindow = timeWindow();
    request.time = endTimeFor(product, configuration);
    return update(request, false, false);
}

bool TORVAnimation::updateParams2d(const QString& product2d)
{
    Request request = _request;
    request.product2d = product2d;
    request.timeWindow = timeWindow();
    return update(request, false, false);
}

bool TORVAnimation::updateTimeParams(int timeLength, int timeInterval)
{
    Request request = _request;
    request.timeLength = timeLength;
    request.timeInterval = timeInterval;
    request.timeWindow = timeWindow();
    return update(request, false, false);
}

bool TORVAnimation::update(const Request& request, bool resetToLast, bool live)
{
    const UpdateType type = updateTypeOf(request, live);
    logRule();
    logDebug(QLatin1String("update type = ") + nameOf(type));
    QDateTime previousTime;
    if (type == UPDATE_PARTIAL) {
        assert(getCurrentFrame());
        previousTime = getFrameTime();
    }
    _request = request;
    logRequest(resetToLast, live);
    Counts counts;
    if (type == UPDATE_CLEAR) {
        resetAnimation();
    } else if (type == UPDATE_PARAMS) {
        updateAllParameters(counts);
    } else if (type != UPDATE_NONE) {
        rebuild(counts);
    }
    selectFrame(type, resetToLast, previousTime);
    logNumber("framesCreated=", counts.created);
    logNumber("framesReused=", counts.reused);
    logNumber("framesUpdated=", counts.updated);
    logRule();
    return type != UPDATE_NONE && type != UPDATE_PARAMS;
}

TORVAnimation::UpdateType TORVAnimation::updateTypeOf(const Request& request, bool live) const
{
    if (!request.store || request.site.isEmpty() || request.product.isEmpty() || request.configuration.isEmpty()) {
        return UPDATE_CLEAR;
    }
    if (_frames.isEmpty() || request.store != _request.store || request.site != _request.site) {
        return UPDATE_FULL;
    }
    if (live) {
        return UPDATE_PARTIAL;
    }
    if (request.product != _request.product || request.configuration != _request.configuration ||
        request.time != _request.time || request.timeLength != _request.timeLength ||
        request.timeInterval != _request.timeInterval) {
        return UPDATE_PARTIAL;
    }
    if (request.product2d != _request.product2d || request.timeWindow != _request.timeWindow) {
        return UPDATE_PARAMS;
    }
    return UPDATE_NONE;
}

void TORVAnimation::updateAllParameters(Counts& counts) const
{
    for (const FramePtr& frame : _frames) {
        TORVDataFrame& dataFrame = *frame->getDataFrame();
        updateParameters(dataFrame, dataFrame.getMoment());
        ++counts.updated;
    }
}

// Whether there is a volume, without which the frame is of no use.
bool TORVAnimation::updateParameters(TORVDataFrame& frame, const QString& moment) const
{
    frame.setMoment(moment, _request.timeWindow);
    frame.setDataParams3d(_request.product, _request.configuration);
    frame.setDataParams2d(_request.product2d);
    if (!frame.updateData3d()) {
        return false;
    }
    frame.updateDataRest();
    return true;
}

// From the newest file backwards, so that this one is a frame always.
void TORVAnimation::rebuild(Counts& counts)
{
    Frames oldFrames; // which live to the end of this, whatever is taken up again
    oldFrames.swap(_frames);
    const Leaves leaves = findLeaves();
    logNumber("Found leaves: ", leaves.size());
    TORVFileLeaf::Ptr accepted;
    for (auto leaf = leaves.crbegin(); leaf != leaves.crend(); ++leaf) {
        const qint64 diff = accepted ? seconds((*leaf)->dataTime_ms(), accepted->dataTime_ms()) : 0;
        if (accepted && diff < _request.timeInterval) {
            continue;
        }
        if (const FramePtr frame = makeFrame(oldFrames, **leaf, counts)) {
            _frames.push_back(frame);
            accepted = *leaf;
        }
    }
    logNumber("Frames populated: ", _frames.size());
    std::reverse(_frames.begin(), _frames.end());
    logNumber("Frames sequenced: ", _frames.size());
}

// Oldest first. Their keys are texts that need not tell the time.
TORVAnimation::Leaves TORVAnimation::findLeaves() const
{
    const boost::shared_ptr<TORV3DTop> top = _request.store->getDirTop3d();
    if (!top) {
        return {};
    }
    const TORVDirTop::LeavesPtr found =
        top->findLeaves(TORVWildcard::patternFor(_request.site), TORVWildcard::patternFor(_request.product),
                        TORVWildcard::patternFor(_request.configuration), _request.middle(), _request.timeLength);
    Leaves leaves;
    for (const TORVDirectory::Ptr& node : qAsConst(*found)) {
        if (const auto leaf = boost::dynamic_pointer_cast<TORVFileLeaf>(node)) {
            leaves.push_back(leaf);
        }
    }
    std::stable_sort(leaves.begin(), leaves.end(), [](const TORVFileLeaf::Ptr& a, const TORVFileLeaf::Ptr& b) {
        return a->dataTime_ms() < b->dataTime_ms();
    });
    return leaves;
}

// Null for a file that has gone meanwhile.
TORVAnimation::FramePtr TORVAnimation::makeFrame(const Frames& oldFrames, const TORVFileLeaf& leaf,
                                                 Counts& counts) const
{
    if (const FramePtr frame = reuseFrame(oldFrames, leaf)) {
        ++counts.reused;
        return frame;
    }
    const FramePtr frame = createFrame(leaf);
    counts.created += frame ? 1 : 0;
    return frame;
}

// A file that came anew under the keys of another is another volume, and a frame goes on asking the store that it was
// made with.
TORVAnimation::FramePtr TORVAnimation::reuseFrame(const Frames& oldFrames, const TORVFileLeaf& leaf) const
{
    FramePtr frame = findFrameOf(oldFrames, leaf);
    if (!frame) {
        frame = findFrame(oldFrames, _request.site, leaf.getFile()->getDataTime());
    }
    if (!frame || frame->getDataFrame()->getDataStore() != _request.store || _frames.contains(frame)) {
        return nullptr;
    }
    logDebug(QStringLiteral("  -reusing old frame."));
    TORVDataFrame& dataFrame = *frame->getDataFrame();
    const bool isThere = updateParameters(dataFrame, leaf.getTime());
    return isThere && dataFrame.getData3d()->getFile() == leaf.getFile() ? frame : nullptr;
}

TORVAnimation::FramePtr TORVAnimation::createFrame(const TORVFileLeaf& leaf) const
{
    logDebug(QStringLiteral("  -creating new frame."));
    const auto dataFrame = boost::make_shared<TORVDataFrame>(_request.store, leaf.getSite(), leaf.getTime(),
                                                             leaf.getProduct(), leaf.getConfiguration(),
                                                             _request.product2d, _request.timeWindow, TerrainFactor);
    if (!dataFrame->getData3d()) {
        return nullptr;
    }
    return boost::make_shared<TORVAnimationFrame>(dataFrame, boost::make_shared<TORVVisualization>(_observer));
}

void TORVAnimation::selectFrame(UpdateType type, bool resetToLast, const QDateTime& previousTime)
{
    const int last = _frames.size() - 1;
    if (resetToLast) {
        _currentIndex = last;
        logNumber("Reset to last frame: ", last);
    } else if (type == UPDATE_CLEAR || type == UPDATE_FULL) {
        _currentIndex = last;
        logNumber("Selected last frame: ", last);
    } else if (type == UPDATE_PARTIAL && _frames.isEmpty()) {
        _currentIndex = last;
        logNumber("No new frame found: selected last frame: ", last);
    } else if (type == UPDATE_PARTIAL) {
        _currentIndex = closestFrame(previousTime);
        logNumber("New frame found: selected closest frame: ", _currentIndex);
    }
}

// Of two that are equally close, the later.
int TORVAnimation::closestFrame(const QDateTime& time) const
{
    int closest = -1;
    qint64 smallest = std::numeric_limits<qint64>::max();
    for (int index = 0; index < _frames.size(); ++index) {
        const qint64 distance = std::abs(time.secsTo(_frames[index]->getTime()));
        if (distance <= smallest) {
            smallest = distance;
            closest = index;
        }
    }
    return closest;
}

// What the time window has offered for the current volume may be younger than the end of the sequence.
QDateTime TORVAnimation::endTimeFor(const QString& product, const QString& configuration) const
{
    const TORVDataFrame::Ptr current = getCurrentDataFrame();
    const boost::shared_ptr<TORV3DTop> top = current ? _request.store->getDirTop3d() : nullptr;
    if (!top) {
        return _request.time;
    }
    const QDateTime time = current->getData3d()->getFile()->getDataTime();
    const TORVDirTop::LeavesPtr offered =
        top->findLeaves(TORVWildcard::patternFor(_request.site), TORVWildcard::patternFor(product),
                        TORVWildcard::patternFor(configuration), time, timeWindow());
    const TORVFileLeaf::Ptr match = TORVDirTop::findClosestMatch(*offered, time);
    return match ? std::max(_request.time, match->getFile()->getDataTime()) : _request.time;
}

int TORVAnimation::timeWindow() const
{
    return _observer->getVisualizationGeneralSettings()->getTimeWindow();
}

void TORVAnimation::logRequest(bool resetToLast, bool live) const
{
    const auto line = [](const char* name, const QString& value) { logDebug(QLatin1String(name) + value); };
    const QDateTime start = _request.time.addSecs(-_request.timeLength);
    line("site=", _request.site);
    line("product=", _request.product);
    line("configuration=", _request.configuration);
    line("product2d=", _request.product2d);
    line("time_start=", start.toString(Qt::ISODate));
    line("time_middle=", _request.middle().toString(Qt::ISODate));
    line("time_end=", _request.time.toString(Qt::ISODate));
    logNumber("time_length=", _request.timeLength);
    logNumber("time_interval=", _request.timeInterval);
    logNumber("time_window=", _request.timeWindow);
    logNumber("resetToLast=", resetToLast ? 1 : 0);
    logNumber("live=", live ? 1 : 0);
}

QDateTime TORVAnimation::Request::middle() const
{
    return time.addSecs(-(timeLength >> 1));
}

void TORVAnimation::updateProductSettings()
{
    for (const FramePtr& frame : qAsConst(_frames)) {
        frame->getDataFrame()->updateProductSettings();
    }
}

void TORVAnimation::renewTerrain()
{
    for (const FramePtr& frame : qAsConst(_frames)) {
        frame->getDataFrame()->renewTerrain();
    }
}

void TORVAnimation::resetAnimation()
{
    _frames.clear();
    _request = Request();
    _currentIndex = 0;
}

void TORVAnimation::goToFrame(int index)
{
    if (getFrameByIndex(index)) {
        _currentIndex = index;
    }
}

TORVAnimation::FramePtr TORVAnimation::getFrameByIndex(int index) const
{
    return _frames.value(index);
}

TORVDataFrame::Ptr TORVAnimation::getDataFrameByIndex(int index) const
{
    const FramePtr frame = getFrameByIndex(index);
    return frame ? frame->getDataFrame() : nullptr;
}

TORVVisualization::Ptr TORVAnimation::getCurrentVisualization() const
{
    return getVisualizationByIndex(_currentIndex);
}

TORVVisualization::Ptr TORVAnimation::getVisualizationByIndex(int index) const
{
    const FramePtr frame = getFrameByIndex(index);
    return frame ? frame->getVisualization() : nullptr;
}

QDateTime TORVAnimation::getFrameTime() const
{
    const FramePtr frame = getCurrentFrame();
    return frame ? frame->getTime() : QDateTime();
}

QDateTime TORVAnimation::getStartTime() const
{
    return _frames.isEmpty() ? QDateTime() : _frames.first()->getTime();
}

QDateTime TORVAnimation::getEndTime() const
{
    return _frames.isEmpty() ? QDateTime() : _frames.last()->getTime();
}

TORVAnimation::FramePtr TORVAnimation::findFrame(const Frames& frames, const QString& site, const QDateTime& time)
{
    const auto found = std::find_if(frames.begin(), frames.end(), [&](const FramePtr& frame) {
        return frame->getSite() == site && frame->getTime() == time;
    });
    return found == frames.end() ? nullptr : *found;
}

TORVAnimation::FramePtr TORVAnimation::findFrame(const TORVDataFrame::CPtr& dataFrame) const
{
    const auto found = std::find_if(_frames.begin(), _frames.end(),
                                    [&dataFrame](const FramePtr& frame) { return frame->getDataFrame() == dataFrame; });
    return found == _frames.end() ? nullptr : *found;
}
