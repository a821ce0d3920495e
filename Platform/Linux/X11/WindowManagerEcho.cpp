#include "Platform/Linux/X11/WindowManagerEcho.h"

#include "Platform/Linux/X11/WindowManagerProtocol.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace tarvex {

namespace {

/// More questions are not left open; a window manager that does not come to so many has died.
constexpr std::size_t mostAskers = 8;

} // namespace

WindowManagerEcho::WindowManagerEcho(XConnection& connection, XEventPump& pump, std::function<void()> heard)
    : connection_(&connection), heard_(std::move(heard)) {
    constexpr const char* borders = "_NET_REQUEST_FRAME_EXTENTS";
    constexpr const char* version = "VERSION";
    // The selection that a screen's window manager owns (ICCCM 2.8).
    const std::string office = "WM_S" + std::to_string(connection.screenNumber());
    connection.internAtoms({borders, version, office});
    bordersQuestion_ = connection.atom(borders);
    versionQuestion_ = connection.atom(version);
    office_ = connection.atom(office);
    subscription_ = pump.subscribe(XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t& event) {
        handleProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    });
}

WindowManagerEcho::~WindowManagerEcho() {
    for (const Asker& asker : askers_) {
        connection_->discard(xcb_destroy_window_checked(connection_->get(), asker.window));
    }
    connection_->flush();
}

void WindowManagerEcho::ask(bool tellsBorders) {
    Asker& asker = chooseAsker();
    asker.isWaiting = true;
    current_ = asker.window;
    sendToWindowManager(*connection_, asker.window, bordersQuestion_, {});
    if (!tellsBorders) {
        connection_->discard(xcb_convert_selection_checked(
            connection_->get(), asker.window, office_, versionQuestion_, versionQuestion_, XCB_CURRENT_TIME));
    }
}

WindowManagerEcho::Asker& WindowManagerEcho::chooseAsker() {
    const auto idle =
        std::find_if(askers_.begin(), askers_.end(), [](const Asker& asker) { return !asker.isWaiting; });
    if (idle != askers_.end()) {
        return *idle;
    }
    if (askers_.size() >= mostAskers) {
        std::rotate(askers_.begin(), askers_.begin() + 1, askers_.end());
        return askers_.back();
    }
    const xcb_window_t window = xcb_generate_id(connection_->get());
    constexpr std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    connection_->discard(xcb_create_window_checked(
        connection_->get(), XCB_COPY_FROM_PARENT, window, connection_->root(), 0, 0, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events));
    return askers_.emplace_back(Asker{window, false});
}

void WindowManagerEcho::handleProperty(const xcb_property_notify_event_t& event) {
    const auto asker = std::find_if(askers_.begin(), askers_.end(),
                                    [&](const Asker& one) { return one.window == event.window; });
    if (asker == askers_.end() || event.state != XCB_PROPERTY_NEW_VALUE) {
        return;
    }
    asker->isWaiting = false;
    if (event.window == current_) {
        forget();
        heard_();
    }
}

} // namespace tarvex
