#include "Core/Displays/DisplayIdentifier.h"

namespace tarvex {

std::string DisplayIdentifier::stableId() const {
    const std::string serial = serialNumber_ ? std::to_string(*serialNumber_) : "no-serial";
    return "v" + std::to_string(vendorId_) + "-p" + std::to_string(productId_) + "-s" + serial;
}

} // namespace tarvex
