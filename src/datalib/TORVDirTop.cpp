#include "datalib/TORVDirTop.h"

#include "datalib/TORVDirectoryListing.h"
#include "datalib/TORVWildcard.h"
#include "utils/TORVLog.h"

#include <QDir>
#include <QFile>
#include <QStringBuilder>
#include <QThread>

#include <algorithm>
#include <cassert>
#include <iostream>
#include <mutex>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace
{

const QString Any = QStringLiteral("*");
constexpr qint64 MillisecondsPerSecond = 1000;
constexpr std::size_t WorthAThread = 1000; // files to open

struct Refusal
{
    TORVDirTop::Result result;
    const char* words;
};

const Refusal Refusals[] = {
    {TORVDirTop::DIR_INCOMPLETE, "NOT ADDED: INCOMPLETE "},
    {TORVDirTop::DIR_NO_DATA, "NOT ADDED: NO DATA "},
    {TORVDirTop::DIR_INVALID, "NOT ADDED: INVALID "},
    {TORVDirTop::DIR_WRONG_TYPE, "NOT ADDED: DATA FILE OF WRONG TYPE "},
    {TORVDirTop::DIR_DUPLICATE, "NOT ADDED: DATA FILE IS DUPLICATE "},
};

void logDebug(const QString& text)
{
    TORVLog::Instance()->logDebug(text);
}

void logRefusal(TORVDirTop::Result result, const QString& path)
{
    for (const Refusal& refusal : Refusals) {
        if (refusal.result == result) {
            logDebug(QLatin1String(refusal.words) + path);
        }
    }
}

struct Patterns
{
    Patterns(const QString& ofSite, const QString& ofProduct, const QString& ofConfiguration)
        : site(ofSite), product(ofProduct), configuration(ofConfiguration)
    {
    }

    const TORVWildcard site;
    const TORVWildcard product;
    const TORVWildcard configuration;
};

template <typename Visit>
void visitMatching(const TORVDirectory& node, const TORVWildcard& pattern, const Visit& visit)
{
    const TORVDirectory::Children& children = *node.getChildren();
    for (auto child = children.cbegin(); child != children.cend(); ++child) {
        if (pattern.matches(child.key())) {
            visit(*child.value());
        }
    }
}

template <typename Visit>
void visitConfigurations(const TORVDirTop& top, const Patterns& patterns, const Visit& visit)
{
    visitMatching(top, patterns.site, [&](const TORVDirectory& site) {
        visitMatching(site, patterns.product, [&](const TORVDirectory& product) {
            visitMatching(product, patterns.configuration, [&](const TORVDirectory& configuration) {
                visit(static_cast<const TORVDirConfiguration&>(configuration));
            });
        });
    });
}

QString keyPrefix(const TORVDirConfiguration& configuration)
{
    const QLatin1Char slash('/');
    return configuration.getSite() % slash % configuration.getProduct() % slash % configuration.getName() % slash;
}

// The tree is walked nearly in the order of the keys, so the end is nearly always the place for the next.
template <typename Keep>
TORVDirTop::LeavesPtr collect(const TORVDirTop& top, const Patterns& patterns, const Keep& keep)
{
    auto leaves = std::make_unique<TORVDirTop::Leaves>();
    visitConfigurations(top, patterns, [&](const TORVDirConfiguration& configuration) {
        const QString prefix = keyPrefix(configuration);
        const TORVDirectory::Children& children = *configuration.getChildren();
        for (auto child = children.cbegin(); child != children.cend(); ++child) {
            if (keep(static_cast<const TORVFileLeaf&>(*child.value()))) {
                leaves->insert(leaves->cend(), prefix + child.key(), child.value());
            }
        }
    });
    return leaves;
}

QString productName(const QString& product, const QString& configuration, bool withConfiguration)
{
    return withConfiguration ? product + QLatin1String(" - ") + configuration : product;
}

void addNew(QStringList& names, const QString& name, const char* logWords)
{
    if (!names.contains(name)) {
        logDebug(QLatin1String(logWords) + name);
        names << name;
    }
}

auto treeOrder(const TORVFileLeaf& leaf)
{
    return std::make_tuple(leaf.getSite(), leaf.getProduct(), leaf.getConfiguration(), leaf.getTime());
}

} // namespace

