#pragma once

#include "Platform/MacOS/AppKit/ObjCHandle.h"

namespace tarvex {

/// Keeps the system from slowing the program down because it shows no window (App Nap): everybody's input
/// passes through its event tap. The Mac goes to sleep as ever.
class ProcessActivity {
public:
    ProcessActivity();
    ProcessActivity(const ProcessActivity&) = delete;
    ProcessActivity& operator=(const ProcessActivity&) = delete;
    ProcessActivity(ProcessActivity&&) = delete;
    ProcessActivity& operator=(ProcessActivity&&) = delete;
    ~ProcessActivity();

private:
    ObjCHandle<id> activity_;
};

} // namespace tarvex
