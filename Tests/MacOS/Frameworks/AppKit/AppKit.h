#pragma once

// What the adapters use of AppKit, as Apple documents it: types, constants, signatures.

#include <AppKit/Controls.h>
#include <AppKit/Drawing.h>
#include <AppKit/Windows.h>
