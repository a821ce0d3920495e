#pragma once

#include "App/Toolkit/KeyWindowPlatform.h"
#include "App/Toolkit/Window.h"
#include "Tests/Support/Simulated/Journal.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

/// What became of a native window of this program, also after it was closed.
struct SimulatedNativeWindow {
    /// 1 for the first one made.
    int number = 0;
    WindowAttributes attributes;
    bool isShown = false;
    bool isClosed = false;
    Scene scene;
    /// How often the picture changed.
    int pictures = 0;
    /// Where the window manager put it; the content rectangle unless it moved it.
    Rect frame;
};

/// Makes the native windows of this program and remembers them all.
class SimulatedWindows final : public WindowPlatform {
public:
    explicit SimulatedWindows(Journal& journal) : journal_(&journal) {}

    [[nodiscard]] std::unique_ptr<Window> makeWindow(const WindowAttributes& attributes) override;

    /// Every window ever made, in that order.
    [[nodiscard]] const std::vector<std::shared_ptr<SimulatedNativeWindow>>& made() const { return made_; }

    /// The windows that are open, and those of them that are shown, the frontmost last.
    [[nodiscard]] std::vector<SimulatedNativeWindow*> open() const;
    [[nodiscard]] std::vector<SimulatedNativeWindow*> shown() const;

    /// Forgets the closed windows.
    void forgetClosed();

    /// Every new window comes up this far from where it was asked to be.
    void displaceNewWindows(double dx, double dy) { displacement_ = {dx, dy}; }

private:
    class NativeWindow;

    Journal* journal_;
    std::vector<std::shared_ptr<SimulatedNativeWindow>> made_;
    Point displacement_;
    int lastNumber_ = 0;
};

/// The program's own window that has the keyboard, if any.
class SimulatedKeyWindow final : public KeyWindowPlatform {
public:
    [[nodiscard]] std::optional<std::string> keyWindowTitle() const override { return title_; }

    void setTitle(std::optional<std::string> title) { title_ = std::move(title); }

private:
    std::optional<std::string> title_;
};

} // namespace tarvex
