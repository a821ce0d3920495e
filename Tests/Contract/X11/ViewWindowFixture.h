#pragma once

#include "App/Toolkit/View.h"
#include "Platform/Linux/Qt/QtFonts.h"
#include "Platform/Linux/Qt/XViewWindowPlatform.h"
#include "Platform/Linux/X11/StrutTracker.h"
#include "Tests/Contract/X11/MainLoopApplication.h"
#include "Tests/Contract/X11/OverlayAdapters.h"
#include "Tests/Contract/X11/OverlayFixture.h"
#include "Tests/Support/X11/Keyboard.h"
#include "Tests/Support/X11/Pointer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace tarvex {

inline bool operator==(const MouseEvent& one, const MouseEvent& other) {
    return one.location == other.location && one.modifierFlags == other.modifierFlags;
}

inline bool operator==(const KeyEvent& one, const KeyEvent& other) {
    return one.keyCode == other.keyCode && one.modifierFlags == other.modifierFlags;
}

inline std::ostream& operator<<(std::ostream& stream, const MouseEvent& event) {
    return stream << "(" << event.location.x << ", " << event.location.y << ") " << event.modifierFlags;
}

} // namespace tarvex

namespace tarvex::contract {

/// Remembers what it is told.
class RecordingView final : public View {
public:
    [[nodiscard]] Scene draw() override {
        ++draws;
        return scene;
    }

    [[nodiscard]] Form form() override { return controls; }

    void mouseMoved(const MouseEvent& event) override { note(moved, event); }

    void mouseDown(const MouseEvent& event) override { note(down, event); }

    void mouseDragged(const MouseEvent& event) override { note(dragged, event); }

    void mouseUp(const MouseEvent& event) override { note(up, event); }

    void rightMouseDown(const MouseEvent& event) override { note(rightDown, event); }

    bool keyDown(const KeyEvent& event) override {
        note(keys, event);
        return true;
    }

    void controlActivated(const std::string& id) override { note(activated, id); }

    void screensChanged() override {
        ++screenChanges;
        reaction();
    }

    /// How often it was told anything by the pointer, the control events left out.
    [[nodiscard]] std::size_t pressCount() const {
        return down.size() + dragged.size() + up.size() + rightDown.size();
    }

    Scene scene;
    Form controls;
    /// Called by every event, after it has been noted.
    std::function<void()> reaction = [] {};
    int draws = 0;
    int screenChanges = 0;
    std::vector<MouseEvent> moved;
    std::vector<MouseEvent> down;
    std::vector<MouseEvent> dragged;
    std::vector<MouseEvent> up;
    std::vector<MouseEvent> rightDown;
    std::vector<KeyEvent> keys;
    std::vector<std::string> activated;

private:
    template <typename Event>
    void note(std::vector<Event>& events, const Event& event) {
        events.push_back(event);
        // It may replace itself.
        const std::function<void()> react = reaction;
        react();
    }
};

/// The native window that shows a view, of all the adapter's windows; XCB_WINDOW_NONE for none.
inline xcb_window_t findViewWindow(test::XClient& client, const XOverlayAdapters& adapters) {
    for (const xcb_window_t window : client.children(client.root())) {
        if (adapters.owns(window) && client.text(window, "_NET_WM_NAME") == "Tarvex Zones Editor") {
            return window;
        }
    }
    return XCB_WINDOW_NONE;
}

inline xcb_window_t focusedWindow(test::XClient& client) {
    const test::Owned<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(client.connection(), xcb_get_input_focus(client.connection()), nullptr));
    return focus ? focus->focus : xcb_window_t{XCB_WINDOW_NONE};
}

inline Control makeButton(std::string id, const Rect& frame) {
    Control control;
    control.kind = ControlKind::pushButton;
    control.id = std::move(id);
    control.frame = frame;
    control.text = "Use";
    control.buttonStyle = ButtonStyle{};
    control.buttonStyle->backgroundColor = Color{ColorName::gray, 1, 0.2};
    return control;
}

/// A world with one view window over the root pixels from (100, 200) to (700, 600). The parameter is who
/// composes the screen at the start.
class ViewWindowTest : public ::testing::TestWithParam<Composition> {
protected:
    void SetUp() override { start(GetParam()); }

    void TearDown() override {
        window_.reset();
        platform_.reset();
        struts_.reset();
        desktop_.reset();
    }

    void start(Composition composition) {
        desktop_ = std::make_unique<OverlayDesktop>(composition);
        XOverlayAdapters& adapters = desktop_->adapters;
        struts_ = std::make_unique<StrutTracker>(*adapters.connection, adapters.pump);
        ViewWindowSurroundings surroundings;
        surroundings.struts = struts_.get();
        platform_ = std::make_unique<XViewWindowPlatform>(
            *adapters.connection, adapters.pump, adapters.monitors, fonts_, [] { return accentColor; },
            surroundings);
        adapters.catchUp();
        // The answer about a manager that composes the screen already takes until it has drawn.
        desktop_->settle();
    }

    void open() {
        WindowAttributes attributes;
        attributes.contentRect = frame_;
        window_ = platform_->makeViewWindow(attributes, view_);
        window_->makeKeyAndOrderFront();
        desktop_->settle();
    }

    void redraw(Scene scene) {
        view_.scene = std::move(scene);
        window_->setNeedsDisplay();
        desktop_->settle();
    }

    /// Keeps the connection's events and the timers going meanwhile.
    bool waitUntil(const std::function<bool()>& condition) {
        return desktop_->adapters.waitUntil([&] {
            application_.settle();
            return condition();
        });
    }

    void raise(test::TestWindow& window) {
        // To raise one that is on top already would be no news to anybody.
        for (const std::uint32_t mode : {XCB_STACK_MODE_BELOW, XCB_STACK_MODE_ABOVE}) {
            xcb_configure_window(window.client().connection(), window.id(), XCB_CONFIG_WINDOW_STACK_MODE,
                                 &mode);
        }
        window.client().sync();
        desktop_->settle();
    }

    /// From now on the window's program counts as the window manager, and the window as one of its frames.
    void makeManagersAndRaise(test::TestWindow& window) {
        desktop_->client.setWords(desktop_->client.root(), "_NET_SUPPORTING_WM_CHECK", "WINDOW",
                                  {window.id()});
        desktop_->client.sync();
        raise(window);
    }

    /// The colour on the screen at a pixel of the view, counted from its top-left.
    std::uint32_t pixel(int x, int y) { return desktop_->pixel({100 + x, 200 + y}); }

    /// The root pixel of one of the view.
    static test::PixelPoint at(int x, int y) { return {100 + x, 200 + y}; }

    xcb_window_t native() { return findViewWindow(desktop_->client, desktop_->adapters); }

    const Rect frame_{100, OverlayDesktop::height - 600, 600, 400};
    const Rect whole_{0, 0, 600, 400};
    MainLoopApplication application_;
    QtFonts fonts_;
    std::unique_ptr<OverlayDesktop> desktop_;
    std::unique_ptr<StrutTracker> struts_;
    std::unique_ptr<XViewWindowPlatform> platform_;
    RecordingView view_;
    std::unique_ptr<ViewWindow> window_;
};

} // namespace tarvex::contract