struct TORVDirTop::Keys
{
    QString site;
    QString product;
    QString configuration;
    QString time;
};

TORVDirTop::TORVDirTop(const QString& path)
    : TORVDirectory(QString(), nullptr, TYPE_TOP), _path(QDir(path).absolutePath())
{
}

TORVDirTop::~TORVDirTop() = default;

bool TORVDirTop::isValid() const
{
    return QDir(_path).exists();
}

void TORVDirTop::printSelf() const
{
    TORVDirectory::printSelf();
    std::cout << "\npath: " << _path.toStdString() << std::endl;
}

void TORVDirTop::refresh()
{
    // They end after the lock, which a hundred thousand leaves would hold for too long.
    Children oldChildren;
    QMultiHash<QString, TORVFileLeaf::Ptr> oldIndex;
    {
        const std::unique_lock<std::shared_mutex> lock(_mutex);
        oldChildren = takeChildren();
        oldIndex.swap(_index);
    }
    construct();
}

void TORVDirTop::construct()
{
    std::vector<std::string> names; // none where there is no directory
    TORVDirectoryListing::read(_path, names);
    std::sort(names.begin(), names.end()); // neighbours lie together in memory: searches take half the time
    {
        const std::unique_lock<std::shared_mutex> lock(_mutex);
        _index.reserve(static_cast<int>(names.size()));
    }
    QSet<QString> unfinished;
    for (const TORVFile::CPtr& file : openAll(names)) {
        const Result result = judge(file);
        if (result == DIR_OK) {
            addToAllLevels(file);
        } else if (result == DIR_INCOMPLETE || result == DIR_NO_DATA) {
            unfinished.insert(file->getName());
        }
    }
    const std::unique_lock<std::shared_mutex> lock(_mutex);
    _unfinished.swap(unfinished);
}

// Opening waits for the disk or the network, so a large directory is opened from both ends of its list at once.
std::vector<TORVFile::CPtr> TORVDirTop::openAll(const std::vector<std::string>& names) const
{
    std::vector<TORVFile::CPtr> files(names.size());
    const auto open = [&](std::size_t from, std::size_t to) {
        for (std::size_t i = from; i < to; ++i) {
            files[i] = TORVFile::openChecked(pathOf(QFile::decodeName(names[i].c_str())));
        }
    };
    const std::size_t middle = names.size() < WorthAThread ? 0 : names.size() / 2;
    if (middle == 0) {
        open(0, names.size());
        return files;
    }
    const std::unique_ptr<QThread> other(QThread::create(open, std::size_t{0}, middle));
    other->start();
    open(middle, names.size());
    other->wait();
    if (!other->isFinished()) {
        open(0, middle); // no thread was to be had
    }
    return files;
}

bool TORVDirTop::isUnfinished(const QString& fileName) const
{
    const std::shared_lock<std::shared_mutex> lock(_mutex);
    return _unfinished.contains(fileName);
}

QString TORVDirTop::pathOf(const QString& name) const
{
    const QLatin1Char slash('/');
    if (name.startsWith(slash)) {
        return name;
    }
    return _path.endsWith(slash) ? _path + name : QString(_path % slash % name);
}

TORVDirTop::Result TORVDirTop::judge(const TORVFile::CPtr& file) const
{
    switch (file->getStatus()) {
    case TORVFile::FILE_OK:
        return filter(file) ? DIR_OK : DIR_WRONG_TYPE;
    case TORVFile::FILE_INCOMPLETE:
        return DIR_INCOMPLETE;
    case TORVFile::FILE_NO_DATA:
        return DIR_NO_DATA;
    default:
        return DIR_INVALID;
    }
}

TORVDirTop::Keys TORVDirTop::keysOf(const TORVFile& file)
{
    return {file.getSite(), file.getProduct(), file.getConfiguration(), file.getTime()};
}

void TORVDirTop::logAdding(const Keys& keys)
{
    if (!TORVLog::Instance()->isShown(TORVLog::LEVEL_DEBUG)) {
        return;
    }
    const QLatin1Char dot('.');
    logDebug(QLatin1String("Adding to directory file ") % keys.site % dot % keys.product % dot % keys.configuration %
             dot % keys.time);
}

