#pragma once

#include <QIcon>

namespace tarvex {

/// The program's own icon, as window lists and switchers show it: the same picture as the installed one,
/// which the desktop finds by name only once the program is installed. An application object must exist.
[[nodiscard]] QIcon applicationIcon();

} // namespace tarvex
