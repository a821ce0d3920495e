#include "Tests/Contract/KeyMonitorContract.h"
#include "Tests/Contract/SimulatedWorld.h"
#include "Tests/Support/Simulated/SimulatedHotkeys.h"

namespace tarvex::contract {
namespace {

struct SimulatedModifier {
    std::uint32_t modifier;
    std::uint16_t keyCode;
    std::uint64_t flag;
};

constexpr std::array<SimulatedModifier, 4> simulatedModifiers{
    {{modifier_mask::command, 55, event_flag::command},
     {modifier_mask::option, 58, event_flag::option},
     {modifier_mask::control, 59, event_flag::control},
     {modifier_mask::shift, 56, event_flag::shift}}};

class SimulatedKeyMonitorWorld final : public SimulatedWorld<KeyMonitorWorld> {
public:
    KeyMonitorPlatform& platform() override { return monitors_; }

    void type(std::uint16_t keyCode, std::uint32_t modifiers) override {
        std::uint64_t flags = 0;
        for (const SimulatedModifier& modifier : simulatedModifiers) {
            if ((modifiers & modifier.modifier) != 0) {
                flags |= modifier.flag;
                static_cast<void>(monitors_.press({modifier.keyCode, flags}));
            }
        }
        reachedWindow_ += monitors_.press({keyCode, flags}) ? 1 : 0;
    }

    void typeModifier(std::uint32_t modifier) override {
        for (const SimulatedModifier& one : simulatedModifiers) {
            if (modifier == one.modifier) {
                static_cast<void>(monitors_.press({one.keyCode, one.flag}));
            }
        }
    }

    int reachedWindow() override { return reachedWindow_; }

private:
    SimulatedKeyMonitors monitors_;
    int reachedWindow_ = 0;
};

INSTANTIATE_TEST_SUITE_P(
    Simulated, KeyMonitorContract,
    ::testing::Values(worldFactory<KeyMonitorWorld, SimulatedKeyMonitorWorld>("Simulated")), worldName);

} // namespace
} // namespace tarvex::contract
