#include "Platform/Linux/X11/XWindowSteering.h"

#include "Platform/Linux/X11/WindowManagerProtocol.h"
#include "Platform/Linux/X11/XAtoms.h"

#include <cstdlib>

namespace tarvex {

namespace {

using Clock = std::chrono::steady_clock;
using window_manager::sourcePager;
using window_manager::stateAdd;
using window_manager::stateRemove;

// Of _NET_WM_MOVERESIZE and of _NET_MOVERESIZE_WINDOW.
constexpr std::uint32_t moveStart = 8;
constexpr std::uint32_t moveCancel = 11;
constexpr unsigned firstValueBit = 8;
constexpr unsigned sourceShift = 12;

// Of WM_NORMAL_HINTS.
constexpr std::uint32_t hasGravity = 1U << 9;
constexpr std::size_t gravityWord = 17;

std::uint32_t gravityOf(const std::vector<std::uint32_t>& normalHints) {
    if (normalHints.size() > gravityWord && (normalHints.front() & hasGravity) != 0) {
        return normalHints[gravityWord];
    }
    return XCB_GRAVITY_NORTH_WEST;
}

void add(std::optional<int>& value, int summand) {
    if (value) {
        *value += summand;
    }
}

} // namespace

XWindowSteering::XWindowSteering(XConnection& connection)
    : connection_(&connection), atoms_(internAtoms(connection)) {}

XWindowSteering::Atoms XWindowSteering::internAtoms(XConnection& connection) {
    return makeAtoms<Atoms>(connection, {{&Atoms::moveResize, "_NET_MOVERESIZE_WINDOW"},
                                         {&Atoms::interactiveMove, "_NET_WM_MOVERESIZE"},
                                         {&Atoms::bordersQuestion, "_NET_REQUEST_FRAME_EXTENTS"},
                                         {&Atoms::supported, "_NET_SUPPORTED"},
                                         {&Atoms::state, "_NET_WM_STATE"},
                                         {&Atoms::maximizedVertically, "_NET_WM_STATE_MAXIMIZED_VERT"},
                                         {&Atoms::maximizedHorizontally, "_NET_WM_STATE_MAXIMIZED_HORZ"},
                                         {&Atoms::fullScreen, "_NET_WM_STATE_FULLSCREEN"},
                                         {&Atoms::shaded, "_NET_WM_STATE_SHADED"},
                                         {&Atoms::decoration, "_NET_FRAME_EXTENTS"},
                                         {&Atoms::invisible, "_GTK_FRAME_EXTENTS"}});
}

XWindowSituation XWindowSteering::read(xcb_window_t window) {
    xcb_connection_t* const server = connection_->get();
    XWindowGeometryRequest geometry(*connection_, window);
    const auto supportedCookie = requestPropertyWords(*connection_, connection_->root(), atoms_.supported);
    const auto rootCookie = xcb_get_window_attributes(server, connection_->root());
    const auto pointerCookie = xcb_query_pointer(server, connection_->root());
    const auto hintsCookie = requestPropertyWords(*connection_, window, XCB_ATOM_WM_NORMAL_HINTS);

    XWindowSituation situation;
    situation.geometry = geometry.take();
    const XPropertyWords supported = takePropertyWords(*connection_, supportedCookie);
    const auto root = connection_->take(xcb_get_window_attributes_reply, rootCookie);
    const auto pointer = connection_->take(xcb_query_pointer_reply, pointerCookie);
    const XPropertyWords hints = takePropertyWords(*connection_, hintsCookie);
    situation.gravity = gravityOf(hints.words);
    situation.limits = XSizeLimits(hints.words);

    situation.hasManager = hasWindowManager(root);
    situation.managerPlacesWindows = situation.hasManager && isAmong(supported.words, atoms_.moveResize);
    situation.managerCancelsMoves = situation.hasManager && isAmong(supported.words, atoms_.interactiveMove);
    situation.managerTellsBorders = situation.hasManager && isAmong(supported.words, atoms_.bordersQuestion);
    situation.isButtonDown = pointer && (pointer->mask & XCB_KEY_BUT_MASK_BUTTON_1) != 0;
    return situation;
}

bool XWindowSteering::isBorderProperty(xcb_atom_t property) const {
    return property == atoms_.decoration || property == atoms_.invisible;
}

void XWindowSteering::cancelInteractiveMove(xcb_window_t window, const XWindowSituation& situation) {
    if (situation.isButtonDown) {
        cancelStuckMove(window, situation);
    }
}

void XWindowSteering::cancelStuckMove(xcb_window_t window, const XWindowSituation& situation) {
    if (situation.managerCancelsMoves) {
        sendToWindowManager(*connection_, window, atoms_.interactiveMove,
                            {0, 0, moveCancel, XCB_BUTTON_INDEX_1, sourcePager});
    }
}

void XWindowSteering::removeStates(xcb_window_t window, const XWindowSituation& situation,
                                   const XSizeStates& states) {
    changeStates(stateRemove, window, situation, states);
}

void XWindowSteering::addStates(xcb_window_t window, const XWindowSituation& situation,
                                const XSizeStates& states) {
    changeStates(stateAdd, window, situation, states);
}

void XWindowSteering::changeStates(std::uint32_t change, xcb_window_t window,
                                   const XWindowSituation& situation, const XSizeStates& states) {
    if (!situation.hasManager) {
        return;
    }
    const auto send = [&](xcb_atom_t first, xcb_atom_t second) {
        sendToWindowManager(*connection_, window, atoms_.state, {change, first, second, sourcePager, 0});
    };
    if (states.fullScreen) {
        send(atoms_.fullScreen, XCB_ATOM_NONE);
    }
    if (states.maximizedVertically && states.maximizedHorizontally) {
        send(atoms_.maximizedVertically, atoms_.maximizedHorizontally);
    } else if (states.isMaximized()) {
        send(states.maximizedVertically ? atoms_.maximizedVertically : atoms_.maximizedHorizontally,
             XCB_ATOM_NONE);
    }
    if (states.shaded) {
        send(atoms_.shaded, XCB_ATOM_NONE);
    }
}

void XWindowSteering::restore(xcb_window_t window, const XWindowSituation& situation) {
    XSizeStates states = situation.geometry.states;
    // The other half may be on its way.
    states.maximizedVertically = states.maximizedHorizontally = states.isMaximized();
    removeStates(window, situation, states);
}

void XWindowSteering::untile(xcb_window_t window, const XWindowSituation& situation) {
    const XSizeStates maximized{.maximizedVertically = true, .maximizedHorizontally = true};
    addStates(window, situation, maximized);
    removeStates(window, situation, maximized);
}

void XWindowSteering::shakeLoose(xcb_window_t window, const XWindowSituation& situation) {
    if (!situation.managerCancelsMoves || situation.geometry.parent == connection_->root()) {
        return;
    }
    // Off any edge of the screen, or the step would tile the window again; and from so far away that it
    // counts as one of a drag.
    const PixelRect frame = situation.geometry.visibleFrame();
    const int x = frame.x + frame.width / 2;
    const int y = frame.y + frame.height / 2;
    constexpr int distance = 1000;
    const auto asWord = [](int value) { return static_cast<std::uint32_t>(value); };
    sendToWindowManager(*connection_, window, atoms_.interactiveMove,
                        {asWord(x + distance), asWord(y), moveStart, XCB_BUTTON_INDEX_1, sourcePager});
    xcb_motion_notify_event_t step{};
    step.response_type = XCB_MOTION_NOTIFY;
    step.root = connection_->root();
    step.event = situation.geometry.parent;
    step.root_x = static_cast<std::int16_t>(x);
    step.root_y = static_cast<std::int16_t>(y);
    step.state = XCB_KEY_BUT_MASK_BUTTON_1;
    step.same_screen = 1;
    connection_->discard(xcb_send_event_checked(connection_->get(), 0, situation.geometry.parent,
                                                XCB_EVENT_MASK_POINTER_MOTION,
                                                reinterpret_cast<const char*>(&step)));
    sendToWindowManager(*connection_, window, atoms_.interactiveMove,
                        {0, 0, moveCancel, XCB_BUTTON_INDEX_1, sourcePager});
}

void XWindowSteering::place(xcb_window_t window, const XWindowSituation& situation,
                            const XWindowTarget& target) {
    // With NorthWest gravity the position is that of the decoration's outer corner, the size the client's.
    const XWindowGeometry& geometry = situation.geometry;
    Values values;
    if (target.x) {
        values[0] = *target.x - geometry.invisible.left;
    }
    if (target.y) {
        values[1] = *target.y - geometry.invisible.top;
    }
    if (target.width) {
        values[2] = geometry.clientWidthFor(*target.width);
    }
    if (target.height) {
        values[3] = geometry.clientHeightFor(*target.height);
    }
    if (!situation.managerPlacesWindows) {
        placeDirectly(window, situation, target, values);
        return;
    }
    std::array<std::uint32_t, 5> data{XCB_GRAVITY_NORTH_WEST | sourcePager << sourceShift};
    std::size_t index = 0;
    for (const std::optional<int>& value : values) {
        if (value) {
            data[0] |= 1U << (firstValueBit + index);
            data[index + 1] = static_cast<std::uint32_t>(*value);
        }
        ++index;
    }
    sendToWindowManager(*connection_, window, atoms_.moveResize, data);
}

XWindowSteering::Shift XWindowSteering::shiftOf(std::uint32_t gravity, const XBorders& decoration) {
    // The gravity names the point that stays where it is when the decoration is put around the window (ICCCM
    // 4.1.2.3).
    if (gravity == XCB_GRAVITY_STATIC) {
        return {decoration.left, decoration.top};
    }
    if (gravity < XCB_GRAVITY_NORTH_WEST || gravity > XCB_GRAVITY_SOUTH_EAST) {
        return {};
    }
    // Three by three, row by row from the north-west.
    const int cell = static_cast<int>(gravity) - XCB_GRAVITY_NORTH_WEST;
    return {(decoration.left + decoration.right) * (cell % 3) / 2,
            (decoration.top + decoration.bottom) * (cell / 3) / 2};
}

XWindowSteering::Shift XWindowSteering::shiftFor(xcb_window_t window, const XWindowSituation& situation,
                                                 const XWindowTarget& target) const {
    const XBorders& decoration = situation.geometry.decoration;
    const PixelRect frame = situation.geometry.visibleFrame();
    const DirectRequest& latest = latestDirect_;
    // Later than that, somebody else has moved it.
    constexpr std::chrono::seconds repeatPeriod{2};
    const bool isRepeat = latest.window == window && latest.target == target && target.x && target.y &&
                          Clock::now() - latest.time <= repeatPeriod;
    if (isRepeat && frame != latest.frameBefore) {
        const int astrayX = frame.x - *target.x;
        const int astrayY = frame.y - *target.y;
        // Farther than that it has gone for another reason, or not yet gone.
        if (std::abs(astrayX) <= decoration.left + decoration.right &&
            std::abs(astrayY) <= decoration.top + decoration.bottom) {
            return {latest.shift.x - astrayX, latest.shift.y - astrayY};
        }
    }
    return shiftOf(situation.gravity, decoration);
}

void XWindowSteering::placeDirectly(xcb_window_t window, const XWindowSituation& situation,
                                    const XWindowTarget& target, Values values) {
    // Without a window manager the place is that of the window's own outer corner.
    if (situation.hasManager) {
        const Shift shift = shiftFor(window, situation, target);
        add(values[0], shift.x);
        add(values[1], shift.y);
        latestDirect_ = {window, target, situation.geometry.visibleFrame(), shift, Clock::now()};
    }
    configure(window, values);
}

void XWindowSteering::configure(xcb_window_t window, const Values& values) {
    // The values that a configuration may carry begin with the four, in this order.
    std::uint16_t mask = 0;
    std::uint16_t bit = XCB_CONFIG_WINDOW_X;
    std::vector<std::uint32_t> list;
    for (const std::optional<int>& value : values) {
        if (value) {
            mask = static_cast<std::uint16_t>(mask | bit);
            list.push_back(static_cast<std::uint32_t>(*value));
        }
        bit = static_cast<std::uint16_t>(bit << 1);
    }
    connection_->discard(xcb_configure_window_checked(connection_->get(), window, mask, list.data()));
}

} // namespace tarvex
