#pragma once

#include "Platform/Linux/Qt/ControlRealizer.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

/// Keeps the controls of the toolkit as a form has them. A control that stays in the form, by its id, keeps
/// its widget, and so the keyboard and a drag of a slider that is going on.
class FormRealizer {
public:
    /// Hears of the use of a control, with the value that it has now.
    using Used = std::function<void(const std::string& id, double value)>;

    /// @param view the controls' parent; it and the fonts must outlive the realizer
    FormRealizer(QWidget& view, QtFonts& fonts, Used used);

    /// Shows the form without calling anybody.
    /// @param viewHeight in points
    void realize(const Form& form, double viewHeight);

    /// The next form is shown as if nothing was shown yet; for a change of what fonts and
    /// colours stand for.
    void forgetShown();

    /// The first control, in the form's order, that the keyboard can use; null when there is none.
    [[nodiscard]] QWidget* firstReachable() const;

    /// Null when there is no control of that id.
    [[nodiscard]] QWidget* widget(const std::string& id) const;

private:
    struct Entry {
        ControlKind kind = ControlKind::label;
        std::unique_ptr<ControlRealizer> realizer;
        /// None when the widget may show something else by now.
        std::optional<Control> shown;
    };

    void removeAllBut(const Form& form);
    [[nodiscard]] Entry& entryFor(const Control& control);
    void setOrder(std::vector<std::string> ids);
    void handleUse(const std::string& id, double value);

    QWidget* view_;
    QtFonts* fonts_;
    Used used_;
    std::map<std::string, Entry> entries_;
    /// The ids in the form's order.
    std::vector<std::string> order_;
};

} // namespace tarvex
