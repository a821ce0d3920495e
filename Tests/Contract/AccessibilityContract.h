#pragma once

#include "App/Input/AccessibilityPlatform.h"
#include "Tests/Contract/ContractWorld.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string_view>
#include <variant>

namespace tarvex::contract {

/// A desktop at least 1000 by 700 points large, on which the port is permitted to steer windows. Rectangles
/// and points are in accessibility space: a rectangle's x and y are its top-left corner, y grows downwards.
class AccessibilityWorld : public ContractWorld {
public:
    virtual AccessibilityPlatform& platform() = 0;

    /// Opens another program's ordinary window, in front of the ones before it, with about that visible
    /// frame; frame() tells the exact one. Returns its number once it is shown and stands still.
    virtual int openWindow(const Rect& frame) = 0;

    /// The same for a window that refuses to become smaller than the given size. Its visible frame is then at
    /// least that large, and exactly minimumFrameSize() when it is asked for less.
    virtual int openWindowWithMinimumSize(const Rect& frame, Size minimum) = 0;
    virtual Size minimumFrameSize(int window) = 0;

    /// Opens a panel, a bar that belongs to the desktop and not to a program's window, and a menu that has
    /// popped up in front of everything.
    virtual void openPanel(const Rect& frame) = 0;
    virtual void openMenu(const Rect& frame) = 0;

    /// Shows a click-through window of this very program in front of everything.
    virtual void openOwnOverlay(const Rect& frame) = 0;

    virtual void raise(int window) = 0;

    /// Moves the window's top-left corner as its user would.
    virtual void moveByHand(int window, Point origin) = 0;
    virtual void maximize(int window) = 0;

    /// The window's program stops answering until the world ends.
    virtual void freeze(int window) = 0;

    /// Whether the desktop itself knows and moves the windows of such a program. Where every question goes to
    /// the program, there is no answer.
    virtual bool knowsFrozenWindows() { return true; }

    /// Seconds since some fixed moment, on the clock that a wait for another program is measured by.
    virtual double now() {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    }

    /// Closes the window; returns once it has gone.
    virtual void close(int window) = 0;

    /// The window's visible frame, measured past the port.
    virtual Rect frame(int window) = 0;

    /// A point on the window's title bar; for a window that has none, a point near its top.
    virtual Point titleBar(int window) = 0;

    /// A point where there is nothing but the desktop.
    virtual Point emptySpot() = 0;
};

class AccessibilityContract : public ::testing::TestWithParam<WorldFactory<AccessibilityWorld>> {
protected:
    void SetUp() override { world_ = GetParam().make(); }

    AccessibilityPlatform& platform() { return world_->platform(); }

    AccessibilityElementRef elementAttribute(const AccessibilityElementRef& element, std::string_view name) {
        const AccessibilityValueResult result = platform().copyAttributeValue(element, name);
        if (result.error != 0 || !result.value) {
            return nullptr;
        }
        const auto* held = std::get_if<AccessibilityElementRef>(&*result.value);
        return held == nullptr ? nullptr : *held;
    }

    // The walk that the port exists for: up the tree until an element knows its window.
    AccessibilityElementRef windowAt(Point point) {
        const AccessibilityElementResult hit =
            platform().copyElementAtPosition(static_cast<float>(point.x), static_cast<float>(point.y));
        AccessibilityElementRef element = hit.error == 0 ? hit.element : nullptr;
        for (int step = 0; step < 10 && element; ++step) {
            if (AccessibilityElementRef window = elementAttribute(element, "AXWindow")) {
                return window;
            }
            element = elementAttribute(element, "AXParent");
        }
        return nullptr;
    }

    AccessibilityElementRef windowOf(int window) { return windowAt(center(world_->frame(window))); }

