#include "gui/TORVSceneCache.h"

#include "utils/TORVLog.h"
#include "visualization/TORVVisualization.h"

#include <algorithm>

#include <unistd.h>

namespace
{

constexpr qint64 MemoryShare = 4; // the scenes may take that part of it

} // namespace

TORVSceneCache::TORVSceneCache(qint64 limitBytes) : _limit(limitBytes) {}

TORVSceneCache::~TORVSceneCache() = default;

qint64 TORVSceneCache::defaultLimit()
{
    return static_cast<qint64>(sysconf(_SC_PHYS_PAGES)) * sysconf(_SC_PAGESIZE) / MemoryShare;
}

void TORVSceneCache::use(const VisualizationPtr& visualization)
{
    _scenes.remove_if([&visualization](const boost::weak_ptr<TORVVisualization>& scene) {
        const VisualizationPtr known = scene.lock();
        return !known || known == visualization;
    });
    _scenes.push_back(visualization);
}

void TORVSceneCache::trim(const VisualizationPtr& shown)
{
    qint64 used = getUsedBytes();
    for (auto scene = _scenes.begin(); scene != _scenes.end() && used > _limit; ++scene) {
        const VisualizationPtr visualization = scene->lock();
        if (!visualization || visualization == shown || visualization->isGenerating()) {
            continue;
        }
        used -= visualization->getMemoryBytes();
        visualization->resetVisualization();
    }
}

qint64 TORVSceneCache::getUsedBytes() const
{
    qint64 bytes = 0;
    for (const boost::weak_ptr<TORVVisualization>& scene : _scenes) {
        const VisualizationPtr visualization = scene.lock();
        bytes += visualization ? visualization->getMemoryBytes() : 0;
    }
    return bytes;
}

int TORVSceneCache::getKeptCount() const
{
    return static_cast<int>(
        std::count_if(_scenes.begin(), _scenes.end(), [](const boost::weak_ptr<TORVVisualization>& scene) {
            const VisualizationPtr visualization = scene.lock();
            return visualization && visualization->getResultItem();
        }));
}
