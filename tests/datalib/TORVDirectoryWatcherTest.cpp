#include "datalib/TORVDirectoryWatcher.h"

#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"
#include "radarsim/TORVProductWriter.h"
#include "support/LogFile.h"
#include "support/ProductFiles.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QtTest>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace
{

constexpr int Patience_ms = 30000;

// Real threads and real notices; what is expected is waited for, never slept for.
class TORVDirectoryWatcherTest : public testing::Test
{
protected:
    using Notices = TORVDirectoryWatcher::Notices;

    std::unique_ptr<TORVDirectoryWatcher> watch(const QString& path, Notices notices = Notices::ON)
    {
        return std::make_unique<TORVDirectoryWatcher>(path, TORVDirectoryWatchData::DIRECTORY_3D, notices);
    }

    std::unique_ptr<TORVDirectoryWatcher> watchReady(Notices notices = Notices::ON)
    {
        auto watcher = watch(directory(), notices);
        EXPECT_TRUE(waitFor([&] { return watcher->getTop() != nullptr; }));
        return watcher;
    }

    QString directory() const { return QDir(files.path(QString())).absolutePath(); }
    QString path(const QString& name) const { return directory() + QLatin1Char('/') + name; }

    static QString name(int number) { return QStringLiteral("HAL26%1.CAPZ").arg(number, 10, 10, QLatin1Char('0')); }

    // As a radar does it: written beside, then renamed.
    QString deliver(int number) const
    {
        const QByteArray bytes = TORVProductWriter::file(ProductFiles::small(), QByteArray(24, '\1'));
        EXPECT_EQ(TORVProductWriter::write(path(name(number)), bytes), QString());
        return path(name(number));
    }

    static bool waitFor(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, Patience_ms); }

    static void drain(TORVDirectoryWatcher& watcher, QStringList& added, QStringList& removed)
    {
        for (QString file = watcher.getAddedFile(); !file.isEmpty(); file = watcher.getAddedFile()) {
            added << file;
        }
        for (QString file = watcher.getRemovedFile(); !file.isEmpty(); file = watcher.getRemovedFile()) {
            removed << file;
        }
    }

    bool waitForAdded(TORVDirectoryWatcher& watcher, int count)
    {
        return waitFor([&] {
            drain(watcher, added, removed);
            return added.size() >= count;
        });
    }

    bool waitForRemoved(TORVDirectoryWatcher& watcher, int count)
    {
        return waitFor([&] {
            drain(watcher, added, removed);
            return removed.size() >= count;
        });
    }

    // How often a signal has arrived; on the main thread, unlike a QSignalSpy, which writes where the signal is
    // emitted.
    class Counter
    {
    public:
        Counter(TORVDirectoryWatcher& watcher, void (TORVDirectoryWatcher::*signal)())
        {
            QObject::connect(&watcher, signal, &_receiver, [this] { ++_count; });
        }

        int count() const { return _count; }

    private:
        QObject _receiver;
        int _count = 0;
    };

    ProductFiles files;
    QStringList added;
    QStringList removed;
};

} // namespace

TEST_F(TORVDirectoryWatcherTest, SaysWhenTheTreeIsThere)
{
    deliver(1);
    auto watcher = watch(QString());
    const Counter initialized(*watcher, &TORVDirectoryWatcher::initialized);
    watcher->pathChanged(directory());
    ASSERT_TRUE(waitFor([&] { return initialized.count() == 1; }));
    EXPECT_TRUE(watcher->getTop()->findLeaf(name(1)));
    EXPECT_EQ(watcher->getAddedFile(), QString());
}

TEST_F(TORVDirectoryWatcherTest, TellsOfANewFile)
{
    auto watcher = watchReady();
    const Counter newFiles(*watcher, &TORVDirectoryWatcher::newFiles);
    const QString file = deliver(1);
    ASSERT_TRUE(waitFor([&] { return newFiles.count() == 1; }));
    EXPECT_EQ(watcher->getAddedFile(), file);
    EXPECT_EQ(watcher->getAddedFile(), QString());
}

TEST_F(TORVDirectoryWatcherTest, TellsOfARemovedFile)
{
    const QString file = deliver(1);
    auto watcher = watchReady();
    QFile::remove(file);
    ASSERT_TRUE(waitForRemoved(*watcher, 1));
    EXPECT_EQ(removed, QStringList(file));
}

TEST_F(TORVDirectoryWatcherTest, WatchesAPathWithASlashAtItsEnd)
{
    auto watcher = watch(directory() + QLatin1Char('/'));
    ASSERT_TRUE(waitFor([&] { return watcher->getTop() != nullptr; }));
    deliver(1);
    EXPECT_TRUE(waitForAdded(*watcher, 1));
}

TEST_F(TORVDirectoryWatcherTest, ReportsASlowFileOnceByTheRetryTimer)
{
    auto watcher = watchReady();
    const Counter newFiles(*watcher, &TORVDirectoryWatcher::newFiles);
    files.writeTruncated(name(1), ProductFiles::small(), 650);
    ASSERT_TRUE(waitFor([&] { return watcher->isWaitingForFiles(); }));
    EXPECT_EQ(newFiles.count(), 0); // nothing to tell of a file that waits
    QFile file(path(name(1)));
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write(QByteArray(14, '\1')); // growth in place brings no notice
    file.close();
    ASSERT_TRUE(waitFor([&] { return newFiles.count() == 1; }));
    drain(*watcher, added, removed);
    EXPECT_EQ(added, QStringList(path(name(1))));
}

