#include "Tests/Contract/X11/WindowFindingFixture.h"
#include "Tests/Support/X11/Pointer.h"
#include "Tests/Support/X11/RequestGate.h"
#include "Tests/Support/X11/TestWindow.h"
#include "Tests/Support/X11/WindowManager.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

namespace tarvex::contract {

namespace {

/// Adapters whose requests the test sees before the server does.
class WatchedAdapters : private test::RequestGate, public XInputAdapters {
public:
    explicit WatchedAdapters(test::XServer& server) : RequestGate(server), XInputAdapters(displayName()) {}

    using RequestGate::onRequest;

    XAccessibilityPlatform platform{*connection, pump, layout, {}, nullptr, &pointer};
};

/// A window that is pulled away while its press is still being looked into. Its window manager is played by
/// the test.
class WindowPressX11 : public WindowFindingTest {
protected:
    /// What a press there takes hold of.
    static AccessibilityElementRef windowAt(XAccessibilityPlatform& platform, PixelPoint point) {
        const auto found = platform.copyElementAtPosition(static_cast<float>(point.x) + 0.5F,
                                                          static_cast<float>(point.y) + 0.5F);
        const auto window = platform.copyAttributeValue(found.element, "AXWindow");
        const auto* element = window.value ? std::get_if<AccessibilityElementRef>(&*window.value) : nullptr;
        return element == nullptr ? nullptr : *element;
    }

    AccessibilityElementRef pressedWindow() { return windowAt(platform_, pressed_); }

    std::optional<PixelRect> frameOf(const AccessibilityElementRef& window) {
        const auto position = platform_.copyAttributeValue(window, "AXPosition");
        const auto size = platform_.copyAttributeValue(window, "AXSize");
        if (!position.value || !size.value) {
            return std::nullopt;
        }
        const auto& origin = std::get<Point>(*position.value);
        const auto& extent = std::get<Size>(*size.value);
        return PixelRect{static_cast<int>(origin.x), static_cast<int>(origin.y),
                         static_cast<int>(extent.width), static_cast<int>(extent.height)};
    }

    /// The program has just heard of the press.
    void press() {
        mouse_.moveTo(pressed_);
        adapters_.pointer.refreshAtPress();
    }

    /// Pulls a window away, and then says so.
    void pull(xcb_window_t window) {
        const std::array<std::uint32_t, 2> place{static_cast<std::uint32_t>(pulled_.x),
                                                 static_cast<std::uint32_t>(pulled_.y)};
        xcb_configure_window(other_.connection(), window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                             place.data());
        other_.sync();
    }

    static constexpr PixelPoint pressed_{300, 160};
    /// Still below the pointer.
    static constexpr PixelRect pulled_{190, 155, home.width, home.height};

