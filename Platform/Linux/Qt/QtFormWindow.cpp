#include "Platform/Linux/Qt/QtFormWindow.h"

#include "Platform/Linux/Qt/ToolkitConnection.h"

#include <QApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <cmath>

namespace tarvex {

namespace {

constexpr std::uint32_t closableBit = 2;
constexpr std::int32_t floatingLevel = 3;

Qt::WindowFlags flagsOf(const FormWindowAttributes& attributes) {
    Qt::WindowFlags flags =
        Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
    flags.setFlag(Qt::WindowCloseButtonHint, (attributes.styleMask & closableBit) != 0);
    flags.setFlag(Qt::WindowStaysOnTopHint, attributes.level >= floatingLevel);
    return flags;
}

QSize sizeOf(const Size& size) {
    return {static_cast<int>(std::lround(size.width)), static_cast<int>(std::lround(size.height))};
}

/// The toolkit's screen on which a pixel of the root window lies, else the first one.
const QScreen& screenAtPixel(const QPoint& pixel) {
    const QList<QScreen*> screens = QGuiApplication::screens();
    const auto found = std::find_if(screens.begin(), screens.end(), [&](const QScreen* screen) {
        const QRect scaled = screen->geometry();
        const QSizeF size = QSizeF(scaled.size()) * screen->devicePixelRatio();
        return QRectF(scaled.topLeft(), size).contains(pixel);
    });
    return found != screens.end() ? **found : *screens.front();
}

/// The toolkit scales each screen about its top-left corner, which stays where it is on the root window.
QPoint scaledPoint(const QPoint& pixel, const QScreen& screen) {
    const QPoint corner = screen.geometry().topLeft();
    return corner + ((QPointF(pixel - corner) / screen.devicePixelRatio()).toPoint());
}

/// Waits until the server has all that the toolkit has asked of it. None when the toolkit works without one.
std::optional<xcb_window_t> nativeWindowOf(QWidget& widget) {
    xcb_connection_t* const connection = toolkitConnection();
    if (connection == nullptr) {
        return std::nullopt;
    }
    const auto window = static_cast<xcb_window_t>(widget.winId());
    const XcbOwned<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    return window;
}

/// Where a window of that size with those borders is in the middle of the area; the client's corner. The
/// title bar of one that is too large stays on the area.
QPoint centeredCorner(const PixelRect& area, const QSize& client, const XBorders& borders) {
    const int width = client.width() + borders.left + borders.right;
    const int height = client.height() + borders.top + borders.bottom;
    return {area.x + std::max(area.width - width, 0) / 2 + borders.left,
            area.y + std::max(area.height - height, 0) / 2 + borders.top};
}

/// Qt clears its active window when that is hidden, but its focus window only some moments after the loss of
/// the keyboard. Shown again in between, the window would have the keyboard and never become the active one.
void noteActivation(QWidget& widget) {
    if (QGuiApplication::focusWindow() != widget.windowHandle() || widget.isActiveWindow()) {
        return;
    }
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    QApplication::setActiveWindow(&widget);
    QT_WARNING_POP
}

} // namespace

FormWidget::FormWidget(const FormWindowAttributes& attributes) : QWidget(nullptr, flagsOf(attributes)) {
    setWindowTitle(QString::fromStdString(attributes.title));
    setFixedSize(sizeOf(attributes.contentSize));
    // The form says where its controls are; it is not to be mirrored.
    setLayoutDirection(Qt::LeftToRight);
    setAttribute(Qt::WA_QuitOnClose, false);
}

void FormWidget::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange) {
        lookChanged();
    }
}

void FormWidget::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (!event->spontaneous()) {
        hidden();
    }
}

