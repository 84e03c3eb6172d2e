#include "core/dictation/dictation_fixture.h"

namespace corvandi::testing {
namespace {

using ModelPreparationTest = DictationFixture;

TEST_F(ModelPreparationTest, TheModelIsPendingAtFirst)
{
    EXPECT_EQ(controller->modelState(), ModelState(model_state::Pending{}));
}

TEST_F(ModelPreparationTest, APreparationMakesTheModelReady)
{
    engine.inventory.hold();
    controller->prepareModel();
    EXPECT_EQ(controller->modelState(), ModelState(model_state::Preparing{}));
    queue.drain();
    engine.inventory.release();
    queue.drain();
    EXPECT_EQ(controller->modelState(), ModelState(model_state::Ready{}));
}

TEST_F(ModelPreparationTest, AMissingModelIsInstalled)
{
    engine.modelIsInstalled = false;
    controller->prepareModel();
    queue.drain();
    EXPECT_EQ(engine.downloading.callCount(), 1);
    EXPECT_EQ(controller->modelState(), ModelState(model_state::Ready{}));
}

TEST_F(ModelPreparationTest, APreparationThatRunsIsNotStartedAgain)
{
    engine.inventory.hold();
    controller->prepareModel();
    controller->prepareModel();
    queue.drain();
    EXPECT_EQ(engine.inventory.callCount(), 1);
}

TEST_F(ModelPreparationTest, AReadyModelIsPreparedAgainOnRequest)
{
    controller->prepareModel();
    queue.drain();
    controller->prepareModel();
    queue.drain();
    EXPECT_EQ(engine.inventory.callCount(), 2);
}

TEST_F(ModelPreparationTest, AFailureIsLoggedAndKeptButNotShown)
{
    engine.modelIsInstalled = false;
    engine.downloading.fail(QStringLiteral("no network"));
    controller->prepareModel();
    queue.drain();
    EXPECT_EQ(controller->modelState(), ModelState(model_state::Failed{QStringLiteral("no network")}));
    EXPECT_EQ(log.lines(),
              std::vector<QString>{QStringLiteral("Corvandi: speech model preparation failed: no network")});
    EXPECT_FALSE(panels.isVisible);
}

TEST_F(ModelPreparationTest, AFailedModelCanBePreparedAgain)
{
    engine.inventory.fail(QStringLiteral("no network"));
    controller->prepareModel();
    queue.drain();
    engine.inventory.succeed();
    controller->prepareModel();
    queue.drain();
    EXPECT_EQ(controller->modelState(), ModelState(model_state::Ready{}));
}

} // namespace
} // namespace corvandi::testing
