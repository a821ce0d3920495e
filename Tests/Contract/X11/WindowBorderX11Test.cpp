#include "Tests/Contract/X11/WindowFindingFixture.h"
#include "Tests/Support/X11/Pointer.h"
#include "Tests/Support/X11/TestWindow.h"
#include "Tests/Support/X11/WindowManager.h"

#include <array>
#include <cstdint>
#include <string>
#include <utility>

namespace tarvex::contract {

namespace {

/// What nobody sees around a window, for the pointer to resize it by. The window manager is played by the
/// test.
class WindowBorderX11 : public WindowFindingTest {
protected:
    /// Lays a window that takes the pointer alone above all others.
    static xcb_window_t lay(test::XClient& client, const PixelRect& frame) {
        const xcb_window_t window = xcb_generate_id(client.connection());
        const std::uint32_t overrideRedirect = 1;
        xcb_create_window(client.connection(), 0, window, client.root(), static_cast<std::int16_t>(frame.x),
                          static_cast<std::int16_t>(frame.y), static_cast<std::uint16_t>(frame.width),
                          static_cast<std::uint16_t>(frame.height), 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &overrideRedirect);
        xcb_map_window(client.connection(), window);
        client.sync();
        return window;
    }

    /// A frame with another program's window in it.
    xcb_window_t addFramed(const PixelRect& frame) {
        const xcb_window_t outer = tree_.add(other_.root(), frame);
        other_.sync();
        const xcb_window_t inner =
            Tree(program_.connection()).add(outer, {5, 20, frame.width - 10, frame.height - 25});
        program_.sync();
        setManaged(inner);
        return outer;
    }

    static constexpr PixelRect around_{home.x - 10, home.y, home.width + 20, home.height + 10};
    static constexpr std::array<PixelPoint, 4> outside_{
        PixelPoint{home.x - 10, home.y}, PixelPoint{home.x + home.width + 9, home.y + 100},
        PixelPoint{home.x + 100, home.y + home.height}, PixelPoint{home.x - 10, home.y + home.height + 9}};

    test::XClient program_{server_.displayName()};
};

TEST_F(WindowBorderX11, BelongsToTheFrameRightBelow) {
    addFramed(home);
    for (const PixelPoint point : outside_) {
        EXPECT_EQ(adapters_.windowAt(point), nullptr);
    }
    lay(other_, around_);
    for (const PixelPoint point : outside_) {
        expectFound(point, home);
    }
    expectFound(home.center(), home);
    EXPECT_EQ(adapters_.windowAt({around_.x - 1, home.y}), nullptr);
}

TEST_F(WindowBorderX11, BelongsToItsFrameWhereAnotherWindowIsBehindIt) {
    addFramed({100, 100, 700, 600});
    addFramed(home);
    lay(other_, around_);
    expectFound(outside_[0], home);
    expectFound({150, 650}, {100, 100, 700, 600});
}

TEST_F(WindowBorderX11, BelongsToItsFrameThoughAnotherProgramShowsSomethingInBetween) {
    addFramed(home);
    Tree(program_.connection()).add(program_.root(), {250, 200, 50, 50}, true);
    program_.sync();
    lay(other_, around_);
    expectFound(outside_[0], home);
}

TEST_F(WindowBorderX11, BelongsToItsFrameBelowAShield) {
    addFramed(home);
    lay(other_, around_);
    lay(other_, {0, 0, 1280, 1024});
    expectFound(outside_[2], home);
    EXPECT_EQ(adapters_.windowAt({around_.x - 1, home.y}), nullptr);
}

TEST_F(WindowBorderX11, IsThatOfNoWindowWhenAnotherProgramLaidIt) {
    addFramed(home);
    lay(program_, around_);
    EXPECT_EQ(adapters_.windowAt(outside_[0]), nullptr);
}

TEST_F(WindowBorderX11, IsThatOfNoWindowWhenTheFrameIsNotTheNextOneBelow) {
    addFramed(home);
    addFramed({900, 700, 200, 200});
    lay(other_, around_);
    EXPECT_EQ(adapters_.windowAt(outside_[0]), nullptr);
}

TEST_F(WindowBorderX11, IsThatOfNoWindowWhenItDoesNotLieAroundOne) {
    // Such as what notices that the pointer has come to an edge of the screen.
    addFramed({0, 0, 1280, 1024});
    lay(other_, {0, 0, 1280, 1});
    EXPECT_EQ(adapters_.windowAt({640, 0}), nullptr);
    EXPECT_NE(adapters_.windowAt({640, 1}), nullptr);
}

TEST_F(WindowBorderX11, WithoutAWindowIsNone) {
    const xcb_window_t border = lay(other_, around_);
    EXPECT_EQ(adapters_.windowAt(outside_[0]), nullptr);
    addFramed(home);
    // The border came first, so that the frame lies above it.
    EXPECT_EQ(adapters_.windowAt(outside_[0]), nullptr);
    xcb_destroy_window(other_.connection(), border);
}

TEST_F(WindowBorderX11, PressShowsTheFrameAsItWas) {
    const xcb_window_t frame = addFramed(home);
    lay(other_, around_);
    XAccessibilityPlatform platform(*adapters_.connection, adapters_.pump, adapters_.layout, {}, nullptr,
                                    &adapters_.pointer);
    test::Pointer mouse(server_.displayName());
    const PixelPoint pressed = outside_[2];
    mouse.moveTo(pressed);
    adapters_.pointer.refreshAtPress();
    const XPointer::Hold hold(adapters_.pointer);
    ASSERT_NE(adapters_.pointer.sighting(), nullptr);
    EXPECT_EQ(adapters_.pointer.sighting()->outermost(), frame);
    const std::uint32_t lower = home.height + 40;
    xcb_configure_window(other_.connection(), frame, XCB_CONFIG_WINDOW_HEIGHT, &lower);
    other_.sync();
    const auto found = platform.copyElementAtPosition(static_cast<float>(pressed.x) + 0.5F,
                                                      static_cast<float>(pressed.y) + 0.5F);
    const auto window = platform.copyAttributeValue(found.element, "AXWindow");
    ASSERT_TRUE(window.value.has_value());
    const auto size = platform.copyAttributeValue(std::get<AccessibilityElementRef>(*window.value), "AXSize");
    EXPECT_EQ(std::get<Size>(size.value.value()), (Size{home.width, home.height}));
}

/// The decorations that real window managers give a window.
class WindowDecorationX11 : public ::testing::TestWithParam<test::WindowManagerKind> {
protected:
    test::XServer server_;
    test::WindowManager manager_{server_, GetParam()};
    test::XClient client_{server_.displayName()};
    XInputAdapters adapters_{server_.displayName()};
    test::TestWindow window_{server_.displayName()};
    PixelRect frame_ = window_.managed().requireVisibleFrame();

