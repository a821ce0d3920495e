#pragma once

#include "App/Toolkit/StatusItem.h"

namespace tarvex {

/// One way in which a status item is on the screen. Destroying it takes the item away.
class TrayForm {
public:
    TrayForm() = default;
    TrayForm(const TrayForm&) = delete;
    TrayForm& operator=(const TrayForm&) = delete;
    TrayForm(TrayForm&&) = delete;
    TrayForm& operator=(TrayForm&&) = delete;
    virtual ~TrayForm() = default;

    virtual void setAppearance(const StatusItemAppearance& appearance) = 0;

    /// The item's menu has another value now.
    virtual void menuChanged() = 0;
};

} // namespace tarvex
