#include "Core/Configuration/LaunchAtLoginSyncHelper.h"

#include <gtest/gtest.h>

namespace tarvex {

namespace {

TEST(LaunchAtLoginSyncHelperTest, SystemWinsWhereTheTwoDisagree) {
    EXPECT_EQ(LaunchAtLoginSyncHelper::computeSync(false, true), (LaunchAtLoginSyncResult{true, true}));
    EXPECT_EQ(LaunchAtLoginSyncHelper::computeSync(true, false), (LaunchAtLoginSyncResult{true, false}));
}

TEST(LaunchAtLoginSyncHelperTest, NothingIsToBeDoneWhereTheyAgree) {
    EXPECT_EQ(LaunchAtLoginSyncHelper::computeSync(true, true), (LaunchAtLoginSyncResult{false, true}));
    EXPECT_EQ(LaunchAtLoginSyncHelper::computeSync(false, false), (LaunchAtLoginSyncResult{false, false}));
}

} // namespace

} // namespace tarvex
