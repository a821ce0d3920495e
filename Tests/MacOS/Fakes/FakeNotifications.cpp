#include "Tests/MacOS/Fakes/FakeNotifications.h"

#include "Tests/MacOS/Fakes/FakeCoreFoundation.h"
#include "Tests/MacOS/Fakes/FakeMac.h"

#include <algorithm>

namespace tarvex::fake {

namespace {

String sharedCenter{u"the distributed notification centre"};
String ownCenter{u"the local notification centre"};

bool isSame(const FakeNotifications::Observer& first, const FakeNotifications::Observer& second) {
    return first.center == second.center && first.observer == second.observer && first.name == second.name &&
           first.object == second.object;
}

} // namespace

void FakeNotifications::tellEverybody(const std::string& name) {
    mac().runLoop.enqueue([this, name] { post(CFNotificationCenterGetDistributedCenter(), name, nullptr); });
}

bool FakeNotifications::hears(const Observer& observer, CFNotificationCenterRef center,
                              const std::string& name, const void* object) const {
    const bool isKeptForLater = center == CFNotificationCenterGetDistributedCenter() && isSuspended &&
                                observer.suspension != CFNotificationSuspensionBehaviorDeliverImmediately;
    return observer.center == center && observer.name == name && !isKeptForLater &&
           (observer.object == nullptr || observer.object == object);
}

void FakeNotifications::post(CFNotificationCenterRef center, const std::string& name, const void* object) {
    const std::vector<Observer> present = observers_;
    const CFStringRef text = makeString(name);
    for (const Observer& observer : present) {
        // An earlier one may have removed it.
        const bool isRegistered =
            std::find(observers_.begin(), observers_.end(), observer) != observers_.end();
        if (isRegistered && hears(observer, center, name, object)) {
            observer.callback(center, const_cast<void*>(observer.observer), text, object, nullptr);
        }
    }
    mac().heap.release(text);
}

bool FakeNotifications::remove(const Observer& observer) {
    return std::erase_if(observers_, [&](const Observer& one) { return isSame(one, observer); }) > 0;
}

std::vector<std::string> FakeNotifications::leftovers() const {
    std::vector<std::string> found;
    for (const Observer& observer : observers_) {
        found.push_back("observer of " + observer.name);
    }
    return found;
}

} // namespace tarvex::fake

using namespace tarvex::fake;

extern "C" {

CFNotificationCenterRef CFNotificationCenterGetLocalCenter(void) {
    return referenceTo<CFNotificationCenterRef>(&ownCenter);
}

CFNotificationCenterRef CFNotificationCenterGetDistributedCenter(void) {
    return referenceTo<CFNotificationCenterRef>(&sharedCenter);
}

void CFNotificationCenterAddObserver(CFNotificationCenterRef center, const void* observer,
                                     CFNotificationCallback callback, CFStringRef name, const void* object,
                                     CFNotificationSuspensionBehavior suspension) {
    if (mac().heap.as<const String>(name, "CFNotificationCenterAddObserver") != nullptr) {
        mac().notifications.add({center, observer, callback, textOfString(name), object, suspension});
    }
}

void CFNotificationCenterRemoveObserver(CFNotificationCenterRef center, const void* observer,
                                        CFNotificationName name, const void* object) {
    if (!mac().notifications.remove({center, observer, nullptr, textOfString(name), object, {}})) {
        mac().heap.noteMisuse("CFNotificationCenterRemoveObserver of none");
    }
}

void CFNotificationCenterPostNotification(CFNotificationCenterRef center, CFNotificationName name,
                                          const void* object, CFDictionaryRef /*userInfo*/,
                                          Boolean /*deliverImmediately*/) {
    if (mac().heap.as<const String>(name, "CFNotificationCenterPostNotification") != nullptr) {
        mac().notifications.post(center, textOfString(name), object);
    }
}
}
