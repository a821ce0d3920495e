#pragma once

#include "Tests/Support/X11/XClient.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex::test {

/// One monitor laid over the server's screen.
struct MonitorLayout {
    std::string name;
    PixelRect geometry;
    bool isPrimary = false;
    /// Whether it is shown by the server's one output, and so has that output's identification data. A
    /// monitor without an output has none.
    bool hasOutput = false;
};

/// What a monitor tells about itself.
struct MonitorIdentity {
    std::uint16_t vendor = 0;
    std::uint16_t product = 0;
    /// 0 is none.
    std::uint32_t serial = 0;
    /// At most 13 characters; empty is none.
    std::string name;
};

/// Lays monitors over the one screen of a virtual X server. Throws std::runtime_error when the server
/// refuses.
class Monitors {
public:
    explicit Monitors(const std::string& displayName);

    /// Puts these in place of all present ones.
    void set(const std::vector<MonitorLayout>& layouts);

    void remove(const std::string& name);

    /// Gives the server's output identification data.
    void setIdentity(const MonitorIdentity& identity);

    /// The names of the monitors in the server's order.
    [[nodiscard]] std::vector<std::string> names();

private:
    void add(const MonitorLayout& layout);

    XClient client_;
    std::uint32_t output_ = 0;
};

/// The 128 bytes that a monitor of that identity hands over.
[[nodiscard]] std::vector<std::uint8_t> edidBlock(const MonitorIdentity& identity);

} // namespace tarvex::test
