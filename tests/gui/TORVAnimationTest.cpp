#include "AnimationTest.h"

namespace
{

class TORVAnimationTest : public AnimationTest
{
protected:
    TORVAnimationTest() { startLog(); }

    QString lastType() const { return lastLogged("update type = ").mid(3); }
};

} // namespace

TEST_F(TORVAnimationTest, ShowsNothingBeforeTheFirstRequest)
{
    EXPECT_EQ(animation.getFrameCount(), 0);
    EXPECT_EQ(animation.getCurrentIndex(), 0);
    EXPECT_FALSE(animation.getCurrentFrame());
    EXPECT_FALSE(animation.getCurrentDataFrame());
    EXPECT_FALSE(animation.getCurrentVisualization());
    EXPECT_FALSE(animation.getFrameTime().isValid());
    EXPECT_FALSE(animation.getStartTime().isValid());
    EXPECT_FALSE(animation.getEndTime().isValid());
    EXPECT_TRUE(animation.updateParams2d(QStringLiteral("MAX"))) << "a request without a store";
    EXPECT_EQ(animation.getCurrentIndex(), -1);
}

TEST_F(TORVAnimationTest, NeedsAnObserver)
{
    EXPECT_DEATH(TORVAnimation(nullptr), "_observer");
}

TEST_F(TORVAnimationTest, EachFramePairsAVolumeWithASceneOfItsOwn)
{
    addVolumes({-600, 0});
    open();
    EXPECT_TRUE(update());
    ASSERT_EQ(times(), (QVector<qint64>{-600, 0}));
    for (int index = 0; index < 2; ++index) {
        const TORVAnimation::FramePtr frame = animation.getFrameByIndex(index);
        EXPECT_EQ(frame->getSite(), QLatin1String("HALMERA"));
        EXPECT_EQ(frame->getTime(), frame->getDataFrame()->getData3d()->getFile()->getDataTime());
        EXPECT_EQ(animation.getDataFrameByIndex(index), frame->getDataFrame());
        EXPECT_EQ(animation.getVisualizationByIndex(index), frame->getVisualization());
        EXPECT_EQ(animation.findFrame(TORVDataFrame::CPtr(frame->getDataFrame())), frame);
    }
    EXPECT_NE(animation.getVisualizationByIndex(0), animation.getVisualizationByIndex(1));
    EXPECT_EQ(animation.getStartTime(), at(-600));
    EXPECT_EQ(animation.getEndTime(), at(0));
    EXPECT_EQ(animation.getFrameTime(), at(0));
    EXPECT_EQ(animation.getCurrentVisualization(), animation.getVisualizationByIndex(1));
    EXPECT_EQ(animation.getCurrentDataFrame(), animation.getDataFrameByIndex(1));
}

TEST_F(TORVAnimationTest, KnowsNoFrameOutsideTheList)
{
    addVolumes({0});
    open();
    update();
    for (const int index : {-1, 1, 1000}) {
        EXPECT_FALSE(animation.getFrameByIndex(index));
        EXPECT_FALSE(animation.getDataFrameByIndex(index));
        EXPECT_FALSE(animation.getVisualizationByIndex(index));
        animation.goToFrame(index);
        EXPECT_EQ(animation.getCurrentIndex(), 0);
    }
    EXPECT_FALSE(animation.findFrame(TORVDataFrame::CPtr()));
    EXPECT_FALSE(animation.findFrame(boost::make_shared<const TORVDataFrame>(store)));
}

TEST_F(TORVAnimationTest, FindsTheFirstFrameOfASiteAndTime)
{
    addVolumes({-600, 0});
    open();
    update();
    const TORVAnimation::Frames& frames = animation.getFrames();
    EXPECT_EQ(TORVAnimation::findFrame(frames, "HALMERA", at(-600)), frames[0]);
    EXPECT_FALSE(TORVAnimation::findFrame(frames, "ALPHA", at(-600)));
    EXPECT_FALSE(TORVAnimation::findFrame(frames, "HALMERA", at(-599)));
    EXPECT_FALSE(TORVAnimation::findFrame({}, "HALMERA", at(0)));
}

// Every 4 minutes for 3 hours and a little more; the first gap of at least 10 minutes is 12 minutes.
TEST_F(TORVAnimationTest, GapsReachTheIntervalAndAreNotRoundedToIt)
{
    QVector<qint64> wanted;
    for (int minutes = -188; minutes <= 0; minutes += 4) {
        addVolume(minutes * Minute);
        if (minutes >= -180 && minutes % 12 == 0) {
            wanted << minutes * Minute;
        }
    }
    open();
    Request request;
    request.length = 3 * Hour;
    request.interval = 10 * Minute;
    EXPECT_TRUE(update(request));
    EXPECT_EQ(wanted.size(), 16);
    EXPECT_EQ(times(), wanted);
}

