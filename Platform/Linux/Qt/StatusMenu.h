#pragma once

#include "App/Toolkit/StatusItem.h"

#include <QObject>

#include <functional>
#include <utility>

namespace tarvex {

/// The menu of a status item, whichever way it is shown.
class StatusMenu {
public:
    /// The delegate must outlive the menu.
    /// @param closing called when an entry was chosen, at once
    StatusMenu(StatusItemDelegate& delegate, std::function<void()> closing)
        : delegate_(&delegate), closing_(std::move(closing)) {}

    [[nodiscard]] const Menu& value() const { return menu_; }

    void set(const Menu& menu) { menu_ = menu; }

    /// Has the delegate give the menu as it is now.
    void refresh() { menu_ = delegate_->menuWillOpen(); }

    /// Tells the delegate that the item was chosen, on a later turn of the main loop, when the native menu is
    /// done with it: the delegate may destroy everything. An item that can do nothing is let be.
    void choose(const MenuItem& item);

private:
    StatusItemDelegate* delegate_;
    std::function<void()> closing_;
    Menu menu_;
    /// Ends the later calls with this object.
    QObject context_;
};

} // namespace tarvex
