#pragma once

#include "App/Toolkit/TextMeasurer.h"
#include "App/Toolkit/View.h"
#include "Tests/Support/Simulated/Journal.h"

#include <memory>
#include <string>
#include <vector>

namespace tarvex {

/// Every character is as wide as half its font size, every line as high as one and a quarter of it.
class SimulatedTextMeasurer final : public TextMeasurer {
public:
    [[nodiscard]] Size sizeOfText(const std::string& text, const Font& font) override;
};

/// What became of a window with a view, also after it was closed.
struct SimulatedViewWindow {
    WindowAttributes attributes;
    /// Null once the window is closed.
    View* view = nullptr;
    bool isShown = false;
    /// Whether it has the keyboard.
    bool isKey = false;
    /// How often it was asked to be drawn anew.
    int redraws = 0;
};

/// Makes the program's windows with a view and remembers them all.
class SimulatedViewWindows final : public ViewWindowPlatform {
public:
    explicit SimulatedViewWindows(Journal& journal) : journal_(&journal) {}

    [[nodiscard]] std::unique_ptr<ViewWindow> makeViewWindow(const WindowAttributes& attributes,
                                                             View& view) override;

    void activateIgnoringOtherApps() override { journal_->note("activate"); }

    /// Every window ever made, in that order.
    [[nodiscard]] const std::vector<std::shared_ptr<SimulatedViewWindow>>& made() const { return made_; }

    /// The windows that are not closed.
    [[nodiscard]] std::vector<SimulatedViewWindow*> open() const;

private:
    class NativeWindow;

    Journal* journal_;
    std::vector<std::shared_ptr<SimulatedViewWindow>> made_;
};

} // namespace tarvex
