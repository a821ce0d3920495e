#include "App/Logging/FileLogger.h"
#include "App/Snapping/SnapController.h"
#include "App/ZoneEditor/GridEditorController.h"
#include "Platform/Linux/CommandLine.h"
#include "Platform/Linux/Qt/QtKeyWindow.h"
#include "Platform/Linux/Qt/QtMainLoop.h"
#include "Platform/Linux/Qt/QtSignals.h"
#include "Platform/Linux/Qt/QtTextMeasurer.h"
#include "Platform/Linux/Qt/QtXEventSource.h"
#include "Platform/Linux/Qt/SystemColors.h"
#include "Platform/Linux/Qt/XViewWindowPlatform.h"
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
          textMeasurer(fonts),
          viewWindows(connection, pump, monitors, fonts, &SystemColors::accentColor, &log),
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
    QtFonts fonts;
    QtTextMeasurer textMeasurer;
    XViewWindowPlatform viewWindows;
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

std::shared_ptr<ConfigStore> makeConfigStore(Desktop& desktop) {
    return std::make_shared<ConfigStore>(LoggerFactory(desktop.log).makeLogger("ConfigStore"), desktop.files);
}

std::shared_ptr<DisplayService> makeDisplayService(Desktop& desktop) {
    return std::make_shared<DisplayService>(LoggerFactory(desktop.log).makeLogger("DisplayService"),
                                            desktop.displays, desktop.screens);
}

std::shared_ptr<GridEditorController> makeGridEditorController(Desktop& desktop) {
    return std::make_shared<GridEditorController>(makeConfigStore(desktop), makeDisplayService(desktop),
                                                  std::make_shared<DisplayFrameService>(desktop.screens),
                                                  GridEditorPlatform{desktop.screens, desktop.viewWindows,
                                                                     desktop.mainLoop, desktop.textMeasurer,
                                                                     desktop.log});
}

std::unique_ptr<SnapController> makeSnapController(Desktop& desktop,
                                                   std::shared_ptr<GridEditorController> gridEditor) {
    const GridSplitNormalizer splitNormalizer(GridSplitNormalizer::standardEpsilon);
    SnapServices services{
        .preferencesController = nullptr,
        .gridEditorController = std::move(gridEditor),
        .configStore = makeConfigStore(desktop),
        .displayService = makeDisplayService(desktop),
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

int run(const CommandLine& commandLine, int& argc, char** argv) {
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
    if (commandLine.listsDisplays) {
        listDisplays(*makeDisplayService(desktop));
        return 0;
    }
    const std::shared_ptr<GridEditorController> gridEditor = makeGridEditorController(desktop);
    const std::unique_ptr<SnapController> snapController = makeSnapController(desktop, gridEditor);
    snapController->start();
    if (commandLine.opensEditor) {
        openEditor(*gridEditor, commandLine.editorDisplay);
    }
    return QApplication::exec();
}

} // namespace

} // namespace tarvex

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const tarvex::CommandLine commandLine = tarvex::parseCommandLine(arguments, TARVEX_VERSION);
    if (commandLine.exit) {
        std::fputs(commandLine.exit->text.c_str(), commandLine.exit->exitCode == 0 ? stdout : stderr);
        return commandLine.exit->exitCode;
    }
    return tarvex::run(commandLine, argc, argv);
}
