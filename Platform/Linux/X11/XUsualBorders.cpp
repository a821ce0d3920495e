#include "Platform/Linux/X11/XUsualBorders.h"

#include <array>

namespace tarvex {

namespace {

/// Inter-Client Communication Conventions Manual, WM_NORMAL_HINTS: the flags PMinSize and PMaxSize.
constexpr std::uint32_t hasSmallestAndLargestSize = (1U << 4U) | (1U << 5U);

constexpr std::uint32_t side = 100;

/// The hints that the window managers have taken over from Motif's: which functions and decorations a window
/// has.
constexpr std::array<std::uint32_t, 5> plainWindowHints{3, // functions and decorations are given
                                                        (1U << 2U) | (1U << 5U), // move, close
                                                        (1U << 1U) | (1U << 3U) |
                                                            (1U << 4U), // border, title, menu
                                                        0, 0};

} // namespace

XUsualBorders::XUsualBorders(XConnection& connection, XEventPump& pump)
    : connection_(&connection),
      window_(xcb_generate_id(connection.get())),
      rootEvents_(connection, XCB_EVENT_MASK_PROPERTY_CHANGE) {
    connection.discard(xcb_create_window_checked(
        connection.get(), XCB_COPY_FROM_PARENT, window_, connection.root(), 0, 0, side, side, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr));
    describe();
    borders_ = std::make_unique<XWindowBorders>(connection, pump, window_, [] {});
    subscription_ = pump.subscribe(
        XCB_PROPERTY_NOTIFY, [this, windowManager = connection.atom("_NET_SUPPORTING_WM_CHECK")](
                                 const xcb_generic_event_t& event) {
            const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
            if (property.window == connection_->root() && property.atom == windowManager &&
                property.state == XCB_PROPERTY_NEW_VALUE) {
                borders_->request();
            }
        });
}

XUsualBorders::~XUsualBorders() {
    connection_->discard(xcb_destroy_window_checked(connection_->get(), window_));
    connection_->flush();
}

void XUsualBorders::describe() const {
    std::array<std::uint32_t, 18> sizeHints{};
    sizeHints[0] = hasSmallestAndLargestSize;
    // The smallest and the largest width and height.
    for (const std::size_t index : {5U, 6U, 7U, 8U}) {
        sizeHints[index] = side;
    }
    const auto set = [&](xcb_atom_t property, xcb_atom_t type, const auto& words) {
        connection_->discard(
            xcb_change_property_checked(connection_->get(), XCB_PROP_MODE_REPLACE, window_, property, type,
                                        32, static_cast<std::uint32_t>(words.size()), words.data()));
    };
    set(XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, sizeHints);
    const xcb_atom_t motifHints = connection_->atom("_MOTIF_WM_HINTS");
    set(motifHints, motifHints, plainWindowHints);
    set(connection_->atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM,
        std::array{connection_->atom("_NET_WM_WINDOW_TYPE_NORMAL")});
}

} // namespace tarvex
