#pragma once

#include "Tests/Support/X11/ManagedWindow.h"
#include "Tests/Support/X11/XClient.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarvex::test {

/// The strip of the desktop that a panel keeps for itself, as _NET_WM_STRUT_PARTIAL has it.
struct Strut {
    std::uint32_t left = 0;
    std::uint32_t right = 0;
    std::uint32_t top = 0;
    std::uint32_t bottom = 0;
    std::uint32_t leftStart = 0;
    std::uint32_t leftEnd = 0;
    std::uint32_t rightStart = 0;
    std::uint32_t rightEnd = 0;
    std::uint32_t topStart = 0;
    std::uint32_t topEnd = 0;
    std::uint32_t bottomStart = 0;
    std::uint32_t bottomEnd = 0;
};

/// What a test window asks of its window manager.
struct TestWindowOptions {
    std::string title = "Test window";
    /// Where the client area is asked to be, in root pixels.
    PixelRect geometry{200, 200, 400, 300};
    /// An atom of the _NET_WM_WINDOW_TYPE family.
    std::string type = "_NET_WM_WINDOW_TYPE_NORMAL";
    std::optional<Size> minimumSize;
    std::optional<Size> maximumSize;
    std::optional<Size> sizeIncrement;
    std::optional<std::uint32_t> windowGravity;
    /// Atoms for _NET_WM_STATE before the window is mapped.
    std::vector<std::string> states;
    std::optional<Strut> strut;
    std::optional<xcb_window_t> transientFor;
    bool isOverrideRedirect = false;
    /// A 24-bit colour.
    std::uint32_t backgroundPixel = 0x336699;
};

/// A window of the test's own, with a connection of its own, like another program's. It is shown and, unless
/// it is override-redirect, managed when the constructor returns. Destroying it closes it.
class TestWindow {
public:
    explicit TestWindow(const std::string& displayName, const TestWindowOptions& options = {});
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;
    TestWindow(TestWindow&&) = delete;
    TestWindow& operator=(TestWindow&&) = delete;
    ~TestWindow() = default;

    [[nodiscard]] xcb_window_t id() const { return window_; }

    [[nodiscard]] XClient& client() { return client_; }

    [[nodiscard]] ManagedWindow managed() { return {client_, window_}; }

    /// Destroys the window at once, as a program that ends does.
    void close();

    /// Asks the window manager to add or remove a state.
    void changeState(bool isAdded, std::string_view first, std::string_view second = {});

    /// Presses and releases of buttons that the window received.
    [[nodiscard]] int buttonEventCount();

private:
    void create(const TestWindowOptions& options);
    void setHints(const TestWindowOptions& options);
    void setStrut(const Strut& strut);

    XClient client_;
    xcb_window_t window_ = XCB_NONE;
    int buttonEvents_ = 0;
};

} // namespace tarvex::test
