#pragma once

#include <QStringList>

class TORVDataStore;

/**
 * Who wants to be told when product files come and go.
 *
 * Thread: the store calls on the main thread.
 */
class TORVDataStoreObserver
{
public:
    virtual ~TORVDataStoreObserver() = default;

    /// Absolute paths of files of the volume directory, in the order in which they were seen; one of the lists may be
    /// empty. The tree knows of them already, and may know more by now.
    virtual void dataStoreNewDataAvailable3d(TORVDataStore* store, const QStringList& added,
                                             const QStringList& removed) = 0;

    /// The same for the directory of flat products.
    virtual void dataStoreNewDataAvailable2d(TORVDataStore* store, const QStringList& added,
                                             const QStringList& removed) = 0;

protected:
    TORVDataStoreObserver() = default;
    TORVDataStoreObserver(const TORVDataStoreObserver&) = default;
    TORVDataStoreObserver& operator=(const TORVDataStoreObserver&) = default;
};
