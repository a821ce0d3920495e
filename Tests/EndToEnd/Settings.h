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

/// What a person may put into the settings file.
struct Settings {
    std::vector<GridSetting> grids{{"halves", {0.5}, {}}};
    std::map<std::string, std::string> gridByDisplay{};
    double margin = 8;
    std::optional<unsigned> singleModifiers{};
    std::optional<unsigned> multiModifiers{};
    std::optional<bool> restoresWindow{};

    /// The text of the file.
    [[nodiscard]] std::string json() const;
};

} // namespace tarvex::test
