#include "App/Shell/PreferencesWindowController.h"
#include "Core/Configuration/JsonCoding.h"
#include "Platform/MacOS/AppKit/AppKitFormWindowPlatform.h"
#include "Platform/MacOS/AppKit/AppKitKeyMonitorPlatform.h"
#include "Platform/MacOS/AppKit/AppKitKeyWindow.h"
#include "Tests/MacOS/GNUstep/AppKitTest.h"
#include "Tests/Support/Simulated/SimulatedConfigFiles.h"
#include "Tests/Support/Simulated/SimulatedHotkeys.h"
#include "Tests/Support/Simulated/SimulatedLogs.h"
#include "Tests/Support/Simulated/SimulatedShell.h"

#include <memory>
#include <string>
#include <vector>

namespace tarvex::test {
namespace {

/// The program's own preferences in a window of the toolkit, over simulated settings.
class PreferencesTest : public AppKitTest {
protected:
    PreferencesTest() {
        controller_ = std::make_unique<PreferencesWindowController>(
            std::make_shared<PreferencesViewController>(
                std::make_shared<PreferencesController>(
                    std::make_shared<ConfigStore>(LoggerFactory(log_).makeLogger("ConfigStore"), files_),
                    center_),
                PreferencesSurroundings{keyMonitors_, layout_, loginItem_,
                                        ModifierNames{"Command", "Shift", "Option", "Control"}}),
            windows_);
        native_ = newestWindow();
        controller_->window().makeKeyAndOrderFront();
        endTurn();
    }

    [[nodiscard]] TarvexConfigRef stored() const { return decodeTarvexConfig(files_.text()); }

    /// The first button or box that shows the text, and is not hidden.
    NSButton* buttonTitled(const std::string& title) {
        for (NSView* view in [[native_ contentView] subviews]) {
            if ([view isKindOfClass:[NSButton class]] && ![view isHidden] &&
                title == [[static_cast<NSButton*>(view) title] UTF8String]) {
                return static_cast<NSButton*>(view);
            }
        }
        return nil;
    }

    void clickOn(const std::string& title) { click(native_, middleOf(buttonTitled(title))); }

    Journal journal_;
    SimulatedLog log_{journal_};
    SimulatedConfigFiles files_{journal_};
    SimulatedKeyboardLayout layout_;
    SimulatedLoginItem loginItem_{journal_};
    AppKitKeyMonitorPlatform keyMonitors_;
    AppKitFormWindowPlatform windows_{loop_, activation_};
    NotificationCenter center_;
    std::unique_ptr<PreferencesWindowController> controller_;
    NSWindow* native_ = nil;
};

TEST_F(PreferencesTest, WindowIsTheOneThatSnappingKeepsOutOf) {
    EXPECT_EQ(AppKitKeyWindow().keyWindowTitle(), "Preferences");
    EXPECT_EQ([[native_ contentView] frame].size.width, 640);
    EXPECT_EQ([[native_ contentView] frame].size.height, 500);
}

TEST_F(PreferencesTest, ClickOnACheckboxSavesTheSetting) {
    clickOn("Restore window size on unsnap");
    EXPECT_EQ(stored()->restoreWindowSizeOnUnsnap(), std::optional(false));
    clickOn("Restore window size on unsnap");
    EXPECT_EQ(stored()->restoreWindowSizeOnUnsnap(), std::optional(true));
}

TEST_F(PreferencesTest, HotkeyIsRecordedFromTheNextKeyPress) {
    clickOn("Record\xE2\x80\xA6");
    EXPECT_NE(buttonTitled("Press keys\xE2\x80\xA6"), nil);
    EXPECT_EQ(keyMonitorCount(), 1);
    [NSApp sendEvent:keyEvent(native_, 14, NSEventModifierFlagCommand | NSEventModifierFlagShift)];
    endTurn();
    EXPECT_EQ(keyMonitorCount(), 0);
    ASSERT_TRUE(stored()->openEditorHotkey().has_value());
    EXPECT_EQ(stored()->openEditorHotkey()->keyCode, 14U);
    EXPECT_EQ(stored()->openEditorHotkey()->modifiers, 0x300U);
}

TEST_F(PreferencesTest, RecorderHasCommandWBeforeTheWindow) {
    clickOn("Record\xE2\x80\xA6");
    [NSApp sendEvent:keyEvent(native_, 13, NSEventModifierFlagCommand, @"w")];
    endTurn();
    EXPECT_TRUE([native_ isVisible]);
    ASSERT_TRUE(stored()->openEditorHotkey().has_value());
    EXPECT_EQ(stored()->openEditorHotkey()->keyCode, 13U);
    EXPECT_EQ(stored()->openEditorHotkey()->modifiers, 0x100U);
    [NSApp sendEvent:keyEvent(native_, 13, NSEventModifierFlagCommand, @"w")];
    EXPECT_FALSE([native_ isVisible]);
}

TEST_F(PreferencesTest, SliderAndSymbolsAreSpokenByName) {
    std::vector<std::string> names;
    for (NSView* view in [[native_ contentView] subviews]) {
        const bool isSymbol =
            [view isKindOfClass:[NSButton class]] && [[static_cast<NSButton*>(view) title] length] == 1;
        if (isSymbol || [view isKindOfClass:[NSSlider class]]) {
            NSString* const name = [view accessibilityLabel];
            names.emplace_back(name == nil ? "none" : [name UTF8String]);
        }
    }
    std::vector<std::string> expected{"Cell margin"};
    for (const std::string purpose : {" (single-zone snap)", " (multi-zone snap)"}) {
        for (const std::string modifier : {"Command", "Shift", "Option", "Control"}) {
            expected.push_back(modifier + purpose);
        }
    }
    EXPECT_EQ(names, expected);
}

TEST_F(PreferencesTest, CloseHidesTheWindow) {
    clickOn("Close");
    EXPECT_FALSE([native_ isVisible]);
    EXPECT_FALSE(controller_->window().isVisible());
}

} // namespace
} // namespace tarvex::test
