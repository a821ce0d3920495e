#include "Tests/Contract/X11/InputAdapters.h"
#include "Tests/Support/X11/Keyboard.h"
#include "Tests/Support/X11/Pointer.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>
#include <xcb/xinput.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <string>

namespace tarvex::contract {

namespace {

/// Receives a tap's events, and asks at each where the pointer is.
struct Recorder {
    std::vector<TapEvent> events;
    std::vector<Point> places;
    PointerPlatform* pointer = nullptr;
    std::function<void()> onEvent = [] {};

    static const TapEvent* callback(EventTap* /*proxy*/, EventType /*type*/, const TapEvent* event,
                                    void* refcon) {
        auto& self = *static_cast<Recorder*>(refcon);
        self.events.push_back(*event);
        self.places.push_back(self.pointer->mouseLocation());
        self.onEvent();
        return event;
    }
};

std::vector<EventType> typesOf(const std::vector<TapEvent>& events) {
    std::vector<EventType> types;
    std::transform(events.begin(), events.end(), std::back_inserter(types),
                   [](const TapEvent& event) { return event.type; });
    return types;
}

class EventTapX11 : public ::testing::Test {
protected:
    EventTapX11() {
        recorder_.pointer = &adapters_.pointer;
        mouse_.moveTo({200, 200});
    }

    void create() {
        EventTapRequest request;
        request.eventMask = 0x1046;
        request.callback = &Recorder::callback;
        request.refcon = &recorder_;
        tap_ = adapters_.taps.createTap(request);
        ASSERT_NE(tap_, nullptr);
        source_ = adapters_.taps.createRunLoopSource(*tap_);
        ASSERT_NE(source_, nullptr);
    }

    void install() {
        create();
        adapters_.taps.addSource(*source_);
        adapters_.taps.enableTap(*tap_);
        adapters_.catchUp();
    }

    [[nodiscard]] std::vector<EventType> types() const { return typesOf(recorder_.events); }

    /// How many events of the X server reach this process while the work is done.
    int eventsDuring(const std::function<void()>& work) {
        adapters_.catchUp();
        work();
        adapters_.awaitServer();
        int count = 0;
        while (const XcbOwned<xcb_generic_event_t> event{xcb_poll_for_event(adapters_.connection->get())}) {
            ++count;
        }
        return count;
    }

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

    test::XServer server_;
    XInputAdapters adapters_{server_.displayName()};
    test::XClient other_{server_.displayName()};
    test::Pointer mouse_{server_.displayName()};
    test::Keyboard keyboard_{server_.displayName()};
    Recorder recorder_;
    std::unique_ptr<EventTap> tap_;
    std::unique_ptr<RunLoopSource> source_;
};

const std::vector<EventType> click{EventType::leftMouseDown, EventType::leftMouseUp};

TEST_F(EventTapX11, MovingPointerWakesNobodyWhileNoButtonIsDown) {
    install();
    EXPECT_EQ(eventsDuring([this] { mouse_.glideTo({900, 700}, 200); }), 0);
    mouse_.press();
    mouse_.release();
    adapters_.catchUp();
    ASSERT_EQ(types(), click);
    EXPECT_EQ(eventsDuring([this] { mouse_.glideTo({200, 200}, 200); }), 0);
}

TEST_F(EventTapX11, TypingWakesNobody) {
    install();
    keyboard_.tap(0x61);
    EXPECT_EQ(eventsDuring([this] {
                  for (int count = 0; count < 50; ++count) {
                      keyboard_.tap(0x61);
                  }
              }),
              0);
}

TEST_F(EventTapX11, DroppedTapLeavesNoEventsBehind) {
    install();
    // The server tells of the keyboard that is now in use.
    keyboard_.tap(test::key::super);
    source_.reset();
    tap_.reset();
    EXPECT_EQ(eventsDuring([this] {
                  mouse_.press();
                  mouse_.glideTo({400, 400}, 20);
                  mouse_.release();
                  keyboard_.tap(test::key::super);
              }),
              0);
}

TEST_F(EventTapX11, QueuedMotionIsOneEventOfOneRequest) {
    install();
    mouse_.press();
    adapters_.catchUp();
    recorder_.events.clear();
    mouse_.glideTo({900, 700}, 300);
    adapters_.awaitServer();
    EXPECT_EQ(adapters_.requestsDuring([this] { adapters_.pump.processPending(); }), 1U);
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDragged}));
    EXPECT_EQ(recorder_.places.back(), (Point{900.5, 1024 - 700.5}));
}

