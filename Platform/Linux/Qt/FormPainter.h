#pragma once

#include "App/Toolkit/Form.h"
#include "Platform/Linux/Qt/QtFonts.h"

#include <QImage>
#include <QPainter>
#include <QRect>
#include <QRegion>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

/// Which controls the pointer is about to use, by their ids; empty for none.
struct ControlFeedback {
    std::string hovered;
    std::string pressed;

    bool operator==(const ControlFeedback&) const = default;
};

/// Paints the push buttons of a form; other controls belong to windows that the toolkit shows.
class FormPainter {
public:
    /// The fonts must outlive the painter.
    explicit FormPainter(QtFonts& fonts) : fonts_(&fonts) {}

    /// Composites the buttons, in their order, over what is there. Only pixels of the region change.
    /// @param viewHeight in points
    void paint(QPainter& painter, const Form& form, const ControlFeedback& feedback, double viewHeight,
               const QRegion& region, std::uint32_t accentColor);

    /// The pixels that may differ between two states of a form.
    [[nodiscard]] static std::vector<QRect>
    changedRects(const Form& before, const ControlFeedback& feedbackBefore, const Form& after,
                 const ControlFeedback& feedbackAfter, double viewHeight);

private:
    /// A button as it was painted last: shadows are costly, and most pictures change something else.
    struct Rendering {
        Control control;
        bool isHovered = false;
        bool isPressed = false;
        std::uint32_t accentColor = 0;
        QImage image;
    };

    [[nodiscard]] const QImage& render(const Control& control, bool isHovered, bool isPressed,
                                       std::uint32_t accentColor);

    QtFonts* fonts_;
    std::vector<Rendering> renderings_;
};

} // namespace tarvex
