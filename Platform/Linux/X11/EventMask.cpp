#include "Platform/Linux/X11/EventMask.h"

namespace tarvex {

namespace {

constexpr std::uint32_t changes = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;

void selectEvents(XConnection& connection, xcb_window_t window, std::uint32_t mask) {
    connection.discard(
        xcb_change_window_attributes_checked(connection.get(), window, XCB_CW_EVENT_MASK, &mask));
}

} // namespace

void addEventMask(XConnection& connection, xcb_window_t window, std::uint32_t mask) {
    const auto attributes =
        connection.take(xcb_get_window_attributes_reply, xcb_get_window_attributes(connection.get(), window));
    if (!attributes || (attributes->your_event_mask & mask) == mask) {
        return;
    }
    selectEvents(connection, window, attributes->your_event_mask | mask);
}

RootEventSelection::RootEventSelection(XConnection& connection, std::uint32_t mask)
    : connection_(&connection), mask_(mask) {
    selectEvents(connection, connection.root(), connection.rootEvents().add(mask));
}

RootEventSelection::~RootEventSelection() {
    selectEvents(*connection_, connection_->root(), connection_->rootEvents().remove(mask_));
}

XWindowWatch::XWindowWatch(XConnection& connection, xcb_window_t window)
    : connection_(&connection),
      window_(window),
      attributes_(xcb_get_window_attributes(connection.get(), window)) {
    selectEvents(connection, window, changes);
}

XWindowWatch::~XWindowWatch() {
    keepEarlierEvents();
    selectEvents(*connection_, window_, *earlierMask_);
}

void XWindowWatch::keepEarlierEvents() {
    if (earlierMask_) {
        return;
    }
    const auto attributes = connection_->take(xcb_get_window_attributes_reply, attributes_);
    earlierMask_ = attributes ? attributes->your_event_mask : 0;
    if ((*earlierMask_ & ~changes) != 0) {
        selectEvents(*connection_, window_, *earlierMask_ | changes);
    }
}

} // namespace tarvex
