#include "Tests/Contract/MainLoopContract.h"

#include "Platform/MacOS/CoreFoundation/RunLoopMainLoop.h"
#include "Tests/MacOS/MacWorld.h"

namespace tarvex::contract {
namespace {

class MacMainLoopWorld final : public MacWorld<MainLoopWorld> {
public:
    MainLoop& mainLoop() override { return mainLoop_; }

    double now() override { return fake::mac().runLoop.now(); }

private:
    RunLoopMainLoop mainLoop_;
};

INSTANTIATE_TEST_SUITE_P(MacOS, MainLoopContract,
                         ::testing::Values(worldFactory<MainLoopWorld, MacMainLoopWorld>("Fake")), worldName);

} // namespace
} // namespace tarvex::contract
