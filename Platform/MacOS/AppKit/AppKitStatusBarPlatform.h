#pragma once

#include "App/Toolkit/StatusItem.h"

namespace tarvex {

/// The right end of the menu bar.
class AppKitStatusBarPlatform final : public StatusBarPlatform {
public:
    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem(StatusItemDelegate& delegate) override;
};

} // namespace tarvex
