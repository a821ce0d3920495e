#pragma once

#include "App/Toolkit/View.h"
#include "Core/Logging/LogPlatform.h"
#include "Platform/Linux/Qt/QtFonts.h"
#include "Platform/Linux/X11/CompositorWatch.h"
#include "Platform/Linux/X11/DesktopSnapshot.h"
#include "Platform/Linux/X11/KeyHold.h"
#include "Platform/Linux/X11/MonitorTracker.h"
#include "Platform/Linux/X11/OverlayVisual.h"
#include "Platform/Linux/X11/PixelFormat.h"
#include "Platform/Linux/X11/StrutTracker.h"
#include "Platform/Linux/X11/ViewSurface.h"
#include "Platform/Linux/X11/XClientResources.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"
#include "Platform/Linux/X11/XModifierMap.h"

#include <QTimer>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tarvex {

class XViewWindow;

/// What such windows may know of their surroundings besides.
struct ViewWindowSurroundings {
    /// Panels; null when there are none to heed. Must outlive the platform.
    StrutTracker* struts = nullptr;
    /// Windows of this program that window managers look after.
    std::vector<XClientResources> managedWindows;
    /// Told when the server cannot show such windows; may be null. Must outlive the platform.
    LogPlatform* log = nullptr;
    /// How long a key that closed a window is kept from the others at most. Nobody holds one that long who
    /// does not mean it, and the server may take a key for down for ever.
    std::chrono::milliseconds longestKeyHold{5000};
};

/// Windows that show a view, on an X screen. They are painted by the toolkit and shown by native windows of
/// our own connection, which the toolkit's scale factor and the window managers leave alone. The desktop
/// shines through where a compositing manager blends windows; elsewhere they show it as it was when they
/// opened. What is asked of them takes effect at the end of the event pump's turn.
class XViewWindowPlatform final : public ViewWindowPlatform {
public:
    /// Gives the system's accent colour, 0xRRGGBB.
    using AccentColor = std::function<std::uint32_t()>;

    /// All that is handed in must outlive the platform, and the platform its windows. There must be an
    /// application object.
    /// @param fonts shared with whoever measures the texts that the views draw
    /// @param accentColor asked whenever a picture is drawn
    XViewWindowPlatform(XConnection& connection, XEventPump& pump, MonitorTracker& monitors, QtFonts& fonts,
                        AccentColor accentColor, ViewWindowSurroundings surroundings = {});

    XViewWindowPlatform(const XViewWindowPlatform&) = delete;
    XViewWindowPlatform& operator=(const XViewWindowPlatform&) = delete;
    XViewWindowPlatform(XViewWindowPlatform&&) = delete;
    XViewWindowPlatform& operator=(XViewWindowPlatform&&) = delete;
    ~XViewWindowPlatform() override;

    [[nodiscard]] std::unique_ptr<ViewWindow> makeViewWindow(const WindowAttributes& attributes,
                                                             View& view) override;

    /// Does nothing: on this desktop only windows come to the front, and each of these does so by itself.
    void activateIgnoringOtherApps() override {}

    /// A menu that may lie over the desktop is closing. Where nobody composes the screen, a window that is
    /// opened within a moment waits until others have painted what the menu covered.
    void noteMenuClosing() { menuClosing_ = Clock::now(); }

private:
    friend class XViewWindow;

    using Clock = std::chrono::steady_clock;

    /// How long others get to paint again what was covered.
    static constexpr std::chrono::milliseconds paintTime{200};

    /// A visual and how the server wants its pixels.
    struct SurfaceKind {
        std::unique_ptr<OverlayVisual> visual;
        std::optional<PixelFormat> format;

        explicit operator bool() const { return visual && format; }
    };

    [[nodiscard]] SurfaceKind findKind(OverlayStyle style) const;

    [[nodiscard]] bool isBlending() const { return compositor_.isBlending() && blended_; }

    /// Null when the server cannot show such windows.
    [[nodiscard]] std::unique_ptr<ViewSurface> makeSurface(const PixelRect& frame);

    /// The screen as it is, or as it was before a window at that place closed in this very turn, since others
    /// have not painted there again yet.
    [[nodiscard]] DesktopSnapshot takeSnapshot(const PixelRect& frame);
    void giveBack(DesktopSnapshot snapshot);
    /// How long a snapshot of that place must wait to show what is there.
    [[nodiscard]] std::chrono::milliseconds paintTimeLeft(const PixelRect& frame) const;
    /// Keeps a key that is down from all other windows.
    void hold(xcb_keycode_t key);
    void forget(const XViewWindow& window);
    void handleCompositorChange();
    void handleTurnEnd();

    XConnection* connection_;
    XEventPump* pump_;
    ViewWindowSurroundings surroundings_;
    MonitorTracker* monitors_;
    QtFonts* fonts_;
    AccentColor accentColor_;
    XModifierMap modifiers_;
    SurfaceKind blended_;
    SurfaceKind opaque_;
    CompositorWatch compositor_;
    std::vector<XViewWindow*> windows_;
    std::optional<DesktopSnapshot> lastSnapshot_;
    std::optional<Clock::time_point> menuClosing_;
    /// The key whose press a view is being told of.
    std::optional<xcb_keycode_t> keyInProgress_;
    std::unique_ptr<KeyHold> keyHold_;
    QTimer keyHoldLimit_;
    std::vector<std::unique_ptr<XEventPump::Subscription>> subscriptions_;
};

} // namespace tarvex
