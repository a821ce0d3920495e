#include "Tests/MacOS/Fakes/FakeCoreFoundation.h"
#include "Tests/MacOS/Fakes/FakeMac.h"

#include <cstring>

namespace tarvex::fake {

namespace {

/// What a program holds of an element: it names it, and has a timeout of its own or that of the process.
class Element final : public Object {
public:
    explicit Element(std::optional<ElementId> id) : Object(elementType, "element"), id(id) {}

    [[nodiscard]] float timeout() const {
        return ownTimeout > 0 ? ownTimeout : mac().accessibility.processTimeout;
    }

    /// None for the system-wide element.
    std::optional<ElementId> id;
    float ownTimeout = 0;
};

class Geometry final : public Object {
public:
    Geometry(AXValueType type, AttributeAnswer value)
        : Object(geometryType, "geometry"), type(type), value(std::move(value)) {}

    AXValueType type;
    AttributeAnswer value;
};

CFTypeRef makeGeometry(AXValueType type, const AttributeAnswer& value) {
    return referenceTo<CFTypeRef>(mac().heap.make<Geometry>(type, value));
}

/// Makes the object that the program's answer becomes, owned by the caller.
struct AnswerMaker {
    CFTypeRef operator()(AXError /*error*/) const { return nullptr; }

    CFTypeRef operator()(std::monostate /*nothing*/) const { return nullptr; }

    CFTypeRef operator()(ElementId id) const { return referenceTo<CFTypeRef>(mac().heap.make<Element>(id)); }

    CFTypeRef operator()(const CGPoint& point) const { return makeGeometry(kAXValueTypeCGPoint, point); }

    CFTypeRef operator()(const CGSize& size) const { return makeGeometry(kAXValueTypeCGSize, size); }

    CFTypeRef operator()(const CGRect& rect) const { return makeGeometry(kAXValueTypeCGRect, rect); }

    CFTypeRef operator()(const BrokenPoint& broken) const {
        return makeGeometry(kAXValueTypeCGPoint, broken);
    }

    CFTypeRef operator()(const std::string& text) const { return makeString(text); }
};

template <typename Value>
bool copyIf(const AttributeAnswer& answer, void* result) {
    const auto* value = std::get_if<Value>(&answer);
    if (value != nullptr) {
        std::memcpy(result, value, sizeof *value);
    }
    return value != nullptr;
}

const Element* elementOf(AXUIElementRef reference, const char* user) {
    return mac().heap.as<const Element>(reference, user);
}

String promptOption{u"AXTrustedCheckOptionPrompt"};

std::optional<bool> promptIn(CFDictionaryRef options) {
    const void* value =
        options == nullptr ? nullptr : CFDictionaryGetValue(options, kAXTrustedCheckOptionPrompt);
    return value == nullptr ? std::nullopt : std::optional(value == kCFBooleanTrue);
}

} // namespace

} // namespace tarvex::fake

using namespace tarvex::fake;

extern "C" {

CFStringRef kAXTrustedCheckOptionPrompt = referenceTo<CFStringRef>(&promptOption);

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
    mac().accessibility.trustQuestions.push_back(promptIn(options));
    return mac().accessibility.isTrusted ? 1 : 0;
}

CFTypeID AXUIElementGetTypeID(void) {
    return elementType;
}

CFTypeID AXValueGetTypeID(void) {
    return geometryType;
}

AXUIElementRef AXUIElementCreateSystemWide(void) {
    if (mac().accessibility.refusesSystemWideElement) {
        return nullptr;
    }
    return referenceTo<AXUIElementRef>(mac().heap.make<Element>(std::nullopt));
}

AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float seconds) {
    auto* object = mac().heap.as<Element>(element, "AXUIElementSetMessagingTimeout");
    if (object == nullptr) {
        return kAXErrorInvalidUIElement;
    }
    if (object->id) {
        object->ownTimeout = seconds;
    } else {
        mac().accessibility.processTimeout = seconds > 0 ? seconds : FakeAccessibility::defaultTimeout;
    }
    return kAXErrorSuccess;
}

AXError AXUIElementCopyElementAtPosition(AXUIElementRef application, float x, float y,
                                         AXUIElementRef* element) {
    const Element* asked = elementOf(application, "AXUIElementCopyElementAtPosition");
    if (asked == nullptr || asked->id) {
        return kAXErrorInvalidUIElement;
    }
    ElementId found;
    const AXError error = mac().accessibility.copyElementAt(x, y, asked->timeout(), &found);
    if (found != ElementId{}) {
        *element = referenceTo<AXUIElementRef>(mac().heap.make<Element>(found));
    }
    return error;
}

AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef* value) {
    const Element* asked = elementOf(element, "AXUIElementCopyAttributeValue");
    if (asked == nullptr || !asked->id) {
        return kAXErrorInvalidUIElement;
    }
    AttributeAnswer answer = std::monostate{};
    const AXError error =
        mac().accessibility.read(*asked->id, textOfString(attribute), asked->timeout(), &answer);
    *value = std::visit(AnswerMaker{}, answer);
    return error;
}

AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef value) {
    const Element* asked = elementOf(element, "AXUIElementSetAttributeValue");
    const auto* geometry = mac().heap.as<const Geometry>(value, "AXUIElementSetAttributeValue");
    if (asked == nullptr || !asked->id || geometry == nullptr) {
        return kAXErrorInvalidUIElement;
    }
    return mac().accessibility.write(*asked->id, textOfString(attribute), geometry->value, asked->timeout());
}

AXValueRef AXValueCreate(AXValueType type, const void* value) {
    if (mac().accessibility.refusesValues) {
        return nullptr;
    }
    AttributeAnswer content = std::monostate{};
    if (type == kAXValueTypeCGPoint) {
        content = *static_cast<const CGPoint*>(value);
    } else if (type == kAXValueTypeCGSize) {
        content = *static_cast<const CGSize*>(value);
    } else {
        return nullptr;
    }
    return static_cast<AXValueRef>(makeGeometry(type, content));
}

AXValueType AXValueGetType(AXValueRef value) {
    const auto* geometry = mac().heap.as<const Geometry>(value, "AXValueGetType");
    return geometry == nullptr ? kAXValueTypeIllegal : geometry->type;
}

// Writes nothing when the value is of another type.
Boolean AXValueGetValue(AXValueRef value, AXValueType type, void* result) {
    const auto* geometry = mac().heap.as<const Geometry>(value, "AXValueGetValue");
    if (geometry == nullptr || geometry->type != type) {
        return 0;
    }
    const bool isCopied = copyIf<CGPoint>(geometry->value, result) ||
                          copyIf<CGSize>(geometry->value, result) || copyIf<CGRect>(geometry->value, result);
    return isCopied ? 1 : 0;
}
}