    std::optional<Rect> frameOf(const AccessibilityElementRef& window) {
        const AccessibilityValueResult position = platform().copyAttributeValue(window, "AXPosition");
        const AccessibilityValueResult size = platform().copyAttributeValue(window, "AXSize");
        if (position.error != 0 || size.error != 0 || !position.value || !size.value) {
            return std::nullopt;
        }
        const auto* origin = std::get_if<Point>(&*position.value);
        const auto* extent = std::get_if<Size>(&*size.value);
        if (origin == nullptr || extent == nullptr) {
            return std::nullopt;
        }
        return Rect{origin->x, origin->y, extent->width, extent->height};
    }

    // Position first, size second, as the program does it.
    void place(const AccessibilityElementRef& window, const Rect& frame) {
        const auto origin = platform().makePointValue(frame.origin());
        const auto size = platform().makeSizeValue(frame.size());
        ASSERT_TRUE(origin.has_value());
        ASSERT_TRUE(size.has_value());
        EXPECT_EQ(platform().setAttributeValue(window, "AXPosition", *origin), 0);
        EXPECT_EQ(platform().setAttributeValue(window, "AXSize", *size), 0);
    }

    static Point center(const Rect& frame) { return {frame.x + frame.width / 2, frame.y + frame.height / 2}; }

    static constexpr Rect homeFrame{100, 80, 400, 300};
    static constexpr Rect zone{420, 200, 360, 340};

