#include "Platform/Linux/X11/XTileAreas.h"

#include "Platform/Linux/X11/MonitorReader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace tarvex {

XTileAreas::XTileAreas(XConnection& connection) {
    // Four words for each desktop.
    const std::vector<std::uint32_t> workAreas =
        readPropertyWords(connection, connection.root(), connection.atom("_NET_WORKAREA")).words;
    const MonitorList list = readMonitors(connection, serverListsMonitors(connection));
    for (const Monitor& monitor : list.monitors) {
        Area area;
        // Each edge by itself may be the monitor's: the work area leaves out a panel's strip on all monitors.
        const auto add = [](std::vector<Span>& spans, Span whole, Span part) {
            for (const int start : {whole.start, part.start}) {
                for (const int end : {whole.end, part.end}) {
                    spans.push_back({start, end});
                }
            }
        };
        const auto addPart = [&](const PixelRect& part) {
            add(area.columns, {monitor.area.x, monitor.area.right()}, {part.x, part.right()});
            add(area.rows, {monitor.area.y, monitor.area.bottom()}, {part.y, part.bottom()});
        };
        addPart(monitor.area);
        for (std::size_t index = 0; index + 3 < workAreas.size(); index += 4) {
            // Nothing that a window manager writes there may carry the arithmetic beyond what X can express.
            const auto word = [&](std::size_t offset) {
                constexpr std::uint32_t widest = std::numeric_limits<std::int16_t>::max();
                return static_cast<int>(std::min(workAreas[index + offset], widest));
            };
            const PixelRect part =
                intersectionOf(monitor.area, PixelRect{word(0), word(1), word(2), word(3)});
            if (!part.isEmpty()) {
                addPart(part);
            }
        }
        areas_.push_back(std::move(area));
    }
}

bool XTileAreas::isTile(const PixelRect& frame, const Steps& steps) const {
    return std::any_of(areas_.begin(), areas_.end(), [&](const Area& area) {
        const Fill across = fillOf(area.columns, {frame.x, frame.right()}, steps.width);
        const Fill down = fillOf(area.rows, {frame.y, frame.bottom()}, steps.height);
        // One that fills all of it is as good as maximised, and that would show in its states.
        return across != Fill::none && down != Fill::none && (across == Fill::half || down == Fill::half);
    });
}

XTileAreas::Fill XTileAreas::fillOf(const std::vector<Span>& spans, const Span& frame, int step) {
    for (const Span& span : spans) {
        const int middle = span.start + (span.end - span.start) / 2;
        if (fills({span.start, middle}, frame, step) || fills({middle, span.end}, frame, step)) {
            return Fill::half;
        }
        if (fills(span, frame, step)) {
            return Fill::whole;
        }
    }
    return Fill::none;
}

bool XTileAreas::fills(const Span& span, const Span& frame, int step) {
    const int before = frame.start - span.start;
    const int behind = span.end - frame.end;
    return before >= -1 && behind >= -1 && before + behind <= step;
}

} // namespace tarvex
