#include "App/Hotkeys/HotkeyRecorder.h"
#include "App/Input/EventTapPlatform.h"
#include "Tests/Contract/X11/KeyMonitorFixture.h"
#include "Tests/Contract/X11/PressCounter.h"
#include "Tests/Contract/X11/XkbClient.h"

#include <QPushButton>
#include <QShortcut>
#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace tarvex::contract {

namespace {

constexpr std::uint16_t keyE = 14;
constexpr std::uint16_t keyR = 15;
constexpr std::uint16_t keySpace = 49;
constexpr std::uint32_t command = modifier_mask::command;

class KeyMonitorX11 : public KeyMonitorTest {};

TEST_F(KeyMonitorX11, CombinationGrabbedByAnotherClientIsSeen) {
    GrabbingClient other(desktop_.server.displayName());
    ASSERT_TRUE(other.grab(XCB_MOD_MASK_4, x_key::letterE));
    type(keyE, command);
    EXPECT_TRUE(window_.presses.empty());
    install();
    type(keyE, command);
    EXPECT_EQ(keys_, Keys{keyE});
    keys_.clear();
    monitor_.reset();
    type(keyE, command);
    EXPECT_TRUE(keys_.empty());
    EXPECT_TRUE(window_.presses.empty());
}

TEST_F(KeyMonitorX11, OwnHotkeyIsRecordedInsteadOfHeard) {
    XHotkeyPlatform hotkeys(*desktop_.adapters.connection, desktop_.adapters.pump);
    int heard = 0;
    const auto handler = hotkeys.installHandler([&](const HotkeyIdentifier&) { ++heard; });
    const HotkeyRegistration registration = hotkeys.registerHotkey(keyE, command, {});
    ASSERT_EQ(registration.status, 0);
    install();
    type(keyE, command);
    EXPECT_EQ(keys_, Keys{keyE});
    EXPECT_EQ(heard, 0);
    monitor_.reset();
    type(keyE, command);
    EXPECT_EQ(heard, 1);
}

TEST_F(KeyMonitorX11, KeyboardIsHeldAsLongAsTheMonitor) {
    EXPECT_TRUE(desktop_.isKeyboardFree());
    install();
    EXPECT_FALSE(desktop_.isKeyboardFree());
    monitor_.reset();
    desktop_.settle();
    EXPECT_TRUE(desktop_.isKeyboardFree());
}

TEST_F(KeyMonitorX11, KeyboardIsHeldUntilTheRecordedKeyIsReleased) {
    GrabbingClient other(desktop_.server.displayName());
    ASSERT_TRUE(other.grab(XCB_MOD_MASK_4, x_key::letterE));
    int taken = 0;
    other.client().setEventHandler([&](const xcb_generic_event_t& event) {
        taken += (event.response_type & 0x7F) == XCB_KEY_PRESS ? 1 : 0;
    });
    XkbClient(desktop_.server.displayName()).setRepeat(30, 10);
    install();
    onKey_ = [this] { monitor_.reset(); };
    desktop_.typist.press(keyE, command);
    // While the key repeats, what it stands for on the desktop must not begin.
    const PressCounter presses;
    ASSERT_TRUE(desktop_.waitUntil([&] { return presses.count() >= 6; }));
    EXPECT_FALSE(desktop_.isKeyboardFree());
    desktop_.typist.release(keyE, command);
    desktop_.settle();
    EXPECT_TRUE(desktop_.isKeyboardFree());
    EXPECT_EQ(keys_, Keys{keyE});
    EXPECT_TRUE(window_.presses.empty());
    EXPECT_TRUE(window_.releases.empty());
    other.client().sync();
    other.client().handleEvents();
    EXPECT_EQ(taken, 0);
}

TEST_F(KeyMonitorX11, KeyboardIsNotHeldForAKeyThatIsPassedOn) {
    monitor_ = desktop_.monitors.addLocalKeyDownMonitor([this](const KeyEvent&) {
        monitor_.reset();
        return true;
    });
    desktop_.typist.press(keyE, 0);
    desktop_.settle();
    EXPECT_TRUE(desktop_.isKeyboardFree());
    EXPECT_EQ(window_.presses, Codes{x_key::letterE});
}

TEST_F(KeyMonitorX11, HeldKeyIsReportedOnce) {
    XkbClient(desktop_.server.displayName()).setRepeat(30, 10);
    install();
    const PressCounter presses;
    desktop_.typist.press(keyE, 0);
    ASSERT_TRUE(desktop_.waitUntil([&] { return presses.count() >= 6; }));
    desktop_.typist.release(keyE, 0);
    desktop_.settle();
    EXPECT_EQ(keys_, Keys{keyE});
    type(keyE);
    EXPECT_EQ(keys_, (Keys{keyE, keyE}));
}

TEST_F(KeyMonitorX11, KeyThatWasDownBeforeIsNotReportedButReleased) {
    XkbClient(desktop_.server.displayName()).setRepeat(30, 10);
    keyboard().pressKey(x_key::letterE);
    ASSERT_TRUE(desktop_.waitUntil([&] { return window_.presses.size() >= 3; }));
    install();
    window_.releases.clear();
    const PressCounter presses;
    ASSERT_TRUE(desktop_.waitUntil([&] { return presses.count() >= 6; }));
    EXPECT_TRUE(keys_.empty());
    keyboard().releaseKey(x_key::letterE);
    desktop_.settle();
    EXPECT_TRUE(keys_.empty());
    ASSERT_FALSE(window_.releases.empty());
}

TEST_F(KeyMonitorX11, KeyWithoutAVirtualKeyCodeIsSwallowed) {
    install();
    keyboard().tapKey(x_key::scrollLock);
    desktop_.settle();
    EXPECT_TRUE(keys_.empty());
    EXPECT_TRUE(window_.presses.empty());
    EXPECT_TRUE(window_.releases.empty());
    type(keyR);
    EXPECT_EQ(keys_, Keys{keyR});
}

// AltGr has no event flag: the report would be one of the key alone.
TEST_F(KeyMonitorX11, CombinationThatTheFlagsCannotTellIsSwallowed) {
    setLayout(desktop_.server, "de");
    desktop_.settle();
    install();
    keyboard().pressKey(x_key::altGr);
    type(keyE);
    type(keyE, modifier_mask::control);
    EXPECT_TRUE(keys_.empty());
    keyboard().releaseKey(x_key::altGr);
    EXPECT_TRUE(window_.presses.empty());
    EXPECT_TRUE(window_.releases.empty());
    EXPECT_FALSE(desktop_.isKeyboardFree());
    type(keyE);
    EXPECT_EQ(keys_, Keys{keyE});
}

TEST_F(KeyMonitorX11, LocksDoNotKeepAKeyFromBeingReported) {
    setLayout(desktop_.server, "de");
    desktop_.settle();
    install();
    for (const std::uint8_t lock : {x_key::numLock, x_key::capsLock}) {
        keyboard().tapKey(lock);
        desktop_.settle();
        keys_.clear();
        type(keyE, command);
        EXPECT_EQ(keys_, Keys{keyE}) << int{lock};
    }
    keyboard().tapKey(x_key::numLock);
    keyboard().tapKey(x_key::capsLock);
}

TEST_F(KeyMonitorX11, RecordedKeyDoesNotClickTheButton) {
    QPushButton button(&window_);
    button.show();
    button.setFocus();
    int clicks = 0;
    QObject::connect(&button, &QPushButton::clicked, [&] { ++clicks; });
    type(keySpace);
    ASSERT_EQ(clicks, 1);
    HotkeyRecorder recorder(desktop_.monitors);
    std::vector<std::uint32_t> recorded;
    recorder.start([&](const std::optional<HotkeyDefinition>& hotkey) {
        recorded.push_back(hotkey ? hotkey->keyCode : 53U);
    });
    type(keySpace);
    EXPECT_EQ(recorded, std::vector<std::uint32_t>{keySpace});
    EXPECT_EQ(clicks, 1);
    EXPECT_FALSE(button.isDown());
    type(keySpace);
    EXPECT_EQ(clicks, 2);
}

TEST_F(KeyMonitorX11, RecordedKeyDoesNotTriggerAShortcut) {
    QShortcut shortcut(QKeySequence("Ctrl+E"), &window_);
    int triggered = 0;
    QObject::connect(&shortcut, &QShortcut::activated, [&] { ++triggered; });
    type(keyE, modifier_mask::control);
    ASSERT_EQ(triggered, 1);
    install();
    type(keyE, modifier_mask::control);
    EXPECT_EQ(keys_, Keys{keyE});
    EXPECT_EQ(triggered, 1);
}

TEST_F(KeyMonitorX11, KeyThatIsPassedOnTriggersItsShortcut) {
    QShortcut shortcut(QKeySequence("Ctrl+E"), &window_);
    int triggered = 0;
    QObject::connect(&shortcut, &QShortcut::activated, [&] { ++triggered; });
    monitor_ = desktop_.monitors.addLocalKeyDownMonitor([this](const KeyEvent& event) {
        keys_.push_back(event.keyCode);
        return true;
    });
    type(keyE, modifier_mask::control);
    type(keyR);
    EXPECT_EQ(triggered, 1);
    EXPECT_EQ(keys_, (Keys{keyE, keyR}));
    EXPECT_EQ(window_.presses, Codes{x_key::letterR});
    EXPECT_EQ(window_.releases, (Codes{x_key::letterE, x_key::letterR}));
}

TEST_F(KeyMonitorX11, KeyIsThePhysicalOneInEveryLayout) {
    install();
    setLayout(desktop_.server, "fr");
    desktop_.settle();
    type(12);
    setLayout(desktop_.server, "us", "dvorak");
    desktop_.settle();
    type(12);
    EXPECT_EQ(keys_, (Keys{12, 12}));
}

TEST_F(KeyMonitorX11, ModifiersFollowTheModifierMap) {
    std::vector<std::uint64_t> flags;
    monitor_ = desktop_.monitors.addLocalKeyDownMonitor([&](const KeyEvent& event) {
        flags.push_back(event.modifierFlags);
        return false;
    });
    type(keyE, command);
    ModifierKeys modifiers = standardModifiers;
    std::swap(modifiers[XCB_MAP_INDEX_4], modifiers[XCB_MAP_INDEX_3]);
    setModifierMap(desktop_.client, modifiers);
    desktop_.settle();
    type(keyE, command);
    EXPECT_EQ(flags, (std::vector<std::uint64_t>{event_flag::command, event_flag::command}));
}

TEST_F(KeyMonitorX11, PlatformMayGoFromWithinTheHandler) {
    auto platform = std::make_unique<QtKeyMonitor>(*desktop_.adapters.connection, desktop_.adapters.pump);
    int seen = 0;
    monitor_ = platform->addLocalKeyDownMonitor([&](const KeyEvent&) {
        ++seen;
        platform.reset();
        return false;
    });
    type(keyE);
    EXPECT_EQ(seen, 1);
    EXPECT_TRUE(desktop_.isKeyboardFree());
    window_.presses.clear();
    type(keyE);
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(window_.presses, Codes{x_key::letterE});
}

} // namespace

} // namespace tarvex::contract
