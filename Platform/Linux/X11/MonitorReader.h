#pragma once

#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/Edid.h"
#include "Platform/Linux/X11/XConnection.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarvex {

/// One monitor as the server shows it.
struct Monitor {
    /// The atom of its name: never 0, unique, and the same as long as the monitor is connected.
    std::uint32_t number = 0;
    std::string name;
    /// Of the output that drives it; empty when none does.
    std::string outputName;
    PixelRect area;
    /// Zeros and no name when the monitor has no identification data.
    Edid edid;
    /// True for the built-in panel of a portable computer.
    bool isPanel = false;
};

/// All that the server says of its monitors at one time.
struct MonitorList {
    /// The primary monitor first, then the server's order. Of several that show the same part of the root
    /// only the first is listed. Empty while no monitor is active.
    std::vector<Monitor> monitors;
    /// The root window itself.
    PixelRect root;
};

/// True for the names that drivers give to the connectors of built-in panels, such as "eDP-1".
[[nodiscard]] bool isPanelConnectorName(std::string_view name);

/// True when the server can list its monitors (RandR 1.5). Asking also makes the server send this client the
/// events of that version.
[[nodiscard]] bool serverListsMonitors(XConnection& connection);

/// Reads the list with two waits for the server. A server that cannot list monitors has one, the whole root.
/// Empty on a broken connection.
[[nodiscard]] MonitorList readMonitors(XConnection& connection, bool serverListsMonitors);

} // namespace tarvex
