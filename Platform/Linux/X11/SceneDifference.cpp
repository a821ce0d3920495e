#include "Platform/Linux/X11/SceneDifference.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace tarvex {

namespace {

PixelColor over(PixelColor source, PixelColor below) {
    const PixelColor rest = 255 - (source >> 24U);
    PixelColor result = 0;
    for (const unsigned shift : {0U, 8U, 16U, 24U}) {
        const PixelColor channel = (source >> shift & 0xFFU) + ((below >> shift & 0xFFU) * rest + 127) / 255;
        result |= std::min<PixelColor>(channel, 0xFF) << shift;
    }
    return result;
}

/// What lies outside the fills that both pictures begin and end with is the same in both.
PixelRect boundsOfDifference(const std::vector<PixelFill>& before, const std::vector<PixelFill>& after) {
    const auto [beforeFirst, afterFirst] =
        std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const auto [beforeLast, afterLast] =
        std::mismatch(before.rbegin(), std::make_reverse_iterator(beforeFirst), after.rbegin(),
                      std::make_reverse_iterator(afterFirst));
    PixelRect result;
    for (auto fill = beforeFirst; fill != beforeLast.base(); ++fill) {
        result = boundsOf(result, fill->rect);
    }
    for (auto fill = afterFirst; fill != afterLast.base(); ++fill) {
        result = boundsOf(result, fill->rect);
    }
    return result;
}

/// One direction cut at every edge of every fill, so that a colour never changes within a cell.
class Axis {
public:
    Axis(int start, int length) : start_(start), cellAt_(static_cast<std::size_t>(length) + 1) {}

    void cut(int position) { cellAt_[offset(position)] = 1; }

    void finish() {
        cut(start_);
        cellAt_.back() = 1;
        std::size_t count = 0;
        for (std::size_t index = 0; index < cellAt_.size(); ++index) {
            if (cellAt_[index] != 0) {
                edges_.push_back(start_ + static_cast<int>(index));
                cellAt_[index] = count++;
            }
        }
    }

    /// The cell that starts at a position that was cut.
    [[nodiscard]] std::size_t cell(int position) const { return cellAt_[offset(position)]; }

    [[nodiscard]] std::size_t cellCount() const { return edges_.size() - 1; }

    [[nodiscard]] int edge(std::size_t cell) const { return edges_[cell]; }

private:
    [[nodiscard]] std::size_t offset(int position) const {
        return static_cast<std::size_t>(position - start_);
    }

    int start_;
    std::vector<std::size_t> cellAt_;
    std::vector<int> edges_;
};

/// Finds the changed cells of an area and joins them to rectangles.
class Comparison {
public:
    explicit Comparison(const PixelRect& area)
        : area_(area), columns_(area.x, area.width), rows_(area.y, area.height) {}

    [[nodiscard]] std::vector<PixelFill> run(const std::vector<PixelFill>& before,
                                             const std::vector<PixelFill>& after) {
        const std::vector<PixelFill> clippedBefore = clip(before);
        const std::vector<PixelFill> clippedAfter = clip(after);
        columns_.finish();
        rows_.finish();
        const std::vector<PixelColor> oldCells = paint(clippedBefore);
        const std::vector<PixelColor> newCells = paint(clippedAfter);
        for (std::size_t row = 0; row < rows_.cellCount(); ++row) {
            joinRow(row, &oldCells[row * columns_.cellCount()], &newCells[row * columns_.cellCount()]);
        }
        std::move(open_.begin(), open_.end(), std::back_inserter(done_));
        std::stable_sort(done_.begin(), done_.end(), [](const PixelFill& one, const PixelFill& other) {
            return one.color < other.color;
        });
        return std::move(done_);
    }

private:
    std::vector<PixelFill> clip(const std::vector<PixelFill>& fills) {
        std::vector<PixelFill> result;
        for (const PixelFill& fill : fills) {
            const PixelRect rect = intersectionOf(fill.rect, area_);
            if (rect.isEmpty()) {
                continue;
            }
            columns_.cut(rect.x);
            columns_.cut(rect.right());
            rows_.cut(rect.y);
            rows_.cut(rect.bottom());
            result.push_back({rect, fill.color});
        }
        return result;
    }

    [[nodiscard]] std::vector<PixelColor> paint(const std::vector<PixelFill>& fills) const {
        const std::size_t width = columns_.cellCount();
        std::vector<PixelColor> cells(width * rows_.cellCount());
        for (const PixelFill& fill : fills) {
            const std::size_t left = columns_.cell(fill.rect.x);
            const std::size_t right = columns_.cell(fill.rect.right());
            const std::size_t bottom = rows_.cell(fill.rect.bottom());
            for (std::size_t row = rows_.cell(fill.rect.y); row < bottom; ++row) {
                for (std::size_t index = row * width + left; index < row * width + right; ++index) {
                    cells[index] = over(fill.color, cells[index]);
                }
            }
        }
        return cells;
    }

    /// Runs of changed cells of one colour; a run right below an equal one makes that one taller.
    void joinRow(std::size_t row, const PixelColor* oldCells, const PixelColor* newCells) {
        std::vector<PixelFill> current;
        auto above = open_.begin();
        const int top = rows_.edge(row);
        const int height = rows_.edge(row + 1) - top;
        for (std::size_t column = 0; column < columns_.cellCount();) {
            const PixelColor color = newCells[column];
            if (oldCells[column] == color) {
                ++column;
                continue;
            }
            const int left = columns_.edge(column);
            while (column < columns_.cellCount() && newCells[column] == color && oldCells[column] != color) {
                ++column;
            }
            const int width = columns_.edge(column) - left;
            for (; above != open_.end() && above->rect.x < left; ++above) {
                done_.push_back(*above);
            }
            if (above != open_.end() && above->rect.x == left && above->rect.width == width &&
                above->color == color) {
                above->rect.height += height;
                current.push_back(*above++);
            } else {
                current.push_back({{left, top, width, height}, color});
            }
        }
        std::move(above, open_.end(), std::back_inserter(done_));
        open_ = std::move(current);
    }

    PixelRect area_;
    Axis columns_;
    Axis rows_;
    /// Rectangles that end at the row reached, from left to right.
    std::vector<PixelFill> open_;
    std::vector<PixelFill> done_;
};

} // namespace

std::vector<PixelFill> changedPixels(const std::vector<PixelFill>& before,
                                     const std::vector<PixelFill>& after, const PixelRect& area) {
    const PixelRect changed = intersectionOf(boundsOfDifference(before, after), area);
    return changed.isEmpty() ? std::vector<PixelFill>() : Comparison(changed).run(before, after);
}

std::vector<PixelFill> visiblePixels(const std::vector<PixelFill>& picture, const PixelRect& area) {
    return changedPixels({}, picture, area);
}

} // namespace tarvex
