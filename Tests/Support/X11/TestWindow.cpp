#include "Tests/Support/X11/TestWindow.h"

#include <array>

namespace tarvex::test {
namespace {

// Bits of WM_NORMAL_HINTS.
constexpr std::uint32_t userPosition = 1;
constexpr std::uint32_t userSize = 2;
constexpr std::uint32_t minimumSizeBit = 16;
constexpr std::uint32_t maximumSizeBit = 32;
constexpr std::uint32_t incrementBit = 64;
constexpr std::uint32_t baseSizeBit = 256;
constexpr std::uint32_t gravityBit = 512;

void putSize(std::vector<std::uint32_t>& hints, std::size_t index, const Size& size) {
    hints[index] = static_cast<std::uint32_t>(size.width);
    hints[index + 1] = static_cast<std::uint32_t>(size.height);
}

std::vector<std::uint32_t> normalHints(const TestWindowOptions& options) {
    std::vector<std::uint32_t> hints(18);
    hints[0] = userPosition | userSize;
    hints[1] = static_cast<std::uint32_t>(options.geometry.x);
    hints[2] = static_cast<std::uint32_t>(options.geometry.y);
    hints[3] = static_cast<std::uint32_t>(options.geometry.width);
    hints[4] = static_cast<std::uint32_t>(options.geometry.height);
    if (options.minimumSize) {
        hints[0] |= minimumSizeBit;
        putSize(hints, 5, *options.minimumSize);
    }
    if (options.maximumSize) {
        hints[0] |= maximumSizeBit;
        putSize(hints, 7, *options.maximumSize);
    }
    if (options.sizeIncrement) {
        hints[0] |= incrementBit | baseSizeBit;
        putSize(hints, 9, *options.sizeIncrement);
    }
    if (options.windowGravity) {
        hints[0] |= gravityBit;
        hints[17] = *options.windowGravity;
    }
    return hints;
}

} // namespace

TestWindow::TestWindow(const std::string& displayName, const TestWindowOptions& options)
    : client_{displayName} {
    client_.setEventHandler([this](const xcb_generic_event_t& event) {
        const int type = event.response_type & 0x7F;
        buttonEvents_ += type == XCB_BUTTON_PRESS || type == XCB_BUTTON_RELEASE ? 1 : 0;
    });
    create(options);
    setHints(options);
    xcb_map_window(client_.connection(), window_);
    if (options.isOverrideRedirect) {
        client_.waitUntil([this] { return client_.isViewable(window_); },
                          "the override-redirect window is shown");
    } else {
        client_.waitUntil([this] { return managed().isManagedAndViewable(); }, "the test window is managed");
    }
}

void TestWindow::create(const TestWindowOptions& options) {
    window_ = xcb_generate_id(client_.connection());
    const std::array<std::uint32_t, 3> values{
        options.backgroundPixel, options.isOverrideRedirect ? 1U : 0U,
        XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_BUTTON_PRESS |
            XCB_EVENT_MASK_BUTTON_RELEASE};
    xcb_create_window(client_.connection(), XCB_COPY_FROM_PARENT, window_, client_.root(),
                      static_cast<std::int16_t>(options.geometry.x),
                      static_cast<std::int16_t>(options.geometry.y),
                      static_cast<std::uint16_t>(options.geometry.width),
                      static_cast<std::uint16_t>(options.geometry.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      client_.screen().root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
}

void TestWindow::setHints(const TestWindowOptions& options) {
    client_.setText(window_, "WM_NAME", "STRING", options.title);
    client_.setText(window_, "_NET_WM_NAME", "UTF8_STRING", options.title);
    client_.setText(window_, "WM_CLASS", "STRING", std::string("test-window\0TestWindow\0", 23));
    client_.setWords(window_, "_NET_WM_WINDOW_TYPE", "ATOM", {client_.atom(options.type)});
    client_.setWords(window_, "WM_NORMAL_HINTS", "WM_SIZE_HINTS", normalHints(options));
    if (options.transientFor) {
        client_.setWords(window_, "WM_TRANSIENT_FOR", "WINDOW", {*options.transientFor});
    }
    if (!options.states.empty()) {
        std::vector<std::uint32_t> states;
        states.reserve(options.states.size());
        for (const std::string& state : options.states) {
            states.push_back(client_.atom(state));
        }
        client_.setWords(window_, "_NET_WM_STATE", "ATOM", states);
    }
    if (options.strut) {
        setStrut(*options.strut);
    }
}

void TestWindow::setStrut(const Strut& strut) {
    client_.setWords(window_, "_NET_WM_STRUT", "CARDINAL",
                     {strut.left, strut.right, strut.top, strut.bottom});
    client_.setWords(window_, "_NET_WM_STRUT_PARTIAL", "CARDINAL",
                     {strut.left, strut.right, strut.top, strut.bottom, strut.leftStart, strut.leftEnd,
                      strut.rightStart, strut.rightEnd, strut.topStart, strut.topEnd, strut.bottomStart,
                      strut.bottomEnd});
}

void TestWindow::close() {
    xcb_destroy_window(client_.connection(), window_);
    client_.sync();
}

void TestWindow::changeState(bool isAdded, std::string_view first, std::string_view second) {
    const std::uint32_t secondAtom = second.empty() ? 0U : client_.atom(second);
    client_.sendToWindowManager(window_, "_NET_WM_STATE",
                                {isAdded ? 1U : 0U, client_.atom(first), secondAtom, 1, 0});
}

int TestWindow::buttonEventCount() {
    client_.sync();
    client_.handleEvents();
    return buttonEvents_;
}

} // namespace tarvex::test
