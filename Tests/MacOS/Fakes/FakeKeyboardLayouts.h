#pragma once

#include <Carbon/Carbon.h>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tarvex::fake {

/// What an input source says when it is asked for its layout's data.
enum class LayoutData : std::uint8_t { present, absent, notData, empty };

/// How UCKeyTranslate was called.
struct TranslationCall {
    UInt16 keyCode = 0;
    UInt16 action = 0;
    UInt32 modifiers = 0;
    UInt32 keyboardType = 0;
    OptionBits options = 0;
    UInt32 deadKeyState = 0;
    UniCharCount capacity = 0;

    bool operator==(const TranslationCall&) const = default;
};

/// The user's keyboard layout.
class FakeKeyboardLayouts {
public:
    /// Virtual key code to what the key gives unshifted, and to what a dead key would show.
    std::map<UInt16, std::u16string> keys{{0, u"a"}, {14, u"e"}, {18, u"1"}};
    std::map<UInt16, std::u16string> deadKeys;

    bool hasInputSource = true;
    LayoutData data = LayoutData::present;
    OSStatus translationStatus = noErr;

    std::vector<TranslationCall> calls;

    static constexpr UInt8 keyboardType = 91;

    /// The keys in a form that UCKeyTranslate finds its way in.
    [[nodiscard]] std::vector<UInt8> encoded() const;
};

} // namespace tarvex::fake
