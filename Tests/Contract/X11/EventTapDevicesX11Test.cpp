#include "Tests/Contract/X11/EventTapFixture.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <array>
#include <cstdint>
#include <vector>

namespace tarvex::contract {

namespace {

constexpr std::uint8_t synthesisingDevice = 4; // the server's own device for synthesised input
constexpr std::uint8_t mouseDevice = 6;        // its only mouse

class EventTapDevicesX11 : public EventTapTest {
protected:
    void swapButtonsOfTheDevice() {
        const std::array<std::uint8_t, 10> leftHanded{3, 2, 1, 4, 5, 6, 7, 8, 9, 10};
        const test::Owned<xcb_input_set_device_button_mapping_reply_t> reply(
            xcb_input_set_device_button_mapping_reply(
                other_.connection(),
                xcb_input_set_device_button_mapping(other_.connection(), synthesisingDevice,
                                                    leftHanded.size(), leftHanded.data()),
                nullptr));
        ASSERT_NE(reply, nullptr);
        ASSERT_EQ(reply->status, XCB_MAPPING_STATUS_SUCCESS);
    }

    /// A second pointer with its keyboard, as when somebody sets up a seat of his own.
    void addMaster() {
        struct {
            xcb_input_add_master_t head;
            std::array<char, 4> name;
        } const change{{XCB_INPUT_HIERARCHY_CHANGE_TYPE_ADD_MASTER, sizeof(change) / 4, 4, 1, 1},
                       {'s', 'e', 'a', 't'}};

        changeHierarchy(reinterpret_cast<const xcb_input_hierarchy_change_t&>(change));
    }

    void changeHierarchy(const xcb_input_hierarchy_change_t& change) {
        // Its first request must tell the server which version it speaks.
        xcb_input_xi_query_version(other_.connection(), 2, 2);
        const test::Owned<xcb_generic_error_t> error(xcb_request_check(
            other_.connection(), xcb_input_xi_change_hierarchy_checked(other_.connection(), 1, &change)));
        ASSERT_EQ(error, nullptr) << "error " << int{error->error_code};
    }

    [[nodiscard]] bool seesClickOf(std::uint8_t button) {
        recorder_.events.clear();
        mouse_.press(button);
        mouse_.release(button);
        adapters_.catchUp();
        return types() == click;
    }
};

/// Beside the synthesising device, the server's mouse moves the same pointer.
class EventTapTwoDevicesX11 : public EventTapDevicesX11 {
protected:
    void fakeOnMouse(bool isPress) {
        const auto* input = xcb_get_extension_data(other_.connection(), &xcb_input_id);
        const int type =
            input->first_event + (isPress ? XCB_INPUT_DEVICE_BUTTON_PRESS : XCB_INPUT_DEVICE_BUTTON_RELEASE);
        const test::Owned<xcb_generic_error_t> error(xcb_request_check(
            other_.connection(),
            xcb_test_fake_input_checked(other_.connection(), static_cast<std::uint8_t>(type), 1,
                                        XCB_CURRENT_TIME, XCB_NONE, 0, 0, mouseDevice)));
        ASSERT_EQ(error, nullptr) << "error " << int{error->error_code};
        other_.sync();
        adapters_.catchUp();
    }

    void pressMouse() { fakeOnMouse(true); }

    void releaseMouse() { fakeOnMouse(false); }
};

TEST_F(EventTapTwoDevicesX11, ClickOfAnotherDeviceDoesNotEndTheDrag) {
    install();
    pressMouse();
    mouse_.press();
    adapters_.catchUp();
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(types(), std::vector<EventType>{EventType::leftMouseDown});
    mouse_.moveTo({300, 300});
    adapters_.catchUp();
    releaseMouse();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDown, EventType::leftMouseDragged,
                                               EventType::leftMouseUp}));
}

// For the server, a button that only the synthesising device holds is up.
TEST_F(EventTapTwoDevicesX11, DragEndsWhenTheServerSaysThatTheButtonIsUp) {
    install();
    pressMouse();
    mouse_.press();
    adapters_.catchUp();
    releaseMouse();
    EXPECT_EQ(types(), click);
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(types(), click);
    EXPECT_TRUE(seesClickOf(1));
}

