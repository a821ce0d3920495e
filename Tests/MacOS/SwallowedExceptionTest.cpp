#include "Platform/MacOS/AppKit/Guarded.h"
#include "Platform/MacOS/CoreFoundation/RunLoopMainLoop.h"
#include "Platform/MacOS/Hotkeys/CarbonHotkeyPlatform.h"
#include "Tests/MacOS/Fakes/FakeMac.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <typeinfo>

namespace tarvex {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

fake::UnifiedLine lineOf(const std::string& category, const std::string& message) {
    return {"Tarvex", category, OS_LOG_TYPE_ERROR, message};
}

[[noreturn]] void fail() {
    throw std::runtime_error("failed");
}

TEST(SwallowedException, OfAGuardedCallIsLogged) {
    callGuarded(&fail);
    EXPECT_TRUE(answerGuarded([]() -> bool { fail(); }, true));
    EXPECT_THAT(fake::mac().log.lines,
                ElementsAre(lineOf("AppKit", "swallowed: failed"), lineOf("AppKit", "swallowed: failed")));
}

TEST(SwallowedException, OfAnotherTypeIsLoggedAsSuch) {
    struct Failure {};

    callGuarded([] { throw Failure(); });
    EXPECT_THAT(fake::mac().log.lines,
                ElementsAre(lineOf("AppKit", std::string("swallowed: an exception of the type ") +
                                                 typeid(Failure).name())));
}

TEST(SwallowedException, WithoutOneNothingIsLogged) {
    callGuarded([] {});
    EXPECT_FALSE(answerGuarded([] { return false; }, true));
    EXPECT_THAT(fake::mac().log.lines, IsEmpty());
}

TEST(SwallowedException, OfPostedActionsAndTimersIsLogged) {
    RunLoopMainLoop mainLoop;
    mainLoop.post(&fail);
    const auto timer = mainLoop.scheduleOnce(0.5, &fail);
    fake::mac().runLoop.advance(1);
    EXPECT_THAT(fake::mac().log.lines, ElementsAre(lineOf("RunLoopMainLoop", "swallowed: failed"),
                                                   lineOf("RunLoopMainLoop", "swallowed: failed")));
}

TEST(SwallowedException, OfAHotkeyIsLogged) {
    CarbonHotkeyPlatform platform;
    const auto handler = platform.installHandler([](const HotkeyIdentifier&) { fail(); });
    const HotkeyRegistration hotkey = platform.registerHotkey(49, cmdKey, {1, 2});
    fake::mac().hotkeys.press(49, cmdKey);
    fake::mac().runLoop.settle();
    EXPECT_THAT(fake::mac().log.lines, ElementsAre(lineOf("CarbonHotkeyPlatform", "swallowed: failed")));
}

} // namespace
} // namespace tarvex
