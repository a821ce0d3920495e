#include "Platform/MacOS/AppKit/AppKitApplication.h"
#include "Platform/MacOS/AppKit/AppKitKeyMonitorPlatform.h"
#include "Tests/MacOS/GNUstep/AppKitTest.h"
#include "Tests/MacOS/GNUstep/UnifiedLog.h"

#include <functional>
#include <utility>
#include <vector>

namespace tarvex::test {
namespace {

/// The main loop of the application object, which has launched already: there is no controller to be told of
/// it.
class ApplicationTest : public AppKitTest {
protected:
    ApplicationTest() {
        static const bool isLaunched = [] {
            stopping([] {}, [] { [NSApp run]; });
            return true;
        }();
        static_cast<void>(isLaunched);
    }

    /// Does the deed within the main loop, which is run by the other and stopped after it.
    static void stopping(const std::function<void()>& deed, const std::function<void()>& run) {
        AppKitKeyMonitorPlatform keyMonitors;
        const auto monitor = keyMonitors.addLocalKeyDownMonitor([&](const KeyEvent&) {
            deed();
            [NSApp stop:nil];
            return false;
        });
        [NSApp postEvent:keyEvent(nil, 0) atStart:NO];
        run();
    }

    void runAndDo(const std::function<void()>& deed) {
        stopping(deed, [this] { runProgram(); });
    }

    void runProgram() {
        runApplication(delegate_, [this] {
            ++reopenings_;
            if (throws_) {
                std::vector<int>().at(0) = 1;
            }
        });
    }

    static id<NSApplicationDelegate> native() { return [NSApp delegate]; }

    AppDelegate delegate_{nullptr};
    int reopenings_ = 0;
    bool throws_ = false;
};

TEST_F(ApplicationTest, StaysWithoutWindowsAndTakesItsDelegateBackAtTheEnd) {
    bool isDone = false;
    runAndDo([&] {
        isDone = true;
        EXPECT_FALSE([native() applicationShouldTerminateAfterLastWindowClosed:NSApp]);
    });
    EXPECT_TRUE(isDone);
    EXPECT_EQ(native(), nil);
}

TEST_F(ApplicationTest, SecondStartIsReportedAndLeavesNothingToTheToolkit) {
    BOOL isLeft = YES;
    runAndDo([&] { isLeft = [native() applicationShouldHandleReopen:NSApp hasVisibleWindows:NO]; });
    EXPECT_EQ(reopenings_, 1);
    EXPECT_FALSE(isLeft);
}

TEST_F(ApplicationTest, FailureAtASecondStartStaysInside) {
    throws_ = true;
    static_cast<void>(takeUnifiedLog());
    runAndDo([&] { [native() applicationShouldHandleReopen:NSApp hasVisibleWindows:YES]; });
    EXPECT_EQ(reopenings_, 1);
    EXPECT_EQ(takeUnifiedLog().size(), 1U);
}

} // namespace
} // namespace tarvex::test
