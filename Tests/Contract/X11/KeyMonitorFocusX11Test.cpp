#include "Tests/Contract/X11/KeyMonitorFixture.h"

#include <memory>

namespace tarvex::contract {

namespace {

constexpr std::uint16_t keyE = 14;
constexpr std::uint16_t keyR = 15;
constexpr std::uint32_t command = modifier_mask::command;

class KeyMonitorFocusX11 : public KeyMonitorTest {};

TEST_F(KeyMonitorFocusX11, KeyboardGoesWithTheFocusAndComesBackWithIt) {
    install();
    KeyCountingWindow other(desktop_.server.displayName());
    desktop_.settle();
    EXPECT_TRUE(desktop_.isKeyboardFree());
    type(keyE);
    EXPECT_TRUE(keys_.empty());
    EXPECT_EQ(other.count(), 1);
    desktop_.focus(window_.id());
    desktop_.settle();
    EXPECT_FALSE(desktop_.isKeyboardFree());
    type(keyE);
    EXPECT_EQ(keys_, Keys{keyE});
}

TEST_F(KeyMonitorFocusX11, KeyboardIsFreeWhenTheWindowIsHiddenOrClosed) {
    install();
    window_.hide();
    desktop_.settle();
    EXPECT_TRUE(desktop_.isKeyboardFree());
    ASSERT_TRUE(desktop_.showAndFocus(window_));
    desktop_.settle();
    EXPECT_FALSE(desktop_.isKeyboardFree());
    window_.close();
    desktop_.settle();
    EXPECT_TRUE(desktop_.isKeyboardFree());
    monitor_.reset();
}

TEST_F(KeyMonitorFocusX11, KeyboardIsFreeWhenTheWindowIsDestroyed) {
    auto second = std::make_unique<KeyWidget>();
    ASSERT_TRUE(desktop_.showAndFocus(*second));
    install();
    desktop_.settle();
    ASSERT_FALSE(desktop_.isKeyboardFree());
    second.reset();
    desktop_.settle();
    EXPECT_TRUE(desktop_.isKeyboardFree());
}

TEST_F(KeyMonitorFocusX11, KeyboardGoesAlongToAnotherWindowOfTheProgram) {
    install();
    KeyWidget second;
    ASSERT_TRUE(desktop_.showAndFocus(second));
    desktop_.settle();
    EXPECT_FALSE(desktop_.isKeyboardFree());
    GrabbingClient other(desktop_.server.displayName());
    ASSERT_TRUE(other.grab(XCB_MOD_MASK_4, x_key::letterE));
    type(keyE, command);
    EXPECT_EQ(keys_, Keys{keyE});
}

TEST_F(KeyMonitorFocusX11, KeyboardHeldByAnotherClientIsTakenWhenHeLetsGo) {
    GrabbingClient other(desktop_.server.displayName());
    ASSERT_TRUE(other.grab(XCB_MOD_MASK_4, x_key::letterE));
    ASSERT_TRUE(desktop_.holdKeyboard());
    desktop_.settle();
    install();
    desktop_.settle();
    type(keyR);
    EXPECT_TRUE(keys_.empty());
    desktop_.letKeyboardGo();
    desktop_.settle();
    EXPECT_FALSE(desktop_.isKeyboardFree());
    type(keyE, command);
    EXPECT_EQ(keys_, Keys{keyE});
}

TEST_F(KeyMonitorFocusX11, MonitorWithoutAWindowWaitsForOne) {
    window_.hide();
    desktop_.settle();
    install();
    EXPECT_TRUE(desktop_.isKeyboardFree());
    ASSERT_TRUE(desktop_.showAndFocus(window_));
    desktop_.settle();
    EXPECT_FALSE(desktop_.isKeyboardFree());
}

TEST_F(KeyMonitorFocusX11, ReleaseAfterTheFocusWentIsNotWaitedFor) {
    install();
    onKey_ = [this] { monitor_.reset(); };
    keyboard().pressKey(x_key::letterE);
    desktop_.settle();
    ASSERT_EQ(keys_, Keys{keyE});
    KeyCountingWindow other(desktop_.server.displayName());
    desktop_.settle();
    EXPECT_TRUE(desktop_.isKeyboardFree());
    keyboard().releaseKey(x_key::letterE);
    desktop_.focus(window_.id());
    desktop_.settle();
    type(keyE);
    EXPECT_EQ(window_.presses, Codes{x_key::letterE});
}

} // namespace

} // namespace tarvex::contract
