#include "Tests/Contract/DisplayContract.h"

#include "Platform/MacOS/Displays/CoreGraphicsDisplayPlatform.h"
#include "Tests/MacOS/MacWorld.h"

namespace tarvex::contract {
namespace {

/// The displays are the adapter's; the screens, which the toolkit of a Mac makes, stand in for it.
class MacDisplayWorld final : public MacWorld<DisplayWorld> {
public:
    MacDisplayWorld() {
        fake::mac().registry.entries.resize(2);
        fake::mac().registry.entries.front().properties = {{"DisplayVendorID", 4268}};
    }

    DisplayPlatform& displays() override { return displays_; }

    ScreenPlatform& screens() override { return screens_; }

    void arrange(const std::vector<Rect>& bounds) override {
        std::vector<fake::FakeDisplay>& all = fake::mac().displays.all;
        while (all.size() > bounds.size()) {
            all.pop_back();
        }
        while (all.size() < bounds.size()) {
            const std::uint32_t number = ++lastNumber_;
            all.push_back({.number = number,
                           .vendor = 1552,
                           .model = 40000 + number,
                           .serial = 700 + number,
                           .isBuiltin = number == 1});
            screens_.names[number] = "Display " + std::to_string(number);
        }
        for (std::size_t index = 0; index < bounds.size(); ++index) {
            all[index].bounds = nativeRect(bounds[index]);
        }
    }

    DisplayIdentity identity(std::size_t index) override {
        const fake::FakeDisplay& display = fake::mac().displays.all.at(index);
        return {display.vendor, display.model, display.serial, display.isBuiltin,
                screens_.names.at(display.number)};
    }

    void addTopPanel(std::size_t index, double height) override {
        screens_.topPanels[fake::mac().displays.all.at(index).number] = height;
    }

    void addLeftPanel(std::size_t index, double width) override {
        screens_.leftPanels[fake::mac().displays.all.at(index).number] = width;
    }

    void removePanels() override {
        screens_.topPanels.clear();
        screens_.leftPanels.clear();
    }

private:
    CoreGraphicsDisplayPlatform displays_;
    MacScreens screens_;
    std::uint32_t lastNumber_ = 0;
};

INSTANTIATE_TEST_SUITE_P(MacOS, DisplayContract,
                         ::testing::Values(worldFactory<DisplayWorld, MacDisplayWorld>("Fake")), worldName);

} // namespace
} // namespace tarvex::contract
