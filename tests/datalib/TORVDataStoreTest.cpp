#include "datalib/TORVDataStore.h"

#include "datalib/TORVDataStoreObserver.h"
#include "datalib/TORVTerrainSet.h"

#include "StoreTest.h"

#include <QSignalSpy>

#include <atomic>
#include <thread>

namespace
{

class Observer final : public TORVDataStoreObserver
{
public:
    struct Calls
    {
        int count = 0;
        TORVDataStore* store = nullptr;
        QStringList added;
        QStringList removed;
    };

    void dataStoreNewDataAvailable3d(TORVDataStore* store, const QStringList& added,
                                     const QStringList& removed) override
    {
        note(volumes, store, added, removed);
    }

    void dataStoreNewDataAvailable2d(TORVDataStore* store, const QStringList& added,
                                     const QStringList& removed) override
    {
        note(flats, store, added, removed);
    }

    Calls volumes;
    Calls flats;

private:
    static void note(Calls& calls, TORVDataStore* store, const QStringList& added, const QStringList& removed)
    {
        ++calls.count;
        calls.store = store;
        calls.added += added;
        calls.removed += removed;
    }
};

class TORVDataStoreTest : public StoreTest
{
protected:
    // A volume whose data is that many seconds old now, or in the future.
    static TORVProductFields aged(const QByteArray& site, qint64 seconds)
    {
        TORVProductFields fields = volume(site);
        setTime(fields, QDateTime::currentDateTimeUtc().addSecs(-seconds));
        return fields;
    }

    static TORVProductFields dated(const QByteArray& site, const char* isoTime)
    {
        TORVProductFields fields = volume(site);
        setTime(fields, QDateTime::fromString(QLatin1String(isoTime), Qt::ISODate));
        return fields;
    }

    TORVFileLeaf::Ptr latest(const char* site) const { return store->getLatestData(site, "CAPPI", "Z"); }

    QStringList sequence(const char* site, const char* configuration = "Z") const
    {
        QVector<TORVFileLeaf::Ptr> leaves;
        store->getDataSequence(leaves, site, "CAPPI", configuration);
        return times(leaves);
    }

    static QStringList times(const QVector<TORVFileLeaf::Ptr>& leaves)
    {
        QStringList times;
        for (const TORVFileLeaf::Ptr& leaf : leaves) {
            times << timeOf(leaf);
        }
        return times;
    }

    Observer observer;
};

using TORVDataStoreDeathTest = TORVDataStoreTest;

} // namespace

TEST_F(TORVDataStoreTest, HasOnlyLandmarksBeforeItHasDirectories)
{
    TORVDataStore empty(nullptr);
    EXPECT_FALSE(empty.getDirTop3d());
    EXPECT_FALSE(empty.getDirTop2d());
    EXPECT_FALSE(empty.getTerrainDir());
    EXPECT_TRUE(empty.getLandmarkList());
    EXPECT_FALSE(empty.getLatestData("*", "*", "*"));
    QVector<TORVFileLeaf::Ptr> leaves;
    empty.getDataSequence(leaves, "*", "*", "*");
    EXPECT_TRUE(leaves.isEmpty());
}

TEST_F(TORVDataStoreTest, ReadsTheLandmarksWhenItIsMade)
{
    home.write(QStringLiteral(".config/Halmera/TORV3DLandmarks.conf"),
               "[LANDMARKS]\nlandmarks\\size=1\nlandmarks\\1\\label=Espoo\n"
               "landmarks\\1\\location\\lat=60.2\nlandmarks\\1\\location\\lon=24.7\n");
    const TORVDataStore made(nullptr);
    ASSERT_EQ(made.getLandmarkList()->getLandmarks().size(), 1);
    EXPECT_EQ(made.getLandmarkList()->getLandmarks().at(0)->getLabel(), QLatin1String("Espoo"));
}

TEST_F(TORVDataStoreTest, ReadsItsDirectories)
{
    add3d("260714120000", volume("HALMERA"));
    add2d("260714120000", flat("ALPHA", MAX));
    open();
    EXPECT_EQ(store->getDirTop3d()->listSites(), QStringList{"HALMERA"});
    EXPECT_EQ(store->getDirTop2d()->listSites(), QStringList{"ALPHA"});
    EXPECT_EQ(store->getTerrainDir()->getSourcePath(), directory("geo"));
    EXPECT_EQ(store->getTerrainDir()->getCachePath(), directory("cache"));
}

