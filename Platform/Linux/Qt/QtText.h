#pragma once

#include <string>

namespace tarvex {

/// What the toolkit knows of Unicode; text is UTF-8.
class QtText {
public:
    /// The text in capitals, by the rules of Unicode that hold in every language: the sharp s becomes two
    /// letters.
    [[nodiscard]] static std::string upperCased(const std::string& text);
};

} // namespace tarvex
