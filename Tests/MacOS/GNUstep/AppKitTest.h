#pragma once

#include "Core/Geometry.h"
#include "Platform/MacOS/AppKit/ActivationLoan.h"
#include "Tests/MacOS/GNUstep/AppKitSession.h"
#include "Tests/MacOS/GNUstep/Compatibility.h"
#include "Tests/Support/Simulated/SimulatedMainLoop.h"

#include <gtest/gtest.h>

#import <AppKit/AppKit.h>
#include <string>

namespace tarvex::test {

/// Hands out every event that has arrived.
void handOutEvents();

/// A test in a session that begins before it and ends after it.
class AppKitTest : public ::testing::Test {
protected:
    AppKitTest() = default;
    AppKitTest(const AppKitTest&) = delete;
    AppKitTest& operator=(const AppKitTest&) = delete;
    AppKitTest(AppKitTest&&) = delete;
    AppKitTest& operator=(AppKitTest&&) = delete;
    ~AppKitTest() override;

    /// Everything that was posted is done, and every event that has arrived handed out.
    void endTurn();

    /// The adapters' window that was made last.
    [[nodiscard]] static NSWindow* newestWindow();

    /// Each is an instant after the one before.
    static NSEvent* mouseEvent(NSEventType type, NSWindow* window, const Point& location,
                               NSUInteger flags = 0);

    static NSEvent* keyEvent(NSWindow* window, unsigned short keyCode, NSUInteger flags = 0,
                             NSString* characters = @"x");

    /// Presses and releases the left button there, in the coordinates of the window.
    void click(NSWindow* window, const Point& location);

private:
    /// Before everything that is to be gone at its end.
    AppKitSession session_;

protected:
    SimulatedMainLoop loop_;
    ActivationLoan activation_{loop_};
};

/// What a window was like whenever its picture was handed to the window server.
class HandOvers {
public:
    explicit HandOvers(NSWindow* window);
    HandOvers(const HandOvers&) = delete;
    HandOvers& operator=(const HandOvers&) = delete;
    HandOvers(HandOvers&&) = delete;
    HandOvers& operator=(HandOvers&&) = delete;
    ~HandOvers();

    /// How often it had just been told to draw and was still hidden. GNUstep draws nothing in a hidden
    /// window.
    [[nodiscard]] int good() const { return good_; }

    [[nodiscard]] int all() const { return all_; }

private:
    int good_ = 0;
    int all_ = 0;
};

/// The middle of a control, in the coordinates of its window.
[[nodiscard]] Point middleOf(NSView* view);

/// What a view shows: its pixels, read back from the window's picture.
class ViewPixels {
public:
    explicit ViewPixels(NSView* view);
    ViewPixels(const ViewPixels&) = delete;
    ViewPixels& operator=(const ViewPixels&) = delete;
    ViewPixels(ViewPixels&&) = delete;
    ViewPixels& operator=(ViewPixels&&) = delete;
    ~ViewPixels();

    /// Red, green and blue, as "rrggbb", of the pixel at that point of the view (y up).
    [[nodiscard]] std::string at(int x, int y) const;

    /// How many pixels of the rectangle are not of that colour.
    [[nodiscard]] int countOthers(const Rect& rect, const std::string& color) const;

private:
    NSBitmapImageRep* bitmap_;
};

} // namespace tarvex::test
