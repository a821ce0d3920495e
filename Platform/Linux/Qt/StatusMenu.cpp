#include "Platform/Linux/Qt/StatusMenu.h"

namespace tarvex {

void StatusMenu::choose(const MenuItem& item) {
    if (!item.isEnabled || item.action.empty()) {
        return;
    }
    closing_();
    const auto tell = [delegate = delegate_, item] { delegate->menuItemChosen(item); };
    QMetaObject::invokeMethod(&context_, tell, Qt::QueuedConnection);
}

} // namespace tarvex
