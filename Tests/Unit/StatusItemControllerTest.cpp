#include "App/Shell/StatusItemController.h"

#include <gtest/gtest.h>

#include <optional>

namespace tarvex {

namespace {

// A bar that holds the items that were made, until they are gone.
class BarDouble final : public StatusBarPlatform {
public:
    class Item final : public StatusItem {
    public:
        explicit Item(BarDouble& bar) : bar_(&bar) { ++bar_->items; }

        Item(const Item&) = delete;
        Item& operator=(const Item&) = delete;
        Item(Item&&) = delete;
        Item& operator=(Item&&) = delete;

        ~Item() override { --bar_->items; }

        void setAppearance(const StatusItemAppearance& appearance) override { bar_->appearance = appearance; }

        void setMenu(const Menu& menu) override { bar_->menu = menu; }

    private:
        BarDouble* bar_;
    };

    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem(StatusItemDelegate& /*delegate*/) override {
        return std::make_unique<Item>(*this);
    }

    int items = 0;
    std::optional<StatusItemAppearance> appearance;
    std::optional<Menu> menu;
};

MenuItem item(const std::string& title, const std::string& action) {
    MenuItem result;
    result.title = title;
    result.action = action;
    return result;
}

MenuItem separator() {
    MenuItem result;
    result.isSeparator = true;
    return result;
}

MenuItem display(const std::string& title, std::uint32_t number) {
    MenuItem result = item(title, "openZoneEditorForDisplay");
    result.representedObject = number;
    return result;
}

class StatusItemControllerTest : public ::testing::Test {
protected:
    StatusItemControllerTest() {
        StatusItemCallbacks callbacks;
        callbacks.onOpenAbout = [this] { calls_.emplace_back("about"); };
        callbacks.onOpenPreferences = [this] { calls_.emplace_back("preferences"); };
        callbacks.onOpenZoneEditorForDisplay = [this](std::uint32_t number) {
            calls_.push_back("editor " + std::to_string(number));
        };
        callbacks.onQuit = [this] { calls_.emplace_back("quit"); };
        callbacks.displaysProvider = [this] { return displays_; };
        controller_ = std::make_unique<StatusItemController>(bar_, callbacks);
    }

    [[nodiscard]] static Menu menuWith(std::vector<MenuItem> displays) {
        MenuItem editor = item("Zone Editor\u2026", "");
        editor.submenu = std::move(displays);
        return {{item("About Tarvex", "openAbout"), separator(), item("Preferences\u2026", "openPreferences"),
                 editor, separator(), item("Quit", "quit")}};
    }

    BarDouble bar_;
    std::vector<DisplayMenuEntry> displays_{{"Left", 7}, {"Right", 9}};
    std::vector<std::string> calls_;
    std::unique_ptr<StatusItemController> controller_;
};

TEST_F(StatusItemControllerTest, ItemShowsTheGridAndItsName) {
    EXPECT_EQ(bar_.items, 1);
    EXPECT_FALSE(bar_.appearance);
    controller_->configureStatusItem();
    StatusItemAppearance expected;
    expected.symbolName = "rectangle.grid.2x2";
    expected.accessibilityDescription = "Tarvex";
    expected.pointSize = 16;
    expected.weight = 600;
    expected.isTemplate = true;
    expected.imagePosition = 1;
    expected.toolTip = "Tarvex";
    EXPECT_EQ(bar_.appearance, expected);
}

TEST_F(StatusItemControllerTest, MenuOffersEveryDisplay) {
    EXPECT_FALSE(bar_.menu);
    controller_->configureMenu();
    EXPECT_EQ(bar_.menu, menuWith({display("Left", 7), display("Right", 9)}));
}

TEST_F(StatusItemControllerTest, WithoutDisplaysTheMenuSaysSo) {
    displays_.clear();
    MenuItem none = item("No Displays", "");
    none.isEnabled = false;
    controller_->configureMenu();
    EXPECT_EQ(bar_.menu, menuWith({none}));
}

TEST_F(StatusItemControllerTest, DisplaysAreAskedForWheneverTheMenuOpens) {
    controller_->configureMenu();
    displays_ = {{"New", 3}};
    EXPECT_EQ(controller_->menuWillOpen(), menuWith({display("New", 3)}));
    displays_ = {{"New", 3}, {"Newer", 4}};
    EXPECT_EQ(controller_->menuWillOpen(), menuWith({display("New", 3), display("Newer", 4)}));
}

TEST_F(StatusItemControllerTest, ChoosingCallsBack) {
    const Menu menu = controller_->menuWillOpen();
    for (const MenuItem& chosen : menu.items) {
        controller_->menuItemChosen(chosen);
    }
    controller_->menuItemChosen(menu.items[3].submenu->at(1));
    controller_->menuItemChosen(menu.items[3].submenu->at(0));
    EXPECT_EQ(calls_, (std::vector<std::string>{"about", "preferences", "quit", "editor 9", "editor 7"}));
}

TEST_F(StatusItemControllerTest, DisplayItemWithoutANumberDoesNothing) {
    controller_->menuItemChosen(item("Left", "openZoneEditorForDisplay"));
    EXPECT_TRUE(calls_.empty());
}

TEST_F(StatusItemControllerTest, ItemGoesWithItsController) {
    controller_.reset();
    EXPECT_EQ(bar_.items, 0);
}

TEST_F(StatusItemControllerTest, CallbackMayDestroyTheController) {
    StatusItemCallbacks callbacks;
    std::string named;
    callbacks.onQuit = [this, &named, text = std::string("the name of a long callback")] {
        controller_.reset();
        named = text;
    };
    callbacks.displaysProvider = [] { return std::vector<DisplayMenuEntry>{}; };
    controller_ = std::make_unique<StatusItemController>(bar_, callbacks);
    controller_->menuItemChosen(item("Quit", "quit"));
    EXPECT_EQ(controller_, nullptr);
    EXPECT_EQ(named, "the name of a long callback");
}

} // namespace

} // namespace tarvex
