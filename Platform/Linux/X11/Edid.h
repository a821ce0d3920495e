#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tarvex {

/// What a monitor tells about itself in its identification data (EDID).
struct Edid {
    /// The three letters of the maker, packed as the first big-endian word after the header.
    std::uint32_t vendor = 0;
    std::uint32_t product = 0;
    /// 0 when the monitor has none.
    std::uint32_t serial = 0;
    /// The product name; empty when the monitor gives none.
    std::string name;

    bool operator==(const Edid&) const = default;
};

/// How much of the data parseEdid() looks at: the base block, which stands first.
inline constexpr std::uint32_t edidBlockSize = 128;

/// None for data that is too short or does not begin as such data does. The checksum is not looked at:
/// monitors and adapters that get it wrong are common, and their numbers are still the same every time.
[[nodiscard]] std::optional<Edid> parseEdid(std::span<const std::uint8_t> data);

} // namespace tarvex
