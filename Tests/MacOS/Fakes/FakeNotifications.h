#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <string>
#include <vector>

namespace tarvex::fake {

/// The notification centre that all programs share and the program's own.
class FakeNotifications {
public:
    /// Another program tells all others, which hear it on a later turn of their main loops.
    void tellEverybody(const std::string& name);

    /// Whether the shared centre keeps notifications for later, as the toolkit has it do while the program is
    /// not in front.
    bool isSuspended = true;

    struct Observer {
        CFNotificationCenterRef center = nullptr;
        const void* observer = nullptr;
        CFNotificationCallback callback = nullptr;
        std::string name;
        const void* object = nullptr;
        CFNotificationSuspensionBehavior suspension{};

        bool operator==(const Observer&) const = default;
    };

    void add(const Observer& observer) { observers_.push_back(observer); }

    /// False when there is none of that name and object.
    bool remove(const Observer& observer);

    void post(CFNotificationCenterRef center, const std::string& name, const void* object);

    [[nodiscard]] std::size_t observerCount() const { return observers_.size(); }

    /// Observers that nobody removed.
    [[nodiscard]] std::vector<std::string> leftovers() const;

private:
    [[nodiscard]] bool hears(const Observer& observer, CFNotificationCenterRef center,
                             const std::string& name, const void* object) const;

    std::vector<Observer> observers_;
};

} // namespace tarvex::fake