    test::Pointer mouse_{server_.displayName()};
    XAccessibilityPlatform platform_{*adapters_.connection, adapters_.pump, adapters_.layout, {}, nullptr,
                                     &adapters_.pointer};
};

TEST_F(WindowPressX11, FrameIsThatOfThePressWhileThePressIsDelivered) {
    const xcb_window_t window = tree_.add(other_.root(), home);
    setManaged(window);
    press();
    AccessibilityElementRef found;
    {
        const XPointer::Hold hold(adapters_.pointer);
        pull(window);
        found = pressedWindow();
        EXPECT_EQ(frameOf(found), home);
        EXPECT_EQ(frameOf(found), home);
    }
    EXPECT_EQ(frameOf(found), pulled_);
}

TEST_F(WindowPressX11, FrameOfADecoratedWindowIsThatOfThePress) {
    // Another program's window in a window manager's frame; its borders are announced, or can be measured.
    for (const bool isAnnounced : {true, false}) {
        test::XClient program(server_.displayName());
        const xcb_window_t frame = tree_.add(other_.root(), home, true);
        tree_.add(frame, {0, 0, 400, 20});
        other_.sync();
        const xcb_window_t window = Tree(program.connection()).add(frame, {5, 20, 390, 275});
        program.sync();
        setManaged(window);
        if (isAnnounced) {
            other_.setWords(window, "_NET_FRAME_EXTENTS", "CARDINAL", {5, 5, 20, 5});
        }
        press();
        {
            const XPointer::Hold hold(adapters_.pointer);
            pull(frame);
            EXPECT_EQ(frameOf(pressedWindow()), home) << isAnnounced;
        }
        EXPECT_EQ(frameOf(pressedWindow()), pulled_) << isAnnounced;
        xcb_destroy_window(other_.connection(), frame);
        other_.sync();
    }
}

TEST_F(WindowPressX11, StatesAreThoseOfThePress) {
    // A window manager restores a maximised window that is dragged.
    test::XClient program(server_.displayName());
    const xcb_window_t frame = tree_.add(other_.root(), home, true);
    other_.sync();
    const xcb_window_t window = Tree(program.connection()).add(frame, {5, 20, 390, 275});
    program.sync();
    setManaged(window);
    const std::vector<std::uint32_t> maximized{other_.atom("_NET_WM_STATE_MAXIMIZED_VERT"),
                                               other_.atom("_NET_WM_STATE_MAXIMIZED_HORZ")};
    other_.setWords(window, "_NET_FRAME_EXTENTS", "CARDINAL", {5, 5, 20, 5});
    other_.setWords(window, "_NET_WM_STATE", "ATOM", maximized);
    other_.sync();
    press();
    const XPointer::Hold hold(adapters_.pointer);
    const std::array<std::uint32_t, 2> size{300, 200};
    xcb_configure_window(other_.connection(), frame, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         size.data());
    other_.setWords(window, "_NET_WM_STATE", "ATOM", {});
    other_.sync();
    EXPECT_EQ(frameOf(pressedWindow()), home);
    ASSERT_NE(adapters_.pointer.sighting(), nullptr);
    EXPECT_TRUE(adapters_.pointer.sighting()->geometryOf(window).states.isMaximized());
}

TEST_F(WindowPressX11, WindowDeepInItsFrameIsTakenBackByWhatTheFrameMoved) {
    test::XClient program(server_.displayName());
    const xcb_window_t frame = tree_.add(other_.root(), home, true);
    const xcb_window_t holder = tree_.add(frame, {5, 20, 390, 275});
    other_.sync();
    const xcb_window_t window = Tree(program.connection()).add(holder, {0, 0, 390, 275});
    program.sync();
    setManaged(window);
    other_.setWords(window, "_NET_FRAME_EXTENTS", "CARDINAL", {5, 5, 20, 5});
    other_.sync();
    press();
    const XPointer::Hold hold(adapters_.pointer);
    pull(frame);
    EXPECT_EQ(frameOf(pressedWindow()), home);
}

TEST_F(WindowPressX11, WindowWrittenToIsReadAfresh) {
    const xcb_window_t window = tree_.add(other_.root(), home);
    setManaged(window);
    press();
    const XPointer::Hold hold(adapters_.pointer);
    const AccessibilityElementRef found = pressedWindow();
    ASSERT_EQ(frameOf(found), home);
    ASSERT_EQ(platform_.setAttributeValue(found, "AXPosition", Point{20, 30}), 0);
    ASSERT_EQ(platform_.setAttributeValue(found, "AXSize", Size{500, 310}), 0);
    adapters_.catchUp();
    EXPECT_EQ(frameOf(found), (PixelRect{20, 30, 500, 310}));
}

TEST_F(WindowPressX11, OtherPlacesThanThePressAreReadAfresh) {
    const xcb_window_t window = tree_.add(other_.root(), home);
    setManaged(window);
    press();
    const XPointer::Hold hold(adapters_.pointer);
    pull(window);
    EXPECT_EQ(frameOf(windowAt(platform_, {pressed_.x + 1, pressed_.y})), pulled_);
}

TEST_F(WindowPressX11, WindowThatSlidUnderThePointerSinceIsReadAfresh) {
    const xcb_window_t below = tree_.add(other_.root(), home);
    setManaged(below);
    const xcb_window_t above = tree_.add(other_.root(), {280, 150, 200, 200});
    setManaged(above);
    press();
    const XPointer::Hold hold(adapters_.pointer);
    xcb_destroy_window(other_.connection(), above);
    pull(below);
    EXPECT_EQ(frameOf(pressedWindow()), pulled_);
}

TEST_F(WindowPressX11, WindowPutBackWhileItIsHeldGoesToItsPixelsThoughThePrimaryMonitorMoved) {
    const xcb_window_t window = tree_.add(other_.root(), home);
    setManaged(window);
    mouse_.moveTo(pressed_);
    mouse_.press();
    adapters_.pointer.refreshAtPress();
    const AccessibilityElementRef found = pressedWindow();
    ASSERT_EQ(frameOf(found), home);
    pull(window);
    adapters_.layout.value = {.primaryLeft = 640, .primaryBottom = 900, .top = 100};
    // The frame as it was kept, in screen space: its left edge, and its top above the primary's bottom.
    const Point kept{200, (900 - 100) - (1024 - 150)};
    const auto write = [&](Point position) {
        ASSERT_EQ(platform_.setAttributeValue(found, "AXPosition", position), 0);
        ASSERT_EQ(platform_.setAttributeValue(found, "AXSize", Size{400, 300}), 0);
        adapters_.catchUp();
    };
    write(kept);
    EXPECT_EQ(other_.geometryInRoot(window), home);
    write({kept.x + 1, kept.y});
    EXPECT_EQ(other_.geometryInRoot(window), (PixelRect{841, 26, 400, 300}));
    // One that is dropped goes to the zone that has come to be there.
    mouse_.release();
    adapters_.pointer.refresh();
    write(kept);
    EXPECT_EQ(other_.geometryInRoot(window), (PixelRect{840, 26, 400, 300}));
}

TEST_F(WindowPressX11, WindowWhosePixelsHaveGoneIsPutWhereItsMonitorIs) {
    const xcb_window_t window = tree_.add(other_.root(), home);
    setManaged(window);
    mouse_.moveTo(pressed_);
    mouse_.press();
    adapters_.pointer.refresh();
    const AccessibilityElementRef found = pressedWindow();
    // The root window was that large when the window was first asked for its frame.
    const std::array<std::uint32_t, 2> beyond{1500, 150};
    xcb_configure_window(other_.connection(), window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                         beyond.data());
    other_.sync();
    adapters_.layout.value = {.primaryLeft = 1280, .primaryBottom = 1024, .top = 0};
    ASSERT_TRUE(frameOf(found).has_value());
    adapters_.layout.value = {.primaryLeft = 0, .primaryBottom = 1024, .top = 0};
    ASSERT_EQ(platform_.setAttributeValue(found, "AXPosition", Point{220, 150}), 0);
    ASSERT_EQ(platform_.setAttributeValue(found, "AXSize", Size{400, 300}), 0);
    adapters_.catchUp();
    EXPECT_EQ(other_.geometryInRoot(window), (PixelRect{220, 150, 400, 300}));
}

TEST_F(WindowPressX11, WindowThatHasGoneIsAnError) {
    const xcb_window_t window = tree_.add(other_.root(), home);
    setManaged(window);
    press();
    const XPointer::Hold hold(adapters_.pointer);
    const AccessibilityElementRef found = pressedWindow();
    ASSERT_NE(found, nullptr);
    adapters_.pointer.refreshAtPress();
    xcb_destroy_window(other_.connection(), window);
    other_.sync();
    EXPECT_EQ(frameOf(found), std::nullopt);
    EXPECT_EQ(adapters_.pointer.refreshAtPress().x, pressed_.x);
    EXPECT_EQ(adapters_.pointer.sighting(), nullptr);
}

TEST_F(WindowPressX11, PartThatClosesWhileTheWindowIsPulledAwayStillLeadsToIt) {
    WatchedAdapters watched(server_);
    const xcb_window_t window = tree_.add(other_.root(), home);
    setManaged(window);
    const xcb_window_t part = tree_.add(window, {10, 5, 300, 200});
    other_.sync();
    mouse_.moveTo(pressed_);
    watched.pointer.refreshAtPress();
    const XPointer::Hold hold(watched.pointer);
    // Asked of the window, and then of its part.
    watched.onRequest(XCB_TRANSLATE_COORDINATES, [&, question = std::make_shared<int>(0)] {
        if (++*question == 2) {
            xcb_destroy_window(other_.connection(), part);
            const std::uint32_t farAway = 700;
            xcb_configure_window(other_.connection(), window, XCB_CONFIG_WINDOW_X, &farAway);
            other_.sync();
        }
    });
    const AccessibilityElementRef found = windowAt(watched.platform, pressed_);
    EXPECT_FALSE(other_.exists(part));
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(watched.frameOf(found), home);
}

TEST_F(WindowPressX11, FrameIsAskedForBeforeAnythingElse) {
    // Over the tap, as a press goes. The search for the window begins with the second of these questions.
    WatchedAdapters watched(server_);
    const xcb_window_t window = tree_.add(other_.root(), home);
    setManaged(window);
    mouse_.moveTo(pressed_);

    struct Press {
        XAccessibilityPlatform* platform;
        std::optional<Point> position;
    } press{&watched.platform, std::nullopt};

    EventTapRequest request;
    request.eventMask = 1U << static_cast<std::uint32_t>(EventType::leftMouseDown);
    request.refcon = &press;
    request.callback = [](EventTap*, EventType, const TapEvent* event, void* refcon) {
        auto& now = *static_cast<Press*>(refcon);
        const auto found = windowAt(*now.platform, pressed_);
        const auto position = now.platform->copyAttributeValue(found, "AXPosition");
        now.position = position.value ? std::optional(std::get<Point>(*position.value)) : std::nullopt;
        return event;
    };
    const auto tap = watched.taps.createTap(request);
    ASSERT_NE(tap, nullptr);
    const auto source = watched.taps.createRunLoopSource(*tap);
    watched.taps.addSource(*source);
    watched.taps.enableTap(*tap);
    watched.catchUp();
    watched.onRequest(XCB_TRANSLATE_COORDINATES, [&, count = std::make_shared<int>(0)] {
        if (++*count == 2) {
            pull(window);
        }
    });
    mouse_.press();
    EXPECT_TRUE(watched.waitUntil([&] { return press.position.has_value(); }));
    EXPECT_EQ(press.position, (Point{static_cast<double>(home.x), static_cast<double>(home.y)}));
    EXPECT_EQ(other_.geometryInRoot(window), pulled_);
}

} // namespace

} // namespace tarvex::contract
