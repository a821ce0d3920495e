#pragma once

#include "App/Shell/LoginItemPlatform.h"
#include "Tests/Contract/ContractWorld.h"

#include <gtest/gtest.h>

#include <exception>
#include <memory>

namespace tarvex::contract {

/// A system with a registry of login items in which, at the start, the program does not stand.
class LoginItemWorld {
public:
    LoginItemWorld() = default;
    LoginItemWorld(const LoginItemWorld&) = delete;
    LoginItemWorld& operator=(const LoginItemWorld&) = delete;
    LoginItemWorld(LoginItemWorld&&) = delete;
    LoginItemWorld& operator=(LoginItemWorld&&) = delete;
    virtual ~LoginItemWorld() = default;

    virtual LoginItemPlatform& platform() = 0;

    /// The same program run from where it was built.
    virtual std::unique_ptr<LoginItemPlatform> makePlatformOfBuildTree() = 0;

    /// What the user does in the settings of the system, past the program.
    virtual void enableElsewhere() = 0;
    virtual void disableElsewhere() = 0;

    /// From now on the registry cannot be changed.
    virtual void refuseChanges() = 0;
};

class LoginItemContract : public ::testing::TestWithParam<WorldFactory<LoginItemWorld>> {
protected:
    void SetUp() override { world_ = GetParam().make(); }

    LoginItemPlatform& platform() { return world_->platform(); }

    std::unique_ptr<LoginItemWorld> world_;
};

TEST_P(LoginItemContract, OnlyAnInstalledProgramMayBeALoginItem) {
    EXPECT_TRUE(platform().isBundle());
    EXPECT_FALSE(world_->makePlatformOfBuildTree()->isBundle());
}

TEST_P(LoginItemContract, ProgramIsNoLoginItemAtFirst) {
    EXPECT_FALSE(isRegistered(platform().status()));
}

TEST_P(LoginItemContract, RegisteringAndUnregisteringShowInTheStatus) {
    for (int round = 0; round < 2; ++round) {
        platform().registerMainApplication();
        EXPECT_EQ(platform().status(), LoginItemStatus::enabled);
        platform().unregisterMainApplication();
        EXPECT_EQ(platform().status(), LoginItemStatus::notRegistered);
    }
}

TEST_P(LoginItemContract, RegisteringTwiceIsNoFailure) {
    platform().registerMainApplication();
    platform().registerMainApplication();
    EXPECT_EQ(platform().status(), LoginItemStatus::enabled);
}

TEST_P(LoginItemContract, UnregisteringWhatIsNotThereIsNoFailure) {
    platform().unregisterMainApplication();
    EXPECT_EQ(platform().status(), LoginItemStatus::notRegistered);
}

TEST_P(LoginItemContract, ChangesMadeElsewhereAreSeen) {
    world_->enableElsewhere();
    EXPECT_EQ(platform().status(), LoginItemStatus::enabled);
    world_->disableElsewhere();
    EXPECT_FALSE(isRegistered(platform().status()));
    platform().registerMainApplication();
    EXPECT_EQ(platform().status(), LoginItemStatus::enabled);
    world_->disableElsewhere();
    EXPECT_FALSE(isRegistered(platform().status()));
}

TEST_P(LoginItemContract, RefusedRegistrationThrowsAndChangesNothing) {
    world_->refuseChanges();
    EXPECT_THROW(platform().registerMainApplication(), std::exception);
    EXPECT_FALSE(isRegistered(platform().status()));
}

TEST_P(LoginItemContract, RefusedRemovalThrowsAndChangesNothing) {
    platform().registerMainApplication();
    world_->refuseChanges();
    EXPECT_THROW(platform().unregisterMainApplication(), std::exception);
    EXPECT_EQ(platform().status(), LoginItemStatus::enabled);
}

} // namespace tarvex::contract
