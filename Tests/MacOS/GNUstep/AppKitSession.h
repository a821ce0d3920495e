#pragma once

#import <AppKit/AppKit.h>
#include <cstddef>
#include <functional>
#include <map>
#include <string>

namespace tarvex::test {

/// Lets the main loop run until the condition holds; false when it does not within ten seconds.
bool waitUntil(const std::function<bool()>& condition);

/// Whether an adapter made the window. GNUstep makes windows of its own when it first draws a picture: it
/// keeps each in a hidden one, which it calls "Window".
[[nodiscard]] bool isOfAnAdapter(NSWindow* window);

/// How many windows of adapters there are, hidden ones included.
[[nodiscard]] std::size_t windowCount();

/// How many objects there are of each of the adapters' classes that has any, since the first session began.
[[nodiscard]] std::map<std::string, int> objectsOfAdapters();

/// The application object, in front, and an autorelease pool for what a test does. At its end the test fails
/// if anything of the adapters is left: an object, a key monitor, a status item or an activity. What lives on
/// for a turn goes here, so that the next test does not count it.
class AppKitSession {
public:
    AppKitSession();
    AppKitSession(const AppKitSession&) = delete;
    AppKitSession& operator=(const AppKitSession&) = delete;
    AppKitSession(AppKitSession&&) = delete;
    AppKitSession& operator=(AppKitSession&&) = delete;
    ~AppKitSession();

private:
    NSAutoreleasePool* pool_;
};

} // namespace tarvex::test
