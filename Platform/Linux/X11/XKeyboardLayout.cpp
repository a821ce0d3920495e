#include "Platform/Linux/X11/XKeyboardLayout.h"

#include "Platform/Linux/X11/KeySymbolText.h"
#include "Platform/Linux/X11/VirtualKeyCodes.h"
#include "Platform/Linux/X11/XkbProtocol.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <utility>

namespace tarvex {

namespace {

constexpr xkb_level_index_t unshifted = 0;
constexpr xkb_level_index_t withNumLock = 1;

constexpr bool isOfKeypad(xkb_keysym_t symbol) {
    return symbol >= XKB_KEY_KP_Space && symbol <= XKB_KEY_KP_Equal;
}

} // namespace

XKeyboardLayout::XKeyboardLayout(XConnection& connection, XEventPump& pump, CaseMapping upperCased)
    : connection_(&connection),
      upperCased_(std::move(upperCased)),
      // The map comes from the server: neither files nor the environment have a say.
      context_(xkb_context_new(static_cast<xkb_context_flags>(XKB_CONTEXT_NO_DEFAULT_INCLUDES |
                                                              XKB_CONTEXT_NO_ENVIRONMENT_NAMES))),
      keyboardNotices_(connection, pump, [this] { isKeymapKnown_ = false; }) {
    if (context_) {
        // Odd maps are no news to whoever reads the log of this program.
        xkb_context_set_log_level(context_.get(), XKB_LOG_LEVEL_CRITICAL);
    }
}

std::optional<std::string> XKeyboardLayout::unshiftedCharacter(std::uint16_t keyCode) {
    const std::optional<xcb_keycode_t> key = xKeyCodeOf(keyCode);
    if (!isKeymapKnown_) {
        readKeymap();
    }
    if (!key || !keymap_) {
        return std::nullopt;
    }
    const xkb_layout_index_t layout = activeLayout();
    const xkb_keysym_t plain = symbol(*key, layout, unshifted);
    const std::optional<std::string> text = textOfKeySymbol(plain);
    return text || !isOfKeypad(plain) ? text : textOfKeySymbol(symbol(*key, layout, withNumLock));
}

void XKeyboardLayout::readKeymap() {
    isKeymapKnown_ = true;
    keymap_.reset();
    xcb_connection_t* const server = connection_->get();
    if (!context_ || connection_->isBroken() || connection_->extension(xcb_xkb_id) == nullptr) {
        return;
    }
    const std::int32_t device = xkb_x11_get_core_keyboard_device_id(server);
    if (device >= 0) {
        keymap_.reset(
            xkb_x11_keymap_new_from_device(context_.get(), server, device, XKB_KEYMAP_COMPILE_NO_FLAGS));
    }
}

xkb_layout_index_t XKeyboardLayout::activeLayout() {
    const auto state = connection_->take(xcb_xkb_get_state_reply,
                                         xcb_xkb_get_state(connection_->get(), XCB_XKB_ID_USE_CORE_KBD));
    return state ? state->group : 0;
}

xkb_keysym_t XKeyboardLayout::symbol(xkb_keycode_t key, xkb_layout_index_t layout,
                                     xkb_level_index_t level) const {
    const xkb_keysym_t* symbols = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(keymap_.get(), key, layout, level, &symbols);
    return count > 0 ? symbols[0] : xkb_keysym_t{XKB_KEY_NoSymbol};
}

} // namespace tarvex
