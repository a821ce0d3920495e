#include "Tests/Support/X11/XServer.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <unistd.h>

namespace tarvex::test {
namespace {

// The server writes its display number and a line feed once it takes clients.
std::string readDisplayNumber(const FileDescriptor& source, ChildProcess& server) {
    std::string number;
    const Deadline deadline;
    while (!number.ends_with('\n')) {
        pollfd waited{source.get(), POLLIN, 0};
        ::poll(&waited, 1, deadline.pollTimeout(50));
        std::array<char, 16> buffer{};
        const ssize_t count = ::read(source.get(), buffer.data(), buffer.size());
        if (count > 0) {
            number.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (!server.isRunning() || deadline.hasPassed()) {
            throw std::runtime_error("the X server did not start: " + server.standardError());
        }
    }
    number.pop_back();
    return number;
}

} // namespace

XServer::XServer(int width, int height, int screens) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("pipe2 failed");
    }
    const FileDescriptor readEnd(ends[0]);
    FileDescriptor writeEnd(ends[1]);
    ::fcntl(readEnd.get(), F_SETFL, O_NONBLOCK);
    Command command;
    command.arguments = {"Xvfb",       "-displayfd", std::to_string(writeEnd.get()),
                         "-nolisten",  "tcp",        "-noreset",
                         "+extension", "RANDR",      "+extension",
                         "Composite",  "-dpi",       "96"};
    for (int screen = 0; screen < screens; ++screen) {
        command.arguments.insert(command.arguments.end(),
                                 {"-screen", std::to_string(screen),
                                  std::to_string(width) + "x" + std::to_string(height) + "x24"});
    }
    command.environment = {{"HOME", scratch_.folder("server").string()}};
    command.inheritedDescriptor = writeEnd.get();
    process_ = std::make_unique<ChildProcess>(command);
    writeEnd.reset();
    displayName_ = ":" + readDisplayNumber(readEnd, *process_);
}

Environment XServer::clientEnvironment(const std::string& clientName) const {
    const auto folder = [&](const std::string& name) {
        return scratch_.folder(clientName + "/" + name).string();
    };
    return {
        {"DISPLAY", displayName_},
        {"HOME", folder("home")},
        {"XDG_CONFIG_HOME", folder("config")},
        {"XDG_CACHE_HOME", folder("cache")},
        {"XDG_DATA_HOME", folder("data")},
        {"XDG_STATE_HOME", folder("state")},
        {"XDG_RUNTIME_DIR", folder("runtime")},
        {"LANG", "C.UTF-8"},
        // A client without a session bus starts one of its own, which outlives the test. This address cannot
        // be reached, and says so at once.
        {"DBUS_SESSION_BUS_ADDRESS", "disabled:"},
        {"NO_AT_BRIDGE", "1"},
        {"GDK_BACKEND", "x11"},
    };
}

} // namespace tarvex::test
