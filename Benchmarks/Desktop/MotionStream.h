#pragma once

#include "Benchmarks/Desktop/ScreenProbe.h"
#include "Tests/Support/X11/XClient.h"

#include <functional>
#include <string>

namespace tarvex::benchmark {

/// Moves the pointer a thousand times a second, like a good mouse, without waiting for the server.
class MotionStream {
public:
    explicit MotionStream(const std::string& displayName) : client_(displayName) {}

    /// Moves along the path, which gives the position of every event by its number from 0. Between events it
    /// calls the other function, which must be quick, about ten times a millisecond.
    void run(int eventCount, const std::function<test::PixelPoint(int)>& path,
             const std::function<void(int eventNumber)>& betweenEvents = {});

private:
    void send(test::PixelPoint point);

    test::XClient client_;
};

/// The way there and back along a horizontal line, one pixel per event, starting on the left.
[[nodiscard]] test::PixelPoint backAndForth(int eventNumber, test::PixelPoint left, int length);

} // namespace tarvex::benchmark
