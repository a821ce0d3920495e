#pragma once

#include "Core/Displays/DisplayIdentifier.h"
#include "Core/Displays/DisplayPlatform.h"
#include "Core/Displays/ScreenPlatform.h"
#include "Core/Logging/Logger.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

/// Answers which displays are active, how each is identified, and what it is called. Texts with sizes throw
/// std::logic_error for bounds that are not finite, a fault of the adapter; nothing else throws.
class DisplayService {
public:
    /// The platforms must outlive the service.
    DisplayService(Logger logger, DisplayPlatform& displays, ScreenPlatform& screens);

    /// The active display numbers in the platform's order, the main display first. An error of the platform
    /// is logged and gives a short or empty list.
    [[nodiscard]] std::vector<std::uint32_t> getActiveDisplays();

    /// The identity of a display; a serial number of 0 counts as none.
    [[nodiscard]] DisplayIdentifier getIdentifier(std::uint32_t displayId);

    /// The name of a display for people; none when neither the screens nor the hardware know one.
    [[nodiscard]] std::optional<std::string> getDisplayName(std::uint32_t displayId);

    /// The line that labels a display in menus: name, kind, stable id, size in points, and for a display
    /// without a serial number its position, which tells two identical ones apart.
    [[nodiscard]] std::string getDisplayTitle(std::uint32_t displayId);

    /// Stable id and size of each active display, in list order.
    [[nodiscard]] std::vector<std::string> getDisplaySummaries();

private:
    [[nodiscard]] std::optional<std::string> getLocalizedScreenName(std::uint32_t displayId);
    [[nodiscard]] std::optional<std::string> getRegistryName(std::uint32_t displayId);
    [[nodiscard]] std::unique_ptr<DisplayRegistryService>
    findRegistryService(const DisplayIdentifier& identifier);
    [[nodiscard]] static bool matches(const DisplayRegistryService& service,
                                      const DisplayIdentifier& identifier);
    [[nodiscard]] std::optional<std::string> pickLocalizedName(const LocalizedNames& names);

    Logger logger_;
    DisplayPlatform* displays_;
    ScreenPlatform* screens_;
};

/// The first screen that shows the display; none when no screen does.
[[nodiscard]] std::optional<Screen> findScreen(ScreenPlatform& screens, std::uint32_t displayId);

} // namespace tarvex
