#pragma once

#include "App/Toolkit/TextMeasurer.h"
#include "Platform/Linux/Qt/QtFonts.h"

namespace tarvex {

/// Measures text as it is drawn: by the same fonts.
class QtTextMeasurer final : public TextMeasurer {
public:
    /// The fonts, which the painters share, must outlive the measurer.
    explicit QtTextMeasurer(QtFonts& fonts) : fonts_(&fonts) {}

    [[nodiscard]] Size sizeOfText(const std::string& text, const Font& font) override {
        return fonts_->layOut(text, font).size;
    }

private:
    QtFonts* fonts_;
};

} // namespace tarvex
