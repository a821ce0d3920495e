#include "Benchmarks/Editor/EditorRig.h"

#include <poll.h>
#include <stdexcept>
#include <utility>

namespace tarvex::benchmark {

namespace {

std::vector<double> equalParts(int count) {
    std::vector<double> splits;
    for (int line = 1; line < count; ++line) {
        splits.push_back(static_cast<double>(line) / count);
    }
    return splits;
}

std::unique_ptr<XConnection> openOrThrow(const std::string& displayName) {
    auto connection = XConnection::open(displayName);
    if (!connection) {
        throw std::runtime_error("cannot connect to " + displayName);
    }
    return connection;
}

} // namespace

EditorRig::EditorRig(int columns, int rows)
    : connection_(openOrThrow(server_.displayName())),
      pump_(*connection_),
      monitors_(*connection_, pump_),
      textMeasurer_(fonts_),
      windows_(*connection_, pump_, monitors_, fonts_, [] { return 0x0A84FFU; }),
      view_(
          std::make_shared<const GridDefinition>("grid", "Grid", equalParts(columns), equalParts(rows)),
          {0, 0, width, height}, 8, [] {}, [](const GridDefinitionRef& /*grid*/) {},
          GridEditorSurroundings{mainLoop_, textMeasurer_}),
      counting_(view_) {
    WindowAttributes attributes;
    attributes.contentRect = view_.visibleFrame();
    attributes.acceptsMouseMovedEvents = true;
    attributes.canBecomeKey = true;
    window_ = windows_.makeViewWindow(attributes, counting_);
    view_.setRedrawHandler([this] { window_->setNeedsDisplay(); });
    window_->makeKeyAndOrderFront();
    settle();
}

void EditorRig::pumpUntil(const std::function<bool()>& condition) {
    for (;;) {
        pump_.processPending();
        if (condition()) {
            return;
        }
        pollfd waited{pump_.fileDescriptor(), POLLIN, 0};
        poll(&waited, 1, 1000);
    }
}

void EditorRig::settle() {
    // Two pictures may follow each other, and each needs its answer before the next.
    for (int round = 0; round < 3; ++round) {
        pump_.processPending();
        static_cast<void>(
            connection_->take(xcb_get_input_focus_reply, xcb_get_input_focus(connection_->get())));
        pump_.processQueued();
    }
}

} // namespace tarvex::benchmark
