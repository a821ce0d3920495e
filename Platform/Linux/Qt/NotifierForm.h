#pragma once

#include "Platform/Linux/Qt/BusConnection.h"
#include "Platform/Linux/Qt/BusMenu.h"
#include "Platform/Linux/Qt/QtMenu.h"
#include "Platform/Linux/Qt/StatusMenu.h"
#include "Platform/Linux/Qt/TrayForm.h"

#include <memory>
#include <string>

namespace tarvex {

/// The status item as an object on the session bus that the desktop shows (StatusNotifierItem). It has a
/// connection of its own: its end is what tells every kind of host that the item has gone.
class NotifierForm final : public TrayForm {
public:
    /// The menu must outlive the form.
    NotifierForm(StatusMenu& menu, const std::string& busAddress);
    NotifierForm(const NotifierForm&) = delete;
    NotifierForm& operator=(const NotifierForm&) = delete;
    NotifierForm(NotifierForm&&) = delete;
    NotifierForm& operator=(NotifierForm&&) = delete;
    ~NotifierForm() override;

    void setAppearance(const StatusItemAppearance& appearance) override;

    void menuChanged() override { busMenu_.menuChanged(); }

private:
    /// The object on the bus.
    class Object;

    void registerItem(const QString& busName);

    BusConnection bus_;
    BusMenu busMenu_;
    /// For hosts that leave the menu to the item.
    QtMenu menu_;
    std::unique_ptr<Object> object_;
};

} // namespace tarvex
