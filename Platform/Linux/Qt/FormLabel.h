#pragma once

#include "App/Toolkit/Form.h"
#include "Platform/Linux/Qt/QtFonts.h"

#include <QLabel>

namespace tarvex {

/// A label of a form. It is drawn with the fonts that measured it; the toolkit's own label is there for what
/// assistive technology is told.
class FormLabel final : public QLabel {
public:
    /// The fonts must outlive the label.
    FormLabel(QWidget& parent, QtFonts& fonts);

    void setControl(const Control& control);

    /// The text as it is drawn: a line that is too long for the label ends in an ellipsis.
    [[nodiscard]] std::string shownText() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintLine(QPainter& painter) const;
    void paintParagraph(QPainter& painter) const;

    QtFonts* fonts_;
    Control control_;
};

} // namespace tarvex
