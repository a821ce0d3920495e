#pragma once

#include "App/Toolkit/View.h"
#include "Platform/Linux/Qt/ViewPicture.h"
#include "Platform/Linux/Qt/XViewWindowPlatform.h"
#include "Platform/Linux/X11/DesktopSnapshot.h"
#include "Platform/Linux/X11/KeyboardLoan.h"
#include "Platform/Linux/X11/TopmostKeeper.h"
#include "Platform/Linux/X11/ViewInput.h"
#include "Platform/Linux/X11/ViewSurface.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace tarvex {

/// A window of the platform: a native window that no window manager lays out, so that it covers its frame to
/// the pixel.
class XViewWindow final : public ViewWindow {
public:
    XViewWindow(XViewWindowPlatform& platform, const WindowAttributes& attributes, View& view);
    XViewWindow(const XViewWindow&) = delete;
    XViewWindow& operator=(const XViewWindow&) = delete;
    XViewWindow(XViewWindow&&) = delete;
    XViewWindow& operator=(XViewWindow&&) = delete;
    ~XViewWindow() override;

    [[nodiscard]] Rect frame() const override { return attributes_.contentRect; }

    void setNeedsDisplay() override { needsDisplay_ = true; }

    void makeKeyAndOrderFront() override;

    /// The way in which the screen is composed has changed: another native window is due.
    void noteCompositorChange() { needsNewSurface_ = surface_ != nullptr; }

private:
    /// Where the window belongs, and the monitors there with their numbers.
    struct Place {
        PixelRect frame;
        std::vector<std::pair<std::uint32_t, PixelRect>> monitors;

        bool operator==(const Place&) const = default;
    };

    [[nodiscard]] Place findPlace();
    /// False when a callback destroyed the window.
    [[nodiscard]] bool noteMonitors();
    void takeKeyboard();
    void subscribe();
    template <typename Event>
    void on(std::uint8_t type, void (XViewWindow::*handler)(const Event&));

    void open();
    void replaceSurface();
    void showSurface();
    [[nodiscard]] bool isOurs(xcb_window_t window) const;

    void handlePress(const xcb_button_press_event_t& event);
    void handleRelease(const xcb_button_press_event_t& event);
    void handleMotion(const xcb_motion_notify_event_t& event);
    void handleLeave(const xcb_leave_notify_event_t& event);
    void handleKey(const xcb_key_press_event_t& event);
    void handleExpose(const xcb_expose_event_t& event);
    void handleFocusChange(const xcb_focus_in_event_t& event);

    void endTurn();
    void drawIfNeeded();
    [[nodiscard]] PictureView pictureView() const;

    /// The centre of a pixel of the window.
    [[nodiscard]] MouseEvent mouseEventAt(int x, int y, std::uint32_t state);

    XViewWindowPlatform* platform_;
    WindowAttributes attributes_;
    View* view_;
    ViewInput input_;
    /// On the root window, as it was when the window was shown.
    PixelRect pixelFrame_;
    std::uint64_t monitorRevision_;
    std::optional<Place> place_;
    std::unique_ptr<ViewSurface> surface_;
    std::unique_ptr<ViewPicture> picture_;
    std::optional<DesktopSnapshot> snapshot_;
    std::optional<KeyboardLoan> keyboard_;
    std::optional<TopmostKeeper> topmost_;
    bool needsDisplay_ = true;
    bool needsNewSurface_ = false;
    bool hasKeyboard_ = false;
    std::vector<std::unique_ptr<XEventPump::Subscription>> subscriptions_;
    /// Ends with the window, which tells a handler that a callback destroyed it.
    std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);
};

} // namespace tarvex
