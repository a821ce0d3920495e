#pragma once

/// Names of the StatusNotifierItem specification and of the menus that go with it.
namespace tarvex::notifier {

inline constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";
inline constexpr const char* watcherPath = "/StatusNotifierWatcher";
inline constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
inline constexpr const char* itemPath = "/StatusNotifierItem";
inline constexpr const char* menuInterface = "com.canonical.dbusmenu";
inline constexpr const char* menuPath = "/StatusNotifierItem/Menu";
inline constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";

} // namespace tarvex::notifier
