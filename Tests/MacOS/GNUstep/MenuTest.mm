#include "Platform/MacOS/AppKit/AppKitStatusBarPlatform.h"
#include "Tests/MacOS/GNUstep/AppKitTest.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tarvex::test {
namespace {

class RecordingDelegate final : public StatusItemDelegate {
public:
    [[nodiscard]] Menu menuWillOpen() override { return menu; }

    void menuItemChosen(const MenuItem& item) override {
        chosen.push_back(item);
        onChoice();
    }

    Menu menu;
    std::vector<MenuItem> chosen;
    std::function<void()> onChoice = [] {};
};

MenuItem itemNamed(const std::string& title, const std::string& action) {
    MenuItem item;
    item.title = title;
    item.action = action;
    return item;
}

MenuItem separator() {
    MenuItem item;
    item.isSeparator = true;
    return item;
}

MenuItem display(const std::string& title, std::uint32_t number) {
    MenuItem item = itemNamed(title, "openZoneEditorForDisplay");
    item.representedObject = number;
    return item;
}

MenuItem disabled(const std::string& title) {
    MenuItem item = itemNamed(title, "");
    item.isEnabled = false;
    return item;
}

Menu menuWithDisplays(std::vector<MenuItem> displays) {
    MenuItem editor = itemNamed("Zone Editor\xE2\x80\xA6", "");
    editor.submenu = std::move(displays);
    return {{itemNamed("About Tarvex", "openAbout"), separator(), editor, itemNamed("Quit", "quit")}};
}

class MenuTest : public AppKitTest {
protected:
    void make() {
        delegate_.menu = menuWithDisplays({display("One", 7), display("Two", 0xFFFFFFFF)});
        item_ = platform_.makeStatusItem(delegate_);
        item_->setMenu(delegate_.menu);
    }

    static TarvexTestStatusItem* native() { return [[TarvexTestStatusItem shown] lastObject]; }

    static NSMenu* menu() { return [native() menu]; }

    static NSMenu* submenu() { return [[menu() itemAtIndex:2] submenu]; }

    static std::string title(NSMenu* menu, NSInteger index) {
        return [[[menu itemAtIndex:index] title] UTF8String];
    }

    static void choose(NSMenu* menu, NSInteger index) {
        NSMenuItem* const item = [menu itemAtIndex:index];
        [NSApp sendAction:[item action] to:[item target] from:item];
    }

