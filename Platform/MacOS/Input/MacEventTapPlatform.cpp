#include "Platform/MacOS/Input/MacEventTapPlatform.h"

#include "Platform/MacOS/CoreFoundation/CFHandle.h"
#include "Platform/MacOS/Input/TapContext.h"

#include <ApplicationServices/ApplicationServices.h>
#include <utility>

namespace tarvex {

namespace {

// The notices of a disabled tap come with no event that could be asked.
std::uint64_t flagsOf(CGEventType type, CGEventRef event) {
    const bool isNotice = type == kCGEventTapDisabledByTimeout || type == kCGEventTapDisabledByUserInput;
    return isNotice || event == nullptr ? 0 : static_cast<std::uint64_t>(CGEventGetFlags(event));
}

// An exception must not pass through a frame of the system, and nothing may keep the event from its receiver.
CGEventRef handleTapEvent(CGEventTapProxy /*proxy*/, CGEventType type, CGEventRef event,
                          void* userInfo) noexcept {
    try {
        const auto context = static_cast<TapContext*>(userInfo)->shared_from_this();
        context->handle(static_cast<EventType>(type), flagsOf(type, event));
    } catch (...) {
        return event;
    }
    return event;
}

class MacEventTap final : public EventTap {
public:
    MacEventTap(std::shared_ptr<TapContext> context, CFHandle<CFMachPortRef> port)
        : context_(std::move(context)), port_(std::move(port)) {
        context_->setTap(this);
    }

    MacEventTap(const MacEventTap&) = delete;
    MacEventTap& operator=(const MacEventTap&) = delete;
    MacEventTap(MacEventTap&&) = delete;
    MacEventTap& operator=(MacEventTap&&) = delete;

    ~MacEventTap() override { context_->setTap(nullptr); }

    [[nodiscard]] CFMachPortRef port() const { return port_.get(); }

    [[nodiscard]] const std::shared_ptr<TapContext>& context() const { return context_; }

private:
    // After the port is gone the system calls no more.
    std::shared_ptr<TapContext> context_;
    CFHandle<CFMachPortRef> port_;
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
    // The source holds the tap's port: a tap that is dropped too early must not take the context with it.
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
    auto port = CFHandle<CFMachPortRef>::adopt(CGEventTapCreate(
        static_cast<CGEventTapLocation>(request.location),
        static_cast<CGEventTapPlacement>(request.placement), static_cast<CGEventTapOptions>(request.options),
        request.eventMask, &handleTapEvent, context.get()));
    return port ? std::make_unique<MacEventTap>(std::move(context), std::move(port)) : nullptr;
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
