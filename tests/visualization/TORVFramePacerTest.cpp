#include "visualization/TORVFramePacer.h"

#include "support/OffscreenScene.h"

#include <QtTest>

#include <gtest/gtest.h>

#include <vtkCallbackCommand.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

namespace
{

constexpr int Patience_ms = 60000;

class TORVFramePacerTest : public testing::Test
{
protected:
    TORVFramePacerTest() { scene.window()->AddRenderer(renderer); }

    // One turn: what is due now is done, what that asks for is not.
    void turn() { QCoreApplication::processEvents(); }

    bool comesToRest()
    {
        return QTest::qWaitFor([&] { return !pacer.isMoving(); }, Patience_ms);
    }

    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
    TORVFramePacer pacer{scene.window(), renderer};
};

} // namespace

TEST_F(TORVFramePacerTest, DrawsNothingUnasked)
{
    turn();
    EXPECT_EQ(pacer.getDrawCount(), 0);
}

TEST_F(TORVFramePacerTest, DrawsOnceForAllWhoAskInATurn)
{
    pacer.request();
    pacer.request();
    pacer.request();
    EXPECT_EQ(pacer.getDrawCount(), 0);
    turn();
    EXPECT_EQ(pacer.getDrawCount(), 1);
    turn();
    EXPECT_EQ(pacer.getDrawCount(), 1);
}

TEST_F(TORVFramePacerTest, DrawsBeforeItReturnsWhenToldSo)
{
    pacer.request();
    pacer.drawNow();
    EXPECT_EQ(pacer.getDrawCount(), 1);
    turn();
    EXPECT_EQ(pacer.getDrawCount(), 1); // the request is answered, too
}

TEST_F(TORVFramePacerTest, SortsTranslucentSurfacesOnlyAtRest)
{
    EXPECT_TRUE(renderer->GetUseDepthPeeling());
    pacer.moved();
    EXPECT_FALSE(renderer->GetUseDepthPeeling());
    ASSERT_TRUE(comesToRest());
    EXPECT_TRUE(renderer->GetUseDepthPeeling());
}

TEST_F(TORVFramePacerTest, AllowsCoarsePicturesOnlyWhileMoving)
{
    EXPECT_LT(scene.window()->GetDesiredUpdateRate(), 0.01);
    pacer.moved();
    EXPECT_GE(scene.window()->GetDesiredUpdateRate(), 10.0);
}

TEST_F(TORVFramePacerTest, SortsMoreLayersInAPictureForKeeps)
{
    int peels = 0;
    vtkNew<vtkCallbackCommand> command;
    command->SetClientData(&peels);
    command->SetCallback([](vtkObject* caller, unsigned long, void* count, void*) {
        *static_cast<int*>(count) = static_cast<vtkRenderer*>(caller)->GetMaximumNumberOfPeels();
    });
    renderer->AddObserver(vtkCommand::StartEvent, command);
    pacer.drawNow();
    EXPECT_EQ(peels, TORVFramePacer::PeelsForKeeps);
    pacer.request();
    turn();
    EXPECT_EQ(peels, TORVFramePacer::PeelsAtRest);
}

TEST_F(TORVFramePacerTest, DrawsTheWholePictureWhenTheHandRests)
{
    pacer.moved();
    pacer.request();
    turn();
    EXPECT_EQ(pacer.getDrawCount(), 1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return pacer.getDrawCount() == 2; }, Patience_ms));
    EXPECT_FALSE(pacer.isMoving());
}

TEST_F(TORVFramePacerTest, DrawsAWholePictureAtOnceEvenWhileMoving)
{
    pacer.moved();
    pacer.drawNow();
    EXPECT_FALSE(pacer.isMoving());
    EXPECT_TRUE(renderer->GetUseDepthPeeling());
}

TEST_F(TORVFramePacerTest, DrawsQuickPicturesAloneAsLongAsItIsToldTo)
{
    pacer.keepMoving(true);
    for (int i = 0; i < 3; ++i) {
        pacer.request();
        turn();
    }
    QTest::qWait(3 * TORVFramePacer::RestDelay_ms);
    EXPECT_EQ(pacer.getDrawCount(), 3);
    EXPECT_TRUE(pacer.isMoving());
    pacer.keepMoving(false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return pacer.getDrawCount() == 4; }, Patience_ms));
    EXPECT_FALSE(pacer.isMoving());
}

TEST_F(TORVFramePacerTest, GoesOnWithQuickPicturesAfterOneForKeeps)
{
    pacer.keepMoving(true);
    pacer.drawNow();
    EXPECT_TRUE(pacer.isMoving());
}
