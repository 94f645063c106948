#include "datalib/TORVTerrainSet.h"

#include "datalib/TORVTerrainFile.h"
#include "datalib/TORVTerrainLoader.h"
#include "datalib/TORVTerrainSeam.h"
#include "utils/TORVLog.h"

#include <QCoreApplication>
#include <QFile>

#include <vtkActor.h>
#include <vtkAssembly.h>
#include <vtkNew.h>
#include <vtkTimerLog.h>

#include <algorithm>
#include <chrono>

namespace
{

// Nobody tells when the flag is set, so it's looked at that often.
constexpr std::chrono::milliseconds AbortPeriod{20};

// Flat blocks are made in no time; the history mentions some of them, so that it shows that work goes on.
constexpr int FlatBlocksALine = 10;

void logDebug(const QString& text)
{
    TORVLog::Instance()->logDebug(text);
}

QString translated(const char* text)
{
    return QCoreApplication::translate("Datalib", text);
}

void tellOfConversion(const TORVTerrainFile& block, int number, int count)
{
    if (block.getType() != TORVTerrainFile::EMPTY || number % FlatBlocksALine == 0) {
        TORVLog::Instance()->logHistory(translated(QT_TRANSLATE_NOOP("Datalib", "- Converting terrain block: ")) +
                                        QString::number(number) + QLatin1Char('/') + QString::number(count) +
                                        QLatin1Char(' ') + block.getBlockName());
    }
    logDebug(
        QStringLiteral("Converting terrain block data: %1(%2)").arg(block.getBlockName(), block.getTypeAsString()));
}

} // namespace

TORVTerrainSet::TORVTerrainSet(TORVGeoProjection::CPtr projection, const TORVCoordinate& lowerLeft,
                               const TORVCoordinate& upperRight)
    : _projection(std::move(projection)), _lowerLeft(lowerLeft), _upperRight(upperRight)
{
}

TORVTerrainSet::~TORVTerrainSet() = default;

void TORVTerrainSet::addBlock(const BlockPtr& block, const QString& cacheFile)
{
    _blocks.push_back(block);
    _cacheFiles.push_back(cacheFile);
}

vtkSmartPointer<vtkAssembly> TORVTerrainSet::getAssembly() const
{
    const std::lock_guard<std::mutex> lock(_mutex);
    return _assembly;
}

double TORVTerrainSet::getElevationAtLocation(const TORVCoordinate& location) const
{
    if (!_isLoaded) {
        return 0.0;
    }
    const auto block = std::find_if(_blocks.begin(), _blocks.end(),
                                    [&location](const BlockPtr& each) { return each->contains(location); });
    return block == _blocks.end() ? 0.0 : (*block)->getElevationAtLocation(location);
}

void TORVTerrainSet::loadFiles(const std::atomic<bool>& abort) const
{
    if (!takeTurn(abort)) {
        return;
    }
    const vtkSmartPointer<vtkAssembly> assembly = load(abort);
    if (!assembly) {
        logDebug(QStringLiteral("TORVTerrainSet::loadFiles() ABORTED!"));
    }
    const std::lock_guard<std::mutex> lock(_mutex);
    _assembly = assembly;
    _isLoaded = assembly != nullptr;
    _isLoading = false;
    _turn.notify_all();
}

// Whether the load is this caller's to do; it may wait for another's first.
bool TORVTerrainSet::takeTurn(const std::atomic<bool>& abort) const
{
    std::unique_lock<std::mutex> lock(_mutex);
    while (_isLoading && !abort) {
        _turn.wait_for(lock, AbortPeriod);
    }
    if (_isLoaded) {
        return false;
    }
    if (abort) {
        logDebug(QStringLiteral("TORVTerrainSet::loadFiles() ABORTED!"));
        return false;
    }
    _isLoading = true;
    return true;
}

// -1 when aborted.
int TORVTerrainSet::countMissing(const std::atomic<bool>& abort) const
{
    int count = 0;
    for (const QString& file : _cacheFiles) {
        if (abort) {
            return -1;
        }
        count += QFile::exists(file) ? 0 : 1;
    }
    return count;
}

// Null when aborted.
vtkSmartPointer<vtkAssembly> TORVTerrainSet::load(const std::atomic<bool>& abort) const
{
    vtkNew<vtkTimerLog> timer;
    timer->StartTimer();
    const int toConvert = countMissing(abort);
    if (toConvert < 0) {
        return nullptr;
    }
    logDebug(QStringLiteral("numToBeConverted=%1").arg(toConvert));
    _convertedCount = 0;
    _conversionCount = toConvert;
    if (toConvert > 0) {
        TORVLog::Instance()->logHistory(
            translated(QT_TRANSLATE_NOOP("Datalib", "Converting terrain data, please wait...")));
    }
    const auto assembly = vtkSmartPointer<vtkAssembly>::New();
    const std::optional<int> converted = loadBlocks(*assembly, toConvert, abort);
    if (!converted) {
        return nullptr;
    }
    TORVTerrainSeam::join(_blocks);
    logDebug(QStringLiteral("filesConverted=%1").arg(*converted));
    if (*converted > 0) {
        TORVLog::Instance()->logHistory(
            translated(QT_TRANSLATE_NOOP("Datalib", "%1  terrain files converted!")).arg(*converted));
    }
    timer->StopTimer();
    const double seconds = timer->GetElapsedTime();
    logDebug(QStringLiteral("%1 files loaded in %2s (%3 s/file)")
                 .arg(_blocks.size())
                 .arg(seconds)
                 .arg(seconds / std::max(_blocks.size(), 1)));
    return assembly;
}

// The number of conversions; nothing when aborted.
std::optional<int> TORVTerrainSet::loadBlocks(vtkAssembly& assembly, int toConvert,
                                              const std::atomic<bool>& abort) const
{
    int converted = 0;
    int unkept = 0;
    int announced = 0;
    TORVTerrainLoader loader(_projection, _blocks, _cacheFiles, abort);
    for (int i = 0; i < _blocks.size(); ++i) {
        const std::optional<bool> isConverting = loader.waitForStart(i);
        if (!isConverting) {
            return std::nullopt;
        }
        if (*isConverting) {
            tellOfConversion(*_blocks[i], ++announced, toConvert);
            _convertedCount = announced;
        }
        const std::optional<TORVTerrainLoader::Result> result = loader.waitForEnd(i);
        if (!result) {
            return std::nullopt;
        }
        converted += result->isConverted ? 1 : 0;
        unkept += result->isKept ? 0 : 1;
        logDebug(QLatin1String("Loading cached block: ") + _blocks[i]->getBlockName());
        _blocks[i]->releaseLog();
        if (vtkActor* const actor = _blocks[i]->getActor()) {
            assembly.AddPart(actor);
        }
    }
    if (unkept > 0) {
        TORVLog::Instance()->logWarning(QStringLiteral("%1 converted terrain blocks can't be kept in the cache: %2")
                                            .arg(unkept)
                                            .arg(_cacheFiles.first()));
    }
    return converted;
}
