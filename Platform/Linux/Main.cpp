#include "App/Logging/FileLogger.h"
#include "App/Shell/ApplicationEntry.h"
#include "Platform/Linux/CommandLine.h"
#include "Platform/Linux/Installation.h"
#include "Platform/Linux/InstalledBundle.h"
#include "Platform/Linux/Qt/ApplicationIcon.h"
#include "Platform/Linux/Qt/QtFormWindowPlatform.h"
#include "Platform/Linux/Qt/QtKeyMonitor.h"
#include "Platform/Linux/Qt/QtKeyWindow.h"
#include "Platform/Linux/Qt/QtMainLoop.h"
#include "Platform/Linux/Qt/QtSignals.h"
#include "Platform/Linux/Qt/QtStatusBar.h"
#include "Platform/Linux/Qt/QtText.h"
#include "Platform/Linux/Qt/QtTextMeasurer.h"
#include "Platform/Linux/Qt/QtXEventSource.h"
#include "Platform/Linux/Qt/SystemColors.h"
#include "Platform/Linux/Qt/ToolkitConnection.h"
#include "Platform/Linux/Qt/XViewWindowPlatform.h"
#include "Platform/Linux/SessionBusAddress.h"
#include "Platform/Linux/SingleInstance.h"
#include "Platform/Linux/StandardErrorLog.h"
#include "Platform/Linux/X11/SessionEnd.h"
#include "Platform/Linux/X11/StrutTracker.h"
#include "Platform/Linux/X11/XAccessibilityPlatform.h"
#include "Platform/Linux/X11/XDisplayPlatform.h"
#include "Platform/Linux/X11/XEventTapPlatform.h"
#include "Platform/Linux/X11/XHotkeyPlatform.h"
#include "Platform/Linux/X11/XKeyboardLayout.h"
#include "Platform/Linux/X11/XScreenPlatform.h"
#include "Platform/Linux/X11/XWindowPlatform.h"
#include "Platform/Linux/XdgDirectories.h"
#include "Platform/Linux/XdgLoginItem.h"
#include "Platform/Posix/PosixFileManager.h"

#include <QApplication>
#include <QDBusConnection>
#include <QSessionManager>

#include <cinttypes>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tarvex {

namespace {

/// Every adapter over one connection to the X server, in the order in which they need each other.
class Desktop {
public:
    /// @param busAddress of the session bus; empty for none
    Desktop(XConnection& connection, const std::string& busAddress)
        : pump(connection),
          monitors(connection, pump),
          struts(connection, pump),
          pointer(connection, monitors, &presses),
          displays(connection, monitors),
          screens(connection, monitors, struts),
          eventTap(connection, pump, pointer, SessionKind::fromEnvironment(), {.mainLoop = &mainLoop}),
          accessibility(connection, pump, monitors, toolkitWindows(), &mainLoop, &pointer),
          windows(connection, pump, mainLoop, monitors, &SystemColors::accentColor, &log),
          textMeasurer(fonts),
          viewWindows(connection, pump, monitors, fonts, &SystemColors::accentColor,
                      {.struts = &struts, .managedWindows = toolkitWindows(), .log = &log}),
          formWindows({connection, pump, monitors, screens, pointer, fonts}),
          hotkeys(connection, pump,
                  [this](const HotkeyIdentifier& hotkey, std::int32_t status) { logLoss(hotkey, status); }),
          keyboardLayout(connection, pump, &QtText::upperCased),
          keyMonitors(connection, pump),
          statusBar(connection, pump, busAddress, [this] { viewWindows.noteMenuClosing(); }),
          eventSource(pump),
          files(XdgDirectories::configHome()),
          loginItem(files, XdgLoginItem::Places::standard()),
          bundle(TARVEX_VERSION, Installation::prefixOf(Installation::executablePath(), files), files) {}

    StandardErrorLog log;
    QtMainLoop mainLoop;
    NotificationCenter notifications;
    XEventPump pump;
    MonitorTracker monitors;
    StrutTracker struts;
    XPressRecord presses;
    XPointer pointer;
    XDisplayPlatform displays;
    XScreenPlatform screens;
    XEventTapPlatform eventTap;
    XAccessibilityPlatform accessibility;
    XWindowPlatform windows;
    QtKeyWindow keyWindow;
    QtFonts fonts;
    QtTextMeasurer textMeasurer;
    XViewWindowPlatform viewWindows;
    QtFormWindowPlatform formWindows;
    XHotkeyPlatform hotkeys;
    XKeyboardLayout keyboardLayout;
    QtKeyMonitor keyMonitors;
    QtStatusBar statusBar;
    QtXEventSource eventSource;
    PosixFileManager files;
    XdgLoginItem loginItem;
    InstalledBundle bundle;

private:
    void logLoss(const HotkeyIdentifier& hotkey, std::int32_t status) {
        const std::string message = HotkeyManager::refusalMessage(hotkey, status);
        log.systemLog(message);
        FileLogger::shared().log(message);
    }

