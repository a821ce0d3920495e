#include "Platform/MacOS/AppKit/MenuRealizer.h"

#include "Platform/MacOS/AppKit/Guarded.h"
#include "Platform/MacOS/AppKit/NativeText.h"

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
        [native.get() setTag:static_cast<NSInteger>(choices_.size())];
        choices_.push_back(item);
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

void MenuRealizer::choose(NSMenuItem* item) {
    const NSInteger tag = [item tag];
    if (tag < 0 || static_cast<std::size_t>(tag) >= choices_.size()) {
        return;
    }
    // Copies, since the choice may be the end of all of this.
    const MenuItem chosen = choices_[static_cast<std::size_t>(tag)];
    const Chosen report = chosen_;
    report(chosen);
}

} // namespace tarvex
