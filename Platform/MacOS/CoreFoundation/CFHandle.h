#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <utility>

namespace tarvex {

/// Owns one reference to a Core Foundation object, or none. No other code retains or releases.
template <typename Reference>
class CFHandle {
public:
    CFHandle() = default;

    /// Takes over the reference that a function with Create or Copy in its name gave (Apple, Memory
    /// Management Programming Guide for Core Foundation).
    [[nodiscard]] static CFHandle adopt(Reference object) { return CFHandle(object); }

    /// Adds a reference to an object that belongs to somebody else, as a function with Get in its name gives.
    [[nodiscard]] static CFHandle share(Reference object) {
        if (object != nullptr) {
            CFRetain(object);
        }
        return CFHandle(object);
    }

    CFHandle(const CFHandle& other) : CFHandle(share(other.object_)) {}

    CFHandle(CFHandle&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}

    CFHandle& operator=(const CFHandle& other) {
        CFHandle copy(other);
        std::swap(object_, copy.object_);
        return *this;
    }

    CFHandle& operator=(CFHandle&& other) noexcept {
        CFHandle taken(std::move(other));
        std::swap(object_, taken.object_);
        return *this;
    }

    ~CFHandle() {
        if (object_ != nullptr) {
            CFRelease(object_);
        }
    }

    /// The object, valid while the handle is; null when there is none.
    [[nodiscard]] Reference get() const { return object_; }

    [[nodiscard]] explicit operator bool() const { return object_ != nullptr; }

private:
    explicit CFHandle(Reference object) : object_(object) {}

    Reference object_ = nullptr;
};

} // namespace tarvex
