#pragma once

#import <Foundation/Foundation.h>
#include <utility>

namespace tarvex {

/// Owns one reference to an Objective-C object, or none; Reference is a pointer such as NSWindow*, or id. No
/// other code retains or releases. It works with automatic reference counting, where the compiler counts, and
/// without, where it counts itself.
template <typename Reference>
class ObjCHandle {
public:
    ObjCHandle() = default;

    /// Takes over the reference that a method gave whose name begins with alloc, new, copy or mutableCopy
    /// (Apple, Advanced Memory Management Programming Guide).
    [[nodiscard]] static ObjCHandle adopt(Reference object) { return ObjCHandle(object); }

    /// Adds a reference to an object that belongs to somebody else, as every other method gives.
    [[nodiscard]] static ObjCHandle share(Reference object) {
        retain(object);
        return ObjCHandle(object);
    }

    ObjCHandle(const ObjCHandle& other) : ObjCHandle(share(other.object_)) {}

    ObjCHandle(ObjCHandle&& other) noexcept : object_(std::exchange(other.object_, nil)) {}

    ObjCHandle& operator=(const ObjCHandle& other) {
        ObjCHandle copy(other);
        std::swap(object_, copy.object_);
        return *this;
    }

    ObjCHandle& operator=(ObjCHandle&& other) noexcept {
        ObjCHandle taken(std::move(other));
        std::swap(object_, taken.object_);
        return *this;
    }

    ~ObjCHandle() { release(object_); }

    /// The object, valid while the handle is; nil when there is none.
    [[nodiscard]] Reference get() const { return object_; }

    [[nodiscard]] explicit operator bool() const { return object_ != nil; }

private:
    explicit ObjCHandle(Reference object) : object_(object) {}

#if __has_feature(objc_arc)
    static void retain(Reference /*object*/) {}

    static void release(Reference /*object*/) {}
#else
    static void retain(Reference object) { [object retain]; }

    static void release(Reference object) { [object release]; }
#endif

    Reference object_ = nil;
};

/// The object lives until the main loop is back, whoever lets go of it meanwhile: a view or a window must not
/// vanish under the toolkit's own code, which may be in the middle of handing it an event.
inline void keepForThisTurn(NSObject* object) {
    [object performSelector:@selector(self) withObject:nil afterDelay:0];
}

} // namespace tarvex
