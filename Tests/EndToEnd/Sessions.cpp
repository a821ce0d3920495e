#include "Tests/EndToEnd/Sessions.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <utility>

namespace tarvex::test {
namespace {

void addMissing(std::vector<SessionKind>& sessions, const SessionKind& kind) {
    if (std::ranges::find(sessions, kind) == sessions.end()) {
        sessions.push_back(kind);
    }
}

} // namespace

std::string nameOf(const SessionKind& kind) {
    return nameOf(kind.windowManager) + (kind.isComposited ? "_picom" : "_plain");
}

std::vector<WindowManagerKind> furtherWindowManagers() {
    const char* const chosen = std::getenv(furtherWindowManagersVariable);
    std::istringstream names(chosen == nullptr ? "" : chosen);
    std::vector<WindowManagerKind> kinds;
    for (std::string name; names >> name;) {
        kinds.push_back(windowManagerOfName(name));
    }
    return kinds;
}

std::vector<SessionKind> withFurtherPlain(std::vector<SessionKind> sessions) {
    for (const WindowManagerKind kind : furtherWindowManagers()) {
        addMissing(sessions, {kind, false});
    }
    return sessions;
}

std::vector<SessionKind> withFurther(std::vector<SessionKind> sessions) {
    sessions = withFurtherPlain(std::move(sessions));
    for (const WindowManagerKind kind : furtherWindowManagers()) {
        addMissing(sessions, {kind, true});
    }
    return sessions;
}

std::vector<SessionKind> usualSessions() {
    return {{WindowManagerKind::openbox, false},
            {WindowManagerKind::openbox, true},
            {WindowManagerKind::xfwm4, false},
            {WindowManagerKind::xfwm4, true}};
}

} // namespace tarvex::test
