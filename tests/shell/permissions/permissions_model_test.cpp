#include "shell/permissions/permissions_model.h"

#include "support/fake_accessibility.h"
#include "support/fake_session.h"

#include <gtest/gtest.h>

#include <memory>

namespace corvandi::testing {
namespace {

class PermissionsModelTest : public ::testing::Test {
protected:
    PermissionsModelTest()
    {
        microphone.present = AuthorizationStatus::notDetermined;
        accessibility.trusted = false;
        QObject::connect(model.get(), &PermissionsModel::changed, [this] { ++changes; });
    }

    FakeCaptureAuthorization microphone;
    FakeAccessibility accessibility;
    std::unique_ptr<PermissionsModel> model = std::make_unique<PermissionsModel>(microphone, accessibility);
    int changes = 0;
};

TEST_F(PermissionsModelTest, NothingIsGrantedBeforeTheFirstLook)
{
    microphone.present = AuthorizationStatus::authorized;
    accessibility.trusted = true;
    EXPECT_EQ(model->microphone(), PermissionState::notDetermined);
    EXPECT_EQ(model->accessibility(), PermissionState::denied);
    EXPECT_FALSE(model->allGranted());
}

TEST_F(PermissionsModelTest, EveryStatusOfTheMicrophoneHasItsState)
{
    const std::pair<AuthorizationStatus, PermissionState> table[] = {
        {AuthorizationStatus::authorized, PermissionState::granted},
        {AuthorizationStatus::notDetermined, PermissionState::notDetermined},
        {AuthorizationStatus::restricted, PermissionState::denied},
        {AuthorizationStatus::denied, PermissionState::denied},
    };
    for (const auto& [status, state] : table) {
        microphone.present = status;
        model->refresh();
        EXPECT_EQ(model->microphone(), state);
    }
}

TEST_F(PermissionsModelTest, AccessibilityIsGrantedOrDenied)
{
    accessibility.trusted = true;
    model->refresh();
    EXPECT_EQ(model->accessibility(), PermissionState::granted);
    accessibility.trusted = false;
    model->refresh();
    EXPECT_EQ(model->accessibility(), PermissionState::denied);
}

TEST_F(PermissionsModelTest, ALookAsksNobody)
{
    model->refresh();
    EXPECT_EQ(accessibility.promptingChecks, 0);
    EXPECT_EQ(microphone.requests, 0);
}

TEST_F(PermissionsModelTest, ALookThatFindsNothingNewNotifiesNobody)
{
    model->refresh();
    EXPECT_EQ(changes, 0);
    microphone.present = AuthorizationStatus::authorized;
    model->refresh();
    EXPECT_EQ(changes, 1);
    model->refresh();
    EXPECT_EQ(changes, 1);
}

TEST_F(PermissionsModelTest, AGrantShowsAtTheNextLookAndNotBefore)
{
    accessibility.trusted = true;
    EXPECT_EQ(model->accessibility(), PermissionState::denied);
    model->refresh();
    EXPECT_EQ(model->accessibility(), PermissionState::granted);
}

TEST_F(PermissionsModelTest, TheAnswerToARequestShowsWithoutAnythingElse)
{
    microphone.answersAtOnce = false;
    model->requestMicrophone();
    EXPECT_EQ(model->microphone(), PermissionState::notDetermined);
    microphone.present = AuthorizationStatus::authorized;
    microphone.answer();
    EXPECT_EQ(model->microphone(), PermissionState::granted);
    EXPECT_EQ(changes, 1);
}

TEST_F(PermissionsModelTest, TheStateComesFromALookAndNotFromTheAnswer)
{
    microphone.answersAtOnce = false;
    model->requestMicrophone();
    microphone.present = AuthorizationStatus::denied;
    microphone.answer(true);
    EXPECT_EQ(model->microphone(), PermissionState::denied);
}

TEST_F(PermissionsModelTest, AnAnswerAfterTheModelHasGoneIsHarmless)
{
    microphone.answersAtOnce = false;
    model->requestMicrophone();
    model.reset();
    microphone.answer();
    EXPECT_EQ(changes, 0);
}

TEST_F(PermissionsModelTest, AccessibilityIsAskedForOfThePerson)
{
    model->requestAccessibility();
    EXPECT_EQ(accessibility.promptingChecks, 1);
    EXPECT_EQ(changes, 0);
}

TEST_F(PermissionsModelTest, AllIsGrantedWhenBothAre)
{
    microphone.present = AuthorizationStatus::authorized;
    model->refresh();
    EXPECT_FALSE(model->allGranted());
    accessibility.trusted = true;
    model->refresh();
    EXPECT_TRUE(model->allGranted());
    microphone.present = AuthorizationStatus::denied;
    model->refresh();
    EXPECT_FALSE(model->allGranted());
}

TEST_F(PermissionsModelTest, TheStatesHaveTheirNumbers)
{
    EXPECT_EQ(static_cast<int>(PermissionState::granted), 0);
    EXPECT_EQ(static_cast<int>(PermissionState::denied), 1);
    EXPECT_EQ(static_cast<int>(PermissionState::notDetermined), 2);
}

} // namespace
} // namespace corvandi::testing
