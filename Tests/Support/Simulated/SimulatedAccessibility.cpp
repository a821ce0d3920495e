#include "Tests/Support/Simulated/SimulatedAccessibility.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <variant>

namespace tarvex {

/// A window (part -1), the part of that depth of a window, or with window 0 the desktop.
class SimulatedAccessibility::Element final : public AccessibilityElement {
public:
    Element(std::shared_ptr<int> liveness, int window, int part)
        : liveness_(std::move(liveness)), window_(window), part_(part) {}

    [[nodiscard]] int window() const { return window_; }

    [[nodiscard]] int part() const { return part_; }

private:
    std::shared_ptr<int> liveness_;
    int window_;
    int part_;
};

bool SimulatedAccessibility::isProcessTrusted(bool showsPrompt) {
    journal_->note(showsPrompt ? "ask for trust with prompt" : "ask for trust");
    return isTrusted_;
}

AccessibilityElementResult SimulatedAccessibility::copyElementAtPosition(float x, float y) {
    journal_->note("hit test " + describe(Point{x, y}));
    if (!isTrusted_) {
        return {ax_error::apiDisabled, nullptr};
    }
    if (hitTestAnswer_) {
        return *hitTestAnswer_;
    }
    const int number = windowAt({x, y});
    const SimulatedWindowState* window = number == 0 ? nullptr : find(number);
    return {0, makeElement(number, window == nullptr ? -1 : window->partDepth - 1)};
}

AccessibilityValueResult SimulatedAccessibility::copyAttributeValue(const AccessibilityElementRef& element,
                                                                    std::string_view name) {
    const auto& node = dynamic_cast<const Element&>(*element);
    journal_->note("window " + std::to_string(node.window()) + " read " + std::string(name));
    if (!isTrusted_) {
        return {ax_error::apiDisabled, std::nullopt};
    }
    if (node.window() == 0) {
        return {ax_error::attributeUnsupported, std::nullopt};
    }
    const SimulatedWindowState* window = find(node.window());
    if (window == nullptr) {
        return {ax_error::invalidElement, std::nullopt};
    }
    const auto answer = readAnswers_.find({node.window(), std::string(name)});
    if (answer != readAnswers_.end()) {
        return answer->second;
    }
    return node.part() < 0 ? readWindow(*window, name) : readPart(*window, node.part(), name);
}

std::optional<AccessibilityValue> SimulatedAccessibility::makePointValue(Point point) {
    return refusesValues_ ? std::nullopt : std::optional<AccessibilityValue>(point);
}

std::optional<AccessibilityValue> SimulatedAccessibility::makeSizeValue(Size size) {
    return refusesValues_ ? std::nullopt : std::optional<AccessibilityValue>(size);
}

std::int32_t SimulatedAccessibility::setAttributeValue(const AccessibilityElementRef& element,
                                                       std::string_view name,
                                                       const AccessibilityValue& value) {
    const auto& node = dynamic_cast<const Element&>(*element);
    const auto* point = std::get_if<Point>(&value);
    const auto* size = std::get_if<Size>(&value);
    journal_->note("window " + std::to_string(node.window()) + " write " + std::string(name) + " " +
                   (point != nullptr  ? describe(*point)
                    : size != nullptr ? describe(*size)
                                      : "other"));
    if (!isTrusted_) {
        return ax_error::apiDisabled;
    }
    SimulatedWindowState* window = node.window() == 0 ? nullptr : find(node.window());
    if (window == nullptr) {
        return ax_error::invalidElement;
    }
    if (node.part() >= 0 || (name != "AXPosition" && name != "AXSize")) {
        return ax_error::attributeUnsupported;
    }
    if ((name == "AXPosition") ? point == nullptr : size == nullptr) {
        return ax_error::illegalArgument;
    }
    if (const std::int32_t error = writeErrors_[std::string(name)]; error != 0) {
        return error;
    }
    const Rect& frame = window->frame;
    place(*window, point != nullptr ? Rect{point->x, point->y, frame.width, frame.height}
                                    : Rect{frame.x, frame.y, size->width, size->height});
    return 0;
}

int SimulatedAccessibility::open(SimulatedWindowState window) {
    window.number = ++lastNumber_;
    windows_.push_back(std::move(window));
    place(windows_.back(), windows_.back().frame);
    return lastNumber_;
}

void SimulatedAccessibility::close(int number) {
    std::erase_if(windows_, [&](const SimulatedWindowState& window) { return window.number == number; });
}

void SimulatedAccessibility::raise(int number) {
    const auto found =
        std::find_if(windows_.begin(), windows_.end(),
                     [&](const SimulatedWindowState& window) { return window.number == number; });
    if (found != windows_.end()) {
        std::rotate(found, found + 1, windows_.end());
    }
}

SimulatedWindowState& SimulatedAccessibility::at(int number) {
    SimulatedWindowState* window = find(number);
    if (window == nullptr) {
        throw std::logic_error("no such window");
    }
    return *window;
}

int SimulatedAccessibility::windowAt(Point point) const {
    for (auto window = windows_.rbegin(); window != windows_.rend(); ++window) {
        if (window->kind != SimulatedWindowKind::ownOverlay && window->frame.contains(point)) {
            return window->number;
        }
    }
    return 0;
}

int SimulatedAccessibility::windowNumber(const AccessibilityElementRef& element) {
    return element ? dynamic_cast<const Element&>(*element).window() : 0;
}

void SimulatedAccessibility::answerRead(int number, const std::string& name,
                                        AccessibilityValueResult answer) {
    readAnswers_[{number, name}] = std::move(answer);
}

AccessibilityElementRef SimulatedAccessibility::makeElement(int window, int part) {
    return std::make_shared<Element>(liveness_, window, part);
}

SimulatedWindowState* SimulatedAccessibility::find(int number) {
    for (SimulatedWindowState& window : windows_) {
        if (window.number == number) {
            return &window;
        }
    }
    return nullptr;
}

AccessibilityValueResult SimulatedAccessibility::readWindow(const SimulatedWindowState& window,
                                                            std::string_view name) {
    if (name == "AXPosition") {
        return {0, AccessibilityValue(window.frame.origin())};
    }
    if (name == "AXSize") {
        return {0, AccessibilityValue(window.frame.size())};
    }
    if (name == "AXWindow" && window.kind == SimulatedWindowKind::application) {
        return {0, AccessibilityValue(makeElement(window.number, -1))};
    }
    if (name == "AXParent") {
        return {0, AccessibilityValue(makeElement(0, -1))};
    }
    return {ax_error::attributeUnsupported, std::nullopt};
}

AccessibilityValueResult SimulatedAccessibility::readPart(const SimulatedWindowState& window, int part,
                                                          std::string_view name) {
    const bool knowsWindow =
        window.kind == SimulatedWindowKind::application && part < window.partsThatKnowTheWindow;
    if (name == "AXWindow" && knowsWindow) {
        return {0, AccessibilityValue(makeElement(window.number, -1))};
    }
    if (name == "AXParent") {
        return {0, AccessibilityValue(makeElement(window.number, part - 1))};
    }
    return {ax_error::attributeUnsupported, std::nullopt};
}

// An application refuses to be smaller than it can be, and a maximised window is restored by being placed.
void SimulatedAccessibility::place(SimulatedWindowState& window, Rect frame) {
    frame.width = std::max(frame.width, window.minimumSize.width);
    frame.height = std::max(frame.height, window.minimumSize.height);
    window.frame = frame;
    window.isMaximized = false;
}

} // namespace tarvex
