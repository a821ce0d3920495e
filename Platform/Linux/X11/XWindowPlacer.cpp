#include "Platform/Linux/X11/XWindowPlacer.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarvex {

namespace {

constexpr std::chrono::seconds settlingTime{1};

// Values of the window manager specification.
constexpr std::uint32_t sourcePager = 2;
constexpr std::uint32_t stateRemove = 0;
constexpr std::uint32_t moveCancel = 11;
constexpr unsigned firstValueBit = 8;
constexpr unsigned sourceShift = 12;

bool isAmong(const std::vector<std::uint32_t>& atoms, xcb_atom_t atom) {
    return std::find(atoms.begin(), atoms.end(), atom) != atoms.end();
}

} // namespace

XWindowPlacer::XWindowPlacer(XConnection& connection, XEventPump& pump, DesktopLayoutProvider& layout)
    : connection_(&connection),
      layout_(&layout),
      atoms_(internAtoms(connection)),
      propertyChanges_(pump.subscribe(
          XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t& event) { handlePropertyChange(event); })),
      turnEnd_(pump.subscribeTurnEnd([this] { handleTurnEnd(); })) {}

XWindowPlacer::Atoms XWindowPlacer::internAtoms(XConnection& connection) {
    connection.internAtoms({"_NET_MOVERESIZE_WINDOW", "_NET_WM_MOVERESIZE", "_NET_SUPPORTED", "_NET_WM_STATE",
                            "_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ",
                            "_NET_WM_STATE_FULLSCREEN", "_NET_WM_STATE_SHADED", "_NET_FRAME_EXTENTS",
                            "_GTK_FRAME_EXTENTS"});
    return {.moveResize = connection.atom("_NET_MOVERESIZE_WINDOW"),
            .interactiveMove = connection.atom("_NET_WM_MOVERESIZE"),
            .supported = connection.atom("_NET_SUPPORTED"),
            .state = connection.atom("_NET_WM_STATE"),
            .maximizedVertically = connection.atom("_NET_WM_STATE_MAXIMIZED_VERT"),
            .maximizedHorizontally = connection.atom("_NET_WM_STATE_MAXIMIZED_HORZ"),
            .fullScreen = connection.atom("_NET_WM_STATE_FULLSCREEN"),
            .shaded = connection.atom("_NET_WM_STATE_SHADED"),
            .decoration = connection.atom("_NET_FRAME_EXTENTS"),
            .invisible = connection.atom("_GTK_FRAME_EXTENTS")};
}

std::int32_t XWindowPlacer::setPosition(xcb_window_t window, Point position) {
    if (const std::int32_t error = prepare(window); error != 0) {
        return error;
    }
    pending_->position = position;
    if (pending_->size) {
        sendPending();
    }
    return 0;
}

std::int32_t XWindowPlacer::setSize(xcb_window_t window, Size size) {
    if (const std::int32_t error = prepare(window); error != 0) {
        return error;
    }
    pending_->size = size;
    if (pending_->position) {
        sendPending();
    }
    return 0;
}

void XWindowPlacer::sendPending() {
    if (!pending_) {
        return;
    }
    const Pending pending = *std::exchange(pending_, std::nullopt);
    const Target target = targetOf(pending);
    stopSettling();
    if (pending.context.hasManager) {
        cancelInteractiveMove(pending.window, pending.context);
        startSettling(pending, target);
        restore(pending.window, pending.context);
    }
    place(pending.window, pending.context, target);
    connection_->flush();
}

std::int32_t XWindowPlacer::prepare(xcb_window_t window) {
    if (pending_ && pending_->window == window) {
        return 0;
    }
    sendPending();
    Context context = readContext(window);
    if (context.geometry.error != 0) {
        return context.geometry.error;
    }
    pending_ = Pending{window, std::move(context), std::nullopt, std::nullopt};
    return 0;
}

XWindowPlacer::Context XWindowPlacer::readContext(xcb_window_t window) {
    XWindowGeometryRequest geometry(*connection_, window);
    const auto stateCookie = requestPropertyWords(*connection_, window, atoms_.state);
    const auto supportedCookie = requestPropertyWords(*connection_, connection_->root(), atoms_.supported);
    const auto windowCookie = xcb_get_window_attributes(connection_->get(), window);
    const auto rootCookie = xcb_get_window_attributes(connection_->get(), connection_->root());
    const auto pointerCookie = xcb_query_pointer(connection_->get(), connection_->root());
    Context context;
    context.geometry = geometry.take();
    context.states = takePropertyWords(*connection_, stateCookie).words;
    const XPropertyWords supported = takePropertyWords(*connection_, supportedCookie);
    const auto attributes = connection_->take(xcb_get_window_attributes_reply, windowCookie);
    context.eventMask = attributes ? attributes->your_event_mask : 0;
    const auto root = connection_->take(xcb_get_window_attributes_reply, rootCookie);
    const auto pointer = connection_->take(xcb_query_pointer_reply, pointerCookie);
    // A window manager leaves its properties behind when it dies, but not the redirection, which is its
    // office.
    context.hasManager = root && (root->all_event_masks & XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT) != 0;
    context.managerTakesMessages = context.hasManager && isAmong(supported.words, atoms_.moveResize);
    context.managerCancelsMoves = context.hasManager && isAmong(supported.words, atoms_.interactiveMove);
    context.isButtonDown = pointer && (pointer->mask & XCB_KEY_BUT_MASK_BUTTON_1) != 0;
    return context;
}

