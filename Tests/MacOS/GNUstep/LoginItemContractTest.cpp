#include "Tests/Contract/LoginItemContract.h"

#include "Platform/MacOS/Shell/ServiceLoginItem.h"
#include "Tests/MacOS/GNUstep/LoginItemService.h"

namespace tarvex::contract {
namespace {

/// The adapter over a service of the tests' own, and a bundle that claims to be where a Mac would have it.
class ServiceLoginItemWorld final : public LoginItemWorld {
public:
    ServiceLoginItemWorld() { test::setMainBundlePath("/Applications/Tarvex.app"); }

    ServiceLoginItemWorld(const ServiceLoginItemWorld&) = delete;
    ServiceLoginItemWorld& operator=(const ServiceLoginItemWorld&) = delete;
    ServiceLoginItemWorld(ServiceLoginItemWorld&&) = delete;
    ServiceLoginItemWorld& operator=(ServiceLoginItemWorld&&) = delete;

    ~ServiceLoginItemWorld() override {
        test::setMainBundlePath(nullptr);
        test::setLoginItemRefuses(false);
        disableElsewhere();
    }

    LoginItemPlatform& platform() override { return platform_; }

    std::unique_ptr<LoginItemPlatform> makePlatformOfBuildTree() override {
        test::setMainBundlePath("/Users/somebody/Tarvex/build/release");
        return std::make_unique<ServiceLoginItem>();
    }

    void enableElsewhere() override { setStatus(LoginItemStatus::enabled); }

    void disableElsewhere() override { setStatus(LoginItemStatus::notRegistered); }

    void refuseChanges() override { test::setLoginItemRefuses(true); }

private:
    static void setStatus(LoginItemStatus status) { test::setLoginItemStatus(static_cast<int>(status)); }

    ServiceLoginItem platform_;
};

INSTANTIATE_TEST_SUITE_P(Service, LoginItemContract,
                         ::testing::Values(worldFactory<LoginItemWorld, ServiceLoginItemWorld>("Service")),
                         worldName);

} // namespace
} // namespace tarvex::contract
