#pragma once

#include <cstdint>
#include <optional>

namespace tarvex {

enum class InstanceRequestKind : std::uint8_t { none, openEditor, openPreferences, quit };

/// What a start of the program asks of the instance that runs, be it another one or itself.
struct InstanceRequest {
    InstanceRequestKind kind = InstanceRequestKind::none;
    /// The number of the display to open the editor on; the main one without.
    std::optional<std::uint32_t> display;

    bool operator==(const InstanceRequest&) const = default;
};

} // namespace tarvex
