#pragma once

#include "App/Toolkit/Menu.h"

#include <QMenu>
#include <QString>

#include <functional>
#include <vector>

namespace tarvex {

/// Shows a Menu value in a menu of Qt's, which is filled afresh as it opens. The key equivalents of a value
/// are not shown.
class QtMenu {
public:
    using Provider = std::function<Menu()>;
    using ChoiceHandler = std::function<void(const MenuItem&)>;

    /// @param provider gives what to show, whenever the menu is about to open
    /// @param chosen called from within Qt's menu, which must stand when it returns
    QtMenu(Provider provider, ChoiceHandler chosen);

    [[nodiscard]] QMenu& native() { return menu_; }

    /// A title as an action's text: an ampersand there would mark the next letter.
    [[nodiscard]] static QString textOf(const std::string& title);

private:
    void fill(QMenu& menu, const std::vector<MenuItem>& items);

    Provider provider_;
    ChoiceHandler chosen_;
    QMenu menu_;
    std::vector<QMenu*> submenus_;
};

} // namespace tarvex
