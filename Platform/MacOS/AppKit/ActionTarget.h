#pragma once

#include "Platform/MacOS/AppKit/ObjCHandle.h"

#import <Foundation/Foundation.h>
#include <functional>
#include <memory>

namespace tarvex {
class ActionTarget;
}

/// Hands what it is sent on to its owner, for as long as there is one.
@interface TarvexActionReceiver : NSObject {
    tarvex::ActionTarget* owner_;
}
- (instancetype)initWithOwner:(tarvex::ActionTarget*)owner;
- (void)forgetOwner;
- (void)receiveAction:(id)sender;
@end

namespace tarvex {

/// A C++ function in the place of a target and its action, or of an observer of notifications. The toolkit
/// holds targets and observers weakly, so whoever registers it keeps it, and takes it out again before it
/// goes.
class ActionTarget {
public:
    /// Hears of the sender of an action, or of the notification.
    using Action = std::function<void(id)>;

    explicit ActionTarget(Action action);
    ActionTarget(const ActionTarget&) = delete;
    ActionTarget& operator=(const ActionTarget&) = delete;
    ActionTarget(ActionTarget&&) = delete;
    ActionTarget& operator=(ActionTarget&&) = delete;
    ~ActionTarget();

    [[nodiscard]] id object() const { return receiver_.get(); }

    [[nodiscard]] static SEL selector() { return @selector(receiveAction:); }

    /// The action may destroy the target.
    void perform(id sender) const;

private:
    std::shared_ptr<const Action> action_;
    ObjCHandle<TarvexActionReceiver*> receiver_;
};

} // namespace tarvex
