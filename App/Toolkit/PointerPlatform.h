#pragma once

#include "Core/Geometry.h"

namespace tarvex {

/// Port: the mouse.
class PointerPlatform {
public:
    PointerPlatform() = default;
    PointerPlatform(const PointerPlatform&) = delete;
    PointerPlatform& operator=(const PointerPlatform&) = delete;
    PointerPlatform(PointerPlatform&&) = delete;
    PointerPlatform& operator=(PointerPlatform&&) = delete;
    virtual ~PointerPlatform() = default;

    /// Where the pointer is while the current event is handled, in screen space (points, y up). When the
    /// platform cannot say, the position that it last gave.
    [[nodiscard]] virtual Point mouseLocation() = 0;
};

} // namespace tarvex
