#include "Platform/MacOS/AppKit/AppKitScreenPlatform.h"

#include "Platform/MacOS/AppKit/NativeGeometry.h"
#include "Platform/MacOS/AppKit/NativeText.h"

#import <AppKit/AppKit.h>

namespace tarvex {

namespace {

std::optional<std::uint32_t> displayNumberOf(NSScreen* screen) {
    const id number = [[screen deviceDescription] objectForKey:@"NSScreenNumber"];
    return [number isKindOfClass:[NSNumber class]] ? std::optional<std::uint32_t>([number unsignedIntValue])
                                                   : std::nullopt;
}

Screen screenOf(NSScreen* screen) {
    return {displayNumberOf(screen), rectOf([screen frame]), rectOf([screen visibleFrame]),
            utf8Of([screen localizedName])};
}

} // namespace

std::vector<Screen> AppKitScreenPlatform::screens() {
    std::vector<Screen> screens;
    @autoreleasepool {
        for (NSScreen* screen in [NSScreen screens]) {
            screens.push_back(screenOf(screen));
        }
    }
    return screens;
}

std::optional<Screen> AppKitScreenPlatform::mainScreen() {
    std::optional<Screen> found;
    @autoreleasepool {
        NSScreen* const screen = [NSScreen mainScreen];
        if (screen != nil) {
            found = screenOf(screen);
        }
    }
    return found;
}

} // namespace tarvex
