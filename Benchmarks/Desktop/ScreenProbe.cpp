#include "Benchmarks/Desktop/ScreenProbe.h"

#include <stdexcept>
#include <thread>

namespace tarvex::benchmark {

Instant ScreenProbe::waitForChange() const {
    return waitUntil(true);
}

void ScreenProbe::waitForReturn() const {
    static_cast<void>(waitUntil(false));
}

std::vector<std::uint8_t> ScreenProbe::look() const {
    const test::Owned<xcb_get_image_reply_t> image(xcb_get_image_reply(
        client_->connection(),
        xcb_get_image(client_->connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, client_->root(),
                      static_cast<std::int16_t>(area_.x), static_cast<std::int16_t>(area_.y),
                      static_cast<std::uint16_t>(area_.width), static_cast<std::uint16_t>(area_.height), ~0U),
        nullptr));
    if (!image) {
        throw std::runtime_error("the server does not show its screen");
    }
    const std::uint8_t* first = xcb_get_image_data(image.get());
    return {first, first + xcb_get_image_data_length(image.get())};
}

Instant ScreenProbe::waitUntil(bool isChanged) const {
    const test::Deadline deadline(std::chrono::seconds(5));
    while (hasChanged() != isChanged) {
        if (deadline.hasPassed()) {
            throw std::runtime_error("the screen did not change as it should, at " + test::describe(area_));
        }
        pause(interval);
    }
    return std::chrono::steady_clock::now();
}

void pause(std::chrono::microseconds time) {
    std::this_thread::sleep_for(time);
}

double secondsBetween(Instant start, Instant end) {
    return std::chrono::duration<double>(end - start).count();
}

} // namespace tarvex::benchmark
