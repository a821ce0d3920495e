#include "Tests/Contract/X11/EventTapFixture.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
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

    /// The first button of one device.
    void fakeOn(std::uint8_t device, bool isPress) {
        const auto* input = xcb_get_extension_data(other_.connection(), &xcb_input_id);
        const int type =
            input->first_event + (isPress ? XCB_INPUT_DEVICE_BUTTON_PRESS : XCB_INPUT_DEVICE_BUTTON_RELEASE);
        const test::Owned<xcb_generic_error_t> error(xcb_request_check(
            other_.connection(),
            xcb_test_fake_input_checked(other_.connection(), static_cast<std::uint8_t>(type), 1,
                                        XCB_CURRENT_TIME, XCB_NONE, 0, 0, device)));
        ASSERT_EQ(error, nullptr) << "error " << int{error->error_code};
        other_.sync();
        adapters_.catchUp();
    }

    /// The number of the device of that name; 0 for none.
    [[nodiscard]] std::uint8_t deviceCalled(std::string_view name) {
        const test::Owned<xcb_input_xi_query_device_reply_t> devices(xcb_input_xi_query_device_reply(
            other_.connection(), xcb_input_xi_query_device(other_.connection(), XCB_INPUT_DEVICE_ALL),
            nullptr));
        if (!devices) {
            return 0;
        }
        for (auto each = xcb_input_xi_query_device_infos_iterator(devices.get()); each.rem > 0;
             xcb_input_xi_device_info_next(&each)) {
            const std::string_view found(
                xcb_input_xi_device_info_name(each.data),
                static_cast<std::size_t>(xcb_input_xi_device_info_name_length(each.data)));
            if (found == name) {
                return static_cast<std::uint8_t>(each.data->deviceid);
            }
        }
        return 0;
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
    void pressMouse() { fakeOn(mouseDevice, true); }

    void releaseMouse() { fakeOn(mouseDevice, false); }

    void press() {
        mouse_.press();
        adapters_.catchUp();
    }

    void release() {
        mouse_.release();
        adapters_.catchUp();
    }

    void moveTo(test::PixelPoint point) {
        mouse_.moveTo(point);
        adapters_.catchUp();
    }
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
    EXPECT_EQ(types(), drag);
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

TEST_F(EventTapTwoDevicesX11, MissedReleaseOfTheOtherDeviceDoesNotLengthenTheDrag) {
    install();
    pressMouse();
    press();
    EXPECT_EQ(eventsDuring([this] { mouse_.release(); }), 1); // and lost
    releaseMouse();
    EXPECT_EQ(types(), click);
}

TEST_F(EventTapTwoDevicesX11, OtherDeviceMayClickAgainAndAgainDuringTheDrag) {
    install();
    pressMouse();
    for (int count = 0; count < 3; ++count) {
        press();
        release();
    }
    moveTo({300, 300});
    releaseMouse();
    EXPECT_EQ(types(), drag);
    EXPECT_TRUE(seesClickOf(1));
}

TEST_F(EventTapTwoDevicesX11, DragGoesOnWhenTheDeviceThatBeganItLetsGoFirst) {
    install();
    press();
    pressMouse();
    release();
    EXPECT_EQ(types(), std::vector<EventType>{EventType::leftMouseDown});
    moveTo({300, 300});
    releaseMouse();
    EXPECT_EQ(types(), drag);
}

TEST_F(EventTapTwoDevicesX11, DragBeginsAnewWithADeviceThatLetGoWhileTheOtherHeldOn) {
    install();
    pressMouse();
    press();
    releaseMouse();
    ASSERT_EQ(types(), click);
    recorder_.events.clear();
    pressMouse();
    moveTo({300, 300});
    releaseMouse();
    EXPECT_EQ(types(), drag);
}

// Who held the button at the start is not known, so that its release cannot be told from that of others.
TEST_F(EventTapTwoDevicesX11, DragEndsWithTheDeviceThatBeganItWhenTheButtonWasDownBefore) {
    pressMouse();
    install();
    press();
    moveTo({300, 300});
    release();
    EXPECT_EQ(types(), drag);
    EXPECT_EQ(eventsDuring([this] { mouse_.glideTo({500, 500}, 20); }), 0);
    releaseMouse();
    EXPECT_EQ(types(), drag);
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
    EXPECT_EQ(types(), drag);
    EXPECT_EQ(recorder_.places.back(), (Point{300.5, 1024 - 300.5}));
}

TEST_F(EventTapDevicesX11, MissedReleaseIsMadeUpForWhenDevicesCome) {
    install();
    mouse_.press();
    adapters_.catchUp();
    EXPECT_EQ(eventsDuring([this] { mouse_.release(); }), 1); // and lost
    addMaster();
    adapters_.catchUp();
    EXPECT_EQ(types(), click);
    EXPECT_EQ(eventsDuring([this] { mouse_.glideTo({500, 500}, 20); }), 0);
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

TEST_F(EventTapDevicesX11, DevicesThatComeWhileNoButtonIsDownAreNoReasonToListenToMotion) {
    install();
    addMaster();
    adapters_.awaitServer();
    EXPECT_EQ(adapters_.requestsDuring([this] { adapters_.pump.processPending(); }), 0U);
    EXPECT_EQ(eventsDuring([this] { mouse_.glideTo({500, 500}, 20); }), 0);
    EXPECT_TRUE(seesClickOf(1));
    addMaster();
    adapters_.catchUp();
    EXPECT_EQ(eventsDuring([this] { mouse_.glideTo({200, 200}, 20); }), 0);
}

TEST_F(EventTapDevicesX11, DroppedTapDoesNotHearOfDevices) {
    install();
    adapters_.taps.removeSource(*source_);
    EXPECT_EQ(eventsDuring([this] { addMaster(); }), 0);
    adapters_.taps.addSource(*source_);
    adapters_.catchUp();
    EXPECT_GT(eventsDuring([this] { addMaster(); }), 0);
    source_.reset();
    tap_.reset();
    EXPECT_EQ(eventsDuring([this] { addMaster(); }), 0);
}

/// A second pointer, whose press and release are seen, while the server is asked about the first one.
class EventTapTwoPointersX11 : public EventTapDevicesX11 {
protected:
    void SetUp() override {
        addMaster();
        second_ = deviceCalled("seat XTEST pointer");
        ASSERT_NE(second_, 0);
        install();
        fakeOn(second_, true);
    }

    void moveTo(test::PixelPoint point) {
        mouse_.moveTo(point);
        adapters_.catchUp();
    }

    std::uint8_t second_ = 0;
};

TEST_F(EventTapTwoPointersX11, DragOfTheSecondDoesNotEndBecauseTheFirstHoldsNoButton) {
    moveTo({300, 300});
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDown, EventType::leftMouseDragged}));
    fakeOn(second_, false);
    EXPECT_EQ(types(), drag);
}

TEST_F(EventTapTwoPointersX11, MissedReleaseOfTheFirstIsMadeUpForAtTheNextMotion) {
    mouse_.press();
    moveTo({300, 300});
    EXPECT_EQ(eventsDuring([this] { mouse_.release(); }), 1); // and lost
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDown, EventType::leftMouseDragged}));
    moveTo({400, 400});
    EXPECT_EQ(recorder_.events.back().type, EventType::leftMouseUp);
}

} // namespace

} // namespace tarvex::contract
