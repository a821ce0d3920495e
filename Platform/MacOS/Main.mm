#include "App/Logging/FileLogger.h"
#include "App/Shell/ApplicationEntry.h"
#include "Platform/MacOS/Accessibility/MacAccessibilityPlatform.h"
#include "Platform/MacOS/AppKit/ActivationLoan.h"
#include "Platform/MacOS/AppKit/AppKitApplication.h"
#include "Platform/MacOS/AppKit/AppKitFormWindowPlatform.h"
#include "Platform/MacOS/AppKit/AppKitKeyMonitorPlatform.h"
#include "Platform/MacOS/AppKit/AppKitKeyWindow.h"
#include "Platform/MacOS/AppKit/AppKitPointerPlatform.h"
#include "Platform/MacOS/AppKit/AppKitScreenPlatform.h"
#include "Platform/MacOS/AppKit/AppKitStatusBarPlatform.h"
#include "Platform/MacOS/AppKit/AppKitTextMeasurer.h"
#include "Platform/MacOS/AppKit/AppKitViewWindowPlatform.h"
#include "Platform/MacOS/AppKit/AppKitWindowPlatform.h"
#include "Platform/MacOS/CoreFoundation/RunLoopMainLoop.h"
#include "Platform/MacOS/Displays/CoreGraphicsDisplayPlatform.h"
#include "Platform/MacOS/Hotkeys/CarbonHotkeyPlatform.h"
#include "Platform/MacOS/Hotkeys/TextInputKeyboardLayout.h"
#include "Platform/MacOS/Input/MacEventTapPlatform.h"
#include "Platform/MacOS/Logging/MacLogPlatform.h"
#include "Platform/MacOS/Shell/MainBundle.h"
#include "Platform/MacOS/Shell/ProcessActivity.h"
#include "Platform/MacOS/Shell/ServiceLoginItem.h"
#include "Platform/MacOS/Shell/UserDirectories.h"
#include "Platform/Posix/PosixFileManager.h"

#include <csignal>

namespace tarvex {

namespace {

/// Every adapter of the desktop.
struct Desktop {
    ProcessActivity activity;
    MacLogPlatform log;
    RunLoopMainLoop mainLoop;
    ActivationLoan activation{mainLoop};
    NotificationCenter notifications;
    CoreGraphicsDisplayPlatform displays;
    AppKitScreenPlatform screens;
    MacAccessibilityPlatform accessibility;
    MacEventTapPlatform eventTap{mainLoop};
    AppKitPointerPlatform pointer;
    AppKitWindowPlatform windows{mainLoop};
    AppKitViewWindowPlatform viewWindows{mainLoop, activation};
    AppKitKeyWindow keyWindow;
    AppKitFormWindowPlatform formWindows{mainLoop, activation};
    AppKitTextMeasurer textMeasurer;
    AppKitStatusBarPlatform statusBar;
    CarbonHotkeyPlatform hotkeys;
    AppKitKeyMonitorPlatform keyMonitors;
    TextInputKeyboardLayout keyboardLayout;
    ServiceLoginItem loginItem;
    MainBundle bundle;
    PosixFileManager files{UserDirectories::applicationSupport()};
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
            .modifierNames = {"Command", "Shift", "Option", "Control"},
            .terminate = &terminateApplication};
}

void run() {
    // Writing beyond the limit on file sizes is then a failed write instead of the end of the program.
    std::signal(SIGXFSZ, SIG_IGN);
    prepareApplication();
    Desktop desktop;
    const ApplicationEntry entry =
        makeApplicationEntry(makeApplicationPlatform(desktop), desktop.viewWindows);
    runApplication(*entry.delegate, [&entry] { entry.applicationController->showPreferences(); });
}

} // namespace

} // namespace tarvex

int main() {
    @autoreleasepool {
        tarvex::run();
    }
    return 0;
}
