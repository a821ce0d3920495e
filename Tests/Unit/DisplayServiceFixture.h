#pragma once

#include "Core/Displays/DisplayService.h"
#include "Tests/Support/RecordingLog.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarvex {

namespace display_fakes {

struct RegistryEntry {
    std::map<std::string, std::int64_t, std::less<>> properties;
    LocalizedNames names;
};

struct Display {
    std::uint32_t vendor = 0;
    std::uint32_t model = 0;
    std::uint32_t serial = 0;
    Rect bounds;
    bool isBuiltin = false;
};

// How many registry handles are open, and how many entries were looked at.
struct RegistryUse {
    int openHandles = 0;
    int visits = 0;
};

class FakeRegistryService final : public DisplayRegistryService {
public:
    FakeRegistryService(const RegistryEntry& entry, RegistryUse& use) : entry_(&entry), use_(&use) {
        ++use_->openHandles;
    }

    FakeRegistryService(const FakeRegistryService&) = delete;
    FakeRegistryService& operator=(const FakeRegistryService&) = delete;
    FakeRegistryService(FakeRegistryService&&) = delete;
    FakeRegistryService& operator=(FakeRegistryService&&) = delete;

    ~FakeRegistryService() override { --use_->openHandles; }

    [[nodiscard]] std::optional<std::int64_t> integerProperty(std::string_view name) const override {
        const auto found = entry_->properties.find(name);
        return found == entry_->properties.end() ? std::nullopt : std::optional(found->second);
    }

    [[nodiscard]] LocalizedNames preferredProductNames() const override { return entry_->names; }

private:
    const RegistryEntry* entry_;
    RegistryUse* use_;
};

class FakeRegistryIterator final : public DisplayRegistryIterator {
public:
    FakeRegistryIterator(const std::vector<RegistryEntry>& entries, RegistryUse& use)
        : entries_(&entries), use_(&use) {
        ++use_->openHandles;
    }

    FakeRegistryIterator(const FakeRegistryIterator&) = delete;
    FakeRegistryIterator& operator=(const FakeRegistryIterator&) = delete;
    FakeRegistryIterator(FakeRegistryIterator&&) = delete;
    FakeRegistryIterator& operator=(FakeRegistryIterator&&) = delete;

    ~FakeRegistryIterator() override { --use_->openHandles; }

    [[nodiscard]] std::unique_ptr<DisplayRegistryService> next() override {
        if (position_ == entries_->size()) {
            return nullptr;
        }
        ++use_->visits;
        return std::make_unique<FakeRegistryService>((*entries_)[position_++], *use_);
    }

private:
    const std::vector<RegistryEntry>* entries_;
    RegistryUse* use_;
    std::size_t position_ = 0;
};

class FakeDisplays final : public DisplayPlatform {
public:
    ActiveDisplayList counted;
    ActiveDisplayList listed;
    std::vector<std::uint32_t> capacities;
    std::map<std::uint32_t, Display> displays;
    std::optional<std::vector<RegistryEntry>> registry;
    RegistryUse registryUse;
    std::string locale = "en_US";

    [[nodiscard]] ActiveDisplayList activeDisplays(std::uint32_t capacity) override {
        capacities.push_back(capacity);
        return capacities.size() == 1 ? counted : listed;
    }

    [[nodiscard]] std::uint32_t vendorNumber(std::uint32_t displayId) override {
        return displays[displayId].vendor;
    }

    [[nodiscard]] std::uint32_t modelNumber(std::uint32_t displayId) override {
        return displays[displayId].model;
    }

    [[nodiscard]] std::uint32_t serialNumber(std::uint32_t displayId) override {
        return displays[displayId].serial;
    }

    [[nodiscard]] Rect bounds(std::uint32_t displayId) override { return displays[displayId].bounds; }

    [[nodiscard]] bool isBuiltin(std::uint32_t displayId) override { return displays[displayId].isBuiltin; }

    [[nodiscard]] std::unique_ptr<DisplayRegistryIterator> displayRegistry() override {
        return registry ? std::make_unique<FakeRegistryIterator>(*registry, registryUse) : nullptr;
    }

    [[nodiscard]] std::string currentLocaleIdentifier() override { return locale; }
};

class FakeScreens final : public ScreenPlatform {
public:
    std::vector<Screen> all;

    [[nodiscard]] std::vector<Screen> screens() override { return all; }

    [[nodiscard]] std::optional<Screen> mainScreen() override { return std::nullopt; }
};

} // namespace display_fakes

/// A display service over displays, screens and a registry that the test sets up.
class DisplayServiceFixture : public testing::Test {
protected:
    [[nodiscard]] DisplayService service() {
        return {LoggerFactory(log).makeLogger("DisplayService"), displays, screens};
    }

    [[nodiscard]] std::vector<std::string> loggedMessages() const {
        std::vector<std::string> messages;
        for (const UnifiedLogLine& line : log.unifiedLines()) {
            EXPECT_EQ(line.subsystem, "Tarvex");
            EXPECT_EQ(line.category, "DisplayService");
            messages.push_back(line.message);
        }
        return messages;
    }

    // The name that the registry's map gives a display without a screen.
    [[nodiscard]] std::optional<std::string> pickedName(std::string locale, LocalizedNames names) {
        displays.locale = std::move(locale);
        displays.displays[1] = {10, 20, 30, {}, false};
        displays.registry = {
            {{{"DisplayVendorID", 10}, {"DisplayProductID", 20}, {"DisplaySerialNumber", 30}},
             std::move(names)}};
        return service().getDisplayName(1);
    }

    // Whether the entry is found to be that of a display with the given serial number.
    [[nodiscard]] bool matches(std::uint32_t serial,
                               std::map<std::string, std::int64_t, std::less<>> properties) {
        displays.displays[1] = {10, 20, serial, {}, false};
        displays.registry = {{std::move(properties), {{"en", "Found"}}}};
        return service().getDisplayName(1).has_value();
    }

    RecordingLog log;
    display_fakes::FakeDisplays displays;
    display_fakes::FakeScreens screens;
};

} // namespace tarvex
