#include "Platform/Linux/Qt/QtMenu.h"

#include <QAction>
#include <QObject>

#include <utility>

namespace tarvex {

QtMenu::QtMenu(Provider provider, ChoiceHandler chosen)
    : provider_(std::move(provider)), chosen_(std::move(chosen)) {
    QObject::connect(&menu_, &QMenu::aboutToShow, &menu_, [this] {
        menu_.clear();
        // The menu owned their entries, but not them.
        for (QMenu* submenu : std::exchange(submenus_, {})) {
            delete submenu;
        }
        fill(menu_, provider_().items);
    });
}

QString QtMenu::textOf(const std::string& title) {
    QString text = QString::fromStdString(title);
    // What follows a tab would be taken for a shortcut.
    text.replace(QLatin1Char('\t'), QLatin1Char(' '));
    text.replace(QLatin1Char('&'), QLatin1String("&&"));
    return text;
}

void QtMenu::fill(QMenu& menu, const std::vector<MenuItem>& items) {
    for (const MenuItem& item : items) {
        if (item.isSeparator) {
            menu.addSeparator();
            continue;
        }
        if (item.submenu) {
            auto* submenu = new QMenu(textOf(item.title), &menu_);
            submenus_.push_back(submenu);
            submenu->setEnabled(item.isEnabled);
            menu.addMenu(submenu);
            fill(*submenu, *item.submenu);
            continue;
        }
        QAction* action = menu.addAction(textOf(item.title));
        action->setEnabled(item.isEnabled);
        // Else a platform might move the entries for the program's preferences and end elsewhere.
        action->setMenuRole(QAction::NoRole);
        QObject::connect(action, &QAction::triggered, action, [this, item] { chosen_(item); });
    }
}

} // namespace tarvex
