#include "Platform/MacOS/AppKit/MenuRealizer.h"

#include "Platform/MacOS/AppKit/Guarded.h"
#include "Platform/MacOS/AppKit/NativeText.h"

#include <algorithm>
#include <utility>

@implementation TarvexMenuDelegate

- (instancetype)initWithOwner:(tarvex::MenuRealizer*)owner {
    self = [super init];
    if (self != nil) {
        owner_ = owner;
    }
    return self;
}

- (void)forgetOwner {
    owner_ = nullptr;
}

// When menuWillOpen: is sent it is too late to change the items (Apple, NSMenuDelegate).
- (void)menuNeedsUpdate:(NSMenu*)menu {
    static_cast<void>(menu);
    if (owner_ != nullptr) {
        tarvex::callGuarded([owner = owner_] { owner->renew(); });
    }
}

@end

namespace tarvex {

MenuRealizer::MenuRealizer(Renewal renewal, Chosen chosen)
    : renewal_(std::move(renewal)),
      chosen_(std::move(chosen)),
      target_([this](id item) { choose(item); }),
      delegate_(ObjCHandle<TarvexMenuDelegate*>::adopt([[TarvexMenuDelegate alloc] initWithOwner:this])),
      menu_(ObjCHandle<NSMenu*>::adopt([[NSMenu alloc] initWithTitle:@""])) {
    [menu_.get() setAutoenablesItems:NO];
    [menu_.get() setDelegate:delegate_.get()];
}

MenuRealizer::~MenuRealizer() {
    @autoreleasepool {
        [menu_.get() setDelegate:nil];
        [delegate_.get() forgetOwner];
        [menu_.get() removeAllItems];
        keepForThisTurn(menu_.get());
    }
}

void MenuRealizer::setMenu(const Menu& menu) {
    // A toolkit may ask for the menu anew for every item that it is given.
    if (isFilling_ || menu == shown_) {
        return;
    }
    isFilling_ = true;
    @autoreleasepool {
        [menu_.get() removeAllItems];
        choices_.clear();
        fill(menu_.get(), menu.items);
    }
    shown_ = menu;
    isFilling_ = false;
}

void MenuRealizer::renew() {
    setMenu(renewal_());
}

void MenuRealizer::fill(NSMenu* menu, const std::vector<MenuItem>& items) {
    for (const MenuItem& item : items) {
        if (item.isSeparator) {
            [menu addItem:[NSMenuItem separatorItem]];
        } else {
            [menu addItem:makeItem(item).get()];
        }
    }
}

ObjCHandle<NSMenuItem*> MenuRealizer::makeItem(const MenuItem& item) {
    const bool hasAction = !item.action.empty();
    auto native = ObjCHandle<NSMenuItem*>::adopt([[NSMenuItem alloc]
        initWithTitle:makeString(item.title).get()
               action:hasAction ? ActionTarget::selector() : nullptr
        keyEquivalent:makeString(item.keyEquivalent).get()]);
    [native.get() setEnabled:item.isEnabled ? YES : NO];
    if (hasAction) {
        [native.get() setTarget:target_.object()];
        choices_.push_back({native, item});
    }
    if (item.representedObject) {
        [native.get() setRepresentedObject:[NSNumber numberWithUnsignedInt:*item.representedObject]];
    }
    if (item.submenu) {
        const auto submenu =
            ObjCHandle<NSMenu*>::adopt([[NSMenu alloc] initWithTitle:makeString(item.title).get()]);
        [submenu.get() setAutoenablesItems:NO];
        fill(submenu.get(), *item.submenu);
        [native.get() setSubmenu:submenu.get()];
    }
    return native;
}

void MenuRealizer::choose(id native) {
    // The menu may have been renewed since the item was clicked, and the item be no longer in it.
    const auto found = std::find_if(choices_.begin(), choices_.end(),
                                    [&](const Choice& choice) { return choice.native.get() == native; });
    if (found == choices_.end()) {
        return;
    }
    // The choice may be the end of all of this, and of the item and the submenu that the toolkit is dealing
    // with.
    keepForThisTurn(found->native.get());
    keepForThisTurn([found->native.get() menu]);
    const MenuItem chosen = found->item;
    const Chosen report = chosen_;
    report(chosen);
}

} // namespace tarvex
