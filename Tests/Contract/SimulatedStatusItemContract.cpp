#include "Tests/Contract/SimulatedWorld.h"
#include "Tests/Contract/StatusItemContract.h"
#include "Tests/Support/Simulated/SimulatedShell.h"

namespace tarvex::contract {
namespace {

std::vector<ShownItem> shownItemsOf(const std::vector<MenuItem>& items) {
    std::vector<ShownItem> shown;
    for (const MenuItem& item : items) {
        shown.push_back({item.title, item.isEnabled, item.isSeparator,
                         shownItemsOf(item.submenu.value_or(std::vector<MenuItem>{}))});
    }
    return shown;
}

class SimulatedStatusItemWorld final : public SimulatedWorld<StatusItemWorld> {
public:
    StatusBarPlatform& platform() override { return bar_; }

    void endTray() override { bar_.hasTray = false; }

    void startTray() override { bar_.hasTray = true; }

    int shownItems() override { return bar_.isShown() ? 1 : 0; }

    std::string toolTip() override { return bar_.appearance.value().toolTip; }

    std::vector<ShownItem> openMenu() override { return shownItemsOf(bar_.open().items); }

    void choose(const std::vector<std::string>& titles) override { bar_.choose(titles.back()); }

private:
    Journal journal_;
    SimulatedStatusBar bar_{journal_};
};

INSTANTIATE_TEST_SUITE_P(
    Simulated, StatusItemContract,
    ::testing::Values(worldFactory<StatusItemWorld, SimulatedStatusItemWorld>("Simulated")), worldName);

} // namespace
} // namespace tarvex::contract
