#pragma once

#include "Platform/MacOS/CoreFoundation/CFHandle.h"

#include <string>
#include <string_view>

namespace tarvex {

/// The text as a string object; null when it is not UTF-8.
[[nodiscard]] CFHandle<CFStringRef> makeCFString(std::string_view text);

/// The string as UTF-8; half a surrogate pair becomes a question mark. Empty for null.
[[nodiscard]] std::string textOf(CFStringRef string);

/// The object as the type that its type id names, without a reference of its own; null when it is null or of
/// another type.
template <typename Reference>
[[nodiscard]] Reference castTo(CFTypeRef object, CFTypeID type) {
    return object != nullptr && CFGetTypeID(object) == type ? static_cast<Reference>(object) : nullptr;
}

} // namespace tarvex
