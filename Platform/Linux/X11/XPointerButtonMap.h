#pragma once

#include "Platform/Linux/X11/XConnection.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace tarvex {

/// Which logical button a physical one is. The server applies the map of the device and then that of the
/// pointer, either of which may serve a left-handed user. The maps are read when first needed.
class XPointerButtonMap {
public:
    /// The connection must outlive the map and have told the server its XInput version.
    explicit XPointerButtonMap(XConnection& connection) : connection_(&connection) {}

    /// The logical number of a button of the device `source`; 0 for a button that is switched off.
    [[nodiscard]] std::uint32_t logicalButton(std::uint32_t physicalButton, std::uint16_t source);

    /// Forgets what was read, after the server said that a map changed.
    void invalidate() { maps_.clear(); }

private:
    using Map = std::vector<std::uint8_t>;

    [[nodiscard]] const Map& pointerMap();
    [[nodiscard]] const Map& deviceMap(std::uint16_t device);

    XConnection* connection_;
    std::unordered_map<std::uint16_t, Map> maps_;
};

} // namespace tarvex
