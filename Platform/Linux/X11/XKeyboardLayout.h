#pragma once

#include "App/Hotkeys/KeyboardLayoutPlatform.h"
#include "Platform/Linux/X11/XKeyboardNotices.h"

#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <functional>
#include <memory>

namespace tarvex {

/// The layout of the server's core keyboard, of several the one that is switched to. The keyboard's map is
/// read when first needed and again after the server said that it changed. Which layout is switched to is
/// asked at each call: names of keys are seldom needed, and nobody is woken by a switch then.
class XKeyboardLayout final : public KeyboardLayoutPlatform {
public:
    using CaseMapping = std::function<std::string(const std::string&)>;

    /// Connection and pump must outlive the layout.
    /// @param upperCased puts UTF-8 text in capitals
    XKeyboardLayout(XConnection& connection, XEventPump& pump, CaseMapping upperCased);

    /// Waits for the server. None also when the connection is broken and when the server lacks the keyboard
    /// extension. Of a key of the keypad that moves the cursor unless Num Lock is on: what it gives then, as
    /// its cap shows. A dead key gives its accent by itself.
    [[nodiscard]] std::optional<std::string> unshiftedCharacter(std::uint16_t keyCode) override;

    [[nodiscard]] std::string upperCased(const std::string& text) override { return upperCased_(text); }

private:
    struct ReleaseContext {
        void operator()(xkb_context* context) const { xkb_context_unref(context); }
    };

    struct ReleaseKeymap {
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
    };

    void readKeymap();
    [[nodiscard]] xkb_layout_index_t activeLayout();
    [[nodiscard]] xkb_keysym_t symbol(xkb_keycode_t key, xkb_layout_index_t layout,
                                      xkb_level_index_t level) const;

    XConnection* connection_;
    CaseMapping upperCased_;
    std::unique_ptr<xkb_context, ReleaseContext> context_;
    std::unique_ptr<xkb_keymap, ReleaseKeymap> keymap_;
    bool isKeymapKnown_ = false;
    XKeyboardNotices keyboardNotices_;
};

} // namespace tarvex
