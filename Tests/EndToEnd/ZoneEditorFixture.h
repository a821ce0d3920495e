#pragma once

#include "Tests/EndToEnd/DesktopTest.h"

#include <nlohmann/json.hpp>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace tarvex::test {

/// Sessions with the zone editor open when the program has started.
class ZoneEditorTest : public DesktopTest {
protected:
    /// Starts everything and waits until the editor darkens the screen and has the keyboard.
    Desktop& startEditor(DesktopOptions options = {},
                         const std::vector<std::string>& arguments = {"--open-editor"}) {
        options.startsTarvex = false;
        Desktop& desktop = start(options);
        open(desktop, arguments);
        return desktop;
    }

    void open(Desktop& desktop, const std::vector<std::string>& arguments = {"--open-editor"}) {
        paintRoot(desktop);
        bare_ = std::make_unique<Screenshot>(desktop.steadyScreen());
        focusBefore_ = focus(desktop);
        desktop.tarvex.allowOnStandardError("GridEditorController.showEditor");
        // A press on the editor is a press on no window that could be dragged.
        desktop.tarvex.allowOnStandardError("CopyElementAtPosition returned nil element");
        desktop.tarvex.start(arguments);
        desktop.client.waitUntil([&] { return focus(desktop) != focusBefore_ && isDarkened(desktop); },
                                 "the editor is open");
    }

    /// A bare root window is black, which cannot be darkened any more.
    static void paintRoot(Desktop& desktop) {
        const std::uint32_t color = 0x6090C0;
        XClient& client = desktop.client;
        xcb_change_window_attributes(client.connection(), client.root(), XCB_CW_BACK_PIXEL, &color);
        xcb_clear_area(client.connection(), 0, client.root(), 0, 0, 0, 0);
        client.sync();
    }

    static xcb_window_t focus(Desktop& desktop) {
        const Owned<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(
            desktop.client.connection(), xcb_get_input_focus(desktop.client.connection()), nullptr));
        return reply ? reply->focus : XCB_NONE;
    }

    bool isDarkened(Desktop& desktop) {
        return Screenshot(desktop.client).pixel(probe_) != bare_->pixel(probe_);
    }

    void awaitClosed(Desktop& desktop) {
        desktop.client.waitUntil(
            [&] { return Screenshot(desktop.client).pixel(probe_) == bare_->pixel(probe_); },
            "the editor is closed");
        desktop.client.waitUntil([&] { return focus(desktop) == focusBefore_; },
                                 "the keyboard is given back");
    }

    static void click(Desktop& desktop, PixelPoint point) {
        desktop.pointer.moveTo(point);
        desktop.pointer.press();
        desktop.pointer.release();
    }

    static void shiftClick(Desktop& desktop, PixelPoint point) {
        desktop.keyboard.press(key::shift);
        click(desktop, point);
        desktop.keyboard.release(key::shift);
    }

    static std::string configText(Desktop& desktop) {
        std::ifstream file(desktop.tarvex.configPath(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    /// Where a line through this pixel lies, as a fraction of the display.
    static double fraction(int pixel, int length) { return (pixel + 0.5) / length; }

    /// A point that no line, label or button comes near.
    PixelPoint probe_{400, 700};
    std::unique_ptr<Screenshot> bare_;
    xcb_window_t focusBefore_ = XCB_NONE;
};

} // namespace tarvex::test
