#include "Platform/MacOS/AppKit/TitledWindow.h"

#include "App/Input/EventTapPlatform.h"
#include "Platform/MacOS/AppKit/CanvasView.h"
#include "Platform/MacOS/AppKit/Guarded.h"

using tarvex::TitledWindowOwner;

namespace tarvex {

namespace {

/// The characters are those that the keyboard layout has for the key with Command, which need not be those
/// that it has without.
bool isCloseKey(NSEvent* event) {
    const std::uint64_t held = eventFlags(event) & ~event_flag::capsLock;
    return held == event_flag::command && [[[event characters] lowercaseString] isEqualToString:@"w"];
}

} // namespace

} // namespace tarvex

@implementation TarvexTitledWindow

- (void)tarvexSetOwner:(TitledWindowOwner*)owner {
    owner_ = owner;
}

// The title bar and the keyboard close it through this, too. The toolkit's notice would come while it is
// still to be seen.
- (void)close {
    TitledWindowOwner* const owner = [self isVisible] ? owner_ : nullptr;
    if (owner != nullptr) {
        tarvex::callGuarded([owner] { owner->titledWindowWillClose(); });
    }
    [super close];
    if (owner != nullptr) {
        tarvex::callGuarded([owner] { owner->titledWindowDidClose(); });
    }
}

// A program without a main menu has no item that would do it.
- (BOOL)performKeyEquivalent:(NSEvent*)event {
    if ([super performKeyEquivalent:event]) {
        return YES;
    }
    if (!tarvex::isCloseKey(event)) {
        return NO;
    }
    [self performClose:nil];
    return YES;
}

@end
