#pragma once

#include "Tests/Contract/X11/HotkeyFixture.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace tarvex::contract {

inline constexpr std::uint32_t keyE = 14;
inline constexpr std::uint32_t keyR = 15;
inline constexpr std::uint32_t command = modifier_mask::command;

/// The hotkeys of a program, and somebody who types them.
class HotkeyX11 : public ::testing::Test {
protected:
    explicit HotkeyX11(int screens = 1) : server_(1280, 1024, screens) {}

    void install() {
        platform_ = std::make_unique<XHotkeyPlatform>(
            *adapters_.connection, adapters_.pump,
            [this](const HotkeyIdentifier& hotkey, std::int32_t status) { lost_[hotkey.id] = status; });
        handler_ = platform_->installHandler([this](const HotkeyIdentifier& identifier) {
            pressed_.push_back(identifier.id);
            if (onPress_) {
                onPress_();
            }
        });
    }

    HotkeyRegistration add(std::uint32_t keyCode, std::uint32_t modifiers, std::uint32_t id = 1) {
        return platform_->registerHotkey(keyCode, modifiers, {0, id});
    }

    /// How many presses are heard of what is typed in the work.
    std::size_t heardDuring(const std::function<void()>& work) {
        adapters_.catchUp();
        const std::size_t before = pressed_.size();
        work();
        adapters_.catchUp();
        return pressed_.size() - before;
    }

    using Ids = std::vector<std::uint32_t>;
    using States = std::vector<std::uint16_t>;

    test::XServer server_;
    XInputAdapters adapters_{server_.displayName()};
    Typist typist_{server_.displayName()};
    test::Keyboard& keyboard_ = typist_.keyboard();
    GrabbingClient other_{server_.displayName()};
    Ids pressed_;
    std::map<std::uint32_t, std::int32_t> lost_;
    std::function<void()> onPress_;
    std::unique_ptr<XHotkeyPlatform> platform_;
    std::unique_ptr<HotkeyHandler> handler_;
};

} // namespace tarvex::contract
