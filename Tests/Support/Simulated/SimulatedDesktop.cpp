#include "Tests/Support/Simulated/SimulatedDesktop.h"

#include <utility>

namespace tarvex {

SimulatedDesktop::SimulatedDesktop()
    : input_(mainLoop_, journal_),
      accessibility_(journal_),
      windows_(journal_),
      configFiles_(journal_),
      log_(journal_),
      fileLog_(journal_) {}

void SimulatedDesktop::plugScreen(SimulatedDisplay display) {
    displays_.plug(std::move(display));
}

void SimulatedDesktop::unplugScreen(std::uint32_t number) {
    displays_.unplug(number);
}

int SimulatedDesktop::openWindow(const Rect& frame, SimulatedWindowKind kind) {
    SimulatedWindowState window;
    window.kind = kind;
    window.frame = flipped(frame);
    return accessibility_.open(window);
}

void SimulatedDesktop::closeWindow(int window) {
    accessibility_.close(window);
    mainLoop_.runPosted();
}

Rect SimulatedDesktop::windowFrame(int window) {
    return flipped(accessibility_.at(window).frame);
}

void SimulatedDesktop::moveWindow(int window, const Rect& frame) {
    accessibility_.at(window).frame = flipped(frame);
}

Point SimulatedDesktop::titleBarOf(int window) {
    const Rect frame = windowFrame(window);
    return {frame.x + frame.width / 2, frame.maxY() - titleBarHeight / 2};
}

void SimulatedDesktop::pressButton() {
    const Point point = flipped(input_.mouseLocation());
    heldWindow_ = 0;
    if (const int window = accessibility_.windowAt(point); window != 0) {
        accessibility_.raise(window);
        const SimulatedWindowState& state = accessibility_.at(window);
        if (state.kind == SimulatedWindowKind::application && point.y < state.frame.y + titleBarHeight) {
            heldWindow_ = window;
        }
    }
    input_.pressButton();
    mainLoop_.runPosted();
}

void SimulatedDesktop::releaseButton() {
    heldWindow_ = 0;
    input_.releaseButton();
    mainLoop_.runPosted();
}

void SimulatedDesktop::moveTo(Point point) {
    const Point before = input_.mouseLocation();
    for (const SimulatedWindowState& window : accessibility_.windows()) {
        if (window.number == heldWindow_) {
            Rect& frame = accessibility_.at(heldWindow_).frame;
            frame = frame.translated(point.x - before.x, before.y - point.y);
            break;
        }
    }
    input_.moveTo(point);
    mainLoop_.runPosted();
}

void SimulatedDesktop::holdModifiers(std::uint64_t flags) {
    input_.setModifiers(flags);
    mainLoop_.runPosted();
}

void SimulatedDesktop::send(EventType type) {
    input_.send(type);
    mainLoop_.runPosted();
}

void SimulatedDesktop::grabWindow(int window) {
    moveTo(titleBarOf(window));
    pressButton();
}

Rect SimulatedDesktop::flipped(const Rect& frame) const {
    return {frame.x, displays_.desktopTop() - frame.maxY(), frame.width, frame.height};
}

} // namespace tarvex
