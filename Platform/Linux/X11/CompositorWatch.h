#pragma once

#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"
#include "Platform/Linux/X11/XSelectionWatch.h"

#include <functional>
#include <memory>

namespace tarvex {

/// Knows whether windows with alpha are blended on the connection's screen.
///
/// A compositing manager owns a certain selection, but it may take the windows over up to a second after it
/// has taken the selection; a window with alpha is solid black until then. So the watch keeps a witness: a
/// window just off the screen, of which nothing can be exposed until it has a place of its own to be drawn
/// to.
class CompositorWatch {
public:
    /// The connection and the pump must outlive the watch.
    /// @param changed called when isBlending() has changed; that is false for a moment when one manager takes
    /// over from another
    CompositorWatch(XConnection& connection, XEventPump& pump, std::function<void()> changed);

    CompositorWatch(const CompositorWatch&) = delete;
    CompositorWatch& operator=(const CompositorWatch&) = delete;
    CompositorWatch(CompositorWatch&&) = delete;
    CompositorWatch& operator=(CompositorWatch&&) = delete;
    ~CompositorWatch();

    /// Whether a window with alpha lets what is below it shine through, now.
    [[nodiscard]] bool isBlending() const { return hasManager_ && isWitnessRedirected_; }

private:
    void makeWitness();
    void destroyWitness();
    void handleOwner(xcb_window_t owner);
    void update(bool hasManager, bool isWitnessRedirected);

    XConnection* connection_;
    std::function<void()> changed_;
    xcb_window_t witness_ = XCB_WINDOW_NONE;
    bool hasManager_ = false;
    bool isWitnessRedirected_ = false;
    std::unique_ptr<XEventPump::Subscription> exposures_;
    XSelectionWatch selection_;
};

} // namespace tarvex