    // The toolkit talks to the server over a connection of its own.
    static std::vector<XClientResources> toolkitWindows() {
        xcb_connection_t* const connection = toolkitConnection();
        return connection == nullptr ? std::vector<XClientResources>{}
                                     : std::vector<XClientResources>{XClientResources(connection)};
    }
};

ApplicationPlatform makeApplicationPlatform(Desktop& desktop) {
    return {.files = desktop.files,
            .log = desktop.log,
            .fileLog = FileLogger::shared(),
            .mainLoop = desktop.mainLoop,
            .notifications = desktop.notifications,
            .displays = desktop.displays,
            .screens = desktop.screens,
            .accessibility = desktop.accessibility,
            .eventTap = desktop.eventTap,
            .pointer = desktop.pointer,
            .windows = desktop.windows,
            .keyWindow = desktop.keyWindow,
            .formWindows = desktop.formWindows,
            .textMeasurer = desktop.textMeasurer,
            .statusBar = desktop.statusBar,
            .hotkeys = desktop.hotkeys,
            .keyMonitors = desktop.keyMonitors,
            .keyboardLayout = desktop.keyboardLayout,
            .loginItem = desktop.loginItem,
            .bundle = desktop.bundle,
            .modifierNames = {"Super", "Shift", "Alt", "Control"},
            .terminate = [] { QApplication::quit(); }};
}

void listDisplays(DisplayService& displays) {
    for (const std::uint32_t number : displays.getActiveDisplays()) {
        std::printf("%" PRIu32 "\t%s\n", number, displays.getDisplayTitle(number).c_str());
    }
}

void openEditor(GridEditorController& gridEditor, const std::optional<std::uint32_t>& display) {
    if (display) {
        gridEditor.showEditor(*display);
    } else {
        gridEditor.showEditorForMainDisplay();
    }
}

/// Does what the command line of this start, or of a later one, asks for.
void fulfil(const InstanceRequest& request, GridEditorController& gridEditor,
            ApplicationController& application) {
    switch (request.kind) {
    case InstanceRequestKind::none:
        break;
    case InstanceRequestKind::openEditor:
        openEditor(gridEditor, request.display);
        break;
    case InstanceRequestKind::openPreferences:
        application.showPreferences();
        break;
    case InstanceRequestKind::quit:
        QApplication::quit();
        break;
    }
}

void prepareProcess() {
    // Writing beyond the limit on file sizes is then a failed write instead of the end of the program.
    std::signal(SIGXFSZ, SIG_IGN);
    // All windows belong to one X server; a Wayland compositor would let none of them be placed.
    if (!qgetenv("QT_QPA_PLATFORM").startsWith("xcb")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
}

void prepareToolkit() {
    QApplication::setApplicationName("Tarvex");
    QApplication::setApplicationVersion(TARVEX_VERSION);
    QApplication::setDesktopFileName("tarvex");
    QApplication::setWindowIcon(applicationIcon());
    QApplication::setQuitOnLastWindowClosed(false);
    // Whether the program starts at login is said in the preferences, not by what ran when the user left.
    QObject::connect(qApp, &QGuiApplication::saveStateRequest,
                     [](QSessionManager& manager) { manager.setRestartHint(QSessionManager::RestartNever); });
}

int runApplication(Desktop& desktop, const InstanceRequest& request, SingleInstance& instance) {
    const ApplicationEntry entry =
        makeApplicationEntry(makeApplicationPlatform(desktop), desktop.viewWindows);
    entry.delegate->applicationDidFinishLaunching();
    const auto handle = [&](const InstanceRequest& asked) {
        fulfil(asked, *entry.gridEditorController, *entry.applicationController);
    };
    handle(request);
    instance.setRequestHandler(handle);
    return QApplication::exec();
}

// The toolkit waits for its session bus without a limit. It gets none that has not answered just now, and is
// connected at once instead of some time later.
void connectToolkit(const std::string& busAddress) {
    SessionBusAddress::pin(busAddress);
    if (!busAddress.empty()) {
        [[maybe_unused]] const QDBusConnection bus = QDBusConnection::sessionBus();
    }
}

int run(const CommandLine& commandLine, int& argc, char** argv) {
    SingleInstance::Outcome start;
    std::string busAddress;
    if (!commandLine.listsDisplays) {
        busAddress = SessionBusAddress::find();
        start = SingleInstance::acquire(commandLine.request());
        std::fputs(start.message.c_str(), stderr);
        if (!start.instance) {
            return start.exitCode;
        }
    }
    connectToolkit(start.busAddress);
    const std::unique_ptr<XConnection> connection = XConnection::open();
    if (!connection) {
        std::fputs("tarvex: cannot reach an X server; is DISPLAY set?\n", stderr);
        return 1;
    }
    const SessionEnd sessionEnd(*connection);
    prepareProcess();
    QApplication application(argc, argv);
    // The toolkit has taken on the user's locale. With a decimal point of several bytes, as some have, the
    // configuration's numbers would lose their fractions.
    std::setlocale(LC_NUMERIC, "C");
    prepareToolkit();

    Desktop desktop(*connection, busAddress);
    desktop.pump.setConnectionLostHandler([] { QApplication::quit(); });
    const QtSignals terminationSignals([] { QApplication::quit(); });
    if (commandLine.listsDisplays) {
        DisplayService displays(LoggerFactory(desktop.log).makeLogger("DisplayService"), desktop.displays,
                                desktop.screens);
        listDisplays(displays);
        return 0;
    }
    return runApplication(desktop, commandLine.request(), *start.instance);
}

} // namespace

} // namespace tarvex

int main(int argc, char** argv) {
    tarvex::QtSignals::endAtOnce();
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const tarvex::CommandLine commandLine = tarvex::parseCommandLine(arguments, TARVEX_VERSION);
    if (commandLine.exit) {
        std::fputs(commandLine.exit->text.c_str(), commandLine.exit->exitCode == 0 ? stdout : stderr);
        return commandLine.exit->exitCode;
    }
    return tarvex::run(commandLine, argc, argv);
}