void FormWidget::keyPressEvent(QKeyEvent* event) {
    const bool closes = event->matches(QKeySequence::Cancel) || event->matches(QKeySequence::Close);
    // A key that is still held from something else that it ended must not close the window as well.
    if (closes && !event->isAutoRepeat()) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

QtFormWindow::QtFormWindow(QtFormWindowPlatform& platform, const FormWindowAttributes& attributes,
                           FormOwner& owner)
    : platform_(&platform),
      owner_(&owner),
      contentSize_(attributes.contentSize),
      widget_(std::make_unique<FormWidget>(attributes)),
      realizer_(*widget_, platform.surroundings_.fonts,
                [this](const std::string& id, double value) { handleUse(id, value); }) {
    bindNative();
    widget_->lookChanged = [this] {
        realizer_.forgetShown();
        setNeedsLayout();
    };
    widget_->hidden = [this] {
        handleHiding();
        owner_->windowDidClose();
    };
    layOut();
}

void QtFormWindow::bindNative() {
    if (native_ && *native_ == static_cast<xcb_window_t>(widget_->winId())) {
        return;
    }
    handleHiding();
    native_ = nativeWindowOf(*widget_);
    if (native_) {
        borders_ = std::make_unique<XWindowBorders>(platform_->surroundings_.connection,
                                                    platform_->surroundings_.pump, *native_,
                                                    [this] { handleBorders(); });
    }
}

QtFormWindow::~QtFormWindow() {
    widget_->hidden = [this] { handleHiding(); };
    close();
    platform_->forget(*this);
}

bool QtFormWindow::isVisible() const {
    return widget_->isVisible() && !widget_->isMinimized();
}

void QtFormWindow::setNeedsLayout() {
    if (!needsLayout_) {
        needsLayout_ = true;
        QMetaObject::invokeMethod(
            widget_.get(),
            [this] {
                if (needsLayout_) {
                    layOut();
                }
            },
            Qt::QueuedConnection);
    }
}

void QtFormWindow::layOut() {
    needsLayout_ = false;
    realizer_.realize(owner_->form(contentSize_), contentSize_.height);
}

void QtFormWindow::handleUse(const std::string& id, double value) {
    owner_->controlChanged(id, value);
    layOut();
}

void QtFormWindow::center() {
    bindNative();
    const bool isShown = isVisible();
    const auto area = platform_->visibleAreaFor(isShown ? std::optional(pixelFrame()) : std::nullopt);
    if (!area) {
        return;
    }
    const XBorders borders = readBorders();
    const QScreen& screen = screenAtPixel({area->x + area->width / 2, area->y + area->height / 2});
    const QSize client = (QSizeF(widget_->size()) * screen.devicePixelRatio()).toSize();
    const QPoint corner = scaledPoint(centeredCorner(*area, client, borders), screen);
    widget_->setGeometry(QRect(corner, widget_->size()));
    centeredWith_ = isShown ? std::nullopt : std::optional(borders);
}

void QtFormWindow::handleBorders() {
    if (!centeredWith_ || !isVisible()) {
        return;
    }
    const bool hasGuessedRight = *centeredWith_ == readBorders();
    centeredWith_.reset();
    if (!hasGuessedRight) {
        center();
    }
}

XBorders QtFormWindow::readBorders() {
    const auto borders = borders_ ? borders_->read() : std::nullopt;
    return borders ? *borders : platform_->usualBorders_.read().value_or(XBorders{});
}

PixelRect QtFormWindow::pixelFrame() const {
    const QScreen* const screen = widget_->screen();
    const QRect scaled = widget_->geometry();
    const double ratio = screen->devicePixelRatio();
    const QPoint corner = screen->geometry().topLeft();
    const QPoint position = corner + (QPointF(scaled.topLeft() - corner) * ratio).toPoint();
    const QSize size = (QSizeF(scaled.size()) * ratio).toSize();
    return {position.x(), position.y(), size.width(), size.height()};
}

void QtFormWindow::makeKeyAndOrderFront() {
    bindNative();
    if (needsLayout_) {
        layOut();
    }
    if (!widget_->isVisible() && widget_->focusWidget() == nullptr) {
        if (QWidget* const first = realizer_.firstReachable()) {
            first->setFocus(Qt::OtherFocusReason);
        }
    }
    if (widget_->isMinimized()) {
        widget_->setWindowState(widget_->windowState() & ~Qt::WindowMinimized);
    }
    widget_->show();
    widget_->raise();
    noteActivation(*widget_);
    platform_->noteOrderedFront(*this);
    activate();
}

void QtFormWindow::activate() {
    if (native_) {
        platform_->activation_.activate(*native_);
    } else {
        widget_->raise();
        widget_->activateWindow();
    }
}

void QtFormWindow::close() {
    widget_->hide();
}

void QtFormWindow::handleHiding() {
    if (native_) {
        platform_->activation_.cancel(*native_);
    }
    centeredWith_.reset();
}

} // namespace tarvex
