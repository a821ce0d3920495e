#include "Platform/Linux/X11/XPointer.h"

namespace tarvex {

XPointer::XPointer(XConnection& connection, DesktopLayoutProvider& layout)
    : connection_(&connection), layout_(&layout) {}

Point XPointer::mouseLocation() {
    if (holds_ == 0) {
        refresh();
    }
    return layout_->layout().screenPointOfPixel(snapshot_.x, snapshot_.y);
}

const XPointer::Snapshot& XPointer::refresh() {
    static_cast<void>(takeSnapshot());
    return snapshot_;
}

const XPointer::Snapshot& XPointer::refreshAtPress() {
    const xcb_window_t pressed = takeSnapshot();
    if (pressed != XCB_WINDOW_NONE) {
        sighting_ = std::make_shared<XWindowSighting>(*connection_, pressed);
    }
    return snapshot_;
}

xcb_window_t XPointer::takeSnapshot() {
    sighting_.reset();
    const auto reply = connection_->take(xcb_query_pointer_reply,
                                         xcb_query_pointer(connection_->get(), connection_->root()));
    if (!reply) {
        return XCB_WINDOW_NONE;
    }
    snapshot_.isOnScreen = reply->same_screen != 0;
    snapshot_.mask = reply->mask;
    if (snapshot_.isOnScreen) {
        snapshot_.x = reply->root_x;
        snapshot_.y = reply->root_y;
    }
    return reply->child;
}

} // namespace tarvex
