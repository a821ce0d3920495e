#pragma once

#include "App/Toolkit/TextMeasurer.h"

namespace tarvex {

/// The boxes that the toolkit draws text into. Main thread only.
class AppKitTextMeasurer final : public TextMeasurer {
public:
    [[nodiscard]] Size sizeOfText(const std::string& text, const Font& font) override;
};

} // namespace tarvex
