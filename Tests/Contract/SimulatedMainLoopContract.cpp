#include "Tests/Contract/MainLoopContract.h"
#include "Tests/Contract/SimulatedWorld.h"

namespace tarvex::contract {
namespace {

class SimulatedMainLoopWorld final : public SimulatedWorld<MainLoopWorld> {
public:
    MainLoop& mainLoop() override { return desktop_.mainLoop(); }

    double now() override { return desktop_.mainLoop().now(); }
};

INSTANTIATE_TEST_SUITE_P(Simulated, MainLoopContract,
                         ::testing::Values(worldFactory<MainLoopWorld, SimulatedMainLoopWorld>("Simulated")),
                         worldName);

} // namespace
} // namespace tarvex::contract
