#pragma once

#include "App/Toolkit/PointerPlatform.h"
#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XOutermostWindows.h"
#include "Platform/Linux/X11/XPressRecord.h"
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

    /// All must outlive the pointer.
    /// @param presses without it, a press is taken to be where the pointer is when the program hears of it
    XPointer(XConnection& connection, DesktopLayoutProvider& layout, XPressRecord* presses = nullptr);

    [[nodiscard]] Point mouseLocation() override;

    /// Takes a new snapshot; when the server does not answer, the old one stays.
    const Snapshot& refresh();

    /// The same at the press of a button, and looks at the window that was pressed, as early as can be:
    /// whoever presses may pull at once. A pointer that has gone on since counts as being where it pressed.
    /// Waits for the server three times, and some more for a pointer that has gone on or a press that is not
    /// yet recorded.
    /// @param time the server's, of the press
    const Snapshot& refreshAtPress(xcb_timestamp_t time = XCB_CURRENT_TIME);

    /// Before the first of the presses that are heard of one by one, and after the last. The beginning waits
    /// for the server.
    void beginPresses();
    void endPresses();

    /// In place of refreshAtPress(), for a press that concerns nobody. Does not wait.
    void passOverPress(xcb_timestamp_t time);

    /// The window that was pressed, until the press has been delivered; else null. None is pressed on the
    /// bare desktop. It may have left the place of the press by now.
    [[nodiscard]] std::shared_ptr<XWindowSighting> sighting() const { return sighting_; }

    /// The last snapshot.
    [[nodiscard]] const Snapshot& snapshot() const { return snapshot_; }

private:
    /// Takes a snapshot; the child of the root window that the pointer is in, if any.
    [[nodiscard]] xcb_window_t lookNow();
    /// The same, taken back to a press.
    [[nodiscard]] xcb_window_t lookAtPress(XPressRecord& presses, xcb_timestamp_t time);
    [[nodiscard]] xcb_query_pointer_cookie_t requestPointer();
    void keep(const XReply<xcb_query_pointer_reply_t>& pointer);

    XConnection* connection_;
    DesktopLayoutProvider* layout_;
    XPressRecord* presses_;
    XOutermostWindows outermost_;
    Snapshot snapshot_;
    std::shared_ptr<XWindowSighting> sighting_;
    int holds_ = 0;
};

} // namespace tarvex