TEST_F(TORVAnimationTest, AGapOfJustTheIntervalIsWideEnough)
{
    addVolumes({-1199, -600, -1, 0});
    open();
    Request request;
    request.interval = 600;
    update(request);
    EXPECT_EQ(times(), (QVector<qint64>{-600, 0}));
}

TEST_F(TORVAnimationTest, AnIntervalOfNothingTakesEveryFileOfTheSpan)
{
    addVolumes({-3601, -3600, -700, -699, -1, 0, 1});
    open();
    EXPECT_TRUE(update());
    EXPECT_EQ(times(), (QVector<qint64>{-3600, -700, -699, -1, 0}));
}

TEST_F(TORVAnimationTest, TheNewestFileIsAFrameWhateverTheIntervalIs)
{
    addVolumes({-900, -300});
    open();
    Request request;
    request.interval = 24 * Hour;
    update(request);
    EXPECT_EQ(times(), (QVector<qint64>{-300}));
}

TEST_F(TORVAnimationTest, FindingNothingIsNoFailure)
{
    addVolumes({-2 * Hour});
    open();
    EXPECT_TRUE(update());
    EXPECT_EQ(animation.getFrameCount(), 0);
    EXPECT_EQ(animation.getCurrentIndex(), -1);
    EXPECT_EQ(lastType(), QLatin1String("update type = UPDATE_FULL"));
    EXPECT_TRUE(history.isEmpty());
}

TEST_F(TORVAnimationTest, FindsNothingBeforeTheDirectoryHasBeenRead)
{
    store = boost::make_shared<TORVDataStore>(nullptr);
    EXPECT_TRUE(update());
    EXPECT_EQ(animation.getFrameCount(), 0);
    EXPECT_EQ(animation.getCurrentIndex(), -1);
}

TEST_F(TORVAnimationTest, TheSameRequestChangesNothing)
{
    addVolumes({-600, 0});
    open();
    EXPECT_TRUE(update());
    animation.goToFrame(0);
    const TORVAnimation::Frames frames = animation.getFrames();
    EXPECT_FALSE(update());
    EXPECT_EQ(lastType(), QLatin1String("update type = UPDATE_NONE"));
    EXPECT_EQ(animation.getFrames(), frames);
    EXPECT_EQ(animation.getCurrentIndex(), 0);
}

TEST_F(TORVAnimationTest, ALiveRequestLooksAgainAndReusesEveryFrame)
{
    addVolumes({-600, 0});
    open();
    update();
    animation.goToFrame(0);
    const TORVAnimation::Frames frames = animation.getFrames();
    Request request;
    request.live = true;
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(update(request));
        EXPECT_EQ(lastType(), QLatin1String("update type = UPDATE_PARTIAL"));
        EXPECT_EQ(lastLogged("framesCreated="), QLatin1String("D: framesCreated=0"));
        EXPECT_EQ(lastLogged("framesReused="), QLatin1String("D: framesReused=2"));
        EXPECT_EQ(animation.getFrames(), frames);
        EXPECT_EQ(animation.getCurrentIndex(), 0);
    }
}

TEST_F(TORVAnimationTest, ANewFileCostsOneFrame)
{
    addVolumes({-3600, -600, 0});
    open();
    update();
    const TORVAnimation::Frames frames = animation.getFrames();
    const auto scene = animation.getVisualizationByIndex(1);
    animation.goToFrame(1);
    addVolume(300);
    ASSERT_TRUE(waitFor([this] { return leaf3d(qUtf8Printable(keyAt(300))) != nullptr; }));
    Request request;
    request.time = at(300);
    request.live = true;
    EXPECT_TRUE(update(request));
    EXPECT_EQ(times(), (QVector<qint64>{-600, 0, 300}));
    EXPECT_EQ(lastLogged("framesCreated="), QLatin1String("D: framesCreated=1"));
    EXPECT_EQ(lastLogged("framesReused="), QLatin1String("D: framesReused=2"));
    EXPECT_EQ(animation.getFrameByIndex(0), frames[1]);
    EXPECT_EQ(animation.getFrameByIndex(1), frames[2]);
    EXPECT_EQ(animation.getVisualizationByIndex(0), scene);
    EXPECT_EQ(animation.getFrameTime(), at(-600)) << "the current frame stays current";
}

