#include "App/Hotkeys/HotkeyManager.h"
#include "Platform/MacOS/CoreFoundation/RunLoopMainLoop.h"
#include "Platform/MacOS/Hotkeys/CarbonHotkeyPlatform.h"
#include "Tests/MacOS/Fakes/FakeMac.h"
#include "Tests/Support/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace tarvex {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;

constexpr std::uint32_t keyE = 14;

class DroppedLog final : public MessageLog {
public:
    void log(const std::string& message) override { lines.push_back(message); }

    std::vector<std::string> lines;
};

class CarbonHotkeys : public testing::Test {
protected:
    static fake::FakeHotkeys& system() { return fake::mac().hotkeys; }

    void press() {
        system().press(keyE, cmdKey);
        fake::mac().runLoop.settle();
    }

    CarbonHotkeyPlatform platform_;
};

TEST_F(CarbonHotkeys, CombinationAndIdentifierReachTheSystem) {
    const HotkeyRegistration registration = platform_.registerHotkey(keyE, 0x1B00, {0x74727678, 2});
    EXPECT_EQ(registration.status, 0);
    ASSERT_EQ(system().registered().size(), 1U);
    const fake::HotkeyRecord record = system().registered().front();
    EXPECT_EQ(record.keyCode, keyE);
    EXPECT_EQ(record.modifiers, 0x1B00U);
    EXPECT_EQ(record.identifier.signature, 0x74727678U);
    EXPECT_EQ(record.identifier.id, 2U);
}

TEST_F(CarbonHotkeys, RefusalIsItsStatusWithoutAReference) {
    system().registrationStatus = eventHotKeyExistsErr;
    const HotkeyRegistration registration = platform_.registerHotkey(keyE, cmdKey, {1, 1});
    EXPECT_EQ(registration.status, -9878);
    EXPECT_EQ(registration.reference, nullptr);
}

TEST_F(CarbonHotkeys, ReferenceThatComesWithARefusalIsOwned) {
    system().registrationStatus = eventHotKeyInvalidErr;
    system().givesReferenceAnyway = true;
    HotkeyRegistration registration = platform_.registerHotkey(keyE, cmdKey, {1, 1});
    EXPECT_EQ(registration.status, -9879);
    EXPECT_NE(registration.reference, nullptr);
    registration.reference.reset();
    EXPECT_THAT(system().registered(), IsEmpty());
}

TEST_F(CarbonHotkeys, RefusedHandlerIsNone) {
    system().installationStatus = eventParameterNotFoundErr;
    EXPECT_EQ(platform_.installHandler([](const HotkeyIdentifier&) {}), nullptr);
}

TEST_F(CarbonHotkeys, EventWithoutAnIdentifierIsTakenAndIgnored) {
    int calls = 0;
    const auto handler = platform_.installHandler([&](const HotkeyIdentifier&) { ++calls; });
    system().sendPressed(std::nullopt);
    fake::mac().runLoop.settle();
    EXPECT_EQ(calls, 0);
    EXPECT_THAT(system().badAnswers, IsEmpty());
}

TEST_F(CarbonHotkeys, ExceptionStaysInTheHandler) {
    const auto hotkey = platform_.registerHotkey(keyE, cmdKey, {1, 1});
    int calls = 0;
    const auto handler = platform_.installHandler([&](const HotkeyIdentifier&) {
        ++calls;
        throw std::runtime_error("failed");
    });
    press();
    press();
    EXPECT_EQ(calls, 2);
    EXPECT_THAT(system().badAnswers, IsEmpty());
}

TEST_F(CarbonHotkeys, EmptyHandlerIsHarmless) {
    const auto hotkey = platform_.registerHotkey(keyE, cmdKey, {1, 1});
    const auto handler = platform_.installHandler(nullptr);
    press();
    EXPECT_THAT(system().badAnswers, IsEmpty());
}

TEST_F(CarbonHotkeys, HandlerLivesThroughItsOwnRemoval) {
    const auto hotkey = platform_.registerHotkey(keyE, cmdKey, {1, 1});
    const auto heard = std::make_shared<int>(0);
    std::unique_ptr<HotkeyHandler> handler;
    handler = platform_.installHandler([&handler, heard](const HotkeyIdentifier&) {
        handler.reset();
        // The captures are used after the handler has gone.
        ++*heard;
    });
    press();
    press();
    EXPECT_EQ(*heard, 1);
    EXPECT_EQ(system().handlerCount(), 0U);
}

class CarbonHotkeyManager : public CarbonHotkeys {
protected:
    RunLoopMainLoop mainLoop_;
    RecordingLog log_;
    DroppedLog fileLog_;
    HotkeyManager manager_{{platform_, mainLoop_, log_, fileLog_}};
};

TEST_F(CarbonHotkeyManager, ActionRunsAfterTheHandlerHasReturned) {
    int calls = 0;
    manager_.registerHotkey(1, {keyE, cmdKey}, [&] { ++calls; });
    system().press(keyE, cmdKey);
    fake::mac().runLoop.runTurn();
    EXPECT_EQ(calls, 0);
    EXPECT_THAT(fileLog_.lines, Contains("HotkeyManager triggered (id=1)"));
    fake::mac().runLoop.runTurn();
    EXPECT_EQ(calls, 1);
}

TEST_F(CarbonHotkeyManager, SecondRegistrationReplacesTheFirst) {
    int first = 0;
    int second = 0;
    manager_.registerHotkey(1, {15, cmdKey}, [&] { ++first; });
    manager_.registerHotkey(1, {keyE, cmdKey}, [&] { ++second; });
    ASSERT_EQ(system().registered().size(), 1U);
    system().press(15, cmdKey);
    press();
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TEST_F(CarbonHotkeyManager, RefusedHotkeyIsLoggedAndNeverFires) {
    system().registrationStatus = eventHotKeyExistsErr;
    int calls = 0;
    manager_.registerHotkey(2, {keyE, cmdKey}, [&] { ++calls; });
    EXPECT_THAT(log_.systemLines(), Contains("RegisterEventHotKey failed: -9878 (id=2)"));
    press();
    EXPECT_EQ(calls, 0);
    EXPECT_THAT(fileLog_.lines, Not(Contains("HotkeyManager triggered (id=2)")));
}

} // namespace
} // namespace tarvex
