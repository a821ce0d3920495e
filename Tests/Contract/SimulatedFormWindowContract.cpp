#include "Tests/Contract/FormWindowClosingContract.h"
#include "Tests/Contract/FormWindowKeysContract.h"
#include "Tests/Contract/SimulatedWorld.h"
#include "Tests/Support/Simulated/SimulatedFormWindows.h"

namespace tarvex::contract {
namespace {

class SimulatedFormWindowWorld final : public SimulatedWorld<FormWindowWorld> {
public:
    void settle() override {
        SimulatedWorld::settle();
        windows_.layOutIfNeeded();
    }

    FormWindowPlatform& windows() override { return windows_; }

    std::optional<SeenControl> seen(const std::string& title, const std::string& id) override {
        SimulatedFormWindow& window = windows_.titled(title);
        if (!window.hasControl(id)) {
            return std::nullopt;
        }
        const Control& control = window.control(id);
        return SeenControl{control.text, control.value, control.isEnabled, control.isHidden};
    }

    Rect windowFrame(const std::string& title) override { return windows_.titled(title).frame; }

    Rect visibleScreen() override { return SimulatedFormWindows::visibleScreen; }

    Size contentSize(const std::string& title) override {
        const Rect frame = windows_.titled(title).frame;
        return {frame.width, frame.height - SimulatedFormWindow::titleBarHeight};
    }

    bool hasKeyboard(const std::string& title) override { return windows_.titled(title).isKey; }

    void click(const std::string& title, const std::string& id) override { windows_.titled(title).click(id); }

    void dragAcross(const std::string& title, const std::string& id, int movements) override {
        const Control slider = windows_.titled(title).control(id);
        const double range = slider.maximumValue - slider.minimumValue;
        for (int movement = 1; movement <= movements; ++movement) {
            windows_.titled(title).use(id, slider.minimumValue + range * movement / movements);
        }
    }

    void press(FormKey key) override { windows_.press(key); }

    void closeByTitleBar(const std::string& title) override { windows_.titled(title).hide(); }

    void giveKeyboardToAnotherProgram() override { windows_.resignKey(); }

private:
    SimulatedFormWindows windows_{desktop_.journal()};
};

INSTANTIATE_TEST_SUITE_P(
    Simulated, FormWindowContract,
    ::testing::Values(worldFactory<FormWindowWorld, SimulatedFormWindowWorld>("Simulated")), worldName);

INSTANTIATE_TEST_SUITE_P(
    Simulated, FormWindowKeysContract,
    ::testing::Values(worldFactory<FormWindowWorld, SimulatedFormWindowWorld>("Simulated")), worldName);

INSTANTIATE_TEST_SUITE_P(
    Simulated, FormWindowClosingContract,
    ::testing::Values(worldFactory<FormWindowWorld, SimulatedFormWindowWorld>("Simulated")), worldName);

} // namespace
} // namespace tarvex::contract
