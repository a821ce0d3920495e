#include "Tests/Contract/HotkeyContract.h"
#include "Tests/Contract/SimulatedWorld.h"
#include "Tests/Support/Simulated/SimulatedHotkeys.h"

namespace tarvex::contract {
namespace {

class SimulatedHotkeyWorld final : public SimulatedWorld<HotkeyWorld> {
public:
    HotkeyPlatform& platform() override { return hotkeys_; }

    void type(std::uint32_t keyCode, std::uint32_t modifiers) override {
        constexpr std::uint32_t capsLock = 0x400;
        reachedOthers_ += hotkeys_.pressKey(keyCode, isLocked_ ? modifiers | capsLock : modifiers) ? 0 : 1;
    }

    void toggleCapsLock() override { isLocked_ = !isLocked_; }

    int reachedOthers() override { return reachedOthers_; }

private:
    SimulatedHotkeys hotkeys_;
    bool isLocked_ = false;
    int reachedOthers_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Simulated, HotkeyContract,
                         ::testing::Values(worldFactory<HotkeyWorld, SimulatedHotkeyWorld>("Simulated")),
                         worldName);

} // namespace
} // namespace tarvex::contract
