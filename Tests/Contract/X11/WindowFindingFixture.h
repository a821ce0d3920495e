#pragma once

#include "Tests/Contract/X11/InputAdapters.h"
#include "Tests/Support/X11/XClient.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace tarvex::contract {

using test::PixelPoint;
using test::PixelRect;

inline constexpr PixelRect home{200, 150, 400, 300};

/// Makes windows as a program would, one below the other, without more ado.
class Tree {
public:
    explicit Tree(xcb_connection_t* connection) : connection_(connection) {}

    xcb_window_t add(xcb_window_t parent, const PixelRect& frame, bool isOverrideRedirect = false,
                     int border = 0) {
        const xcb_window_t window = xcb_generate_id(connection_);
        const std::uint32_t overrideRedirect = isOverrideRedirect ? 1 : 0;
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, parent,
                          static_cast<std::int16_t>(frame.x), static_cast<std::int16_t>(frame.y),
                          static_cast<std::uint16_t>(frame.width), static_cast<std::uint16_t>(frame.height),
                          static_cast<std::uint16_t>(border), XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &overrideRedirect);
        xcb_map_window(connection_, window);
        return window;
    }

private:
    xcb_connection_t* connection_;
};

/// A server whose window manager, if there is one, is played by the test.
class WindowFindingTest : public ::testing::Test {
protected:
    void setManaged(xcb_window_t window, std::uint32_t state = 1) {
        other_.setWords(window, "WM_STATE", "WM_STATE", {state, XCB_NONE});
        other_.sync();
    }

    /// The frame is the only thing that tells windows apart from outside.
    void expectFound(PixelPoint point, const PixelRect& frame) {
        const AccessibilityElementRef found = adapters_.windowAt(point);
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(adapters_.frameOf(found), frame);
    }

    test::XServer server_;
    test::XClient other_{server_.displayName()};
    Tree tree_{other_.connection()};
    XInputAdapters adapters_{server_.displayName()};
};

} // namespace tarvex::contract
