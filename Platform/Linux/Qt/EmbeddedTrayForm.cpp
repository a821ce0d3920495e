#include "Platform/Linux/Qt/EmbeddedTrayForm.h"

#include "Platform/Linux/Qt/GridGlyph.h"

#include <QCursor>

namespace tarvex {

EmbeddedTrayForm::EmbeddedTrayForm(StatusMenu& menu)
    : menu_(
          [&menu] {
              menu.refresh();
              return menu.value();
          },
          [&menu](const MenuItem& item) { menu.choose(item); }) {
    icon_.setIcon(GridGlyph::icon());
    // The button for context menus is Qt's to handle.
    icon_.setContextMenu(&menu_.native());
    QObject::connect(&icon_, &QSystemTrayIcon::activated, &menu_.native(),
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger) {
                             menu_.native().popup(QCursor::pos());
                         }
                     });
    icon_.show();
}

void EmbeddedTrayForm::setAppearance(const StatusItemAppearance& appearance) {
    icon_.setToolTip(QString::fromStdString(appearance.toolTip));
}

} // namespace tarvex