TEST_F(EventTapX11, PointerIsAskedOncePerEventHoweverOftenItIsRead) {
    install();
    std::vector<unsigned> requests;
    recorder_.onEvent = [&] {
        requests.push_back(adapters_.requestsDuring([this] {
            static_cast<void>(adapters_.pointer.mouseLocation());
            static_cast<void>(adapters_.pointer.mouseLocation());
        }));
    };
    mouse_.press();
    ASSERT_TRUE(adapters_.waitUntil([&] { return requests.size() == 1; }));
    EXPECT_EQ(requests.back(), 0U);
    EXPECT_EQ(adapters_.requestsDuring([this] { static_cast<void>(adapters_.pointer.mouseLocation()); }), 1U);
}

TEST_F(EventTapX11, LeftHandedPointerPressesWithTheRightButton) {
    mouse_.setMapping({3, 2, 1});
    install();
    mouse_.press(1);
    mouse_.release(1);
    adapters_.catchUp();
    EXPECT_TRUE(recorder_.events.empty());
    mouse_.press(3);
    mouse_.release(3);
    adapters_.catchUp();
    EXPECT_EQ(types(), click);
}

TEST_F(EventTapX11, PointerMayBecomeLeftHandedAndRightHandedAgain) {
    install();
    const auto isSeen = [this](std::uint8_t button) {
        recorder_.events.clear();
        mouse_.press(button);
        mouse_.release(button);
        adapters_.catchUp();
        return types() == click;
    };
    EXPECT_TRUE(isSeen(1));
    mouse_.setMapping({3, 2, 1});
    EXPECT_TRUE(isSeen(3));
    EXPECT_FALSE(isSeen(1));
    mouse_.setMapping({1, 2, 3});
    EXPECT_FALSE(isSeen(3));
    EXPECT_TRUE(isSeen(1));
}

TEST_F(EventTapX11, OneDeviceMayBeLeftHanded) {
    install();
    const std::uint8_t device = 4; // the server's own device for synthesised input
    const std::array<std::uint8_t, 10> leftHanded{3, 2, 1, 4, 5, 6, 7, 8, 9, 10};
    const test::Owned<xcb_input_set_device_button_mapping_reply_t> reply(
        xcb_input_set_device_button_mapping_reply(
            other_.connection(),
            xcb_input_set_device_button_mapping(other_.connection(), device, leftHanded.size(),
                                                leftHanded.data()),
            nullptr));
    ASSERT_NE(reply, nullptr);
    ASSERT_EQ(reply->status, XCB_MAPPING_STATUS_SUCCESS);
    mouse_.press(1);
    mouse_.release(1);
    adapters_.catchUp();
    EXPECT_TRUE(recorder_.events.empty());
    mouse_.press(3);
    mouse_.release(3);
    adapters_.catchUp();
    EXPECT_EQ(types(), click);
}

TEST_F(EventTapX11, ModifiersAreSeenWhileAnotherClientHoldsTheKeyboard) {
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

TEST_F(EventTapX11, DragIsSeenWhileAnotherClientHoldsThePointer) {
    install();
    mouse_.press();
    const test::Owned<xcb_grab_pointer_reply_t> grab(xcb_grab_pointer_reply(
        other_.connection(),
        xcb_grab_pointer(other_.connection(), 0, other_.root(), XCB_EVENT_MASK_BUTTON_RELEASE,
                         XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME),
        nullptr));
    ASSERT_NE(grab, nullptr);
    ASSERT_EQ(grab->status, XCB_GRAB_STATUS_SUCCESS);
    adapters_.catchUp();
    mouse_.moveTo({300, 300});
    adapters_.catchUp();
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDown, EventType::leftMouseDragged,
                                               EventType::leftMouseUp}));
}

