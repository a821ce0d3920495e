#pragma once

#include "Core/Geometry.h"

#include <nlohmann/json.hpp>

#include <string>
#include <utility>
#include <vector>

namespace tarvex {

/// What happened on the simulated desktop, one line for each thing, in its order across all ports.
class Journal {
public:
    void note(std::string entry) { entries_.push_back(std::move(entry)); }

    [[nodiscard]] const std::vector<std::string>& entries() const { return entries_; }

    /// Everything since the last take.
    std::vector<std::string> take() { return std::exchange(entries_, {}); }

    /// The entries that begin with one of the words.
    [[nodiscard]] std::vector<std::string> about(const std::vector<std::string>& words) const {
        std::vector<std::string> found;
        for (const std::string& entry : entries_) {
            for (const std::string& word : words) {
                if (entry.starts_with(word)) {
                    found.push_back(entry);
                    break;
                }
            }
        }
        return found;
    }

    void clear() { entries_.clear(); }

private:
    std::vector<std::string> entries_;
};

/// A short text that reads back as the same number; whole ones without a fraction.
inline std::string describe(double number) {
    std::string text = nlohmann::json(number).dump();
    if (text.ends_with(".0")) {
        text.resize(text.size() - 2);
    }
    return text;
}

inline std::string describe(Point point) {
    return describe(point.x).append(",").append(describe(point.y));
}

inline std::string describe(Size size) {
    return describe(size.width).append("x").append(describe(size.height));
}

} // namespace tarvex
