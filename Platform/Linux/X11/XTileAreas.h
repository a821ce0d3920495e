#pragma once

#include "Platform/Linux/X11/PixelRect.h"
#include "Platform/Linux/X11/XConnection.h"

#include <vector>

namespace tarvex {

/// The parts of the desktop that window managers make tiles of: the halves and the quarters of each monitor,
/// as a whole or as far as the work area goes (Extended Window Manager Hints, _NET_WORKAREA).
class XTileAreas {
public:
    /// The steps, in pixels, in which a window can become larger.
    struct Steps {
        int width = 1;
        int height = 1;
    };

    /// Reads the monitors and the work area. Waits for the server, several times. Without an answer there are
    /// no tiles.
    explicit XTileAreas(XConnection& connection);

    /// Whether a visible frame on the root window fills such a part, but for what a further step would need
    /// and for a pixel of rounding.
    [[nodiscard]] bool isTile(const PixelRect& frame, const Steps& steps) const;

private:
    struct Span {
        int start = 0;
        int end = 0;
    };

    /// A monitor's extent as a whole and as far as each work area goes.
    struct Area {
        std::vector<Span> columns;
        std::vector<Span> rows;
    };

    /// How much of the first of the spans that fits is filled.
    enum class Fill { none, half, whole };

    [[nodiscard]] static Fill fillOf(const std::vector<Span>& spans, const Span& frame, int step);
    [[nodiscard]] static bool fills(const Span& span, const Span& frame, int step);

    std::vector<Area> areas_;
};

} // namespace tarvex
