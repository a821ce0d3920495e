#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tarvex {

/// The identity of a monitor, the same after a reboot or a reconnection.
class DisplayIdentifier {
public:
    DisplayIdentifier(std::int64_t vendorId, std::int64_t productId, std::optional<std::int64_t> serialNumber)
        : vendorId_(vendorId), productId_(productId), serialNumber_(serialNumber) {}

    [[nodiscard]] std::int64_t vendorId() const { return vendorId_; }

    [[nodiscard]] std::int64_t productId() const { return productId_; }

    /// None when the display reports no serial number.
    [[nodiscard]] std::optional<std::int64_t> serialNumber() const { return serialNumber_; }

    /// "v{vendor}-p{product}-s{serial}", with "no-serial" for an absent serial number: the display's key in
    /// the configuration.
    [[nodiscard]] std::string stableId() const;

    bool operator==(const DisplayIdentifier&) const = default;

private:
    std::int64_t vendorId_;
    std::int64_t productId_;
    std::optional<std::int64_t> serialNumber_;
};

} // namespace tarvex
