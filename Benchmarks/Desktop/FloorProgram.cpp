#include "Benchmarks/Desktop/FloorProgram.h"

#include "Benchmarks/Floors/FloorConnection.h"

#include <algorithm>
#include <stdexcept>

namespace tarvex::benchmark {

FloorProgram::FloorProgram(const test::XServer& server, const std::string& path)
    : process_(test::Command{{path}, server.clientEnvironment("floor"), std::nullopt}),
      client_(server.displayName()) {
    const auto hasLine = [this] { return process_.standardOutput().find('\n') != std::string::npos; };
    if (!process_.waitForOutput(hasLine)) {
        throw std::runtime_error("a floor did not start: " + process_.standardError());
    }
    window_ = static_cast<xcb_window_t>(std::stoul(process_.standardOutput()));
}

void FloorProgram::command(const std::array<std::uint32_t, 5>& words) {
    const std::uint32_t before = doneCount();
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window_;
    message.type = client_.atom(FloorConnection::commandAtom);
    std::copy(words.begin(), words.end(), std::begin(message.data.data32));
    xcb_send_event(client_.connection(), 0, window_, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&message));
    client_.waitUntil([&] { return doneCount() != before; }, "the floor has carried out a command");
}

std::uint32_t FloorProgram::doneCount() {
    const std::vector<std::uint32_t> words = client_.words(window_, FloorConnection::doneAtom);
    return words.empty() ? 0 : words.front();
}

std::unique_ptr<test::ChildProcess> startWidgetsFloor(const test::XServer& server, const std::string& path) {
    test::Environment environment = server.clientEnvironment("widgets");
    environment["QT_QPA_PLATFORM"] = "xcb";
    environment["XDG_SESSION_TYPE"] = "x11";
    auto process = std::make_unique<test::ChildProcess>(test::Command{{path}, environment, std::nullopt});
    const auto isReady = [&] { return process->standardError().find("ready") != std::string::npos; };
    if (!process->waitForOutput(isReady)) {
        throw std::runtime_error("the widgets floor did not start: " + process->standardError());
    }
    return process;
}

} // namespace tarvex::benchmark
