#include "Tests/Contract/StatusItemContract.h"

#include "Platform/MacOS/AppKit/AppKitStatusBarPlatform.h"
#include "Tests/MacOS/GNUstep/AppKitTest.h"

namespace tarvex::contract {
namespace {

std::vector<ShownItem> shownItemsOf(NSMenu* menu) {
    std::vector<ShownItem> shown;
    for (NSMenuItem* item in [menu itemArray]) {
        if ([item isSeparatorItem]) {
            shown.push_back({"", true, true, {}});
        } else {
            shown.push_back(
                {[[item title] UTF8String], [item isEnabled] == YES, false, shownItemsOf([item submenu])});
        }
    }
    return shown;
}

/// The adapter over the compatibility layer's bar. GNUstep's menus ask their delegates nothing, so the world
/// asks in their place, when AppKit would.
class AppKitStatusItemWorld final : public StatusItemWorld {
public:
    AppKitStatusItemWorld() = default;

    AppKitStatusItemWorld(const AppKitStatusItemWorld&) = delete;
    AppKitStatusItemWorld& operator=(const AppKitStatusItemWorld&) = delete;
    AppKitStatusItemWorld(AppKitStatusItemWorld&&) = delete;
    AppKitStatusItemWorld& operator=(AppKitStatusItemWorld&&) = delete;

    ~AppKitStatusItemWorld() override { settle(); }

    StatusBarPlatform& platform() override { return bar_; }

    // The bar is always there; in front of a full-screen program nobody sees it, and its items stay.
    void endTray() override { isBarSeen_ = false; }

    void startTray() override { isBarSeen_ = true; }

    int shownItems() override {
        return isBarSeen_ ? static_cast<int>([[TarvexTestStatusItem shown] count]) : 0;
    }

    std::string toolTip() override { return [[[item() button] toolTip] UTF8String]; }

    std::vector<ShownItem> openMenu() override {
        std::vector<ShownItem> shown;
        @autoreleasepool {
            shown = shownItemsOf(openedMenu());
        }
        return shown;
    }

    void choose(const std::vector<std::string>& titles) override {
        @autoreleasepool {
            NSMenu* menu = openedMenu();
            for (std::size_t level = 0; level + 1 < titles.size(); ++level) {
                menu = [[menu itemAtIndex:indexOf(menu, titles[level])] submenu];
            }
            [menu performActionForItemAtIndex:indexOf(menu, titles.back())];
        }
    }

    bool waitUntil(const std::function<bool()>& condition) override {
        settle();
        return condition();
    }

    void settle() override { test::handOutEvents(); }

private:
    static TarvexTestStatusItem* item() { return [[TarvexTestStatusItem shown] lastObject]; }

    static NSInteger indexOf(NSMenu* menu, const std::string& title) {
        return [menu indexOfItemWithTitle:[NSString stringWithUTF8String:title.c_str()]];
    }

    static NSMenu* openedMenu() {
        NSMenu* const menu = [item() menu];
        [[menu delegate] menuNeedsUpdate:menu];
        return menu;
    }

    test::AppKitSession session_;
    AppKitStatusBarPlatform bar_;
    bool isBarSeen_ = true;
};

INSTANTIATE_TEST_SUITE_P(AppKit, StatusItemContract,
                         ::testing::Values(worldFactory<StatusItemWorld, AppKitStatusItemWorld>("AppKit")),
                         worldName);

} // namespace
} // namespace tarvex::contract
