#include "Tests/Contract/X11/EventTapFixture.h"

#include <array>
#include <cstdint>

namespace tarvex::contract {

namespace {

class EventTapModifiersX11 : public EventTapTest {
protected:
    // Key codes of the server's standard keyboard.
    static constexpr std::uint8_t shiftKey = 50;
    static constexpr std::uint8_t controlKey = 37;
    static constexpr std::uint8_t altKey = 64;
    static constexpr std::uint8_t superKey = 133;

    /// One key for each modifier from Shift to Mod5; 0 for none.
    void setModifierMap(const std::array<std::uint8_t, 8>& keys) {
        const test::Owned<xcb_set_modifier_mapping_reply_t> reply(xcb_set_modifier_mapping_reply(
            other_.connection(), xcb_set_modifier_mapping(other_.connection(), 1, keys.data()), nullptr));
        ASSERT_NE(reply, nullptr);
        ASSERT_EQ(reply->status, XCB_MAPPING_STATUS_SUCCESS);
    }
};

TEST_F(EventTapModifiersX11, TypingWakesNobody) {
    install();
    keyboard_.tap(0x61);
    EXPECT_EQ(eventsDuring([this] {
                  for (int count = 0; count < 50; ++count) {
                      keyboard_.tap(0x61);
                  }
              }),
              0);
}

TEST_F(EventTapModifiersX11, ModifiersAreSeenWhileAnotherClientHoldsTheKeyboard) {
    install();
    const test::Owned<xcb_grab_keyboard_reply_t> grab(
        xcb_grab_keyboard_reply(other_.connection(),
                                xcb_grab_keyboard(other_.connection(), 0, other_.root(), XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr));
    ASSERT_NE(grab, nullptr);
    ASSERT_EQ(grab->status, XCB_GRAB_STATUS_SUCCESS);
    keyboard_.press(test::key::super);
    adapters_.catchUp();
    keyboard_.press(test::key::shift);
    keyboard_.release(test::key::super);
    adapters_.catchUp();
    EXPECT_EQ(recorder_.events,
              (std::vector<TapEvent>{{EventType::flagsChanged, event_flag::command},
                                     {EventType::flagsChanged, event_flag::command | event_flag::shift},
                                     {EventType::flagsChanged, event_flag::shift}}));
}

TEST_F(EventTapModifiersX11, KeyLetGoAfterTheButtonStillCountsForTheRelease) {
    install();
    keyboard_.press(test::key::super);
    mouse_.press();
    adapters_.catchUp();
    recorder_.events.clear();
    mouse_.moveTo({300, 300});
    mouse_.release();
    keyboard_.release(test::key::super);
    adapters_.catchUp();
    EXPECT_EQ(recorder_.events, (std::vector<TapEvent>{{EventType::leftMouseDragged, event_flag::command},
                                                       {EventType::leftMouseUp, event_flag::command},
                                                       {EventType::flagsChanged, 0}}));
}

TEST_F(EventTapModifiersX11, SecondKeyOfAModifierChangesNothing) {
    constexpr std::uint32_t shiftRight = 0xFFE2;
    install();
    keyboard_.press(test::key::shift);
    keyboard_.press(shiftRight);
    keyboard_.release(test::key::shift);
    keyboard_.release(shiftRight);
    adapters_.catchUp();
    EXPECT_EQ(recorder_.events, (std::vector<TapEvent>{{EventType::flagsChanged, event_flag::shift},
                                                       {EventType::flagsChanged, 0}}));
}

TEST_F(EventTapModifiersX11, NumLockIsNoModifier) {
    keyboard_.tap(test::key::numLock);
    install();
    keyboard_.press(test::key::alt);
    keyboard_.tap(test::key::numLock);
    keyboard_.release(test::key::alt);
    adapters_.catchUp();
    EXPECT_EQ(recorder_.events, (std::vector<TapEvent>{{EventType::flagsChanged, event_flag::option},
                                                       {EventType::flagsChanged, 0}}));
}

TEST_F(EventTapModifiersX11, ModifiersFollowTheModifierMap) {
    install();
    keyboard_.tap(test::key::alt);
    adapters_.catchUp();
    ASSERT_EQ(recorder_.events.front(), (TapEvent{EventType::flagsChanged, event_flag::option}));
    recorder_.events.clear();

    // Super takes the modifier that Alt had, and Alt one that nobody had.
    setModifierMap({shiftKey, 0, controlKey, superKey, 0, altKey, 0, 0});
    keyboard_.tap(test::key::super);
    keyboard_.tap(test::key::alt);
    adapters_.catchUp();
    EXPECT_EQ(recorder_.events, (std::vector<TapEvent>{{EventType::flagsChanged, event_flag::command},
                                                       {EventType::flagsChanged, 0},
                                                       {EventType::flagsChanged, event_flag::option},
                                                       {EventType::flagsChanged, 0}}));
}

TEST_F(EventTapModifiersX11, MetaStandsInForAltWhereAltIsNoModifier) {
    constexpr xcb_keysym_t metaLeft = 0xFFE7;
    xcb_change_keyboard_mapping(other_.connection(), 1, altKey, 1, &metaLeft);
    setModifierMap({shiftKey, 0, controlKey, altKey, superKey, 0, 0, 0});
    install();
    keyboard_.press(metaLeft);
    adapters_.catchUp();
    EXPECT_EQ(recorder_.events, (std::vector<TapEvent>{{EventType::flagsChanged, event_flag::option}}));
}

TEST_F(EventTapModifiersX11, ModifiersThatAreHeldAtTheStartAreKnown) {
    keyboard_.press(test::key::super);
    install();
    EXPECT_TRUE(recorder_.events.empty());
    mouse_.press();
    adapters_.catchUp();
    EXPECT_EQ(recorder_.events, (std::vector<TapEvent>{{EventType::leftMouseDown, event_flag::command}}));
}

} // namespace

} // namespace tarvex::contract
