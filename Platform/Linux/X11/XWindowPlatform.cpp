#include "Platform/Linux/X11/XWindowPlatform.h"

#include "Platform/Linux/X11/OverlayWindow.h"

#include <xcb/shape.h>

#include <algorithm>
#include <utility>

namespace tarvex {

XWindowPlatform::XWindowPlatform(XConnection& connection, XEventPump& pump, MainLoop& mainLoop,
                                 DesktopLayoutProvider& layout, AccentColor accentColor, LogPlatform* log)
    : connection_(&connection),
      layout_(&layout),
      accentColor_(std::move(accentColor)),
      compositor_(connection, pump, [this] { handleCompositorChange(); }),
      stacking_(connection, pump, mainLoop, [this] { keepOnTop(); }) {
    if (connection.extension(xcb_shape_id) != nullptr) {
        blendedVisual_ = OverlayVisual::choose(connection, OverlayStyle::blended);
        shapedVisual_ = OverlayVisual::choose(connection, OverlayStyle::shaped);
    }
    if (!shapedVisual_ && log != nullptr) {
        log->systemLog("The X server has no SHAPE extension or no true-colour visual; zones stay invisible");
    }
    giveBack(makeSurface());
    subscriptions_.push_back(
        pump.subscribe(XCB_EXPOSE, [this](const xcb_generic_event_t& event) { handleExpose(event); }));
    subscriptions_.push_back(pump.subscribeTurnEnd([this] { endTurn(); }));
}

XWindowPlatform::~XWindowPlatform() = default;

std::unique_ptr<Window> XWindowPlatform::makeWindow(const WindowAttributes& attributes) {
    auto window = std::make_unique<OverlayWindow>(*this, attributes, takeSurface());
    windows_.push_back(window.get());
    return window;
}

std::unique_ptr<OverlaySurface> XWindowPlatform::makeSurface() const {
    const bool isBlended = compositor_.isBlending() && blendedVisual_;
    const OverlayVisual* visual = isBlended ? blendedVisual_.get() : shapedVisual_.get();
    if (visual == nullptr) {
        return nullptr;
    }
    const OverlayStyle style = isBlended ? OverlayStyle::blended : OverlayStyle::shaped;
    return std::make_unique<OverlaySurface>(*connection_, *visual, style);
}

std::unique_ptr<OverlaySurface> XWindowPlatform::takeSurface() {
    if (spare_.empty()) {
        return makeSurface();
    }
    auto surface = std::move(spare_.back());
    spare_.pop_back();
    return surface;
}

void XWindowPlatform::giveBack(std::unique_ptr<OverlaySurface> surface) {
    if (surface) {
        // It is hidden at the end of the turn unless a new window has taken it over by then.
        spare_.push_back(std::move(surface));
        scheduleUpdate();
    }
}

void XWindowPlatform::forget(const OverlayWindow& window) {
    std::erase(windows_, &window);
}

void XWindowPlatform::handleCompositorChange() {
    // The other style has another visual, and there are compositing managers that never draw anew what was
    // there before them.
    spare_.clear();
    giveBack(makeSurface());
    for (OverlayWindow* window : windows_) {
        window->replaceSurface(makeSurface());
    }
}

void XWindowPlatform::watchStacking() {
    const bool isAnyShown = std::any_of(windows_.begin(), windows_.end(),
                                        [](const OverlayWindow* window) { return window->isShown(); });
    if (isAnyShown) {
        stacking_.start();
    } else {
        stacking_.stop();
    }
}

void XWindowPlatform::keepOnTop() {
    for (OverlayWindow* window : windows_) {
        window->raise();
    }
}

void XWindowPlatform::handleExpose(const xcb_generic_event_t& event) {
    const auto& expose = reinterpret_cast<const xcb_expose_event_t&>(event);
    for (OverlayWindow* window : windows_) {
        if (window->surface() != nullptr && window->surface()->window() == expose.window) {
            window->surface()->noteExposure(expose, event.full_sequence);
            scheduleUpdate();
        }
    }
}

void XWindowPlatform::endTurn() {
    // A frame stays the same when the monitor that it hangs on moves; its pixels do not.
    const bool hasMisplaced = std::any_of(windows_.begin(), windows_.end(),
                                          [](const OverlayWindow* window) { return window->isMisplaced(); });
    if (!std::exchange(needsUpdate_, false) && !hasMisplaced) {
        return;
    }
    for (OverlayWindow* window : windows_) {
        window->update();
    }
    watchStacking();
    for (const auto& surface : spare_) {
        surface->hide();
    }
    spare_.resize(std::min<std::size_t>(spare_.size(), 1));
}

} // namespace tarvex
