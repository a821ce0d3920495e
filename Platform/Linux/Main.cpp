#include "App/Logging/FileLogger.h"
#include "App/Snapping/SnapController.h"
#include "Platform/Linux/CommandLine.h"
#include "Platform/Linux/Qt/QtKeyWindow.h"
#include "Platform/Linux/Qt/QtMainLoop.h"
#include "Platform/Linux/Qt/QtSignals.h"
#include "Platform/Linux/Qt/QtXEventSource.h"
#include "Platform/Linux/Qt/SystemColors.h"
#include "Platform/Linux/StandardErrorLog.h"
#include "Platform/Linux/X11/StrutTracker.h"
#include "Platform/Linux/X11/XAccessibilityPlatform.h"
#include "Platform/Linux/X11/XDisplayPlatform.h"
#include "Platform/Linux/X11/XEventTapPlatform.h"
#include "Platform/Linux/X11/XScreenPlatform.h"
#include "Platform/Linux/X11/XWindowPlatform.h"
#include "Platform/Linux/XdgDirectories.h"
#include "Platform/Posix/PosixFileManager.h"

#include <QApplication>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace tarvex {

namespace {

/// Every adapter over one connection to the X server, in the order in which they need each other.
class Desktop {
public:
    explicit Desktop(XConnection& connection)
        : pump(connection),
          monitors(connection, pump),
          struts(connection, pump),
          pointer(connection, monitors),
          displays(connection, monitors),
          screens(connection, monitors, struts),
          eventTap(connection, pump, pointer, SessionKind::fromEnvironment(), {.mainLoop = &mainLoop}),
          accessibility(connection, pump, monitors, toolkitWindows()),
          windows(connection, pump, monitors, &SystemColors::accentColor, &log),
          eventSource(pump),
          files(XdgDirectories::configHome()) {}

    StandardErrorLog log;
    QtMainLoop mainLoop;
    XEventPump pump;
    MonitorTracker monitors;
    StrutTracker struts;
    XPointer pointer;
    XDisplayPlatform displays;
    XScreenPlatform screens;
    XEventTapPlatform eventTap;
    XAccessibilityPlatform accessibility;
    XWindowPlatform windows;
    QtKeyWindow keyWindow;
    QtXEventSource eventSource;
    PosixFileManager files;

private:
    // The toolkit talks to the server over a connection of its own.
    static std::vector<XClientResources> toolkitWindows() {
        const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
        return x11 == nullptr ? std::vector<XClientResources>{}
                              : std::vector<XClientResources>{XClientResources(x11->connection())};
    }
};

std::unique_ptr<SnapController> makeSnapController(Desktop& desktop) {
    const LoggerFactory loggers(desktop.log);
    const GridSplitNormalizer splitNormalizer(GridSplitNormalizer::standardEpsilon);
    SnapServices services{
        .preferencesController = nullptr,
        .gridEditorController = nullptr,
        .configStore = std::make_shared<ConfigStore>(loggers.makeLogger("ConfigStore"), desktop.files),
        .displayService = std::make_shared<DisplayService>(loggers.makeLogger("DisplayService"),
                                                           desktop.displays, desktop.screens),
        .displayFrameService = std::make_shared<DisplayFrameService>(desktop.screens),
        .accessibilityService =
            std::make_shared<AccessibilityService>(desktop.accessibility, desktop.screens, desktop.log),
        .eventTapManager = EventTapManager::make(desktop.eventTap, desktop.mainLoop, desktop.log),
        .coordinateTransformer = CoordinateTransformer(),
        .gridCalculator = GridCalculator(splitNormalizer),
        .cellFrameCalculator = CellFrameCalculator(CoordinateTransformer()),
        .gridHitTester = GridHitTester()};
    const SnapPlatform platform{.screens = desktop.screens,
                                .pointer = desktop.pointer,
                                .windows = desktop.windows,
                                .keyWindow = desktop.keyWindow,
                                .log = desktop.log,
                                .fileLog = FileLogger::shared()};
    return std::make_unique<SnapController>(std::move(services), platform);
}

int run(int& argc, char** argv) {
    const std::unique_ptr<XConnection> connection = XConnection::open();
    if (!connection) {
        std::fputs("tarvex: cannot reach an X server; is DISPLAY set?\n", stderr);
        return 1;
    }
    // Writing beyond the limit on file sizes is then a failed write instead of the end of the program.
    std::signal(SIGXFSZ, SIG_IGN);
    QApplication application(argc, argv);
    // The toolkit has taken on the user's locale. With a decimal point of several bytes, as some have, the
    // configuration's numbers would lose their fractions.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName("Tarvex");
    QApplication::setApplicationVersion(TARVEX_VERSION);
    QApplication::setQuitOnLastWindowClosed(false);

    Desktop desktop(*connection);
    desktop.pump.setConnectionLostHandler([] { QApplication::quit(); });
    const QtSignals terminationSignals([] { QApplication::quit(); });
    const std::unique_ptr<SnapController> snapController = makeSnapController(desktop);
    snapController->start();
    return QApplication::exec();
}

} // namespace

} // namespace tarvex

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (const auto exit = tarvex::parseCommandLine(arguments, TARVEX_VERSION)) {
        std::fputs(exit->text.c_str(), exit->exitCode == 0 ? stdout : stderr);
        return exit->exitCode;
    }
    return tarvex::run(argc, argv);
}
