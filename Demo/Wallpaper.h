#pragma once

#include "Tests/Support/X11/XClient.h"

namespace tarvex::demo {

/// Gives the desktop a calm vertical gradient, under a compositor too. It stays when the client leaves.
void setWallpaper(test::XClient& client);

} // namespace tarvex::demo
