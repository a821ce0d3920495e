#include "Core/Configuration/TarvexConfig.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarvex {

namespace {

TEST(TarvexConfigTest, DefaultsOfEveryField) {
    const TarvexConfigRef config = TarvexConfig::makeDefault();
    ASSERT_EQ(config->grids().size(), 1U);
    EXPECT_EQ(config->grids()[0]->id(), "default");
    EXPECT_EQ(config->grids()[0]->name(), "Default");
    EXPECT_EQ(config->grids()[0]->verticalSplits(), std::vector{0.5});
    EXPECT_TRUE(config->grids()[0]->horizontalSplits().empty());
    EXPECT_TRUE(config->defaultGridByDisplayId().empty());
    EXPECT_EQ(config->cellMarginPoints(), 8.0);
    EXPECT_EQ(config->openEditorHotkey(), std::nullopt);
    EXPECT_EQ(config->openPreferencesHotkey(), std::nullopt);
    EXPECT_EQ(config->singleSnapModifiers(), ModifierDefinition{256});
    EXPECT_EQ(config->multiSnapModifiers(), ModifierDefinition{768});
    EXPECT_EQ(config->launchAtLogin(), std::optional(false));
    EXPECT_EQ(config->hideMenuBarIcon(), std::optional(false));
    EXPECT_EQ(config->restoreWindowSizeOnUnsnap(), std::optional(true));
}

TEST(TarvexConfigTest, EveryCallBuildsAFreshRecord) {
    const TarvexConfigRef first = TarvexConfig::makeDefault();
    const TarvexConfigRef second = TarvexConfig::makeDefault();
    EXPECT_NE(first, second);
    EXPECT_NE(first->grids()[0], second->grids()[0]);
}

TEST(TarvexConfigTest, AChangeMakesANewRecordAndSharesTheRest) {
    const TarvexConfigRef before = TarvexConfig::makeDefault();
    TarvexConfigFields fields = before->fields();
    fields.cellMarginPoints = 12;
    fields.singleSnapModifiers = std::nullopt;
    const TarvexConfig after(std::move(fields));
    EXPECT_EQ(after.cellMarginPoints(), 12);
    EXPECT_EQ(after.singleSnapModifiers(), std::nullopt);
    EXPECT_EQ(after.multiSnapModifiers(), ModifierDefinition{768});
    EXPECT_EQ(after.grids()[0], before->grids()[0]);
    EXPECT_EQ(before->cellMarginPoints(), 8);
    EXPECT_EQ(before->singleSnapModifiers(), ModifierDefinition{256});
}

TEST(TarvexConfigTest, GettersReturnTheirFields) {
    TarvexConfigFields fields;
    fields.defaultGridByDisplayId = {{"v1-p2-s3", "g"}};
    fields.openEditorHotkey = HotkeyDefinition{1, 2};
    fields.openPreferencesHotkey = HotkeyDefinition{3, 4};
    fields.launchAtLogin = true;
    fields.hideMenuBarIcon = true;
    fields.restoreWindowSizeOnUnsnap = false;
    const TarvexConfig config(std::move(fields));
    EXPECT_TRUE(config.grids().empty());
    EXPECT_EQ(config.defaultGridByDisplayId().at("v1-p2-s3"), "g");
    EXPECT_EQ(config.openEditorHotkey(), (HotkeyDefinition{1, 2}));
    EXPECT_EQ(config.openPreferencesHotkey(), (HotkeyDefinition{3, 4}));
    EXPECT_EQ(config.launchAtLogin(), std::optional(true));
    EXPECT_EQ(config.hideMenuBarIcon(), std::optional(true));
    EXPECT_EQ(config.restoreWindowSizeOnUnsnap(), std::optional(false));
}

TEST(HotkeyDefinitionTest, ComparesBothFields) {
    EXPECT_EQ((HotkeyDefinition{0, 0}), (HotkeyDefinition{0, 0}));
    EXPECT_NE((HotkeyDefinition{1, 0}), (HotkeyDefinition{0, 0}));
    EXPECT_NE((HotkeyDefinition{0, 256}), (HotkeyDefinition{0, 0}));
}

TEST(ModifierDefinitionTest, ComparesItsField) {
    EXPECT_EQ(ModifierDefinition{768}, ModifierDefinition{768});
    EXPECT_NE(ModifierDefinition{768}, ModifierDefinition{256});
}

TEST(ModifierMaskTest, AreTheStoredBits) {
    EXPECT_EQ(modifier_mask::command, 256U);
    EXPECT_EQ(modifier_mask::shift, 512U);
    EXPECT_EQ(modifier_mask::option, 2048U);
    EXPECT_EQ(modifier_mask::control, 4096U);
}

} // namespace

} // namespace tarvex
