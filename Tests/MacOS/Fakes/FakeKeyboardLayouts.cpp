#include "Tests/MacOS/Fakes/FakeKeyboardLayouts.h"

#include "Tests/MacOS/Fakes/FakeCoreFoundation.h"
#include "Tests/MacOS/Fakes/FakeMac.h"

#include <algorithm>
#include <cstring>

namespace tarvex::fake {

namespace {

constexpr UInt16 layoutMark = 0x4B4C;
constexpr UInt16 deadKeyMark = 1;

void append(std::vector<UInt8>& bytes, UInt16 value) {
    bytes.push_back(static_cast<UInt8>(value & 0xFFU));
    bytes.push_back(static_cast<UInt8>(value >> 8U));
}

void append(std::vector<UInt8>& bytes, const std::map<UInt16, std::u16string>& keys, UInt16 mark) {
    for (const auto& [code, text] : keys) {
        append(bytes, code);
        append(bytes, mark);
        append(bytes, static_cast<UInt16>(text.size()));
        for (const char16_t unit : text) {
            append(bytes, static_cast<UInt16>(unit));
        }
    }
}

/// Reads what encoded() wrote, from bytes that the caller must have kept.
class Reader {
public:
    explicit Reader(const void* bytes) : next_(static_cast<const UInt8*>(bytes)) {}

    UInt16 take() {
        UInt16 value = 0;
        std::memcpy(&value, next_, sizeof value);
        next_ += sizeof value;
        return value;
    }

private:
    const UInt8* next_;
};

class InputSource final : public Object {
public:
    explicit InputSource(CFTypeRef data) : Object(inputSourceType, "input source"), data(data) {}

    void dispose() override {
        if (data != nullptr) {
            mac().heap.release(data);
        }
    }

    CFTypeRef data;
};

const String layoutDataProperty{u"TISPropertyUnicodeKeyLayoutData"};

CFTypeRef makeLayoutData(const FakeKeyboardLayouts& layouts) {
    switch (layouts.data) {
    case LayoutData::present:
        return makeData(layouts.encoded());
    case LayoutData::empty:
        return makeData({});
    case LayoutData::notData:
        return makeString("a layout");
    case LayoutData::absent:
        return nullptr;
    }
    return nullptr;
}

} // namespace

std::vector<UInt8> FakeKeyboardLayouts::encoded() const {
    std::vector<UInt8> bytes;
    append(bytes, layoutMark);
    append(bytes, static_cast<UInt16>(keys.size() + deadKeys.size()));
    append(bytes, keys, 0);
    append(bytes, deadKeys, deadKeyMark);
    return bytes;
}

} // namespace tarvex::fake

using namespace tarvex::fake;

extern "C" {

const CFStringRef kTISPropertyUnicodeKeyLayoutData = referenceTo<CFStringRef>(&layoutDataProperty);

TISInputSourceRef TISCopyCurrentKeyboardLayoutInputSource(void) {
    const FakeKeyboardLayouts& layouts = mac().layouts;
    if (!layouts.hasInputSource) {
        return nullptr;
    }
    return referenceTo<TISInputSourceRef>(mac().heap.make<InputSource>(makeLayoutData(layouts)));
}

void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key) {
    const auto* object = mac().heap.as<const InputSource>(source, "TISGetInputSourceProperty");
    return object == nullptr || key != kTISPropertyUnicodeKeyLayoutData ? nullptr
                                                                        : const_cast<void*>(object->data);
}

UInt8 LMGetKbdType(void) {
    return FakeKeyboardLayouts::keyboardType;
}

OSStatus UCKeyTranslate(const UCKeyboardLayout* layout, UInt16 keyCode, UInt16 action, UInt32 modifiers,
                        UInt32 keyboardType, OptionBits options, UInt32* deadKeyState, UniCharCount capacity,
                        UniCharCount* length, UniChar* characters) {
    FakeKeyboardLayouts& layouts = mac().layouts;
    layouts.calls.push_back({keyCode, action, modifiers, keyboardType, options, *deadKeyState, capacity});
    *length = 0;
    if (layouts.translationStatus != noErr) {
        return layouts.translationStatus;
    }
    Reader reader(layout);
    if (reader.take() != layoutMark) {
        mac().heap.noteMisuse("UCKeyTranslate was given no layout");
        return eventParameterNotFoundErr;
    }
    for (UInt16 remaining = reader.take(); remaining > 0; --remaining) {
        const UInt16 code = reader.take();
        const bool isDead = reader.take() == deadKeyMark;
        std::u16string text(reader.take(), u'\0');
        std::generate(text.begin(), text.end(), [&] { return static_cast<char16_t>(reader.take()); });
        if (code != keyCode) {
            continue;
        }
        // A dead key that is struck, not displayed, waits for the next one.
        if (isDead && action != kUCKeyActionDisplay) {
            *deadKeyState = code;
            return noErr;
        }
        *length = std::min<UniCharCount>(text.size(), capacity);
        std::copy_n(text.begin(), *length, characters);
    }
    return noErr;
}
}
