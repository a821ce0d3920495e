#pragma once

#include "Tests/Support/X11/PixelGeometry.h"
#include "Tests/Support/X11/XClient.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace tarvex::benchmark {

using Instant = std::chrono::steady_clock::time_point;

/// Looks again and again at a few pixels of the screen, as a person sees them, composited or not.
class ScreenProbe {
public:
    /// How long it leaves the server alone between two looks, and so how exact it is.
    static constexpr std::chrono::microseconds interval{100};

    /// The client must outlive it.
    ScreenProbe(test::XClient& client, const test::PixelRect& area) : client_(&client), area_(area) {}

    /// Takes what is seen now as the picture that is to change.
    void remember() { remembered_ = look(); }

    /// Whether the picture differs from the remembered one now.
    [[nodiscard]] bool hasChanged() const { return look() != remembered_; }

    /// Waits for the change; when it was seen. Throws std::runtime_error when none comes.
    [[nodiscard]] Instant waitForChange() const;

    /// Waits until the remembered picture is back.
    void waitForReturn() const;

private:
    [[nodiscard]] std::vector<std::uint8_t> look() const;
    [[nodiscard]] Instant waitUntil(bool isChanged) const;

    test::XClient* client_;
    test::PixelRect area_;
    std::vector<std::uint8_t> remembered_;
};

/// Lets that much time pass.
void pause(std::chrono::microseconds time);

[[nodiscard]] double secondsBetween(Instant start, Instant end);

} // namespace tarvex::benchmark
