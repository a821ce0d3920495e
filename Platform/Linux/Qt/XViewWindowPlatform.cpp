#include "Platform/Linux/Qt/XViewWindowPlatform.h"

#include "Platform/Linux/Qt/XViewWindow.h"

#include <algorithm>
#include <utility>

namespace tarvex {

XViewWindowPlatform::XViewWindowPlatform(XConnection& connection, XEventPump& pump, MonitorTracker& monitors,
                                         QtFonts& fonts, AccentColor accentColor,
                                         ViewWindowSurroundings surroundings)
    : connection_(&connection),
      pump_(&pump),
      surroundings_(std::move(surroundings)),
      monitors_(&monitors),
      fonts_(&fonts),
      accentColor_(std::move(accentColor)),
      modifiers_(connection),
      blended_(findKind(OverlayStyle::blended)),
      opaque_(findKind(OverlayStyle::shaped)),
      compositor_(connection, pump, [this] { handleCompositorChange(); }) {
    if (!opaque_ && surroundings_.log != nullptr) {
        surroundings_.log->systemLog(
            "The X server has no usable true-colour visual; the zone editor stays invisible");
    }
    subscriptions_.push_back(pump.subscribe(
        XCB_MAPPING_NOTIFY, [this](const xcb_generic_event_t& /*event*/) { modifiers_.invalidate(); }));
    subscriptions_.push_back(pump.subscribeTurnEnd([this] { handleTurnEnd(); }));
    keyHoldLimit_.setSingleShot(true);
    keyHoldLimit_.setInterval(surroundings_.longestKeyHold);
    QObject::connect(&keyHoldLimit_, &QTimer::timeout, &keyHoldLimit_, [this] {
        keyHold_.reset();
        connection_->flush();
    });
}

XViewWindowPlatform::~XViewWindowPlatform() = default;

std::unique_ptr<ViewWindow> XViewWindowPlatform::makeViewWindow(const WindowAttributes& attributes,
                                                                View& view) {
    auto window = std::make_unique<XViewWindow>(*this, attributes, view);
    windows_.push_back(window.get());
    return window;
}

XViewWindowPlatform::SurfaceKind XViewWindowPlatform::findKind(OverlayStyle style) const {
    SurfaceKind kind;
    kind.visual = OverlayVisual::choose(*connection_, style);
    if (kind.visual) {
        kind.format = PixelFormat::find(*connection_, kind.visual->depth(), kind.visual->id());
    }
    return kind;
}

std::unique_ptr<ViewSurface> XViewWindowPlatform::makeSurface(const PixelRect& frame) {
    const SurfaceKind& kind = isBlending() ? blended_ : opaque_;
    const OverlayStyle style = isBlending() ? OverlayStyle::blended : OverlayStyle::shaped;
    return kind ? std::make_unique<ViewSurface>(*connection_, *kind.visual, *kind.format, style, frame)
                : nullptr;
}

DesktopSnapshot XViewWindowPlatform::takeSnapshot(const PixelRect& frame) {
    if (lastSnapshot_ && lastSnapshot_->frame == frame) {
        return *std::exchange(lastSnapshot_, std::nullopt);
    }
    return takeDesktopSnapshot(*connection_, frame, *opaque_.format);
}

void XViewWindowPlatform::giveBack(DesktopSnapshot snapshot) {
    lastSnapshot_ = std::move(snapshot);
}

std::chrono::milliseconds XViewWindowPlatform::paintTimeLeft(const PixelRect& frame) const {
    if (isBlending() || !menuClosing_ || (lastSnapshot_ && lastSnapshot_->frame == frame)) {
        return std::chrono::milliseconds::zero();
    }
    const auto left = *menuClosing_ + paintTime - Clock::now();
    return std::max(std::chrono::ceil<std::chrono::milliseconds>(left), std::chrono::milliseconds::zero());
}

void XViewWindowPlatform::hold(xcb_keycode_t key) {
    keyHold_ = std::make_unique<KeyHold>(*connection_, *pump_, key);
    keyHoldLimit_.start();
}

void XViewWindowPlatform::handleTurnEnd() {
    lastSnapshot_.reset();
    if (keyHold_ && keyHold_->isOver()) {
        keyHold_.reset();
        keyHoldLimit_.stop();
    }
}

void XViewWindowPlatform::forget(const XViewWindow& window) {
    std::erase(windows_, &window);
}

void XViewWindowPlatform::handleCompositorChange() {
    for (XViewWindow* window : windows_) {
        window->noteCompositorChange();
    }
}

} // namespace tarvex
