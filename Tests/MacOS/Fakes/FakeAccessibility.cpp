#include "Tests/MacOS/Fakes/FakeAccessibility.h"

#include "Tests/MacOS/Fakes/FakeMac.h"

#include <algorithm>

namespace tarvex::fake {

ElementId FakeAccessibility::add(ElementState element) {
    const ElementId id{++lastNumber_};
    elements_.emplace(id, std::move(element));
    return id;
}

void FakeAccessibility::raise(ElementId window) {
    std::stable_partition(surfaces_.begin(), surfaces_.end(),
                          [&](const Surface& surface) { return surface.window != window; });
}

void FakeAccessibility::hide(ElementId window) {
    std::erase_if(surfaces_, [&](const Surface& surface) { return surface.window == window; });
}

CGRect FakeAccessibility::frameOf(ElementId window) const {
    const auto& attributes = elements_.at(window).attributes;
    return {std::get<CGPoint>(attributes.at("AXPosition")), std::get<CGSize>(attributes.at("AXSize"))};
}

// The leave of the user is asked first; a program that is stuck costs the whole timeout.
AXError FakeAccessibility::message(int program, float timeout) {
    ++messages;
    if (!isTrusted) {
        return kAXErrorAPIDisabled;
    }
    const bool isStuck = frozen_.contains(program) || (messagesLeft_ && (*messagesLeft_)-- <= 0);
    if (isStuck) {
        mac().runLoop.block(timeout);
        return kAXErrorCannotComplete;
    }
    return kAXErrorSuccess;
}

AXError FakeAccessibility::copyElementAt(double x, double y, float timeout, ElementId* found) {
    const auto isHit = [&](const Surface& surface) {
        const CGRect frame = frameOf(surface.window);
        return !surface.ignoresMouseEvents && x >= frame.origin.x && y >= frame.origin.y &&
               x < frame.origin.x + frame.size.width && y < frame.origin.y + frame.size.height;
    };
    const auto hit = std::find_if(surfaces_.rbegin(), surfaces_.rend(), isHit);
    const bool isEmpty = hit == surfaces_.rend();
    const AXError sent = message(isEmpty ? 0 : elements_.at(hit->deepest).program, timeout);
    if (sent != kAXErrorSuccess) {
        return sent;
    }
    if (!isEmpty && !hitsNothing) {
        *found = hit->deepest;
    }
    if (hitProbe) {
        hitProbe();
    }
    if (hitError) {
        return *hitError;
    }
    return isEmpty ? kAXErrorNoValue : kAXErrorSuccess;
}

AXError FakeAccessibility::read(ElementId element, const std::string& attribute, float timeout,
                                AttributeAnswer* answer) {
    const ElementState& state = elements_.at(element);
    const AXError sent = message(state.program, timeout);
    if (sent != kAXErrorSuccess) {
        return sent;
    }
    if (!state.exists) {
        return kAXErrorInvalidUIElement;
    }
    const auto found = state.attributes.find(attribute);
    if (found == state.attributes.end()) {
        return kAXErrorAttributeUnsupported;
    }
    if (const auto* error = std::get_if<AXError>(&found->second)) {
        return *error;
    }
    *answer = found->second;
    return kAXErrorSuccess;
}

AXError FakeAccessibility::write(ElementId element, const std::string& attribute,
                                 const AttributeAnswer& value, float timeout) {
    ElementState& state = elements_.at(element);
    const AXError sent = message(state.program, timeout);
    if (sent != kAXErrorSuccess) {
        return sent;
    }
    if (!state.exists) {
        return kAXErrorInvalidUIElement;
    }
    if (!state.settable.contains(attribute)) {
        return kAXErrorAttributeUnsupported;
    }
    writes.push_back({element, attribute, value});
    return apply(state, attribute, value);
}

AXError FakeAccessibility::apply(ElementState& element, const std::string& attribute,
                                 const AttributeAnswer& value) {
    AttributeAnswer& present = element.attributes[attribute];
    if (present.index() != value.index()) {
        return kAXErrorIllegalArgument;
    }
    present = value;
    if (auto* size = std::get_if<CGSize>(&present)) {
        size->width = std::max(size->width, element.minimumSize.width);
        size->height = std::max(size->height, element.minimumSize.height);
    }
    return kAXErrorSuccess;
}

} // namespace tarvex::fake
