#include "Platform/MacOS/Logging/SwallowedException.h"

#include "Platform/MacOS/Logging/OsLog.h"

#include <cxxabi.h>
#include <exception>
#include <string>
#include <typeinfo>

namespace tarvex {

namespace {

// Null for one that is thrown by another language in a way of its own. What Objective-C throws on a Mac has a
// type with the name of its class.
std::string describePresentType() {
    const std::type_info* const type = abi::__cxa_current_exception_type();
    return type == nullptr ? "an exception of an unknown type"
                           : std::string("an exception of the type ") + type->name();
}

std::string describePresentException() {
    try {
        throw;
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (...) {
        return describePresentType();
    }
}

} // namespace

void logSwallowedException(std::string_view place) noexcept {
    try {
        writeUnifiedLogError("Tarvex", place, "swallowed: " + describePresentException());
    } catch (...) {
        // Without memory for the line there is no line.
        return;
    }
}

} // namespace tarvex
