#pragma once

#include "App/Shell/AppDelegate.h"

#include <functional>

namespace tarvex {

/// Runs the main loop of the one application object, which has neither a Dock icon nor a menu bar, until the
/// program ends. Call it once, on the main thread.
/// @param reopened the program was opened once more while it runs, which starts no second one
void runApplication(AppDelegate& delegate, std::function<void()> reopened);

/// Makes the application object and tells the system what kind of program this is. Windows need it to exist.
void prepareApplication();

/// Asks for the program to come to the front of all others. From macOS 14 on the system may refuse it,
/// whoever asks; until then it never does.
void activateApplication();

/// Ends the program, as the system's own Quit does.
void terminateApplication();

} // namespace tarvex
