#pragma once

#include "Core/Grid/GridModel.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

/// Bits of a stored modifier mask, the Carbon event modifiers (Apple, Carbon Event Manager Reference).
namespace modifier_mask {
inline constexpr std::uint32_t command = 0x100;
inline constexpr std::uint32_t shift = 0x200;
inline constexpr std::uint32_t option = 0x800;
inline constexpr std::uint32_t control = 0x1000;
} // namespace modifier_mask

/// A key combination: virtual key code of the physical key, and modifier mask.
struct HotkeyDefinition {
    std::uint32_t keyCode = 0;
    std::uint32_t modifiers = 0;

    bool operator==(const HotkeyDefinition&) const = default;
};

/// A set of modifier keys, as a modifier mask.
struct ModifierDefinition {
    std::uint32_t modifiers = 0;

    bool operator==(const ModifierDefinition&) const = default;
};

/// The fields of the settings record, in the order of the file.
struct TarvexConfigFields {
    std::vector<GridDefinitionRef> grids;
    /// Stable id of a display to the id of its grid.
    std::map<std::string, std::string> defaultGridByDisplayId;
    double cellMarginPoints = 0;
    std::optional<HotkeyDefinition> openEditorHotkey;
    std::optional<HotkeyDefinition> openPreferencesHotkey;
    std::optional<ModifierDefinition> singleSnapModifiers;
    std::optional<ModifierDefinition> multiSnapModifiers;
    std::optional<bool> launchAtLogin;
    std::optional<bool> hideMenuBarIcon;
    std::optional<bool> restoreWindowSizeOnUnsnap;
};

class TarvexConfig;
using TarvexConfigRef = std::shared_ptr<const TarvexConfig>;

/// The settings record of the program: immutable and shared. A change is made by copying fields(), replacing
/// one, and building a new record. An absent optional field takes the value that makeDefault() gives it, at
/// the point of use.
class TarvexConfig {
public:
    explicit TarvexConfig(TarvexConfigFields fields);

    /// A fresh record with the built-in settings.
    [[nodiscard]] static TarvexConfigRef makeDefault();

    [[nodiscard]] const TarvexConfigFields& fields() const { return fields_; }

    [[nodiscard]] const std::vector<GridDefinitionRef>& grids() const { return fields_.grids; }

    [[nodiscard]] const std::map<std::string, std::string>& defaultGridByDisplayId() const {
        return fields_.defaultGridByDisplayId;
    }

    [[nodiscard]] double cellMarginPoints() const { return fields_.cellMarginPoints; }

    [[nodiscard]] std::optional<HotkeyDefinition> openEditorHotkey() const {
        return fields_.openEditorHotkey;
    }

    [[nodiscard]] std::optional<HotkeyDefinition> openPreferencesHotkey() const {
        return fields_.openPreferencesHotkey;
    }

    [[nodiscard]] std::optional<ModifierDefinition> singleSnapModifiers() const {
        return fields_.singleSnapModifiers;
    }

    [[nodiscard]] std::optional<ModifierDefinition> multiSnapModifiers() const {
        return fields_.multiSnapModifiers;
    }

    [[nodiscard]] std::optional<bool> launchAtLogin() const { return fields_.launchAtLogin; }

    [[nodiscard]] std::optional<bool> hideMenuBarIcon() const { return fields_.hideMenuBarIcon; }

    [[nodiscard]] std::optional<bool> restoreWindowSizeOnUnsnap() const {
        return fields_.restoreWindowSizeOnUnsnap;
    }

private:
    TarvexConfigFields fields_;
};

} // namespace tarvex
