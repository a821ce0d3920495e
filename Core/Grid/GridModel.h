#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvex {

/// A position in the unit square of one display's visible frame: origin top-left, x right, y down.
class NormalizedPoint {
public:
    NormalizedPoint(double x, double y) : x_(x), y_(y) {}

    [[nodiscard]] double x() const { return x_; }

    [[nodiscard]] double y() const { return y_; }

    /// Exact comparison, without a tolerance.
    bool operator==(const NormalizedPoint&) const = default;

private:
    double x_;
    double y_;
};

/// A rectangle in the unit square, given by its top-left corner and its extent. Values are kept as given.
class NormalizedRect {
public:
    NormalizedRect(double x, double y, double width, double height)
        : x_(x), y_(y), width_(width), height_(height) {}

    [[nodiscard]] double x() const { return x_; }

    [[nodiscard]] double y() const { return y_; }

    [[nodiscard]] double width() const { return width_; }

    [[nodiscard]] double height() const { return height_; }

    /// The right edge.
    [[nodiscard]] double maxX() const { return x_ + width_; }

    /// The bottom edge.
    [[nodiscard]] double maxY() const { return y_ + height_; }

    /// Exact comparison, without a tolerance.
    bool operator==(const NormalizedRect&) const = default;

private:
    double x_;
    double y_;
    double width_;
    double height_;
};

/// One zone of a grid: its row (0 at the top), its column (0 at the left) and its area.
class GridCell {
public:
    GridCell(std::int64_t rowIndex, std::int64_t columnIndex, NormalizedRect rect)
        : rowIndex_(rowIndex), columnIndex_(columnIndex), rect_(rect) {}

    [[nodiscard]] std::int64_t rowIndex() const { return rowIndex_; }

    [[nodiscard]] std::int64_t columnIndex() const { return columnIndex_; }

    [[nodiscard]] const NormalizedRect& rect() const { return rect_; }

    bool operator==(const GridCell&) const = default;

private:
    std::int64_t rowIndex_;
    std::int64_t columnIndex_;
    NormalizedRect rect_;
};

/// The name of a cell in frame maps and selections: "r" + row + "-c" + column, both decimal.
[[nodiscard]] std::string makeCellKey(const GridCell& cell);

/// One zone layout, as stored in the configuration. Immutable and shared by reference: an edit makes a new
/// object, and identity tells whether an operation changed anything. The split lists are kept exactly as
/// given; whoever uses them cleans them first (see GridSplitNormalizer).
class GridDefinition {
public:
    /// @param id the identity of the grid, the only field that equality looks at
    /// @param name a description for people
    /// @param verticalSplits the x of each line between two columns
    /// @param horizontalSplits the y of each line between two rows
    GridDefinition(std::string id, std::string name, std::vector<double> verticalSplits,
                   std::vector<double> horizontalSplits);

    [[nodiscard]] const std::string& id() const { return id_; }

    [[nodiscard]] const std::string& name() const { return name_; }

    [[nodiscard]] const std::vector<double>& verticalSplits() const { return verticalSplits_; }

    [[nodiscard]] const std::vector<double>& horizontalSplits() const { return horizontalSplits_; }

    /// Compares the identity alone, so that an edited copy still equals the grid that it was made from.
    bool operator==(const GridDefinition& other) const { return id_ == other.id_; }

private:
    std::string id_;
    std::string name_;
    std::vector<double> verticalSplits_;
    std::vector<double> horizontalSplits_;
};

using GridDefinitionRef = std::shared_ptr<const GridDefinition>;

/// The two kinds of dividing line: horizontal (constant y) and vertical (constant x).
enum class GridLineOrientation : std::uint8_t { horizontal, vertical };

/// "horizontal" or "vertical".
[[nodiscard]] std::string_view rawValue(GridLineOrientation orientation);

/// The orientation of that exact, case-sensitive name; none for any other text.
[[nodiscard]] std::optional<GridLineOrientation> makeGridLineOrientation(std::string_view rawValue);

} // namespace tarvex
