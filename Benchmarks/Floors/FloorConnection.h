#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string_view>

namespace tarvex::benchmark {

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};

template <typename T>
using XcbOwned = std::unique_ptr<T, FreeMemory>;

/// Five words: what a floor is told to do.
using FloorCommand = std::array<std::uint32_t, 5>;

/// The X connection of a bare client that does the least that a task needs. It takes commands as client
/// messages to a window of its own, which it names on standard output, and counts the ones carried out in a
/// property of that window. Throws std::runtime_error when there is no server to work with.
class FloorConnection {
public:
    static constexpr const char* commandAtom = "_TARVEX_FLOOR_COMMAND";
    static constexpr const char* doneAtom = "_TARVEX_FLOOR_DONE";

    FloorConnection();
    FloorConnection(const FloorConnection&) = delete;
    FloorConnection& operator=(const FloorConnection&) = delete;
    FloorConnection(FloorConnection&&) = delete;
    FloorConnection& operator=(FloorConnection&&) = delete;
    ~FloorConnection();

    [[nodiscard]] xcb_connection_t* get() const { return connection_; }

    [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }

    [[nodiscard]] xcb_atom_t atom(std::string_view name) const;

    /// Selects raw XInput 2.2 events of all master devices on the root window; 0 for none.
    void watchRawInput(std::uint32_t eventMask) const;

    /// Hands commands to the one, and the kinds of raw input events to the other, until the server goes.
    void run(const std::function<void(const FloorCommand&)>& handleCommand,
             const std::function<void(std::uint16_t eventType)>& handleRawInput);

private:
    void acknowledge();

    xcb_connection_t* connection_;
    const xcb_screen_t* screen_ = nullptr;
    xcb_window_t window_ = XCB_NONE;
    std::uint8_t inputOpcode_ = 0;
    std::uint32_t doneCount_ = 0;
    xcb_atom_t commandType_ = XCB_ATOM_NONE;
    xcb_atom_t doneProperty_ = XCB_ATOM_NONE;
};

} // namespace tarvex::benchmark
