#include "Platform/Linux/X11/OverlayWindow.h"

#include <utility>

namespace tarvex {

OverlayWindow::OverlayWindow(XWindowPlatform& platform, const WindowAttributes& attributes,
                             std::unique_ptr<OverlaySurface> surface)
    : platform_(&platform), attributes_(attributes) {
    replaceSurface(std::move(surface));
}

OverlayWindow::~OverlayWindow() {
    platform_->forget(*this);
    platform_->giveBack(std::move(surface_));
}

void OverlayWindow::replaceSurface(std::unique_ptr<OverlaySurface> surface) {
    surface_ = std::move(surface);
    if (surface_) {
        surface_->setClickThrough(attributes_.ignoresMouseEvents);
    }
    needsRaising_ = isVisible_;
}

void OverlayWindow::setScene(Scene scene) {
    if (scene == scene_) {
        return;
    }
    scene_ = std::move(scene);
    needsDrawing_ = true;
    if (isVisible_) {
        platform_->scheduleUpdate();
    }
}

void OverlayWindow::orderFront() {
    isVisible_ = true;
    needsRaising_ = true;
    platform_->scheduleUpdate();
}

void OverlayWindow::orderOut() {
    if (std::exchange(isVisible_, false)) {
        platform_->scheduleUpdate();
    }
}

void OverlayWindow::raise() {
    if (isShown()) {
        needsRaising_ = true;
        platform_->scheduleUpdate();
    }
}

bool OverlayWindow::isMisplaced() const {
    return isVisible_ && isShown() && platform_->layout_->layout() != layout_;
}

void OverlayWindow::update() {
    if (!surface_) {
        return;
    }
    if (!isVisible_) {
        surface_->hide();
        return;
    }
    const bool raise = std::exchange(needsRaising_, false);
    const bool drawsAnew = std::exchange(needsDrawing_, false) || !surface_->isShown() || isMisplaced();
    if (drawsAnew) {
        surface_->show(makeImage(), raise);
    } else if (raise) {
        surface_->show(surface_->image(), raise);
    }
    if (surface_->hasExposure()) {
        surface_->repairExposure();
    }
}

OverlayImage OverlayWindow::makeImage() {
    layout_ = platform_->layout_->layout();
    const ScenePlacement placement{attributes_.contentRect, layout_, platform_->accentColor_()};
    Scene whole;
    whole.primitives.emplace_back(FillRect{
        {0, 0, attributes_.contentRect.width, attributes_.contentRect.height}, attributes_.backgroundColor});
    whole.primitives.insert(whole.primitives.end(), scene_.primitives.begin(), scene_.primitives.end());
    return {placement.layout.pixelsOfScreenRect(placement.viewFrame),
            pixelFillsOfScene(whole, placement, surface_->style())};
}

} // namespace tarvex
