#pragma once

#include "Tests/MacOS/Fakes/FakeAccessibility.h"
#include "Tests/MacOS/Fakes/FakeCoreFoundation.h"
#include "Tests/MacOS/Fakes/FakeDisplays.h"
#include "Tests/MacOS/Fakes/FakeEventTaps.h"
#include "Tests/MacOS/Fakes/FakeHeap.h"
#include "Tests/MacOS/Fakes/FakeHotkeys.h"
#include "Tests/MacOS/Fakes/FakeIORegistry.h"
#include "Tests/MacOS/Fakes/FakeKeyboardLayouts.h"
#include "Tests/MacOS/Fakes/FakeNotifications.h"
#include "Tests/MacOS/Fakes/FakeRunLoop.h"
#include "Tests/MacOS/Fakes/FakeUnifiedLog.h"

#include <string>
#include <vector>

namespace tarvex::fake {

/// The Mac of the running test. Its C interfaces have no parameter that could name it, so that there is one
/// at a time: it stands behind them while it lives.
class FakeMac {
public:
    FakeMac();
    FakeMac(const FakeMac&) = delete;
    FakeMac& operator=(const FakeMac&) = delete;
    FakeMac(FakeMac&&) = delete;
    FakeMac& operator=(FakeMac&&) = delete;
    ~FakeMac();

    /// What the program left behind and did wrong; called at the end, when the program has let go of all.
    [[nodiscard]] std::vector<std::string> faults();

    Heap heap;
    FakeRunLoop runLoop;
    FakeAccessibility accessibility;
    FakeEventTaps eventTaps;
    FakeNotifications notifications;
    FakeHotkeys hotkeys;
    FakeKeyboardLayouts layouts;
    FakeDisplays displays;
    FakeIORegistry registry;
    FakeUnifiedLog log;
    UserLocale locale;

private:
    FakeMac* previous_;
};

/// The present one.
FakeMac& mac();

} // namespace tarvex::fake
