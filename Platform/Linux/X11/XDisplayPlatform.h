#pragma once

#include "Core/Displays/DisplayPlatform.h"
#include "Platform/Linux/X11/MonitorTracker.h"

namespace tarvex {

/// The monitors of an X server as displays. A display's number is the atom of its monitor's name.
class XDisplayPlatform final : public DisplayPlatform {
public:
    /// Both must outlive the platform.
    XDisplayPlatform(XConnection& connection, MonitorTracker& monitors);

    /// The error is that of a broken connection (XConnection::connectionLost).
    [[nodiscard]] ActiveDisplayList activeDisplays(std::uint32_t capacity) override;

    [[nodiscard]] std::uint32_t vendorNumber(std::uint32_t displayId) override;
    [[nodiscard]] std::uint32_t modelNumber(std::uint32_t displayId) override;
    [[nodiscard]] std::uint32_t serialNumber(std::uint32_t displayId) override;
    [[nodiscard]] Rect bounds(std::uint32_t displayId) override;
    [[nodiscard]] bool isBuiltin(std::uint32_t displayId) override;

    /// Null: X has no such registry. Screens name the displays here.
    [[nodiscard]] std::unique_ptr<DisplayRegistryIterator> displayRegistry() override;

    /// As the environment gives it for messages; the "C" locale counts as unknown.
    [[nodiscard]] std::string currentLocaleIdentifier() override;

private:
    XConnection* connection_;
    MonitorTracker* monitors_;
};

} // namespace tarvex
