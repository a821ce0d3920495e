#include "Tests/MacOS/GNUstep/AppKitSession.h"

#include "Platform/MacOS/AppKit/NativeWindow.h"
#include "Platform/MacOS/AppKit/TitledWindow.h"
#include "Tests/MacOS/GNUstep/Compatibility.h"

#include <gtest/gtest.h>

#import <Foundation/NSDebug.h>
#include <chrono>
#include <cstdlib>
#include <memory>

namespace tarvex::test {

namespace {

/// Makes the application object, once, and brings it to the front.
void startApplication() {
    @autoreleasepool {
        static const bool isLaunched = [] {
            GSDebugAllocationActive(YES);
            // The toolkit's own borders, as on a Mac: there is no window manager.
            [[NSUserDefaults standardUserDefaults]
                registerDefaults:[NSDictionary dictionaryWithObject:@"NO"
                                                             forKey:@"GSBackHandlesWindowDecorations"]];
            [[TarvexTestApplication sharedApplication] finishLaunching];
            return true;
        }();
        static_cast<void>(isLaunched);
        [NSApp activateIgnoringOtherApps:YES];
    }
}

/// The tests' own classes have names that go on with "Test", if their objects may outlive a test.
bool isNameOfAnAdaptersClass(const std::string& name) {
    return name.starts_with("Tarvex") && !name.starts_with("TarvexTest");
}

int sum(const std::map<std::string, int>& counts) {
    int all = 0;
    for (const auto& [name, count] : counts) {
        all += count;
    }
    return all;
}

void expectNothingLeft() {
    // What one test leaves is not to fail those after it.
    static int leftBefore = 0;
    EXPECT_TRUE(waitUntil([] { return sum(objectsOfAdapters()) <= leftBefore; }))
        << "left: " << ::testing::PrintToString(objectsOfAdapters());
    leftBefore = sum(objectsOfAdapters());
    EXPECT_EQ(keyMonitorCount(), 0);
    EXPECT_EQ([[TarvexTestStatusItem shown] count], 0U);
    EXPECT_TRUE(runningActivities().empty());
}

} // namespace

bool waitUntil(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        @autoreleasepool {
            [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode
                                     beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.01]];
        }
    }
    return true;
}

bool isOfAnAdapter(NSWindow* window) {
    return [window isKindOfClass:[TarvexWindow class]] || [window isKindOfClass:[TarvexTitledWindow class]];
}

std::size_t windowCount() {
    std::size_t count = 0;
    // The list of windows keeps them.
    @autoreleasepool {
        for (NSWindow* window in [NSApp windows]) {
            count += isOfAnAdapter(window) ? 1 : 0;
        }
    }
    return count;
}

std::map<std::string, int> objectsOfAdapters() {
    std::map<std::string, int> counts;
    const std::unique_ptr<Class[], decltype(&std::free)> classes(GSDebugAllocationClassList(), &std::free);
    for (std::size_t index = 0; classes != nullptr && classes[index] != Nil; ++index) {
        const std::string name = class_getName(classes[index]);
        const int count = GSDebugAllocationCount(classes[index]);
        if (isNameOfAnAdaptersClass(name) && count != 0) {
            counts[name] = count;
        }
    }
    return counts;
}

AppKitSession::AppKitSession() : pool_([[NSAutoreleasePool alloc] init]) {
    startApplication();
}

AppKitSession::~AppKitSession() {
    [pool_ drain];
    expectNothingLeft();
}

} // namespace tarvex::test
