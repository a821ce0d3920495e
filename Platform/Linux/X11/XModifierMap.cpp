#include "Platform/Linux/X11/XModifierMap.h"

#include "App/Input/EventTapPlatform.h"

#include <algorithm>
#include <span>

namespace tarvex {

namespace {

// Key symbols, as X numbers them.
constexpr xcb_keysym_t metaLeft = 0xFFE7;
constexpr xcb_keysym_t metaRight = 0xFFE8;
constexpr xcb_keysym_t altLeft = 0xFFE9;
constexpr xcb_keysym_t altRight = 0xFFEA;
constexpr xcb_keysym_t superLeft = 0xFFEB;
constexpr xcb_keysym_t superRight = 0xFFEC;

constexpr std::size_t firstAssignable = XCB_MAP_INDEX_1;

/// The symbols of every key, by key code.
class KeySymbols {
public:
    KeySymbols(const xcb_get_keyboard_mapping_reply_t& reply, xcb_keycode_t firstKey)
        : symbols_(xcb_get_keyboard_mapping_keysyms(&reply),
                   static_cast<std::size_t>(xcb_get_keyboard_mapping_keysyms_length(&reply))),
          perKey_(reply.keysyms_per_keycode),
          firstKey_(firstKey) {}

    [[nodiscard]] bool has(xcb_keycode_t key, xcb_keysym_t left, xcb_keysym_t right) const {
        const std::size_t begin = static_cast<std::size_t>(key - firstKey_) * perKey_;
        if (key < firstKey_ || begin + perKey_ > symbols_.size()) {
            return false;
        }
        const auto ofKey = symbols_.subspan(begin, perKey_);
        return std::any_of(ofKey.begin(), ofKey.end(),
                           [=](xcb_keysym_t symbol) { return symbol == left || symbol == right; });
    }

private:
    std::span<const xcb_keysym_t> symbols_;
    std::size_t perKey_;
    xcb_keycode_t firstKey_;
};

} // namespace

std::uint64_t XModifierMap::eventFlags(std::uint32_t modifiers) {
    if (!isKnown_) {
        read();
    }
    std::uint64_t flags = 0;
    for (std::size_t index = 0; index < modifierCount; ++index) {
        if ((modifiers >> index & 1U) != 0) {
            flags |= flagsOfModifier_[index];
        }
    }
    return flags;
}

void XModifierMap::read() {
    const xcb_setup_t* setup = xcb_get_setup(connection_->get());
    const xcb_keycode_t firstKey = setup->min_keycode;
    const auto keyCount = static_cast<std::uint8_t>(setup->max_keycode - firstKey + 1);
    const auto modifierCookie = xcb_get_modifier_mapping(connection_->get());
    const auto keyboardCookie = xcb_get_keyboard_mapping(connection_->get(), firstKey, keyCount);
    const auto modifierReply = connection_->take(xcb_get_modifier_mapping_reply, modifierCookie);
    const auto keyboardReply = connection_->take(xcb_get_keyboard_mapping_reply, keyboardCookie);
    isKnown_ = true;
    flagsOfModifier_ = {};
    flagsOfModifier_[XCB_MAP_INDEX_SHIFT] = event_flag::shift;
    flagsOfModifier_[XCB_MAP_INDEX_CONTROL] = event_flag::control;
    if (!modifierReply || !keyboardReply) {
        return;
    }

    const KeySymbols symbols(*keyboardReply, firstKey);
    const std::size_t keysPerModifier = modifierReply->keycodes_per_modifier;
    const std::span<const xcb_keycode_t> keys(xcb_get_modifier_mapping_keycodes(modifierReply.get()),
                                              modifierCount * keysPerModifier);
    const auto assign = [&](xcb_keysym_t left, xcb_keysym_t right, std::uint64_t flag) {
        bool isAssigned = false;
        for (std::size_t index = firstAssignable; index < modifierCount; ++index) {
            const auto ofModifier = keys.subspan(index * keysPerModifier, keysPerModifier);
            if (std::any_of(ofModifier.begin(), ofModifier.end(),
                            [&](xcb_keycode_t key) { return symbols.has(key, left, right); })) {
                flagsOfModifier_[index] |= flag;
                isAssigned = true;
            }
        }
        return isAssigned;
    };
    assign(superLeft, superRight, event_flag::command);
    // Where layouts swap them, Alt can be left without a modifier and Meta stands in for it.
    if (!assign(altLeft, altRight, event_flag::option)) {
        assign(metaLeft, metaRight, event_flag::option);
    }
}

} // namespace tarvex
