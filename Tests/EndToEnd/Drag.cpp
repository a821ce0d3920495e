#include "Tests/EndToEnd/Drag.h"

#include <algorithm>

namespace tarvex::test {
namespace {

constexpr const char* matchLine = "updateOverlayState match";
constexpr const char* noMatchLine = "updateOverlayState noMatch";

} // namespace

Drag::Drag(Desktop& desktop, ManagedWindow window, Begin begin) : desktop_{&desktop}, window_{window} {
    desktop_->pointer.moveTo(window_.titleBarPoint());
    if (desktop_->windowManager) {
        desktop_->windowManager->barrier();
    }
    desktop_->pointer.press(desktop_->primaryButton);
    if (begin == Begin::observed) {
        awaitObserving();
    }
    if (begin != Begin::unfollowed) {
        awaitFollowing();
    }
}

// The answer to a key shows that the press before it was dealt with.
void Drag::awaitObserving() {
    pressToNoMatch(key::control);
    releaseToNoMatch(key::control);
}

// How far the pointer must go before a move begins is up to the window manager and the toolkit.
void Drag::awaitFollowing() {
    const std::optional<PixelRect> start = window_.visibleFrame();
    const PixelPoint pressed = desktop_->pointer.position();
    int step = 0;
    const auto hasMoved = [&] {
        ++step;
        desktop_->pointer.moveTo({pressed.x + 10 + step % 20, pressed.y + 10 + step % 10});
        return window_.visibleFrame() != start;
    };
    desktop_->client.waitUntil(hasMoved, "the window follows the pointer");
    desktop_->windowManager->barrier();
}

void Drag::pressToMatch(std::uint32_t keysym) {
    expectLogged(matchLine, keysym, true);
}

void Drag::pressToNoMatch(std::uint32_t keysym) {
    expectLogged(noMatchLine, keysym, true);
}

void Drag::releaseToMatch(std::uint32_t keysym) {
    expectLogged(matchLine, keysym, false);
}

void Drag::releaseToNoMatch(std::uint32_t keysym) {
    expectLogged(noMatchLine, keysym, false);
}

void Drag::expectLogged(const std::string& line, std::uint32_t keysym, bool isPressed) {
    const int before = desktop_->tarvex.countInLog(line);
    if (isPressed) {
        desktop_->keyboard.press(keysym);
        keys_.push_back(keysym);
    } else {
        desktop_->keyboard.release(keysym);
        std::erase(keys_, keysym);
    }
    desktop_->awaitLog(line, before + 1);
}

void Drag::drop() {
    desktop_->pointer.release(desktop_->primaryButton);
}

void Drag::releaseKeys() {
    for (const std::uint32_t keysym : keys_) {
        desktop_->keyboard.release(keysym);
    }
    keys_.clear();
}

void Drag::dropAndExpect(const PixelRect& frame) {
    drop();
    desktop_->expectFrame(window_, frame);
    releaseKeys();
    desktop_->expectFrameUnchanged(window_, frame);
}

void snapAndExpect(Desktop& desktop, const ManagedWindow& window, PixelPoint target, const PixelRect& frame) {
    Drag drag(desktop, window);
    drag.pressToMatch(key::super);
    drag.moveTo(target);
    drag.dropAndExpect(frame);
}

void snapAndExpect(Desktop& desktop, const ManagedWindow& window, const ZoneSpan& zone, double margin) {
    const PixelRect area = desktop.screenArea();
    snapAndExpect(desktop, window, pointIn(area, zone), zoneFrame(area, zone, margin));
}

void dragAndExpectNoWindow(Desktop& desktop, PixelPoint start) {
    const std::string complaint = "SnapController.snapAndHide: activeWindow=nil";
    desktop.tarvex.allowOnStandardError(complaint);
    desktop.pointer.moveTo(start);
    desktop.pointer.press();
    desktop.keyboard.press(key::super);
    desktop.awaitLog("updateOverlayState match modifiers=256 mode=single", 1);
    desktop.pointer.glideTo({900, 500});
    desktop.pointer.release();
    desktop.tarvex.awaitOnStandardError(complaint);
    desktop.keyboard.release(key::super);
    desktop.settle();
}

} // namespace tarvex::test
