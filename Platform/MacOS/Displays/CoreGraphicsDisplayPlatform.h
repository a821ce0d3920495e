#pragma once

#include "Core/Displays/DisplayPlatform.h"

namespace tarvex {

/// The displays of Core Graphics; a display's number is its CGDirectDisplayID, error codes are CGError
/// values. The registry is that of the "IODisplayConnect" services, which exist on Intel alone: on Apple
/// silicon it is empty, and the screens alone name the displays.
class CoreGraphicsDisplayPlatform final : public DisplayPlatform {
public:
    [[nodiscard]] ActiveDisplayList activeDisplays(std::uint32_t capacity) override;
    [[nodiscard]] std::uint32_t vendorNumber(std::uint32_t displayId) override;
    [[nodiscard]] std::uint32_t modelNumber(std::uint32_t displayId) override;
    [[nodiscard]] std::uint32_t serialNumber(std::uint32_t displayId) override;
    [[nodiscard]] Rect bounds(std::uint32_t displayId) override;
    [[nodiscard]] bool isBuiltin(std::uint32_t displayId) override;
    [[nodiscard]] std::unique_ptr<DisplayRegistryIterator> displayRegistry() override;
    [[nodiscard]] std::string currentLocaleIdentifier() override;
};

} // namespace tarvex
