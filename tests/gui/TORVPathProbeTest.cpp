#include "gui/TORVPathProbe.h"

#include "support/SandboxedHome.h"

#include <QDir>
#include <QTemporaryFile>
#include <QThread>
#include <QtTest>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <condition_variable>
#include <memory>
#include <mutex>

namespace
{

constexpr int Patience_ms = 60000;

// A file system whose directories answer when they are told to. Threads may outlive the test.
class SlowDisk
{
public:
    TORVPathProbe::Reading look(const QString& path)
    {
        std::unique_lock<std::mutex> lock(_mutex);
        _looks << path;
        _opened.wait(lock, [&] { return _isOpen || _open.contains(path); });
        ++_answers;
        TORVPathProbe::Reading reading;
        reading.path = path;
        reading.isDirectory = true;
        return reading;
    }

    void open(const QString& path)
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        _open << path;
        _opened.notify_all();
    }

    void openAll()
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        _isOpen = true;
        _opened.notify_all();
    }

    QStringList looks() const
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        return _looks;
    }

    int answers() const
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        return _answers;
    }

private:
    mutable std::mutex _mutex;
    std::condition_variable _opened;
    QStringList _looks;
    QStringList _open;
    bool _isOpen = false;
    int _answers = 0;
};

class TORVPathProbeTest : public testing::Test
{
protected:
    ~TORVPathProbeTest() override { disk->openAll(); }

    std::unique_ptr<TORVPathProbe> makeProbe(const TORVPathProbe::Look& look)
    {
        auto probe = std::make_unique<TORVPathProbe>(nullptr, look);
        QObject::connect(probe.get(), &TORVPathProbe::answered, probe.get(),
                         [this](const TORVPathProbe::Reading& reading) {
                             last = reading;
                             answered << reading.path;
                             thread = QThread::currentThread();
                         });
        return probe;
    }

    std::unique_ptr<TORVPathProbe> makeSlowProbe()
    {
        return makeProbe([shared = disk](const QString& path) { return shared->look(path); });
    }

    TORVPathProbe::Reading readingOf(const QString& path)
    {
        const std::unique_ptr<TORVPathProbe> probe = makeProbe(&TORVPathProbe::look);
        probe->ask(path);
        EXPECT_TRUE(isAnswered(path));
        return last;
    }

    bool isAnswered(const QString& path) const
    {
        return QTest::qWaitFor([&] { return answered.contains(path); }, Patience_ms);
    }

    bool isLookedAt(const QString& path) const
    {
        return QTest::qWaitFor([&] { return disk->looks().contains(path); }, Patience_ms);
    }

    const SandboxedHome home;
    const std::shared_ptr<SlowDisk> disk = std::make_shared<SlowDisk>();
    QStringList answered;
    TORVPathProbe::Reading last;
    QThread* thread = nullptr;
    const QString a = QStringLiteral("/a");
    const QString b = QStringLiteral("/b");
    const QString c = QStringLiteral("/c");
};

} // namespace

TEST_F(TORVPathProbeTest, TellsDeviceAndSizesOfADirectory)
{
    const TORVPathProbe::Reading reading = readingOf(home.path());
    struct stat file = {};
    ASSERT_EQ(::stat(qUtf8Printable(home.path()), &file), 0);
    EXPECT_TRUE(reading.isDirectory);
    EXPECT_EQ(reading.device, file.st_dev);
    EXPECT_GT(reading.total_MiB, 0);
    EXPECT_GE(reading.total_MiB, reading.available_MiB);
}

TEST_F(TORVPathProbeTest, TellsNothingOfAPathThatDoesNotExist)
{
    const TORVPathProbe::Reading reading = readingOf(home.filePath(QStringLiteral("nowhere")));
    EXPECT_FALSE(reading.isDirectory);
    EXPECT_EQ(reading.total_MiB, 0);
}

TEST_F(TORVPathProbeTest, AFileIsNoDirectory)
{
    const TORVPathProbe::Reading reading = readingOf(home.write(QStringLiteral("file"), "x"));
    EXPECT_FALSE(reading.isDirectory);
    EXPECT_EQ(reading.total_MiB, 0);
}

TEST_F(TORVPathProbeTest, AnEmptyPathIsNoDirectory)
{
    EXPECT_FALSE(readingOf(QString()).isDirectory);
}

TEST_F(TORVPathProbeTest, AnswersOnTheThreadThatAsked)
{
    readingOf(home.path());
    EXPECT_EQ(thread, QThread::currentThread());
}

TEST_F(TORVPathProbeTest, AskingDoesNotWaitForTheDisk)
{
    const std::unique_ptr<TORVPathProbe> probe = makeSlowProbe();
    probe->ask(a);
    EXPECT_TRUE(answered.isEmpty());
    disk->open(a);
    EXPECT_TRUE(isAnswered(a));
}

TEST_F(TORVPathProbeTest, ANewerQuestionDoesNotWaitForAnOlderOne)
{
    const std::unique_ptr<TORVPathProbe> probe = makeSlowProbe();
    disk->open(b);
    probe->ask(a);
    probe->ask(b);
    EXPECT_TRUE(isAnswered(b));
}

