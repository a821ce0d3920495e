#pragma once

#include "App/Shell/AppDelegate.h"

namespace tarvex {

/// Runs the main loop of the one application object, which has neither a Dock icon nor a menu bar, until the
/// program ends. Call it once, on the main thread.
void runApplication(AppDelegate& delegate);

/// Makes the application object and tells the system what kind of program this is. Windows need it to exist.
void prepareApplication();

/// Ends the program, as the system's own Quit does.
void terminateApplication();

} // namespace tarvex
