#include "Platform/MacOS/Logging/SwallowedException.h"

#include "Platform/MacOS/Logging/OsLog.h"

#include <exception>
#include <string>

namespace tarvex {

namespace {

std::string describePresentException() {
    try {
        throw;
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (...) {
        return "an exception of an unknown type";
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
