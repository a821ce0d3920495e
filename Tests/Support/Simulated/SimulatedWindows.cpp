#include "Tests/Support/Simulated/SimulatedWindows.h"

#include <utility>

namespace tarvex {

class SimulatedWindows::NativeWindow final : public Window {
public:
    NativeWindow(std::shared_ptr<SimulatedNativeWindow> state, Journal& journal)
        : state_(std::move(state)), journal_(&journal) {
        note("made");
    }

    NativeWindow(const NativeWindow&) = delete;
    NativeWindow& operator=(const NativeWindow&) = delete;
    NativeWindow(NativeWindow&&) = delete;
    NativeWindow& operator=(NativeWindow&&) = delete;

    ~NativeWindow() override {
        note("close");
        state_->isShown = false;
        state_->isClosed = true;
    }

    [[nodiscard]] Rect frame() const override { return state_->frame; }

    void setScene(Scene scene) override {
        note("picture");
        if (state_->scene != scene) {
            ++state_->pictures;
            state_->scene = std::move(scene);
        }
    }

    void orderFront() override {
        note("front");
        state_->isShown = true;
    }

    void orderOut() override {
        note("out");
        state_->isShown = false;
    }

private:
    void note(const char* what) { journal_->note("overlay " + std::to_string(state_->number) + " " + what); }

    std::shared_ptr<SimulatedNativeWindow> state_;
    Journal* journal_;
};

std::unique_ptr<Window> SimulatedWindows::makeWindow(const WindowAttributes& attributes) {
    auto state = std::make_shared<SimulatedNativeWindow>();
    state->number = ++lastNumber_;
    state->attributes = attributes;
    state->frame = attributes.contentRect.translated(displacement_.x, displacement_.y);
    made_.push_back(state);
    return std::make_unique<NativeWindow>(state, *journal_);
}

std::vector<SimulatedNativeWindow*> SimulatedWindows::open() const {
    std::vector<SimulatedNativeWindow*> open;
    for (const auto& window : made_) {
        if (!window->isClosed) {
            open.push_back(window.get());
        }
    }
    return open;
}

std::vector<SimulatedNativeWindow*> SimulatedWindows::shown() const {
    std::vector<SimulatedNativeWindow*> shown;
    for (const auto& window : made_) {
        if (window->isShown) {
            shown.push_back(window.get());
        }
    }
    return shown;
}

void SimulatedWindows::forgetClosed() {
    std::erase_if(made_, [](const auto& window) { return window->isClosed; });
}

} // namespace tarvex
