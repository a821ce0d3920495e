#pragma once

#include "App/Toolkit/PointerPlatform.h"

namespace tarvex {

/// The pointer as the window server has it at the moment of the question.
class AppKitPointerPlatform final : public PointerPlatform {
public:
    [[nodiscard]] Point mouseLocation() override;
};

} // namespace tarvex
