#include "App/Shell/PreferencesController.h"

#include "Core/Configuration/JsonCoding.h"
#include "Tests/Support/Simulated/SimulatedConfigFiles.h"
#include "Tests/Support/Simulated/SimulatedLogs.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace tarvex {

namespace {

using Names = std::vector<std::string>;

class PreferencesControllerTest : public ::testing::Test {
protected:
    PreferencesControllerTest() {
        for (const auto name : {notification::hotkeyChanged, notification::preferencesHotkeyChanged,
                                notification::configChanged}) {
            observations_.push_back(center_.addObserver(name, [this, name] {
                posted_.emplace_back(name);
                atPost_ = files_.text();
            }));
        }
    }

    /// What the file holds now.
    [[nodiscard]] TarvexConfigRef stored() { return decodeTarvexConfig(files_.text()); }

    void store(const std::function<void(TarvexConfigFields&)>& change) {
        TarvexConfigFields fields = TarvexConfig::makeDefault()->fields();
        change(fields);
        files_.put(encodeTarvexConfig(TarvexConfig(fields)));
    }

    Names take() { return std::exchange(posted_, {}); }

    Journal journal_;
    SimulatedLog log_{journal_};
    SimulatedConfigFiles files_{journal_};
    NotificationCenter center_;
    PreferencesController controller_{
        std::make_shared<ConfigStore>(LoggerFactory(log_).makeLogger("ConfigStore"), files_), center_};
    std::vector<std::unique_ptr<NotificationCenter::Observation>> observations_;
    Names posted_;
    std::string atPost_;
};

TEST_F(PreferencesControllerTest, WithoutAFileTheDefaultsCount) {
    EXPECT_EQ(controller_.getCellMarginPoints(), 8);
    EXPECT_FALSE(controller_.getOpenEditorHotkey());
    EXPECT_FALSE(controller_.getOpenPreferencesHotkey());
    EXPECT_EQ(controller_.getSingleSnapModifiers(), 256U);
    EXPECT_EQ(controller_.getMultiSnapModifiers(), 768U);
    EXPECT_FALSE(controller_.getLaunchAtLogin());
    EXPECT_FALSE(controller_.getHideMenuBarIcon());
    EXPECT_TRUE(controller_.getRestoreWindowSizeOnUnsnap());
    EXPECT_EQ(files_.text(), "");
}

TEST_F(PreferencesControllerTest, AbsentFieldsAreTheDefaults) {
    files_.put(R"({"grids":[],"defaultGridByDisplayId":{},"cellMarginPoints":3})");
    EXPECT_EQ(controller_.getCellMarginPoints(), 3);
    EXPECT_EQ(controller_.getSingleSnapModifiers(), 256U);
    EXPECT_EQ(controller_.getMultiSnapModifiers(), 768U);
    EXPECT_FALSE(controller_.getLaunchAtLogin());
    EXPECT_FALSE(controller_.getHideMenuBarIcon());
    EXPECT_TRUE(controller_.getRestoreWindowSizeOnUnsnap());
}

TEST_F(PreferencesControllerTest, StoredValuesAreRead) {
    store([](TarvexConfigFields& fields) {
        fields.cellMarginPoints = 2.5;
        fields.openEditorHotkey = HotkeyDefinition{1, 256};
        fields.openPreferencesHotkey = HotkeyDefinition{2, 512};
        fields.singleSnapModifiers = ModifierDefinition{0};
        fields.multiSnapModifiers = ModifierDefinition{4096};
        fields.launchAtLogin = true;
        fields.hideMenuBarIcon = true;
        fields.restoreWindowSizeOnUnsnap = false;
    });
    EXPECT_EQ(controller_.getCellMarginPoints(), 2.5);
    EXPECT_EQ(controller_.getOpenEditorHotkey(), (HotkeyDefinition{1, 256}));
    EXPECT_EQ(controller_.getOpenPreferencesHotkey(), (HotkeyDefinition{2, 512}));
    EXPECT_EQ(controller_.getSingleSnapModifiers(), 0U);
    EXPECT_EQ(controller_.getMultiSnapModifiers(), 4096U);
    EXPECT_TRUE(controller_.getLaunchAtLogin());
    EXPECT_TRUE(controller_.getHideMenuBarIcon());
    EXPECT_FALSE(controller_.getRestoreWindowSizeOnUnsnap());
}

// One setter, what it is to change, and what it is to post.
struct SetterCase {
    std::string name;
    std::function<void(PreferencesController&)> set;
    std::function<void(TarvexConfigFields&)> change;
    Names notifications;
};

const std::vector<SetterCase>& setterCases() {
    static const std::vector<SetterCase> cases{
        {"margin",
         [](PreferencesController& c) { c.setCellMarginPoints(12.7); },
         [](TarvexConfigFields& f) { f.cellMarginPoints = 12.7; },
         {"TarvexConfigChanged"}},
        {"editor hotkey",
         [](PreferencesController& c) {
             c.setOpenEditorHotkey(HotkeyDefinition{0, 0});
         },
         [](TarvexConfigFields& f) {
             f.openEditorHotkey = HotkeyDefinition{0, 0};
         },
         {"TarvexHotkeyChanged", "TarvexConfigChanged"}},
        {"no editor hotkey",
         [](PreferencesController& c) { c.setOpenEditorHotkey(std::nullopt); },
         [](TarvexConfigFields& f) { f.openEditorHotkey.reset(); },
         {"TarvexHotkeyChanged", "TarvexConfigChanged"}},
        {"preferences hotkey",
         [](PreferencesController& c) {
             c.setOpenPreferencesHotkey(HotkeyDefinition{14, 768});
         },
         [](TarvexConfigFields& f) {
             f.openPreferencesHotkey = HotkeyDefinition{14, 768};
         },
         {"TarvexPreferencesHotkeyChanged", "TarvexConfigChanged"}},
        {"no preferences hotkey",
         [](PreferencesController& c) { c.setOpenPreferencesHotkey(std::nullopt); },
         [](TarvexConfigFields& f) { f.openPreferencesHotkey.reset(); },
         {"TarvexPreferencesHotkeyChanged", "TarvexConfigChanged"}},
        {"single",
         [](PreferencesController& c) { c.setSingleSnapModifiers(0); },
         [](TarvexConfigFields& f) { f.singleSnapModifiers = ModifierDefinition{0}; },
         {"TarvexConfigChanged"}},
        {"multi",
         [](PreferencesController& c) { c.setMultiSnapModifiers(0x1B00); },
         [](TarvexConfigFields& f) { f.multiSnapModifiers = ModifierDefinition{0x1B00}; },
         {"TarvexConfigChanged"}},
        {"login",
         [](PreferencesController& c) { c.setLaunchAtLogin(false); },
         [](TarvexConfigFields& f) { f.launchAtLogin = false; },
         {"TarvexConfigChanged"}},
        {"icon",
         [](PreferencesController& c) { c.setHideMenuBarIcon(false); },
         [](TarvexConfigFields& f) { f.hideMenuBarIcon = false; },
         {"TarvexConfigChanged"}},
        {"restore",
         [](PreferencesController& c) { c.setRestoreWindowSizeOnUnsnap(true); },
         [](TarvexConfigFields& f) { f.restoreWindowSizeOnUnsnap = true; },
         {"TarvexConfigChanged"}},
    };
    return cases;
}

TEST_F(PreferencesControllerTest, SettersChangeTheirFieldAloneAndPost) {
    const auto everything = [](TarvexConfigFields& fields) {
        fields.grids.push_back(std::make_shared<const GridDefinition>("g", "G", std::vector<double>{0.1},
                                                                      std::vector<double>{0.2}));
        fields.defaultGridByDisplayId = {{"display", "g"}};
        fields.cellMarginPoints = 2.5;
        fields.openEditorHotkey = HotkeyDefinition{1, 256};
        fields.openPreferencesHotkey = HotkeyDefinition{2, 512};
        fields.singleSnapModifiers = ModifierDefinition{2048};
        fields.multiSnapModifiers = ModifierDefinition{4096};
        fields.launchAtLogin = true;
        fields.hideMenuBarIcon = true;
        fields.restoreWindowSizeOnUnsnap = false;
    };
    for (const SetterCase& setter : setterCases()) {
        SCOPED_TRACE(setter.name);
        store(everything);
        setter.set(controller_);
        EXPECT_EQ(take(), setter.notifications);
        // Saved before anybody is told.
        EXPECT_EQ(atPost_, files_.text());
        TarvexConfigFields expected = TarvexConfig::makeDefault()->fields();
        everything(expected);
        setter.change(expected);
        EXPECT_EQ(files_.text(), encodeTarvexConfig(TarvexConfig(expected)));
    }
}

TEST_F(PreferencesControllerTest, UnreadableSettingsBecomeTheDefaultsWithTheChange) {
    files_.put("no JSON");
    EXPECT_EQ(controller_.getCellMarginPoints(), 8);
    controller_.setCellMarginPoints(3);
    EXPECT_EQ(stored()->cellMarginPoints(), 3);
    EXPECT_EQ(stored()->grids().size(), 1U);
    EXPECT_EQ(take(), Names{"TarvexConfigChanged"});
}

TEST_F(PreferencesControllerTest, FailureToSaveIsPostedAllTheSame) {
    store([](TarvexConfigFields& fields) { fields.cellMarginPoints = 5; });
    const std::string before = files_.text();
    files_.setFolderBlocked(true);
    controller_.setOpenEditorHotkey(HotkeyDefinition{1, 1});
    EXPECT_EQ(files_.text(), before);
    EXPECT_EQ(take(), (Names{"TarvexHotkeyChanged", "TarvexConfigChanged"}));
}

TEST_F(PreferencesControllerTest, MarginThatIsNoNumberIsNotSaved) {
    store([](TarvexConfigFields& fields) { fields.cellMarginPoints = 5; });
    const std::string before = files_.text();
    controller_.setCellMarginPoints(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(files_.text(), before);
}

} // namespace

} // namespace tarvex
