#include "Tests/Support/X11/WindowManager.h"

#include <xcb/xcbext.h>

#include <csignal>
#include <stdexcept>

namespace tarvex::test {
namespace {

// A drag of the title bar moves the window, with Super held as well; the keyboard is left alone.
constexpr const char* openboxConfiguration = R"(<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <theme><name>Clearlooks</name></theme>
  <desktops><number>1</number><popupTime>0</popupTime></desktops>
  <resize><drawContents>yes</drawContents><popupShow>Never</popupShow></resize>
  <mouse>
    <dragThreshold>1</dragThreshold>
    <context name="Titlebar">
      <mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
      <mousebind button="Left" action="Drag"><action name="Move"/></mousebind>
      <mousebind button="W-Left" action="Drag"><action name="Move"/></mousebind>
    </context>
    <context name="Titlebar Top Right Bottom Left TLCorner TRCorner BRCorner BLCorner">
      <mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
    </context>
    <context name="Client">
      <mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
    </context>
  </mouse>
</openbox_config>
)";

// Kept in the window manager's own settings file so that its start needs no settings daemon on the user's
// bus.
std::string xfwm4Configuration(bool preventsFocusStealing) {
    return std::string(R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfwm4" version="1.0">
  <property name="general" type="empty">
    <property name="workspace_count" type="int" value="1"/>
    <property name="wrap_windows" type="bool" value="false"/>
    <property name="use_compositing" type="bool" value="false"/>
    <property name="prevent_focus_stealing" type="bool" value=")") +
           (preventsFocusStealing ? "true" : "false") + R"("/>
  </property>
</channel>
)";
}

// Without bindings of its own and without a bar.
constexpr const char* i3Configuration = R"(# i3 config file (v4)
font pango:DejaVu Sans 8
focus_follows_mouse no
default_border normal
)";

// The same with a bar, in one colour, along the lower edge.
constexpr const char* i3BarConfiguration = R"(
bar {
    position bottom
    tray_output none
    colors {
        background #205080
    }
}
)";

// As it comes, but without a compositor. Kept in a file that the settings library reads itself, so that no
// settings daemon is needed.
constexpr const char* metacityConfiguration = R"([org/gnome/metacity]
compositor='none'

[org/gnome/desktop/wm/preferences]
num-workspaces=1
)";

// Two drags of a test follow each other quicker than a hand's, and are no double click.
constexpr const char* toolkitConfiguration = R"([Settings]
gtk-double-click-time=1
)";

// As it comes, but without a compositor.
constexpr const char* kwinConfiguration = R"([Compositing]
Enabled=false

[Desktops]
Number=1
)";

} // namespace

std::string nameOf(WindowManagerKind kind) {
    switch (kind) {
    case WindowManagerKind::openbox:
        return "openbox";
    case WindowManagerKind::xfwm4:
        return "xfwm4";
    case WindowManagerKind::xfwm4Strict:
        return "xfwm4Strict";
    case WindowManagerKind::i3:
        return "i3";
    case WindowManagerKind::i3WithBar:
        return "i3WithBar";
    case WindowManagerKind::metacity:
        return "metacity";
    case WindowManagerKind::kwin:
        break;
    }
    return "kwin";
}

WindowManagerKind windowManagerOfName(const std::string& name) {
    for (const auto kind :
         {WindowManagerKind::openbox, WindowManagerKind::xfwm4, WindowManagerKind::xfwm4Strict,
          WindowManagerKind::i3, WindowManagerKind::i3WithBar, WindowManagerKind::metacity,
          WindowManagerKind::kwin}) {
        if (nameOf(kind) == name) {
            return kind;
        }
    }
    throw std::runtime_error("no test knows a window manager \"" + name + '"');
}

WindowManager::WindowManager(const XServer& server, WindowManagerKind kind)
    : server_{&server}, kind_{kind}, client_{server.displayName()} {
    start();
}

void WindowManager::kill() {
    process_.reset();
    client_.waitUntil([this] { return !isReady(); }, "the window manager is gone");
}

void WindowManager::start() {
    process_ = std::make_unique<ChildProcess>(makeCommand());
    const auto readyOrDead = [this] { return isReady() || !process_->isRunning(); };
    client_.waitUntil(readyOrDead, "the window manager takes part");
    if (!isReady()) {
        throw std::runtime_error("the window manager did not start: " + process_->standardError());
    }
    // A message that comes between its announcement and its event loop is lost, so the first one is repeated.
    client_.waitUntil([this] { return answers(Deadline(std::chrono::milliseconds(100))); },
                      "the window manager answers after its start");
}

// The window named by the root names itself only while its owner lives.
bool WindowManager::isReady() {
    const auto owner = client_.words(client_.root(), "_NET_SUPPORTING_WM_CHECK");
    if (owner.empty()) {
        return false;
    }
    const auto self = client_.words(owner.front(), "_NET_SUPPORTING_WM_CHECK");
    return !self.empty() && self.front() == owner.front() &&
           client_.hasProperty(client_.root(), "_NET_SUPPORTED");
}

