#pragma once

#include "Tests/Support/X11/WindowManager.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace tarvex::test {

/// What kind of session a test runs in.
struct SessionKind {
    WindowManagerKind windowManager = WindowManagerKind::openbox;
    bool isComposited = false;

    bool operator==(const SessionKind&) const = default;
};

/// Such as "xfwm4_picom"; fit for the name of a test.
[[nodiscard]] std::string nameOf(const SessionKind& kind);

inline std::ostream& operator<<(std::ostream& stream, const SessionKind& kind) {
    return stream << nameOf(kind);
}

[[nodiscard]] inline std::string sessionName(const ::testing::TestParamInfo<SessionKind>& info) {
    return nameOf(info.param);
}

/// The environment variable that names further window managers to test under, separated by blanks.
inline constexpr const char* furtherWindowManagersVariable = "TARVEX_FURTHER_WINDOW_MANAGERS";

/// The window managers that somebody chose by hand. Throws std::runtime_error when there is none of such a
/// name.
[[nodiscard]] std::vector<WindowManagerKind> furtherWindowManagers();

/// The sessions, and those without a compositor of the window managers chosen by hand.
[[nodiscard]] std::vector<SessionKind> withFurtherPlain(std::vector<SessionKind> sessions);

/// The sessions, and those of the window managers chosen by hand, with and without a compositor.
[[nodiscard]] std::vector<SessionKind> withFurther(std::vector<SessionKind> sessions);

/// The sessions that nearly every test runs in.
[[nodiscard]] std::vector<SessionKind> usualSessions();

[[nodiscard]] inline auto allSessions() {
    return ::testing::ValuesIn(withFurther(usualSessions()));
}

/// The same, and those of window managers that have ways of their own with windows. For tests of what window
/// managers have a hand in.
[[nodiscard]] inline auto manySessions() {
    std::vector<SessionKind> sessions = usualSessions();
    sessions.push_back({WindowManagerKind::metacity, false});
    sessions.push_back({WindowManagerKind::kwin, false});
    return ::testing::ValuesIn(withFurther(std::move(sessions)));
}

} // namespace tarvex::test
