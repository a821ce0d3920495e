#include "Platform/Linux/Qt/XViewWindow.h"

#include "Platform/Linux/X11/StrutGeometry.h"
#include "Platform/Linux/X11/VirtualKeyCodes.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace tarvex {

namespace {

constexpr std::uint8_t leftButton = 1;
constexpr std::uint8_t rightButton = 3;
/// Those that are held down, not the ones of a wheel.
constexpr std::uint32_t heldButtons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;

/// Panels that start anew, or follow a change of the monitors, keep free something else for a moment.
constexpr std::chrono::milliseconds panelPatience{300};

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
      input_(view, [this] { setNeedsDisplay(); }) {
    paintTimer_.setSingleShot(true);
    QObject::connect(&paintTimer_, &QTimer::timeout, &paintTimer_, [this] { handlePaintTimer(); });
    frameTimer_.setSingleShot(true);
    frameTimer_.setInterval(panelPatience);
    QObject::connect(&frameTimer_, &QTimer::timeout, &frameTimer_, [this] { handleFrameTimer(); });
}

XViewWindow::~XViewWindow() {
    platform_->forget(*this);
    if (keyboard_ && surface_) {
        if (platform_->keyInProgress_) {
            platform_->hold(*platform_->keyInProgress_);
        }
        keyboard_->giveBack();
    }
    if (snapshot_) {
        platform_->giveBack(std::move(*snapshot_));
    }
    // The program may be about to end.
    platform_->connection_->flush();
}

Rect XViewWindow::frame() const {
    Rect frame = attributes_.contentRect;
    if (!pixelFrame_.isEmpty()) {
        // Another monitor may have become the primary one since.
        const DesktopLayout& layout = platform_->monitors_->layout();
        frame.x += layout_.primaryLeft - layout.primaryLeft;
        frame.y += layout.primaryBottom - layout_.primaryBottom;
    }
    return frame;
}

void XViewWindow::makeKeyAndOrderFront() {
    if (paintTimer_.isActive()) {
        return;
    }
    if (surface_) {
        surface_->show();
        keyboard_->take(surface_->window());
        needsDisplay_ = true;
        platform_->connection_->flush();
        return;
    }
    revision_ = findRevision();
    layout_ = platform_->monitors_->layout();
    pixelFrame_ = layout_.pixelsOfScreenRect(attributes_.contentRect);
    grounds_ = findGrounds();
    if (!pixelFrame_.isEmpty()) {
        showAfter(platform_->paintTimeLeft(pixelFrame_));
    }
}

void XViewWindow::showAfter(std::chrono::milliseconds paintTime) {
    if (paintTime > std::chrono::milliseconds::zero()) {
        paintTimer_.start(paintTime);
    } else {
        open();
    }
}

void XViewWindow::handlePaintTimer() {
    if (surface_) {
        replaceSurface();
    } else {
        open();
    }
    platform_->pump_->processQueued();
}

void XViewWindow::open() {
    surface_ = platform_->makeSurface(pixelFrame_);
    if (!surface_) {
        return;
    }
    // Another keyboard may have been plugged in since the last time.
    platform_->modifiers_.invalidate();
    topmost_ = std::make_unique<TopmostKeeper>(*platform_->connection_, *platform_->pump_);
    makePicture();
    subscribe();
    surface_->show();
    // Whoever has the keyboard right before gets it back.
    keyboard_ = std::make_unique<KeyboardKeeper>(*platform_->connection_, *platform_->pump_,
                                                 platform_->surroundings_.managedWindows);
    keyboard_->take(surface_->window());
    platform_->connection_->flush();
}

void XViewWindow::makePicture() {
    snapshot_.reset();
    if (surface_->style() == OverlayStyle::shaped) {
        snapshot_ = platform_->takeSnapshot(pixelFrame_);
    }
    picture_ = std::make_unique<ViewPicture>(QSize(pixelFrame_.width, pixelFrame_.height),
                                             snapshot_ ? imageOf(*snapshot_) : QImage(), *platform_->fonts_);
    needsDisplay_ = true;
}

void XViewWindow::noteComposition() {
    const bool isBlended = surface_->style() == OverlayStyle::blended;
    if (!std::exchange(needsNewSurface_, false) || isBlended == platform_->isBlending()) {
        return;
    }
    if (!isBlended) {
        replaceSurface();
    } else if (platform_->opaque_) {
        // What lies below was last painted for whoever composed the screen until now, and has to be painted
        // again before there is a true picture of it.
        surface_->park();
        paintTimer_.start(XViewWindowPlatform::paintTime);
    }
}

void XViewWindow::replaceSurface() {
    auto surface = platform_->makeSurface(pixelFrame_);
    if (!surface) {
        return;
    }
    // The new one has the keyboard before the old one goes, so that nobody else gets it in between.
    std::swap(surface_, surface);
    makePicture();
    surface_->show();
    keyboard_->replace(surface_->window());
}

XViewWindow::Revision XViewWindow::findRevision() const {
    StrutTracker* const struts = platform_->surroundings_.struts;
    return {platform_->monitors_->revision(), struts == nullptr ? 0 : struts->revision()};
}

std::vector<XViewWindow::Ground> XViewWindow::findGrounds() const {
    const std::vector<Monitor>& monitors = platform_->monitors_->monitors();
    std::vector<PixelRect> areas;
    areas.reserve(monitors.size());
    for (const Monitor& monitor : monitors) {
        areas.push_back(monitor.area);
    }
    StrutTracker* const struts = platform_->surroundings_.struts;
    const std::vector<PixelRect> visible =
        struts == nullptr ? areas : visibleAreas(platform_->monitors_->root(), areas, struts->panels());
    std::vector<Ground> grounds;
    for (std::size_t index = 0; index < areas.size(); ++index) {
        if (intersect(areas[index], pixelFrame_)) {
            grounds.push_back({monitors[index].number, areas[index], visible[index]});
        }
    }
    return grounds;
}

bool XViewWindow::noteScreens() {
    const Revision revision = findRevision();
    if (std::exchange(revision_, revision) == revision) {
        return true;
    }
    // What happens to other monitors is no business of this window.
    const std::vector<Ground> grounds = findGrounds();
    const bool areSameMonitors = std::equal(grounds.begin(), grounds.end(), grounds_.begin(), grounds_.end(),
                                            [](const Ground& now, const Ground& then) {
                                                return now.monitor == then.monitor && now.area == then.area;
                                            });
    if (!areSameMonitors) {
        return tellScreensChanged();
    }
    if (grounds == grounds_) {
        frameTimer_.stop();
    } else if (!frameTimer_.isActive()) {
        frameTimer_.start();
    }
    return true;
}

bool XViewWindow::tellScreensChanged() {
    frameTimer_.stop();
    const std::weak_ptr<const bool> life = life_;
    view_->screensChanged();
    return !life.expired();
}

void XViewWindow::handleFrameTimer() {
    XEventPump& pump = *platform_->pump_;
    static_cast<void>(tellScreensChanged());
    pump.processQueued();
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
    on(XCB_ENTER_NOTIFY, &XViewWindow::handleEnter);
    on(XCB_LEAVE_NOTIFY, &XViewWindow::handleLeave);
    on(XCB_KEY_PRESS, &XViewWindow::handleKey);
    on(XCB_EXPOSE, &XViewWindow::handleExpose);
    subscriptions_.push_back(platform_->pump_->subscribeTurnEnd([this] { endTurn(); }));
}

bool XViewWindow::isOurs(xcb_window_t window) const {
    return surface_ && surface_->window() == window;
}

MouseEvent XViewWindow::mouseEventAt(int x, int y, std::uint32_t state) {
    return {{x + 0.5, pixelFrame_.height - (y + 0.5)}, platform_->modifiers_.eventFlags(state)};
}

void XViewWindow::handlePress(const xcb_button_press_event_t& event) {
    if (!isOurs(event.event) || isWheelButton(event.detail) || !keyboard_->notePress()) {
        return;
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

void XViewWindow::handleEnter(const xcb_enter_notify_event_t& event) {
    if (isOurs(event.event) && event.mode != XCB_NOTIFY_MODE_GRAB) {
        keyboard_->noteEntry();
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
    if (!isOurs(event.event) || !keyCode || isModifierKey(*keyCode)) {
        return;
    }
    // The view may close the window, whose keyboard then waits for the key to be let go.
    XViewWindowPlatform& platform = *platform_;
    platform.keyInProgress_ = event.detail;
    input_.pressKey({*keyCode, platform.modifiers_.eventFlags(event.state)});
    platform.keyInProgress_.reset();
}

void XViewWindow::handleExpose(const xcb_expose_event_t& event) {
    if (isOurs(event.window)) {
        surface_->noteExposure(event, reinterpret_cast<const xcb_generic_event_t&>(event).full_sequence);
    }
}

void XViewWindow::endTurn() {
    const std::weak_ptr<const bool> life = life_;
    input_.flush();
    if (life.expired() || !noteScreens()) {
        return;
    }
    noteComposition();
    keyboard_->endTurn();
    if (paintTimer_.isActive()) {
        return;
    }
    if (keyboard_->isInFront()) {
        topmost_->keepOnTop(surface_->window(), pixelFrame_);
    }
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