TORVDirTop::Result TORVDirTop::addFile(const QString& name)
{
    const QString path = pathOf(name);
    const TORVFile::CPtr file = TORVFile::openChecked(path);
    Result result = judge(file);
    if (result == DIR_OK) {
        const Keys keys = keysOf(*file);
        if (placeUnlessThere(keys, file)) {
            logAdding(keys);
            return DIR_OK;
        }
        result = DIR_DUPLICATE;
    }
    logRefusal(result, path);
    return result;
}

bool TORVDirTop::placeUnlessThere(const Keys& keys, const TORVFile::CPtr& file)
{
    const std::unique_lock<std::shared_mutex> lock(_mutex);
    if (leafAt(keys)) {
        return false;
    }
    place(keys, file);
    return true;
}

void TORVDirTop::addToAllLevels(const TORVFile::CPtr& file)
{
    assert(file);
    const Keys keys = keysOf(*file);
    logAdding(keys);
    const std::unique_lock<std::shared_mutex> lock(_mutex);
    place(keys, file);
}

void TORVDirTop::place(const Keys& keys, const TORVFile::CPtr& file)
{
    addChild(keys.site, file)
        ->addChild(keys.product, file)
        ->addChild(keys.configuration, file)
        ->addChild(keys.time, file);
}

TORVDirTop::Result TORVDirTop::removeFile(const QString& name)
{
    TORVFileLeaf::Ptr leaf;
    {
        const std::unique_lock<std::shared_mutex> lock(_mutex);
        leaf = leafOfFile(name);
        if (leaf) {
            leaf->getParent()->removeChild(leaf->getName());
        }
    }
    logDebug((leaf ? QLatin1String("REMOVING ") : QLatin1String("NOTHING TO REMOVE ")) + name);
    return leaf ? DIR_OK : DIR_INVALID;
}

void TORVDirTop::leafAdded(const TORVDirectory::Ptr& leaf)
{
    const TORVFileLeaf::Ptr added = boost::static_pointer_cast<TORVFileLeaf>(leaf);
    const TORVFile::CPtr file = added->getFile();
    if (file) {
        _index.insert(file->getName(), added);
    }
}

void TORVDirTop::leafRemoved(const TORVDirectory::Ptr& leaf)
{
    const TORVFileLeaf::Ptr removed = boost::static_pointer_cast<TORVFileLeaf>(leaf);
    const TORVFile::CPtr file = removed->getFile();
    if (file) {
        _index.remove(file->getName(), removed);
    }
}

TORVFileLeaf::Ptr TORVDirTop::findLeaf(const QString& site, const QString& product, const QString& configuration,
                                       const QString& time) const
{
    const std::shared_lock<std::shared_mutex> lock(_mutex);
    return leafAt({site, product, configuration, time});
}

TORVFileLeaf::Ptr TORVDirTop::leafAt(const Keys& keys) const
{
    TORVDirectory::Ptr node = findChildByName(keys.site);
    for (const QString* name : {&keys.product, &keys.configuration, &keys.time}) {
        if (!node) {
            return {};
        }
        node = node->findChildByName(*name);
    }
    return boost::static_pointer_cast<TORVFileLeaf>(node);
}

TORVFileLeaf::Ptr TORVDirTop::findLeaf(const QString& fileName) const
{
    const std::shared_lock<std::shared_mutex> lock(_mutex);
    return leafOfFile(fileName);
}

TORVFileLeaf::Ptr TORVDirTop::leafOfFile(const QString& fileName) const
{
    TORVFileLeaf::Ptr first;
    for (auto leaf = _index.constFind(fileName); leaf != _index.constEnd() && leaf.key() == fileName; ++leaf) {
        if (!first || treeOrder(**leaf) < treeOrder(*first)) {
            first = *leaf;
        }
    }
    return first;
}

TORVDirTop::LeavesPtr TORVDirTop::findLeaves(const QString& site, const QString& product, const QString& configuration,
                                             const QString& time) const
{
    const Patterns patterns(site, product, configuration);
    const TORVWildcard timePattern(time);
    const std::shared_lock<std::shared_mutex> lock(_mutex);
    return collect(*this, patterns, [&](const TORVFileLeaf& leaf) { return timePattern.matches(leaf.getTime()); });
}

