#pragma once

#include <IOKit/IOKitLib.h>
#include <utility>

namespace tarvex {

/// Owns one reference to an object of the I/O Kit, or none.
class IOObjectHandle {
public:
    IOObjectHandle() = default;

    /// Takes over the reference that a function gave.
    explicit IOObjectHandle(io_object_t object) : object_(object) {}

    IOObjectHandle(const IOObjectHandle&) = delete;
    IOObjectHandle& operator=(const IOObjectHandle&) = delete;

    IOObjectHandle(IOObjectHandle&& other) noexcept : object_(std::exchange(other.object_, IO_OBJECT_NULL)) {}

    IOObjectHandle& operator=(IOObjectHandle&& other) noexcept {
        IOObjectHandle taken(std::move(other));
        std::swap(object_, taken.object_);
        return *this;
    }

    ~IOObjectHandle() {
        if (object_ != IO_OBJECT_NULL) {
            IOObjectRelease(object_);
        }
    }

    [[nodiscard]] io_object_t get() const { return object_; }

    [[nodiscard]] explicit operator bool() const { return object_ != IO_OBJECT_NULL; }

private:
    io_object_t object_ = IO_OBJECT_NULL;
};

} // namespace tarvex
