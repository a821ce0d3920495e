#include "Platform/Linux/Qt/SceneDamage.h"

#include "Platform/Linux/Qt/SceneGeometry.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>

namespace tarvex {

namespace {

constexpr std::size_t maxRects = 4000;
constexpr std::size_t none = static_cast<std::size_t>(-1);

/// A number that equal primitives share, and different ones as a rule do not.
class Fingerprint {
public:
    static std::size_t of(const ScenePrimitive& primitive) {
        Fingerprint result;
        result.mix(primitive.index());
        std::visit([&result](const auto& shape) { result.add(shape); }, primitive);
        return result.value_;
    }

private:
    template <typename Shape>
    void add(const Shape& shape)
        requires requires { shape.rect; }
    {
        mixNumbers({shape.rect.x, shape.rect.y, shape.rect.width, shape.rect.height, shape.color.alpha});
    }

    void add(const StrokeLine& line) {
        mixNumbers({line.start.x, line.start.y, line.end.x, line.end.y, line.color.alpha, line.lineWidth});
    }

    void add(const TextLabel& label) {
        mixNumbers({label.origin.x, label.origin.y});
        mix(std::hash<std::string>()(label.text));
    }

    void mixNumbers(std::initializer_list<double> numbers) {
        for (const double number : numbers) {
            mix(std::hash<double>()(number));
        }
    }

    void mix(std::size_t part) {
        value_ ^= part + static_cast<std::size_t>(0x9E3779B97F4A7C15U) + (value_ << 6U) + (value_ >> 2U);
    }

    std::size_t value_ = 0;
};

using Primitives = std::span<const ScenePrimitive>;

/// For each of the second, the place of its own equal in the first; none if there is none.
std::vector<std::size_t> findPartners(Primitives first, Primitives second) {
    std::unordered_multimap<std::size_t, std::size_t> places;
    places.reserve(first.size());
    for (std::size_t index = 0; index < first.size(); ++index) {
        places.emplace(Fingerprint::of(first[index]), index);
    }
    std::vector<std::size_t> partners(second.size(), none);
    for (std::size_t index = 0; index < second.size(); ++index) {
        const auto [begin, end] = places.equal_range(Fingerprint::of(second[index]));
        const auto found =
            std::find_if(begin, end, [&](const auto& place) { return first[place.second] == second[index]; });
        if (found != end) {
            partners[index] = found->second;
            places.erase(found);
        }
    }
    return partners;
}

/// Leaves out as few partners as possible so that the remaining ones come in the order of the first.
void keepOrdered(std::vector<std::size_t>& partners) {
    // For each length of an ascending choice, where the one with the smallest end has that end.
    std::vector<std::size_t> ends;
    std::vector<std::size_t> predecessors(partners.size(), none);
    for (std::size_t index = 0; index < partners.size(); ++index) {
        if (partners[index] == none) {
            continue;
        }
        const auto place =
            std::lower_bound(ends.begin(), ends.end(), partners[index],
                             [&](std::size_t end, std::size_t value) { return partners[end] < value; });
        predecessors[index] = place == ends.begin() ? none : *(place - 1);
        if (place == ends.end()) {
            ends.push_back(index);
        } else {
            *place = index;
        }
    }
    std::vector<std::size_t> kept(partners.size(), none);
    for (std::size_t index = ends.empty() ? none : ends.back(); index != none; index = predecessors[index]) {
        kept[index] = partners[index];
    }
    partners = std::move(kept);
}

/// Halving keeps the parts small while they are put together.
QRegion united(std::span<const QRect> rects) {
    if (rects.size() <= 1) {
        return rects.empty() ? QRegion() : QRegion(rects.front());
    }
    const std::size_t half = rects.size() / 2;
    return united(rects.first(half)) + united(rects.subspan(half));
}

} // namespace

QRegion regionOfRects(std::vector<QRect> rects, const QRect& area) {
    for (QRect& rect : rects) {
        rect &= area;
    }
    std::erase_if(rects, [](const QRect& rect) { return rect.isEmpty(); });
    if (rects.size() > maxRects) {
        return area;
    }
    std::sort(rects.begin(), rects.end(), [](const QRect& one, const QRect& other) {
        return one.y() != other.y() ? one.y() < other.y() : one.x() < other.x();
    });
    return united(rects);
}

QRegion changedRegion(const Scene& before, const Scene& after, double viewHeight, const QRect& area,
                      QtFonts& fonts) {
    Primitives first(before.primitives);
    Primitives second(after.primitives);
    const auto [end, otherEnd] = std::mismatch(first.begin(), first.end(), second.begin(), second.end());
    const auto same = static_cast<std::size_t>(end - first.begin());
    first = first.subspan(same);
    second = second.subspan(same);
    while (!first.empty() && !second.empty() && first.back() == second.back()) {
        first = first.first(first.size() - 1);
        second = second.first(second.size() - 1);
    }

    std::vector<std::size_t> partners = findPartners(first, second);
    keepOrdered(partners);
    std::vector<bool> isKept(first.size(), false);
    std::vector<QRect> rects;
    const SceneGeometry geometry(viewHeight);
    const auto add = [&](const ScenePrimitive& primitive) {
        const std::vector<QRect> bounds = geometry.boundsOf(primitive, fonts);
        rects.insert(rects.end(), bounds.begin(), bounds.end());
    };
    for (std::size_t index = 0; index < second.size(); ++index) {
        if (partners[index] == none) {
            add(second[index]);
        } else {
            isKept[partners[index]] = true;
        }
    }
    for (std::size_t index = 0; index < first.size(); ++index) {
        if (!isKept[index]) {
            add(first[index]);
        }
    }
    return regionOfRects(std::move(rects), area);
}

} // namespace tarvex
