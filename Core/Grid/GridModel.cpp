#include "Core/Grid/GridModel.h"

#include <array>
#include <charconv>
#include <utility>

namespace tarvex {

namespace {

void appendDecimal(std::string& text, std::int64_t value) {
    std::array<char, 24> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    text.append(digits.data(), result.ptr);
}

} // namespace

std::string makeCellKey(const GridCell& cell) {
    std::string key = "r";
    appendDecimal(key, cell.rowIndex());
    key += "-c";
    appendDecimal(key, cell.columnIndex());
    return key;
}

GridDefinition::GridDefinition(std::string id, std::string name, std::vector<double> verticalSplits,
                               std::vector<double> horizontalSplits)
    : id_(std::move(id)),
      name_(std::move(name)),
      verticalSplits_(std::move(verticalSplits)),
      horizontalSplits_(std::move(horizontalSplits)) {}

std::string_view rawValue(GridLineOrientation orientation) {
    return orientation == GridLineOrientation::horizontal ? "horizontal" : "vertical";
}

std::optional<GridLineOrientation> makeGridLineOrientation(std::string_view rawValue) {
    if (rawValue == "horizontal") {
        return GridLineOrientation::horizontal;
    }
    if (rawValue == "vertical") {
        return GridLineOrientation::vertical;
    }
    return std::nullopt;
}

} // namespace tarvex
