#include "Tests/EndToEnd/Settings.h"

#include <nlohmann/json.hpp>

namespace tarvex::test {

std::string Settings::json() const {
    nlohmann::json document;
    document["grids"] = nlohmann::json::array();
    for (const GridSetting& grid : grids) {
        document["grids"].push_back({{"id", grid.id},
                                     {"name", grid.id},
                                     {"verticalSplits", grid.verticalSplits},
                                     {"horizontalSplits", grid.horizontalSplits}});
    }
    document["defaultGridByDisplayId"] = nlohmann::json::object();
    for (const auto& [display, grid] : gridByDisplay) {
        document["defaultGridByDisplayId"][display] = grid;
    }
    document["cellMarginPoints"] = margin;
    if (singleModifiers) {
        document["singleSnapModifiers"] = {{"modifiers", *singleModifiers}};
    }
    if (multiModifiers) {
        document["multiSnapModifiers"] = {{"modifiers", *multiModifiers}};
    }
    if (restoresWindow) {
        document["restoreWindowSizeOnUnsnap"] = *restoresWindow;
    }
    const auto setHotkey = [&](const char* name, const std::optional<HotkeySetting>& hotkey) {
        if (hotkey) {
            document[name] = {{"keyCode", hotkey->keyCode}, {"modifiers", hotkey->modifiers}};
        }
    };
    setHotkey("openEditorHotkey", editorHotkey);
    setHotkey("openPreferencesHotkey", preferencesHotkey);
    if (hidesIcon) {
        document["hideMenuBarIcon"] = *hidesIcon;
    }
    if (launchesAtLogin) {
        document["launchAtLogin"] = *launchesAtLogin;
    }
    return document.dump();
}

} // namespace tarvex::test
