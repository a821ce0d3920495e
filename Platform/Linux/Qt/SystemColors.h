#pragma once

#include <QColor>

#include <cstdint>

namespace tarvex {

/// The colours that belong to the user's desktop, as Qt has them.
class SystemColors {
public:
    /// The accent colour, 0xRRGGBB: the desktop theme's highlight, or a clear blue where no theme gives one
    /// that stands out from grey windows. An application object must exist.
    [[nodiscard]] static std::uint32_t accentColor();

    /// The accent colour for a highlight colour.
    [[nodiscard]] static std::uint32_t accentColorForHighlight(const QColor& highlight);
};

} // namespace tarvex
