#pragma once

#include "App/Toolkit/StatusItem.h"
#include "Tests/Contract/ContractWorld.h"

#include <string>
#include <vector>

namespace tarvex::contract {

/// An entry of a menu as a person sees it.
struct ShownItem {
    std::string title;
    bool isEnabled = true;
    bool isSeparator = false;
    std::vector<ShownItem> submenu;

    bool operator==(const ShownItem&) const = default;
};

/// A desktop with a place for status items, which is there at the start.
class StatusItemWorld : public ContractWorld {
public:
    virtual StatusBarPlatform& platform() = 0;

    /// The place for items goes, as when a panel ends, or comes.
    virtual void endTray() = 0;
    virtual void startTray() = 0;

    /// How many items of the program a person sees now.
    virtual int shownItems() = 0;

    /// What the shown item's tool tip says.
    virtual std::string toolTip() = 0;

    /// Opens the menu of the shown item as a person does and gives what stands in it, then closes it.
    virtual std::vector<ShownItem> openMenu() = 0;

    /// Opens the menu and clicks the entry to which the titles lead, through submenus.
    virtual void choose(const std::vector<std::string>& titles) = 0;
};

} // namespace tarvex::contract
