#include "Tests/Contract/X11/WindowFindingFixture.h"

#include <xcb/shape.h>

#include <cmath>
#include <string>
#include <vector>

namespace tarvex::contract {

namespace {

class WindowFindingX11 : public WindowFindingTest {};

TEST_F(WindowFindingX11, WindowWithoutManagerIsNone) {
    tree_.add(other_.root(), home);
    other_.sync();
    EXPECT_EQ(adapters_.windowAt(home.center()), nullptr);
}

TEST_F(WindowFindingX11, WithdrawnWindowIsNone) {
    const xcb_window_t window = tree_.add(other_.root(), home);
    setManaged(window, 0);
    EXPECT_EQ(adapters_.windowAt(home.center()), nullptr);
    setManaged(window);
    expectFound(home.center(), home);
}

TEST_F(WindowFindingX11, MinimisedWindowIsNoneThoughItIsStillMapped) {
    constexpr std::uint32_t iconic = 3;
    const xcb_window_t window = tree_.add(other_.root(), home);
    setManaged(window, iconic);
    EXPECT_EQ(adapters_.windowAt(home.center()), nullptr);
    other_.setWords(window, "_NET_WM_STATE", "ATOM", {other_.atom("_NET_WM_STATE_HIDDEN")});
    other_.sync();
    EXPECT_EQ(adapters_.windowAt(home.center()), nullptr);
}

TEST_F(WindowFindingX11, ShadedWindowIsFoundThoughItIsIconic) {
    constexpr std::uint32_t iconic = 3;
    const xcb_window_t window = tree_.add(other_.root(), home);
    other_.setWords(window, "_NET_WM_STATE", "ATOM",
                    {other_.atom("_NET_WM_STATE_HIDDEN"), other_.atom("_NET_WM_STATE_SHADED")});
    setManaged(window, iconic);
    expectFound(home.center(), home);
}

TEST_F(WindowFindingX11, OverrideRedirectWindowIsNone) {
    setManaged(tree_.add(other_.root(), home, true));
    EXPECT_EQ(adapters_.windowAt(home.center()), nullptr);
}

TEST_F(WindowFindingX11, DeepestPartBelongsToTheWindow) {
    const xcb_window_t window = tree_.add(other_.root(), home);
    setManaged(window);
    xcb_window_t part = window;
    for (int depth = 0; depth < 8; ++depth) {
        part = tree_.add(part, {10, 10, 300, 200});
    }
    other_.sync();
    expectFound({home.x + 150, home.y + 150}, home);
}

TEST_F(WindowFindingX11, EdgesAreHalfOpen) {
    setManaged(tree_.add(other_.root(), home));
    expectFound({home.x, home.y}, home);
    expectFound({home.x + home.width - 1, home.y + home.height - 1}, home);
    EXPECT_EQ(adapters_.windowAt({home.x - 1, home.y}), nullptr);
    EXPECT_EQ(adapters_.windowAt({home.x, home.y - 1}), nullptr);
    EXPECT_EQ(adapters_.windowAt({home.x + home.width, home.y}), nullptr);
    EXPECT_EQ(adapters_.windowAt({home.x, home.y + home.height}), nullptr);
}

TEST_F(WindowFindingX11, HoleInAWindowShowsTheOneBehind) {
    setManaged(tree_.add(other_.root(), home));
    const PixelRect inFront{300, 200, 400, 300};
    const xcb_window_t front = tree_.add(other_.root(), inFront);
    setManaged(front);
    const xcb_rectangle_t rightHalf{200, 0, 200, 300};
    xcb_shape_rectangles(other_.connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                         XCB_CLIP_ORDERING_UNSORTED, front, 0, 0, 1, &rightHalf);
    other_.sync();
    expectFound({350, 300}, home);
    expectFound({650, 300}, inFront);
}

TEST_F(WindowFindingX11, ShownWindowOfAFrameIsPreferred) {
    const xcb_window_t frame = tree_.add(other_.root(), home, true);
    tree_.add(frame, {0, 0, 400, 20});
    const xcb_window_t holder = tree_.add(frame, {5, 20, 390, 275});
    const xcb_window_t first = tree_.add(holder, {0, 0, 390, 275});
    const xcb_window_t second = tree_.add(holder, {0, 0, 100, 100});
    setManaged(first);
    setManaged(second);
    // Told apart by their decoration.
    other_.setWords(first, "_NET_FRAME_EXTENTS", "CARDINAL", {0, 0, 0, 0});
    other_.setWords(second, "_NET_FRAME_EXTENTS", "CARDINAL", {1, 1, 1, 1});
    const PixelPoint titleBar{home.x + 100, home.y + 5};
    const PixelRect firstFrame{home.x + 5, home.y + 20, 390, 275};
    const PixelRect secondFrame{home.x + 4, home.y + 19, 102, 102};

    expectFound(titleBar, secondFrame);
    xcb_unmap_window(other_.connection(), second);
    other_.sync();
    expectFound(titleBar, firstFrame);
    xcb_unmap_window(other_.connection(), first);
    xcb_map_window(other_.connection(), second);
    other_.sync();
    expectFound(titleBar, secondFrame);
}

TEST_F(WindowFindingX11, FrameWithoutAWindowIsNone) {
    const xcb_window_t frame = tree_.add(other_.root(), home, true);
    tree_.add(frame, {5, 20, 390, 275});
    other_.sync();
    EXPECT_EQ(adapters_.windowAt(home.center()), nullptr);
}

TEST_F(WindowFindingX11, TypesThatNobodyMovesAreNone) {
    const xcb_window_t window = tree_.add(other_.root(), home);
    setManaged(window);
    const auto isFoundAs = [&](const std::vector<std::string>& types) {
        std::vector<std::uint32_t> atoms;
        atoms.reserve(types.size());
        for (const std::string& type : types) {
            atoms.push_back(other_.atom(type));
        }
        other_.setWords(window, "_NET_WM_WINDOW_TYPE", "ATOM", atoms);
        other_.sync();
        return adapters_.windowAt(home.center()) != nullptr;
    };
    for (const std::string type : {"DESKTOP", "DOCK", "MENU", "DROPDOWN_MENU", "POPUP_MENU", "TOOLTIP",
                                   "NOTIFICATION", "COMBO", "DND", "SPLASH"}) {
        EXPECT_FALSE(isFoundAs({"_NET_WM_WINDOW_TYPE_" + type})) << type;
        EXPECT_FALSE(isFoundAs({"_NET_WM_WINDOW_TYPE_" + type, "_NET_WM_WINDOW_TYPE_NORMAL"})) << type;
    }
    for (const std::string type : {"NORMAL", "DIALOG", "UTILITY", "TOOLBAR"}) {
        EXPECT_TRUE(isFoundAs({"_NET_WM_WINDOW_TYPE_" + type})) << type;
        EXPECT_TRUE(isFoundAs({"_NET_WM_WINDOW_TYPE_" + type, "_NET_WM_WINDOW_TYPE_DOCK"})) << type;
    }
    EXPECT_TRUE(isFoundAs({}));
    EXPECT_TRUE(isFoundAs({"_TYPE_OF_ANOTHER_KIND"}));
    EXPECT_FALSE(isFoundAs({"_TYPE_OF_ANOTHER_KIND", "_NET_WM_WINDOW_TYPE_DOCK"}));
}

TEST_F(WindowFindingX11, OwnWindowGivesNoElement) {
    setManaged(tree_.add(other_.root(), home));
    Tree own(adapters_.connection->get());
    const xcb_window_t window = own.add(other_.root(), home);
    adapters_.catchUp();
    setManaged(window);
    const auto found = adapters_.accessibility.copyElementAtPosition(400.5F, 300.5F);
    EXPECT_EQ(found.error, 0);
    EXPECT_EQ(found.element, nullptr);
}

TEST_F(WindowFindingX11, OwnWindowIsNotFoundFromItsFrame) {
    Tree own(adapters_.connection->get());
    const xcb_window_t frame = tree_.add(other_.root(), home, true);
    other_.sync();
    const xcb_window_t window = own.add(frame, {5, 20, 390, 275});
    adapters_.catchUp();
    setManaged(window);
    EXPECT_EQ(adapters_.windowAt({home.x + 100, home.y + 5}), nullptr);
    EXPECT_EQ(adapters_.windowAt(home.center()), nullptr);
}

TEST_F(WindowFindingX11, WindowsOfFurtherOwnConnectionsAreOwn) {
    setManaged(tree_.add(other_.root(), home));
    XAccessibilityPlatform platform(*adapters_.connection, adapters_.pump, adapters_.layout,
                                    {XClientResources(other_.connection())});
    expectFound(home.center(), home);
    EXPECT_EQ(platform.copyElementAtPosition(400.5F, 300.5F).element, nullptr);
}

TEST_F(WindowFindingX11, DesktopLayoutPlacesTheRootInAccessibilitySpace) {
    adapters_.layout.value = {.primaryLeft = 300, .primaryBottom = 900, .top = 120};
    setManaged(tree_.add(other_.root(), home));
    expectFound({home.x, home.y}, home);
    EXPECT_EQ(adapters_.windowAt({home.x - 1, home.y - 1}), nullptr);
    const AccessibilityElementRef found = adapters_.windowAt(home.center());
    const auto position = adapters_.accessibility.copyAttributeValue(found, "AXPosition");
    ASSERT_TRUE(position.value.has_value());
    EXPECT_EQ(std::get<Point>(*position.value), (Point{200 - 300, 150 - 120}));
}

TEST_F(WindowFindingX11, ElementsKnowTheirParentsUpToTheRoot) {
    const xcb_window_t window = tree_.add(other_.root(), home);
    tree_.add(window, {10, 10, 300, 200});
    other_.sync();
    AccessibilityElementRef element = adapters_.accessibility.copyElementAtPosition(400.5F, 300.5F).element;
    int steps = 0;
    for (; element && steps < 10; ++steps) {
        const auto parent = adapters_.accessibility.copyAttributeValue(element, "AXParent");
        element = parent.value ? std::get<AccessibilityElementRef>(*parent.value) : nullptr;
        EXPECT_EQ(parent.error, element ? 0 : x_accessibility_error::noValue);
    }
    EXPECT_EQ(steps, 3);
}

TEST_F(WindowFindingX11, ErrorsTellWhatWasWrong) {
    setManaged(tree_.add(other_.root(), home));
    XAccessibilityPlatform& platform = adapters_.accessibility;
    const AccessibilityElementRef element = platform.copyElementAtPosition(400.5F, 300.5F).element;
    const AccessibilityElementRef window = adapters_.windowAt(home.center());
    using namespace x_accessibility_error;
    EXPECT_EQ(platform.copyAttributeValue(nullptr, "AXWindow").error, invalidElement);
    EXPECT_EQ(platform.setAttributeValue(nullptr, "AXPosition", Point{}), invalidElement);
    EXPECT_EQ(platform.copyAttributeValue(window, "AXRole").error, attributeUnsupported);
    EXPECT_EQ(platform.copyAttributeValue(element, "AXSize").error, attributeUnsupported);
    EXPECT_EQ(platform.setAttributeValue(element, "AXSize", Size{1, 1}), attributeUnsupported);
    EXPECT_EQ(platform.setAttributeValue(window, "AXWindow", Size{1, 1}), attributeUnsupported);
    EXPECT_EQ(platform.setAttributeValue(window, "AXSize", Point{1, 1}), illegalValue);
    EXPECT_EQ(platform.setAttributeValue(window, "AXPosition", Point{1e9, 0}), illegalValue);
    EXPECT_EQ(platform.setAttributeValue(window, "AXSize", Size{0, std::nan("")}), illegalValue);
    EXPECT_EQ(platform.copyElementAtPosition(1e9F, 0).error, illegalValue);
}

TEST_F(WindowFindingX11, WindowWithoutManagerIsConfiguredDirectly) {
    constexpr int border = 3;
    const xcb_window_t window = tree_.add(other_.root(), home, false, border);
    setManaged(window);
    const PixelRect framed{home.x, home.y, home.width + 2 * border, home.height + 2 * border};
    expectFound(home.center(), framed);
    ASSERT_EQ(adapters_.place(adapters_.windowAt(home.center()), {100, 90, 500, 400}), 0);
    EXPECT_TRUE(adapters_.waitUntil([&] {
        return other_.geometryInRoot(window) ==
               PixelRect{100 + border, 90 + border, 500 - 2 * border, 400 - 2 * border};
    }));
}

TEST_F(WindowFindingX11, UndeclaredDecorationIsMeasured) {
    const xcb_window_t frame = tree_.add(other_.root(), home, true);
    const xcb_window_t window = tree_.add(frame, {5, 20, 390, 275});
    setManaged(window);
    expectFound(home.center(), home);
}

TEST_F(WindowFindingX11, WindowThatVanishesBetweenTheTwoWritesIsHarmless) {
    const xcb_window_t window = tree_.add(other_.root(), home);
    setManaged(window);
    const AccessibilityElementRef found = adapters_.windowAt(home.center());
    ASSERT_EQ(adapters_.accessibility.setAttributeValue(found, "AXPosition", Point{10, 10}), 0);
    xcb_destroy_window(other_.connection(), window);
    other_.sync();
    EXPECT_EQ(adapters_.accessibility.setAttributeValue(found, "AXSize", Size{300, 200}), 0);
    adapters_.catchUp();
    EXPECT_FALSE(adapters_.connection->isBroken());
    EXPECT_EQ(adapters_.accessibility.setAttributeValue(found, "AXPosition", Point{10, 10}), 3);
    EXPECT_EQ(adapters_.accessibility.setAttributeValue(found, "AXSize", Size{300, 200}), 3);
    EXPECT_EQ(adapters_.accessibility.copyAttributeValue(found, "AXPosition").error, 3);
    EXPECT_EQ(adapters_.accessibility.copyAttributeValue(found, "AXWindow").error, 3);
    EXPECT_EQ(adapters_.accessibility.copyAttributeValue(found, "AXParent").error, 3);
}

TEST_F(WindowFindingX11, PropertiesFullOfNonsenseAreHarmless) {
    const xcb_window_t window = tree_.add(other_.root(), home);
    setManaged(window);
    other_.setWords(window, "_GTK_FRAME_EXTENTS", "CARDINAL", {0xFFFFFFFF, 0xFFFFFFFF, 0x80000000, 7});
    other_.setWords(window, "_NET_FRAME_EXTENTS", "CARDINAL", {1, 2});
    other_.setText(window, "_NET_WM_STATE", "STRING", "maximised, more or less");
    other_.setText(other_.root(), "_NET_SUPPORTED", "STRING", "everything");
    const AccessibilityElementRef found = adapters_.windowAt(home.center());
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(adapters_.place(found, {100, 100, 300, 200}), 0);
    adapters_.catchUp();
    EXPECT_FALSE(adapters_.connection->isBroken());
}

} // namespace

} // namespace tarvex::contract
