#include "Tests/Support/Simulated/SimulatedHotkeys.h"

#include "Core/Configuration/TarvexConfig.h"

#include <algorithm>
#include <cctype>

namespace tarvex {

namespace {

constexpr std::uint32_t lastKeyCode = 127;
constexpr std::uint16_t firstModifierKey = 54;
constexpr std::uint16_t lastModifierKey = 63;

constexpr std::uint32_t countingModifiers =
    modifier_mask::command | modifier_mask::option | modifier_mask::control | modifier_mask::shift;

bool isSameCombination(const SimulatedHotkey& hotkey, std::uint32_t keyCode, std::uint32_t modifiers) {
    return hotkey.keyCode == keyCode && ((hotkey.modifiers ^ modifiers) & countingModifiers) == 0;
}

} // namespace

class SimulatedHotkeys::Handler final : public HotkeyHandler {
public:
    explicit Handler(std::shared_ptr<PressHandler> handler) : handler_(std::move(handler)) {}

    Handler(const Handler&) = delete;
    Handler& operator=(const Handler&) = delete;
    Handler(Handler&&) = delete;
    Handler& operator=(Handler&&) = delete;

    ~Handler() override { *handler_ = nullptr; }

private:
    std::shared_ptr<PressHandler> handler_;
};

class SimulatedHotkeys::Reference final : public RegisteredHotkey {
public:
    Reference(std::shared_ptr<std::map<int, SimulatedHotkey>> hotkeys, int number)
        : hotkeys_(std::move(hotkeys)), number_(number) {}

    Reference(const Reference&) = delete;
    Reference& operator=(const Reference&) = delete;
    Reference(Reference&&) = delete;
    Reference& operator=(Reference&&) = delete;

    ~Reference() override { hotkeys_->erase(number_); }

private:
    std::shared_ptr<std::map<int, SimulatedHotkey>> hotkeys_;
    int number_;
};

std::unique_ptr<HotkeyHandler> SimulatedHotkeys::installHandler(PressHandler handler) {
    handler_ = std::make_shared<PressHandler>(std::move(handler));
    return std::make_unique<Handler>(handler_);
}

HotkeyRegistration SimulatedHotkeys::registerHotkey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                    const HotkeyIdentifier& identifier) {
    const bool exists = std::any_of(hotkeys_->begin(), hotkeys_->end(), [&](const auto& entry) {
        return isSameCombination(entry.second, keyCode, modifiers);
    });
    if (exists || keyCode > lastKeyCode) {
        return {exists ? existsError : parameterError, nullptr};
    }
    if (!givesReference_) {
        return {status_, nullptr};
    }
    const int number = ++lastNumber_;
    hotkeys_->emplace(number, SimulatedHotkey{keyCode, modifiers, identifier});
    return {status_, std::make_unique<Reference>(hotkeys_, number)};
}

std::vector<SimulatedHotkey> SimulatedHotkeys::registered() const {
    std::vector<SimulatedHotkey> hotkeys;
    for (const auto& [number, hotkey] : *hotkeys_) {
        hotkeys.push_back(hotkey);
    }
    return hotkeys;
}

void SimulatedHotkeys::press(const HotkeyIdentifier& identifier) {
    if (hasHandler()) {
        // It may remove itself.
        const PressHandler handler = *handler_;
        handler(identifier);
    }
}

bool SimulatedHotkeys::pressKey(std::uint32_t keyCode, std::uint32_t modifiers) {
    const auto found = std::find_if(hotkeys_->begin(), hotkeys_->end(), [&](const auto& entry) {
        return isSameCombination(entry.second, keyCode, modifiers);
    });
    if (found == hotkeys_->end()) {
        return false;
    }
    const HotkeyIdentifier identifier = found->second.identifier;
    press(identifier);
    return true;
}

class SimulatedKeyMonitors::Monitor final : public KeyMonitor {
public:
    Monitor(std::shared_ptr<Handlers> handlers, int number)
        : handlers_(std::move(handlers)), number_(number) {}

    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;
    Monitor(Monitor&&) = delete;
    Monitor& operator=(Monitor&&) = delete;

    ~Monitor() override { handlers_->erase(number_); }

private:
    std::shared_ptr<Handlers> handlers_;
    int number_;
};

std::unique_ptr<KeyMonitor> SimulatedKeyMonitors::addLocalKeyDownMonitor(KeyHandler handler) {
    const int number = ++lastNumber_;
    handlers_->emplace(number, std::make_shared<KeyHandler>(std::move(handler)));
    return std::make_unique<Monitor>(handlers_, number);
}

bool SimulatedKeyMonitors::press(const KeyEvent& event) {
    if (event.keyCode >= firstModifierKey && event.keyCode <= lastModifierKey) {
        return true;
    }
    const Handlers present = *handlers_;
    for (const auto& [number, handler] : present) {
        if (handlers_->contains(number) && !(*handler)(event)) {
            return false;
        }
    }
    return true;
}

std::string SimulatedKeyboardLayout::upperCased(const std::string& text) {
    if (const auto found = capitals.find(text); found != capitals.end()) {
        return found->second;
    }
    std::string result = text;
    for (char& character : result) {
        character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    }
    return result;
}

} // namespace tarvex
