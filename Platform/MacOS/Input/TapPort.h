#pragma once

#include "App/Input/EventTapPlatform.h"
#include "Platform/MacOS/CoreFoundation/CFHandle.h"
#include "Platform/MacOS/Input/TapContext.h"

#include <memory>

namespace tarvex {

/// A tap as Core Graphics knows it: a port, and what its callback works on. Destroying it removes the tap.
/// That must not happen within the tap's callback: Core Graphics has not finished with the port then.
class TapPort {
public:
    /// Null while the system refuses.
    [[nodiscard]] static std::shared_ptr<TapPort> make(std::shared_ptr<TapContext> context);

    /// Whether the system would make such a tap now. It makes one, for as long as it takes to remove it,
    /// which hears of modifier keys alone, whatever the request wants: an event that came to it meanwhile
    /// might go with it, and a release of the button must not.
    [[nodiscard]] static bool canBeMade(const EventTapRequest& request);

    TapPort(const TapPort&) = delete;
    TapPort& operator=(const TapPort&) = delete;
    TapPort(TapPort&&) = delete;
    TapPort& operator=(TapPort&&) = delete;
    ~TapPort();

    [[nodiscard]] CFMachPortRef get() const { return port_.get(); }

private:
    TapPort(std::shared_ptr<TapContext> context, CFHandle<CFMachPortRef> port);

    /// Core Graphics holds a pointer to it for as long as the port is valid.
    std::shared_ptr<TapContext> context_;
    CFHandle<CFMachPortRef> port_;
};

} // namespace tarvex