TEST_F(EventTapTwoDevicesX11, DeviceThatGoesWithItsButtonDownEndsTheDrag) {
    install();
    pressMouse();

    const xcb_input_detach_slave_t change{
        XCB_INPUT_HIERARCHY_CHANGE_TYPE_DETACH_SLAVE, sizeof(change) / 4, mouseDevice, {}};
    changeHierarchy(reinterpret_cast<const xcb_input_hierarchy_change_t&>(change));
    adapters_.catchUp();
    EXPECT_EQ(types(), click);
    EXPECT_TRUE(seesClickOf(1));
}

TEST_F(EventTapDevicesX11, LeftHandedPointerPressesWithTheRightButton) {
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

TEST_F(EventTapDevicesX11, PointerMayBecomeLeftHandedAndRightHandedAgain) {
    install();
    EXPECT_TRUE(seesClickOf(1));
    mouse_.setMapping({3, 2, 1});
    EXPECT_TRUE(seesClickOf(3));
    EXPECT_FALSE(seesClickOf(1));
    mouse_.setMapping({1, 2, 3});
    EXPECT_FALSE(seesClickOf(3));
    EXPECT_TRUE(seesClickOf(1));
}

TEST_F(EventTapDevicesX11, OneDeviceMayBeLeftHanded) {
    install();
    swapButtonsOfTheDevice();
    mouse_.press(1);
    mouse_.release(1);
    adapters_.catchUp();
    EXPECT_TRUE(recorder_.events.empty());
    mouse_.press(3);
    mouse_.release(3);
    adapters_.catchUp();
    EXPECT_EQ(types(), click);
}

TEST_F(EventTapDevicesX11, DevicesThatComeDuringTheDragDoNotDisturbIt) {
    install();
    mouse_.press();
    adapters_.catchUp();
    addMaster();
    adapters_.catchUp();
    mouse_.moveTo({300, 300});
    adapters_.catchUp();
    addMaster();
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDown, EventType::leftMouseDragged,
                                               EventType::leftMouseUp}));
    EXPECT_EQ(recorder_.places.back(), (Point{300.5, 1024 - 300.5}));
}

TEST_F(EventTapDevicesX11, ButtonsOfDevicesAreLookedUpAnewWhenDevicesCome) {
    install();
    EXPECT_TRUE(seesClickOf(1));
    swapButtonsOfTheDevice();
    addMaster();
    adapters_.catchUp();
    EXPECT_FALSE(seesClickOf(1));
    EXPECT_TRUE(seesClickOf(3));
}

/// A server with a second screen beside the one that the tap serves.
class EventTapScreensX11 : public EventTapTest {
protected:
    EventTapScreensX11() : EventTapTest(2) {}

    /// Synthesised motion alone does not take the pointer from one screen to another.
    void goElsewhere() {
        test::XClient client(server_.displayName() + ".1");
        xcb_warp_pointer(client.connection(), XCB_NONE, client.root(), 0, 0, 0, 0, 400, 400);
        client.sync();
        adapters_.pointer.refresh();
        ASSERT_FALSE(adapters_.pointer.snapshot().isOnScreen);
    }

    test::Pointer elsewhere_{server_.displayName() + ".1"};
};

TEST_F(EventTapScreensX11, PressOnAnotherScreenIsNone) {
    install();
    goElsewhere();
    elsewhere_.press();
    adapters_.catchUp();
    EXPECT_EQ(eventsDuring([this] { elsewhere_.glideTo({600, 600}, 20); }), 0);
    elsewhere_.release();
    adapters_.catchUp();
    EXPECT_TRUE(recorder_.events.empty());

    xcb_warp_pointer(other_.connection(), XCB_NONE, other_.root(), 0, 0, 0, 0, 300, 320);
    other_.sync();
    mouse_.press();
    adapters_.catchUp();
    mouse_.moveTo({500, 520});
    adapters_.catchUp();
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDown, EventType::leftMouseDragged,
                                               EventType::leftMouseUp}));
    EXPECT_EQ(recorder_.places.front(), (Point{300.5, 1024 - 320.5}));
    EXPECT_EQ(recorder_.places.back(), (Point{500.5, 1024 - 520.5}));
}

} // namespace

} // namespace tarvex::contract
