#include "Tests/MacOS/Fakes/FakeIORegistry.h"

#include "Tests/MacOS/Fakes/FakeCoreFoundation.h"
#include "Tests/MacOS/Fakes/FakeMac.h"

#include <IOKit/graphics/IOGraphicsLib.h>

namespace tarvex::fake {

namespace {

constexpr const char* classKey = "IOProviderClass";

CFTypeRef makeValue(const RegistryValue& value) {
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        return makeNumber(static_cast<double>(*whole));
    }
    if (const auto* fraction = std::get_if<double>(&value)) {
        return makeNumber(*fraction, false);
    }
    return makeString(std::get<std::string>(value));
}

/// Hands the references to key and value over to the dictionary.
void give(Dictionary& dictionary, CFTypeRef key, CFTypeRef value) {
    dictionary.add(key, value);
    mac().heap.release(key);
    mac().heap.release(value);
}

CFTypeRef makeProductNames(const RegistryEntry& entry) {
    if (entry.hasPlainName) {
        return makeString("Studio Monitor");
    }
    auto* names = mac().heap.make<Dictionary>();
    for (const auto& [key, value] : entry.productNames) {
        give(*names, makeValue(key), makeValue(value));
    }
    return referenceTo<CFTypeRef>(names);
}

} // namespace

io_object_t FakeIORegistry::hold(Object object) {
    held_.emplace(++lastNumber_, std::move(object));
    return lastNumber_;
}

io_iterator_t FakeIORegistry::openIterator(const std::string& className) {
    Object iterator{"registry iterator", nullptr, {}};
    for (const RegistryEntry& entry : entries) {
        if (entry.className == className) {
            iterator.remaining.push_back(&entry);
        }
    }
    return hold(std::move(iterator));
}

io_object_t FakeIORegistry::next(io_iterator_t iterator) {
    const auto found = held_.find(iterator);
    if (found == held_.end()) {
        misuses_.emplace_back("IOIteratorNext of no iterator");
        return IO_OBJECT_NULL;
    }
    std::vector<const RegistryEntry*>& remaining = found->second.remaining;
    if (remaining.empty()) {
        return IO_OBJECT_NULL;
    }
    const RegistryEntry* entry = remaining.front();
    remaining.erase(remaining.begin());
    return hold({"registry service", entry, {}});
}

void FakeIORegistry::release(io_object_t object) {
    if (held_.erase(object) == 0) {
        misuses_.emplace_back("IOObjectRelease of no object");
    }
}

const RegistryEntry* FakeIORegistry::held(io_object_t service) {
    const auto found = held_.find(service);
    if (found == held_.end() || found->second.entry == nullptr) {
        misuses_.emplace_back("use of a service that is not held");
        return nullptr;
    }
    return found->second.entry;
}

std::vector<std::string> FakeIORegistry::leftovers() const {
    std::vector<std::string> found = misuses_;
    for (const auto& [number, object] : held_) {
        found.push_back(object.what);
    }
    return found;
}

} // namespace tarvex::fake

using namespace tarvex::fake;

extern "C" {

const mach_port_t kIOMainPortDefault = 0;

CFMutableDictionaryRef IOServiceMatching(const char* name) {
    auto* matching = mac().heap.make<Dictionary>();
    give(*matching, makeString(classKey), makeString(name));
    return referenceTo<CFMutableDictionaryRef>(matching);
}

kern_return_t IOServiceGetMatchingServices(mach_port_t /*mainPort*/, CFDictionaryRef matching,
                                           io_iterator_t* existing) {
    FakeIORegistry& registry = mac().registry;
    const auto* dictionary = mac().heap.as<const Dictionary>(matching, "IOServiceGetMatchingServices");
    const std::string className =
        dictionary == nullptr ? std::string{} : textOfString(dictionary->entries.front().second);
    mac().heap.release(matching);
    if (registry.searchResult == KERN_SUCCESS) {
        *existing = registry.openIterator(className);
    }
    return registry.searchResult;
}

io_object_t IOIteratorNext(io_iterator_t iterator) {
    return mac().registry.next(iterator);
}

kern_return_t IOObjectRelease(io_object_t object) {
    mac().registry.release(object);
    return KERN_SUCCESS;
}

CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key,
                                          CFAllocatorRef /*allocator*/, IOOptionBits /*options*/) {
    const RegistryEntry* found = mac().registry.held(entry);
    if (found == nullptr) {
        return nullptr;
    }
    const auto property = found->properties.find(textOfString(key));
    return property == found->properties.end() ? nullptr : makeValue(property->second);
}

CFDictionaryRef IODisplayCreateInfoDictionary(io_service_t framebuffer, IOOptionBits options) {
    mac().registry.informationOptions.push_back(options);
    const RegistryEntry* found = mac().registry.held(framebuffer);
    if (found == nullptr || !found->hasInformation) {
        return nullptr;
    }
    auto* information = mac().heap.make<Dictionary>();
    if (found->hasPlainName || !found->productNames.empty()) {
        give(*information, makeString(kDisplayProductName), makeProductNames(*found));
    }
    return referenceTo<CFDictionaryRef>(information);
}
}