    RecordingDelegate delegate_;
    AppKitStatusBarPlatform platform_;
    std::unique_ptr<StatusItem> item_;
};

TEST_F(MenuTest, StatusItemIsThereForAsLongAsItsObject) {
    make();
    EXPECT_EQ([[TarvexTestStatusItem shown] count], 1U);
    item_.reset();
    EXPECT_EQ([[TarvexTestStatusItem shown] count], 0U);
}

TEST_F(MenuTest, ShowsTheSymbolAsATemplate) {
    make();
    item_->setAppearance({"rectangle.grid.2x2", "Tarvex", 16, 600, true, 1, "Tarvex"});
    NSButton* const button = [native() button];
    NSImage* const image = [button image];
    ASSERT_NE(image, nil);
    EXPECT_EQ([[image symbolConfiguration] pointSize], 16);
    EXPECT_EQ([[image symbolConfiguration] weight], NSFontWeightSemibold);
    EXPECT_STREQ([[image accessibilityDescription] UTF8String], "Tarvex");
    EXPECT_TRUE([image isTemplate]);
    EXPECT_EQ([button imagePosition], NSImageOnly);
    EXPECT_STREQ([[button toolTip] UTF8String], "Tarvex");
}

TEST_F(MenuTest, SymbolThatTheSystemLacksLeavesTheItemWithoutPicture) {
    make();
    item_->setAppearance({"no.such.symbol", "Tarvex", 16, 600, true, 1, "Tarvex"});
    EXPECT_EQ([[native() button] image], nil);
    EXPECT_STREQ([[[native() button] toolTip] UTF8String], "Tarvex");
}

TEST_F(MenuTest, HasTheEntriesInTheirOrder) {
    make();
    ASSERT_EQ([menu() numberOfItems], 4);
    EXPECT_EQ(title(menu(), 0), "About Tarvex");
    EXPECT_TRUE([[menu() itemAtIndex:1] isSeparatorItem]);
    EXPECT_EQ(title(menu(), 2), "Zone Editor\xE2\x80\xA6");
    EXPECT_EQ(title(menu(), 3), "Quit");
    ASSERT_EQ([submenu() numberOfItems], 2);
    EXPECT_EQ(title(submenu(), 1), "Two");
    EXPECT_EQ([[[submenu() itemAtIndex:1] representedObject] unsignedIntValue], 0xFFFFFFFFU);
    EXPECT_FALSE([menu() autoenablesItems]);
    EXPECT_FALSE([submenu() autoenablesItems]);
    EXPECT_STREQ([[[menu() itemAtIndex:0] keyEquivalent] UTF8String], "");
}

TEST_F(MenuTest, EntryWithoutActionDoesNothingAndADisabledOneIsGray) {
    make();
    delegate_.menu = menuWithDisplays({disabled("No Displays")});
    item_->setMenu(delegate_.menu);
    NSMenuItem* const none = [submenu() itemAtIndex:0];
    EXPECT_FALSE([none isEnabled]);
    EXPECT_EQ([none action], static_cast<SEL>(nullptr));
    EXPECT_TRUE([[menu() itemAtIndex:0] isEnabled]);
}

TEST_F(MenuTest, ChoosingAnEntryReportsIt) {
    make();
    choose(menu(), 3);
    choose(submenu(), 1);
    ASSERT_EQ(delegate_.chosen.size(), 2U);
    EXPECT_EQ(delegate_.chosen[0].action, "quit");
    EXPECT_EQ(delegate_.chosen[1], display("Two", 0xFFFFFFFF));
}

TEST_F(MenuTest, IsRenewedWhenItIsAboutToOpen) {
    make();
    delegate_.menu = menuWithDisplays({display("Three", 3)});
    [[menu() delegate] menuNeedsUpdate:menu()];
    ASSERT_EQ([submenu() numberOfItems], 1);
    EXPECT_EQ(title(submenu(), 0), "Three");
    choose(submenu(), 0);
    ASSERT_EQ(delegate_.chosen.size(), 1U);
    EXPECT_EQ(delegate_.chosen[0].representedObject, std::optional<std::uint32_t>(3));
}

TEST_F(MenuTest, ItemThatIsNoLongerInTheMenuChoosesNothing) {
    make();
    NSMenuItem* const old = [[submenu() itemAtIndex:1] retain];
    delegate_.menu = menuWithDisplays({display("Three", 3), display("Four", 4)});
    item_->setMenu(delegate_.menu);
    [NSApp sendAction:[old action] to:[old target] from:old];
    EXPECT_TRUE(delegate_.chosen.empty());
    [old release];
}

TEST_F(MenuTest, ChosenEntryMayBeRenewedAway) {
    make();
    delegate_.onChoice = [this] {
        delegate_.menu = menuWithDisplays({});
        item_->setMenu(delegate_.menu);
    };
    NSMenuItem* const chosen = [submenu() itemAtIndex:0];
    @autoreleasepool {
        [[chosen menu] performActionForItemAtIndex:0];
    }
    // Alive, since the toolkit may not be done with it.
    EXPECT_STREQ([[chosen title] UTF8String], "One");
    EXPECT_EQ(delegate_.chosen.size(), 1U);
}

TEST_F(MenuTest, ItemMayEndInItsOwnChoice) {
    make();
    delegate_.onChoice = [this] { item_.reset(); };
    NSMenu* const open = [menu() retain];
    choose(open, 0);
    EXPECT_EQ(delegate_.chosen.size(), 1U);
    EXPECT_EQ([[TarvexTestStatusItem shown] count], 0U);
    EXPECT_EQ([open delegate], nil);
    [open release];
}

} // namespace
} // namespace tarvex::test
