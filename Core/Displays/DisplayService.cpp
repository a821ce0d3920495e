#include "Core/Displays/DisplayService.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace tarvex {

namespace {

// A display of infinite or undefined extent is a fault of the adapter, not something to print.
std::string truncated(double value) {
    if (!std::isfinite(value)) {
        throw std::logic_error("display bounds are not finite");
    }
    return std::to_string(static_cast<std::int64_t>(value));
}

std::string describeSize(const Rect& bounds) {
    return truncated(bounds.width) + "x" + truncated(bounds.height);
}

std::optional<std::string> lookUp(const LocalizedNames& names, const std::string& locale) {
    const auto found =
        std::find_if(names.begin(), names.end(), [&](const auto& entry) { return entry.first == locale; });
    return found == names.end() ? std::nullopt : std::optional<std::string>(found->second);
}

// The part before the first "_" that is not empty: "en" of "en_US"; empty when there is none.
std::string languageOf(const std::string& locale) {
    const std::size_t start = locale.find_first_not_of('_');
    if (start == std::string::npos) {
        return {};
    }
    return locale.substr(start, locale.find('_', start) - start);
}

} // namespace

DisplayService::DisplayService(Logger logger, DisplayPlatform& displays, ScreenPlatform& screens)
    : logger_(std::move(logger)), displays_(&displays), screens_(&screens) {}

std::vector<std::uint32_t> DisplayService::getActiveDisplays() {
    const ActiveDisplayList counted = displays_->activeDisplays(0);
    if (counted.error != 0) {
        logger_.error("Failed to get display count: " + std::to_string(counted.error));
    }
    ActiveDisplayList listed = displays_->activeDisplays(counted.count);
    if (listed.error != 0) {
        logger_.error("Failed to get displays: " + std::to_string(listed.error));
    }
    std::vector<std::uint32_t> displays = std::move(listed.displays);
    displays.resize(counted.count, 0);
    displays.resize(std::min(listed.count, counted.count));
    return displays;
}

DisplayIdentifier DisplayService::getIdentifier(std::uint32_t displayId) {
    const std::uint32_t serial = displays_->serialNumber(displayId);
    return {displays_->vendorNumber(displayId), displays_->modelNumber(displayId),
            serial == 0 ? std::nullopt : std::optional<std::int64_t>(serial)};
}

std::optional<std::string> DisplayService::getDisplayName(std::uint32_t displayId) {
    std::optional<std::string> name = getLocalizedScreenName(displayId);
    return name ? name : getRegistryName(displayId);
}

std::string DisplayService::getDisplayTitle(std::uint32_t displayId) {
    const DisplayIdentifier identifier = getIdentifier(displayId);
    const std::string stableId = identifier.stableId();
    const Rect bounds = displays_->bounds(displayId);
    std::string title = getDisplayName(displayId).value_or(stableId);
    title += displays_->isBuiltin(displayId) ? " [Built-in] (" : " [External] (";
    title += stableId + ") @ " + describeSize(bounds);
    if (!identifier.serialNumber()) {
        title += " @ " + truncated(bounds.x) + "," + truncated(bounds.y);
    }
    return title;
}

std::vector<std::string> DisplayService::getDisplaySummaries() {
    std::vector<std::string> summaries;
    for (const std::uint32_t displayId : getActiveDisplays()) {
        summaries.push_back(getIdentifier(displayId).stableId() + " @ " +
                            describeSize(displays_->bounds(displayId)));
    }
    return summaries;
}

std::optional<std::string> DisplayService::getLocalizedScreenName(std::uint32_t displayId) {
    std::optional<Screen> screen = findScreen(*screens_, displayId);
    return screen ? std::optional<std::string>(std::move(screen->localizedName)) : std::nullopt;
}

std::optional<std::string> DisplayService::getRegistryName(std::uint32_t displayId) {
    const auto service = findRegistryService(getIdentifier(displayId));
    return service ? pickLocalizedName(service->preferredProductNames()) : std::nullopt;
}

std::unique_ptr<DisplayRegistryService>
DisplayService::findRegistryService(const DisplayIdentifier& identifier) {
    const auto iterator = displays_->displayRegistry();
    if (!iterator) {
        return nullptr;
    }
    while (auto service = iterator->next()) {
        if (matches(*service, identifier)) {
            return service;
        }
    }
    return nullptr;
}

bool DisplayService::matches(const DisplayRegistryService& service, const DisplayIdentifier& identifier) {
    return service.integerProperty("DisplayVendorID").value_or(-1) == identifier.vendorId() &&
           service.integerProperty("DisplayProductID").value_or(-1) == identifier.productId() &&
           (!identifier.serialNumber() ||
            service.integerProperty("DisplaySerialNumber") == identifier.serialNumber());
}

std::optional<std::string> DisplayService::pickLocalizedName(const LocalizedNames& names) {
    const std::string locale = displays_->currentLocaleIdentifier();
    const std::string language = languageOf(locale);
    if (!language.empty()) {
        std::optional<std::string> name = lookUp(names, language);
        return name ? name : lookUp(names, locale);
    }
    // Only without a locale does any name serve: a name in a language that the user did not choose is worse
    // than the stable id.
    std::optional<std::string> name = lookUp(names, locale);
    if (name || names.empty()) {
        return name;
    }
    return names.front().second;
}

std::optional<Screen> findScreen(ScreenPlatform& screens, std::uint32_t displayId) {
    for (Screen& screen : screens.screens()) {
        if (screen.displayNumber == displayId) {
            return std::move(screen);
        }
    }
    return std::nullopt;
}

} // namespace tarvex
