#pragma once

#include "App/Toolkit/View.h"

#include <functional>
#include <string>
#include <vector>

namespace tarvex::test {

/// Writes down what it hears.
class RecordingView final : public View {
public:
    [[nodiscard]] Scene draw() override {
        ++draws;
        return scene;
    }

    [[nodiscard]] Form form() override { return controls; }

    void mouseMoved(const MouseEvent& event) override { note("moved", event); }

    void mouseDown(const MouseEvent& event) override { note("down", event); }

    void mouseDragged(const MouseEvent& event) override { note("dragged", event); }

    void mouseUp(const MouseEvent& event) override { note("up", event); }

    void rightMouseDown(const MouseEvent& event) override { note("right", event); }

    bool keyDown(const KeyEvent& event) override {
        heard.push_back("key " + std::to_string(event.keyCode) + " " + std::to_string(event.modifierFlags));
        onInput();
        return takesKeys;
    }

    void controlActivated(const std::string& controlId) override {
        heard.push_back("control " + controlId);
        onInput();
    }

    void screensChanged() override { heard.push_back("screens"); }

    Scene scene;
    Form controls;
    bool takesKeys = true;
    int draws = 0;
    std::vector<std::string> heard;
    std::function<void()> onInput = [] {};

private:
    void note(const std::string& what, const MouseEvent& event) {
        heard.push_back(what + " " + std::to_string(static_cast<int>(event.location.x)) + "," +
                        std::to_string(static_cast<int>(event.location.y)) + " " +
                        std::to_string(event.modifierFlags));
        onInput();
    }
};

using Heard = std::vector<std::string>;

} // namespace tarvex::test
