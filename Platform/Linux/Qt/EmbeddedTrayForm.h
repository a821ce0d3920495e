#pragma once

#include "Platform/Linux/Qt/QtMenu.h"
#include "Platform/Linux/Qt/StatusMenu.h"
#include "Platform/Linux/Qt/TrayForm.h"

#include <QSystemTrayIcon>

namespace tarvex {

/// The status item as a window of ours that a tray takes in. Make it only while there is a tray on the X
/// server and none on the session bus: Qt finds out once for a process which of the two its tray icons use.
class EmbeddedTrayForm final : public TrayForm {
public:
    /// The menu must outlive the form.
    explicit EmbeddedTrayForm(StatusMenu& menu);

    void setAppearance(const StatusItemAppearance& appearance) override;

    /// Nothing to do: the menu is filled as it opens.
    void menuChanged() override {}

private:
    QtMenu menu_;
    QSystemTrayIcon icon_;
};

} // namespace tarvex