TEST_F(TORVAnimationTest, AFrameThatIsNotTakenUpAgainGoes)
{
    addVolumes({-3600, 0});
    open();
    update();
    const boost::weak_ptr<TORVAnimationFrame> oldest = animation.getFrameByIndex(0);
    EXPECT_TRUE(animation.updateTimeParams(1800, 0));
    EXPECT_EQ(times(), (QVector<qint64>{0}));
    EXPECT_TRUE(oldest.expired());
}

TEST_F(TORVAnimationTest, AnotherSiteMakesEverythingAnew)
{
    addVolumes({-600, 0});
    addVolume(-300, Z, "ALPHA");
    addVolume(0, Z, "ALPHA");
    open();
    update();
    animation.goToFrame(0);
    const TORVAnimation::Frames frames = animation.getFrames();
    Request request;
    request.site = QStringLiteral("ALPHA");
    request.live = true;
    EXPECT_TRUE(update(request));
    EXPECT_EQ(lastType(), QLatin1String("update type = UPDATE_FULL"));
    EXPECT_EQ(times(), (QVector<qint64>{-300, 0}));
    EXPECT_FALSE(frames.contains(animation.getFrameByIndex(1)));
    EXPECT_EQ(animation.getCurrentIndex(), 1);
    EXPECT_EQ(lastLogged("Selected last frame: "), QLatin1String("D: Selected last frame: 1"));
}

TEST_F(TORVAnimationTest, AnotherStoreMakesEverythingAnew)
{
    addVolumes({-600, 0});
    open();
    update();
    animation.goToFrame(0);
    const TORVAnimation::Frames frames = animation.getFrames();
    const TORVDataStore::Ptr first = store;
    open();
    EXPECT_TRUE(update());
    EXPECT_EQ(lastType(), QLatin1String("update type = UPDATE_FULL"));
    EXPECT_EQ(animation.getCurrentIndex(), 1);
    EXPECT_EQ(animation.getCurrentDataFrame()->getDataStore(), store);
    EXPECT_FALSE(frames.contains(animation.getCurrentFrame()));
}

TEST_F(TORVAnimationTest, WithoutOneOfTheNamesOrAStoreItIsEmptied)
{
    addVolumes({-600, 0});
    open();
    for (QString Request::*const name : {&Request::site, &Request::product, &Request::configuration}) {
        update();
        ASSERT_EQ(animation.getFrameCount(), 2);
        Request request;
        request.*name = QString();
        EXPECT_TRUE(update(request));
        EXPECT_EQ(lastType(), QLatin1String("update type = UPDATE_CLEAR"));
        EXPECT_EQ(animation.getFrameCount(), 0);
        EXPECT_EQ(animation.getCurrentIndex(), -1);
    }
    update();
    const Request request;
    EXPECT_TRUE(animation.updateFrames(nullptr, request.site, request.product, request.configuration, QString(),
                                       request.time, Hour, 0, false, true));
    EXPECT_EQ(lastType(), QLatin1String("update type = UPDATE_CLEAR"));
    EXPECT_EQ(animation.getCurrentIndex(), -1);
}

TEST_F(TORVAnimationTest, WhenItIsResetFramesAndRequestAreForgotten)
{
    addVolumes({-600, 0});
    open();
    update();
    const boost::weak_ptr<TORVAnimationFrame> frame = animation.getFrameByIndex(0);
    const boost::weak_ptr<TORVDataStore> used = store;
    store.reset();
    animation.resetAnimation();
    EXPECT_TRUE(frame.expired());
    EXPECT_TRUE(used.expired());
    EXPECT_EQ(animation.getFrameCount(), 0);
    EXPECT_EQ(animation.getCurrentIndex(), 0);
    EXPECT_TRUE(animation.updateTimeParams(Hour, 0)) << "a request without a store";
    EXPECT_EQ(animation.getCurrentIndex(), -1);
}

TEST_F(TORVAnimationTest, TheLastFrameBecomesCurrentOnDemandAndNothingElseChanges)
{
    addVolumes({-600, -300, 0});
    open();
    update();
    const TORVAnimation::Frames frames = animation.getFrames();
    Request request;
    request.resetToLast = true;
    animation.goToFrame(0);
    EXPECT_FALSE(update(request));
    EXPECT_EQ(lastType(), QLatin1String("update type = UPDATE_NONE"));
    EXPECT_EQ(animation.getFrames(), frames);
    EXPECT_EQ(animation.getCurrentIndex(), 2);
    EXPECT_EQ(lastLogged("Reset to last frame: "), QLatin1String("D: Reset to last frame: 2"));
}