TORVDirTop::LeavesPtr TORVDirTop::findLeaves(const QString& site, const QString& product, const QString& configuration,
                                             const QDateTime& time, int timeWindow) const
{
    const qint64 middle = time.toMSecsSinceEpoch();
    const qint64 half = timeWindow / 2 * MillisecondsPerSecond;
    const Patterns patterns(site, product, configuration);
    const std::shared_lock<std::shared_mutex> lock(_mutex);
    return collect(*this, patterns, [=](const TORVFileLeaf& leaf) {
        return leaf.dataTime_ms() >= middle - half && leaf.dataTime_ms() <= middle + half;
    });
}

TORVDirTop::LeavesPtr TORVDirTop::findLatestLeaves(const QString& site, const QString& product,
                                                   const QString& configuration, int timeWindow) const
{
    logDebug(QStringLiteral("timeWindow=%1").arg(timeWindow));
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    const Patterns patterns(site, product, configuration);
    const std::shared_lock<std::shared_mutex> lock(_mutex);
    return collect(*this, patterns, [=](const TORVFileLeaf& leaf) {
        const qint64 age = (now - leaf.dataTime_ms()) / MillisecondsPerSecond;
        return timeWindow == 0 || (age >= 0 && age < timeWindow);
    });
}

TORVFileLeaf::Ptr TORVDirTop::findClosestMatch(const Leaves& leaves, const QDateTime& time)
{
    const qint64 wanted = time.toMSecsSinceEpoch();
    TORVFileLeaf::Ptr best;
    qint64 bestDistance = 0;
    for (const TORVDirectory::Ptr& node : leaves) {
        const TORVFileLeaf::Ptr leaf = boost::static_pointer_cast<TORVFileLeaf>(node);
        const qint64 distance = qAbs(leaf->dataTime_ms() - wanted) / MillisecondsPerSecond;
        if (!best || distance < bestDistance) {
            best = leaf;
            bestDistance = distance;
        }
    }
    return best;
}

TORVFileLeaf::Ptr TORVDirTop::findClosestTo(const TORVFileLeaf& leaf, const QString& product,
                                            const QString& configuration, int timeWindow) const
{
    const QDateTime time = leaf.getFile()->getDataTime();
    return findClosestMatch(
        *findLeaves(TORVWildcard::patternFor(leaf.getSite()), product, configuration, time, timeWindow), time);
}

QStringList TORVDirTop::findAllMatchingProducts(const TORVFileLeaf::CPtr& leaf, int timeWindow,
                                                bool withConfiguration) const
{
    const QDateTime time = leaf->getFile()->getDataTime();
    const LeavesPtr leaves = findLeaves(TORVWildcard::patternFor(leaf->getSite()), Any, Any, time, timeWindow);
    QStringList names;
    for (const TORVDirectory::Ptr& node : std::as_const(*leaves)) {
        const TORVFileLeaf& found = static_cast<const TORVFileLeaf&>(*node);
        addNew(names, productName(found.getProduct(), found.getConfiguration(), withConfiguration),
               "    New product: ");
    }
    return names;
}

QStringList TORVDirTop::listSites() const
{
    QStringList sites;
    {
        const std::shared_lock<std::shared_mutex> lock(_mutex);
        sites = getChildrenNames();
    }
    logDebug(QStringLiteral("Available sites:"));
    for (const QString& site : std::as_const(sites)) {
        logDebug(QLatin1String(" - ") + site);
    }
    if (sites.isEmpty()) {
        logDebug(QStringLiteral(" - (no sites found)"));
    }
    return sites;
}

QStringList TORVDirTop::listProductsForSite(const QString& site, bool withConfiguration) const
{
    logDebug(QLatin1String("Products for site=") + site + QLatin1Char(':'));
    const Patterns patterns(TORVWildcard::patternFor(site), Any, Any);
    QMap<QString, QString> namesByKey; // the order of keys isn't that of the tree: "A B/" comes before "A/"
    {
        const std::shared_lock<std::shared_mutex> lock(_mutex);
        visitConfigurations(*this, patterns, [&](const TORVDirConfiguration& node) {
            namesByKey.insert(keyPrefix(node), productName(node.getProduct(), node.getName(), withConfiguration));
        });
    }
    QStringList names;
    for (const QString& name : std::as_const(namesByKey)) {
        addNew(names, name, " - ");
    }
    if (names.isEmpty()) {
        logDebug(QStringLiteral(" - (no products found)"));
    }
    return names;
}
