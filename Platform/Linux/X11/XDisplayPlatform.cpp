#include "Platform/Linux/X11/XDisplayPlatform.h"

#include <algorithm>
#include <cstdlib>

namespace tarvex {

XDisplayPlatform::XDisplayPlatform(XConnection& connection, MonitorTracker& monitors)
    : connection_(&connection), monitors_(&monitors) {}

ActiveDisplayList XDisplayPlatform::activeDisplays(std::uint32_t capacity) {
    ActiveDisplayList list;
    if (connection_->isBroken()) {
        list.error = XConnection::connectionLost;
        return list;
    }
    const std::vector<Monitor>& monitors = monitors_->monitors();
    // The connection may have broken during the query, whose answer is then that of no server.
    if (connection_->isBroken()) {
        list.error = XConnection::connectionLost;
        return list;
    }
    list.count = static_cast<std::uint32_t>(monitors.size());
    for (const Monitor& monitor : monitors) {
        if (list.displays.size() < capacity) {
            list.displays.push_back(monitor.number);
        }
    }
    return list;
}

std::uint32_t XDisplayPlatform::vendorNumber(std::uint32_t displayId) {
    const Monitor* monitor = monitors_->find(displayId);
    return monitor == nullptr ? 0 : monitor->edid.vendor;
}

std::uint32_t XDisplayPlatform::modelNumber(std::uint32_t displayId) {
    const Monitor* monitor = monitors_->find(displayId);
    return monitor == nullptr ? 0 : monitor->edid.product;
}

std::uint32_t XDisplayPlatform::serialNumber(std::uint32_t displayId) {
    const Monitor* monitor = monitors_->find(displayId);
    return monitor == nullptr ? 0 : monitor->edid.serial;
}

Rect XDisplayPlatform::bounds(std::uint32_t displayId) {
    const Monitor* monitor = monitors_->find(displayId);
    if (monitor == nullptr) {
        return {};
    }
    const PixelRect& primary = monitors_->monitors().front().area;
    const PixelRect& area = monitor->area;
    return {static_cast<double>(area.x - primary.x), static_cast<double>(area.y - primary.y),
            static_cast<double>(area.width), static_cast<double>(area.height)};
}

bool XDisplayPlatform::isBuiltin(std::uint32_t displayId) {
    const Monitor* monitor = monitors_->find(displayId);
    return monitor != nullptr && monitor->isPanel;
}

std::unique_ptr<DisplayRegistryIterator> XDisplayPlatform::displayRegistry() {
    return nullptr;
}

std::string XDisplayPlatform::currentLocaleIdentifier() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(name);
        if (value == nullptr || *value == '\0') {
            continue;
        }
        std::string locale = value;
        locale.resize(std::min(locale.find_first_of(".@"), locale.size()));
        return locale == "C" || locale == "POSIX" ? std::string{} : locale;
    }
    return {};
}

} // namespace tarvex
