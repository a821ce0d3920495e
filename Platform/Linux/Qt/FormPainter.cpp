#include "Platform/Linux/Qt/FormPainter.h"

#include "Platform/Linux/Qt/SceneGeometry.h"
#include "Platform/Linux/Qt/ScenePainter.h"

#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <cmath>
#include <optional>

namespace tarvex {

namespace {

constexpr std::size_t maxRenderings = 32;
constexpr double largestShadowRadius = 50;
constexpr double disabledOpacity = 0.5;
/// What QColor takes for a lightness: per cent.
constexpr int hoveredLightness = 118;
constexpr int pressedDarkness = 125;
/// Light greys beyond this carry black titles.
constexpr int lightGray = 140;

ButtonStyle styleOf(const Control& control) {
    return control.buttonStyle.value_or(ButtonStyle{});
}

/// How far the shadow reaches out of the button, in pixels: a blur fades out over twice its radius.
int shadowMarginOf(const Control& control) {
    const ButtonStyle style = styleOf(control);
    if (!style.shadow) {
        return 0;
    }
    const double reach = 2 * std::clamp(style.shadow->radius, 0.0, largestShadowRadius);
    const double offset =
        std::max(std::abs(style.shadow->offset.width), std::abs(style.shadow->offset.height));
    return static_cast<int>(std::ceil(reach + std::min(offset, largestShadowRadius))) + 1;
}

bool isPainted(const Control& control) {
    return control.kind == ControlKind::pushButton && !control.isHidden;
}

QRect frameOf(const Control& control, double viewHeight) {
    return SceneGeometry(viewHeight).pixelsOf(control.frame).value_or(QRect());
}

QRect boundsOf(const Control& control, double viewHeight) {
    const int margin = shadowMarginOf(control);
    return frameOf(control, viewHeight).adjusted(-margin, -margin, margin, margin);
}

/// Paints one button with its shadow; the button's frame lies at the shadow's margin.
class ButtonPainter {
public:
    ButtonPainter(QPainter& painter, const Control& control, const QRect& frame, std::uint32_t accentColor)
        : painter_(&painter),
          control_(&control),
          style_(styleOf(control)),
          frame_(frame),
          accentColor_(accentColor) {}

    void paint(bool isHovered, bool isPressed, QtFonts& fonts) {
        QColor background = backgroundColor();
        if (isPressed) {
            background = background.darker(pressedDarkness);
        } else if (isHovered) {
            // Of a dark grey a percentage would not be seen.
            background = background.lightness() < lightGray / 2 ? mixedWithWhite(background)
                                                                : background.lighter(hoveredLightness);
        }
        if (style_.shadow) {
            paintShadow(*style_.shadow);
        }
        painter_->setPen(Qt::NoPen);
        painter_->setBrush(background);
        painter_->drawRoundedRect(QRectF(frame_), style_.cornerRadius, style_.cornerRadius);
        if (style_.borderColor && style_.borderWidth > 0) {
            paintBorder();
        }
        paintTitle(fonts, titleColor(background));
    }

private:
    static QColor mixedWithWhite(const QColor& color) {
        constexpr int step = 28;
        return {std::min(color.red() + step, 255), std::min(color.green() + step, 255),
                std::min(color.blue() + step, 255), color.alpha()};
    }

    [[nodiscard]] QColor backgroundColor() const {
        const std::optional<Color>& color =
            style_.backgroundColor ? style_.backgroundColor : style_.bezelColor;
        return color ? qtColorOf(*color, accentColor_) : QGuiApplication::palette().color(QPalette::Button);
    }

    [[nodiscard]] QColor titleColor(const QColor& background) const {
        const std::optional<Color>& color = style_.titleColor ? style_.titleColor : style_.contentTintColor;
        if (color) {
            return qtColorOf(*color, accentColor_);
        }
        return qGray(background.rgb()) > lightGray ? Qt::black : Qt::white;
    }

    /// Rings from the outside in, each of which brings the shadow to what a blurred edge has there.
    void paintShadow(const ControlShadow& shadow) {
        const double radius = std::clamp(shadow.radius, 0.0, largestShadowRadius);
        const double strength =
            std::clamp(shadow.opacity, 0.0, 1.0) * std::clamp(shadow.color.alpha, 0.0, 1.0);
        const QRectF base = QRectF(frame_).translated(shadow.offset.width, -shadow.offset.height);
        QColor color = qtColorOf(shadow.color, accentColor_);
        double covered = 0;
        for (double distance = 2 * radius; distance >= -2 * radius; distance -= 1) {
            const double wanted =
                radius > 0 ? strength * 0.5 * std::erfc(distance / (radius * std::sqrt(2.0))) : strength;
            color.setAlphaF(static_cast<float>((wanted - covered) / (1 - covered)));
            covered = wanted;
            const QRectF ring = base.adjusted(-distance, -distance, distance, distance);
            if (ring.isEmpty()) {
                break;
            }
            const double corner = std::max(style_.cornerRadius + distance, 0.0);
            painter_->setPen(Qt::NoPen);
            painter_->setBrush(color);
            painter_->drawRoundedRect(ring, corner, corner);
        }
    }

