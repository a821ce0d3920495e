#pragma once

#include "App/Toolkit/View.h"

namespace tarvex::test {

/// Shows nothing and hears nothing.
class EmptyView final : public View {
public:
    [[nodiscard]] Scene draw() override { return {}; }

    [[nodiscard]] Form form() override { return {}; }

    void mouseMoved(const MouseEvent& /*event*/) override {}

    void mouseDown(const MouseEvent& /*event*/) override {}

    void mouseDragged(const MouseEvent& /*event*/) override {}

    void mouseUp(const MouseEvent& /*event*/) override {}

    void rightMouseDown(const MouseEvent& /*event*/) override {}

    bool keyDown(const KeyEvent& /*event*/) override { return false; }

    void controlActivated(const std::string& /*controlId*/) override {}

    void screensChanged() override {}
};

} // namespace tarvex::test
