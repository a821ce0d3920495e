#pragma once

#include "Tests/Support/X11/ChildProcess.h"
#include "Tests/Support/X11/XClient.h"
#include "Tests/Support/X11/XServer.h"

#include <cstdint>
#include <memory>

namespace tarvex::test {

/// picom on a private X server, without shadows and fading, so that pixels are exact. It has painted the
/// screen when the constructor returns, with the bare desktop in `desktopColor`; destroying it ends it and
/// waits until its place is free. Throws std::runtime_error when it does not start.
class Compositor {
public:
    /// 0xRRGGBB; nothing else on a test's screen should have it.
    static constexpr std::uint32_t desktopColor = 0x2D2A35;

    explicit Compositor(const XServer& server);
    Compositor(const Compositor&) = delete;
    Compositor& operator=(const Compositor&) = delete;
    Compositor(Compositor&&) = delete;
    Compositor& operator=(Compositor&&) = delete;
    ~Compositor();

    /// Returns when it has painted everything that happened before this call.
    void barrier();

private:
    void setDesktopPicture();
    void awaitCorner(bool isCovered, std::uint32_t color);
    [[nodiscard]] bool hasOwner();
    [[nodiscard]] bool hasPainted();

    XClient client_;
    std::unique_ptr<ChildProcess> process_;
};

} // namespace tarvex::test
