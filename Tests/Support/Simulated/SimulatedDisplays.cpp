#include "Tests/Support/Simulated/SimulatedDisplays.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace tarvex {

namespace {

class RegistryService final : public DisplayRegistryService {
public:
    explicit RegistryService(const SimulatedDisplay& display) : display_(display) {}

    [[nodiscard]] std::optional<std::int64_t> integerProperty(std::string_view name) const override {
        if (name == "DisplayVendorID") {
            return display_.vendor;
        }
        if (name == "DisplayProductID") {
            return display_.model;
        }
        if (name == "DisplaySerialNumber" && display_.serial != 0) {
            return display_.serial;
        }
        return std::nullopt;
    }

    [[nodiscard]] LocalizedNames preferredProductNames() const override { return {{"en", display_.name}}; }

private:
    SimulatedDisplay display_;
};

class RegistryWalk final : public DisplayRegistryIterator {
public:
    explicit RegistryWalk(std::vector<SimulatedDisplay> displays) : displays_(std::move(displays)) {}

    [[nodiscard]] std::unique_ptr<DisplayRegistryService> next() override {
        return next_ < displays_.size() ? std::make_unique<RegistryService>(displays_[next_++]) : nullptr;
    }

private:
    std::vector<SimulatedDisplay> displays_;
    std::size_t next_ = 0;
};

} // namespace

ActiveDisplayList SimulatedDisplays::activeDisplays(std::uint32_t capacity) {
    ActiveDisplayList list;
    list.count = static_cast<std::uint32_t>(displays_.size());
    for (const SimulatedDisplay& display : displays_) {
        if (list.displays.size() < capacity) {
            list.displays.push_back(display.number);
        }
    }
    return list;
}

std::uint32_t SimulatedDisplays::vendorNumber(std::uint32_t displayId) {
    const SimulatedDisplay* display = find(displayId);
    return display == nullptr ? 0 : display->vendor;
}

std::uint32_t SimulatedDisplays::modelNumber(std::uint32_t displayId) {
    const SimulatedDisplay* display = find(displayId);
    return display == nullptr ? 0 : display->model;
}

std::uint32_t SimulatedDisplays::serialNumber(std::uint32_t displayId) {
    const SimulatedDisplay* display = find(displayId);
    return display == nullptr ? 0 : display->serial;
}

Rect SimulatedDisplays::bounds(std::uint32_t displayId) {
    const SimulatedDisplay* display = find(displayId);
    if (display == nullptr) {
        return {};
    }
    const Rect& frame = display->frame;
    return {frame.x, displays_.front().frame.maxY() - frame.maxY(), frame.width, frame.height};
}

bool SimulatedDisplays::isBuiltin(std::uint32_t displayId) {
    const SimulatedDisplay* display = find(displayId);
    return display != nullptr && display->isBuiltin;
}

std::unique_ptr<DisplayRegistryIterator> SimulatedDisplays::displayRegistry() {
    return std::make_unique<RegistryWalk>(displays_);
}

std::vector<Screen> SimulatedDisplays::screens() {
    std::vector<Screen> screens;
    for (const SimulatedDisplay& display : displays_) {
        Screen screen;
        if (display.isNumberKnown) {
            screen.displayNumber = display.number;
        }
        screen.frame = display.frame;
        screen.visibleFrame = display.visibleFrame();
        screen.localizedName = display.name;
        screens.push_back(std::move(screen));
    }
    return screens;
}

std::optional<Screen> SimulatedDisplays::mainScreen() {
    const std::vector<Screen> all = screens();
    return all.empty() ? std::nullopt : std::optional<Screen>(all.front());
}

SimulatedDisplay& SimulatedDisplays::at(std::uint32_t number) {
    for (SimulatedDisplay& display : displays_) {
        if (display.number == number) {
            return display;
        }
    }
    throw std::logic_error("no such display");
}

void SimulatedDisplays::unplug(std::uint32_t number) {
    std::erase_if(displays_, [&](const SimulatedDisplay& display) { return display.number == number; });
}

double SimulatedDisplays::desktopTop() const {
    if (displays_.empty()) {
        return 0;
    }
    double top = displays_.front().frame.maxY();
    for (const SimulatedDisplay& display : displays_) {
        top = std::max(top, display.frame.maxY());
    }
    return top;
}

const SimulatedDisplay* SimulatedDisplays::find(std::uint32_t number) const {
    for (const SimulatedDisplay& display : displays_) {
        if (display.number == number) {
            return &display;
        }
    }
    return nullptr;
}

} // namespace tarvex
