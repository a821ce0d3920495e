#pragma once

#include "App/Toolkit/Scene.h"
#include "Core/Geometry.h"

#include <string>

namespace tarvex {

/// Port: how large text is on the screen. Nothing throws.
class TextMeasurer {
public:
    TextMeasurer() = default;
    TextMeasurer(const TextMeasurer&) = delete;
    TextMeasurer& operator=(const TextMeasurer&) = delete;
    TextMeasurer(TextMeasurer&&) = delete;
    TextMeasurer& operator=(TextMeasurer&&) = delete;
    virtual ~TextMeasurer() = default;

    /// The box of one line of text (UTF-8) in points: its advance, and the line height of the font. Cheap
    /// enough to be asked for every label of a picture.
    [[nodiscard]] virtual Size sizeOfText(const std::string& text, const Font& font) = 0;
};

} // namespace tarvex
