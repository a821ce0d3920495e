#include "Platform/MacOS/Displays/IODisplayRegistry.h"

#include "Platform/MacOS/CoreFoundation/CFText.h"
#include "Platform/MacOS/Displays/IOObjectHandle.h"

#include <IOKit/IOKitLib.h>
#include <IOKit/graphics/IOGraphicsLib.h>
#include <cstddef>
#include <utility>

namespace tarvex {

namespace {

/// The entries whose key and value are both texts.
LocalizedNames textEntries(CFDictionaryRef dictionary) {
    const auto count = static_cast<std::size_t>(CFDictionaryGetCount(dictionary));
    std::vector<const void*> keys(count);
    std::vector<const void*> values(count);
    CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
    LocalizedNames names;
    for (std::size_t index = 0; index < count; ++index) {
        const auto locale = castTo<CFStringRef>(keys[index], CFStringGetTypeID());
        const auto name = castTo<CFStringRef>(values[index], CFStringGetTypeID());
        if (locale != nullptr && name != nullptr) {
            names.emplace_back(textOf(locale), textOf(name));
        }
    }
    return names;
}

class IODisplayService final : public DisplayRegistryService {
public:
    explicit IODisplayService(IOObjectHandle service) : service_(std::move(service)) {}

    [[nodiscard]] std::optional<std::int64_t> integerProperty(std::string_view name) const override {
        const auto key = makeCFString(name);
        if (!key) {
            return std::nullopt;
        }
        const auto property = CFHandle<CFTypeRef>::adopt(
            IORegistryEntryCreateCFProperty(service_.get(), key.get(), kCFAllocatorDefault, 0));
        const auto number = castTo<CFNumberRef>(property.get(), CFNumberGetTypeID());
        SInt64 value = 0;
        if (number == nullptr || CFNumberGetValue(number, kCFNumberSInt64Type, &value) == 0) {
            return std::nullopt;
        }
        return value;
    }

    [[nodiscard]] LocalizedNames preferredProductNames() const override {
        const auto information = CFHandle<CFDictionaryRef>::adopt(
            IODisplayCreateInfoDictionary(service_.get(), kIODisplayOnlyPreferredName));
        const auto key = makeCFString(kDisplayProductName);
        if (!information || !key) {
            return {};
        }
        const auto names = castTo<CFDictionaryRef>(CFDictionaryGetValue(information.get(), key.get()),
                                                   CFDictionaryGetTypeID());
        return names == nullptr ? LocalizedNames{} : textEntries(names);
    }

private:
    IOObjectHandle service_;
};

class IODisplayIterator final : public DisplayRegistryIterator {
public:
    explicit IODisplayIterator(IOObjectHandle iterator) : iterator_(std::move(iterator)) {}

    [[nodiscard]] std::unique_ptr<DisplayRegistryService> next() override {
        IOObjectHandle service(IOIteratorNext(iterator_.get()));
        return service ? std::make_unique<IODisplayService>(std::move(service)) : nullptr;
    }

private:
    IOObjectHandle iterator_;
};

} // namespace

std::unique_ptr<DisplayRegistryIterator> openIODisplayRegistry() {
    // IOServiceGetMatchingServices takes the dictionary over, also when it fails.
    CFMutableDictionaryRef matching = IOServiceMatching("IODisplayConnect");
    if (matching == nullptr) {
        return nullptr;
    }
    io_iterator_t found = IO_OBJECT_NULL;
    const kern_return_t result = IOServiceGetMatchingServices(kIOMainPortDefault, matching, &found);
    IOObjectHandle iterator(found);
    return result == KERN_SUCCESS && iterator ? std::make_unique<IODisplayIterator>(std::move(iterator))
                                              : nullptr;
}

} // namespace tarvex
