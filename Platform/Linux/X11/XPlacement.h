#pragma once

#include "Platform/Linux/X11/PixelRect.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XSizeLimits.h"
#include "Platform/Linux/X11/XWindowGeometry.h"
#include "Platform/Linux/X11/XWindowSteering.h"

namespace tarvex {

/// Whether two names stand for the same visible frame; a target that leaves something open never does.
[[nodiscard]] bool isExactly(const XWindowTarget& target, const PixelRect& frame);

/// What is asked of the window manager to get a window to a target, and what becomes of that.
class XPlacement {
public:
    /// How a window ended that was asked to go somewhere.
    enum class Outcome {
        /// As it should be, as far as it can be.
        landed,
        /// On its way it had the size, or it has the place. The client itself, or the window manager for
        /// reasons of its own, wants it to be of another size.
        refused,
        /// It is no longer where it was, but elsewhere.
        astray,
        /// Its client is where its frame should be: the window manager knows no gravity.
        clientInCorner,
        /// Where it was.
        kept,
    };

    XPlacement() = default;

    XPlacement(const XWindowTarget& target, const XSizeLimits& limits) : target_(target), limits_(limits) {}

    /// The visible frame to ask for.
    [[nodiscard]] XWindowTarget requestFor(const XWindowGeometry& geometry) const;

    /// That request is about to be sent.
    void noteRequest(const XWindowGeometry& geometry);

    /// Tells of each change. False when the window has become of a third size, neither as it was nor as it
    /// was asked for, and when its client has come to where its frame should be.
    [[nodiscard]] bool noteConfiguration(const xcb_configure_notify_event_t& change);

    [[nodiscard]] Outcome outcomeFor(const XWindowGeometry& now) const;

    /// The geometry at the latest request.
    [[nodiscard]] const XWindowGeometry& assumed() const { return assumed_; }

    /// From now on the place is that of the client.
    void aimWithClient() { isAimedWithClient_ = true; }

private:
    [[nodiscard]] XSizeLimits::Extent clientSizeFor(const XWindowGeometry& geometry) const;
    [[nodiscard]] bool isClientInCorner(int clientX, int clientY, const XWindowGeometry& geometry) const;

    XWindowTarget target_;
    XSizeLimits limits_;
    XWindowGeometry assumed_;
    XSizeLimits::Extent asked_;
    /// The window had the size that was asked for.
    bool wasAsAsked_ = false;
    bool isAimedWithClient_ = false;
};

} // namespace tarvex
