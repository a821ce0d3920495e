#pragma once

#include "App/Toolkit/KeyWindowPlatform.h"

namespace tarvex {

/// The window of this program that Qt has seen the keyboard come to.
class QtKeyWindow final : public KeyWindowPlatform {
public:
    [[nodiscard]] std::optional<std::string> keyWindowTitle() const override;
};

} // namespace tarvex
