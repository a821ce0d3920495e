#include "Platform/Linux/X11/XHotkeyPlatform.h"

#include "App/Input/EventTapPlatform.h"
#include "Core/Configuration/TarvexConfig.h"
#include "Platform/Linux/X11/VirtualKeyCodes.h"

#include <array>
#include <limits>
#include <optional>
#include <utility>

namespace tarvex {

namespace {

constexpr std::array<std::pair<std::uint32_t, std::uint64_t>, 4> flagsOfModifiers{
    {{modifier_mask::command, event_flag::command},
     {modifier_mask::option, event_flag::option},
     {modifier_mask::control, event_flag::control},
     {modifier_mask::shift, event_flag::shift}}};

std::uint64_t eventFlagsOf(std::uint32_t modifiers) {
    std::uint64_t flags = 0;
    for (const auto& [modifier, flag] : flagsOfModifiers) {
        flags |= (modifiers & modifier) != 0 ? flag : 0;
    }
    return flags;
}

std::optional<xcb_keycode_t> keyOf(std::uint32_t virtualKeyCode) {
    return virtualKeyCode > std::numeric_limits<std::uint16_t>::max()
               ? std::nullopt
               : xKeyCodeOf(static_cast<std::uint16_t>(virtualKeyCode));
}

class Registered final : public RegisteredHotkey {
public:
    Registered(const std::shared_ptr<XHotkeyGrabs>& grabs, int number) : grabs_(grabs), number_(number) {}

    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;
    Registered(Registered&&) = delete;
    Registered& operator=(Registered&&) = delete;

    ~Registered() override {
        if (const auto grabs = grabs_.lock()) {
            grabs->remove(number_);
        }
    }

private:
    std::weak_ptr<XHotkeyGrabs> grabs_;
    int number_;
};

class Handler final : public HotkeyHandler {
public:
    explicit Handler(std::shared_ptr<HotkeyPlatform::PressHandler> handler) : handler_(std::move(handler)) {}

    Handler(const Handler&) = delete;
    Handler& operator=(const Handler&) = delete;
    Handler(Handler&&) = delete;
    Handler& operator=(Handler&&) = delete;

    ~Handler() override { *handler_ = nullptr; }

private:
    std::shared_ptr<HotkeyPlatform::PressHandler> handler_;
};

} // namespace

XHotkeyPlatform::XHotkeyPlatform(XConnection& connection, XEventPump& pump, HotkeyLossHandler lost)
    : grabs_(std::make_shared<XHotkeyGrabs>(
          connection, pump, [this](const HotkeyIdentifier& identifier) { handlePress(identifier); },
          std::move(lost))) {}

std::unique_ptr<HotkeyHandler> XHotkeyPlatform::installHandler(PressHandler handler) {
    handler_ = std::make_shared<PressHandler>(std::move(handler));
    return std::make_unique<Handler>(handler_);
}

HotkeyRegistration XHotkeyPlatform::registerHotkey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                   const HotkeyIdentifier& identifier) {
    const std::optional<xcb_keycode_t> key = keyOf(keyCode);
    if (!key) {
        return {XCB_VALUE, nullptr};
    }
    const XHotkeyGrabs::Added added = grabs_->add(*key, eventFlagsOf(modifiers), identifier);
    if (added.status != 0) {
        return {added.status, nullptr};
    }
    return {0, std::make_unique<Registered>(grabs_, added.number)};
}

void XHotkeyPlatform::handlePress(const HotkeyIdentifier& identifier) const {
    // The handler may remove itself, or this object.
    const PressHandler handler = handler_ ? *handler_ : nullptr;
    if (handler) {
        handler(identifier);
    }
}

} // namespace tarvex
