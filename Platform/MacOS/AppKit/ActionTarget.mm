#include "Platform/MacOS/AppKit/ActionTarget.h"

#include "Platform/MacOS/AppKit/Guarded.h"

#include <utility>

@implementation TarvexActionReceiver

- (instancetype)initWithOwner:(tarvex::ActionTarget*)owner {
    self = [super init];
    if (self != nil) {
        owner_ = owner;
    }
    return self;
}

- (void)forgetOwner {
    owner_ = nullptr;
}

- (void)receiveAction:(id)sender {
    // The action may be the end of the owner, and so of its reference to this object.
    const auto self_ = tarvex::ObjCHandle<TarvexActionReceiver*>::share(self);
    if (owner_ != nullptr) {
        owner_->perform(sender);
    }
}

@end

namespace tarvex {

ActionTarget::ActionTarget(Action action)
    : action_(std::make_shared<const Action>(std::move(action))),
      receiver_(ObjCHandle<TarvexActionReceiver*>::adopt([[TarvexActionReceiver alloc] initWithOwner:this])) {
}

ActionTarget::~ActionTarget() {
    [receiver_.get() forgetOwner];
}

void ActionTarget::perform(id sender) const {
    const std::shared_ptr<const Action> action = action_;
    callGuarded([&] { (*action)(sender); });
}

} // namespace tarvex
