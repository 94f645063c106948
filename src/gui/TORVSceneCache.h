#pragma once

#include <QtGlobal>

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <list>

class TORVVisualization;

/**
 * Bounds the memory of the scenes that stay built while another frame is shown: of those that it was told of, the one
 * that was unused longest is emptied first. A frame whose scene was emptied builds it again when it is shown.
 *
 * Ownership: holds no scene.
 *
 * Thread: main thread only.
 */
class TORVSceneCache final
{
public:
    using VisualizationPtr = boost::shared_ptr<TORVVisualization>;

    /// @param limitBytes  of main memory, for all scenes together
    explicit TORVSceneCache(qint64 limitBytes = defaultLimit());
    ~TORVSceneCache();
    TORVSceneCache(const TORVSceneCache&) = delete;
    TORVSceneCache& operator=(const TORVSceneCache&) = delete;

    /// A quarter of this machine's memory.
    static qint64 defaultLimit();

    qint64 getLimit() const { return _limit; }

    /// Not null; it counts as just used.
    void use(const VisualizationPtr& visualization);

    /// Empties scenes until the rest fits, never the one that is shown (it may be null) nor one that is being built.
    void trim(const VisualizationPtr& shown);

    qint64 getUsedBytes() const; ///< of all finished scenes that it was told of and that still live
    int getKeptCount() const;    ///< of these scenes

private:
    const qint64 _limit;
    std::list<boost::weak_ptr<TORVVisualization>> _scenes; // the one unused longest first
};