TEST_F(TORVDirectoryWatcherTest, ReportsEachOfTenThousandFilesOnce)
{
    constexpr int Total = 10000; // within a second or two
    auto watcher = watchReady();
    for (int i = 0; i < Total; ++i) {
        deliver(i);
    }
    ASSERT_TRUE(waitForAdded(*watcher, Total));
    EXPECT_EQ(added.size(), Total);
    EXPECT_EQ(QSet<QString>(added.begin(), added.end()).size(), Total);
    EXPECT_EQ(removed, QStringList());
    ASSERT_TRUE(QDir(directory()).removeRecursively());
    EXPECT_TRUE(waitForRemoved(*watcher, Total));
    EXPECT_EQ(removed.size(), Total);
}

TEST_F(TORVDirectoryWatcherTest, FollowsARemovedDirectoryThatReturns)
{
    deliver(1);
    auto watcher = watchReady();
    ASSERT_TRUE(QDir(directory()).removeRecursively());
    ASSERT_TRUE(waitForRemoved(*watcher, 1));
    ASSERT_TRUE(QDir().mkdir(directory()));
    watcher->lookAgain(); // the slow timer's
    deliver(2);
    ASSERT_TRUE(waitForAdded(*watcher, 1));
    deliver(3); // watched again: no look is needed
    ASSERT_TRUE(waitForAdded(*watcher, 2));
    EXPECT_EQ(added, (QStringList{path(name(2)), path(name(3))}));
}

TEST_F(TORVDirectoryWatcherTest, FindsADirectoryThatComesLater)
{
    const QString later = files.path(QStringLiteral("later"));
    auto watcher = watch(later);
    const Counter initialized(*watcher, &TORVDirectoryWatcher::initialized);
    ASSERT_TRUE(QDir().mkdir(later));
    files.write(QStringLiteral("later/") + name(1), ProductFiles::small());
    // The first pass may come before the directory, before its file or after both, so the file is what is waited for.
    ASSERT_TRUE(waitFor([&] {
        watcher->lookAgain();
        return watcher->getTop() && watcher->getTop()->findLeaf(name(1));
    }));
    EXPECT_TRUE(waitFor([&] { return initialized.count() == 1; }));
}

TEST_F(TORVDirectoryWatcherTest, FindsNewFilesWithoutNoticesWhenItLooks)
{
    auto watcher = watchReady(Notices::OFF);
    deliver(1);
    watcher->lookAgain();
    EXPECT_TRUE(waitForAdded(*watcher, 1));
}

TEST_F(TORVDirectoryWatcherTest, ChangesToAnotherDirectory)
{
    deliver(1);
    auto watcher = watchReady();
    const QString other = files.path(QStringLiteral("other"));
    ASSERT_TRUE(QDir().mkdir(other));
    files.write(QStringLiteral("other/") + name(7), ProductFiles::small());
    watcher->pathChanged(other);
    ASSERT_TRUE(waitFor([&] { return watcher->getTop() && watcher->getTop()->findLeaf(name(7)); }));
    EXPECT_FALSE(watcher->getTop()->findLeaf(name(1)));
    deliver(2); // nobody looks there any more
    files.write(QStringLiteral("other/") + name(8), ProductFiles::small());
    ASSERT_TRUE(waitForAdded(*watcher, 1));
    EXPECT_EQ(added, QStringList(other + QLatin1Char('/') + name(8)));
}

TEST_F(TORVDirectoryWatcherTest, WatchesNothingWithoutAPath)
{
    auto watcher = watch(QString());
    watcher->lookAgain();
    watcher->stop();
    EXPECT_FALSE(watcher->getTop());
}

TEST_F(TORVDirectoryWatcherTest, EndsAtOnceWheneverItIsAsked)
{
    deliver(1);
    for (int i = 0; i < 100; ++i) {
        const auto watcher = watch(directory()); // its thread may not even have begun
        deliver(2 + i);
    }
    SUCCEED() << "no destructor waited for ever";
}

TEST_F(TORVDirectoryWatcherTest, LetsTheTreeBeReadWhileItChanges)
{
    auto watcher = watchReady();
    const boost::shared_ptr<TORVDirTop> top = watcher->getTop();
    std::atomic<bool> isDone{false};
    std::thread reader([&] {
        while (!isDone) {
            top->listSites();
            top->findLeaves(QStringLiteral("*"), QStringLiteral("*"), QStringLiteral("*"), QStringLiteral("*"));
        }
    });
    for (int i = 0; i < 200; ++i) {
        const QString file = deliver(i);
        if (i % 3 == 0) {
            QFile::remove(file);
        }
    }
    const bool isSeen = waitFor([&] {
        drain(*watcher, added, removed);
        return added.contains(path(name(199)));
    });
    isDone = true;
    reader.join();
    EXPECT_TRUE(isSeen);
}
