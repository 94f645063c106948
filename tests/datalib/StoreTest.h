#pragma once

#include "datalib/TORVDataStore.h"
#include "datalib/TORVLandmarkList.h"
#include "datalib/TORVTerrainDir.h"

#include "TreeTest.h"
#include "radarsim/TORVProductWriter.h"
#include "support/LogFile.h"
#include "support/SandboxedHome.h"
#include "utils/TORVLog.h"

#include <QtTest>

#include <boost/make_shared.hpp>

#include <functional>
#include <memory>

/**
 * A store on real directories of its own, with real watchers. Files are named by their key of time; what they hold is
 * told beside it.
 *
 * Thread: test's thread.
 */
class StoreTest : public TreeTest
{
protected:
    StoreTest()
    {
        for (const char* const name : {"3d", "2d", "geo", "cache"}) {
            EXPECT_TRUE(QDir().mkdir(directory(name)));
        }
        QObject::connect(TORVLog::Instance(), QOverload<QString const&>::of(&TORVLog::historyAdd), &_receiver,
                         [this](const QString& line) { history << line; });
    }

    QString directory(const char* name) const { return path() + QLatin1Char('/') + QLatin1String(name); }

    /// As a radar does it: written beside, then renamed. @return the absolute path.
    QString add3d(const QString& key, const TORVProductFields& fields) const { return add("3d", key, fields); }
    QString add2d(const QString& key, const TORVProductFields& fields) const { return add("2d", key, fields); }

    static bool waitFor(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 60000); }

    /// What the store logs from now on. No other thread may log yet.
    void startLog() { _log = std::make_unique<LogFile>(TORVLog::LEVEL_DEBUG); }

    /// The lines that begin like that, of all threads.
    QStringList logged(const char* beginning) const
    {
        return _log->lines().filter(
            QRegularExpression(QLatin1String("^[EWND]: ") + QRegularExpression::escape(QLatin1String(beginning))));
    }

    void setDirectories()
    {
        store->setDirectories(directory("3d"), directory("2d"), directory("geo"), directory("cache"));
    }

    /// With both trees.
    void open(TORVDataStoreObserver* observer = nullptr)
    {
        store = boost::make_shared<TORVDataStore>(observer);
        setDirectories();
        ASSERT_TRUE(waitFor([this] { return store->getDirTop3d() && store->getDirTop2d(); }));
    }

    TORVFileLeaf::Ptr leaf3d(const char* key) const
    {
        return store->getDirTop3d()->findLeaf("HALMERA", "CAPPI", "Z", key);
    }

    static QString timeOf(const TORVFileLeaf::Ptr& leaf) { return leaf ? leaf->getTime() : QStringLiteral("none"); }

    SandboxedHome home;
    QStringList history;

private:
    QString add(const char* where, const QString& key, const TORVProductFields& fields) const
    {
        const QString file =
            QStringLiteral("%1/F%2%3").arg(directory(where)).arg(++_count, 2, 10, QLatin1Char('0')).arg(key);
        const QByteArray bytes = TORVProductWriter::file(fields, ProductFiles::zeros(fields));
        EXPECT_EQ(TORVProductWriter::write(file, bytes), QString());
        return file;
    }

    QObject _receiver;
    mutable int _count = 0;
    std::unique_ptr<LogFile> _log;

protected:
    TORVDataStore::Ptr store; // the first to go: its threads log
};