    /// Whether the server finds anything there but the bare desktop.
    bool isBare(PixelPoint point) {
        const test::Owned<xcb_translate_coordinates_reply_t> reply(xcb_translate_coordinates_reply(
            client_.connection(),
            xcb_translate_coordinates(client_.connection(), client_.root(), client_.root(),
                                      static_cast<std::int16_t>(point.x), static_cast<std::int16_t>(point.y)),
            nullptr));
        return reply->child == XCB_WINDOW_NONE;
    }
};

INSTANTIATE_TEST_SUITE_P(WindowManagers, WindowDecorationX11,
                         ::testing::Values(test::WindowManagerKind::openbox, test::WindowManagerKind::xfwm4,
                                           test::WindowManagerKind::metacity, test::WindowManagerKind::kwin),
                         [](const auto& info) { return test::nameOf(info.param); });

TEST_P(WindowDecorationX11, EveryPixelOfItLeadsToTheWindow) {
    manager_.barrier();
    constexpr int reach = 16;
    const int middleX = frame_.x + frame_.width / 2;
    const int middleY = frame_.y + frame_.height / 2;
    const int right = frame_.x + frame_.width - 1;
    const int bottom = frame_.y + frame_.height - 1;
    // Across the middle of every side and along the diagonals of the corners, outwards.
    const std::array<std::pair<PixelPoint, PixelPoint>, 8> ways{{{{middleX, frame_.y}, {0, -1}},
                                                                 {{middleX, bottom}, {0, 1}},
                                                                 {{frame_.x, middleY}, {-1, 0}},
                                                                 {{right, middleY}, {1, 0}},
                                                                 {{frame_.x, frame_.y}, {-1, -1}},
                                                                 {{right, frame_.y}, {1, -1}},
                                                                 {{frame_.x, bottom}, {-1, 1}},
                                                                 {{right, bottom}, {1, 1}}}};
    int found = 0;
    for (const auto& [edge, outwards] : ways) {
        for (int step = -reach; step <= reach; ++step) {
            const PixelPoint point{edge.x + step * outwards.x, edge.y + step * outwards.y};
            if (isBare(point)) {
                continue;
            }
            const AccessibilityElementRef window = adapters_.windowAt(point);
            ASSERT_NE(window, nullptr) << point.x << ", " << point.y;
            EXPECT_EQ(adapters_.frameOf(window), frame_);
            ++found;
        }
    }
    EXPECT_GE(found, 8 * reach);
}

} // namespace

} // namespace tarvex::contract
