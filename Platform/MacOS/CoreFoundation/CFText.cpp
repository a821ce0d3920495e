#include "Platform/MacOS/CoreFoundation/CFText.h"

#include <cstddef>

namespace tarvex {

CFHandle<CFStringRef> makeCFString(std::string_view text) {
    // The view of an empty text may have no bytes to point at.
    const char* bytes = text.empty() ? "" : text.data();
    return CFHandle<CFStringRef>::adopt(
        CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(bytes),
                                static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, 0));
}

std::string textOf(CFStringRef string) {
    if (string == nullptr) {
        return {};
    }
    const CFRange whole{0, CFStringGetLength(string)};
    constexpr UInt8 replacement = '?';
    CFIndex size = 0;
    CFStringGetBytes(string, whole, kCFStringEncodingUTF8, replacement, 0, nullptr, 0, &size);
    std::string text(static_cast<std::size_t>(size), '\0');
    CFStringGetBytes(string, whole, kCFStringEncodingUTF8, replacement, 0,
                     reinterpret_cast<UInt8*>(text.data()), size, &size);
    return text;
}

} // namespace tarvex
