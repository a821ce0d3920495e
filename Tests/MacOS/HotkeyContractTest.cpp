#include "Tests/Contract/HotkeyContract.h"

#include "Platform/MacOS/Hotkeys/CarbonHotkeyPlatform.h"
#include "Tests/MacOS/MacWorld.h"

namespace tarvex::contract {
namespace {

class MacHotkeyWorld final : public MacWorld<HotkeyWorld> {
public:
    HotkeyPlatform& platform() override { return platform_; }

    void type(std::uint32_t keyCode, std::uint32_t modifiers) override {
        constexpr std::uint32_t alphaLock = 0x400;
        const std::uint32_t held = isLocked_ ? modifiers | alphaLock : modifiers;
        reachedOthers_ += fake::mac().hotkeys.press(keyCode, held) ? 0 : 1;
    }

    void toggleCapsLock() override { isLocked_ = !isLocked_; }

    int reachedOthers() override { return reachedOthers_; }

private:
    CarbonHotkeyPlatform platform_;
    bool isLocked_ = false;
    int reachedOthers_ = 0;
};

INSTANTIATE_TEST_SUITE_P(MacOS, HotkeyContract,
                         ::testing::Values(worldFactory<HotkeyWorld, MacHotkeyWorld>("Fake")), worldName);

} // namespace
} // namespace tarvex::contract