TEST_F(EventTapX11, KeyLetGoAfterTheButtonStillCountsForTheRelease) {
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

TEST_F(EventTapX11, SecondKeyOfAModifierChangesNothing) {
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

TEST_F(EventTapX11, NumLockIsNoModifier) {
    keyboard_.tap(test::key::numLock);
    install();
    keyboard_.press(test::key::alt);
    keyboard_.tap(test::key::numLock);
    keyboard_.release(test::key::alt);
    adapters_.catchUp();
    EXPECT_EQ(recorder_.events, (std::vector<TapEvent>{{EventType::flagsChanged, event_flag::option},
                                                       {EventType::flagsChanged, 0}}));
}

TEST_F(EventTapX11, ModifiersFollowTheModifierMap) {
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

TEST_F(EventTapX11, MetaStandsInForAltWhereAltIsNoModifier) {
    constexpr xcb_keysym_t metaLeft = 0xFFE7;
    xcb_change_keyboard_mapping(other_.connection(), 1, altKey, 1, &metaLeft);
    setModifierMap({shiftKey, 0, controlKey, altKey, superKey, 0, 0, 0});
    install();
    keyboard_.press(metaLeft);
    adapters_.catchUp();
    EXPECT_EQ(recorder_.events, (std::vector<TapEvent>{{EventType::flagsChanged, event_flag::option}}));
}

TEST_F(EventTapX11, ButtonThatIsDownAtTheStartIsFollowed) {
    mouse_.press();
    install();
    EXPECT_TRUE(recorder_.events.empty());
    mouse_.moveTo({300, 300});
    adapters_.catchUp();
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDragged, EventType::leftMouseUp}));
}

TEST_F(EventTapX11, ModifiersThatAreHeldAtTheStartAreKnown) {
    keyboard_.press(test::key::super);
    install();
    EXPECT_TRUE(recorder_.events.empty());
    mouse_.press();
    adapters_.catchUp();
    EXPECT_EQ(recorder_.events, (std::vector<TapEvent>{{EventType::leftMouseDown, event_flag::command}}));
}

TEST_F(EventTapX11, MissedReleaseIsMadeUpForAtTheNextMotion) {
    install();
    mouse_.press();
    adapters_.catchUp();
    EXPECT_EQ(eventsDuring([this] { mouse_.release(); }), 1); // and lost
    mouse_.moveTo({300, 300});
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDown, EventType::leftMouseDragged,
                                               EventType::leftMouseUp}));
    EXPECT_EQ(eventsDuring([this] { mouse_.glideTo({500, 500}, 50); }), 0);
    recorder_.events.clear();
    mouse_.press();
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(types(), click);
}

TEST_F(EventTapX11, ReleaseSeenWhileOffTheLoopIsForgotten) {
    install();
    mouse_.press();
    adapters_.catchUp();
    adapters_.taps.removeSource(*source_);
    mouse_.release();
    adapters_.catchUp();
    adapters_.taps.addSource(*source_);
    mouse_.moveTo({300, 300});
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDown}));
}

TEST_F(EventTapX11, SourceMayBeTakenOffTheLoopFromWithinTheCallback) {
    install();
    mouse_.press();
    adapters_.catchUp();
    recorder_.events.clear();
    recorder_.onEvent = [this] { adapters_.taps.removeSource(*source_); };
    // The release is already there when the motion before it is delivered.
    mouse_.moveTo({300, 300});
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDragged}));
    EXPECT_EQ(eventsDuring([this] {
                  mouse_.press();
                  mouse_.glideTo({400, 400}, 20);
                  mouse_.release();
              }),
              0);
}

