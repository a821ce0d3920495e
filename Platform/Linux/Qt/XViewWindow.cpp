#include "Platform/Linux/Qt/XViewWindow.h"

#include "Platform/Linux/X11/OverlayParking.h"
#include "Platform/Linux/X11/VirtualKeyCodes.h"

#include <cstring>
#include <utility>

namespace tarvex {

namespace {

constexpr std::uint8_t leftButton = 1;
constexpr std::uint8_t rightButton = 3;
/// Those that are held down, not the ones of a wheel.
constexpr std::uint32_t heldButtons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;

QImage imageOf(const DesktopSnapshot& snapshot) {
    QImage image(snapshot.frame.width, snapshot.frame.height, QImage::Format_RGB32);
    if (!image.isNull()) {
        std::memcpy(image.bits(), snapshot.pixels.data(), snapshot.pixels.size() * sizeof(std::uint32_t));
    }
    return image;
}

} // namespace

XViewWindow::XViewWindow(XViewWindowPlatform& platform, const WindowAttributes& attributes, View& view)
    : platform_(&platform),
      attributes_(attributes),
      view_(&view),
      input_(view, [this] { setNeedsDisplay(); }),
      monitorRevision_(platform.monitors_->revision()) {}

XViewWindow::~XViewWindow() {
    platform_->forget(*this);
    if (keyboard_ && surface_) {
        keyboard_->giveBack(surface_->window());
    }
    if (snapshot_) {
        platform_->giveBack(std::move(*snapshot_));
    }
    // The program may be about to end.
    platform_->connection_->flush();
}

void XViewWindow::makeKeyAndOrderFront() {
    if (!surface_) {
        open();
    }
    if (surface_) {
        showSurface();
    }
}

void XViewWindow::open() {
    place_ = findPlace();
    pixelFrame_ = place_->frame;
    if (pixelFrame_.width <= 0 || pixelFrame_.height <= 0) {
        return;
    }
    surface_ = platform_->makeSurface(pixelFrame_);
    if (!surface_) {
        return;
    }
    // Another keyboard may have been plugged in since the last time.
    platform_->modifiers_.invalidate();
    if (surface_->style() == OverlayStyle::shaped) {
        snapshot_ = platform_->takeSnapshot(pixelFrame_);
    }
    keyboard_.emplace(*platform_->connection_);
    topmost_.emplace(*platform_->connection_, *platform_->pump_);
    picture_ = std::make_unique<ViewPicture>(QSize(pixelFrame_.width, pixelFrame_.height),
                                             snapshot_ ? imageOf(*snapshot_) : QImage(), *platform_->fonts_);
    subscribe();
}

void XViewWindow::replaceSurface() {
    auto surface = platform_->makeSurface(pixelFrame_);
    if (!surface) {
        return;
    }
    // What lies below has not been painted again yet where nobody composes the screen any more.
    snapshot_ =
        surface->style() == OverlayStyle::shaped ? std::optional(plainDesktop(pixelFrame_)) : std::nullopt;
    picture_ = std::make_unique<ViewPicture>(QSize(pixelFrame_.width, pixelFrame_.height),
                                             snapshot_ ? imageOf(*snapshot_) : QImage(), *platform_->fonts_);
    // The new one has the keyboard before the old one goes, so that nobody else gets it in between.
    const bool keepsKeyboard = hasKeyboard_;
    std::swap(surface_, surface);
    surface_->show();
    if (keepsKeyboard) {
        takeKeyboard();
    }
    needsDisplay_ = true;
}

void XViewWindow::showSurface() {
    surface_->show();
    takeKeyboard();
    needsDisplay_ = true;
    platform_->connection_->flush();
}

XViewWindow::Place XViewWindow::findPlace() {
    Place place{platform_->monitors_->layout().pixelsOfScreenRect(attributes_.contentRect), {}};
    const PixelRect& frame = place.frame;
    for (const Monitor& monitor : platform_->monitors_->monitors()) {
        const PixelRect& area = monitor.area;
        if (area.x < frame.right() && frame.x < area.right() && area.y < frame.bottom() &&
            frame.y < area.bottom()) {
            place.monitors.emplace_back(monitor.number, area);
        }
    }
    return place;
}

bool XViewWindow::noteMonitors() {
    const std::uint64_t revision = platform_->monitors_->revision();
    // What happens to other monitors is no business of this window.
    if (std::exchange(monitorRevision_, revision) == revision || findPlace() == place_) {
        return true;
    }
    const std::weak_ptr<const bool> life = life_;
    view_->screensChanged();
    return !life.expired();
}

void XViewWindow::takeKeyboard() {
    keyboard_->give(surface_->window());
    // The notice of it comes later; until then another native window may have to take it over.
    hasKeyboard_ = true;
}

template <typename Event>
void XViewWindow::on(std::uint8_t type, void (XViewWindow::*handler)(const Event&)) {
    subscriptions_.push_back(
        platform_->pump_->subscribe(type, [this, handler](const xcb_generic_event_t& event) {
            (this->*handler)(reinterpret_cast<const Event&>(event));
        }));
}

void XViewWindow::subscribe() {
    on(XCB_BUTTON_PRESS, &XViewWindow::handlePress);
    on(XCB_BUTTON_RELEASE, &XViewWindow::handleRelease);
    on(XCB_MOTION_NOTIFY, &XViewWindow::handleMotion);
    on(XCB_LEAVE_NOTIFY, &XViewWindow::handleLeave);
    on(XCB_KEY_PRESS, &XViewWindow::handleKey);
    on(XCB_EXPOSE, &XViewWindow::handleExpose);
    on(XCB_FOCUS_IN, &XViewWindow::handleFocusChange);
    on(XCB_FOCUS_OUT, &XViewWindow::handleFocusChange);
    subscriptions_.push_back(platform_->pump_->subscribeTurnEnd([this] { endTurn(); }));
}

bool XViewWindow::isOurs(xcb_window_t window) const {
    return surface_ && surface_->window() == window;
}

MouseEvent XViewWindow::mouseEventAt(int x, int y, std::uint32_t state) {
    return {{x + 0.5, pixelFrame_.height - (y + 0.5)}, platform_->modifiers_.eventFlags(state)};
}

void XViewWindow::handlePress(const xcb_button_press_event_t& event) {
    if (!isOurs(event.event)) {
        return;
    }
    if (!hasKeyboard_) {
        keyboard_->borrowAnew();
        takeKeyboard();
    }
    const MouseEvent mouse = mouseEventAt(event.event_x, event.event_y, event.state);
    if (event.detail == leftButton) {
        input_.pressLeft(mouse);
    } else if (event.detail == rightButton) {
        input_.pressRight(mouse);
    }
}

void XViewWindow::handleRelease(const xcb_button_press_event_t& event) {
    if (isOurs(event.event) && event.detail == leftButton) {
        input_.releaseLeft(mouseEventAt(event.event_x, event.event_y, event.state));
    }
}

void XViewWindow::handleMotion(const xcb_motion_notify_event_t& event) {
    if (isOurs(event.event)) {
        input_.move(mouseEventAt(event.event_x, event.event_y, event.state),
                    (event.state & XCB_BUTTON_MASK_1) != 0, (event.state & heldButtons) != 0);
    }
}

void XViewWindow::handleLeave(const xcb_leave_notify_event_t& event) {
    if (!isOurs(event.event) || (event.state & heldButtons) != 0) {
        return;
    }
    MouseEvent mouse = mouseEventAt(event.event_x, event.event_y, event.state);
    const Rect bounds{0, 0, static_cast<double>(pixelFrame_.width), static_cast<double>(pixelFrame_.height)};
    if (bounds.contains(mouse.location)) {
        // Another window came under the pointer: for the view it is as good as gone.
        mouse.location = {-1, -1};
    }
    input_.leave(mouse);
}

void XViewWindow::handleKey(const xcb_key_press_event_t& event) {
    const auto keyCode = virtualKeyCodeOf(event.detail);
    if (isOurs(event.event) && keyCode && !isModifierKey(*keyCode)) {
        input_.pressKey({*keyCode, platform_->modifiers_.eventFlags(event.state)});
    }
}

void XViewWindow::handleExpose(const xcb_expose_event_t& event) {
    if (isOurs(event.window)) {
        surface_->noteExposure(event, reinterpret_cast<const xcb_generic_event_t&>(event).full_sequence);
    }
}

void XViewWindow::handleFocusChange(const xcb_focus_in_event_t& event) {
    // A grab of the keyboard passes; the focus stays.
    if (isOurs(event.event) && event.mode != XCB_NOTIFY_MODE_GRAB && event.mode != XCB_NOTIFY_MODE_UNGRAB &&
        event.detail != XCB_NOTIFY_DETAIL_POINTER) {
        hasKeyboard_ = (event.response_type & 0x7F) == XCB_FOCUS_IN;
    }
}

void XViewWindow::endTurn() {
    const std::weak_ptr<const bool> life = life_;
    input_.flush();
    if (life.expired() || !noteMonitors()) {
        return;
    }
    const bool isBlended = surface_->style() == OverlayStyle::blended;
    if (std::exchange(needsNewSurface_, false) && isBlended != platform_->isBlending()) {
        replaceSurface();
    }
    topmost_->keepOnTop(surface_->window(), pixelFrame_);
    drawIfNeeded();
}

void XViewWindow::drawIfNeeded() {
    // The answer to the last picture wakes the main loop, and so brings on the next one.
    if (surface_->isBusy()) {
        return;
    }
    if (std::exchange(needsDisplay_, false)) {
        const QRegion region =
            picture_->paint(view_->draw(), view_->form(), {input_.hoveredControl(), input_.pressedControl()},
                            platform_->accentColor_());
        std::vector<PixelRect> rects;
        for (const QRect& rect : region) {
            rects.push_back({rect.x(), rect.y(), rect.width(), rect.height()});
        }
        surface_->put(pictureView(), rects);
    }
    surface_->repairExposure(pictureView());
}

PictureView XViewWindow::pictureView() const {
    const QImage& image = picture_->image();
    return {reinterpret_cast<const std::uint32_t*>(image.constBits()), image.width()};
}

} // namespace tarvex
