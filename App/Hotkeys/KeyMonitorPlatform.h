#pragma once

#include "App/Toolkit/View.h"

#include <functional>
#include <memory>

namespace tarvex {

/// An installed monitor; destroying it removes it, also from within its own handler.
class KeyMonitor {
public:
    KeyMonitor() = default;
    KeyMonitor(const KeyMonitor&) = delete;
    KeyMonitor& operator=(const KeyMonitor&) = delete;
    KeyMonitor(KeyMonitor&&) = delete;
    KeyMonitor& operator=(KeyMonitor&&) = delete;
    virtual ~KeyMonitor() = default;
};

/// Port: sees the keys that are pressed in this program's own windows before the windows do.
class KeyMonitorPlatform {
public:
    /// Gives true to pass the key on to the window, false to swallow it.
    using KeyHandler = std::function<bool(const KeyEvent&)>;

    KeyMonitorPlatform() = default;
    KeyMonitorPlatform(const KeyMonitorPlatform&) = delete;
    KeyMonitorPlatform& operator=(const KeyMonitorPlatform&) = delete;
    KeyMonitorPlatform(KeyMonitorPlatform&&) = delete;
    KeyMonitorPlatform& operator=(KeyMonitorPlatform&&) = delete;
    virtual ~KeyMonitorPlatform() = default;

    /// Has the handler called for every key press, also for combinations that the desktop would take for
    /// itself where the platform can. A press with modifiers that the event_flag bits would not tell may
    /// reach neither the handler nor the window. Null when the platform refuses.
    [[nodiscard]] virtual std::unique_ptr<KeyMonitor> addLocalKeyDownMonitor(KeyHandler handler) = 0;
};

} // namespace tarvex
