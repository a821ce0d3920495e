#include "Benchmarks/Desktop/MotionStream.h"

#include <xcb/xtest.h>

#include <thread>

namespace tarvex::benchmark {

void MotionStream::run(int eventCount, const std::function<test::PixelPoint(int)>& path,
                       const std::function<void(int)>& betweenEvents) {
    constexpr std::chrono::milliseconds period{1};
    Instant due = std::chrono::steady_clock::now();
    for (int number = 0; number < eventCount; ++number) {
        send(path(number));
        due += period;
        while (betweenEvents && std::chrono::steady_clock::now() + ScreenProbe::interval < due) {
            betweenEvents(number);
            pause(ScreenProbe::interval);
        }
        std::this_thread::sleep_until(due);
    }
    client_.sync();
}

void MotionStream::send(test::PixelPoint point) {
    constexpr std::uint8_t absolute = 0;
    xcb_test_fake_input(client_.connection(), XCB_MOTION_NOTIFY, absolute, XCB_CURRENT_TIME, client_.root(),
                        static_cast<std::int16_t>(point.x), static_cast<std::int16_t>(point.y), 0);
    xcb_flush(client_.connection());
}

test::PixelPoint backAndForth(int eventNumber, test::PixelPoint left, int length) {
    const int step = eventNumber % (2 * length);
    return {left.x + (step < length ? step : 2 * length - step), left.y};
}

} // namespace tarvex::benchmark
