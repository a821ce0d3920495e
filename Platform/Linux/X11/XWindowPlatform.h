#pragma once

#include "App/Toolkit/MainLoop.h"
#include "App/Toolkit/Window.h"
#include "Core/Logging/LogPlatform.h"
#include "Platform/Linux/X11/CompositorWatch.h"
#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/OverlaySurface.h"
#include "Platform/Linux/X11/OverlayVisual.h"
#include "Platform/Linux/X11/StackingWatch.h"
#include "Platform/Linux/X11/SystemPalette.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace tarvex {

class OverlayWindow;

/// Overlay windows on an X screen, above all that is shown there, also later. Whatever is asked of them takes
/// effect at the end of the event pump's turn, and so does a new layout of the desktop.
class XWindowPlatform final : public WindowPlatform {
public:
    /// Gives the system's accent colour, 0xRRGGBB.
    using AccentColor = std::function<std::uint32_t()>;

    static constexpr std::uint32_t defaultAccentColor = systemBlue;

    /// All that is handed in must outlive the platform, and the platform its windows.
    /// @param accentColor asked whenever a picture is drawn
    /// @param log told when the server cannot show overlays; may be null
    XWindowPlatform(
        XConnection& connection, XEventPump& pump, MainLoop& mainLoop, DesktopLayoutProvider& layout,
        AccentColor accentColor = [] { return defaultAccentColor; }, LogPlatform* log = nullptr);

    XWindowPlatform(const XWindowPlatform&) = delete;
    XWindowPlatform& operator=(const XWindowPlatform&) = delete;
    XWindowPlatform(XWindowPlatform&&) = delete;
    XWindowPlatform& operator=(XWindowPlatform&&) = delete;
    ~XWindowPlatform() override;

    [[nodiscard]] std::unique_ptr<Window> makeWindow(const WindowAttributes& attributes) override;

private:
    friend class OverlayWindow;

    [[nodiscard]] std::unique_ptr<OverlaySurface> makeSurface() const;
    [[nodiscard]] std::unique_ptr<OverlaySurface> takeSurface();
    void giveBack(std::unique_ptr<OverlaySurface> surface);
    void forget(const OverlayWindow& window);

    void scheduleUpdate() { needsUpdate_ = true; }

    void handleCompositorChange();
    void watchStacking();
    void keepOnTop();
    void handleExpose(const xcb_generic_event_t& event);
    void endTurn();

    XConnection* connection_;
    DesktopLayoutProvider* layout_;
    AccentColor accentColor_;
    /// Null where the server has no such visual.
    std::unique_ptr<OverlayVisual> blendedVisual_;
    std::unique_ptr<OverlayVisual> shapedVisual_;
    CompositorWatch compositor_;
    StackingWatch stacking_;
    std::vector<OverlayWindow*> windows_;
    /// Native windows that no window uses. One is always at hand, so that the first overlay is as quick as
    /// any.
    std::vector<std::unique_ptr<OverlaySurface>> spare_;
    bool needsUpdate_ = false;
    std::vector<std::unique_ptr<XEventPump::Subscription>> subscriptions_;
};

} // namespace tarvex
