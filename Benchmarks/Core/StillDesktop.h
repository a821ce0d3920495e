#pragma once

#include "App/Input/AccessibilityPlatform.h"
#include "App/Input/EventTapPlatform.h"
#include "App/Logging/MessageLog.h"
#include "App/Toolkit/KeyWindowPlatform.h"
#include "App/Toolkit/MainLoop.h"
#include "App/Toolkit/PointerPlatform.h"
#include "App/Toolkit/Window.h"
#include "Core/Displays/DisplayPlatform.h"
#include "Core/Displays/ScreenPlatform.h"
#include "Core/Logging/LogPlatform.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Ports that answer at once and from memory, so that what is measured is the program's own work.
namespace tarvex::benchmark {

/// One display with one panel at its top.
class StillScreens final : public ScreenPlatform {
public:
    static constexpr Rect visibleFrame{0, 0, 1920, 1056};

    [[nodiscard]] std::vector<Screen> screens() override {
        return {Screen{1, Rect{0, 0, 1920, 1080}, visibleFrame, "A display of some make"}};
    }

    [[nodiscard]] std::optional<Screen> mainScreen() override { return screens().front(); }
};

class StillDisplays final : public DisplayPlatform {
public:
    [[nodiscard]] ActiveDisplayList activeDisplays(std::uint32_t capacity) override {
        ActiveDisplayList list;
        list.count = 1;
        list.displays.assign(capacity > 0 ? 1 : 0, 1);
        return list;
    }

    [[nodiscard]] std::uint32_t vendorNumber(std::uint32_t /*displayId*/) override { return 4268; }

    [[nodiscard]] std::uint32_t modelNumber(std::uint32_t /*displayId*/) override { return 41137; }

    [[nodiscard]] std::uint32_t serialNumber(std::uint32_t /*displayId*/) override { return 808530773; }

    [[nodiscard]] Rect bounds(std::uint32_t /*displayId*/) override { return {0, 0, 1920, 1080}; }

    [[nodiscard]] bool isBuiltin(std::uint32_t /*displayId*/) override { return false; }

    [[nodiscard]] std::unique_ptr<DisplayRegistryIterator> displayRegistry() override { return nullptr; }

    [[nodiscard]] std::string currentLocaleIdentifier() override { return "en_US"; }
};

class StillPointer final : public PointerPlatform {
public:
    [[nodiscard]] Point mouseLocation() override { return location; }

    Point location;
};

class StillElement final : public AccessibilityElement {};

/// One window that covers everything.
class StillAccessibility final : public AccessibilityPlatform {
public:
    [[nodiscard]] bool isProcessTrusted(bool /*showsPrompt*/) override { return true; }

    [[nodiscard]] AccessibilityElementResult copyElementAtPosition(float /*x*/, float /*y*/) override {
        return {0, element_};
    }

    [[nodiscard]] AccessibilityValueResult copyAttributeValue(const AccessibilityElementRef& element,
                                                              std::string_view name) override {
        if (name == "AXPosition") {
            return {0, AccessibilityValue(Point{100, 100})};
        }
        if (name == "AXSize") {
            return {0, AccessibilityValue(Size{640, 480})};
        }
        return {0, AccessibilityValue(element)};
    }

    [[nodiscard]] std::optional<AccessibilityValue> makePointValue(Point point) override { return point; }

    [[nodiscard]] std::optional<AccessibilityValue> makeSizeValue(Size size) override { return size; }

    [[nodiscard]] std::int32_t setAttributeValue(const AccessibilityElementRef& /*element*/,
                                                 std::string_view /*name*/,
                                                 const AccessibilityValue& /*value*/) override {
        return 0;
    }

private:
    AccessibilityElementRef element_ = std::make_shared<StillElement>();
};

class StillEventTap final : public EventTap {};

class StillRunLoopSource final : public RunLoopSource {};

/// Grants the tap and lets the benchmark call what was installed.
class StillEventTaps final : public EventTapPlatform {
public:
    [[nodiscard]] bool preflightListenEventAccess() override { return true; }

    [[nodiscard]] bool requestListenEventAccess() override { return true; }

    [[nodiscard]] std::unique_ptr<EventTap> createTap(const EventTapRequest& request) override {
        request_ = request;
        return std::make_unique<StillEventTap>();
    }

    [[nodiscard]] std::unique_ptr<RunLoopSource> createRunLoopSource(EventTap& /*tap*/) override {
        return std::make_unique<StillRunLoopSource>();
    }

    void addSource(RunLoopSource& /*source*/) override {}

    void removeSource(RunLoopSource& /*source*/) override {}

    void enableTap(EventTap& /*tap*/) override {}

    void deliver(const TapEvent& event) const {
        request_.callback(nullptr, event.type, &event, request_.refcon);
    }

private:
    EventTapRequest request_;
};

/// Keeps the last picture, as a window must, and counts the pictures.
class StillWindow final : public Window {
public:
    StillWindow(const Rect& frame, int& pictureCount) : frame_(frame), pictureCount_(&pictureCount) {}

    [[nodiscard]] Rect frame() const override { return frame_; }

    void setScene(Scene scene) override {
        scene_ = std::move(scene);
        ++*pictureCount_;
    }

    void orderFront() override {}

    void orderOut() override {}

private:
    Rect frame_;
    int* pictureCount_;
    Scene scene_;
};

class StillWindows final : public WindowPlatform {
public:
    [[nodiscard]] std::unique_ptr<Window> makeWindow(const WindowAttributes& attributes) override {
        return std::make_unique<StillWindow>(attributes.contentRect, pictureCount_);
    }

    /// How many pictures the windows were given.
    [[nodiscard]] int pictureCount() const { return pictureCount_; }

private:
    int pictureCount_ = 0;
};

class StillKeyWindow final : public KeyWindowPlatform {
public:
    [[nodiscard]] std::optional<std::string> keyWindowTitle() const override { return std::nullopt; }
};

class StillMainLoop final : public MainLoop {
public:
    void post(std::function<void()> /*action*/) override {}

    [[nodiscard]] std::unique_ptr<Timer> scheduleRepeating(double /*intervalSeconds*/,
                                                           std::function<void()> /*action*/) override {
        return std::make_unique<Timer>();
    }

    [[nodiscard]] std::unique_ptr<Timer> scheduleOnce(double /*intervalSeconds*/,
                                                      std::function<void()> /*action*/) override {
        return std::make_unique<Timer>();
    }
};

class StillLog final : public LogPlatform, public MessageLog {
public:
    void systemLog(std::string_view /*message*/) override {}

    void unifiedLogError(std::string_view /*subsystem*/, std::string_view /*category*/,
                         std::string_view /*message*/) override {
        ++errorCount_;
    }

    void log(const std::string& /*message*/) override {}

    [[nodiscard]] int errorCount() const { return errorCount_; }

private:
    int errorCount_ = 0;
};

} // namespace tarvex::benchmark
