#include "Tests/Contract/AccessibilityContract.h"

#include "Tests/Contract/X11/InputAdapters.h"
#include "Tests/Support/X11/TestWindow.h"
#include "Tests/Support/X11/WindowManager.h"
#include "Tests/Support/X11/XServer.h"

#include <xcb/shape.h>

#include <array>
#include <vector>

namespace tarvex::contract {

namespace {

test::PixelRect pixelsOf(const Rect& rect) {
    return test::roundedEdges(rect);
}

test::TestWindowOptions optionsFor(const Rect& frame) {
    test::TestWindowOptions options;
    options.geometry = pixelsOf(frame);
    return options;
}

/// Programs with one window each, on a private X server with a window manager. Their windows answer events
/// only when the test lets them, so that every one of them is as good as frozen.
class AccessibilityX11World final : public AccessibilityWorld {
public:
    explicit AccessibilityX11World(test::WindowManagerKind kind) : manager_(server_, kind) {}

    AccessibilityPlatform& platform() override { return adapters_.accessibility; }

    int openWindow(const Rect& frame) override { return open(optionsFor(frame)); }

    int openWindowWithMinimumSize(const Rect& frame, Size minimum) override {
        minimumSize_ = minimum;
        test::TestWindowOptions options = optionsFor(frame);
        options.minimumSize = minimum;
        return open(options);
    }

    Size minimumFrameSize(int window) override {
        const test::PixelExtents extents = at(window).managed().frameExtents();
        return {minimumSize_.width + extents.left + extents.right,
                minimumSize_.height + extents.top + extents.bottom};
    }

    void openPanel(const Rect& frame) override {
        test::TestWindowOptions options = optionsFor(frame);
        options.type = "_NET_WM_WINDOW_TYPE_DOCK";
        open(options);
    }

    void openMenu(const Rect& frame) override {
        test::TestWindowOptions options = optionsFor(frame);
        options.type = "_NET_WM_WINDOW_TYPE_POPUP_MENU";
        options.isOverrideRedirect = true;
        open(options);
    }

    void openOwnOverlay(const Rect& frame) override;

    void raise(int window) override {
        observer_.sendToWindowManager(at(window).id(), "_NET_ACTIVE_WINDOW", {fromPager, 0, 0, 0, 0});
    }

    void moveByHand(int window, Point origin) override {
        constexpr std::uint32_t northWestWithPosition = 1 | 1 << 8 | 1 << 9 | fromPager << 12;
        observer_.sendToWindowManager(at(window).id(), "_NET_MOVERESIZE_WINDOW",
                                      {northWestWithPosition, static_cast<std::uint32_t>(origin.x),
                                       static_cast<std::uint32_t>(origin.y), 0, 0});
    }

    void maximize(int window) override {
        at(window).changeState(true, "_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ");
        manager_.barrier();
    }

    void freeze(int /*window*/) override {}

    void close(int window) override {
        at(window).close();
        manager_.barrier();
    }

    Rect frame(int window) override {
        const test::PixelRect frame = at(window).managed().frameWindowGeometry().value_or(test::PixelRect{});
        return {static_cast<double>(frame.x), static_cast<double>(frame.y), static_cast<double>(frame.width),
                static_cast<double>(frame.height)};
    }

    Point titleBar(int window) override {
        const test::PixelPoint point = at(window).managed().titleBarPoint();
        return {point.x + 0.5, point.y + 0.5};
    }

    Point emptySpot() override { return {1270.5, 1010.5}; }

    bool waitUntil(const std::function<bool()>& condition) override { return adapters_.waitUntil(condition); }

    void settle() override {
        adapters_.catchUp();
        manager_.barrier();
        adapters_.catchUp();
    }

private:
    static constexpr std::uint32_t fromPager = 2;

    int open(const test::TestWindowOptions& options) {
        windows_.push_back(std::make_unique<test::TestWindow>(server_.displayName(), options));
        manager_.barrier();
        return static_cast<int>(windows_.size()) - 1;
    }

    test::TestWindow& at(int window) { return *windows_.at(static_cast<std::size_t>(window)); }

    test::XServer server_;
    test::WindowManager manager_;
    test::XClient observer_{server_.displayName()};
    XInputAdapters adapters_{server_.displayName()};
    std::vector<std::unique_ptr<test::TestWindow>> windows_;
    Size minimumSize_;
};

void AccessibilityX11World::openOwnOverlay(const Rect& frame) {
    xcb_connection_t* own = adapters_.connection->get();
    const xcb_window_t window = xcb_generate_id(own);
    const std::uint32_t overrideRedirect = 1;
    const test::PixelRect pixels = pixelsOf(frame);
    xcb_create_window(own, XCB_COPY_FROM_PARENT, window, adapters_.connection->root(),
                      static_cast<std::int16_t>(pixels.x), static_cast<std::int16_t>(pixels.y),
                      static_cast<std::uint16_t>(pixels.width), static_cast<std::uint16_t>(pixels.height), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                      &overrideRedirect);
    xcb_shape_rectangles(own, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, window, 0, 0,
                         0, nullptr);
    xcb_map_window(own, window);
    adapters_.catchUp();
}

INSTANTIATE_TEST_SUITE_P(
    X11, AccessibilityContract,
    ::testing::Values(
        worldFactory<AccessibilityWorld, AccessibilityX11World>("openbox", test::WindowManagerKind::openbox),
        worldFactory<AccessibilityWorld, AccessibilityX11World>("xfwm4", test::WindowManagerKind::xfwm4)),
    worldName);

} // namespace

} // namespace tarvex::contract
