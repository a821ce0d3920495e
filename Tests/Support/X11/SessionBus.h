#pragma once

#include "Tests/Support/X11/ChildProcess.h"
#include "Tests/Support/X11/ScratchDirectory.h"

#include <csignal>
#include <memory>
#include <string>

namespace tarvex::test {

/// A private session bus, which starts no services. Throws std::runtime_error when it does not start.
class SessionBus {
public:
    SessionBus();

    [[nodiscard]] const std::string& address() const { return address_; }

    /// Stops it for good: it still takes connections, and never answers again.
    void freeze() const { process_->signal(SIGSTOP); }

    /// Ends it as a crash does, under its clients.
    void end() { process_.reset(); }

private:
    ScratchDirectory scratch_;
    std::unique_ptr<ChildProcess> process_;
    std::string address_;
};

} // namespace tarvex::test
