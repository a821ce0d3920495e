#include "Tests/Support/Simulated/SimulatedViewWindows.h"

#include <algorithm>
#include <utility>

namespace tarvex {

Size SimulatedTextMeasurer::sizeOfText(const std::string& text, const Font& font) {
    const auto characters = std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    });
    return {static_cast<double>(characters) * font.size / 2, font.size * 1.25};
}

class SimulatedViewWindows::NativeWindow final : public ViewWindow {
public:
    NativeWindow(std::shared_ptr<SimulatedViewWindow> state, Journal& journal)
        : state_(std::move(state)), journal_(&journal) {
        journal_->note("view window made");
    }

    NativeWindow(const NativeWindow&) = delete;
    NativeWindow& operator=(const NativeWindow&) = delete;
    NativeWindow(NativeWindow&&) = delete;
    NativeWindow& operator=(NativeWindow&&) = delete;

    ~NativeWindow() override {
        journal_->note("view window close");
        state_->view = nullptr;
        state_->isShown = false;
        state_->isKey = false;
    }

    [[nodiscard]] Rect frame() const override { return state_->attributes.contentRect; }

    void setNeedsDisplay() override { ++state_->redraws; }

    void makeKeyAndOrderFront() override {
        journal_->note("view window key and front");
        state_->isShown = true;
        state_->isKey = true;
    }

private:
    std::shared_ptr<SimulatedViewWindow> state_;
    Journal* journal_;
};

std::unique_ptr<ViewWindow> SimulatedViewWindows::makeViewWindow(const WindowAttributes& attributes,
                                                                 View& view) {
    auto state = std::make_shared<SimulatedViewWindow>();
    state->attributes = attributes;
    state->view = &view;
    made_.push_back(state);
    return std::make_unique<NativeWindow>(state, *journal_);
}

std::vector<SimulatedViewWindow*> SimulatedViewWindows::open() const {
    std::vector<SimulatedViewWindow*> open;
    for (const auto& window : made_) {
        if (window->view != nullptr) {
            open.push_back(window.get());
        }
    }
    return open;
}

} // namespace tarvex
