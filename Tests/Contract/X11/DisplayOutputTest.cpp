#include "Tests/Contract/X11/DisplayAdapters.h"
#include "Tests/Support/X11/Monitors.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>
#include <xcb/randr.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tarvex {
namespace {

const test::MonitorIdentity dell{0x10AC, 0xA0B1, 305419896, "Studio 27"};
const test::MonitorIdentity unnamed{0x4C2D, 0x0F0E, 0, ""};

// What the server's one output tells of the monitor at its other end.
class DisplayOutput : public ::testing::Test {
protected:
    DisplayOutput() {
        const auto reply = adapters_.connection->take(
            xcb_randr_get_screen_resources_current_reply,
            xcb_randr_get_screen_resources_current(adapters_.connection->get(), client_.root()));
        if (!reply || reply->num_outputs != 1 || reply->num_crtcs != 1) {
            throw std::runtime_error("the server is expected to have one output");
        }
        output_ = *xcb_randr_get_screen_resources_current_outputs(reply.get());
        crtc_ = *xcb_randr_get_screen_resources_current_crtcs(reply.get());
    }

    void setBytes(std::string_view property, const std::vector<std::uint8_t>& bytes) {
        xcb_randr_change_output_property(client_.connection(), output_, client_.atom(property),
                                         XCB_ATOM_INTEGER, 8, XCB_PROP_MODE_REPLACE,
                                         static_cast<std::uint32_t>(bytes.size()), bytes.data());
        catchUp();
    }

    void setWords(std::string_view property, xcb_atom_t type, const std::vector<std::uint32_t>& words) {
        xcb_randr_change_output_property(client_.connection(), output_, client_.atom(property), type, 32,
                                         XCB_PROP_MODE_REPLACE, static_cast<std::uint32_t>(words.size()),
                                         words.data());
        catchUp();
    }

    void removeProperty(std::string_view property) {
        xcb_randr_delete_output_property(client_.connection(), output_, client_.atom(property));
        catchUp();
    }

    void setIdentity(const test::MonitorIdentity& identity) {
        monitors_.setIdentity(identity);
        catchUp();
    }

    void catchUp() {
        client_.sync();
        adapters_.catchUp();
    }

    std::uint32_t number() { return adapters_.displays.activeDisplays(1).displays.at(0); }

    std::vector<std::uint32_t> identityNumbers() {
        XDisplayPlatform& displays = adapters_.displays;
        return {displays.vendorNumber(number()), displays.modelNumber(number()),
                displays.serialNumber(number())};
    }

    std::string name() { return adapters_.names().at(0); }

    bool isBuiltin() { return adapters_.displays.isBuiltin(number()); }

