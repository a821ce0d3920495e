#include "App/Input/EventTapPlatform.h"
#include "App/Shell/AboutWindowController.h"
#include "Platform/Linux/Qt/FormLabel.h"
#include "Platform/Linux/Qt/QtTextMeasurer.h"
#include "Tests/Contract/X11/FormWindowAdapters.h"
#include "Tests/Support/Simulated/SimulatedPreferences.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QFontMetrics>
#include <QPushButton>
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

namespace tarvex::contract {

namespace {

/// The program's real windows, over simulated settings, at a scale factor of the toolkit.
class FormWindowPreferences : public ::testing::TestWithParam<const char*>, protected SimulatedPreferences {
protected:
    void SetUp() override {
        store();
        // All that can be shown is: the explanations too.
        loginItem_.isBundled = false;
        desktop_ = std::make_unique<XFormWindowDesktop>(test::WindowManagerKind::openbox, GetParam());
        measurer_ = std::make_unique<QtTextMeasurer>(desktop_->fonts);
        preferences_ = makePreferences(desktop_->windows);
        about_ = std::make_unique<AboutWindowController>(
            std::make_unique<AboutViewController>([] { return std::string("1.2.0"); }, *measurer_),
            desktop_->windows);
        // Has them made, which otherwise waits until they are shown.
        preferences_->window().center();
        about_->window().center();
    }

    void TearDown() override {
        about_.reset();
        preferences_.reset();
        measurer_.reset();
        desktop_.reset();
    }

    void show(FormWindow& window, const std::string& title) {
        window.center();
        window.makeKeyAndOrderFront();
        ASSERT_TRUE(desktop_->waitUntil([&] { return desktop_->hasKeyboard(title); }));
        desktop_->settle();
    }

    std::unique_ptr<XFormWindowDesktop> desktop_;
    std::unique_ptr<QtTextMeasurer> measurer_;
    std::unique_ptr<PreferencesWindowController> preferences_;
    std::unique_ptr<AboutWindowController> about_;
};

TEST_P(FormWindowPreferences, NoTextIsClipped) {
    show(preferences_->window(), "Preferences");
    for (const char* title : {"Preferences", "About Tarvex"}) {
        for (const auto* label : desktop_->widget(title).findChildren<const QLabel*>()) {
            SCOPED_TRACE(label->text().toStdString());
            const auto& shown = dynamic_cast<const FormLabel&>(*label);
            EXPECT_EQ(shown.shownText(), label->text().toStdString());
            const QRect needed =
                QFontMetrics(label->font()).boundingRect(label->rect(), Qt::TextWordWrap, label->text());
            EXPECT_LE(needed.height(), label->height());
        }
        for (const auto* button : desktop_->widget(title).findChildren<const QAbstractButton*>()) {
            SCOPED_TRACE(button->text().toStdString());
            EXPECT_LE(button->minimumSizeHint().width(), button->width());
            EXPECT_LE(button->minimumSizeHint().height(), button->height());
        }
    }
}

TEST_P(FormWindowPreferences, SymbolsHaveGlyphs) {
    for (const char* symbol : {"\u2318", "\u21E7", "\u2325", "\u2303"}) {
        for (const QGlyphRun& run : desktop_->fonts.layOut(symbol, Font{}).glyphs) {
            EXPECT_FALSE(run.glyphIndexes().contains(0)) << symbol;
        }
    }
}

TEST_P(FormWindowPreferences, EveryControlHasANameOfItsOwn) {
    std::set<std::string> names;
    for (const char* id :
         {"singleCmdCheckbox", "singleShiftCheckbox", "singleOptionCheckbox", "singleControlCheckbox",
          "multiCmdCheckbox", "multiShiftCheckbox", "multiOptionCheckbox", "multiControlCheckbox",
          "launchAtLoginCheckbox", "hideMenuBarIconCheckbox", "restoreWindowSizeOnUnsnapCheckbox",
          "marginSlider", "recordHotkeyButton", "clearHotkeyButton", "recordPreferencesHotkeyButton",
          "clearPreferencesHotkeyButton", "closeButton"}) {
        const auto* const control =
            QAccessible::queryAccessibleInterface(desktop_->control("Preferences", id));
        const std::string name = control->text(QAccessible::Name).toStdString();
        EXPECT_FALSE(name.empty()) << id;
        EXPECT_TRUE(names.insert(name).second) << name;
        if (const auto* button = dynamic_cast<const QPushButton*>(desktop_->control("Preferences", id))) {
            EXPECT_TRUE(name.starts_with(button->text().toStdString()))
                << name << ": who sees it says the text";
        }
    }
}

TEST_P(FormWindowPreferences, HotkeysAreExplainedInTheKeyboardsTerms) {
    auto* const value = desktop_->control("Preferences", "editorHotkeyValueLabel");
    EXPECT_EQ(value->toolTip(), "");
    dynamic_cast<QPushButton&>(*desktop_->control("Preferences", "recordHotkeyButton")).click();
    static_cast<void>(keyMonitors_.press({14, event_flag::command | event_flag::option}));
    EXPECT_TRUE(desktop_->waitUntil([&] { return value->toolTip() == "Super + Alt + E"; }));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(value)->text(QAccessible::Name),
              "Super + Alt + E (Open Zone Editor)");
}

TEST_P(FormWindowPreferences, SettingsAreWrittenAndTheWindowClosesByItsButton) {
    show(preferences_->window(), "Preferences");
    desktop_->click(desktop_->pixelIn("Preferences", "singleShiftCheckbox", 0.2));
    EXPECT_EQ(stored()->fields().singleSnapModifiers->modifiers, 0x300U);
    desktop_->click(desktop_->pixelIn("Preferences", "marginSlider"));
    EXPECT_NEAR(stored()->fields().cellMarginPoints, 20, 0.5);
    desktop_->click(desktop_->pixelIn("Preferences", "closeButton"));
    EXPECT_FALSE(preferences_->window().isVisible());
}

INSTANTIATE_TEST_SUITE_P(ScaleFactors, FormWindowPreferences, ::testing::Values("1", "1.25", "2"),
                         [](const auto& info) { return "Number" + std::to_string(info.index); });

} // namespace

} // namespace tarvex::contract
