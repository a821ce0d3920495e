#include "Platform/Linux/Qt/FormLabel.h"

#include "Platform/Linux/Qt/TextColors.h"

#include <QFontMetrics>
#include <QPainter>

namespace tarvex {

namespace {

/// What a paragraph leaves free above it, in points: the forms have its frame reach into the row above, which
/// it explains.
constexpr int paragraphInset = 6;

} // namespace

FormLabel::FormLabel(QWidget& parent, QtFonts& fonts) : QLabel(&parent), fonts_(&fonts) {
    setTextFormat(Qt::PlainText);
    setFocusPolicy(Qt::NoFocus);
}

void FormLabel::setControl(const Control& control) {
    control_ = control;
    setText(QString::fromStdString(control.text));
    // Without anything to tell, it leaves the pointer to what it overlaps.
    setAttribute(Qt::WA_TransparentForMouseEvents, control.toolTip.empty());
    update();
}

std::string FormLabel::shownText() const {
    if (control_.wrapsText || fonts_->layOut(control_.text, control_.font).size.width <= width()) {
        return control_.text;
    }
    const QFontMetrics metrics(fonts_->qtFont(control_.font));
    return metrics.elidedText(text(), Qt::ElideRight, width()).toStdString();
}

void FormLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(qtColorOf(control_.textColor, palette()));
    if (control_.wrapsText) {
        paintParagraph(painter);
    } else {
        paintLine(painter);
    }
}

void FormLabel::paintLine(QPainter& painter) const {
    const TextRun& run = fonts_->layOut(shownText(), control_.font);
    const int room = width() - static_cast<int>(run.size.width);
    int left = text().isRightToLeft() ? room : 0;
    if (control_.alignment == TextAlignment::center) {
        left = room / 2;
    }
    // Rounded downwards, to where the toolkit has the text of buttons and checkboxes.
    const int top = (height() - static_cast<int>(run.size.height) + 1) / 2;
    const int baseline = top + static_cast<int>(run.size.height - run.descent);
    for (const QGlyphRun& glyphs : run.glyphs) {
        painter.drawGlyphRun(QPointF(left, baseline), glyphs);
    }
}

void FormLabel::paintParagraph(QPainter& painter) const {
    // Qt turns the left side round for text that runs from the right.
    const int alignment = control_.alignment == TextAlignment::center ? Qt::AlignHCenter : Qt::AlignLeft;
    painter.setFont(fonts_->qtFont(control_.font));
    painter.drawText(rect().adjusted(0, paragraphInset, 0, 0),
                     alignment | Qt::AlignVCenter | Qt::TextWordWrap, text());
}

} // namespace tarvex
