#include "Tests/Contract/DisplayContract.h"
#include "Tests/Contract/SimulatedWorld.h"

namespace tarvex::contract {
namespace {

class SimulatedDisplayWorld final : public SimulatedWorld<DisplayWorld> {
public:
    DisplayPlatform& displays() override { return desktop_.displays(); }

    ScreenPlatform& screens() override { return desktop_.displays(); }

    void arrange(const std::vector<Rect>& bounds) override {
        std::vector<SimulatedDisplay>& all = desktop_.displays().all();
        while (all.size() > bounds.size()) {
            all.pop_back();
        }
        while (all.size() < bounds.size()) {
            SimulatedDisplay display;
            display.number = ++lastNumber_;
            display.serial = 1000 + lastNumber_;
            display.isBuiltin = lastNumber_ == 1;
            display.name = std::string("Monitor ").append(std::to_string(lastNumber_));
            all.push_back(display);
        }
        for (std::size_t index = 0; index < bounds.size(); ++index) {
            const Rect& rect = bounds[index];
            all[index].frame = {rect.x, bounds.front().height - rect.maxY(), rect.width, rect.height};
        }
    }

    DisplayIdentity identity(std::size_t index) override {
        const SimulatedDisplay& display = desktop_.displays().all().at(index);
        return {display.vendor, display.model, display.serial, display.isBuiltin, display.name};
    }

    void addTopPanel(std::size_t index, double height) override {
        desktop_.displays().all().at(index).topPanel = height;
    }

    void addLeftPanel(std::size_t index, double width) override {
        desktop_.displays().all().at(index).leftPanel = width;
    }

    void removePanels() override {
        for (SimulatedDisplay& display : desktop_.displays().all()) {
            display.topPanel = 0;
            display.leftPanel = 0;
        }
    }

private:
    std::uint32_t lastNumber_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Simulated, DisplayContract,
                         ::testing::Values(worldFactory<DisplayWorld, SimulatedDisplayWorld>("Simulated")),
                         worldName);

} // namespace
} // namespace tarvex::contract
