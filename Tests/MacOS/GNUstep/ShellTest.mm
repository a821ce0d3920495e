#include "App/Logging/FileLogger.h"
#include "Platform/MacOS/AppKit/AppKitKeyMonitorPlatform.h"
#include "Platform/MacOS/AppKit/AppKitKeyWindow.h"
#include "Platform/MacOS/AppKit/AppKitPointerPlatform.h"
#include "Platform/MacOS/AppKit/AppKitScreenPlatform.h"
#include "Platform/MacOS/Shell/MainBundle.h"
#include "Platform/MacOS/Shell/ProcessActivity.h"
#include "Platform/MacOS/Shell/ServiceLoginItem.h"
#include "Platform/MacOS/Shell/UserDirectories.h"
#include "Tests/MacOS/GNUstep/AppKitTest.h"
#include "Tests/MacOS/GNUstep/LoginItemService.h"

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvex::test {
namespace {

/// With a window of the test's own that has the keyboard.
class ShellTest : public AppKitTest {
protected:
    ShellTest() {
        window_ = [[NSWindow alloc] initWithContentRect:NSMakeRect(50, 50, 200, 100)
                                              styleMask:NSTitledWindowMask
                                                backing:NSBackingStoreBuffered
                                                  defer:NO];
        [window_ setReleasedWhenClosed:NO];
        [window_ setTitle:@"Preferences"];
    }

    ~ShellTest() override {
        setLoginItemStatus(SMAppServiceStatusNotRegistered);
        [window_ close];
        [window_ release];
    }

    ShellTest(const ShellTest&) = delete;
    ShellTest& operator=(const ShellTest&) = delete;
    ShellTest(ShellTest&&) = delete;
    ShellTest& operator=(ShellTest&&) = delete;

    void press(unsigned short keyCode) { [NSApp sendEvent:keyEvent(window_, keyCode)]; }

    NSWindow* window_;
    AppKitKeyMonitorPlatform keyMonitors_;
};

TEST_F(ShellTest, ScreensAreThoseOfTheDisplay) {
    AppKitScreenPlatform platform;
    const std::vector<Screen> screens = platform.screens();
    ASSERT_EQ(screens.size(), 1U);
    EXPECT_EQ(screens[0].frame, (Rect{0, 0, 1280, 1024}));
    EXPECT_TRUE(screens[0].displayNumber.has_value());
    EXPECT_EQ(screens[0].localizedName, "Virtual screen");
    EXPECT_EQ(platform.mainScreen(), screens[0]);
}

TEST_F(ShellTest, PointerIsOnTheScreen) {
    AppKitScreenPlatform screens;
    EXPECT_TRUE(screens.screens().at(0).frame.contains(AppKitPointerPlatform().mouseLocation()));
}

TEST_F(ShellTest, KeyWindowIsTheOneWithTheKeyboard) {
    [[NSApp keyWindow] resignKeyWindow];
    EXPECT_EQ(AppKitKeyWindow().keyWindowTitle(), std::nullopt);
    [window_ makeKeyAndOrderFront:nil];
    endTurn();
    EXPECT_EQ(AppKitKeyWindow().keyWindowTitle(), "Preferences");
    [window_ resignKeyWindow];
    EXPECT_EQ(AppKitKeyWindow().keyWindowTitle(), std::nullopt);
}

TEST_F(ShellTest, KeyMonitorSeesKeysUntilItGoes) {
    std::vector<unsigned> seen;
    auto monitor = keyMonitors_.addLocalKeyDownMonitor([&](const KeyEvent& event) {
        seen.push_back(event.keyCode);
        return true;
    });
    ASSERT_NE(monitor, nullptr);
    EXPECT_EQ(keyMonitorCount(), 1);
    press(14);
    [NSApp sendEvent:mouseEvent(NSMouseMoved, window_, {1, 1})];
    monitor.reset();
    EXPECT_EQ(keyMonitorCount(), 0);
    press(15);
    EXPECT_EQ(seen, std::vector<unsigned>{14});
}

TEST_F(ShellTest, KeyMonitorMayEndInItsOwnHandler) {
    std::unique_ptr<KeyMonitor> monitor;
    const auto state = std::make_shared<int>(0);
    monitor = keyMonitors_.addLocalKeyDownMonitor([&monitor, state](const KeyEvent&) {
        monitor.reset();
        ++*state;
        return false;
    });
    press(14);
    press(14);
    EXPECT_EQ(*state, 1);
    EXPECT_EQ(state.use_count(), 1);
}

TEST_F(ShellTest, HandlerThatThrowsLeavesTheKeyToTheWindow) {
    int below = 0;
    const auto older = keyMonitors_.addLocalKeyDownMonitor(
        [](const KeyEvent&) -> bool { return std::vector<bool>().at(0); });
    const auto newer = keyMonitors_.addLocalKeyDownMonitor([&](const KeyEvent&) {
        ++below;
        return true;
    });
    press(14);
    EXPECT_EQ(below, 1);
}

TEST_F(ShellTest, LoginItemStatusIsTheServices) {
    ServiceLoginItem item;
    EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
    for (const int status : {1, 2, 3}) {
        setLoginItemStatus(status);
        EXPECT_EQ(static_cast<int>(item.status()), status);
    }
    setLoginItemStatus(17);
    EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
}

TEST_F(ShellTest, LoginItemIsRegisteredAndUnregistered) {
    ServiceLoginItem item;
    item.registerMainApplication();
    item.registerMainApplication();
    EXPECT_EQ(item.status(), LoginItemStatus::enabled);
    item.unregisterMainApplication();
    item.unregisterMainApplication();
    EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
    EXPECT_FALSE(item.isBundle());
}

TEST_F(ShellTest, ProgramOutsideABundleStatesNoVersion) {
    MainBundle bundle;
    EXPECT_EQ(bundle.shortVersionString(), std::nullopt);
    EXPECT_EQ(bundle.versionFileText(), std::nullopt);
}

TEST_F(ShellTest, FoldersAreTheUsersOwn) {
    const std::string home = std::getenv("HOME");
    EXPECT_EQ(UserDirectories::applicationSupport().substr(0, home.size()), home);
    EXPECT_EQ(UserDirectories::library().substr(0, home.size()), home);
    EXPECT_EQ(logFilePath(), UserDirectories::library() + "/Logs/Tarvex.log");
}

TEST_F(ShellTest, ProgramIsNotSlowedDownWhileItRunsAndTheMacMaySleep) {
    EXPECT_TRUE(runningActivities().empty());
    {
        const ProcessActivity activity;
        const auto running = runningActivities();
        ASSERT_EQ(running.size(), 1U);
        EXPECT_EQ(running[0], static_cast<NSActivityOptions>(NSActivityUserInitiatedAllowingIdleSystemSleep));
        EXPECT_EQ(running[0] & (NSActivityIdleSystemSleepDisabled | NSActivityIdleDisplaySleepDisabled), 0U);
    }
    EXPECT_TRUE(runningActivities().empty());
}

} // namespace
} // namespace tarvex::test
