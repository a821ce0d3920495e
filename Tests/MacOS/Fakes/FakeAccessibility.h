#pragma once

#include <ApplicationServices/ApplicationServices.h>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace tarvex::fake {

/// Names an element of the tree.
struct ElementId {
    int number = 0;

    auto operator<=>(const ElementId&) const = default;
};

/// What a program answers when it is asked for an attribute: an error, success without a value, or a value. A
/// geometry that is broken has a type but no content.
struct BrokenPoint {};

using AttributeAnswer =
    std::variant<AXError, std::monostate, ElementId, CGPoint, CGSize, CGRect, BrokenPoint, std::string>;

/// One element of a program.
struct ElementState {
    int program = 0;
    std::map<std::string, AttributeAnswer> attributes = {};
    /// The attributes that may be written.
    std::set<std::string> settable = {};
    /// What a window never becomes smaller than.
    CGSize minimumSize{0, 0};
    bool exists = true;
};

/// Something that can be hit: the element that answers there, within the frame of a window.
struct Surface {
    ElementId window;
    ElementId deepest;
    bool ignoresMouseEvents = false;
};

/// One write that reached a program.
struct AttributeWrite {
    ElementId element;
    std::string attribute;
    AttributeAnswer value;
};

/// The accessibility side of all programs. Each question is a message to a program; one that does not answer
/// costs the caller the timeout that it set.
class FakeAccessibility {
public:
    ElementId add(ElementState element);

    ElementState& at(ElementId element) { return elements_.at(element); }

    /// In front of the others.
    void show(const Surface& surface) { surfaces_.push_back(surface); }

    void raise(ElementId window);
    void hide(ElementId window);

    void freeze(int program) { frozen_.insert(program); }

    /// The program answers that many messages more.
    void freezeAfter(int messages) { messagesLeft_ = messages; }

    [[nodiscard]] CGRect frameOf(ElementId window) const;

    AXError copyElementAt(double x, double y, float timeout, ElementId* found);
    AXError read(ElementId element, const std::string& attribute, float timeout, AttributeAnswer* answer);
    AXError write(ElementId element, const std::string& attribute, const AttributeAnswer& value,
                  float timeout);

    /// Whether the user lets this program steer others.
    bool isTrusted = true;
    /// The answers to whether it is, each with the value of the option to prompt; none when it was not given.
    std::vector<std::optional<bool>> trustQuestions;

    /// What a hit test ends with; success may come without an element, and an error with one.
    std::optional<AXError> hitError;
    bool hitsNothing = false;
    /// Called after something was hit, before the caller hears of it.
    std::function<void()> hitProbe;

    /// No geometry can be wrapped; no system-wide element can be had.
    bool refusesValues = false;
    bool refusesSystemWideElement = false;

    /// The messaging timeout of the process, in seconds: what the system-wide element was told.
    static constexpr float defaultTimeout = 6;
    float processTimeout = defaultTimeout;

    /// How many messages went out.
    int messages = 0;
    std::vector<AttributeWrite> writes;

private:
    AXError message(int program, float timeout);
    AXError apply(ElementState& element, const std::string& attribute, const AttributeAnswer& value);

    std::map<ElementId, ElementState> elements_;
    std::vector<Surface> surfaces_;
    std::set<int> frozen_;
    std::optional<int> messagesLeft_;
    int lastNumber_ = 0;
};

} // namespace tarvex::fake