// 300 lies as far from 0 as from 600.
TEST_F(TORVAnimationTest, OfTwoFramesThatAreEquallyCloseTheLaterBecomesCurrent)
{
    addVolumes({0, 300, 600});
    open();
    Request request;
    request.time = at(600);
    update(request);
    animation.goToFrame(1);
    request.interval = 600;
    EXPECT_TRUE(update(request));
    EXPECT_EQ(lastType(), QLatin1String("update type = UPDATE_PARTIAL"));
    EXPECT_EQ(times(), (QVector<qint64>{0, 600}));
    EXPECT_EQ(animation.getCurrentIndex(), 1);
    EXPECT_EQ(lastLogged("New frame found: "), QLatin1String("D: New frame found: selected closest frame: 1"));
}

TEST_F(TORVAnimationTest, ATimeWithoutFilesLeavesNoFrameToSelect)
{
    addVolumes({0});
    open();
    update();
    Request request;
    request.time = at(5 * Hour);
    EXPECT_TRUE(update(request));
    EXPECT_EQ(animation.getFrameCount(), 0);
    EXPECT_EQ(animation.getCurrentIndex(), -1);
    EXPECT_EQ(lastLogged("No new frame found: "), QLatin1String("D: No new frame found: selected last frame: -1"));
    EXPECT_TRUE(update());
    EXPECT_EQ(lastType(), QLatin1String("update type = UPDATE_FULL"));
    EXPECT_EQ(animation.getCurrentIndex(), 0);
}

TEST_F(TORVAnimationTest, AnotherTimeSpanOrIntervalRebuildsThePart)
{
    addVolumes({-3600, -300, 0});
    open();
    update();
    EXPECT_FALSE(animation.updateTimeParams(Hour, 0));
    EXPECT_TRUE(animation.updateTimeParams(1800, 0));
    EXPECT_EQ(times(), (QVector<qint64>{-300, 0}));
    EXPECT_TRUE(animation.updateTimeParams(1800, 600));
    EXPECT_EQ(times(), (QVector<qint64>{0}));
    EXPECT_EQ(lastType(), QLatin1String("update type = UPDATE_PARTIAL"));
}

TEST_F(TORVAnimationTest, OrdersFramesByTheTimeOfTheirDataAndNotByTheirNames)
{
    TORVProductFields fields = volume("HALMERA");
    const QDateTime turn(QDate(2000, 1, 1), QTime(0, 0), Qt::UTC);
    setTime(fields, turn.addSecs(-300));
    add3d(QStringLiteral("991231235500"), fields);
    setTime(fields, turn);
    add3d(QStringLiteral("000101000000"), fields);
    open();
    Request request;
    request.time = turn;
    request.interval = 300;
    update(request);
    ASSERT_EQ(animation.getFrameCount(), 2);
    EXPECT_EQ(animation.getStartTime(), turn.addSecs(-300));
    EXPECT_EQ(animation.getEndTime(), turn);
}

TEST_F(TORVAnimationTest, TwoFilesOfOneTimeAreTwoFrames)
{
    add3d(QStringLiteral("260714120001"), volume("HALMERA"));
    add3d(QStringLiteral("260714120002"), volume("HALMERA"));
    open();
    update();
    ASSERT_EQ(times(), (QVector<qint64>{0, 0}));
    EXPECT_EQ(animation.getDataFrameByIndex(0)->getMoment(), QLatin1String("260714120001"));
    EXPECT_EQ(animation.getDataFrameByIndex(1)->getMoment(), QLatin1String("260714120002"));
    const TORVAnimation::Frames frames = animation.getFrames();
    Request request;
    request.live = true;
    update(request);
    EXPECT_EQ(animation.getFrames(), frames);
}

TEST_F(TORVAnimationTest, TellsInTheLogWhatItDid)
{
    addVolumes({-600, -60, 0});
    open();
    Request request;
    request.interval = 600;
    update(request);
    const auto isLogged = [this](const char* line) { return logged("").contains(QLatin1String("D: ") + line); };
    EXPECT_GE(logged("==========").size(), 2);
    for (const char* const line :
         {"update type = UPDATE_FULL", "site=HALMERA", "product=CAPPI", "configuration=Z",
          "time_end=2026-07-14T12:00:00Z", "time_length=3600", "time_interval=600", "Found leaves: 3",
          "  -creating new frame.", "Frames populated: 2", "Frames sequenced: 2", "framesCreated=2", "framesReused=0",
          "framesUpdated=0", "Selected last frame: 1"}) {
        EXPECT_TRUE(isLogged(line)) << line;
    }
    request.product2d = QStringLiteral("MAX");
    update(request);
    EXPECT_TRUE(isLogged("update type = UPDATE_PARAMS"));
    EXPECT_TRUE(isLogged("framesUpdated=2"));
    request.live = true;
    update(request);
    EXPECT_TRUE(isLogged("  -reusing old frame."));
}
