#pragma once

#include "Core/Geometry.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarvex {

/// The answer to one query of the active display list.
struct ActiveDisplayList {
    /// 0 for success, else the platform's error code.
    std::int32_t error = 0;
    /// How many displays the platform says there are.
    std::uint32_t count = 0;
    /// At most as many display numbers as were asked for.
    std::vector<std::uint32_t> displays;
};

/// Locale code to product name, in the platform's own order.
using LocalizedNames = std::vector<std::pair<std::string, std::string>>;

/// One entry of the hardware's display registry; destroying it releases it.
class DisplayRegistryService {
public:
    DisplayRegistryService() = default;
    DisplayRegistryService(const DisplayRegistryService&) = delete;
    DisplayRegistryService& operator=(const DisplayRegistryService&) = delete;
    DisplayRegistryService(DisplayRegistryService&&) = delete;
    DisplayRegistryService& operator=(DisplayRegistryService&&) = delete;
    virtual ~DisplayRegistryService() = default;

    /// The named registry property as an integer; none when it is missing or no number.
    [[nodiscard]] virtual std::optional<std::int64_t> integerProperty(std::string_view name) const = 0;

    /// The preferred product names; empty when the entry holds none.
    [[nodiscard]] virtual LocalizedNames preferredProductNames() const = 0;
};

/// Walks the display registry; destroying it ends the walk.
class DisplayRegistryIterator {
public:
    DisplayRegistryIterator() = default;
    DisplayRegistryIterator(const DisplayRegistryIterator&) = delete;
    DisplayRegistryIterator& operator=(const DisplayRegistryIterator&) = delete;
    DisplayRegistryIterator(DisplayRegistryIterator&&) = delete;
    DisplayRegistryIterator& operator=(DisplayRegistryIterator&&) = delete;
    virtual ~DisplayRegistryIterator() = default;

    /// The next entry; null at the end.
    [[nodiscard]] virtual std::unique_ptr<DisplayRegistryService> next() = 0;
};

/// Port: the hardware side of displays, by the platform's 32-bit display number. A number is valid while its
/// display is connected; an unknown number yields zeros, an empty rectangle and false. Nothing throws.
class DisplayPlatform {
public:
    DisplayPlatform() = default;
    DisplayPlatform(const DisplayPlatform&) = delete;
    DisplayPlatform& operator=(const DisplayPlatform&) = delete;
    DisplayPlatform(DisplayPlatform&&) = delete;
    DisplayPlatform& operator=(DisplayPlatform&&) = delete;
    virtual ~DisplayPlatform() = default;

    /// The active displays, the main one first. A capacity of 0 asks for the count alone.
    [[nodiscard]] virtual ActiveDisplayList activeDisplays(std::uint32_t capacity) = 0;

    /// Vendor, model and serial number as the display's own identification data gives them; 0 for none.
    [[nodiscard]] virtual std::uint32_t vendorNumber(std::uint32_t displayId) = 0;
    [[nodiscard]] virtual std::uint32_t modelNumber(std::uint32_t displayId) = 0;
    [[nodiscard]] virtual std::uint32_t serialNumber(std::uint32_t displayId) = 0;

    /// Position and size in points; origin at the top-left of the primary display, y down.
    [[nodiscard]] virtual Rect bounds(std::uint32_t displayId) = 0;

    /// True for the panel of a portable computer.
    [[nodiscard]] virtual bool isBuiltin(std::uint32_t displayId) = 0;

    /// A walk over the hardware's display registry; null when there is none.
    [[nodiscard]] virtual std::unique_ptr<DisplayRegistryIterator> displayRegistry() = 0;

    /// The user's locale, such as "en_US"; empty when unknown.
    [[nodiscard]] virtual std::string currentLocaleIdentifier() = 0;
};

} // namespace tarvex
