#include "Platform/MacOS/AppKit/AppKitKeyWindow.h"

#include "Platform/MacOS/AppKit/NativeText.h"

#import <AppKit/AppKit.h>

namespace tarvex {

std::optional<std::string> AppKitKeyWindow::keyWindowTitle() const {
    std::optional<std::string> title;
    @autoreleasepool {
        NSWindow* const window = [NSApp keyWindow];
        if (window != nil) {
            title = utf8Of([window title]);
        }
    }
    return title;
}

} // namespace tarvex
