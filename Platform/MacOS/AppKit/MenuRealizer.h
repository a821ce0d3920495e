#pragma once

#include "App/Toolkit/Menu.h"
#include "Platform/MacOS/AppKit/ActionTarget.h"
#include "Platform/MacOS/AppKit/ObjCHandle.h"

#import <AppKit/AppKit.h>
#include <functional>
#include <memory>
#include <vector>

namespace tarvex {
class MenuRealizer;
}

/// Asks its owner for the newest menu before the menu opens.
@interface TarvexMenuDelegate : NSObject <NSMenuDelegate> {
    tarvex::MenuRealizer* owner_;
}
- (instancetype)initWithOwner:(tarvex::MenuRealizer*)owner;
- (void)forgetOwner;
@end

namespace tarvex {

/// The toolkit's counterpart of a menu.
class MenuRealizer {
public:
    /// Gives the menu as it is now; called when it is about to open.
    using Renewal = std::function<Menu()>;
    /// An item with an action was chosen. It may destroy the realizer.
    using Chosen = std::function<void(const MenuItem&)>;

    MenuRealizer(Renewal renewal, Chosen chosen);
    MenuRealizer(const MenuRealizer&) = delete;
    MenuRealizer& operator=(const MenuRealizer&) = delete;
    MenuRealizer(MenuRealizer&&) = delete;
    MenuRealizer& operator=(MenuRealizer&&) = delete;
    ~MenuRealizer();

    void setMenu(const Menu& menu);

    /// Replaces the menu by what it is now.
    void renew();

    [[nodiscard]] NSMenu* menu() const { return menu_.get(); }

private:
    void fill(NSMenu* menu, const std::vector<MenuItem>& items);
    [[nodiscard]] ObjCHandle<NSMenuItem*> makeItem(const MenuItem& item);
    void choose(id native);

    struct Choice {
        ObjCHandle<NSMenuItem*> native;
        MenuItem item;
    };

    Renewal renewal_;
    Chosen chosen_;
    ActionTarget target_;
    ObjCHandle<TarvexMenuDelegate*> delegate_;
    ObjCHandle<NSMenu*> menu_;
    Menu shown_;
    bool isFilling_ = false;
    /// The items with an action.
    std::vector<Choice> choices_;
};

} // namespace tarvex
