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
    const auto reply = connection_->take(xcb_query_pointer_reply,
                                         xcb_query_pointer(connection_->get(), connection_->root()));
    if (reply) {
        snapshot_.isOnScreen = reply->same_screen != 0;
        snapshot_.mask = reply->mask;
    }
    if (reply && snapshot_.isOnScreen) {
        snapshot_.x = reply->root_x;
        snapshot_.y = reply->root_y;
    }
    return snapshot_;
}

} // namespace tarvex
