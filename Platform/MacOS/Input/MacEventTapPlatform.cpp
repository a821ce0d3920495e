#include "Platform/MacOS/Input/MacEventTapPlatform.h"

#include "Platform/MacOS/CoreFoundation/CFHandle.h"
#include "Platform/MacOS/Input/TapContext.h"
#include "Platform/MacOS/Input/TapPort.h"
#include "Platform/MacOS/Input/TapWatch.h"

#include <ApplicationServices/ApplicationServices.h>
#include <utility>

namespace tarvex {

namespace {

class MacEventTap final : public EventTap {
public:
    MacEventTap(MainLoop& mainLoop, std::shared_ptr<TapContext> context, std::shared_ptr<TapPort> port)
        : mainLoop_(&mainLoop),
          context_(std::move(context)),
          port_(std::move(port)),
          watch_(mainLoop, context_, port_) {
        context_->setTap(this);
    }

    MacEventTap(const MacEventTap&) = delete;
    MacEventTap& operator=(const MacEventTap&) = delete;
    MacEventTap(MacEventTap&&) = delete;
    MacEventTap& operator=(MacEventTap&&) = delete;

    ~MacEventTap() override {
        context_->setTap(nullptr);
        if (context_->isInCall()) {
            // Whether the action is called or only destroyed, the port goes with it.
            mainLoop_->post([port = std::move(port_)] {});
        }
    }

    [[nodiscard]] CFMachPortRef port() const { return port_->get(); }

    [[nodiscard]] const std::shared_ptr<TapContext>& context() const { return context_; }

private:
    MainLoop* mainLoop_;
    std::shared_ptr<TapContext> context_;
    std::shared_ptr<TapPort> port_;
    /// Goes before the port, of whose end by this it is not to tell.
    TapWatch watch_;
};

class MacRunLoopSource final : public RunLoopSource {
public:
    MacRunLoopSource(std::shared_ptr<TapContext> context, CFHandle<CFRunLoopSourceRef> source)
        : context_(std::move(context)), source_(std::move(source)) {}

    MacRunLoopSource(const MacRunLoopSource&) = delete;
    MacRunLoopSource& operator=(const MacRunLoopSource&) = delete;
    MacRunLoopSource(MacRunLoopSource&&) = delete;
    MacRunLoopSource& operator=(MacRunLoopSource&&) = delete;

    ~MacRunLoopSource() override { remove(); }

    void add() {
        CFRunLoopAddSource(CFRunLoopGetMain(), source_.get(), kCFRunLoopCommonModes);
        isOnLoop_ = true;
    }

    void remove() {
        if (isOnLoop_) {
            CFRunLoopRemoveSource(CFRunLoopGetMain(), source_.get(), kCFRunLoopCommonModes);
            isOnLoop_ = false;
            context_->forgetMotion();
        }
    }

private:
    std::shared_ptr<TapContext> context_;
    CFHandle<CFRunLoopSourceRef> source_;
    bool isOnLoop_ = false;
};

} // namespace

bool MacEventTapPlatform::preflightListenEventAccess() {
    return CGPreflightListenEventAccess();
}

bool MacEventTapPlatform::requestListenEventAccess() {
    return CGRequestListenEventAccess();
}

std::unique_ptr<EventTap> MacEventTapPlatform::createTap(const EventTapRequest& request) {
    auto context = std::make_shared<TapContext>(*mainLoop_, motionIntervalSeconds_, request);
    auto port = TapPort::make(context);
    return port ? std::make_unique<MacEventTap>(*mainLoop_, std::move(context), std::move(port)) : nullptr;
}

std::unique_ptr<RunLoopSource> MacEventTapPlatform::createRunLoopSource(EventTap& tap) {
    const auto* native = dynamic_cast<const MacEventTap*>(&tap);
    if (native == nullptr) {
        return nullptr;
    }
    auto source = CFHandle<CFRunLoopSourceRef>::adopt(
        CFMachPortCreateRunLoopSource(kCFAllocatorDefault, native->port(), 0));
    return source ? std::make_unique<MacRunLoopSource>(native->context(), std::move(source)) : nullptr;
}

void MacEventTapPlatform::addSource(RunLoopSource& source) {
    if (auto* native = dynamic_cast<MacRunLoopSource*>(&source)) {
        native->add();
    }
}

void MacEventTapPlatform::removeSource(RunLoopSource& source) {
    if (auto* native = dynamic_cast<MacRunLoopSource*>(&source)) {
        native->remove();
    }
}

void MacEventTapPlatform::enableTap(EventTap& tap) {
    if (const auto* native = dynamic_cast<const MacEventTap*>(&tap)) {
        CGEventTapEnable(native->port(), true);
    }
}

} // namespace tarvex