    test::XServer server_;
    test::Monitors monitors_{server_.displayName()};
    test::XClient client_{server_.displayName()};
    XDisplayAdapters adapters_{server_.displayName()};
    xcb_randr_output_t output_ = 0;
    xcb_randr_crtc_t crtc_ = 0;
    const std::vector<std::uint32_t> nothing_{0, 0, 0};
};

TEST_F(DisplayOutput, WithoutIdentificationDataNumbersAreZeroAndTheOutputGivesTheName) {
    EXPECT_EQ(identityNumbers(), nothing_);
    EXPECT_EQ(name(), monitors_.names().at(0));
    EXPECT_FALSE(isBuiltin());
}

TEST_F(DisplayOutput, IdentificationDataGivesNumbersAndName) {
    setIdentity(dell);
    EXPECT_EQ(identityNumbers(), (std::vector<std::uint32_t>{0x10AC, 0xA0B1, 305419896}));
    EXPECT_EQ(name(), "Studio 27");
}

TEST_F(DisplayOutput, OtherMonitorAtTheSameOutputIsSeen) {
    setIdentity(dell);
    ASSERT_EQ(name(), "Studio 27");
    setIdentity(unnamed);
    EXPECT_EQ(identityNumbers(), (std::vector<std::uint32_t>{0x4C2D, 0x0F0E, 0}));
    EXPECT_EQ(name(), monitors_.names().at(0));
    removeProperty("EDID");
    EXPECT_EQ(identityNumbers(), nothing_);
}

TEST_F(DisplayOutput, BrokenIdentificationDataCountsAsNone) {
    const std::vector<std::uint8_t> block = test::edidBlock(dell);
    setBytes("EDID", {block.begin(), block.begin() + 100});
    EXPECT_EQ(identityNumbers(), nothing_);
    setBytes("EDID", std::vector<std::uint8_t>(128, 0xFF));
    EXPECT_EQ(identityNumbers(), nothing_);
    setBytes("EDID", {});
    EXPECT_EQ(identityNumbers(), nothing_);
    EXPECT_EQ(name(), monitors_.names().at(0));
}

TEST_F(DisplayOutput, IdentificationDataWithExtensionsIsRead) {
    std::vector<std::uint8_t> blocks = test::edidBlock(dell);
    blocks.resize(512, 0xAA);
    setBytes("EDID", blocks);
    EXPECT_EQ(identityNumbers(), (std::vector<std::uint32_t>{0x10AC, 0xA0B1, 305419896}));
}

TEST_F(DisplayOutput, IdentificationDataInWordsIsNone) {
    setWords("EDID", XCB_ATOM_INTEGER, std::vector<std::uint32_t>(128, 0));
    EXPECT_EQ(identityNumbers(), nothing_);
}

TEST_F(DisplayOutput, VirtualMonitorWithTheOutputHasItsIdentityAndOthersHaveNone) {
    setIdentity(dell);
    monitors_.set({{"Plain", {0, 0, 500, 400}, true, false}, {"Driven", {500, 0, 600, 400}, false, true}});
    catchUp();
    EXPECT_EQ(adapters_.names(), (std::vector<std::string>{"Plain", "Studio 27"}));
    EXPECT_EQ(identityNumbers(), nothing_);
    removeProperty("EDID");
    EXPECT_EQ(adapters_.names().at(0), "Plain");
    EXPECT_NE(adapters_.names().at(1), "Driven");
}

TEST_F(DisplayOutput, PanelConnectorMakesADisplayBuiltin) {
    setWords("ConnectorType", XCB_ATOM_ATOM, {client_.atom("Panel")});
    EXPECT_TRUE(isBuiltin());
    setWords("ConnectorType", XCB_ATOM_ATOM, {client_.atom("DisplayPort")});
    EXPECT_FALSE(isBuiltin());
    setWords("ConnectorType", XCB_ATOM_ATOM, {});
    EXPECT_FALSE(isBuiltin());
}

TEST_F(DisplayOutput, DriversNamesOfPanelConnectorsAreKnown) {
    for (const char* name : {"eDP", "eDP-1", "eDP-1-1", "LVDS1", "LVDS-0", "DSI-1", "Embedded-1"}) {
        EXPECT_TRUE(isPanelConnectorName(name)) << name;
    }
    for (const char* name :
         {"", "DP-1", "DP-eDP", "HDMI-A-1", "DVI-D-0", "VGA-1", "e", "screen", "Virtual-1"}) {
        EXPECT_FALSE(isPanelConnectorName(name)) << name;
    }
}

TEST_F(DisplayOutput, OtherPropertiesOfTheOutputCostNothing) {
    setIdentity(dell);
    ASSERT_EQ(name(), "Studio 27");
    for (std::uint32_t level = 0; level < 100; ++level) {
        setWords("Backlight", XCB_ATOM_INTEGER, {level});
    }
    EXPECT_EQ(adapters_.requestsDuring([&] { EXPECT_EQ(name(), "Studio 27"); }), 0U);
}

TEST_F(DisplayOutput, WithTheOutputOffThereIsNoDisplay) {
    ASSERT_EQ(adapters_.frames().size(), 1U);
    const auto resources = adapters_.connection->take(
        xcb_randr_get_screen_resources_current_reply,
        xcb_randr_get_screen_resources_current(adapters_.connection->get(), client_.root()));
    ASSERT_TRUE(resources);
    const auto reply = adapters_.connection->take(
        xcb_randr_set_crtc_config_reply,
        xcb_randr_set_crtc_config(adapters_.connection->get(), crtc_, XCB_CURRENT_TIME,
                                  resources->config_timestamp, 0, 0, XCB_NONE, XCB_RANDR_ROTATION_ROTATE_0, 0,
                                  nullptr));
    ASSERT_TRUE(reply && reply->status == XCB_RANDR_SET_CONFIG_SUCCESS);
    catchUp();
    const ActiveDisplayList list = adapters_.displays.activeDisplays(5);
    EXPECT_EQ(list.error, 0);
    EXPECT_EQ(list.count, 0U);
    EXPECT_TRUE(adapters_.screens.screens().empty());
    EXPECT_FALSE(adapters_.screens.mainScreen().has_value());
    EXPECT_EQ(adapters_.monitors.layout(), (DesktopLayout{0, 1024, 0}));
    monitors_.set({{"Back", {0, 0, 640, 480}, true}});
    catchUp();
    EXPECT_EQ(adapters_.names(), std::vector<std::string>{"Back"});
}

} // namespace
} // namespace tarvex
