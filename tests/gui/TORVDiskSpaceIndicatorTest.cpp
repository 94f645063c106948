#include "gui/TORVDiskSpaceIndicator.h"

#include "gui/DisplayMode.h"
#include "support/SandboxedHome.h"
#include "utils/TORVDisplayMode.h"
#include "utils/TORVLog.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QGraphicsOpacityEffect>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include <sys/mount.h>

#include <limits>

namespace
{

constexpr int Patience_ms = 60000;

const QString Red = QStringLiteral("QProgressBar::chunk {background-color: red;}");
const QString Yellow = QStringLiteral("QProgressBar::chunk {background-color: yellow;}");
const QString Green = QStringLiteral("QProgressBar::chunk {background-color: green;}");
const QString Above90 = QStringLiteral("Disk space used more than 90%");
const QString Above70 = QStringLiteral("Disk space used more than 70%");

class TORVDiskSpaceIndicatorTest : public testing::Test
{
protected:
    ~TORVDiskSpaceIndicatorTest() override
    {
        qApp->setStyleSheet(QString());
        QApplication::setPalette(palette);
        TORVDisplayMode::setNight(false);
    }

    void check(const QString& path)
    {
        QSignalSpy changed(&bar, &TORVDiskSpaceIndicator::percentChanged);
        bar.pathChanged(path);
        ASSERT_TRUE(changed.wait(Patience_ms));
    }

    // Lines that tell of a limit; each has its path below it.
    QStringList alerts() const
    {
        QStringList lines;
        for (const QList<QVariant>& arguments : history) {
            const QString line = arguments.first().toString();
            if (!line.startsWith(QLatin1String("  - path: "))) {
                lines << line;
            }
        }
        return lines;
    }

    QString lastLine() const { return history.isEmpty() ? QString() : history.last().first().toString(); }

