#include "Tests/Support/Simulated/SimulatedFormWindows.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace tarvex {

SimulatedFormWindow::SimulatedFormWindow(FormWindowAttributes windowAttributes, FormOwner& formOwner)
    : attributes(std::move(windowAttributes)),
      owner(&formOwner),
      frame{0, 0, attributes.contentSize.width, attributes.contentSize.height + titleBarHeight} {
    layOut();
}

const Control& SimulatedFormWindow::control(const std::string& id) {
    const Control* const found = find(id);
    if (found == nullptr) {
        throw std::out_of_range("no control " + id);
    }
    return *found;
}

bool SimulatedFormWindow::hasControl(const std::string& id) {
    return find(id) != nullptr;
}

const Control* SimulatedFormWindow::find(const std::string& id) {
    layOutIfNeeded();
    const auto found = std::find_if(shown_.controls.begin(), shown_.controls.end(),
                                    [&](const Control& control) { return control.id == id; });
    return found == shown_.controls.end() ? nullptr : &*found;
}

void SimulatedFormWindow::use(const std::string& id, double value) {
    const Control used = control(id);
    if (used.isEnabled && !used.isHidden) {
        owner->controlChanged(id, value);
        layOut();
    }
}

void SimulatedFormWindow::click(const std::string& id) {
    const Control clicked = control(id);
    switch (clicked.kind) {
    case ControlKind::slider:
        use(id, (clicked.minimumValue + clicked.maximumValue) / 2);
        break;
    case ControlKind::checkbox:
        use(id, clicked.value == 0 ? 1 : 0);
        break;
    case ControlKind::pushButton:
        use(id);
        break;
    case ControlKind::label:
        return;
    }
    if (clicked.isEnabled && !clicked.isHidden) {
        focused_ = id;
    }
}

void SimulatedFormWindow::press(FormKey key) {
    if (!isKey) {
        return;
    }
    if (key == FormKey::tab) {
        focusNext();
        return;
    }
    const Control* const focused = find(focused_);
    if (focused == nullptr) {
        return;
    }
    const bool isSpace = key == FormKey::space;
    if (focused->kind == ControlKind::slider) {
        moveSlider(*focused, key);
    } else if (isSpace || (key == FormKey::enter && focused->kind == ControlKind::pushButton)) {
        click(std::string(focused_));
    }
}

void SimulatedFormWindow::moveSlider(const Control& slider, FormKey key) {
    constexpr std::array<std::pair<FormKey, double>, 4> moves{
        {{FormKey::left, -1}, {FormKey::right, 1}, {FormKey::pageDown, -5}, {FormKey::pageUp, 5}}};
    double value = slider.value;
    for (const auto& [moving, units] : moves) {
        value += key == moving ? units : 0;
    }
    value = key == FormKey::home ? slider.minimumValue : value;
    value = key == FormKey::end ? slider.maximumValue : value;
    value = std::clamp(value, slider.minimumValue, slider.maximumValue);
    if (value != slider.value) {
        use(std::string(focused_), value);
    }
}

void SimulatedFormWindow::focusNext() {
    layOutIfNeeded();
    const auto isReachable = [](const Control& control) {
        return control.kind != ControlKind::label && control.isEnabled && !control.isHidden;
    };
    auto& controls = shown_.controls;
    const auto present = std::find_if(controls.begin(), controls.end(),
                                      [&](const Control& control) { return control.id == focused_; });
    auto next =
        std::find_if(present == controls.end() ? controls.begin() : present + 1, controls.end(), isReachable);
    if (next == controls.end()) {
        next = std::find_if(controls.begin(), controls.end(), isReachable);
    }
    focused_ = next == controls.end() ? "" : next->id;
}

void SimulatedFormWindow::hide() {
    isKey = false;
    if (std::exchange(isVisible, false)) {
        owner->windowDidClose();
    }
}

void SimulatedFormWindow::focusFirstIfNone() {
    if (focused_.empty()) {
        focusNext();
    }
}

void SimulatedFormWindow::setNeedsLayout() {
    ++layouts;
    needsLayout_ = true;
}

void SimulatedFormWindow::layOutIfNeeded() {
    if (needsLayout_) {
        layOut();
    }
}

void SimulatedFormWindow::layOut() {
    needsLayout_ = false;
    shown_ = owner->form(attributes.contentSize);
}

class SimulatedFormWindows::Window final : public FormWindow {
public:
    Window(std::shared_ptr<SimulatedFormWindow> state, SimulatedFormWindows& windows)
        : state_(std::move(state)), windows_(&windows) {}

    [[nodiscard]] bool isVisible() const override { return state_->isVisible; }

    void setNeedsLayout() override { state_->setNeedsLayout(); }

    void center() override {
        note("center");
        ++state_->timesCentered;
        Rect& frame = state_->frame;
        frame.x = visibleScreen.x + (visibleScreen.width - frame.width) / 2;
        frame.y = visibleScreen.y + (visibleScreen.height - frame.height) / 2;
    }

    void makeKeyAndOrderFront() override {
        note("key and front");
        windows_->resignKey();
        state_->isVisible = true;
        state_->isKey = true;
        state_->focusFirstIfNone();
    }

    void close() override {
        note("close");
        state_->hide();
    }

private:
    void note(const char* what) { windows_->journal_->note("\"" + state_->attributes.title + "\" " + what); }

    std::shared_ptr<SimulatedFormWindow> state_;
    SimulatedFormWindows* windows_;
};

std::unique_ptr<FormWindow> SimulatedFormWindows::makeFormWindow(const FormWindowAttributes& attributes,
                                                                 FormOwner& owner) {
    auto state = std::make_shared<SimulatedFormWindow>(attributes, owner);
    windows_.push_back(state);
    return std::make_unique<Window>(state, *this);
}

SimulatedFormWindow& SimulatedFormWindows::titled(const std::string& title) {
    for (const auto& window : windows_) {
        if (window->attributes.title == title) {
            return *window;
        }
    }
    throw std::out_of_range("no window " + title);
}

void SimulatedFormWindows::press(FormKey key) {
    for (const auto& window : windows_) {
        window->press(key);
    }
}

void SimulatedFormWindows::layOutIfNeeded() {
    for (const auto& window : windows_) {
        window->layOutIfNeeded();
    }
}

void SimulatedFormWindows::resignKey() {
    for (const auto& window : windows_) {
        window->isKey = false;
    }
}

} // namespace tarvex