// Whoever is stopped while it holds the server would stop the whole desktop, and the test with it.
void WindowManager::pause() {
    const Deadline deadline;
    do {
        barrier();
        process_->signalGroup(SIGSTOP);
        if (isServerFree()) {
            return;
        }
        resume();
    } while (!deadline.hasPassed());
    throw std::runtime_error("timed out waiting until the window manager lets go of the server");
}

void WindowManager::resume() {
    process_->signalGroup(SIGCONT);
}

bool WindowManager::isServerFree() {
    // A grab that is on its way is carried out by the second answer.
    for (int round = 0; round < 2; ++round) {
        const unsigned sequence = xcb_get_input_focus(client_.connection()).sequence;
        void* reply = nullptr;
        const bool isAnswered = client_.waitFor(
            [&] { return xcb_poll_for_reply(client_.connection(), sequence, &reply, nullptr) != 0; },
            Deadline(std::chrono::milliseconds(500)));
        const Owned<void> owned(reply);
        if (!isAnswered) {
            xcb_discard_reply(client_.connection(), sequence);
            return false;
        }
    }
    return true;
}

void WindowManager::barrier() {
    if (!answers(Deadline{})) {
        throw std::runtime_error("timed out waiting until the window manager answers");
    }
}

bool WindowManager::answers(Deadline deadline) {
    return kind_ == WindowManagerKind::kwin ? answersAboutItsOffice(deadline) : answersAboutFrames(deadline);
}

bool WindowManager::answersAboutFrames(Deadline deadline) {
    const xcb_window_t window = xcb_generate_id(client_.connection());
    xcb_create_window(client_.connection(), XCB_COPY_FROM_PARENT, window, client_.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, client_.screen().root_visual, 0, nullptr);
    client_.selectEvents(window, XCB_EVENT_MASK_PROPERTY_CHANGE);
    client_.sendToWindowManager(window, "_NET_REQUEST_FRAME_EXTENTS", {});
    const bool isAnswered =
        client_.waitFor([&] { return client_.hasProperty(window, "_NET_FRAME_EXTENTS"); }, deadline);
    xcb_destroy_window(client_.connection(), window);
    client_.sync();
    return isAnswered;
}

// It does not estimate frames. But whoever holds the office of window manager says which rules it keeps to
// (ICCCM 4.3), and the question comes to it in one row with all other events.
bool WindowManager::answersAboutItsOffice(Deadline deadline) {
    const xcb_window_t window = xcb_generate_id(client_.connection());
    xcb_create_window(client_.connection(), XCB_COPY_FROM_PARENT, window, client_.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, client_.screen().root_visual, 0, nullptr);
    xcb_convert_selection(client_.connection(), window, client_.atom("WM_S0"), client_.atom("VERSION"),
                          client_.atom("VERSION"), XCB_CURRENT_TIME);
    const bool isAnswered = client_.waitFor([&] { return client_.hasProperty(window, "VERSION"); }, deadline);
    xcb_destroy_window(client_.connection(), window);
    client_.sync();
    return isAnswered;
}

Command WindowManager::makeCommand() {
    Command command;
    command.environment = server_->clientEnvironment(nameOf(kind_));
    const std::string folder = nameOf(kind_) + "/config";
    switch (kind_) {
    case WindowManagerKind::openbox: {
        const auto file = server_->scratch().write(folder + "/rc.xml", openboxConfiguration);
        command.arguments = {"openbox", "--sm-disable", "--config-file", file.string()};
        break;
    }
    case WindowManagerKind::xfwm4:
    case WindowManagerKind::xfwm4Strict:
        server_->scratch().write(folder + "/xfce4/xfconf/xfce-perchannel-xml/xfwm4.xml",
                                 xfwm4Configuration(kind_ == WindowManagerKind::xfwm4Strict));
        command.arguments = {"dbus-run-session", "--", "xfwm4", "--compositor=off"};
        break;
    case WindowManagerKind::i3:
    case WindowManagerKind::i3WithBar: {
        const std::string bar = kind_ == WindowManagerKind::i3WithBar ? i3BarConfiguration : "";
        const auto file = server_->scratch().write(folder + "/i3", i3Configuration + bar);
        command.arguments = {"i3", "-c", file.string()};
        break;
    }
    case WindowManagerKind::metacity:
        server_->scratch().write(folder + "/glib-2.0/settings/keyfile", metacityConfiguration);
        server_->scratch().write(folder + "/gtk-3.0/settings.ini", toolkitConfiguration);
        command.environment["GSETTINGS_BACKEND"] = "keyfile";
        command.arguments = {"metacity", "--sm-disable"};
        break;
    case WindowManagerKind::kwin:
        server_->scratch().write(folder + "/kwinrc", kwinConfiguration);
        bus_ = std::make_unique<SessionBus>();
        command.environment["DBUS_SESSION_BUS_ADDRESS"] = bus_->address();
        command.environment["KWIN_COMPOSE"] = "N";
        command.environment["QT_QPA_PLATFORM"] = "xcb";
        command.arguments = {"kwin_x11", "--no-kactivities"};
        break;
    }
    return command;
}

} // namespace tarvex::test
