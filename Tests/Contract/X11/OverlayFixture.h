#pragma once

#include "Tests/Contract/X11/OverlayAdapters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <utility>

namespace tarvex::contract {

inline constexpr Color accent{ColorName::accent, 0.5};
inline constexpr Color faint{ColorName::white, 0.22};
inline constexpr std::uint32_t accentColor = XWindowPlatform::defaultAccentColor;

/// The colour that remains of `below` under a layer.
inline std::uint32_t blend(std::uint32_t above, double alpha, std::uint32_t below) {
    std::uint32_t result = 0;
    for (const unsigned shift : {0U, 8U, 16U}) {
        const double channel = alpha * (above >> shift & 0xFFU) + (1 - alpha) * (below >> shift & 0xFFU);
        result |= static_cast<std::uint32_t>(channel + 0.5) << shift;
    }
    return result;
}

/// The greatest difference of the channels of two colours; compositors round each in their own way.
inline int distance(std::uint32_t one, std::uint32_t other) {
    int result = 0;
    for (const unsigned shift : {0U, 8U, 16U}) {
        const int difference =
            static_cast<int>(one >> shift & 0xFFU) - static_cast<int>(other >> shift & 0xFFU);
        result = std::max(result, std::abs(difference));
    }
    return result;
}

/// A world with one overlay whose view is the rectangle of root pixels from (100, 200) to (700, 600). The
/// parameter is who composes the screen at the start.
class OverlayTest : public ::testing::TestWithParam<Composition> {
protected:
    void SetUp() override { desktop_ = std::make_unique<OverlayDesktop>(GetParam()); }

    void TearDown() override {
        window_.reset();
        desktop_.reset();
    }

    static bool isComposited() { return GetParam() != Composition::none; }

    static WindowAttributes attributes(const Rect& frame) {
        WindowAttributes result;
        result.contentRect = frame;
        result.ignoresMouseEvents = true;
        return result;
    }

    std::unique_ptr<Window> makeWindow(const Rect& frame) {
        return desktop_->adapters.windows.makeWindow(attributes(frame));
    }

    void show(Scene scene) {
        if (!window_) {
            window_ = makeWindow(frame_);
        }
        window_->setScene(std::move(scene));
        window_->orderFront();
        desktop_->settle();
    }

    static Scene filled(const Rect& rect, Color color = {ColorName::white, 1}) {
        return {{FillRect{rect, color}}};
    }

    /// The colour on the screen at a pixel of the view, counted from its top-left.
    std::uint32_t pixel(int x, int y) { return desktop_->pixel({100 + x, 200 + y}); }

    /// The only native window that is not parked.
    xcb_window_t shownNative() {
        for (const xcb_window_t window : desktop_->nativeWindows()) {
            const auto geometry = desktop_->client.geometryInRoot(window);
            if (geometry && geometry->x >= 0) {
                return window;
            }
        }
        return XCB_WINDOW_NONE;
    }

    const Rect frame_{100, OverlayDesktop::height - 600, 600, 400};
    const Rect whole_{0, 0, 600, 400};
    std::unique_ptr<OverlayDesktop> desktop_;
    std::unique_ptr<Window> window_;
};

} // namespace tarvex::contract
