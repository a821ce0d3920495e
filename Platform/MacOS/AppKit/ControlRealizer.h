#pragma once

#include "App/Toolkit/Form.h"
#include "Platform/MacOS/AppKit/ActionTarget.h"
#include "Platform/MacOS/AppKit/ObjCHandle.h"

#import <AppKit/AppKit.h>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarvex {

/// What a click does on a button whose program is not in front.
enum class FirstClick : std::uint8_t {
    /// It brings the program to the front, and no more.
    activates,
    /// It uses the button as well.
    counts
};

/// The toolkit's counterpart of one control, a subview of the form's view. Destroying the realizer takes it
/// away, also from within the control's use.
class ControlRealizer {
public:
    /// Hears of each use of the control by a person, with the value that it has now.
    using Used = std::function<void(double value)>;

    /// A new counterpart, not shown until it is told what to show.
    [[nodiscard]] static std::unique_ptr<ControlRealizer> make(ControlKind kind, FirstClick firstClick,
                                                               Used used);

    ControlRealizer(const ControlRealizer&) = delete;
    ControlRealizer& operator=(const ControlRealizer&) = delete;
    ControlRealizer(ControlRealizer&&) = delete;
    ControlRealizer& operator=(ControlRealizer&&) = delete;
    virtual ~ControlRealizer();

    /// Shows the control, which is of the same kind. Shown already, it costs nothing.
    void realize(const Control& control);

    /// What a person did may not be what the form wants: the next realize() shows everything anew.
    void forgetShown() { shown_.reset(); }

    [[nodiscard]] NSControl* view() const { return view_.get(); }

protected:
    explicit ControlRealizer(ObjCHandle<NSControl*> view) : view_(std::move(view)) {}

    /// What only controls of the kind have.
    virtual void show(const Control& control) = 0;

    /// Has the control's action reported.
    void listen(std::function<void()> used);

private:
    /// What assistive technology calls the control; empty for what it says itself.
    void setName(const std::string& name);

    ObjCHandle<NSControl*> view_;
    std::unique_ptr<ActionTarget> target_;
    std::optional<Control> shown_;
    std::string name_;
};

/// Gives a button the looks that it does not have from the system.
void applyButtonStyle(NSButton* button, const Control& control, const ButtonStyle& style);

/// Gives the button's layer the colours of the style as they are in the appearance that the button has now; a
/// layer does not follow the system's colours by itself. No layer changes nothing.
void applyLayerColors(NSButton* button, const ButtonStyle& style);

} // namespace tarvex