TEST_F(TORVDataStoreTest, TellsOnceThatEachTreeHasCome)
{
    store = boost::make_shared<TORVDataStore>(nullptr);
    const QSignalSpy initialized3d(store.get(), &TORVDataStore::initialized3d);
    const QSignalSpy initialized2d(store.get(), &TORVDataStore::initialized2d);
    setDirectories();
    EXPECT_EQ(initialized3d.count() + initialized2d.count(), 0) << "not before the call has returned";
    ASSERT_TRUE(waitFor([&] { return initialized3d.count() > 0 && initialized2d.count() > 0; }));
    EXPECT_TRUE(store->getDirTop3d());
    EXPECT_TRUE(store->getDirTop2d());
    store->setDirectories(directory("geo"), directory("2d"), directory("geo"), directory("cache"));
    ASSERT_TRUE(waitFor([&] { return initialized3d.count() > 1; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(initialized3d.count(), 2);
    EXPECT_EQ(initialized2d.count(), 1);
}

// The threads of small directories end before anybody could connect to them, those of others after that: each has to be
// told of, and none twice.
TEST_F(TORVDataStoreTest, TellsOfEachTreeHoweverSoonItComes)
{
    for (int i = 0; i < 50; ++i) {
        store = boost::make_shared<TORVDataStore>(nullptr);
        const QSignalSpy initialized3d(store.get(), &TORVDataStore::initialized3d);
        setDirectories();
        ASSERT_TRUE(waitFor([&] { return initialized3d.count() > 0; }));
        QCoreApplication::processEvents();
        ASSERT_EQ(initialized3d.count(), 1);
    }
}

TEST_F(TORVDataStoreTest, SaysWhatItInitializes)
{
    startLog();
    open();
    EXPECT_EQ(logged("Initializing "),
              (QStringList{"D: Initializing 3d data directory..", "D: Initializing 2d data directory..",
                           "D: Initializing geo data directory.."}));
    EXPECT_EQ(logged("new "),
              (QStringList{"D: new 3d data path=" + directory("3d"), "D: new 2d data path=" + directory("2d"),
                           "D: new geo data path=" + directory("geo"), "D: new geo cache path=" + directory("cache")}));
}

TEST_F(TORVDataStoreTest, DoesNothingForUnchangedPaths)
{
    startLog();
    open();
    const auto top3d = store->getDirTop3d();
    const auto top2d = store->getDirTop2d();
    const auto terrain = store->getTerrainDir();
    setDirectories();
    EXPECT_EQ(store->getDirTop3d(), top3d);
    EXPECT_EQ(store->getDirTop2d(), top2d);
    EXPECT_EQ(store->getTerrainDir(), terrain);
    EXPECT_EQ(logged("Initializing ").size(), 3);
    EXPECT_EQ(logged("Scanning ").size(), 1) << "the terrain was not scanned again";
}

TEST_F(TORVDataStoreTest, LeavesTheWatchersAloneWhenTheCachePathChanges)
{
    open();
    const auto top3d = store->getDirTop3d();
    const auto top2d = store->getDirTop2d();
    const auto terrain = store->getTerrainDir();
    store->setDirectories(directory("3d"), directory("2d"), directory("geo"), directory("cache") + "2");
    EXPECT_EQ(store->getDirTop3d(), top3d);
    EXPECT_EQ(store->getDirTop2d(), top2d);
    EXPECT_NE(store->getTerrainDir(), terrain);
    EXPECT_EQ(store->getTerrainDir()->getCachePath(), directory("cache") + "2");
}

TEST_F(TORVDataStoreTest, ReplacesTheTerrainWhenItsPathChanges)
{
    open();
    const auto terrain = store->getTerrainDir();
    store->setDirectories(directory("3d"), directory("2d"), directory("3d"), directory("cache"));
    EXPECT_NE(store->getTerrainDir(), terrain);
    EXPECT_EQ(store->getTerrainDir()->getSourcePath(), directory("3d"));
}

TEST_F(TORVDataStoreTest, ReplacesTheWatcherWhoseDirectoryChanges)
{
    add3d("260714120000", volume("HALMERA"));
    open();
    const auto top3d = store->getDirTop3d();
    const auto top2d = store->getDirTop2d();
    const auto terrain = store->getTerrainDir();
    store->setDirectories(directory("geo"), directory("2d"), directory("geo"), directory("cache"));
    ASSERT_TRUE(waitFor([&] { return store->getDirTop3d() != nullptr; }));
    EXPECT_EQ(store->getDirTop3d()->getPath(), directory("geo"));
    EXPECT_TRUE(store->getDirTop3d()->listSites().isEmpty());
    EXPECT_EQ(top3d->listSites(), QStringList{"HALMERA"}) << "who holds the old tree may go on using it";
    EXPECT_EQ(store->getDirTop2d(), top2d);
    EXPECT_EQ(store->getTerrainDir(), terrain);
}

TEST_F(TORVDataStoreTest, ReplacesTheWatcherOfFlatProductsAlone)
{
    open();
    const auto top3d = store->getDirTop3d();
    store->setDirectories(directory("3d"), directory("geo"), directory("geo"), directory("cache"));
    ASSERT_TRUE(waitFor([&] { return store->getDirTop2d() != nullptr; }));
    EXPECT_EQ(store->getDirTop2d()->getPath(), directory("geo"));
    EXPECT_EQ(store->getDirTop3d(), top3d);
}

TEST_F(TORVDataStoreTest, FindsNothingWhereThereIsNoDirectory)
{
    store = boost::make_shared<TORVDataStore>(nullptr);
    const QSignalSpy initialized3d(store.get(), &TORVDataStore::initialized3d);
    const QSignalSpy initialized2d(store.get(), &TORVDataStore::initialized2d);
    store->setDirectories(directory("none"), QString(), directory("none"), directory("cache"));
    QCoreApplication::processEvents();
    EXPECT_EQ(initialized3d.count() + initialized2d.count(), 0);
    EXPECT_FALSE(store->getDirTop3d());
    EXPECT_FALSE(store->getDirTop2d());
    EXPECT_FALSE(store->getLatestData("*", "*", "*"));
    EXPECT_EQ(store->getTerrainDir()->getFileCount(), 0);
}

TEST_F(TORVDataStoreTest, TellsItsObserverOfNewAndRemovedVolumes)
{
    const QString old = add3d("260714115500", volume("HALMERA"));
    open(&observer);
    const QString first = add3d("260714120000", volume("HALMERA"));
    const QString second = add3d("260714120500", volume("HALMERA"));
    ASSERT_TRUE(waitFor([&] { return observer.volumes.added.size() == 2; }));
    EXPECT_EQ(observer.volumes.added, (QStringList{first, second}));
    EXPECT_EQ(observer.volumes.store, store.get());
    QFile::remove(old);
    ASSERT_TRUE(waitFor([&] { return !observer.volumes.removed.isEmpty(); }));
    EXPECT_EQ(observer.volumes.removed, QStringList{old});
    EXPECT_EQ(observer.flats.count, 0);
}

TEST_F(TORVDataStoreTest, TellsItsObserverOfNewAndRemovedFlatProducts)
{
    const QString old = add2d("260714115500", flat("HALMERA", MAX));
    open(&observer);
    const QString fresh = add2d("260714120000", flat("HALMERA", MAX));
    ASSERT_TRUE(waitFor([&] { return !observer.flats.added.isEmpty(); }));
    EXPECT_EQ(observer.flats.added, QStringList{fresh});
    EXPECT_EQ(observer.flats.store, store.get());
    QFile::remove(old);
    ASSERT_TRUE(waitFor([&] { return !observer.flats.removed.isEmpty(); }));
    EXPECT_EQ(observer.flats.removed, QStringList{old});
    EXPECT_EQ(observer.volumes.count, 0);
}

TEST_F(TORVDataStoreTest, SaysNothingOfTheFilesThatWereThereAtTheStart)
{
    add3d("260714115500", volume("HALMERA"));
    open(&observer);
    add3d("260714120000", volume("HALMERA"));
    ASSERT_TRUE(waitFor([&] { return observer.volumes.count > 0; }));
    EXPECT_EQ(observer.volumes.added.size(), 1);
}

TEST_F(TORVDataStoreTest, SaysNothingWhenNothingIsQueued)
{
    open(&observer);
    add3d("260714120000", volume("HALMERA"));
    ASSERT_TRUE(waitFor([&] { return observer.volumes.count > 0; }));
    store->dirChanged3d();
    store->dirChanged2d();
    EXPECT_EQ(observer.volumes.count, 1);
    EXPECT_EQ(observer.flats.count, 0);
}

TEST_F(TORVDataStoreTest, EmptiesTheQueuesWithoutAnObserver)
{
    startLog();
    const QString old2d = add2d("260714115500", flat("HALMERA", MAX));
    open();
    const QString file3d = add3d("260714120000", volume("HALMERA"));
    QFile::remove(old2d);
    ASSERT_TRUE(waitFor([&] { return logged(" - ").size() == 2; }));
    EXPECT_EQ(logged(" - added filename="), QStringList{"D:  - added filename=" + file3d});
    EXPECT_EQ(logged(" - removed filename="), QStringList{"D:  - removed filename=" + old2d});
    store->dirChanged3d();
    store->dirChanged2d();
    EXPECT_EQ(logged(" - ").size(), 2);
}

TEST_F(TORVDataStoreTest, TellsNobodyOfItsEnd)
{
    add3d("260714120000", volume("HALMERA"));
    open(&observer);
    store.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(observer.volumes.count + observer.flats.count, 0);
}

TEST_F(TORVDataStoreTest, EndsWhileItsDirectoriesAreRead)
{
    for (int i = 0; i < 50; ++i) {
        add3d(QStringLiteral("26071412%1").arg(i, 4, 10, QLatin1Char('0')), volume("HALMERA"));
        store = boost::make_shared<TORVDataStore>(&observer);
        setDirectories();
        store->setDirectories(directory("2d"), directory("3d"), directory("cache"), directory("geo"));
    }
    SUCCEED() << "nothing was waited for in vain";
}

TEST_F(TORVDataStoreTest, LatestDataIsTheNewestByTheTimeOfTheData)
{
    add3d("000101000000", dated("HALMERA", "2026-07-14T12:05:00Z"));
    add3d("260714120000", dated("HALMERA", "2026-07-14T12:00:00Z"));
    add3d("991231000000", dated("HALMERA", "2026-07-14T11:55:00Z"));
    open();
    EXPECT_EQ(timeOf(latest("HALMERA")), QLatin1String("000101000000"));
}

TEST_F(TORVDataStoreTest, LatestDataOfOneTimeIsTheFirstOfTheTree)
{
    add3d("260714120002", volume("HALMERA"));
    add3d("260714120001", volume("HALMERA"));
    open();
    EXPECT_EQ(timeOf(latest("HALMERA")), QLatin1String("260714120001"));
}

TEST_F(TORVDataStoreTest, LatestDataMayLieInTheFuture)
{
    add3d("260714120001", aged("HALMERA", 60));
    add3d("260714120002", aged("HALMERA", -300));
    open();
    EXPECT_EQ(timeOf(latest("HALMERA")), QLatin1String("260714120002"));
}

TEST_F(TORVDataStoreTest, LatestDataIsOfTheSiteProductAndConfigurationAskedFor)
{
    add3d("260714120000", volume("HALMERA", Z, 0));
    add3d("260714120500", volume("HALMERA", V, 300));
    add3d("260714121000", volume("ALPHA", Z, 600));
    open();
    EXPECT_EQ(timeOf(latest("HALMERA")), QLatin1String("260714120000"));
    EXPECT_EQ(timeOf(latest("halmera")), QLatin1String("260714120000"));
    EXPECT_EQ(timeOf(latest("*")), QLatin1String("260714121000"));
    EXPECT_EQ(timeOf(store->getLatestData("HALMERA", "*", "*")), QLatin1String("260714120500"));
    EXPECT_FALSE(latest("BETA"));
    EXPECT_FALSE(store->getLatestData("HALMERA", "MAX", "Z"));
}

TEST_F(TORVDataStoreTest, TakesNamesAsTheyAre)
{
    add3d("260714120000", volume("X[1]", Z, 0));
    add3d("260714120500", volume("X1", Z, 300));
    open();
    EXPECT_EQ(timeOf(latest("X[1]")), QLatin1String("260714120000"));
    EXPECT_EQ(sequence("X[1]"), QStringList{"260714120000"});
    EXPECT_FALSE(latest("X*"));
    EXPECT_EQ(sequence("X*"), QStringList());
}

TEST_F(TORVDataStoreTest, ReportsAClockThatIsAheadOnceForEachSite)
{
    const QString file = add3d("260714120000", aged("HALMERA", -3600));
    add3d("260714120000", aged("ALPHA", -7200));
    startLog();
    open();
    latest("HALMERA");
    EXPECT_EQ(history, QStringList{"The newest data of site HALMERA lies in the future: the radar's or this computer's "
                                   "clock is wrong."});
    EXPECT_EQ(logged("Newest data lies"), QStringList{"W: Newest data lies in the future: " + file});
    latest("HALMERA");
    EXPECT_EQ(history.size(), 1);
    latest("*"); // ALPHA's is the newest
    latest("ALPHA");
    EXPECT_EQ(history.size(), 2);
    EXPECT_EQ(logged("Newest data lies").size(), 2);
}

TEST_F(TORVDataStoreTest, BearsAClockThatIsAheadALittle)
{
    add3d("260714120000", aged("HALMERA", -590));
    open();
    EXPECT_TRUE(latest("HALMERA"));
    EXPECT_EQ(history, QStringList());
}

TEST_F(TORVDataStoreTest, SequenceRunsByTheTimeOfTheDataAndThenByTheKey)
{
    add3d("000101000500", dated("HALMERA", "2000-01-01T00:05:00Z"));
    add3d("991231235500", dated("HALMERA", "1999-12-31T23:55:00Z"));
    add3d("BBBBBBBBBBBB", dated("HALMERA", "2000-01-01T00:00:00Z"));
    add3d("AAAAAAAAAAAA", dated("HALMERA", "2000-01-01T00:00:00Z"));
    open();
    EXPECT_EQ(sequence("HALMERA"), (QStringList{"991231235500", "AAAAAAAAAAAA", "BBBBBBBBBBBB", "000101000500"}));
}

TEST_F(TORVDataStoreTest, SequenceIsAppended)
{
    add3d("260714120500", volume("HALMERA", Z, 300));
    add3d("260714120000", volume("HALMERA", V, 0));
    open();
    QVector<TORVFileLeaf::Ptr> leaves;
    store->getDataSequence(leaves, "HALMERA", "CAPPI", "Z");
    store->getDataSequence(leaves, "HALMERA", "CAPPI", "V");
    EXPECT_EQ(times(leaves), (QStringList{"260714120500", "260714120000"})) << "what was there stays in front";
}

TEST_F(TORVDataStoreTest, SequenceIsLoggedInTheOrderOfItsKeys)
{
    add3d("260714120001", volume("HALMERA", Z, 300));
    add3d("260714120002", volume("HALMERA", Z, 0));
    startLog();
    open();
    EXPECT_EQ(sequence("HALMERA"), (QStringList{"260714120002", "260714120001"}));
    EXPECT_EQ(logged("number of leaves found: "), QStringList{"D: number of leaves found: 2"});
    EXPECT_EQ(logged("-testing: "), (QStringList{"D: -testing: 260714120001", "D: -testing: 260714120002"}));
}

TEST_F(TORVDataStoreTest, LetsATerrainSetBeLoadedWhileItsDirectoryIsReplaced)
{
    open();
    const auto projection =
        TORVGeoProjection::shared(QStringLiteral("aeqd"), TORVCoordinate(60.0, 25.0), 6371000.0, 298.257);
    const TORVTerrainSet::Ptr set =
        store->getTerrainDir()->getTerrainSet(projection, TORVCoordinate(60.0, 25.0), TORVCoordinate(61.0, 27.0));
    const std::atomic<bool> abort{false};
    std::thread loader([&] { set->loadFiles(abort); });
    store->setDirectories(directory("3d"), directory("2d"), directory("2d"), directory("cache") + "2");
    loader.join();
    EXPECT_TRUE(set->isLoaded());
    EXPECT_EQ(set->getElevationAtLocation(TORVCoordinate(60.5, 25.5)), 0.0);
}

TEST_F(TORVDataStoreDeathTest, StopsWhereThereIsNoWatcherToAsk)
{
    TORVDataStore empty(nullptr);
    EXPECT_DEATH(empty.dirChanged3d(), "_dirWatch3d");
    EXPECT_DEATH(empty.dirChanged2d(), "_dirWatch2d");
}
