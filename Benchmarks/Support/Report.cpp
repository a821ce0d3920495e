#include "Benchmarks/Support/Report.h"

#include <cstdio>

namespace tarvex::benchmark {

namespace {

constexpr Unit times{"x", 1, 2};

std::string padded(std::string text, std::size_t width) {
    if (text.size() < width) {
        text.append(width - text.size(), ' ');
    }
    return text;
}

std::string rightAligned(const std::string& text, std::size_t width) {
    return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::string row(std::string_view name, const std::string& median, const std::string& percentile95,
                const std::string& runs, const std::string& ratios, const std::string& goal) {
    return "  " + padded(std::string(name), 44) + rightAligned(median, 12) + rightAligned(percentile95, 12) +
           rightAligned(runs, 7) + rightAligned(ratios, 16) + "  " + goal;
}

void print(const std::string& text) {
    std::printf("%s\n", text.c_str());
    std::fflush(stdout);
}

double ratio(double value, double floor) {
    return floor > 0 ? value / floor : 0;
}

// One limit of a goal: adds it to the text and says whether the value keeps to it.
bool meets(std::string& text, const std::optional<double>& limit, double value, const char* what, Unit unit) {
    if (!limit) {
        return true;
    }
    text += (text.empty() ? "" : ", ") + std::string(what) + " <= " + format(*limit, unit);
    return value <= *limit;
}

} // namespace

std::string format(double value, Unit unit) {
    char text[64];
    const char* space = std::string_view(unit.name) == "x" || std::string_view(unit.name).empty() ? "" : " ";
    std::snprintf(text, sizeof(text), "%.*f%s%s", unit.decimals, value * unit.scale, space, unit.name);
    return text;
}

void Report::begin(std::string_view title, std::string_view meaning) {
    print("");
    print(std::string(title));
    print(std::string(meaning));
    print(row("", "median", "p95", "runs", "x floor (p95)", "goal"));
}

void Report::line(std::string_view name, const Samples& samples, Unit unit) {
    line(name, samples, unit, nullptr, Goal{});
}

void Report::line(std::string_view name, const Samples& samples, Unit unit, const Samples* floor,
                  const Goal& goal) {
    const double medianRatio = floor != nullptr ? ratio(samples.median(), floor->median()) : 0;
    const double percentile95Ratio =
        floor != nullptr ? ratio(samples.percentile95(), floor->percentile95()) : 0;
    std::string ratios;
    if (floor != nullptr) {
        ratios = format(medianRatio, times) + " (" + format(percentile95Ratio, times) + ")";
    }
    std::string goals;
    bool isReached = meets(goals, goal.medianRatio, medianRatio, "median", times);
    isReached = meets(goals, goal.percentile95Ratio, percentile95Ratio, "p95", times) && isReached;
    isReached = meets(goals, goal.medianValue, samples.median(), "median", unit) && isReached;
    isReached = meets(goals, goal.percentile95Value, samples.percentile95(), "p95", unit) && isReached;
    if (!goals.empty()) {
        ++goals_;
        reached_ += isReached ? 1 : 0;
        goals += isReached ? ": PASS" : ": over";
    }
    print(row(name, format(samples.median(), unit), format(samples.percentile95(), unit),
              std::to_string(samples.count()), ratios, goals));
}

void Report::note(std::string_view text) {
    print("  " + std::string(text));
}

void Report::verdict(std::string_view text, bool isReached) {
    ++goals_;
    reached_ += isReached ? 1 : 0;
    print("  " + std::string(text) + (isReached ? ": PASS" : ": over"));
}

void Report::end() const {
    print("");
    print(std::to_string(reached_) + " of " + std::to_string(goals_) + " goals reached");
}

} // namespace tarvex::benchmark
