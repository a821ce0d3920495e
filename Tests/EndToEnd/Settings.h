#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarvex::test {

/// One grid of the settings file.
struct GridSetting {
    std::string id;
    std::vector<double> verticalSplits{};
    std::vector<double> horizontalSplits{};
};

/// A combination of keys, by virtual key code and modifier mask.
struct HotkeySetting {
    unsigned keyCode = 0;
    unsigned modifiers = 0;
};

/// What a person may put into the settings file.
struct Settings {
    std::vector<GridSetting> grids{{"halves", {0.5}, {}}};
    std::map<std::string, std::string> gridByDisplay{};
    double margin = 8;
    std::optional<unsigned> singleModifiers{};
    std::optional<unsigned> multiModifiers{};
    std::optional<bool> restoresWindow{};
    std::optional<HotkeySetting> editorHotkey{};
    std::optional<HotkeySetting> preferencesHotkey{};
    std::optional<bool> hidesIcon{};
    std::optional<bool> launchesAtLogin{};

    /// The text of the file.
    [[nodiscard]] std::string json() const;
};

} // namespace tarvex::test
