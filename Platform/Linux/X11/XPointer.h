#pragma once

#include "App/Toolkit/PointerPlatform.h"
#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XWindowSighting.h"

#include <cstdint>
#include <memory>

namespace tarvex {

/// The mouse, as the X server knows it. While an event is delivered every question is answered from one
/// snapshot, so that an event costs one wait for the server however often it asks. That of a press shows the
/// window below the pointer as well.
class XPointer final : public PointerPlatform {
public:
    /// Where the pointer is, in pixels of the root window, and the buttons and modifiers held
    /// (xcb_key_but_mask_t).
    struct Snapshot {
        int x = 0;
        int y = 0;
        std::uint16_t mask = 0;
        /// False while the pointer is on another screen of the server; the place is then the last one here.
        bool isOnScreen = true;
    };

    /// Keeps the snapshot as the answer for as long as it lives.
    class Hold {
    public:
        explicit Hold(XPointer& pointer) : pointer_(&pointer) { ++pointer_->holds_; }

        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;
        Hold(Hold&&) = delete;
        Hold& operator=(Hold&&) = delete;

        ~Hold() {
            if (--pointer_->holds_ == 0) {
                pointer_->sighting_.reset();
            }
        }

    private:
        XPointer* pointer_;
    };

    /// Both must outlive the pointer.
    XPointer(XConnection& connection, DesktopLayoutProvider& layout);

    [[nodiscard]] Point mouseLocation() override;

    /// Takes a new snapshot; when the server does not answer, the old one stays.
    const Snapshot& refresh();

    /// The same at the press of a button, and looks at the window below the pointer, as early as can be:
    /// whoever presses may pull at once. Waits for the server three times at most.
    const Snapshot& refreshAtPress();

    /// The window that was pressed, until the press has been delivered; else null. None is pressed on the
    /// bare desktop.
    [[nodiscard]] std::shared_ptr<XWindowSighting> sighting() const { return sighting_; }

    /// The last snapshot.
    [[nodiscard]] const Snapshot& snapshot() const { return snapshot_; }

private:
    /// The child of the root window that the pointer is in, if any.
    xcb_window_t takeSnapshot();

    XConnection* connection_;
    DesktopLayoutProvider* layout_;
    Snapshot snapshot_;
    std::shared_ptr<XWindowSighting> sighting_;
    int holds_ = 0;
};

} // namespace tarvex
