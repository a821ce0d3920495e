#include "Tests/Support/Simulated/SceneText.h"

#include "Tests/Support/Simulated/Journal.h"

#include <algorithm>
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
    case ColorName::gray:
        return "gray";
    case ColorName::blue:
        return "blue";
    case ColorName::red:
        return "red";
    }
    return "unknown";
}

std::string line(const char* what, const Rect& rect, const Color& color) {
    std::string text = what;
    text.append(" ").append(describe(rect.origin())).append(" ").append(describe(rect.size()));
    text.append(" ").append(nameOf(color.name)).append(" ").append(describe(color.alpha));
    return text;
}

std::string outline(const char* what, const Rect& rect, const Color& color, double width) {
    return line(what, rect, color).append(" width ").append(describe(width));
}

/// One line of text for each kind of primitive.
struct Describer {
    std::string operator()(const FillRect& fill) const { return line("fill", fill.rect, fill.color); }

    std::string operator()(const StrokeRect& stroke) const {
        return outline("stroke", stroke.rect, stroke.color, stroke.lineWidth);
    }

    std::string operator()(const StrokeLine& stroke) const {
        return "line " + describe(stroke.start) + " to " + describe(stroke.end) + " " +
               nameOf(stroke.color.name) + " " + describe(stroke.color.alpha) + " width " +
               describe(stroke.lineWidth);
    }

    std::string operator()(const FillEllipse& fill) const {
        return line("fill ellipse", fill.rect, fill.color);
    }

    std::string operator()(const StrokeEllipse& stroke) const {
        return outline("stroke ellipse", stroke.rect, stroke.color, stroke.lineWidth);
    }

    std::string operator()(const FillRoundedRect& fill) const {
        return line("fill rounded", fill.rect, fill.color) + " radii " + describe(fill.radii);
    }

    std::string operator()(const TextLabel& label) const {
        return "text " + describe(label.origin) + " \"" + label.text + "\" " + nameOf(label.color.name) +
               " " + describe(label.color.alpha) + " size " + describe(label.font.size) + " weight " +
               std::to_string(label.font.weight) +
               (label.font.hasMonospacedDigits ? " monospaced digits" : "");
    }
};

bool isOutline(const std::string& text) {
    return text.starts_with("stroke ") && !text.starts_with("stroke ellipse");
}

} // namespace

std::vector<std::string> describe(const Scene& scene) {
    std::vector<std::string> lines;
    for (const ScenePrimitive& primitive : scene.primitives) {
        lines.push_back(std::visit(Describer{}, primitive));
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
