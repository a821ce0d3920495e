#include "Platform/MacOS/AppKit/AppKitStatusBarPlatform.h"

#include "Platform/MacOS/AppKit/MenuRealizer.h"
#include "Platform/MacOS/AppKit/NativeFonts.h"
#include "Platform/MacOS/AppKit/NativeText.h"

#import <AppKit/AppKit.h>

namespace tarvex {

namespace {

/// Nil when the system has no symbol of that name.
NSImage* symbolImage(const StatusItemAppearance& appearance) {
    NSImage* const symbol =
        [NSImage imageWithSystemSymbolName:makeString(appearance.symbolName).get()
                  accessibilityDescription:makeString(appearance.accessibilityDescription).get()];
    NSImageSymbolConfiguration* const configuration =
        [NSImageSymbolConfiguration configurationWithPointSize:appearance.pointSize
                                                        weight:nativeFontWeight(appearance.weight)];
    NSImage* const image = [symbol imageWithSymbolConfiguration:configuration];
    [image setTemplate:appearance.isTemplate ? YES : NO];
    return image;
}

class AppKitStatusItem final : public StatusItem {
public:
    explicit AppKitStatusItem(StatusItemDelegate& delegate)
        : menu_([&delegate] { return delegate.menuWillOpen(); },
                [&delegate](const MenuItem& item) { delegate.menuItemChosen(item); }) {
        @autoreleasepool {
            item_ = ObjCHandle<NSStatusItem*>::share(
                [[NSStatusBar systemStatusBar] statusItemWithLength:NSVariableStatusItemLength]);
        }
    }

    AppKitStatusItem(const AppKitStatusItem&) = delete;
    AppKitStatusItem& operator=(const AppKitStatusItem&) = delete;
    AppKitStatusItem(AppKitStatusItem&&) = delete;
    AppKitStatusItem& operator=(AppKitStatusItem&&) = delete;

    ~AppKitStatusItem() override {
        @autoreleasepool {
            if (item_) {
                [item_.get() setMenu:nil];
                [[NSStatusBar systemStatusBar] removeStatusItem:item_.get()];
                keepForThisTurn(item_.get());
            }
        }
    }

    void setAppearance(const StatusItemAppearance& appearance) override {
        @autoreleasepool {
            NSStatusBarButton* const button = [item_.get() button];
            [button setImage:symbolImage(appearance)];
            [button setImagePosition:static_cast<NSCellImagePosition>(appearance.imagePosition)];
            [button setToolTip:makeString(appearance.toolTip).get()];
        }
    }

    void setMenu(const Menu& menu) override {
        menu_.setMenu(menu);
        [item_.get() setMenu:menu_.menu()];
    }

private:
    MenuRealizer menu_;
    ObjCHandle<NSStatusItem*> item_;
};

} // namespace

std::unique_ptr<StatusItem> AppKitStatusBarPlatform::makeStatusItem(StatusItemDelegate& delegate) {
    return std::make_unique<AppKitStatusItem>(delegate);
}

} // namespace tarvex
