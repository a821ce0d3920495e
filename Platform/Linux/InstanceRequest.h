#pragma once

#include <cstdint>
#include <optional>

namespace tarvex {

/// What is to be opened or done. None is a plain start, for which an instance that runs shows its
/// preferences.
enum class InstanceRequestKind : std::uint8_t { none, openEditor, openPreferences, quit };

/// What a start of the program asks of the instance that runs, be it another one or itself.
struct InstanceRequest {
    InstanceRequestKind kind = InstanceRequestKind::none;
    /// The number of the display to open the editor on; the main one without.
    std::optional<std::uint32_t> display;

    bool operator==(const InstanceRequest&) const = default;
};

} // namespace tarvex