    std::unique_ptr<AccessibilityWorld> world_;
};

TEST_P(AccessibilityContract, PermittedDesktopIsTrusted) {
    EXPECT_TRUE(platform().isProcessTrusted(false));
    EXPECT_TRUE(platform().isProcessTrusted(true));
}

TEST_P(AccessibilityContract, WindowUnderThePointIsFound) {
    const int window = world_->openWindow(homeFrame);
    const AccessibilityElementRef found = windowOf(window);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(frameOf(found), world_->frame(window));
}

TEST_P(AccessibilityContract, TitleBarBelongsToItsWindow) {
    const int window = world_->openWindow(homeFrame);
    const AccessibilityElementRef found = windowAt(world_->titleBar(window));
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(frameOf(found), world_->frame(window));
}

TEST_P(AccessibilityContract, FrontmostOfOverlappingWindowsIsFound) {
    const int back = world_->openWindow(homeFrame);
    const int front = world_->openWindow({200, 150, 400, 300});
    const Point shared{300, 250};
    const AccessibilityElementRef first = windowAt(shared);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(frameOf(first), world_->frame(front));
    world_->raise(back);
    EXPECT_TRUE(world_->waitUntil([&] {
        const AccessibilityElementRef found = windowAt(shared);
        return found && frameOf(found) == world_->frame(back);
    }));
}

TEST_P(AccessibilityContract, DesktopIsNoWindow) {
    world_->openWindow(homeFrame);
    EXPECT_EQ(windowAt(world_->emptySpot()), nullptr);
}

TEST_P(AccessibilityContract, PanelIsNoWindow) {
    const Rect panel{0, 0, 1000, 24};
    world_->openPanel(panel);
    EXPECT_EQ(windowAt(center(panel)), nullptr);
}

TEST_P(AccessibilityContract, MenuIsNoWindow) {
    const int window = world_->openWindow(homeFrame);
    const Rect menu{200, 150, 120, 160};
    world_->openMenu(menu);
    EXPECT_EQ(windowAt(center(menu)), nullptr);
    EXPECT_NE(windowAt({world_->frame(window).maxX() - 20, world_->frame(window).maxY() - 20}), nullptr);
}

TEST_P(AccessibilityContract, OwnClickThroughWindowIsPassedOver) {
    const int window = world_->openWindow(homeFrame);
    world_->openOwnOverlay({0, 0, 1000, 700});
    const AccessibilityElementRef found = windowOf(window);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(frameOf(found), world_->frame(window));
}

TEST_P(AccessibilityContract, FrameIsReadAfresh) {
    const int window = world_->openWindow(homeFrame);
    const AccessibilityElementRef found = windowOf(window);
    ASSERT_NE(found, nullptr);
    const Rect before = world_->frame(window);
    world_->moveByHand(window, {before.x + 130, before.y + 70});
    EXPECT_TRUE(world_->waitUntil([&] { return world_->frame(window) == before.translated(130, 70); }));
    EXPECT_EQ(frameOf(found), before.translated(130, 70));
}

TEST_P(AccessibilityContract, WrittenFrameIsTakenToThePoint) {
    const int window = world_->openWindow(homeFrame);
    place(windowOf(window), zone);
    EXPECT_TRUE(world_->waitUntil([&] { return world_->frame(window) == zone; }));
    // A window manager may lay out its frame before the window in it.
    world_->settle();
    EXPECT_EQ(frameOf(windowOf(window)), zone);
}

TEST_P(AccessibilityContract, PositionAloneKeepsTheSize) {
    const int window = world_->openWindow(homeFrame);
    const Rect before = world_->frame(window);
    const auto origin = platform().makePointValue({333, 222});
    ASSERT_TRUE(origin.has_value());
    EXPECT_EQ(platform().setAttributeValue(windowOf(window), "AXPosition", *origin), 0);
    const Rect expected{333, 222, before.width, before.height};
    EXPECT_TRUE(world_->waitUntil([&] { return world_->frame(window) == expected; }));
}

TEST_P(AccessibilityContract, SizeAloneKeepsThePosition) {
    const int window = world_->openWindow(homeFrame);
    const Rect before = world_->frame(window);
    const auto size = platform().makeSizeValue({510, 410});
    ASSERT_TRUE(size.has_value());
    EXPECT_EQ(platform().setAttributeValue(windowOf(window), "AXSize", *size), 0);
    const Rect expected{before.x, before.y, 510, 410};
    EXPECT_TRUE(world_->waitUntil([&] { return world_->frame(window) == expected; }));
}

TEST_P(AccessibilityContract, RepeatedWritesDoNotDrift) {
    const int window = world_->openWindow(homeFrame);
    const AccessibilityElementRef found = windowOf(window);
    ASSERT_NE(found, nullptr);
    for (int round = 0; round < 10; ++round) {
        place(found, zone);
        ASSERT_TRUE(world_->waitUntil([&] { return world_->frame(window) == zone; })) << round;
        place(found, {100, 120, 300, 280});
        ASSERT_TRUE(world_->waitUntil([&] {
            return world_->frame(window) == Rect{100, 120, 300, 280};
        })) << round;
    }
    const std::optional<Rect> own = frameOf(found);
    ASSERT_TRUE(own.has_value());
    place(found, *own);
    world_->settle();
    EXPECT_EQ(world_->frame(window), *own);
}

TEST_P(AccessibilityContract, OnlyTheNamedWindowMoves) {
    const int other = world_->openWindow({500, 380, 300, 250});
    const int window = world_->openWindow({100, 80, 300, 250});
    const Rect before = world_->frame(other);
    place(windowOf(window), zone);
    EXPECT_TRUE(world_->waitUntil([&] { return world_->frame(window) == zone; }));
    EXPECT_EQ(world_->frame(other), before);
}

TEST_P(AccessibilityContract, WindowKeepsItsMinimumSizeAtTheZonesOrigin) {
    const int window = world_->openWindowWithMinimumSize(homeFrame, {350, 260});
    const Size smallest = world_->minimumFrameSize(window);
    place(windowOf(window), {420, 200, 120, 90});
    const Rect expected{420, 200, smallest.width, smallest.height};
    EXPECT_TRUE(world_->waitUntil([&] { return world_->frame(window) == expected; }));
}

TEST_P(AccessibilityContract, MaximizedWindowTakesTheFrame) {
    const int window = world_->openWindow(homeFrame);
    const AccessibilityElementRef found = windowOf(window);
    ASSERT_NE(found, nullptr);
    const Rect before = world_->frame(window);
    world_->maximize(window);
    ASSERT_TRUE(world_->waitUntil([&] { return world_->frame(window).width > before.width; }));
    place(found, zone);
    EXPECT_TRUE(world_->waitUntil([&] { return world_->frame(window) == zone; }));
}

TEST_P(AccessibilityContract, FrozenProgramDelaysNothing) {
    const int window = world_->openWindow(homeFrame);
    world_->freeze(window);
    const double start = world_->now();
    const AccessibilityElementRef found = windowOf(window);
    if (world_->knowsFrozenWindows()) {
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(frameOf(found), world_->frame(window));
        place(found, zone);
    } else {
        EXPECT_EQ(found, nullptr);
    }
    EXPECT_LT(world_->now() - start, 1.0);
}

TEST_P(AccessibilityContract, VanishedWindowGivesErrors) {
    const int window = world_->openWindow(homeFrame);
    const Point spot = center(world_->frame(window));
    const AccessibilityElementRef found = windowAt(spot);
    ASSERT_NE(found, nullptr);
    world_->close(window);
    EXPECT_TRUE(world_->waitUntil([&] { return windowAt(spot) == nullptr; }));
    EXPECT_NE(platform().copyAttributeValue(found, "AXPosition").error, 0);
    EXPECT_NE(platform().copyAttributeValue(found, "AXSize").error, 0);
    EXPECT_NE(platform().copyAttributeValue(found, "AXParent").error, 0);
    EXPECT_NE(platform().setAttributeValue(found, "AXPosition", Point{10, 10}), 0);
    EXPECT_NE(platform().setAttributeValue(found, "AXSize", Size{100, 100}), 0);
}

TEST_P(AccessibilityContract, VanishedWindowLeavesTheOthersUsable) {
    const int other = world_->openWindow(homeFrame);
    const int window = world_->openWindow(homeFrame);
    const AccessibilityElementRef gone = windowOf(window);
    ASSERT_NE(gone, nullptr);
    world_->close(window);
    EXPECT_NE(platform().setAttributeValue(gone, "AXPosition", Point{10, 10}), 0);
    EXPECT_TRUE(world_->waitUntil([&] { return windowOf(other) != nullptr; }));
    place(windowOf(other), zone);
    EXPECT_TRUE(world_->waitUntil([&] { return world_->frame(other) == zone; }));
}

TEST_P(AccessibilityContract, UnknownAttributeIsAnError) {
    const AccessibilityElementRef found = windowOf(world_->openWindow(homeFrame));
    ASSERT_NE(found, nullptr);
    EXPECT_NE(platform().copyAttributeValue(found, "AXNoSuchAttribute").error, 0);
    EXPECT_NE(platform().setAttributeValue(found, "AXNoSuchAttribute", Point{10, 10}), 0);
}

TEST_P(AccessibilityContract, ValueOfTheWrongKindIsRefused) {
    const int window = world_->openWindow(homeFrame);
    const AccessibilityElementRef found = windowOf(window);
    ASSERT_NE(found, nullptr);
    const Rect before = world_->frame(window);
    EXPECT_NE(platform().setAttributeValue(found, "AXPosition", Size{200, 200}), 0);
    EXPECT_NE(platform().setAttributeValue(found, "AXSize", Point{200, 200}), 0);
    EXPECT_NE(platform().setAttributeValue(found, "AXPosition", OtherAccessibilityValue{}), 0);
    world_->settle();
    EXPECT_EQ(world_->frame(window), before);
}

TEST_P(AccessibilityContract, MadeValuesHoldWhatTheyWereMadeOf) {
    const auto point = platform().makePointValue({12, -34});
    const auto size = platform().makeSizeValue({56, 78});
    ASSERT_TRUE(point.has_value());
    ASSERT_TRUE(size.has_value());
    EXPECT_EQ(std::get<Point>(*point), (Point{12, -34}));
    EXPECT_EQ(std::get<Size>(*size), (Size{56, 78}));
}

TEST_P(AccessibilityContract, PointOutsideEveryScreenIsHarmless) {
    world_->openWindow(homeFrame);
    EXPECT_EQ(windowAt({-50000, -50000}), nullptr);
    EXPECT_EQ(windowAt({50000, 50000}), nullptr);
}

} // namespace tarvex::contract
