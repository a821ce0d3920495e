#include "Core/Configuration/TarvexConfig.h"

#include <utility>

namespace tarvex {

TarvexConfig::TarvexConfig(TarvexConfigFields fields) : fields_(std::move(fields)) {}

TarvexConfigRef TarvexConfig::makeDefault() {
    TarvexConfigFields fields;
    fields.grids = {std::make_shared<const GridDefinition>("default", "Default", std::vector{0.5},
                                                           std::vector<double>{})};
    fields.cellMarginPoints = 8.0;
    fields.singleSnapModifiers = ModifierDefinition{modifier_mask::command};
    fields.multiSnapModifiers = ModifierDefinition{modifier_mask::command | modifier_mask::shift};
    fields.launchAtLogin = false;
    fields.hideMenuBarIcon = false;
    fields.restoreWindowSizeOnUnsnap = true;
    return std::make_shared<const TarvexConfig>(std::move(fields));
}

} // namespace tarvex
