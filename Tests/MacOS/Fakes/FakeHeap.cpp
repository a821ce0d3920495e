#include "Tests/MacOS/Fakes/FakeHeap.h"

namespace tarvex::fake {

void Heap::retain(CFTypeRef reference) {
    auto* object = const_cast<Object*>(objectOf(reference));
    if (object == nullptr) {
        noteMisuse("CFRetain of nothing");
    } else if (object->references != immortal && isAlive(*object, "CFRetain")) {
        ++object->references;
    }
}

void Heap::release(CFTypeRef reference) {
    auto* object = const_cast<Object*>(objectOf(reference));
    if (object == nullptr) {
        noteMisuse("CFRelease of nothing");
        return;
    }
    if (object->references == immortal || !isAlive(*object, "CFRelease")) {
        return;
    }
    if (--object->references == 0) {
        object->dispose();
    }
}

bool Heap::isAlive(const Object& object, const char* user) {
    if (object.references == 0) {
        noteMisuse(std::string(user) + " of a released " + object.description());
        return false;
    }
    return true;
}

std::vector<std::string> Heap::living() const {
    std::vector<std::string> found;
    for (const auto& object : objects_) {
        if (object->references > 0) {
            found.push_back(object->description() + " with " + std::to_string(object->references) +
                            " references");
        }
    }
    return found;
}

} // namespace tarvex::fake
