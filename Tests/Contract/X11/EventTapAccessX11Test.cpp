#include "Tests/Contract/X11/EventTapFixture.h"

#include <xcb/xinput.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tarvex::contract {

namespace {

class EventTapAccessX11 : public EventTapTest {
protected:
    /// Adds a pointer of that name, and its keyboard.
    void addDevices(std::string_view name) {
        constexpr std::size_t nameSize = 16;
        ASSERT_EQ(name.size(), nameSize);

        struct {
            xcb_input_add_master_t head;
            std::array<char, nameSize> name;
        } change{{XCB_INPUT_HIERARCHY_CHANGE_TYPE_ADD_MASTER, sizeof(change) / 4, nameSize, 1, 1}, {}};

        name.copy(change.name.data(), nameSize);
        changeDevices(&change.head);
    }

    /// Takes its input from the server: its mouse and its keyboard move no pointer and type into nothing.
    void detachHardware() {
        for (const std::uint16_t device : {mouseDevice_, keyboardDevice_}) {
            struct {
                xcb_input_detach_slave_t head;
            } const change{{XCB_INPUT_HIERARCHY_CHANGE_TYPE_DETACH_SLAVE, sizeof(change) / 4, device, {}}};

            changeDevices(&change.head);
        }
    }

    void attachMouse() {
        constexpr std::uint16_t masterPointer = 2;

        struct {
            xcb_input_attach_slave_t head;
        } const change{
            {XCB_INPUT_HIERARCHY_CHANGE_TYPE_ATTACH_SLAVE, sizeof(change) / 4, mouseDevice_, masterPointer}};

        changeDevices(&change.head);
    }

    [[nodiscard]] std::unique_ptr<XEventTapPlatform> platformOf(SessionKind session) {
        return std::make_unique<XEventTapPlatform>(*adapters_.connection, adapters_.pump, adapters_.pointer,
                                                   session);
    }

    static constexpr std::uint16_t mouseDevice_ = 6;
    static constexpr std::uint16_t keyboardDevice_ = 7;
    static constexpr SessionKind plain_{};
    static constexpr SessionKind wayland_{.isWayland = true};

private:
    void changeDevices(const void* change) {
        // Its first request must tell the server which version it speaks.
        xcb_input_xi_query_version(other_.connection(), 2, 2);
        const test::Owned<xcb_generic_error_t> error(xcb_request_check(
            other_.connection(),
            xcb_input_xi_change_hierarchy_checked(other_.connection(), 1,
                                                  static_cast<const xcb_input_hierarchy_change_t*>(change))));
        ASSERT_EQ(error, nullptr) << "error " << int{error->error_code};
    }
};

TEST_F(EventTapAccessX11, GuestOfAWaylandCompositorGrantsNoTap) {
    addDevices("xwayland-pointer");
    for (const SessionKind& session : {plain_, wayland_}) {
        const auto guest = platformOf(session);
        EXPECT_FALSE(guest->preflightListenEventAccess());
        EXPECT_FALSE(guest->requestListenEventAccess());
        EXPECT_EQ(guest->createTap({}), nullptr);
    }
}

TEST_F(EventTapAccessX11, ServerWithDevicesOfItsOwnIsNoGuestWhateverTheSessionIsSaidToBe) {
    addDevices("pointer-xwayland");
    const auto nested = platformOf(wayland_);
    EXPECT_TRUE(nested->preflightListenEventAccess());
    EXPECT_TRUE(nested->requestListenEventAccess());
    EXPECT_NE(nested->createTap({}), nullptr);
}

TEST_F(EventTapAccessX11, ServerWithoutDevicesIsWhatTheSessionIsSaidToBe) {
    detachHardware();
    const auto unknown = platformOf(wayland_);
    EXPECT_FALSE(unknown->preflightListenEventAccess());
    EXPECT_EQ(unknown->createTap({}), nullptr);
    EXPECT_TRUE(platformOf(plain_)->preflightListenEventAccess());
}

TEST_F(EventTapAccessX11, DevicesMayComeLater) {
    detachHardware();
    const auto early = platformOf(wayland_);
    ASSERT_FALSE(early->preflightListenEventAccess());
    attachMouse();
    EXPECT_TRUE(early->preflightListenEventAccess());
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
