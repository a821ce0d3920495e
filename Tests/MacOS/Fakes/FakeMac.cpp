#include "Tests/MacOS/Fakes/FakeMac.h"

#include <stdexcept>
#include <utility>

namespace tarvex::fake {

namespace {

FakeMac* present = nullptr;

void append(std::vector<std::string>& all, const std::vector<std::string>& some, const std::string& prefix) {
    for (const std::string& one : some) {
        all.push_back(prefix + one);
    }
}

} // namespace

FakeMac::FakeMac() : previous_(std::exchange(present, this)) {}

FakeMac::~FakeMac() {
    present = previous_;
}

std::vector<std::string> FakeMac::faults() {
    runLoop.drain();
    std::vector<std::string> found;
    append(found, heap.misuses(), "");
    append(found, heap.living(), "leaked: ");
    append(found, hotkeys.leftovers(), "leaked: ");
    append(found, notifications.leftovers(), "leaked: ");
    append(found, registry.leftovers(), "leaked: ");
    append(found, log.leftovers(), "leaked: ");
    return found;
}

FakeMac& mac() {
    if (present == nullptr) {
        throw std::logic_error("a function of the system was called outside a test");
    }
    return *present;
}

} // namespace tarvex::fake
