#pragma once

#include "App/Toolkit/Form.h"
#include "Platform/MacOS/AppKit/ControlRealizer.h"

#import <AppKit/AppKit.h>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tarvex {

/// Keeps the controls of the toolkit as a form has them. A control that stays in the form, by its id, keeps
/// its view, and so the keyboard and a drag of a slider that is going on.
class FormRealizer {
public:
    /// Hears of the use of a control, with the value that it has now. It may destroy the realizer.
    using Used = std::function<void(const std::string& controlId, double value)>;

    /// @param view the controls' superview
    FormRealizer(NSView* view, FirstClick firstClick, Used used);

    /// Shows the form without calling anybody. The keyboard reaches the controls in the form's order.
    void realize(const Form& form);

    /// Null when there is no control of that id.
    [[nodiscard]] NSControl* view(const std::string& controlId) const;

    /// The first control that a person may use: no label, enabled and not hidden. The superview when there is
    /// none.
    [[nodiscard]] NSView* firstUsable() const;

private:
    struct Entry {
        ControlKind kind = ControlKind::label;
        bool isUsable = false;
        std::unique_ptr<ControlRealizer> realizer;
    };

    void removeAllBut(const Form& form);
    [[nodiscard]] ControlRealizer& realizerFor(const Control& control);
    void setOrder(std::vector<std::string> ids);
    void handleUse(const std::string& controlId, double value);

    ObjCHandle<NSView*> view_;
    FirstClick firstClick_;
    Used used_;
    std::map<std::string, Entry> entries_;
    /// The ids in the form's order.
    std::vector<std::string> order_;
};

} // namespace tarvex