    void paintBorder() {
        const double inset = style_.borderWidth / 2;
        const double corner = std::max(style_.cornerRadius - inset, 0.0);
        painter_->setPen(QPen(qtColorOf(*style_.borderColor, accentColor_), style_.borderWidth));
        painter_->setBrush(Qt::NoBrush);
        painter_->drawRoundedRect(QRectF(frame_).adjusted(inset, inset, -inset, -inset), corner, corner);
    }

    void paintTitle(QtFonts& fonts, const QColor& color) {
        const TextRun& run = fonts.layOut(control_->text, control_->font);
        const int left = frame_.x() + (frame_.width() - static_cast<int>(run.size.width)) / 2;
        const int top = frame_.y() + (frame_.height() - static_cast<int>(run.size.height)) / 2;
        const int baseline = top + static_cast<int>(run.size.height - run.descent);
        painter_->setPen(color);
        for (const QGlyphRun& glyphs : run.glyphs) {
            painter_->drawGlyphRun(QPointF(left, baseline), glyphs);
        }
    }

    QPainter* painter_;
    const Control* control_;
    ButtonStyle style_;
    QRect frame_;
    std::uint32_t accentColor_;
};

} // namespace

void FormPainter::paint(QPainter& painter, const Form& form, const ControlFeedback& feedback,
                        double viewHeight, const QRegion& region, std::uint32_t accentColor) {
    painter.save();
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setClipRegion(region);
    for (const Control& control : form.controls) {
        const QRect bounds = boundsOf(control, viewHeight);
        if (!isPainted(control) || bounds.isEmpty() || !region.intersects(bounds)) {
            continue;
        }
        const bool isPressed = feedback.pressed == control.id;
        const bool isHovered = feedback.hovered == control.id;
        painter.setOpacity(std::clamp(styleOf(control).alpha, 0.0, 1.0) *
                           (control.isEnabled ? 1 : disabledOpacity));
        painter.drawImage(bounds.topLeft(), render(control, isHovered, isPressed, accentColor));
    }
    painter.restore();
}

const QImage& FormPainter::render(const Control& control, bool isHovered, bool isPressed,
                                  std::uint32_t accentColor) {
    const auto known = std::find_if(renderings_.begin(), renderings_.end(), [&](const Rendering& rendering) {
        return rendering.control == control && rendering.isHovered == isHovered &&
               rendering.isPressed == isPressed && rendering.accentColor == accentColor;
    });
    if (known != renderings_.end()) {
        return known->image;
    }
    if (renderings_.size() >= maxRenderings) {
        renderings_.clear();
    }
    const int margin = shadowMarginOf(control);
    const QRect frame(QPoint(margin, margin), frameOf(control, 0).size());
    QImage image(frame.size() + QSize(2 * margin, 2 * margin), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    ButtonPainter(painter, control, frame, accentColor).paint(isHovered, isPressed, *fonts_);
    painter.end();
    return renderings_.emplace_back(Rendering{control, isHovered, isPressed, accentColor, image}).image;
}

std::vector<QRect> FormPainter::changedRects(const Form& before, const ControlFeedback& feedbackBefore,
                                             const Form& after, const ControlFeedback& feedbackAfter,
                                             double viewHeight) {
    std::vector<QRect> rects;
    const std::size_t count = std::max(before.controls.size(), after.controls.size());
    for (std::size_t index = 0; index < count; ++index) {
        const Control* was = index < before.controls.size() ? &before.controls[index] : nullptr;
        const Control* is = index < after.controls.size() ? &after.controls[index] : nullptr;
        const bool isSame = was != nullptr && is != nullptr && *was == *is &&
                            (feedbackBefore.hovered == was->id) == (feedbackAfter.hovered == is->id) &&
                            (feedbackBefore.pressed == was->id) == (feedbackAfter.pressed == is->id);
        for (const Control* control : {was, is}) {
            if (!isSame && control != nullptr && isPainted(*control)) {
                rects.push_back(boundsOf(*control, viewHeight));
            }
        }
    }
    return rects;
}

} // namespace tarvex
