#pragma once

#include "Core/Configuration/TarvexConfig.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <string>
#include <vector>

namespace tarvex {

/// The keys of a configuration that may be absent.
inline const std::vector<std::string> optionalKeys = {
    "openEditorHotkey", "openPreferencesHotkey", "singleSnapModifiers",      "multiSnapModifiers",
    "launchAtLogin",    "hideMenuBarIcon",       "restoreWindowSizeOnUnsnap"};

/// A document of the required keys alone.
inline nlohmann::json minimalDocument() {
    return {{"grids", nlohmann::json::array()},
            {"defaultGridByDisplayId", nlohmann::json::object()},
            {"cellMarginPoints", 8}};
}

/// A record in which every field is present.
inline TarvexConfigFields everyField() {
    TarvexConfigFields fields;
    fields.grids = {
        std::make_shared<const GridDefinition>("a", "A", std::vector{0.25, 0.75}, std::vector{0.5}),
        std::make_shared<const GridDefinition>("b", "B", std::vector<double>{}, std::vector<double>{})};
    fields.defaultGridByDisplayId = {{"v1-p2-s3", "b"}, {"v4-p5-sno-serial", "a"}};
    fields.cellMarginPoints = 12.5;
    fields.openEditorHotkey = HotkeyDefinition{5, 256};
    fields.openPreferencesHotkey = HotkeyDefinition{43, 4294967295};
    fields.singleSnapModifiers = ModifierDefinition{2048};
    fields.multiSnapModifiers = ModifierDefinition{0};
    fields.launchAtLogin = true;
    fields.hideMenuBarIcon = false;
    fields.restoreWindowSizeOnUnsnap = false;
    return fields;
}

} // namespace tarvex
