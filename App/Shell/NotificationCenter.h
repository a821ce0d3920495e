#pragma once

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>

namespace tarvex {

/// Names of the notifications that the program posts to itself.
namespace notification {
inline constexpr std::string_view hotkeyChanged = "TarvexHotkeyChanged";
inline constexpr std::string_view preferencesHotkeyChanged = "TarvexPreferencesHotkeyChanged";
inline constexpr std::string_view configChanged = "TarvexConfigChanged";
} // namespace notification

/// Tells whoever wants to know that something happened. Main thread only.
class NotificationCenter {
public:
    using Handler = std::function<void()>;

    /// Keeps a handler registered; destroying it ends that, also while a notification is being posted. It may
    /// outlive the centre.
    class Observation {
    public:
        Observation() = default;
        Observation(const Observation&) = delete;
        Observation& operator=(const Observation&) = delete;
        Observation(Observation&&) = delete;
        Observation& operator=(Observation&&) = delete;
        virtual ~Observation() = default;
    };

    /// Calls the handler for every notification of that name from now on.
    [[nodiscard]] std::unique_ptr<Observation> addObserver(std::string_view name, Handler handler);

    /// Calls the handlers of that name, before it returns, in the order in which they were added. Handlers
    /// that are added meanwhile wait for the next time.
    void post(std::string_view name);

private:
    struct Entry {
        std::string name;
        Handler handler;
        bool isCancelled = false;
    };

    class Registration;

    std::list<std::shared_ptr<Entry>> entries_;
};

} // namespace tarvex
