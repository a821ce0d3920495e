#pragma once

#include "App/Toolkit/Form.h"
#include "Platform/Linux/Qt/QtFonts.h"

#include <QPointer>
#include <QRect>
#include <QWidget>

#include <functional>
#include <memory>

namespace tarvex {

/// The toolkit's counterpart of one control. Its widget is a child of the form's, which may well be destroyed
/// first; destroying the realizer takes the widget away, also from within the control's use.
class ControlRealizer {
public:
    /// Hears of each use of the control by a person, with the value that it has now.
    using Used = std::function<void(double value)>;

    /// A new counterpart, not shown until it is told what to show. The fonts must outlive it.
    [[nodiscard]] static std::unique_ptr<ControlRealizer> make(ControlKind kind, QWidget& form,
                                                               QtFonts& fonts, Used used);

    ControlRealizer(const ControlRealizer&) = delete;
    ControlRealizer& operator=(const ControlRealizer&) = delete;
    ControlRealizer(ControlRealizer&&) = delete;
    ControlRealizer& operator=(ControlRealizer&&) = delete;
    virtual ~ControlRealizer();

    /// Shows the control, which is of the same kind, without calling anybody.
    /// @param frame in the form, in pixels of the toolkit, y down
    void realize(const Control& control, const QRect& frame);

    /// Null when the form's widget has been destroyed.
    [[nodiscard]] QWidget* widget() const { return widget_; }

protected:
    ControlRealizer(QWidget& widget, QtFonts& fonts) : widget_(&widget), fonts_(&fonts) {}

    /// What only controls of the kind have. Signals are blocked meanwhile.
    virtual void show(const Control& control) = 0;

    /// Where in the control's frame its widget is.
    [[nodiscard]] virtual QRect fitted(const QRect& frame) const { return frame; }

    /// Its outline is all that a control of the kind has to be told from the window by.
    [[nodiscard]] virtual bool isOutlined() const { return false; }

private:
    QPointer<QWidget> widget_;
    QtFonts* fonts_;
};

} // namespace tarvex
