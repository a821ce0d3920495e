#include "Tests/MacOS/Fakes/FakeDisplays.h"

#include "Tests/MacOS/Fakes/FakeMac.h"

#include <algorithm>
#include <limits>

namespace tarvex::fake {

namespace {

constexpr std::uint32_t noMonitor = 0xFFFFFFFF;
constexpr double infinity = std::numeric_limits<double>::infinity();

std::uint32_t numberOf(CGDirectDisplayID display, std::uint32_t FakeDisplay::*number) {
    const FakeDisplay* found = mac().displays.find(display);
    return found == nullptr ? noMonitor : found->*number;
}

} // namespace

const FakeDisplay* FakeDisplays::find(CGDirectDisplayID number) const {
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const FakeDisplay& display) { return display.number == number; });
    return found == all.end() ? nullptr : &*found;
}

} // namespace tarvex::fake

using namespace tarvex::fake;

extern "C" {

// Without a buffer the capacity is ignored and all are counted; with one, those that were written.
CGError CGGetActiveDisplayList(uint32_t capacity, CGDirectDisplayID* displays, uint32_t* count) {
    const FakeDisplays& present = mac().displays;
    const CGError error = displays == nullptr ? present.countError : present.listError;
    if (error != kCGErrorSuccess) {
        return error;
    }
    const auto total = static_cast<uint32_t>(present.all.size());
    *count = displays == nullptr ? total : std::min(capacity, total);
    for (uint32_t index = 0; displays != nullptr && index < *count; ++index) {
        displays[index] = present.all[index].number;
    }
    return kCGErrorSuccess;
}

uint32_t CGDisplayVendorNumber(CGDirectDisplayID display) {
    return numberOf(display, &FakeDisplay::vendor);
}

uint32_t CGDisplayModelNumber(CGDirectDisplayID display) {
    return numberOf(display, &FakeDisplay::model);
}

uint32_t CGDisplaySerialNumber(CGDirectDisplayID display) {
    return numberOf(display, &FakeDisplay::serial);
}

CGRect CGDisplayBounds(CGDirectDisplayID display) {
    const FakeDisplay* found = mac().displays.find(display);
    return found == nullptr ? CGRect{{infinity, infinity}, {0, 0}} : found->bounds;
}

boolean_t CGDisplayIsBuiltin(CGDirectDisplayID display) {
    const FakeDisplay* found = mac().displays.find(display);
    return found != nullptr && !found->isBuiltin ? 0 : 1;
}

boolean_t CGDisplayIsOnline(CGDirectDisplayID display) {
    return mac().displays.find(display) == nullptr ? 0 : 1;
}
}
