#include "Tests/Support/Simulated/SceneText.h"

#include "Tests/Support/Simulated/Journal.h"

#include <algorithm>
#include <type_traits>
#include <variant>

namespace tarvex {

namespace {

std::string nameOf(ColorName name) {
    switch (name) {
    case ColorName::clear:
        return "clear";
    case ColorName::white:
        return "white";
    case ColorName::black:
        return "black";
    case ColorName::accent:
        return "accent";
    }
    return "unknown";
}

std::string line(const char* what, const Rect& rect, const Color& color) {
    std::string text = what;
    text.append(" ").append(describe(rect.origin())).append(" ").append(describe(rect.size()));
    text.append(" ").append(nameOf(color.name)).append(" ").append(describe(color.alpha));
    return text;
}

bool isOutline(const std::string& text) {
    return text.starts_with("stroke");
}

} // namespace

std::vector<std::string> describe(const Scene& scene) {
    std::vector<std::string> lines;
    for (const ScenePrimitive& primitive : scene.primitives) {
        if (const auto* fill = std::get_if<FillRect>(&primitive)) {
            lines.push_back(line("fill", fill->rect, fill->color));
        } else {
            const auto& stroke = std::get<StrokeRect>(primitive);
            lines.push_back(line("stroke", stroke.rect, stroke.color).append(" width ") +
                            describe(stroke.lineWidth));
        }
    }
    return lines;
}

std::vector<std::string> describeUnordered(const Scene& scene) {
    std::vector<std::string> lines = describe(scene);
    const auto first = std::find_if(lines.begin(), lines.end(), isOutline);
    const auto last = std::find_if_not(first, lines.end(), isOutline);
    std::sort(first, last);
    return lines;
}

std::vector<std::string> zonePicture(Size view, const std::vector<Rect>& zones,
                                     const std::vector<Rect>& selection) {
    Scene scene;
    scene.primitives.emplace_back(FillRect{{0, 0, view.width, view.height}, {ColorName::clear, 0}});
    for (const Rect& zone : zones) {
        scene.primitives.emplace_back(StrokeRect{zone, {ColorName::white, 0.22}, 1});
    }
    for (const Rect& rect : selection) {
        scene.primitives.emplace_back(FillRect{rect, {ColorName::accent, 0.5}});
    }
    return describeUnordered(scene);
}

} // namespace tarvex
