#pragma once

#include "datalib/TORVDirectory.h"

#include <QDateTime>
#include <QHash>
#include <QSet>

#include <memory>
#include <shared_mutex>
#include <string>
#include <vector>

/**
 * One directory of product files as a tree, and the questions that the program asks of it. A derived class says which
 * products it wants.
 *
 * Files enter by `construct` and `addFile` alone, and are opened outside the lock: nobody who asks waits for a disk.
 * Beside the tree stands an index of its leaves by file name; whatever changes the tree keeps both alike.
 *
 * Site, product, configuration and time of a search are patterns (see `TORVWildcard`); a name that comes from a file or
 * from the user goes through `TORVWildcard::patternFor` first. Windows and distances go by the times in the files'
 * headers, keys and the order of leaves by the time in the name of the file: the two need not agree.
 *
 * Ownership: results are snapshots that belong to the caller; the leaves in them are shared.
 *
 * Thread: any thread; many readers or one writer, by a lock inside. What comes from `TORVDirectory` takes no lock and
 * is for use by one thread alone.
 */
class TORVDirTop : public TORVDirectory
{
public:
    using Ptr = boost::shared_ptr<TORVDirTop>;
    using CPtr = boost::shared_ptr<const TORVDirTop>;

    /// By "site/product/configuration/time"; every node is a leaf.
    using Leaves = QMap<QString, TORVDirectory::Ptr>;
    using LeavesPtr = std::unique_ptr<Leaves>; ///< never null

    enum Result : int
    {
        DIR_OK = 0,
        DIR_WRONG_TYPE = 1, ///< refused by `filter`
        DIR_NO_DATA = 2,    ///< empty, or too short to hold a header
        DIR_INCOMPLETE = 3, ///< shorter than its header says
        DIR_DUPLICATE = 4,  ///< there is a leaf of that site, product, configuration and time
        DIR_INVALID = 5     ///< any other bad file; also nothing found to remove
    };

    ~TORVDirTop() override;

    /// Whether the directory exists.
    bool isValid() const override;
    void printSelf() const override;

    virtual QString getPath() const { return _path; } ///< absolute
    virtual bool filter(const TORVFile::CPtr& file) const = 0;

    /// Empties the tree and reads the directory again.
    virtual void refresh();

    /// Reads the directory into the tree. Of several files with the same four keys one is kept, the others are passed
    /// over without a word.
    void construct();

    /// Whether the last `construct` found that file of the directory, but not yet all of it.
    bool isUnfinished(const QString& fileName) const;

    /// The name is relative to the directory.
    Result addFile(const QString& name);
    Result removeFile(const QString& name);

    /// Places a file of any kind, unless one with its four keys is there. There must be a file.
    void addToAllLevels(const TORVFile::CPtr& file);

    /// By exact names; null if there is none.
    TORVFileLeaf::Ptr findLeaf(const QString& site, const QString& product, const QString& configuration,
                               const QString& time) const;

    /// By the name of the file, at the cost of one look into the index. A file that was added twice with different
    /// headers has two leaves: the first in the order of the tree is found.
    TORVFileLeaf::Ptr findLeaf(const QString& fileName) const;

    LeavesPtr findLeaves(const QString& site, const QString& product, const QString& configuration,
                         const QString& time) const;

    /// `timeWindow`, in seconds, is the whole width of the window round the time; half of it, rounded down, lies on
    /// each side, and both ends belong to it.
    LeavesPtr findLeaves(const QString& site, const QString& product, const QString& configuration,
                         const QDateTime& time, int timeWindow) const;

    /// Leaves younger than `timeWindow` seconds, none from the future; with 0 all leaves.
    LeavesPtr findLatestLeaves(const QString& site, const QString& product, const QString& configuration,
                               int timeWindow) const;

    /// Of leaves that are equally close, in whole seconds, the first; null if there are none.
    static TORVFileLeaf::Ptr findClosestMatch(const Leaves& leaves, const QDateTime& time);

    /// "CAPPI", or with the configuration "CAPPI - Z": what the leaf's site has within a window round its time.
    QStringList findAllMatchingProducts(const TORVFileLeaf::CPtr& leaf, int timeWindow, bool withConfiguration) const;

    QStringList listSites() const;

    /// The site is a name, or "*" for all.
    QStringList listProductsForSite(const QString& site, bool withConfiguration) const;

protected:
    explicit TORVDirTop(const QString& path);

    /// The leaf of that product and configuration, both patterns, at the site of `leaf` and closest to its time.
    TORVFileLeaf::Ptr findClosestTo(const TORVFileLeaf& leaf, const QString& product, const QString& configuration,
                                    int timeWindow) const;

private:
    struct Keys;
    static Keys keysOf(const TORVFile& file);
    static void logAdding(const Keys& keys);

    void leafAdded(const TORVDirectory::Ptr& leaf) override;
    void leafRemoved(const TORVDirectory::Ptr& leaf) override;

    // Not by QDir, which takes a name that begins with a colon for one of the program's resources.
    QString pathOf(const QString& name) const;

    std::vector<TORVFile::CPtr> openAll(const std::vector<std::string>& names) const;
    Result judge(const TORVFile::CPtr& file) const;
    bool placeUnlessThere(const Keys& keys, const TORVFile::CPtr& file);

    // _mutex held by the caller, for writing.
    void place(const Keys& keys, const TORVFile::CPtr& file);

    // _mutex held by the caller, for reading at least.
    TORVFileLeaf::Ptr leafAt(const Keys& keys) const;
    TORVFileLeaf::Ptr leafOfFile(const QString& fileName) const;

    const QString _path;
    mutable std::shared_mutex _mutex;              // guards the tree below this node, and the members below
    QMultiHash<QString, TORVFileLeaf::Ptr> _index; // leaves by the names of their files
    QSet<QString> _unfinished;                     // file names
};