    const QPalette palette = QApplication::palette();
    const SandboxedHome home;
    QSignalSpy history{TORVLog::Instance(), SIGNAL(historyAdd(QString))};
    TORVDiskSpaceIndicator bar;
};

// A disk of 20 MiB in memory, for those who may mount one.
class SmallDisk
{
public:
    SmallDisk() : _isMounted(::mount("none", qUtf8Printable(_directory.path()), "tmpfs", 0, "size=20m") == 0) {}
    ~SmallDisk()
    {
        if (_isMounted) {
            ::umount2(qUtf8Printable(_directory.path()), MNT_DETACH);
        }
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool isMounted() const { return _isMounted; }
    QString path() const { return _directory.path(); }

    void fill(int megabytes) const
    {
        QFile file(_directory.filePath(QStringLiteral("fill")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        const QByteArray block(1024 * 1024, 'x');
        for (int i = 0; i < megabytes; ++i) {
            ASSERT_EQ(file.write(block), block.size());
        }
    }

private:
    QTemporaryDir _directory;
    bool _isMounted;
};

} // namespace

TEST_F(TORVDiskSpaceIndicatorTest, KnowsNothingAtTheBeginning)
{
    EXPECT_EQ(bar.percent(), -1);
    EXPECT_EQ(bar.sizesText(), QString());
    EXPECT_EQ(bar.toolTip(), QStringLiteral("Disk space information not available"));
    EXPECT_LT(bar.value(), bar.minimum());
    EXPECT_LT(bar.minimum(), bar.maximum()) << "an empty range would stand for being busy";
}

TEST_F(TORVDiskSpaceIndicatorTest, ThePercentAreRoundedDown)
{
    bar.setSpaceValues(1000, 709);
    EXPECT_EQ(bar.percent(), 70);
    EXPECT_EQ(bar.maximum(), 1000);
    EXPECT_EQ(bar.value(), 709);
}

TEST_F(TORVDiskSpaceIndicatorTest, TheLargestDiskHasItsPercent)
{
    constexpr int Largest = std::numeric_limits<int>::max();
    bar.setSpaceValues(Largest, Largest);
    EXPECT_EQ(bar.percent(), 100);
}

TEST_F(TORVDiskSpaceIndicatorTest, SizesThatMakeNoSenseAreNotShown)
{
    bar.setSpaceValues(0, 0);
    EXPECT_EQ(bar.percent(), -1);
    bar.setSpaceValues(-5, 3);
    EXPECT_EQ(bar.percent(), -1);
    bar.setSpaceValues(100, 150);
    EXPECT_EQ(bar.percent(), 100);
    bar.setSpaceValues(100, -1);
    EXPECT_EQ(bar.percent(), 0);
}

TEST_F(TORVDiskSpaceIndicatorTest, TheToolTipGivesMegabytesUpTo1024)
{
    bar.setSpaceValues(1024, 512);
    bar.setSpaceTooltip(50);
    EXPECT_EQ(bar.toolTip(), QStringLiteral("50% of disk space is used (512 MB/1024 MB)"));
}

// 2048 / 1024 = 2; 738714 / 1024 = 721.40; 947098 / 1024 = 924.90
TEST_F(TORVDiskSpaceIndicatorTest, TheToolTipGivesGigabytesAbove)
{
    bar.setSpaceValues(2048, 1025);
    bar.setSpaceTooltip(50);
    EXPECT_EQ(bar.toolTip(), QStringLiteral("50% of disk space is used (1.0 GB/2.0 GB)"));
    bar.setSpaceValues(947098, 738714);
    EXPECT_EQ(bar.sizesText(), QStringLiteral("721.4 GB/924.9 GB"));
}

TEST_F(TORVDiskSpaceIndicatorTest, TheColourTellsTheLevel)
{
    bar.giveAlert(0);
    EXPECT_EQ(bar.styleSheet(), Green);
    bar.giveAlert(70);
    EXPECT_EQ(bar.styleSheet(), Green);
    bar.giveAlert(71);
    EXPECT_EQ(bar.styleSheet(), Yellow);
    bar.giveAlert(90);
    EXPECT_EQ(bar.styleSheet(), Yellow);
    bar.giveAlert(91);
    EXPECT_EQ(bar.styleSheet(), Red);
}

TEST_F(TORVDiskSpaceIndicatorTest, EachLimitIsToldOnce)
{
    for (const int percent : {60, 75, 80, 95, 99, 95}) {
        bar.giveAlert(percent);
    }
    EXPECT_EQ(alerts(), QStringList({Above70, Above90}));
}

TEST_F(TORVDiskSpaceIndicatorTest, ALimitIsToldAgainWhenTheLevelHasFallenBelowIt)
{
    for (const int percent : {75, 95, 80, 95, 60, 75}) {
        bar.giveAlert(percent);
    }
    EXPECT_EQ(alerts(), QStringList({Above70, Above90, Above90, Above70}));
}

TEST_F(TORVDiskSpaceIndicatorTest, ThePathStandsBelowTheAlert)
{
    bar.setPath(QStringLiteral("/srv/3d"));
    bar.giveAlert(95);
    EXPECT_EQ(lastLine(), QStringLiteral("  - path: /srv/3d"));
}

TEST_F(TORVDiskSpaceIndicatorTest, ALevelThatIsNotHighIsNotTold)
{
    bar.giveAlert(70);
    EXPECT_TRUE(history.isEmpty());
}

TEST_F(TORVDiskSpaceIndicatorTest, ANewPathIsCheckedAtOnce)
{
    check(home.path());
    EXPECT_EQ(bar.path(), home.path());
    EXPECT_GE(bar.percent(), 0);
    EXPECT_LE(bar.percent(), 100);
    EXPECT_TRUE(bar.toolTip().startsWith(QString::number(bar.percent()) + QLatin1String("% of disk space is used")));
}

TEST_F(TORVDiskSpaceIndicatorTest, APathThatDoesNotExistEmptiesTheBarAndAlertsNobody)
{
    bar.setSpaceValues(100, 95);
    check(home.filePath(QStringLiteral("nowhere")));
    EXPECT_EQ(bar.percent(), -1);
    EXPECT_LT(bar.value(), bar.minimum());
    EXPECT_EQ(bar.toolTip(), QStringLiteral("Disk space information not available"));
    EXPECT_TRUE(history.isEmpty());
}

TEST_F(TORVDiskSpaceIndicatorTest, NoPathIsNotTheCurrentDirectory)
{
    check(QString());
    EXPECT_EQ(bar.percent(), -1);
}

TEST_F(TORVDiskSpaceIndicatorTest, TheHomeDirectoryMayBeWrittenAsATilde)
{
    check(QStringLiteral("~"));
    EXPECT_EQ(bar.path(), home.path());
    EXPECT_GE(bar.percent(), 0);
}

TEST_F(TORVDiskSpaceIndicatorTest, TheLastPathIsTheOneThatIsShown)
{
    QSignalSpy changed(&bar, &TORVDiskSpaceIndicator::percentChanged);
    bar.pathChanged(home.filePath(QStringLiteral("nowhere")));
    bar.pathChanged(home.path());
    ASSERT_TRUE(changed.wait(Patience_ms));
    EXPECT_EQ(changed.size(), 1);
    EXPECT_GE(bar.percent(), 0);
}

TEST_F(TORVDiskSpaceIndicatorTest, PollingChecksAgainAndAgain)
{
    bar.setPath(home.path());
    QSignalSpy changed(&bar, &TORVDiskSpaceIndicator::percentChanged);
    bar.startPolling(1);
    EXPECT_TRUE(changed.wait(Patience_ms));
    EXPECT_TRUE(changed.wait(Patience_ms));
}

TEST_F(TORVDiskSpaceIndicatorTest, PollingStops)
{
    const auto* const timer = bar.findChild<QTimer*>();
    bar.startPolling(60);
    EXPECT_TRUE(timer->isActive());
    EXPECT_EQ(timer->interval(), 60000);
    bar.stopPolling();
    EXPECT_FALSE(timer->isActive());
}

TEST_F(TORVDiskSpaceIndicatorTest, AnOddPeriodIsBroughtToASensibleOne)
{
    const auto* const timer = bar.findChild<QTimer*>();
    bar.startPolling(0);
    EXPECT_EQ(timer->interval(), 1000);
    bar.startPolling(std::numeric_limits<int>::max());
    EXPECT_EQ(timer->interval(), 24 * 60 * 60 * 1000);
}

TEST_F(TORVDiskSpaceIndicatorTest, TheBarIsDimmedByNightAlone)
{
    DisplayMode mode;
    mode.switchToNightMode();
    const auto* const effect = qobject_cast<QGraphicsOpacityEffect*>(bar.graphicsEffect());
    ASSERT_NE(effect, nullptr);
    EXPECT_DOUBLE_EQ(effect->opacity(), 0.75);
    mode.switchToDayMode();
    EXPECT_EQ(bar.graphicsEffect(), nullptr);
}

struct Level
{
    int megabytes; // of 20
    int percent;
    QString style;
    QStringList alerts;
};

class TORVDiskLevelTest : public TORVDiskSpaceIndicatorTest, public testing::WithParamInterface<Level>
{
};

TEST_P(TORVDiskLevelTest, ADiskShowsItsLevel)
{
    const SmallDisk disk;
    if (!disk.isMounted()) {
        GTEST_SKIP() << "mounting a disk needs privileges";
    }
    disk.fill(GetParam().megabytes);
    check(disk.path());
    EXPECT_EQ(bar.percent(), GetParam().percent);
    EXPECT_EQ(bar.sizesText(), QStringLiteral("%1 MB/20 MB").arg(GetParam().megabytes));
    EXPECT_EQ(bar.styleSheet(), GetParam().style);
    EXPECT_EQ(alerts(), GetParam().alerts);
}

INSTANTIATE_TEST_SUITE_P(Levels, TORVDiskLevelTest,
                         testing::Values(Level{12, 60, Green, {}}, Level{15, 75, Yellow, {Above70}},
                                         Level{19, 95, Red, {Above90}}));

TEST_F(TORVDiskSpaceIndicatorTest, AnotherDirectoryOfTheSameDiskIsNotToldAgain)
{
    const SmallDisk disk;
    if (!disk.isMounted()) {
        GTEST_SKIP() << "mounting a disk needs privileges";
    }
    ASSERT_TRUE(QDir(disk.path()).mkdir(QStringLiteral("below")));
    disk.fill(19);
    check(disk.path());
    check(disk.path() + QLatin1String("/nowhere"));
    check(disk.path() + QLatin1String("/below"));
    EXPECT_EQ(alerts(), QStringList({Above90}));
}

TEST_F(TORVDiskSpaceIndicatorTest, AnotherDiskIsToldAgain)
{
    const SmallDisk first;
    const SmallDisk second;
    if (!first.isMounted() || !second.isMounted()) {
        GTEST_SKIP() << "mounting a disk needs privileges";
    }
    first.fill(19);
    second.fill(19);
    check(first.path());
    check(second.path());
    EXPECT_EQ(alerts(), QStringList({Above90, Above90}));
    EXPECT_EQ(lastLine(), QLatin1String("  - path: ") + second.path());
}
