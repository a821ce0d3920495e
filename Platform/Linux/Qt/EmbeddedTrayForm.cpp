#include "Platform/Linux/Qt/EmbeddedTrayForm.h"

#include "Platform/Linux/Qt/GridGlyph.h"
#include "Platform/Linux/Qt/ToolkitConnection.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QCursor>
#include <QIcon>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <array>
#include <cmath>
#include <cstdint>
#include <string>

namespace tarvex {

namespace {

constexpr std::uint32_t requestDock = 0;
/// What an icon asks for; a tray gives it the size of all its icons.
constexpr int standardSide = 22;
/// Off the screen, until the tray has put the window into its place.
constexpr int nowhere = -100;

/// The tray and how its icons' windows are to be made.
struct Tray {
    xcb_window_t window = XCB_WINDOW_NONE;
    bool hasAlpha = false;
};

bool isTransparent(const xcb_screen_t& screen, xcb_visualid_t visual) {
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0; xcb_depth_next(&depths)) {
        const xcb_visualtype_t* const visuals = xcb_depth_visuals(depths.data);
        for (int index = 0; index < xcb_depth_visuals_length(depths.data); ++index) {
            if (visuals[index].visual_id == visual) {
                return depths.data->depth == 32;
            }
        }
    }
    return false;
}

Tray findTray(XConnection& connection) {
    const xcb_atom_t selection =
        connection.atom("_NET_SYSTEM_TRAY_S" + std::to_string(connection.screenNumber()));
    const auto owner =
        connection.take(xcb_get_selection_owner_reply, xcb_get_selection_owner(connection.get(), selection));
    if (!owner) {
        return {};
    }
    const XPropertyWords visual =
        readPropertyWords(connection, owner->owner, connection.atom("_NET_SYSTEM_TRAY_VISUAL"));
    return {owner->owner, !visual.words.empty() && isTransparent(connection.screen(), visual.words.front())};
}

} // namespace

/// The picture in the tray. In a tray whose windows can be seen through it is painted on nothing, in another
/// one on what the tray's own window shows behind it.
class EmbeddedTrayForm::Icon final : public QWidget, private QAbstractNativeEventFilter {
public:
    Icon(QMenu& menu, const Tray& tray)
        : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint),
          menu_(&menu),
          hasAlpha_(tray.hasAlpha) {
        setAttribute(Qt::WA_AlwaysShowToolTips);
        setAttribute(Qt::WA_QuitOnClose, false);
        setAttribute(Qt::WA_TranslucentBackground, hasAlpha_);
        setMinimumSize(standardSide, standardSide);
        setGeometry(nowhere, nowhere, standardSide, standardSide);
        const auto window = static_cast<xcb_window_t>(winId());
        if (!hasAlpha_) {
            const std::uint32_t background = XCB_BACK_PIXMAP_PARENT_RELATIVE;
            forget(xcb_change_window_attributes_checked(toolkitConnection(), window, XCB_CW_BACK_PIXMAP,
                                                        &background));
        }
        tellSize(window);
        windowHandle()->installEventFilter(this);
    }

    /// Asks the tray to take the window in. The toolkit has set _XEMBED_INFO. The window is shown once it is
    /// there: some trays take one that was shown before for one that wants to be hidden.
    void dock(const Tray& tray, xcb_atom_t opcode) {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = tray.window;
        event.type = opcode;
        event.data.data32[0] = XCB_CURRENT_TIME;
        event.data.data32[1] = requestDock;
        event.data.data32[2] = static_cast<std::uint32_t>(winId());
        // Over the toolkit's connection, since the window has to be there first.
        forget(xcb_send_event_checked(toolkitConnection(), 0, tray.window, XCB_EVENT_MASK_NO_EVENT,
                                      reinterpret_cast<const char*>(&event)));
        QCoreApplication::instance()->installNativeEventFilter(this);
    }

protected:
    // Where it is shown anew, something else may be behind it.
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Expose) {
            update();
        }
        return QWidget::eventFilter(watched, event);
    }

    void moveEvent(QMoveEvent* /*event*/) override { update(); }

    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() == Qt::LeftButton || event->button() == Qt::RightButton) {
            menu_->popup(QCursor::pos());
        }
    }

    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        if (hasAlpha_) {
            painter.setCompositionMode(QPainter::CompositionMode_Source);
            painter.fillRect(rect(), Qt::transparent);
            painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        } else {
            forget(xcb_clear_area_checked(toolkitConnection(), 0, static_cast<xcb_window_t>(winId()), 0, 0, 0,
                                          0));
            painter.drawPixmap(0, 0, screen()->grabWindow(winId(), 0, 0, width(), height()));
        }
        picture_.paint(&painter, rect());
    }

private:
    bool nativeEventFilter(const QByteArray& /*type*/, void* message, qintptr* /*result*/) override {
        const auto& event = *static_cast<const xcb_reparent_notify_event_t*>(message);
        if ((event.response_type & 0x7F) == XCB_REPARENT_NOTIFY && event.window == winId()) {
            QCoreApplication::instance()->removeNativeEventFilter(this);
            // At once: the toolkit does not expect to hear first that the tray has shown the window.
            show();
        }
        return false;
    }

    // A tray may ask for the size as soon as it hears of the window; the toolkit tells it no sooner than the
    // window is shown, which is too late for some.
    void tellSize(xcb_window_t window) const {
        constexpr std::uint32_t hasSmallestSize = 1U << 4U;
        const auto side = static_cast<std::uint32_t>(std::lround(standardSide * devicePixelRatioF()));
        std::array<std::uint32_t, 18> sizeHints{};
        sizeHints[0] = hasSmallestSize;
        sizeHints[5] = side;
        sizeHints[6] = side;
        forget(xcb_change_property_checked(toolkitConnection(), XCB_PROP_MODE_REPLACE, window,
                                           XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32,
                                           static_cast<std::uint32_t>(sizeHints.size()), sizeHints.data()));
    }

    // The tray may be gone, and with it the window.
    static void forget(xcb_void_cookie_t request) {
        xcb_discard_reply(toolkitConnection(), request.sequence);
    }

    QMenu* menu_;
    bool hasAlpha_;
    QIcon picture_ = GridGlyph::icon();
};

EmbeddedTrayForm::EmbeddedTrayForm(StatusMenu& menu, XConnection& connection)
    : menu_(
          [&menu] {
              menu.refresh();
              return menu.value();
          },
          [&menu](const MenuItem& item) { menu.choose(item); }) {
    const Tray tray = findTray(connection);
    icon_ = std::make_unique<Icon>(menu_.native(), tray);
    icon_->dock(tray, connection.atom("_NET_SYSTEM_TRAY_OPCODE"));
}

EmbeddedTrayForm::~EmbeddedTrayForm() = default;

void EmbeddedTrayForm::setAppearance(const StatusItemAppearance& appearance) {
    icon_->setToolTip(QString::fromStdString(appearance.toolTip));
}

} // namespace tarvex
