#pragma once

#include "App/Toolkit/Menu.h"

#include <memory>
#include <string>

namespace tarvex {

/// What a status item shows of itself.
struct StatusItemAppearance {
    /// The name of a picture of the system's (Apple, SF Symbols); other platforms draw their own of that
    /// name.
    std::string symbolName;
    std::string accessibilityDescription;
    /// In points.
    double pointSize = 16;
    /// As in Font.
    int weight = 400;
    /// The system gives the picture the colour that suits its bar.
    bool isTemplate = true;
    /// 1 shows the picture without a title (Apple, NSControl.ImagePosition).
    std::int32_t imagePosition = 1;
    std::string toolTip;

    bool operator==(const StatusItemAppearance&) const = default;
};

/// Who owns a status item. It must outlive the item.
class StatusItemDelegate {
public:
    StatusItemDelegate() = default;
    StatusItemDelegate(const StatusItemDelegate&) = delete;
    StatusItemDelegate& operator=(const StatusItemDelegate&) = delete;
    StatusItemDelegate(StatusItemDelegate&&) = delete;
    StatusItemDelegate& operator=(StatusItemDelegate&&) = delete;
    virtual ~StatusItemDelegate() = default;

    /// The menu is about to open: gives it as it is now.
    [[nodiscard]] virtual Menu menuWillOpen() = 0;

    /// An item with an action was chosen. The delegate may be destroyed by what it does.
    virtual void menuItemChosen(const MenuItem& item) = 0;
};

/// Port: one item in the system's bar of such items; destroying it removes it. With no bar on the screen it
/// appears as soon as there is one.
class StatusItem {
public:
    StatusItem() = default;
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;
    StatusItem(StatusItem&&) = delete;
    StatusItem& operator=(StatusItem&&) = delete;
    virtual ~StatusItem() = default;

    virtual void setAppearance(const StatusItemAppearance& appearance) = 0;

    /// The menu to open on a click, until the delegate gives a newer one.
    virtual void setMenu(const Menu& menu) = 0;
};

/// Port: the system's bar of status items.
class StatusBarPlatform {
public:
    StatusBarPlatform() = default;
    StatusBarPlatform(const StatusBarPlatform&) = delete;
    StatusBarPlatform& operator=(const StatusBarPlatform&) = delete;
    StatusBarPlatform(StatusBarPlatform&&) = delete;
    StatusBarPlatform& operator=(StatusBarPlatform&&) = delete;
    virtual ~StatusBarPlatform() = default;

    /// A new item of the width of its picture; never null.
    [[nodiscard]] virtual std::unique_ptr<StatusItem> makeStatusItem(StatusItemDelegate& delegate) = 0;
};

} // namespace tarvex
