#pragma once

#include "datalib/TORVDataFrame.h"
#include "datalib/TORVDataStore.h"
#include "gui/TORVAnimationFrame.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

class TORVVisualization;
class TORVVisualizationObserver;

/**
 * The sequence of pictures that can be shown: a span of time of one site and product, oldest first, and which of them
 * is current. A request is compared with what is there; every frame that can be kept is kept, with what it has loaded
 * and with its built scene, so that one new file costs one new frame.
 *
 * | update type      | when                                                  | frames      | current frame            |
 * |------------------|-------------------------------------------------------|-------------|--------------------------|
 * | UPDATE_CLEAR     | no store, or no name of site, product, configuration  | none        | none                     |
 * | UPDATE_FULL      | no frames yet, another store, another site            | new         | last                     |
 * | UPDATE_PARTIAL   | live; another product, configuration, time, span, gap | rebuilt     | closest in time          |
 * | UPDATE_PARAMS    | another flat product, another time window             | same ones   | same                     |
 * | UPDATE_NONE      | nothing of that                                       | same ones   | same                     |
 *
 * Scenes are neither built nor shown here: a frame's new choice reaches its scene when it is shown the next time.
 *
 * Ownership: frames are shared with whoever asks. A frame that leaves the sequence goes with its last holder, and with
 * it its scene, whose end waits for the step that runs.
 *
 * Thread: main thread only.
 */
class TORVAnimation : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVAnimation)

public:
    using FramePtr = boost::shared_ptr<TORVAnimationFrame>;
    using Frames = QVector<FramePtr>;

    /// How much of the sequence a request has redone.
    enum UpdateType : int
    {
        UPDATE_CLEAR = -1,
        UPDATE_NONE = 0,
        UPDATE_PARAMS = 1,
        UPDATE_PARTIAL = 2,
        UPDATE_FULL = 3
    };

    /// @param observer  not null; outlives this object and every scene. It gives the general settings.
    explicit TORVAnimation(TORVVisualizationObserver* observer);
    ~TORVAnimation() override;

    /**
     * Brings the sequence up to a request. Nothing found is no failure: the sequence is empty then.
     * @param product2d     may be empty: each frame chooses a flat product
     * @param time          end of the sequence
     * @param timeLength    seconds from the oldest frame that may be shown to the end
     * @param timeInterval  seconds from frame to frame, at least; 0 or less takes every file
     * @param resetToLast   makes the last frame current, whatever else changes
     * @param live          looks into the directories even if the request is that of before
     * @return whether the list of frames was made anew
     */
    bool updateFrames(const TORVDataStore::Ptr& store, const QString& site, const QString& product,
                      const QString& configuration, const QString& product2d, const QDateTime& time, int timeLength,
                      int timeInterval, bool resetToLast, bool live);

    /// The last request but for what is given. A volume of the new product that belongs to the current one, though it
    /// is younger by a part of the time window, moves the end of the sequence.
    bool updateParams3d(const QString& product, const QString& configuration);
    bool updateParams2d(const QString& product2d);
    bool updateTimeParams(int timeLength, int timeInterval);

    /// Has every frame load its product's settings anew.
    void updateProductSettings();

    /// Gives every frame new ground, one set for all frames of a radar; the terrain directory has been scanned anew or
    /// its files forgotten.
    void renewTerrain();

    /// Forgets frames, store and request.
    void resetAnimation();

    /// An index outside the list changes nothing.
    void goToFrame(int index);

    const Frames& getFrames() const { return _frames; } ///< oldest first
    int getFrameCount() const { return _frames.size(); }
    int getCurrentIndex() const { return _currentIndex; } ///< -1 where a request found nothing

    // Null where there is no such frame.
    FramePtr getCurrentFrame() const { return getFrameByIndex(_currentIndex); }
    FramePtr getFrameByIndex(int index) const;
    TORVDataFrame::Ptr getCurrentDataFrame() const { return getDataFrameByIndex(_currentIndex); }
    TORVDataFrame::Ptr getDataFrameByIndex(int index) const;
    boost::shared_ptr<TORVVisualization> getCurrentVisualization() const;
    boost::shared_ptr<TORVVisualization> getVisualizationByIndex(int index) const;

    // Invalid where there is no such frame.
    QDateTime getFrameTime() const; ///< of the current frame
    QDateTime getStartTime() const; ///< of the first frame
    QDateTime getEndTime() const;   ///< of the last frame

    /// The first frame of that site and time, null if there is none.
    static FramePtr findFrame(const Frames& frames, const QString& site, const QDateTime& time);

    /// The frame of the sequence that holds that choice, null if there is none.
    FramePtr findFrame(const boost::shared_ptr<const TORVDataFrame>& dataFrame) const;

private:
    using Leaves = QVector<TORVFileLeaf::Ptr>;

    // What is asked of a sequence.
    struct Request
    {
        QDateTime middle() const;

        TORVDataStore::Ptr store;
        QString site;
        QString product;
        QString configuration;
        QString product2d;
        int timeWindow = 0; // seconds, of the general settings
        QDateTime time;
        int timeLength = 0;   // seconds
        int timeInterval = 0; // seconds
    };

    struct Counts
    {
        int created = 0;
        int reused = 0;
        int updated = 0;
    };

    bool update(const Request& request, bool resetToLast, bool live);
    UpdateType updateTypeOf(const Request& request, bool live) const;
    void updateAllParameters(Counts& counts) const;
    bool updateParameters(TORVDataFrame& frame, const QString& moment) const;
    void rebuild(Counts& counts);
    Leaves findLeaves() const;
    FramePtr makeFrame(const Frames& oldFrames, const TORVFileLeaf& leaf, Counts& counts) const;
    FramePtr reuseFrame(const Frames& oldFrames, const TORVFileLeaf& leaf) const;
    FramePtr createFrame(const TORVFileLeaf& leaf) const;
    void selectFrame(UpdateType type, bool resetToLast, const QDateTime& previousTime);
    int closestFrame(const QDateTime& time) const;
    QDateTime endTimeFor(const QString& product, const QString& configuration) const;
    int timeWindow() const;
    void logRequest(bool resetToLast, bool live) const;

    TORVVisualizationObserver* const _observer;
    Request _request;
    int _currentIndex = 0;
    Frames _frames; // oldest first
};
