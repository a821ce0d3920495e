#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tarvex::fake {

/// An object of the fake Core Foundation. It keeps its memory when its last reference goes, so that a later
/// use is noticed instead of being undefined, but lets go of what it holds.
class Object {
public:
    Object(CFTypeID type, std::string description) : type_(type), description_(std::move(description)) {}

    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    Object(Object&&) = delete;
    Object& operator=(Object&&) = delete;
    virtual ~Object() = default;

    /// The last reference has gone: releases and frees everything that it holds.
    virtual void dispose() {}

    [[nodiscard]] CFTypeID type() const { return type_; }

    [[nodiscard]] const std::string& description() const { return description_; }

    int references = 1;

private:
    CFTypeID type_;
    std::string description_;
};

/// A constant of the system; retaining and releasing it changes nothing.
inline constexpr int immortal = -1;

/// What the system's functions hand around for an object.
template <typename Reference>
Reference referenceTo(const Object* object) {
    return reinterpret_cast<Reference>(const_cast<Object*>(object));
}

inline const Object* objectOf(CFTypeRef reference) {
    return static_cast<const Object*>(reference);
}

/// Counts the references to all objects and remembers what was done wrong.
class Heap {
public:
    /// A new object with one reference, which is the caller's.
    template <typename Concrete, typename... Arguments>
    Concrete* make(Arguments&&... arguments) {
        auto object = std::make_unique<Concrete>(std::forward<Arguments>(arguments)...);
        Concrete* made = object.get();
        objects_.push_back(std::move(object));
        return made;
    }

    void retain(CFTypeRef reference);
    void release(CFTypeRef reference);

    /// The object if it is alive and of that class; else null, and the misuse is noted.
    template <typename Concrete>
    Concrete* as(CFTypeRef reference, const char* user) {
        auto* object = const_cast<Object*>(objectOf(reference));
        auto* concrete = dynamic_cast<Concrete*>(object);
        if (concrete == nullptr) {
            noteMisuse(std::string(user) + " was given " +
                       (object == nullptr ? "nothing" : object->description()));
            return nullptr;
        }
        return isAlive(*object, user) ? concrete : nullptr;
    }

    bool isAlive(const Object& object, const char* user);

    void noteMisuse(std::string misuse) { misuses_.push_back(std::move(misuse)); }

    [[nodiscard]] const std::vector<std::string>& misuses() const { return misuses_; }

    /// The descriptions of the objects that still have references.
    [[nodiscard]] std::vector<std::string> living() const;

private:
    std::vector<std::unique_ptr<Object>> objects_;
    std::vector<std::string> misuses_;
};

} // namespace tarvex::fake
