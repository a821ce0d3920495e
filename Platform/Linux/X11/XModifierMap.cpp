#include "Platform/Linux/X11/XModifierMap.h"

#include "App/Input/EventTapPlatform.h"

#include <algorithm>
#include <span>

namespace tarvex {

namespace {

// Key symbols, as X numbers them.
constexpr xcb_keysym_t scrollLock = 0xFF14;
constexpr xcb_keysym_t numLock = 0xFF7F;
constexpr xcb_keysym_t metaLeft = 0xFFE7;
constexpr xcb_keysym_t metaRight = 0xFFE8;
constexpr xcb_keysym_t altLeft = 0xFFE9;
constexpr xcb_keysym_t altRight = 0xFFEA;
constexpr xcb_keysym_t superLeft = 0xFFEB;
constexpr xcb_keysym_t superRight = 0xFFEC;

constexpr std::size_t firstAssignable = XCB_MAP_INDEX_1;

constexpr std::uint64_t hotkeyFlags =
    event_flag::shift | event_flag::control | event_flag::option | event_flag::command;

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

/// The server's two tables, asked which modifiers a key symbol can be found on.
class XModifierMap::Reading {
public:
    Reading(const xcb_get_modifier_mapping_reply_t& modifiers,
            const xcb_get_keyboard_mapping_reply_t& keyboard, xcb_keycode_t firstKey)
        : symbols_(keyboard, firstKey),
          keysPerModifier_(modifiers.keycodes_per_modifier),
          keys_(xcb_get_modifier_mapping_keycodes(&modifiers), modifierCount * keysPerModifier_) {}

    /// The modifiers that any key at all is attached to.
    [[nodiscard]] std::uint32_t held() const {
        return modifiersWhere(0, [](xcb_keycode_t key) { return key != 0; });
    }

    /// Of the modifiers without a fixed meaning, those that a key with one of the two symbols is attached to.
    [[nodiscard]] std::uint32_t having(xcb_keysym_t left, xcb_keysym_t right) const {
        return modifiersWhere(firstAssignable,
                              [&](xcb_keycode_t key) { return symbols_.has(key, left, right); });
    }

private:
    template <typename Predicate>
    [[nodiscard]] std::uint32_t modifiersWhere(std::size_t first, Predicate predicate) const {
        std::uint32_t modifiers = 0;
        for (std::size_t index = first; index < modifierCount; ++index) {
            const auto ofModifier = keys_.subspan(index * keysPerModifier_, keysPerModifier_);
            if (std::any_of(ofModifier.begin(), ofModifier.end(), predicate)) {
                modifiers |= 1U << index;
            }
        }
        return modifiers;
    }

    KeySymbols symbols_;
    std::size_t keysPerModifier_;
    std::span<const xcb_keycode_t> keys_;
};

void XModifierMap::readIfUnknown() {
    if (!isKnown_) {
        read();
    }
}

bool XModifierMap::isTold(std::uint32_t modifiers) {
    readIfUnknown();
    constexpr std::uint32_t allModifiers = (1U << modifierCount) - 1;
    return (modifiers & allModifiers & ~countingModifiers_) == 0;
}

std::uint64_t XModifierMap::eventFlags(std::uint32_t modifiers) {
    readIfUnknown();
    std::uint64_t flags = 0;
    for (std::size_t index = 0; index < modifierCount; ++index) {
        if ((modifiers >> index & 1U) != 0) {
            flags |= flagsOfModifier_[index];
        }
    }
    return flags;
}

std::vector<std::uint16_t> XModifierMap::statesOf(std::uint64_t eventFlags) {
    const std::uint64_t wanted = eventFlags & hotkeyFlags;
    std::vector<std::uint16_t> states;
    for (std::uint16_t state = 0; state < 1U << modifierCount; ++state) {
        if (this->eventFlags(state) == wanted && isTold(state)) {
            states.push_back(state);
        }
    }
    return states;
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
    countingModifiers_ = 0;
    flagsOfModifier_ = {};
    flagsOfModifier_[XCB_MAP_INDEX_SHIFT] = event_flag::shift;
    flagsOfModifier_[XCB_MAP_INDEX_CONTROL] = event_flag::control;
    if (!modifierReply || !keyboardReply) {
        return;
    }

    const Reading reading(*modifierReply, *keyboardReply, firstKey);
    const auto assign = [&](std::uint32_t modifiers, std::uint64_t flag) {
        for (std::size_t index = 0; index < modifierCount; ++index) {
            flagsOfModifier_[index] |= (modifiers >> index & 1U) != 0 ? flag : 0;
        }
    };
    assign(reading.having(superLeft, superRight), event_flag::command);
    // Where layouts swap them, Alt can be left without a modifier and Meta stands in for it.
    const std::uint32_t alt = reading.having(altLeft, altRight);
    assign(alt != 0 ? alt : reading.having(metaLeft, metaRight), event_flag::option);

    const std::uint32_t locks = XCB_MOD_MASK_LOCK | reading.having(numLock, scrollLock);
    const std::uint32_t held = reading.held();
    for (std::size_t index = 0; index < modifierCount; ++index) {
        countingModifiers_ |= (flagsOfModifier_[index] != 0 ? held : locks) & 1U << index;
    }
}

} // namespace tarvex
