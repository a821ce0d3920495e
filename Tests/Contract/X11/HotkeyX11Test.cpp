#include "Platform/Linux/X11/XkbProtocol.h"
#include "Tests/Contract/X11/HotkeyX11Fixture.h"
#include "Tests/Contract/X11/XkbClient.h"

#include <gtest/gtest.h>

#include <memory>

namespace tarvex::contract {

namespace {

TEST_F(HotkeyX11, IsGrabbedForEveryCombinationOfTheLocks) {
    ModifierKeys modifiers = standardModifiers;
    modifiers[XCB_MAP_INDEX_3] = {x_key::scrollLock};
    setModifierMap(other_.client(), modifiers);
    install();
    const HotkeyRegistration registration = add(keyE, command);
    ASSERT_EQ(registration.status, 0);
    EXPECT_EQ(other_.statesTaken(x_key::letterE), (States{64, 64 | 2, 64 | 16, 64 | 16 | 2, 64 | 32,
                                                          64 | 32 | 2, 64 | 32 | 16, 64 | 32 | 16 | 2}));

    for (int locks = 0; locks < 8; ++locks) {
        for (const auto& [bit, key] :
             {std::pair{1, x_key::capsLock}, {2, x_key::numLock}, {4, x_key::scrollLock}}) {
            if ((locks & bit) != 0) {
                keyboard_.tapKey(key);
            }
        }
        EXPECT_EQ(heardDuring([&] { typist_.type(keyE, command); }), 1U) << locks;
        for (const auto& [bit, key] :
             {std::pair{1, x_key::capsLock}, {2, x_key::numLock}, {4, x_key::scrollLock}}) {
            if ((locks & bit) != 0) {
                keyboard_.tapKey(key);
            }
        }
    }
}

TEST_F(HotkeyX11, ModifierWithoutMeaningMakesADifference) {
    ModifierKeys modifiers = standardModifiers;
    modifiers[XCB_MAP_INDEX_5] = {x_key::letterR};
    setModifierMap(other_.client(), modifiers);
    install();
    const HotkeyRegistration registration = add(keyE, command);
    ASSERT_EQ(registration.status, 0);
    keyboard_.pressKey(x_key::letterR);
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, command); }), 0U);
    keyboard_.releaseKey(x_key::letterR);
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, command); }), 1U);
}

TEST_F(HotkeyX11, HeldKeyIsHeardOnce) {
    XkbClient(server_.displayName()).setRepeat(30, 10);
    install();
    const HotkeyRegistration registration = add(keyE, command);
    int presses = 0;
    const auto counting =
        adapters_.pump.subscribe(XCB_KEY_PRESS, [&](const xcb_generic_event_t&) { ++presses; });
    typist_.press(keyE, command);
    ASSERT_TRUE(adapters_.waitUntil([&] { return presses >= 5; }));
    typist_.release(keyE, command);
    adapters_.catchUp();
    EXPECT_EQ(pressed_, Ids{1});
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, command); }), 1U);
}

TEST_F(HotkeyX11, OtherHotkeyIsHeardWhileOneIsHeld) {
    install();
    const HotkeyRegistration first = add(keyE, command, 1);
    const HotkeyRegistration second = add(keyR, command, 2);
    keyboard_.pressKey(x_key::super);
    keyboard_.pressKey(x_key::letterE);
    keyboard_.pressKey(x_key::letterR);
    keyboard_.releaseKey(x_key::letterE);
    // The grab is over: nobody tells us of this release.
    keyboard_.releaseKey(x_key::letterR);
    adapters_.catchUp();
    keyboard_.tapKey(x_key::letterR);
    adapters_.catchUp();
    EXPECT_EQ(pressed_, (Ids{1, 2, 2}));
}

TEST_F(HotkeyX11, CombinationOfAnotherClientIsRefused) {
    install();
    ASSERT_TRUE(other_.grab(XCB_MOD_MASK_4, x_key::letterE));
    const HotkeyRegistration registration = add(keyE, command);
    EXPECT_EQ(registration.status, XCB_ACCESS);
    EXPECT_EQ(registration.reference, nullptr);
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, command); }), 0U);
}

TEST_F(HotkeyX11, RefusedLockVariantLeavesNothingGrabbed) {
    install();
    constexpr std::uint16_t withNumLock = XCB_MOD_MASK_4 | XCB_MOD_MASK_2;
    ASSERT_TRUE(other_.grab(withNumLock, x_key::letterE));
    EXPECT_EQ(add(keyE, command).status, XCB_ACCESS);
    adapters_.awaitServer();
    EXPECT_TRUE(other_.isFree(x_key::letterE));
    other_.ungrab(withNumLock, x_key::letterE);
    EXPECT_EQ(add(keyE, command).status, 0);
}

