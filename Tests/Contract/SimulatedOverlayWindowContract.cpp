#include "Tests/Contract/OverlayWindowContract.h"
#include "Tests/Contract/SimulatedWorld.h"

#include <cmath>
#include <variant>

namespace tarvex::contract {
namespace {

constexpr Pixel desktopColor{40, 60, 80};

Pixel pixelOf(ColorName name) {
    switch (name) {
    case ColorName::white:
        return {255, 255, 255};
    case ColorName::accent:
        return {0, 122, 255};
    case ColorName::clear:
    case ColorName::black:
    case ColorName::gray:
    case ColorName::blue:
    case ColorName::red:
        break;
    }
    return {};
}

std::uint8_t blend(std::uint8_t below, std::uint8_t above, double alpha) {
    return static_cast<std::uint8_t>(std::lround(below * (1 - alpha) + above * alpha));
}

Pixel over(Pixel below, const Color& color) {
    const Pixel above = pixelOf(color.name);
    return {blend(below.red, above.red, color.alpha), blend(below.green, above.green, color.alpha),
            blend(below.blue, above.blue, color.alpha)};
}

bool covers(const ScenePrimitive& primitive, Point center) {
    if (const auto* fill = std::get_if<FillRect>(&primitive)) {
        return fill->rect.contains(center);
    }
    const auto& stroke = std::get<StrokeRect>(primitive);
    const double reach = stroke.lineWidth / 2;
    const Rect& rect = stroke.rect;
    const Rect outer{rect.x - reach, rect.y - reach, rect.width + 2 * reach, rect.height + 2 * reach};
    const Rect inner{rect.x + reach, rect.y + reach, rect.width - 2 * reach, rect.height - 2 * reach};
    return outer.contains(center) && !inner.contains(center);
}

Color colorOf(const ScenePrimitive& primitive) {
    return std::visit([](const auto& shape) { return shape.color; }, primitive);
}

// Looks at the desktop as a person does: the windows shown, each over the ones before it, point by point.
class SimulatedOverlayWindowWorld final : public SimulatedWorld<OverlayWindowWorld> {
public:
    WindowPlatform& windows() override { return desktop_.windows(); }

    Pixel background() override { return desktopColor; }

    std::vector<Pixel> pixels(const Rect& area) override {
        std::vector<Pixel> seen;
        for (double y = area.maxY() - 1; y >= area.y; --y) {
            for (double x = area.x; x < area.maxX(); ++x) {
                seen.push_back(pixelAt({x + 0.5, y + 0.5}));
            }
        }
        return seen;
    }

    // It has the desktop's own colour and a lower level.
    void openApplicationWindow(const Rect& frame) override { desktop_.openWindow(frame); }

    bool clickPassesThrough(Point point) override {
        for (const SimulatedNativeWindow* window : desktop_.windows().shown()) {
            if (window->frame.contains(point) && !window->attributes.ignoresMouseEvents) {
                return false;
            }
        }
        return true;
    }

    bool hasKeyboard() override { return desktop_.keyWindow().keyWindowTitle().has_value(); }

private:
    Pixel pixelAt(Point point) {
        Pixel pixel = desktopColor;
        for (const SimulatedNativeWindow* window : desktop_.windows().shown()) {
            if (!window->frame.contains(point) || window->attributes.level <= 0) {
                continue;
            }
            const Point inView{point.x - window->frame.x, point.y - window->frame.y};
            for (const ScenePrimitive& primitive : window->scene.primitives) {
                if (covers(primitive, inView)) {
                    pixel = over(pixel, colorOf(primitive));
                }
            }
        }
        return pixel;
    }
};

INSTANTIATE_TEST_SUITE_P(
    Simulated, OverlayWindowContract,
    ::testing::Values(worldFactory<OverlayWindowWorld, SimulatedOverlayWindowWorld>("Simulated")), worldName);

} // namespace
} // namespace tarvex::contract
