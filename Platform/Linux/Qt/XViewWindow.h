#pragma once

#include "App/Toolkit/View.h"
#include "Platform/Linux/Qt/ViewPicture.h"
#include "Platform/Linux/Qt/XViewWindowPlatform.h"
#include "Platform/Linux/X11/DesktopSnapshot.h"
#include "Platform/Linux/X11/KeyboardKeeper.h"
#include "Platform/Linux/X11/TopmostKeeper.h"
#include "Platform/Linux/X11/ViewInput.h"
#include "Platform/Linux/X11/ViewSurface.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <QTimer>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
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

    [[nodiscard]] Rect frame() const override;

    void setNeedsDisplay() override { needsDisplay_ = true; }

    void makeKeyAndOrderFront() override;

    /// The way in which the screen is composed has changed: another native window is due.
    void noteCompositorChange() { needsNewSurface_ = surface_ != nullptr; }

private:
    /// A monitor below the window. All on the root window, wherever screen space begins.
    struct Ground {
        std::uint32_t monitor = 0;
        PixelRect area;
        /// What panels leave of it.
        PixelRect visibleArea;

        bool operator==(const Ground&) const = default;
    };

    /// When monitors and panels last changed.
    struct Revision {
        std::uint64_t monitors = 0;
        std::uint64_t panels = 0;

        bool operator==(const Revision&) const = default;
    };

    [[nodiscard]] Revision findRevision() const;
    [[nodiscard]] std::vector<Ground> findGrounds() const;
    /// False when a callback destroyed the window.
    [[nodiscard]] bool noteScreens();
    [[nodiscard]] bool tellScreensChanged();
    void handleFrameTimer();
    void subscribe();
    template <typename Event>
    void on(std::uint8_t type, void (XViewWindow::*handler)(const Event&));

    /// Shows the window for the first time, or anew, when others have had that time to paint below it.
    void showAfter(std::chrono::milliseconds paintTime);
    void handlePaintTimer();
    void open();
    void noteComposition();
    void replaceSurface();
    void makePicture();
    [[nodiscard]] bool isOurs(xcb_window_t window) const;

    void handlePress(const xcb_button_press_event_t& event);
    void handleRelease(const xcb_button_press_event_t& event);
    void handleMotion(const xcb_motion_notify_event_t& event);
    void handleEnter(const xcb_enter_notify_event_t& event);
    void handleLeave(const xcb_leave_notify_event_t& event);
    void handleKey(const xcb_key_press_event_t& event);
    void handleExpose(const xcb_expose_event_t& event);

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
    /// Screen space as it was then.
    DesktopLayout layout_;
    Revision revision_;
    std::vector<Ground> grounds_;
    std::unique_ptr<ViewSurface> surface_;
    std::unique_ptr<ViewPicture> picture_;
    std::optional<DesktopSnapshot> snapshot_;
    std::unique_ptr<TopmostKeeper> topmost_;
    std::unique_ptr<KeyboardKeeper> keyboard_;
    bool needsDisplay_ = true;
    bool needsNewSurface_ = false;
    std::vector<std::unique_ptr<XEventPump::Subscription>> subscriptions_;
    /// Runs while the screen is left to others, so that they paint what the window has covered.
    QTimer paintTimer_;
    /// Runs while panels keep free something else than when the window was shown.
    QTimer frameTimer_;
    /// Ends with the window, which tells a handler that a callback destroyed it.
    std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);
};

} // namespace tarvex
