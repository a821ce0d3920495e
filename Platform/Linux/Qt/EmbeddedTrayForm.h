#pragma once

#include "Platform/Linux/Qt/QtMenu.h"
#include "Platform/Linux/Qt/StatusMenu.h"
#include "Platform/Linux/Qt/TrayForm.h"
#include "Platform/Linux/X11/XConnection.h"

#include <memory>

namespace tarvex {

/// The status item as a window of ours that a tray takes in (System Tray Protocol Specification). Qt's own
/// tray icons would ask the session bus first, in a way that waits, and stay with its answer.
class EmbeddedTrayForm final : public TrayForm {
public:
    /// Make it while the screen has a tray, and a new one for another tray. The menu must outlive the form.
    EmbeddedTrayForm(StatusMenu& menu, XConnection& connection);
    EmbeddedTrayForm(const EmbeddedTrayForm&) = delete;
    EmbeddedTrayForm& operator=(const EmbeddedTrayForm&) = delete;
    EmbeddedTrayForm(EmbeddedTrayForm&&) = delete;
    EmbeddedTrayForm& operator=(EmbeddedTrayForm&&) = delete;
    ~EmbeddedTrayForm() override;

    void setAppearance(const StatusItemAppearance& appearance) override;

    /// Nothing to do: the menu is filled as it opens.
    void menuChanged() override {}

private:
    class Icon;

    QtMenu menu_;
    std::unique_ptr<Icon> icon_;
};

} // namespace tarvex
