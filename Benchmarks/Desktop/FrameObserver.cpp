#include "Benchmarks/Desktop/FrameObserver.h"

#include <stdexcept>

namespace tarvex::benchmark {

namespace {

constexpr std::uint8_t eventTypeMask = 0x7F;

} // namespace

FrameObserver::FrameObserver(const std::string& displayName, xcb_window_t window)
    : client_(displayName), window_(window), frameWindow_(client_.topLevelOf(window).value_or(XCB_NONE)) {
    if (frameWindow_ == XCB_NONE || frameWindow_ == window_) {
        throw std::runtime_error("the window manager gives windows no frame");
    }
    client_.selectEvents(window_, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    client_.selectEvents(frameWindow_, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    client_.setEventHandler([this](const xcb_generic_event_t& event) {
        if ((event.response_type & eventTypeMask) == XCB_CONFIGURE_NOTIFY) {
            handle(reinterpret_cast<const xcb_configure_notify_event_t&>(event));
        }
    });
}

void FrameObserver::expect(const test::PixelRect& frame, int clientWidth, int clientHeight) {
    client_.sync();
    client_.handleEvents();
    expectedFrame_ = frame;
    expectedInside_ = {0, 0, clientWidth, clientHeight};
    const auto frameNow = client_.geometryInRoot(frameWindow_);
    const auto insideNow = client_.geometryInRoot(window_);
    if (!frameNow || !insideNow) {
        throw std::runtime_error("the window is gone");
    }
    frame_ = *frameNow;
    inside_ = {0, 0, insideNow->width, insideNow->height};
    arrival_.reset();
}

Instant FrameObserver::waitForArrival() {
    if (!client_.waitFor([this] { return arrival_.has_value(); }, test::Deadline(std::chrono::seconds(5)))) {
        throw std::runtime_error("the window stands at " + test::describe(frame_) + ", not at " +
                                 test::describe(expectedFrame_));
    }
    return *arrival_;
}

std::optional<Instant> FrameObserver::arrival() {
    client_.sync();
    client_.handleEvents();
    return arrival_;
}

void FrameObserver::handle(const xcb_configure_notify_event_t& event) {
    const test::PixelRect rect{event.x, event.y, event.width, event.height};
    if (event.window == frameWindow_) {
        frame_ = rect;
    } else if (event.window == window_) {
        inside_ = {0, 0, rect.width, rect.height};
    }
    const bool isThere = frame_ == expectedFrame_ && inside_ == expectedInside_;
    if (!isThere) {
        arrival_.reset();
    } else if (!arrival_) {
        arrival_ = std::chrono::steady_clock::now();
    }
}

} // namespace tarvex::benchmark
