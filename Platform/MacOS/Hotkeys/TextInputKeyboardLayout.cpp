#include "Platform/MacOS/Hotkeys/TextInputKeyboardLayout.h"

#include "Platform/MacOS/CoreFoundation/CFText.h"

#include <Carbon/Carbon.h>
#include <algorithm>
#include <array>
#include <cstddef>

namespace tarvex {

namespace {

/// The layout's data is valid while the input source is held.
const UCKeyboardLayout* layoutOf(TISInputSourceRef source) {
    const void* property = TISGetInputSourceProperty(source, kTISPropertyUnicodeKeyLayoutData);
    const auto data = castTo<CFDataRef>(property, CFDataGetTypeID());
    const UInt8* bytes = data == nullptr ? nullptr : CFDataGetBytePtr(data);
    return reinterpret_cast<const UCKeyboardLayout*>(bytes);
}

// Function and arrow keys give control characters, which no key cap shows.
bool isControl(UniChar unit) {
    return unit < 0x20 || (unit >= 0x7F && unit <= 0x9F);
}

} // namespace

std::optional<std::string> TextInputKeyboardLayout::unshiftedCharacter(std::uint16_t keyCode) {
    const auto source = CFHandle<TISInputSourceRef>::adopt(TISCopyCurrentKeyboardLayoutInputSource());
    if (!source) {
        return std::nullopt;
    }
    // An input method without a layout of its own, as for Chinese, has no such data.
    const UCKeyboardLayout* layout = layoutOf(source.get());
    if (layout == nullptr) {
        return std::nullopt;
    }
    constexpr UInt32 noModifiers = 0;
    constexpr OptionBits noOptions = 0;
    std::array<UniChar, 8> characters{};
    UInt32 deadKeyState = 0;
    UniCharCount count = 0;
    const OSStatus status =
        UCKeyTranslate(layout, keyCode, kUCKeyActionDisplay, noModifiers, LMGetKbdType(), noOptions,
                       &deadKeyState, characters.size(), &count, characters.data());
    if (status != noErr || count == 0) {
        return std::nullopt;
    }
    const std::size_t length = std::min<std::size_t>(count, characters.size());
    if (std::any_of(characters.begin(), characters.begin() + length, &isControl)) {
        return std::nullopt;
    }
    const auto text = CFHandle<CFStringRef>::adopt(
        CFStringCreateWithCharacters(kCFAllocatorDefault, characters.data(), static_cast<CFIndex>(length)));
    return text ? std::optional(textOf(text.get())) : std::nullopt;
}

std::string TextInputKeyboardLayout::upperCased(const std::string& text) {
    const auto original = makeCFString(text);
    if (!original) {
        return text;
    }
    constexpr CFIndex noLimit = 0;
    const auto capitals = CFHandle<CFMutableStringRef>::adopt(
        CFStringCreateMutableCopy(kCFAllocatorDefault, noLimit, original.get()));
    if (!capitals) {
        return text;
    }
    // No locale: the rules of Unicode, not those of one language.
    CFStringUppercase(capitals.get(), nullptr);
    return textOf(capitals.get());
}

} // namespace tarvex
