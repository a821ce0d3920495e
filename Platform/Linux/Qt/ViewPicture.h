#pragma once

#include "App/Toolkit/Form.h"
#include "App/Toolkit/Scene.h"
#include "Platform/Linux/Qt/FormPainter.h"
#include "Platform/Linux/Qt/QtFonts.h"
#include "Platform/Linux/Qt/ScenePainter.h"

#include <QImage>
#include <QRegion>
#include <QSize>

#include <cstdint>

namespace tarvex {

/// The pixels of a view, of which each new picture paints only what it changes. One point is one pixel.
class ViewPicture {
public:
    /// @param ground what lies under the scene, an opaque picture of that size; null to see through
    /// @param fonts must outlive the picture
    ViewPicture(QSize size, QImage ground, QtFonts& fonts);

    /// Paints what differs from the last picture, and gives the pixels that may have changed. The first
    /// picture is painted whole.
    /// @param accentColor 0xRRGGBB
    QRegion paint(Scene scene, Form form, ControlFeedback feedback, std::uint32_t accentColor);

    /// 32 bits a pixel, 0xAARRGGBB: premultiplied without a ground, else opaque whatever the alpha says.
    [[nodiscard]] const QImage& image() const { return image_; }

private:
    [[nodiscard]] QRegion findChanges(const Scene& scene, const Form& form, const ControlFeedback& feedback,
                                      std::uint32_t accentColor);
    void restoreGround(const QRegion& region);

    QImage ground_;
    QImage image_;
    QtFonts* fonts_;
    ScenePainter scenePainter_;
    FormPainter formPainter_;
    bool isPainted_ = false;
    Scene scene_;
    Form form_;
    ControlFeedback feedback_;
    std::uint32_t accentColor_ = 0;
};

} // namespace tarvex
