#pragma once

#include <IOKit/IOKitLib.h>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace tarvex::fake {

/// A value in the registry: an integer, a number with a fraction, or a text.
using RegistryValue = std::variant<std::int64_t, double, std::string>;

/// One service of the registry.
struct RegistryEntry {
    std::string className = "IODisplayConnect";
    std::map<std::string, RegistryValue> properties;
    /// The entries of the dictionary of product names, in order; keys may be anything in a registry.
    std::vector<std::pair<RegistryValue, RegistryValue>> productNames;
    bool hasInformation = true;
    /// The product names are one text instead of a dictionary.
    bool hasPlainName = false;
};

/// The I/O registry. It counts the references to the services and iterators that it hands out.
class FakeIORegistry {
public:
    /// Empty, as on Apple silicon.
    std::vector<RegistryEntry> entries;

    /// What a search ends with.
    kern_return_t searchResult = KERN_SUCCESS;

    io_iterator_t openIterator(const std::string& className);
    io_object_t next(io_iterator_t iterator);
    void release(io_object_t object);

    /// The entry of a service that is held; null, and the misuse is noted, for any other number.
    const RegistryEntry* held(io_object_t service);

    /// The options that information dictionaries were asked for with.
    std::vector<IOOptionBits> informationOptions;

    /// Objects that nobody released, and what was released or used wrongly.
    [[nodiscard]] std::vector<std::string> leftovers() const;

private:
    struct Object {
        std::string what;
        const RegistryEntry* entry = nullptr;
        std::vector<const RegistryEntry*> remaining;
    };

    io_object_t hold(Object object);

    std::map<io_object_t, Object> held_;
    io_object_t lastNumber_ = 0;
    std::vector<std::string> misuses_;
};

} // namespace tarvex::fake
