#pragma once

#include "App/Toolkit/FormWindow.h"
#include "Tests/Support/FormKey.h"
#include "Tests/Support/Simulated/Journal.h"

#include <memory>
#include <string>
#include <vector>

namespace tarvex {

/// A titled window of the program.
class SimulatedFormWindow {
public:
    /// The height of its title bar; it has no other borders.
    static constexpr double titleBarHeight = 22;

    SimulatedFormWindow(FormWindowAttributes windowAttributes, FormOwner& formOwner);

    const FormWindowAttributes attributes;
    FormOwner* const owner;
    bool isVisible = false;
    bool isKey = false;
    int timesCentered = 0;
    /// How often the owner asked for a new layout.
    int layouts = 0;
    /// With the title bar, in screen space.
    Rect frame;

    /// The control of that id as it is shown now. Throws std::out_of_range when there is none.
    [[nodiscard]] const Control& control(const std::string& id);

    [[nodiscard]] bool hasControl(const std::string& id);

    /// Uses a control as a person does: a disabled or hidden one does nothing.
    void use(const std::string& id, double value = 0);

    /// Presses the button on the middle of the control: a checkbox changes, a slider goes there.
    void click(const std::string& id);

    /// Presses a key, which does nothing unless the window has the keyboard.
    void press(FormKey key);

    void setNeedsLayout();

    /// Asks the owner for the form if it was told that it is another one.
    void layOutIfNeeded();

    /// What closing does.
    void hide();

    /// The first control that the keyboard can use gets it, unless one has it.
    void focusFirstIfNone();

private:
    [[nodiscard]] const Control* find(const std::string& id);
    void layOut();
    void focusNext();
    void moveSlider(const Control& slider, FormKey key);

    Form shown_;
    bool needsLayout_ = false;
    std::string focused_;
};

class SimulatedFormWindows final : public FormWindowPlatform {
public:
    /// The one screen without its menu bar, in screen space.
    static constexpr Rect visibleScreen{0, 0, 1440, 878};

    explicit SimulatedFormWindows(Journal& journal) : journal_(&journal) {}

    [[nodiscard]] std::unique_ptr<FormWindow> makeFormWindow(const FormWindowAttributes& attributes,
                                                             FormOwner& owner) override;

    void activateIgnoringOtherApps() override { journal_->note("activate"); }

    /// The window of that title. Throws std::out_of_range when there is none.
    [[nodiscard]] SimulatedFormWindow& titled(const std::string& title);

    /// Presses a key for the window that has the keyboard.
    void press(FormKey key);

    void layOutIfNeeded();

    /// Another program gets the keyboard.
    void resignKey();

private:
    class Window;

    Journal* journal_;
    std::vector<std::shared_ptr<SimulatedFormWindow>> windows_;
};

} // namespace tarvex
