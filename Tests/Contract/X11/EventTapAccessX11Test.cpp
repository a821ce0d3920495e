#include "Tests/Contract/X11/EventTapFixture.h"

#include <xcb/xinput.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace tarvex::contract {

namespace {

class EventTapAccessX11 : public EventTapTest {};

TEST_F(EventTapAccessX11, WaylandSessionGrantsNoTap) {
    XEventTapPlatform guest(*adapters_.connection, adapters_.pump, adapters_.pointer, {.isWayland = true});
    EXPECT_FALSE(guest.preflightListenEventAccess());
    EXPECT_FALSE(guest.requestListenEventAccess());
    EXPECT_EQ(guest.createTap({}), nullptr);
}

TEST_F(EventTapAccessX11, OldInputExtensionGrantsNoTap) {
    // A client that has asked for an older version is served that version from then on.
    const auto version = adapters_.connection->take(
        xcb_input_xi_query_version_reply, xcb_input_xi_query_version(adapters_.connection->get(), 2, 0));
    ASSERT_TRUE(version);
    EXPECT_FALSE(adapters_.taps.preflightListenEventAccess());
    EXPECT_EQ(adapters_.taps.createTap({}), nullptr);
}

TEST_F(EventTapAccessX11, LostConnectionGrantsNoTapAndKeepsThePointersLastPlace) {
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