TEST_F(EventTapX11, FastClicksAreAllSeen) {
    install();
    for (int count = 0; count < 20; ++count) {
        mouse_.press();
        mouse_.release();
    }
    adapters_.catchUp();
    std::vector<EventType> expected;
    for (int count = 0; count < 20; ++count) {
        expected.insert(expected.end(), click.begin(), click.end());
    }
    EXPECT_EQ(types(), expected);
}

TEST_F(EventTapX11, WaylandSessionGrantsNoTap) {
    XEventTapPlatform guest(*adapters_.connection, adapters_.pump, adapters_.pointer, {.isWayland = true});
    EXPECT_FALSE(guest.preflightListenEventAccess());
    EXPECT_FALSE(guest.requestListenEventAccess());
    EXPECT_EQ(guest.createTap({}), nullptr);
}

TEST_F(EventTapX11, OldInputExtensionGrantsNoTap) {
    // A client that has asked for an older version is served that version from then on.
    const auto version = adapters_.connection->take(
        xcb_input_xi_query_version_reply, xcb_input_xi_query_version(adapters_.connection->get(), 2, 0));
    ASSERT_TRUE(version);
    EXPECT_FALSE(adapters_.taps.preflightListenEventAccess());
    EXPECT_EQ(adapters_.taps.createTap({}), nullptr);
}

TEST_F(EventTapX11, LostConnectionGrantsNoTapAndKeepsThePointersLastPlace) {
    EXPECT_EQ(adapters_.pointer.mouseLocation(), (Point{200.5, 1024 - 200.5}));
    xcb_connection_t* own = adapters_.connection->get();
    const xcb_window_t window = xcb_generate_id(own);
    xcb_create_window(own, XCB_COPY_FROM_PARENT, window, adapters_.connection->root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    adapters_.catchUp();
    mouse_.moveTo({300, 300});
    xcb_kill_client(other_.connection(), window);
    other_.sync();
    EXPECT_EQ(adapters_.pointer.mouseLocation(), (Point{200.5, 1024 - 200.5}));
    EXPECT_TRUE(adapters_.connection->isBroken());
    EXPECT_FALSE(adapters_.taps.preflightListenEventAccess());
    EXPECT_EQ(adapters_.taps.createTap({}), nullptr);
}

class SessionKindTest : public ::testing::Test {
protected:
    void SetUp() override {
        unsetenv(type);
        unsetenv(socket);
    }

    void TearDown() override {
        restore(type, typeBefore_);
        restore(socket, socketBefore_);
    }

    static constexpr const char* type = "XDG_SESSION_TYPE";
    static constexpr const char* socket = "WAYLAND_DISPLAY";

private:
    static std::optional<std::string> read(const char* name) {
        const char* value = getenv(name);
        return value == nullptr ? std::nullopt : std::optional<std::string>(value);
    }

    static void restore(const char* name, const std::optional<std::string>& value) {
        value ? setenv(name, value->c_str(), 1) : unsetenv(name);
    }

    std::optional<std::string> typeBefore_ = read(type);
    std::optional<std::string> socketBefore_ = read(socket);
};

TEST_F(SessionKindTest, PlainEnvironmentIsNoWaylandSession) {
    EXPECT_FALSE(SessionKind::fromEnvironment().isWayland);
    setenv(type, "x11", 1);
    setenv(socket, "", 1);
    EXPECT_FALSE(SessionKind::fromEnvironment().isWayland);
}

TEST_F(SessionKindTest, SessionTypeNamesAWaylandSession) {
    setenv(type, "wayland", 1);
    EXPECT_TRUE(SessionKind::fromEnvironment().isWayland);
}

TEST_F(SessionKindTest, WaylandSocketMakesAWaylandSession) {
    setenv(socket, "wayland-0", 1);
    EXPECT_TRUE(SessionKind::fromEnvironment().isWayland);
}

} // namespace

} // namespace tarvex::contract
