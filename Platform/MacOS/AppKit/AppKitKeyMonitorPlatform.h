#pragma once

#include "App/Hotkeys/KeyMonitorPlatform.h"

namespace tarvex {

/// The key presses that the toolkit is about to hand to this program's windows. Combinations that the system
/// or another program's hotkeys take do not arrive. Of several monitors the toolkit knows the order.
class AppKitKeyMonitorPlatform final : public KeyMonitorPlatform {
public:
    [[nodiscard]] std::unique_ptr<KeyMonitor> addLocalKeyDownMonitor(KeyHandler handler) override;
};

} // namespace tarvex
