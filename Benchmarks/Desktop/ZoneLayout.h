#pragma once

#include "Tests/Support/X11/PixelGeometry.h"

#include <string>
#include <vector>

namespace tarvex::benchmark {

/// The zones of a screen without panels, and the settings that ask for them.
struct ZoneLayout {
    /// Of the whole screen, in pixels.
    int width = 1920;
    int height = 1080;
    std::vector<double> verticalSplits;
    std::vector<double> horizontalSplits;

    /// The frame that a window takes in that zone (row 0 at the top).
    [[nodiscard]] test::PixelRect zone(int column, int row) const;

    /// The corner at the bottom left of that zone: its outline, and some of its fill when it is selected.
    [[nodiscard]] test::PixelRect corner(int column, int row) const;

    /// The text of config.json.
    [[nodiscard]] std::string settings() const;
};

} // namespace tarvex::benchmark
