#pragma once

#include "Core/Displays/DisplayPlatform.h"
#include "Core/Displays/ScreenPlatform.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

/// A monitor and the screen that it shows.
struct SimulatedDisplay {
    std::uint32_t number = 0;
    /// In screen space.
    Rect frame;
    /// What panels take away, in points.
    double topPanel = 0;
    double bottomPanel = 0;
    double leftPanel = 0;
    std::uint32_t vendor = 0x1111;
    std::uint32_t model = 0x2222;
    std::uint32_t serial = 0;
    bool isBuiltin = false;
    std::string name = {};
    /// False for a screen that does not say which display shows it.
    bool isNumberKnown = true;

    [[nodiscard]] Rect visibleFrame() const {
        return {frame.x + leftPanel, frame.y + bottomPanel, frame.width - leftPanel,
                frame.height - topPanel - bottomPanel};
    }
};

/// The monitors of the simulated desktop, the primary one first: the hardware and the screens on it.
class SimulatedDisplays final : public DisplayPlatform, public ScreenPlatform {
public:
    [[nodiscard]] ActiveDisplayList activeDisplays(std::uint32_t capacity) override;
    [[nodiscard]] std::uint32_t vendorNumber(std::uint32_t displayId) override;
    [[nodiscard]] std::uint32_t modelNumber(std::uint32_t displayId) override;
    [[nodiscard]] std::uint32_t serialNumber(std::uint32_t displayId) override;
    [[nodiscard]] Rect bounds(std::uint32_t displayId) override;
    [[nodiscard]] bool isBuiltin(std::uint32_t displayId) override;
    [[nodiscard]] std::unique_ptr<DisplayRegistryIterator> displayRegistry() override;

    [[nodiscard]] std::string currentLocaleIdentifier() override { return "en_US"; }

    [[nodiscard]] std::vector<Screen> screens() override;
    [[nodiscard]] std::optional<Screen> mainScreen() override;

    /// The monitors themselves, to be changed at will.
    std::vector<SimulatedDisplay>& all() { return displays_; }

    /// The monitor of that number; it must be plugged in.
    SimulatedDisplay& at(std::uint32_t number);

    void plug(SimulatedDisplay display) { displays_.push_back(std::move(display)); }

    void unplug(std::uint32_t number);

    /// The top of the desktop in screen space; 0 without a screen.
    [[nodiscard]] double desktopTop() const;

private:
    [[nodiscard]] const SimulatedDisplay* find(std::uint32_t number) const;

    std::vector<SimulatedDisplay> displays_;
};

} // namespace tarvex
