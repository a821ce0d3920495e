#include "Platform/Linux/X11/CompositorWatch.h"

#include "Platform/Linux/X11/OverlayParking.h"

#include <utility>

namespace tarvex {

CompositorWatch::CompositorWatch(XConnection& connection, XEventPump& pump, std::function<void()> changed)
    : connection_(&connection),
      changed_(std::move(changed)),
      selection_(connection, pump, "_NET_WM_CM_S", [this](xcb_window_t owner) { handleOwner(owner); }) {
    exposures_ = pump.subscribe(XCB_EXPOSE, [this](const xcb_generic_event_t& event) {
        if (reinterpret_cast<const xcb_expose_event_t&>(event).window == witness_) {
            update(hasManager_, true);
        }
    });
    makeWitness();
    hasManager_ = selection_.hasOwner();
}

CompositorWatch::~CompositorWatch() {
    destroyWitness();
}

void CompositorWatch::destroyWitness() {
    connection_->discard(xcb_destroy_window_checked(connection_->get(), witness_));
}

void CompositorWatch::makeWitness() {
    witness_ = xcb_generate_id(connection_->get());
    xcb_create_window_value_list_t attributes{};
    attributes.override_redirect = 1;
    attributes.event_mask = XCB_EVENT_MASK_EXPOSURE;
    connection_->discard(xcb_create_window_aux_checked(
        connection_->get(), XCB_COPY_FROM_PARENT, witness_, connection_->root(), overlayParking.x,
        overlayParking.y, overlayParking.width, overlayParking.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
        XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, &attributes));
    setOverlayProperties(*connection_, witness_, overlayTitle);
    connection_->discard(xcb_map_window_checked(connection_->get(), witness_));
    lowerToBottom(*connection_, witness_);
}

void CompositorWatch::handleOwner(xcb_window_t owner) {
    // The server gives the windows back to themselves when their manager goes, which cannot be seen.
    update(false, false);
    if (owner != XCB_WINDOW_NONE) {
        // A manager that has taken the windows over already exposes only what is mapped from now on.
        destroyWitness();
        makeWitness();
        update(true, false);
    }
}

void CompositorWatch::update(bool hasManager, bool isWitnessRedirected) {
    const bool before = isBlending();
    hasManager_ = hasManager;
    isWitnessRedirected_ = isWitnessRedirected;
    if (isBlending() != before) {
        changed_();
    }
}

} // namespace tarvex