TEST_F(TORVPathProbeTest, OnlyTheNewestQuestionGetsAnAnswer)
{
    const std::unique_ptr<TORVPathProbe> probe = makeSlowProbe();
    probe->ask(a);
    probe->ask(b);
    disk->open(b);
    EXPECT_TRUE(isAnswered(b));
    disk->open(a);
    disk->open(c);
    EXPECT_TRUE(QTest::qWaitFor([this] { return disk->answers() == 2; }, Patience_ms));
    probe->ask(c);
    EXPECT_TRUE(isAnswered(c));
    EXPECT_EQ(answered, QStringList({b, c}));
}

TEST_F(TORVPathProbeTest, AnAnswerThatComesAfterALaterQuestionForTheSamePathWillDo)
{
    const std::unique_ptr<TORVPathProbe> probe = makeSlowProbe();
    probe->ask(a);
    probe->ask(b);
    probe->ask(a);
    disk->open(a);
    EXPECT_TRUE(isAnswered(a));
    EXPECT_EQ(answered, QStringList({a}));
}

TEST_F(TORVPathProbeTest, APathIsLookedAtOnceHoweverOftenItIsAskedFor)
{
    const std::unique_ptr<TORVPathProbe> probe = makeSlowProbe();
    for (int i = 0; i < 5; ++i) {
        probe->ask(a);
    }
    disk->open(a);
    EXPECT_TRUE(isAnswered(a));
    EXPECT_EQ(disk->looks(), QStringList({a}));
    EXPECT_EQ(answered, QStringList({a}));
}

TEST_F(TORVPathProbeTest, APathThatHasBeenAnsweredIsLookedAtAgain)
{
    const std::unique_ptr<TORVPathProbe> probe = makeSlowProbe();
    disk->open(a);
    probe->ask(a);
    EXPECT_TRUE(isAnswered(a));
    probe->ask(a);
    EXPECT_TRUE(QTest::qWaitFor([this] { return answered.size() == 2; }, Patience_ms));
}

TEST_F(TORVPathProbeTest, FourPathsAreLookedAtAtOnceAndTheNewestWhenOneHasAnswered)
{
    const std::unique_ptr<TORVPathProbe> probe = makeSlowProbe();
    for (const char* const path : {"/1", "/2", "/3", "/4", "/5", "/6"}) {
        probe->ask(QLatin1String(path));
    }
    EXPECT_TRUE(QTest::qWaitFor([this] { return disk->looks().size() == TORVPathProbe::MostThreads; }, Patience_ms));
    disk->open(QStringLiteral("/2"));
    EXPECT_TRUE(isLookedAt(QStringLiteral("/6")));
    disk->openAll();
    EXPECT_TRUE(isAnswered(QStringLiteral("/6")));
    EXPECT_FALSE(disk->looks().contains(QStringLiteral("/5")));
    EXPECT_EQ(answered, QStringList({QStringLiteral("/6")}));
}

TEST_F(TORVPathProbeTest, MayGoWhileADiskDoesNotAnswer)
{
    std::unique_ptr<TORVPathProbe> probe = makeSlowProbe();
    probe->ask(a);
    EXPECT_TRUE(isLookedAt(a));
    probe.reset();
    disk->openAll();
    EXPECT_TRUE(QTest::qWaitFor([this] { return disk->answers() == 1; }, Patience_ms));
    EXPECT_TRUE(answered.isEmpty());
}

TEST_F(TORVPathProbeTest, AnAbsolutePathIsCleaned)
{
    EXPECT_EQ(TORVPathProbe::absolutePath(QStringLiteral(" /srv//radar/../3d/ ")), QStringLiteral("/srv/3d"));
}

TEST_F(TORVPathProbeTest, ATildeAtTheBeginningIsTheHomeDirectory)
{
    EXPECT_EQ(TORVPathProbe::absolutePath(QStringLiteral("~")), home.path());
    EXPECT_EQ(TORVPathProbe::absolutePath(QStringLiteral("~/3d")), home.filePath(QStringLiteral("3d")));
    EXPECT_EQ(TORVPathProbe::absolutePath(QStringLiteral("/srv/~/3d")), QStringLiteral("/srv/~/3d"));
}

TEST_F(TORVPathProbeTest, ARelativePathBeginsInTheCurrentDirectory)
{
    EXPECT_EQ(TORVPathProbe::absolutePath(QStringLiteral("3d")), QDir::currentPath() + QLatin1String("/3d"));
    EXPECT_EQ(TORVPathProbe::absolutePath(QStringLiteral("~3d")), QDir::currentPath() + QLatin1String("/~3d"));
}

TEST_F(TORVPathProbeTest, AnEmptyTextStaysEmpty)
{
    EXPECT_EQ(TORVPathProbe::absolutePath(QString()), QString());
    EXPECT_EQ(TORVPathProbe::absolutePath(QStringLiteral("  ")), QString());
}