TEST_F(HotkeyX11, NothingStaysGrabbedAfterTheHotkey) {
    install();
    HotkeyRegistration registration = add(keyE, command);
    ASSERT_FALSE(other_.isFree(x_key::letterE));
    registration.reference.reset();
    adapters_.awaitServer();
    EXPECT_TRUE(other_.isFree(x_key::letterE));
}

TEST_F(HotkeyX11, NothingStaysGrabbedAfterThePlatform) {
    install();
    HotkeyRegistration first = add(keyE, command);
    const HotkeyRegistration second = add(keyR, command);
    ASSERT_FALSE(other_.isFree(x_key::letterR));
    platform_.reset();
    adapters_.awaitServer();
    EXPECT_TRUE(other_.isFree(x_key::letterE));
    EXPECT_TRUE(other_.isFree(x_key::letterR));
    // The rest may go later.
    first.reference.reset();
    handler_.reset();
}

TEST_F(HotkeyX11, PlatformMayGoFromWithinItsHandler) {
    install();
    const HotkeyRegistration registration = add(keyE, command);
    onPress_ = [this] { platform_.reset(); };
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, command); }), 1U);
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, command); }), 0U);
    EXPECT_TRUE(other_.isFree(x_key::letterE));
}

// Other programs type with it.
TEST_F(HotkeyX11, OwnWindowWithTheKeyboardDoesNotGetTheKey) {
    install();
    const HotkeyRegistration registration = add(keyE, command);
    XConnection& connection = *adapters_.connection;
    const xcb_window_t window = xcb_generate_id(connection.get());
    const std::array<std::uint32_t, 2> values{1, XCB_EVENT_MASK_KEY_PRESS};
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window, connection.root(), 0, 0, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, connection.screen().root_visual,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
    xcb_map_window(connection.get(), window);
    xcb_set_input_focus(connection.get(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    std::vector<xcb_window_t> receivers;
    const auto counting = adapters_.pump.subscribe(XCB_KEY_PRESS, [&](const xcb_generic_event_t& event) {
        receivers.push_back(reinterpret_cast<const xcb_key_press_event_t&>(event).event);
    });
    EXPECT_EQ(heardDuring([&] { keyboard_.tapKey(x_key::letterE); }), 0U);
    ASSERT_EQ(receivers, std::vector<xcb_window_t>{window});
    receivers.clear();
    keyboard_.pressKey(x_key::super);
    adapters_.catchUp();
    receivers.clear();
    EXPECT_EQ(heardDuring([&] {
                  keyboard_.pressKey(x_key::letterE);
                  keyboard_.pressKey(x_key::letterR);
              }),
              1U);
    EXPECT_EQ(receivers, (std::vector<xcb_window_t>{connection.root(), connection.root()}));
}

TEST_F(HotkeyX11, KeyboardHeldByAnotherClientIsHis) {
    install();
    const HotkeyRegistration registration = add(keyE, command);
    xcb_connection_t* const client = other_.client().connection();
    const test::Owned<xcb_grab_keyboard_reply_t> grab(
        xcb_grab_keyboard_reply(client,
                                xcb_grab_keyboard(client, 0, other_.client().root(), XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr));
    ASSERT_EQ(grab->status, XCB_GRAB_STATUS_SUCCESS);
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, command); }), 0U);
    xcb_ungrab_keyboard(client, XCB_CURRENT_TIME);
    other_.client().sync();
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, command); }), 1U);
}

TEST_F(HotkeyX11, TypingWakesNobody) {
    install();
    const HotkeyRegistration registration = add(keyE, command);
    // The first key tells the server which keyboard is in use.
    typist_.type(keyE, 0);
    adapters_.catchUp();
    for (int count = 0; count < 20; ++count) {
        typist_.type(keyE, 0);
        typist_.type(keyR, command);
    }
    adapters_.awaitServer();
    EXPECT_EQ(XcbOwned<xcb_generic_event_t>(xcb_poll_for_event(adapters_.connection->get())), nullptr);
}

TEST_F(HotkeyX11, LostServerIsHarmless) {
    install();
    HotkeyRegistration registration = add(keyE, command);
    server_.end();
    const HotkeyRegistration later = add(keyR, command);
    EXPECT_EQ(later.status, XConnection::connectionLost);
    EXPECT_EQ(later.reference, nullptr);
    adapters_.pump.processPending();
    registration.reference.reset();
    platform_.reset();
    XHotkeyPlatform afterwards(*adapters_.connection, adapters_.pump);
    EXPECT_EQ(afterwards.registerHotkey(keyE, command, {}).status, XConnection::connectionLost);
}

} // namespace

} // namespace tarvex::contract
