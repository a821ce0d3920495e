#include "Tests/Contract/X11/WindowFindingFixture.h"
#include "Tests/Support/X11/ManagedWindow.h"
#include "Tests/Support/X11/TestWindow.h"
#include "Tests/Support/X11/WindowManager.h"
#include "Tests/Support/X11/XClient.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>
#include <xcb/shape.h>

#include <memory>
#include <optional>

namespace tarvex::contract {

namespace {

/// A managed window, and windows that nobody sees above it.
class WindowShield : public ::testing::Test {
protected:
    static constexpr PixelRect screen_{0, 0, 1280, 1024};

    /// Lays an unmanaged window above all others.
    xcb_window_t lay(const PixelRect& frame, xcb_window_class_t windowClass) {
        const xcb_window_t window = xcb_generate_id(client_.connection());
        const std::uint32_t overrideRedirect = 1;
        xcb_create_window(client_.connection(), XCB_COPY_FROM_PARENT, window, client_.root(),
                          static_cast<std::int16_t>(frame.x), static_cast<std::int16_t>(frame.y),
                          static_cast<std::uint16_t>(frame.width), static_cast<std::uint16_t>(frame.height),
                          0, static_cast<std::uint16_t>(windowClass), XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT, &overrideRedirect);
        xcb_map_window(client_.connection(), window);
        client_.sync();
        return window;
    }

    std::unique_ptr<test::TestWindow> makeSmallOneAbove() {
        test::TestWindowOptions options;
        options.geometry = {frame_.x, frame_.y, 150, 120};
        auto window = std::make_unique<test::TestWindow>(server_.displayName(), options);
        manager_.barrier();
        return window;
    }

    void letPointerThrough(xcb_window_t window) {
        xcb_shape_rectangles(client_.connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                             XCB_CLIP_ORDERING_UNSORTED, window, 0, 0, 0, nullptr);
        client_.sync();
    }

    /// The visible frame of what a press there takes hold of; none for no window.
    std::optional<PixelRect> frameAt(PixelPoint point) {
        const AccessibilityElementRef found = adapters_.windowAt(point);
        return found ? std::optional(adapters_.frameOf(found)) : std::nullopt;
    }

    test::XServer server_{screen_.width, screen_.height};
    test::WindowManager manager_{server_, test::WindowManagerKind::openbox};
    test::XClient client_{server_.displayName()};
    XInputAdapters adapters_{server_.displayName()};
    test::TestWindow window_{server_.displayName()};
    PixelRect frame_ = window_.managed().requireVisibleFrame();
    PixelPoint titleBar_ = window_.managed().titleBarPoint();
};

TEST_F(WindowShield, OverTheWholeScreenIsPassedOver) {
    lay(screen_, XCB_WINDOW_CLASS_INPUT_ONLY);
    EXPECT_EQ(frameAt(titleBar_), frame_);
    EXPECT_EQ(frameAt({frame_.x - 1, titleBar_.y}), std::nullopt);
}

TEST_F(WindowShield, ShowsTheTopmostOfTheWindowsBelow) {
    const auto above = makeSmallOneAbove();
    const PixelRect upper = above->managed().requireVisibleFrame();
    lay(screen_, XCB_WINDOW_CLASS_INPUT_ONLY);
    EXPECT_EQ(frameAt(above->managed().titleBarPoint()), upper);
    EXPECT_EQ(frameAt({upper.x + upper.width + 20, titleBar_.y}), frame_);
}

TEST_F(WindowShield, LooksThroughWindowsThatAreOutOfSight) {
    const auto above = makeSmallOneAbove();
    const PixelPoint titleBar = above->managed().titleBarPoint();
    lay(screen_, XCB_WINDOW_CLASS_INPUT_ONLY);
    // As they are under a window manager that leaves them mapped.
    constexpr std::uint32_t iconic = 3;
    client_.setWords(above->id(), "WM_STATE", "WM_STATE", {iconic, XCB_NONE});
    client_.sync();
    EXPECT_EQ(frameAt(titleBar), frame_);
    client_.setWords(window_.id(), "WM_STATE", "WM_STATE", {iconic, XCB_NONE});
    client_.sync();
    EXPECT_EQ(frameAt(titleBar), std::nullopt);
}

TEST_F(WindowShield, FrameWithOneWindowInSightIsInSight) {
    test::XClient program(server_.displayName());
    const xcb_window_t frame = lay({700, 300, 300, 200}, XCB_WINDOW_CLASS_INPUT_OUTPUT);
    constexpr std::uint32_t normal = 1;
    constexpr std::uint32_t iconic = 3;
    for (const std::uint32_t state : {iconic, normal, iconic}) {
        const xcb_window_t tab = Tree(program.connection()).add(frame, {0, 20, 300, 180});
        program.sync();
        client_.setWords(tab, "WM_STATE", "WM_STATE", {state, XCB_NONE});
        if (state == iconic) {
            xcb_unmap_window(client_.connection(), tab);
        }
    }
    lay(screen_, XCB_WINDOW_CLASS_INPUT_ONLY);
    EXPECT_NE(frameAt({850, 310}), std::nullopt);
}

TEST_F(WindowShield, LooksThroughWhatLetsThePointerThrough) {
    letPointerThrough(lay(screen_, XCB_WINDOW_CLASS_INPUT_OUTPUT));
    lay(screen_, XCB_WINDOW_CLASS_INPUT_ONLY);
    EXPECT_EQ(frameAt(titleBar_), frame_);
}

TEST_F(WindowShield, StopsAtAMenu) {
    lay({titleBar_.x - 10, titleBar_.y - 5, 20, 10}, XCB_WINDOW_CLASS_INPUT_OUTPUT);
    lay(screen_, XCB_WINDOW_CLASS_INPUT_ONLY);
    EXPECT_EQ(frameAt(titleBar_), std::nullopt);
}

TEST_F(WindowShield, IsNoneWhenItCoversLess) {
    // Such as what a window manager lays around a window for the pointer to resize it by.
    lay({0, 0, screen_.width, screen_.height - 1}, XCB_WINDOW_CLASS_INPUT_ONLY);
    EXPECT_EQ(frameAt(titleBar_), std::nullopt);
}

TEST_F(WindowShield, IsNoneWhenItCanBeSeen) {
    lay(screen_, XCB_WINDOW_CLASS_INPUT_OUTPUT);
    EXPECT_EQ(frameAt(titleBar_), std::nullopt);
}

} // namespace

} // namespace tarvex::contract
