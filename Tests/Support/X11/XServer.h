#pragma once

#include "Tests/Support/X11/ChildProcess.h"
#include "Tests/Support/X11/ScratchDirectory.h"

#include <memory>
#include <string>

namespace tarvex::test {

/// A private virtual X server on a display number of its own choosing; it listens on no network socket and
/// keeps its state when its last client leaves. Throws std::runtime_error when it does not start.
class XServer {
public:
    /// @param width,height of each screen in pixels
    /// @param screens how many; the pointer is on one of them at a time
    explicit XServer(int width = 1280, int height = 1024, int screens = 1);

    /// Such as ":5".
    [[nodiscard]] const std::string& displayName() const { return displayName_; }

    /// An environment for clients of this server: the display, and home and XDG folders of their own, so that
    /// nothing of the user's reaches them and nothing of theirs stays. No two `clientName`s share a folder.
    [[nodiscard]] Environment clientEnvironment(const std::string& clientName) const;

    /// Ends it as a crash does, under its clients.
    void end() { process_.reset(); }

    [[nodiscard]] const ScratchDirectory& scratch() const { return scratch_; }

private:
    ScratchDirectory scratch_;
    std::unique_ptr<ChildProcess> process_;
    std::string displayName_;
};

} // namespace tarvex::test
