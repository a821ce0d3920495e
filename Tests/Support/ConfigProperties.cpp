#include "Tests/Support/ConfigProperties.h"

#include "Core/Configuration/JsonCoding.h"
#include "Core/Grid/CellFrameCalculator.h"
#include "Core/Grid/GridCalculator.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace tarvex {

namespace {

constexpr double tolerance = 1e-9;
// A grid of more zones than this takes longer than the search has for one input.
constexpr std::uint64_t maxZones = 20'000;
constexpr std::size_t longestMessage = 400;

bool haveSameContent(const GridDefinition& first, const GridDefinition& second) {
    return first.id() == second.id() && first.name() == second.name() &&
           first.verticalSplits() == second.verticalSplits() &&
           first.horizontalSplits() == second.horizontalSplits();
}

std::optional<std::string> findBrokenCellRule(const std::vector<GridCell>& cells) {
    double area = 0;
    for (const GridCell& cell : cells) {
        const NormalizedRect& rect = cell.rect();
        const bool isInside =
            rect.x() >= 0 && rect.y() >= 0 && rect.maxX() <= 1 + tolerance && rect.maxY() <= 1 + tolerance;
        if (!isInside) {
            return "the cell " + makeCellKey(cell) + " leaves the unit square";
        }
        const bool hasArea = rect.width() > 0 && rect.height() > 0;
        if (!hasArea) {
            return "the cell " + makeCellKey(cell) + " has no area";
        }
        area += rect.width() * rect.height();
    }
    return std::abs(area - 1) > tolerance
               ? std::optional<std::string>("the cells do not fill the unit square")
               : std::nullopt;
}

std::optional<std::string> findBrokenFrameRule(const std::vector<GridCell>& cells, double margin) {
    const Rect visible{-1280, 25, 1280, 775};
    const CellFrameMap frames =
        CellFrameCalculator(CoordinateTransformer()).getCellFrames(cells, visible, margin);
    if (frames.size() != cells.size()) {
        return "there is not one frame for each cell";
    }
    for (const auto& [key, frame] : frames) {
        const bool hasExtent = frame.width >= 0 && frame.height >= 0;
        if (!hasExtent) {
            return "the frame " + key + " has a negative extent";
        }
        const bool isInside =
            frame.minX() >= visible.minX() - tolerance && frame.maxX() <= visible.maxX() + tolerance &&
            frame.minY() >= visible.minY() - tolerance && frame.maxY() <= visible.maxY() + tolerance;
        if (margin >= 0 && !frame.isEmpty() && !isInside) {
            return "the frame " + key + " leaves the visible frame";
        }
    }
    return std::nullopt;
}

std::optional<std::string> findBrokenGridRule(const GridDefinition& grid, double margin) {
    if (GridCalculator::hasMoreCellsThan(maxZones, grid)) {
        return std::nullopt;
    }
    const GridCalculator calculator{GridSplitNormalizer(GridSplitNormalizer::standardEpsilon)};
    const std::vector<GridCell> cells = calculator.getCells(grid);
    const std::optional<std::string> broken = findBrokenCellRule(cells);
    return broken ? broken : findBrokenFrameRule(cells, margin);
}

std::optional<std::string> findBrokenMessageRule(std::string_view message) {
    const auto isPrintable = [](char character) { return character >= ' ' && character <= '~'; };
    const bool isShortLine = !message.empty() && message.size() <= longestMessage &&
                             std::all_of(message.begin(), message.end(), isPrintable);
    return isShortLine ? std::nullopt : std::optional<std::string>("the message is not one short line");
}

std::optional<std::string> findBrokenRecordRule(const TarvexConfig& config) {
    const std::string encoded = encodeTarvexConfig(config);
    if (!haveSameFields(*decodeTarvexConfig(encoded), config)) {
        return "encoding and decoding changed the record";
    }
    if (encodeTarvexConfig(*decodeTarvexConfig(encoded)) != encoded) {
        return "a second encoding differs from the first";
    }
    for (const GridDefinitionRef& grid : config.grids()) {
        if (auto broken = findBrokenGridRule(*grid, config.cellMarginPoints())) {
            return broken;
        }
    }
    return std::nullopt;
}

} // namespace

bool haveSameFields(const TarvexConfig& first, const TarvexConfig& second) {
    return std::equal(first.grids().begin(), first.grids().end(), second.grids().begin(),
                      second.grids().end(),
                      [](const auto& left, const auto& right) { return haveSameContent(*left, *right); }) &&
           first.defaultGridByDisplayId() == second.defaultGridByDisplayId() &&
           first.cellMarginPoints() == second.cellMarginPoints() &&
           first.openEditorHotkey() == second.openEditorHotkey() &&
           first.openPreferencesHotkey() == second.openPreferencesHotkey() &&
           first.singleSnapModifiers() == second.singleSnapModifiers() &&
           first.multiSnapModifiers() == second.multiSnapModifiers() &&
           first.launchAtLogin() == second.launchAtLogin() &&
           first.hideMenuBarIcon() == second.hideMenuBarIcon() &&
           first.restoreWindowSizeOnUnsnap() == second.restoreWindowSizeOnUnsnap();
}

std::optional<std::string> findBrokenConfigRule(std::string_view text) {
    TarvexConfigRef config;
    try {
        config = decodeTarvexConfig(std::string(text));
    } catch (const DecodingError& error) {
        return findBrokenMessageRule(error.what());
    }
    return findBrokenRecordRule(*config);
}

} // namespace tarvex
