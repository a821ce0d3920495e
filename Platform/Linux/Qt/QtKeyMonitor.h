#pragma once

#include "App/Hotkeys/KeyMonitorPlatform.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <memory>

namespace tarvex {

/// Sees the keys that the toolkit delivers to this program's windows, before the windows and before the
/// toolkit's shortcuts. While a monitor is installed, the window that has the focus holds the keyboard, so
/// that combinations arrive that the window manager or another program has grabbed.
///
/// A key is named by its place on the keyboard. Reported are real presses alone: not those of modifier keys,
/// which the windows receive as ever, and not the repetitions of a key that is held. A key without a virtual
/// key code is swallowed, and so is one pressed while a modifier is held that no event flag stands for, such
/// as AltGr: reported, it would pass for another combination. The rest of a swallowed key, its repetitions
/// and its release, is swallowed too, also when the monitor is gone by then; the keyboard is let go of with
/// that release, as a combination that is still held would otherwise start what it stands for on the desktop
/// when it repeats.
class QtKeyMonitor final : public KeyMonitorPlatform {
public:
    /// An application object must exist. Connection and pump must outlive the platform; monitors need not go
    /// before it.
    QtKeyMonitor(XConnection& connection, XEventPump& pump);

    QtKeyMonitor(const QtKeyMonitor&) = delete;
    QtKeyMonitor& operator=(const QtKeyMonitor&) = delete;
    QtKeyMonitor(QtKeyMonitor&&) = delete;
    QtKeyMonitor& operator=(QtKeyMonitor&&) = delete;
    ~QtKeyMonitor() override;

    /// Never null. Of several monitors the oldest is asked first; one that swallows the key is the last.
    [[nodiscard]] std::unique_ptr<KeyMonitor> addLocalKeyDownMonitor(KeyHandler handler) override;

private:
    class Filter;
    class Monitor;

    std::shared_ptr<Filter> filter_;
};

} // namespace tarvex
