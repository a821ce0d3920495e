#pragma once

#include "Core/Displays/ScreenPlatform.h"
#include "Platform/Linux/X11/MonitorTracker.h"
#include "Platform/Linux/X11/StrutTracker.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tarvex {

/// The monitors of an X server as screens; what panels keep free is taken off their visible frames. The
/// server is asked only after it told of a change, with one exception: mainScreen() asks for the active
/// window whenever there are several screens, because to listen to that window would wake an idle process at
/// every step of every move.
class XScreenPlatform final : public ScreenPlatform {
public:
    /// All must outlive the platform.
    XScreenPlatform(XConnection& connection, MonitorTracker& monitors, StrutTracker& struts);

    [[nodiscard]] std::vector<Screen> screens() override;

    /// The screen that holds the centre of the active window's frame, else the primary one.
    [[nodiscard]] std::optional<Screen> mainScreen() override;

private:
    void refreshIfStale();
    [[nodiscard]] std::optional<PixelRect> activeWindowFrame();

    XConnection* connection_;
    MonitorTracker* monitors_;
    StrutTracker* struts_;
    std::optional<std::uint64_t> monitorsRevision_;
    std::uint64_t strutsRevision_ = 0;
    std::vector<Screen> screens_;
};

} // namespace tarvex
