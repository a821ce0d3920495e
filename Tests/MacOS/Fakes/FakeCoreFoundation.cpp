#include "Tests/MacOS/Fakes/FakeCoreFoundation.h"

#include "Tests/MacOS/Fakes/FakeMac.h"
#include "Tests/MacOS/Fakes/Unicode.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace tarvex::fake {

namespace {

class Locale final : public Object {
public:
    explicit Locale(CFStringRef identifier) : Object(localeType, "locale"), identifier(identifier) {}

    void dispose() override { mac().heap.release(identifier); }

    CFStringRef identifier;
};

template <typename Concrete>
Concrete* as(CFTypeRef reference, const char* user) {
    return mac().heap.as<Concrete>(reference, user);
}

bool areEqual(CFTypeRef first, CFTypeRef second) {
    const auto* firstText = dynamic_cast<const String*>(objectOf(first));
    const auto* secondText = dynamic_cast<const String*>(objectOf(second));
    const bool areTexts = firstText != nullptr && secondText != nullptr;
    return first == second || (areTexts && firstText->text == secondText->text);
}

const Truth trueObject;
const Truth falseObject;

} // namespace

void Dictionary::dispose() {
    for (const auto& [key, value] : entries) {
        mac().heap.release(key);
        mac().heap.release(value);
    }
    entries.clear();
}

void Dictionary::add(CFTypeRef key, CFTypeRef value) {
    mac().heap.retain(key);
    mac().heap.retain(value);
    entries.emplace_back(key, value);
}

CFStringRef makeString(std::string_view utf8) {
    return referenceTo<CFStringRef>(mac().heap.make<String>(decodeUtf8(utf8).value()));
}

CFNumberRef makeNumber(double value, bool isWhole) {
    return referenceTo<CFNumberRef>(mac().heap.make<Number>(value, isWhole));
}

CFDataRef makeData(std::vector<UInt8> bytes) {
    return referenceTo<CFDataRef>(mac().heap.make<Data>(std::move(bytes)));
}

std::string textOfString(CFTypeRef string) {
    const auto* object = dynamic_cast<const String*>(objectOf(string));
    return object == nullptr ? std::string{} : encodeUtf8(object->text, '?');
}

} // namespace tarvex::fake

using namespace tarvex::fake;

extern "C" {

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = referenceTo<CFBooleanRef>(&trueObject);
const CFBooleanRef kCFBooleanFalse = referenceTo<CFBooleanRef>(&falseObject);
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

CFTypeRef CFRetain(CFTypeRef object) {
    mac().heap.retain(object);
    return object;
}

void CFRelease(CFTypeRef object) {
    mac().heap.release(object);
}

CFTypeID CFGetTypeID(CFTypeRef object) {
    const auto* found = as<const Object>(object, "CFGetTypeID");
    return found == nullptr ? 0 : found->type();
}

CFTypeID CFStringGetTypeID(void) {
    return stringType;
}

CFTypeID CFNumberGetTypeID(void) {
    return numberType;
}

CFTypeID CFDataGetTypeID(void) {
    return dataType;
}

CFTypeID CFDictionaryGetTypeID(void) {
    return dictionaryType;
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef /*allocator*/, const UInt8* bytes, CFIndex byteCount,
                                    CFStringEncoding encoding, Boolean /*isExternalRepresentation*/) {
    if (encoding != kCFStringEncodingUTF8 || bytes == nullptr) {
        mac().heap.noteMisuse("CFStringCreateWithBytes without bytes or of another encoding");
        return nullptr;
    }
    auto text = decodeUtf8({reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(byteCount)});
    return text ? referenceTo<CFStringRef>(mac().heap.make<String>(std::move(*text))) : nullptr;
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef /*allocator*/, const UniChar* characters,
                                         CFIndex count) {
    std::u16string text(characters, characters + count);
    return referenceTo<CFStringRef>(mac().heap.make<String>(std::move(text)));
}

CFIndex CFStringGetLength(CFStringRef string) {
    const auto* object = as<const String>(string, "CFStringGetLength");
    return object == nullptr ? 0 : static_cast<CFIndex>(object->text.size());
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding /*encoding*/, UInt8 lossByte,
                         Boolean /*isExternalRepresentation*/, UInt8* buffer, CFIndex capacity,
                         CFIndex* used) {
    const auto* object = as<const String>(string, "CFStringGetBytes");
    if (object == nullptr) {
        *used = 0;
        return 0;
    }
    const auto text =
        std::u16string_view(object->text)
            .substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length));
    const std::string bytes = encodeUtf8(text, static_cast<char>(lossByte));
    const auto size = static_cast<CFIndex>(bytes.size());
    if (buffer == nullptr) {
        *used = size;
        return range.length;
    }
    if (capacity < size) {
        mac().heap.noteMisuse("CFStringGetBytes with too little room");
    }
    *used = std::min(size, capacity);
    std::memcpy(buffer, bytes.data(), static_cast<std::size_t>(*used));
    return range.length;
}

CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef /*allocator*/, CFIndex /*maxLength*/,
                                             CFStringRef string) {
    const auto* object = as<const String>(string, "CFStringCreateMutableCopy");
    return object == nullptr ? nullptr
                             : referenceTo<CFMutableStringRef>(mac().heap.make<String>(object->text));
}

void CFStringUppercase(CFMutableStringRef string, CFLocaleRef locale) {
    if (locale != nullptr) {
        mac().heap.noteMisuse("CFStringUppercase by the rules of one language");
    }
    if (auto* object = as<String>(string, "CFStringUppercase")) {
        object->text = upperCased(object->text);
    }
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
    const auto* object = as<const Number>(number, "CFNumberGetValue");
    if (object == nullptr || type != kCFNumberSInt64Type) {
        return 0;
    }
    const auto whole = static_cast<SInt64>(object->value);
    std::memcpy(value, &whole, sizeof whole);
    return object->isWhole ? 1 : 0;
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
    const auto* object = as<const Data>(data, "CFDataGetBytePtr");
    return object == nullptr || object->bytes.empty() ? nullptr : object->bytes.data();
}

CFIndex CFDataGetLength(CFDataRef data) {
    const auto* object = as<const Data>(data, "CFDataGetLength");
    return object == nullptr ? 0 : static_cast<CFIndex>(object->bytes.size());
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef /*allocator*/, const void** keys, const void** values,
                                   CFIndex count, const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks) {
    if (keyCallBacks != &kCFTypeDictionaryKeyCallBacks ||
        valueCallBacks != &kCFTypeDictionaryValueCallBacks) {
        mac().heap.noteMisuse("CFDictionaryCreate of entries that it does not own");
    }
    auto* dictionary = mac().heap.make<Dictionary>();
    for (CFIndex index = 0; index < count; ++index) {
        dictionary->add(keys[index], values[index]);
    }
    return referenceTo<CFDictionaryRef>(dictionary);
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
    const auto* object = as<const Dictionary>(dictionary, "CFDictionaryGetCount");
    return object == nullptr ? 0 : static_cast<CFIndex>(object->entries.size());
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
    const auto* object = as<const Dictionary>(dictionary, "CFDictionaryGetValue");
    if (object == nullptr) {
        return nullptr;
    }
    const auto found = std::find_if(object->entries.begin(), object->entries.end(),
                                    [&](const auto& entry) { return areEqual(entry.first, key); });
    return found == object->entries.end() ? nullptr : found->second;
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys, const void** values) {
    if (const auto* object = as<const Dictionary>(dictionary, "CFDictionaryGetKeysAndValues")) {
        for (const auto& [key, value] : object->entries) {
            *keys++ = key;
            *values++ = value;
        }
    }
}

CFLocaleRef CFLocaleCopyCurrent(void) {
    if (!mac().locale.isKnown) {
        return nullptr;
    }
    return referenceTo<CFLocaleRef>(mac().heap.make<Locale>(makeString(mac().locale.identifier)));
}

CFLocaleIdentifier CFLocaleGetIdentifier(CFLocaleRef locale) {
    const auto* object = as<const Locale>(locale, "CFLocaleGetIdentifier");
    return object == nullptr ? nullptr : object->identifier;
}
}
