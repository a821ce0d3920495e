#include "Tests/Contract/KeyboardLayoutContract.h"
#include "Tests/Contract/SimulatedWorld.h"
#include "Tests/Support/Simulated/SimulatedHotkeys.h"

namespace tarvex::contract {
namespace {

class SimulatedKeyboardLayoutWorld final : public SimulatedWorld<KeyboardLayoutWorld> {
public:
    SimulatedKeyboardLayoutWorld() { choose(KeyboardLayoutName::english); }

    KeyboardLayoutPlatform& platform() override { return layout_; }

    void choose(KeyboardLayoutName layout) override {
        switch (layout) {
        case KeyboardLayoutName::english:
            layout_.characters = {{0, "a"}, {6, "z"}, {18, "1"}, {41, ";"}, {49, " "}};
            break;
        case KeyboardLayoutName::german:
            layout_.characters = {{6, "y"}, {24, "\u00B4"}, {27, "\u00DF"}, {41, "\u00F6"}, {50, "^"}};
            break;
        case KeyboardLayoutName::russian:
            layout_.characters = {{0, "\u0444"}, {12, "\u0439"}};
            break;
        }
    }

    // The simulated layout has no locks.
    void toggleCapsLock() override {}

private:
    SimulatedKeyboardLayout layout_;
};

INSTANTIATE_TEST_SUITE_P(
    Simulated, KeyboardLayoutContract,
    ::testing::Values(worldFactory<KeyboardLayoutWorld, SimulatedKeyboardLayoutWorld>("Simulated")),
    worldName);

} // namespace
} // namespace tarvex::contract
