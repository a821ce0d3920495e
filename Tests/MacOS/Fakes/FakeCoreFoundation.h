#pragma once

#include "Tests/MacOS/Fakes/FakeHeap.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarvex::fake {

/// The type ids, as arbitrary as those of the system.
enum TypeId : CFTypeID {
    stringType = 101,
    numberType,
    booleanType,
    dataType,
    dictionaryType,
    localeType,
    runLoopType,
    runLoopSourceType,
    runLoopTimerType,
    machPortType,
    eventType,
    elementType,
    geometryType,
    inputSourceType,
};

class String final : public Object {
public:
    explicit String(std::u16string text) : Object(stringType, "string"), text(std::move(text)) {}

    std::u16string text;
};

class Number final : public Object {
public:
    explicit Number(double value, bool isWhole)
        : Object(numberType, "number"), value(value), isWhole(isWhole) {}

    double value;
    bool isWhole;
};

class Truth final : public Object {
public:
    explicit Truth() : Object(booleanType, "boolean") { references = immortal; }
};

class Data final : public Object {
public:
    explicit Data(std::vector<UInt8> bytes) : Object(dataType, "data"), bytes(std::move(bytes)) {}

    void dispose() override { std::vector<UInt8>().swap(bytes); }

    std::vector<UInt8> bytes;
};

/// Owns its keys and values.
class Dictionary final : public Object {
public:
    Dictionary() : Object(dictionaryType, "dictionary") {}

    void dispose() override;

    /// Takes references of its own.
    void add(CFTypeRef key, CFTypeRef value);

    std::vector<std::pair<CFTypeRef, CFTypeRef>> entries;
};

/// A new object of the running test's heap, which the caller owns.
CFStringRef makeString(std::string_view utf8);
CFNumberRef makeNumber(double value, bool isWhole = true);
CFDataRef makeData(std::vector<UInt8> bytes);

/// The string as UTF-8; empty for anything else.
std::string textOfString(CFTypeRef string);

/// The language and territory that the user has chosen, and whether the system tells.
struct UserLocale {
    std::string identifier = "en_US";
    bool isKnown = true;
};

} // namespace tarvex::fake
