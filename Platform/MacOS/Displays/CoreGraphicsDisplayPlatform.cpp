#include "Platform/MacOS/Displays/CoreGraphicsDisplayPlatform.h"

#include "Platform/MacOS/CoreFoundation/CFText.h"
#include "Platform/MacOS/Displays/IODisplayRegistry.h"

#include <CoreGraphics/CoreGraphics.h>
#include <algorithm>
#include <cmath>

namespace tarvex {

namespace {

// A number that no display has makes Core Graphics answer 0xFFFFFFFF, which is no vendor's number.
std::uint32_t numberOf(std::uint32_t (*read)(CGDirectDisplayID), std::uint32_t displayId) {
    return CGDisplayIsOnline(displayId) != 0 ? read(displayId) : 0;
}

} // namespace

ActiveDisplayList CoreGraphicsDisplayPlatform::activeDisplays(std::uint32_t capacity) {
    ActiveDisplayList list;
    list.displays.resize(capacity);
    list.error =
        CGGetActiveDisplayList(capacity, capacity == 0 ? nullptr : list.displays.data(), &list.count);
    if (capacity != 0) {
        list.displays.resize(std::min(list.count, capacity));
    }
    return list;
}

std::uint32_t CoreGraphicsDisplayPlatform::vendorNumber(std::uint32_t displayId) {
    return numberOf(&CGDisplayVendorNumber, displayId);
}

std::uint32_t CoreGraphicsDisplayPlatform::modelNumber(std::uint32_t displayId) {
    return numberOf(&CGDisplayModelNumber, displayId);
}

std::uint32_t CoreGraphicsDisplayPlatform::serialNumber(std::uint32_t displayId) {
    return numberOf(&CGDisplaySerialNumber, displayId);
}

Rect CoreGraphicsDisplayPlatform::bounds(std::uint32_t displayId) {
    const CGRect native = CGDisplayBounds(displayId);
    const Rect bounds{native.origin.x, native.origin.y, native.size.width, native.size.height};
    // The null rectangle, which a display that has just gone may have, lies at infinity.
    const bool isFinite = std::isfinite(bounds.x) && std::isfinite(bounds.y) && std::isfinite(bounds.width) &&
                          std::isfinite(bounds.height);
    return isFinite ? bounds : Rect{};
}

bool CoreGraphicsDisplayPlatform::isBuiltin(std::uint32_t displayId) {
    return CGDisplayIsOnline(displayId) != 0 && CGDisplayIsBuiltin(displayId) != 0;
}

std::unique_ptr<DisplayRegistryIterator> CoreGraphicsDisplayPlatform::displayRegistry() {
    return openIODisplayRegistry();
}

std::string CoreGraphicsDisplayPlatform::currentLocaleIdentifier() {
    const auto locale = CFHandle<CFLocaleRef>::adopt(CFLocaleCopyCurrent());
    if (!locale) {
        return {};
    }
    std::string identifier = textOf(CFLocaleGetIdentifier(locale.get()));
    // The user's deviations from the locale follow, as in "en_US@rg=gbzzzz".
    identifier.resize(std::min(identifier.find('@'), identifier.size()));
    return identifier;
}

} // namespace tarvex
