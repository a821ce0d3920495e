#include "Tests/Contract/LoginItemContract.h"
#include "Tests/Support/Simulated/SimulatedShell.h"

namespace tarvex::contract {
namespace {

class SimulatedLoginItemWorld final : public LoginItemWorld {
public:
    LoginItemPlatform& platform() override { return loginItem_; }

    std::unique_ptr<LoginItemPlatform> makePlatformOfBuildTree() override {
        auto other = std::make_unique<SimulatedLoginItem>(journal_);
        other->isBundled = false;
        return other;
    }

    void enableElsewhere() override { loginItem_.current = LoginItemStatus::enabled; }

    void disableElsewhere() override { loginItem_.current = LoginItemStatus::notRegistered; }

    void refuseChanges() override { loginItem_.refuses = true; }

private:
    Journal journal_;
    SimulatedLoginItem loginItem_{journal_};
};

INSTANTIATE_TEST_SUITE_P(
    Simulated, LoginItemContract,
    ::testing::Values(worldFactory<LoginItemWorld, SimulatedLoginItemWorld>("Simulated")), worldName);

} // namespace
} // namespace tarvex::contract
