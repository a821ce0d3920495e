#pragma once

#include "Tests/Support/X11/ChildProcess.h"
#include "Tests/Support/X11/XServer.h"

#include <memory>

namespace tarvex::test {

/// picom on a private X server, without shadows and fading, so that pixels are exact. It owns the screen's
/// compositing selection when the constructor returns; destroying it ends it and waits until the selection is
/// free. Throws std::runtime_error when it does not start.
class Compositor {
public:
    explicit Compositor(const XServer& server);
    Compositor(const Compositor&) = delete;
    Compositor& operator=(const Compositor&) = delete;
    Compositor(Compositor&&) = delete;
    Compositor& operator=(Compositor&&) = delete;
    ~Compositor() = default;

private:
    ChildProcess process_;
};

} // namespace tarvex::test
