#include "Platform/Linux/Qt/ViewPicture.h"

#include "Platform/Linux/Qt/SceneDamage.h"

#include <QPainter>

#include <cstring>
#include <utility>

namespace tarvex {

namespace {

constexpr std::size_t pixelSize = 4;

} // namespace

ViewPicture::ViewPicture(QSize size, QImage ground, QtFonts& fonts)
    : ground_(ground.isNull() ? QImage() : ground.convertToFormat(QImage::Format_RGB32)),
      image_(size, ground.isNull() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32),
      fonts_(&fonts),
      scenePainter_(fonts),
      formPainter_(fonts) {}

QRegion ViewPicture::paint(Scene scene, Form form, ControlFeedback feedback, std::uint32_t accentColor) {
    const QRegion region = findChanges(scene, form, feedback, accentColor);
    scene_ = std::move(scene);
    form_ = std::move(form);
    feedback_ = std::move(feedback);
    accentColor_ = accentColor;
    isPainted_ = true;
    if (region.isEmpty()) {
        return region;
    }
    restoreGround(region);
    scenePainter_.paint(image_, scene_, region, accentColor_);
    QPainter painter(&image_);
    formPainter_.paint(painter, form_, feedback_, image_.height(), region, accentColor_);
    return region;
}

QRegion ViewPicture::findChanges(const Scene& scene, const Form& form, const ControlFeedback& feedback,
                                 std::uint32_t accentColor) {
    const QRect area = image_.rect();
    if (!isPainted_ || accentColor != accentColor_) {
        return area;
    }
    const double height = image_.height();
    return changedRegion(scene_, scene, height, area, *fonts_) +
           regionOfRects(FormPainter::changedRects(form_, feedback_, form, feedback, height), area);
}

void ViewPicture::restoreGround(const QRegion& region) {
    // Row by row: a painter would find out anew for every rectangle how to composite it.
    const auto stride = static_cast<std::size_t>(image_.bytesPerLine());
    const std::uint8_t* from = ground_.isNull() ? nullptr : ground_.constBits();
    std::uint8_t* to = image_.bits();
    for (const QRect& rect : region) {
        const std::size_t length = static_cast<std::size_t>(rect.width()) * pixelSize;
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            const std::size_t start =
                static_cast<std::size_t>(y) * stride + static_cast<std::size_t>(rect.left()) * pixelSize;
            if (from == nullptr) {
                std::memset(to + start, 0, length);
            } else {
                std::memcpy(to + start, from + start, length);
            }
        }
    }
}

} // namespace tarvex
