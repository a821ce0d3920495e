#pragma once

#include "App/Toolkit/PointerPlatform.h"
#include "Core/Displays/ScreenPlatform.h"
#include "Tests/Contract/ContractWorld.h"
#include "Tests/MacOS/Fakes/FakeMac.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

/// The mouse location, which the toolkit of a Mac gives, set by the test.
class MacPointer final : public PointerPlatform {
public:
    [[nodiscard]] Point mouseLocation() override { return location; }

    Point location;
};

/// The screens that the toolkit of a Mac makes of its displays.
class MacScreens final : public ScreenPlatform {
public:
    [[nodiscard]] std::vector<Screen> screens() override {
        std::vector<Screen> found;
        const std::vector<fake::FakeDisplay>& displays = fake::mac().displays.all;
        for (const fake::FakeDisplay& display : displays) {
            const CGRect& bounds = display.bounds;
            const double top = displays.front().bounds.size.height;
            const Rect frame{bounds.origin.x, top - bounds.origin.y - bounds.size.height, bounds.size.width,
                             bounds.size.height};
            const double left = leftPanels[display.number];
            const Rect visible{frame.x + left, frame.y, frame.width - left,
                               frame.height - topPanels[display.number]};
            found.push_back({display.number, frame, visible, names[display.number]});
        }
        return found;
    }

    [[nodiscard]] std::optional<Screen> mainScreen() override {
        const std::vector<Screen> found = screens();
        return found.empty() ? std::nullopt : std::optional(found.front());
    }

    std::map<std::uint32_t, double> topPanels;
    std::map<std::uint32_t, double> leftPanels;
    std::map<std::uint32_t, std::string> names;
};

inline CGRect nativeRect(const Rect& rect) {
    return {{rect.x, rect.y}, {rect.width, rect.height}};
}

namespace contract {

/// A contract's world on the Mac of the running test, whose clock runs only while something is awaited.
template <typename World>
class MacWorld : public World {
public:
    bool waitUntil(const std::function<bool()>& condition) override {
        return fake::mac().runLoop.waitUntil(condition);
    }

    void settle() override { fake::mac().runLoop.settle(); }
};

} // namespace contract

} // namespace tarvex
