#pragma once

#include <QDateTime>
#include <QString>

#include <boost/shared_ptr.hpp>

class TORVDataFrame;
class TORVVisualization;

/**
 * One picture of a sequence: what was chosen from the store, and the scene that is or will be built of it.
 *
 * Ownership: shares both; the scene must be let go on the main thread, where its end waits for the step that runs.
 *
 * Thread: main thread only.
 */
class TORVAnimationFrame
{
public:
    using Ptr = boost::shared_ptr<TORVAnimationFrame>;

    /// @param dataFrame      has a volume; site and time are those of its file at this moment
    /// @param visualization  not null
    TORVAnimationFrame(const boost::shared_ptr<TORVDataFrame>& dataFrame,
                       const boost::shared_ptr<TORVVisualization>& visualization);
    virtual ~TORVAnimationFrame();
    TORVAnimationFrame(const TORVAnimationFrame&) = delete;
    TORVAnimationFrame& operator=(const TORVAnimationFrame&) = delete;

    const boost::shared_ptr<TORVDataFrame>& getDataFrame() const { return _dataFrame; }
    const boost::shared_ptr<TORVVisualization>& getVisualization() const { return _visualization; }
    const QString& getSite() const { return _site; }
    const QDateTime& getTime() const { return _time; } ///< of the data, UTC

private:
    boost::shared_ptr<TORVDataFrame> _dataFrame;
    boost::shared_ptr<TORVVisualization> _visualization;
    QString _site;
    QDateTime _time;
};
