#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

/// One entry of a menu.
struct MenuItem {
    /// UTF-8.
    std::string title;
    bool isSeparator = false;
    bool isEnabled = true;
    /// What choosing the item does, by name; empty for none.
    std::string action;
    /// The key that chooses the item while the menu is open; empty for none.
    std::string keyEquivalent;
    /// What the item stands for, such as a display number.
    std::optional<std::uint32_t> representedObject;
    /// The entries of its own menu; none for an item without one.
    std::optional<std::vector<MenuItem>> submenu;

    bool operator==(const MenuItem&) const = default;
};

/// A menu as a plain value, top to bottom.
struct Menu {
    std::vector<MenuItem> items;

    bool operator==(const Menu&) const = default;
};

} // namespace tarvex
