#pragma once

#include "App/Toolkit/MainLoop.h"
#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/EventMask.h"
#include "Platform/Linux/X11/XClientResources.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>

namespace tarvex {

/// Tells of windows of other programs that are shown, moved or restacked on the root window, since they may
/// then lie above one of ours. It tells of the first at once. Then it listens to nothing for a while and
/// tells once more at its end, so that a window that is dragged does not wake the program at each of its
/// steps. A window that restacks itself again and again, as screen lockers do, means to be above all others:
/// from then on the watch tells of nothing until it is started anew.
class StackingWatch {
public:
    /// Seconds without listening.
    static constexpr double pause = 0.1;
    /// So often may a window restack itself.
    static constexpr int maxRestackings = 4;

    /// All must outlive the watch.
    /// @param stackingMayHaveChanged not called before the watch is started, nor once it is stopped
    StackingWatch(XConnection& connection, XEventPump& pump, MainLoop& mainLoop,
                  std::function<void()> stackingMayHaveChanged);

    StackingWatch(const StackingWatch&) = delete;
    StackingWatch& operator=(const StackingWatch&) = delete;
    StackingWatch(StackingWatch&&) = delete;
    StackingWatch& operator=(StackingWatch&&) = delete;
    ~StackingWatch() = default;

    /// Does nothing to a watch that is running. Waits for nobody.
    void start();
    void stop();

private:
    /// What is known of another window since the watch was started.
    struct Known {
        PixelRect place;
        int restackings = 0;
    };

    /// @param place none for a window that is shown
    void note(xcb_window_t parent, xcb_window_t window, const std::optional<PixelRect>& place);
    [[nodiscard]] bool insists(xcb_window_t window, const PixelRect& place);
    void resume();

    XConnection* connection_;
    MainLoop* mainLoop_;
    std::function<void()> stackingMayHaveChanged_;
    XClientResources own_;
    /// None while the watch pauses or does not run.
    std::optional<RootEventSelection> selection_;
    std::unique_ptr<Timer> pauseTimer_;
    std::unordered_map<xcb_window_t, Known> known_;
    bool hasGivenIn_ = false;
    std::array<std::unique_ptr<XEventPump::Subscription>, 2> subscriptions_;
};

} // namespace tarvex