XWindowPlacer::Target XWindowPlacer::targetOf(const Pending& pending) {
    const DesktopLayout& layout = layout_->layout();
    const Point position = pending.position.value_or(Point{});
    const Size size = pending.size.value_or(Size{});
    const PixelRect pixels =
        layout.pixelsOfAccessibilityRect({position.x, position.y, size.width, size.height});
    Target target;
    if (pending.position) {
        target.x = pixels.x;
        target.y = pixels.y;
    }
    if (pending.size) {
        target.width = pixels.width;
        target.height = pixels.height;
    }
    return target;
}

void XWindowPlacer::cancelInteractiveMove(xcb_window_t window, const Context& context) {
    if (context.isButtonDown && context.managerCancelsMoves) {
        sendToManager(window, atoms_.interactiveMove, {0, 0, moveCancel, XCB_BUTTON_INDEX_1, sourcePager});
    }
}

void XWindowPlacer::restore(xcb_window_t window, const Context& context) {
    const auto remove = [&](xcb_atom_t first, xcb_atom_t second) {
        sendToManager(window, atoms_.state, {stateRemove, first, second, sourcePager, 0});
    };
    if (isAmong(context.states, atoms_.fullScreen)) {
        remove(atoms_.fullScreen, XCB_ATOM_NONE);
    }
    // Always: the window manager may just be about to maximise or tile a window that was dragged to an edge.
    remove(atoms_.maximizedVertically, atoms_.maximizedHorizontally);
    if (isAmong(context.states, atoms_.shaded)) {
        remove(atoms_.shaded, XCB_ATOM_NONE);
    }
}

void XWindowPlacer::place(xcb_window_t window, const Context& context, const Target& target) {
    // With NorthWest gravity the position is that of the decoration's outer corner, the size the client's.
    const XWindowGeometry& geometry = context.geometry;
    std::array<std::optional<int>, 4> values;
    if (target.x && target.y) {
        values[0] = *target.x - geometry.invisible.left;
        values[1] = *target.y - geometry.invisible.top;
    }
    if (target.width && target.height) {
        values[2] = geometry.clientWidthFor(*target.width);
        values[3] = geometry.clientHeightFor(*target.height);
    }
    if (!context.managerTakesMessages) {
        configure(window, values);
        return;
    }
    std::array<std::uint32_t, 5> data{XCB_GRAVITY_NORTH_WEST | sourcePager << sourceShift};
    for (std::size_t index = 0; index < values.size(); ++index) {
        if (values[index]) {
            data[0] |= 1U << (firstValueBit + index);
            data[index + 1] = static_cast<std::uint32_t>(*values[index]);
        }
    }
    sendToManager(window, atoms_.moveResize, data);
}

void XWindowPlacer::configure(xcb_window_t window, const std::array<std::optional<int>, 4>& values) {
    constexpr std::array<std::uint16_t, 4> bits{XCB_CONFIG_WINDOW_X, XCB_CONFIG_WINDOW_Y,
                                                XCB_CONFIG_WINDOW_WIDTH, XCB_CONFIG_WINDOW_HEIGHT};
    std::uint16_t mask = 0;
    std::vector<std::uint32_t> list;
    for (std::size_t index = 0; index < values.size(); ++index) {
        if (values[index]) {
            mask = static_cast<std::uint16_t>(mask | bits[index]);
            list.push_back(static_cast<std::uint32_t>(*values[index]));
        }
    }
    connection_->discard(xcb_configure_window_checked(connection_->get(), window, mask, list.data()));
}

void XWindowPlacer::sendToManager(xcb_window_t window, xcb_atom_t type,
                                  const std::array<std::uint32_t, 5>& data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::copy(data.begin(), data.end(), message.data.data32);
    connection_->discard(
        xcb_send_event_checked(connection_->get(), 0, connection_->root(),
                               XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                               reinterpret_cast<const char*>(&message)));
}

void XWindowPlacer::startSettling(const Pending& pending, const Target& target) {
    selectEvents(pending.window, pending.context.eventMask | XCB_EVENT_MASK_PROPERTY_CHANGE);
    settling_ = Settling{pending.window, pending.context, target,
                         std::chrono::steady_clock::now() + settlingTime, false};
}

void XWindowPlacer::stopSettling() {
    if (settling_) {
        selectEvents(settling_->window, settling_->context.eventMask);
        settling_.reset();
    }
}

void XWindowPlacer::handlePropertyChange(const xcb_generic_event_t& event) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (!settling_ || change.window != settling_->window) {
        return;
    }
    if (std::chrono::steady_clock::now() > settling_->deadline) {
        stopSettling();
        return;
    }
    settling_->isChanged |= change.atom == atoms_.decoration || change.atom == atoms_.invisible;
}

void XWindowPlacer::handleTurnEnd() {
    sendPending();
    if (settling_ && std::exchange(settling_->isChanged, false)) {
        settle();
    }
}

void XWindowPlacer::settle() {
    const XWindowGeometry now = XWindowGeometryRequest(*connection_, settling_->window).take();
    if (now.error != 0) {
        settling_.reset();
        return;
    }
    XWindowGeometry& assumed = settling_->context.geometry;
    if (now.decoration != assumed.decoration || now.invisible != assumed.invisible) {
        assumed = now;
        place(settling_->window, settling_->context, settling_->target);
    }
}

void XWindowPlacer::selectEvents(xcb_window_t window, std::uint32_t eventMask) {
    connection_->discard(
        xcb_change_window_attributes_checked(connection_->get(), window, XCB_CW_EVENT_MASK, &eventMask));
}

} // namespace tarvex
