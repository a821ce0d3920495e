#pragma once

#include "App/Toolkit/Window.h"
#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/OverlaySurface.h"
#include "Platform/Linux/X11/XWindowPlatform.h"

#include <memory>

namespace tarvex {

/// A window of the platform. It notes what it should look like; the platform has it brought about.
class OverlayWindow final : public Window {
public:
    OverlayWindow(XWindowPlatform& platform, const WindowAttributes& attributes,
                  std::unique_ptr<OverlaySurface> surface);
    OverlayWindow(const OverlayWindow&) = delete;
    OverlayWindow& operator=(const OverlayWindow&) = delete;
    OverlayWindow(OverlayWindow&&) = delete;
    OverlayWindow& operator=(OverlayWindow&&) = delete;
    ~OverlayWindow() override;

    [[nodiscard]] Rect frame() const override { return attributes_.contentRect; }

    void setScene(Scene scene) override;
    void orderFront() override;
    void orderOut() override;

    /// Brings it above all other windows again if it is shown.
    void raise();

    [[nodiscard]] bool isShown() const { return surface_ && surface_->isShown(); }

    /// Null when the server cannot show overlays.
    [[nodiscard]] OverlaySurface* surface() const { return surface_.get(); }

    /// Goes on with another native window, not yet shown; null when the server cannot show overlays.
    void replaceSurface(std::unique_ptr<OverlaySurface> surface);

    /// Whether it stands where an earlier layout of the desktop had its frame.
    [[nodiscard]] bool isMisplaced() const;

    /// Brings about what was asked for since the last time.
    void update();

private:
    [[nodiscard]] OverlayImage makeImage();

    XWindowPlatform* platform_;
    WindowAttributes attributes_;
    std::unique_ptr<OverlaySurface> surface_;
    Scene scene_;
    /// That of the last drawing.
    DesktopLayout layout_;
    bool isVisible_ = false;
    bool needsDrawing_ = true;
    bool needsRaising_ = false;
};

} // namespace tarvex
