#include "Tests/Support/X11/RealApplication.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace tarvex::test {
namespace {

Command makeCommand(const XServer& server, const std::vector<std::string>& arguments) {
    const std::string name = std::filesystem::path(arguments.front()).filename().string();
    return {arguments, server.clientEnvironment(name), std::nullopt};
}

} // namespace

RealApplication::RealApplication(const XServer& server, const std::vector<std::string>& arguments)
    : client_{server.displayName()},
      windowsBefore_{client_.managedWindows()},
      process_{makeCommand(server, arguments)} {
    awaitWindow(arguments.front());
}

std::vector<std::string> RealApplication::xterm() {
    return {"xterm", "-geometry", "60x20+220+180", "-e", "cat"};
}

void RealApplication::awaitWindow(const std::string& program) {
    const auto findWindow = [this] {
        for (const xcb_window_t candidate : client_.managedWindows()) {
            if (std::ranges::find(windowsBefore_, candidate) == windowsBefore_.end()) {
                window_ = candidate;
            }
        }
        return (window_ != XCB_NONE && client_.isViewable(window_)) || !process_.isRunning();
    };
    client_.waitUntil(findWindow, program + " shows its window");
    if (!process_.isRunning()) {
        throw std::runtime_error(program + " ended: " + process_.standardError());
    }
}

} // namespace tarvex::test
