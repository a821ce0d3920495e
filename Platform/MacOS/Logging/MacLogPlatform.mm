#include "Platform/MacOS/Logging/MacLogPlatform.h"

#include "Platform/MacOS/AppKit/NativeText.h"
#include "Platform/MacOS/Logging/OsLog.h"

#import <Foundation/Foundation.h>

namespace tarvex {

void MacLogPlatform::systemLog(std::string_view message) {
    @autoreleasepool {
        NSLog(@"%@", makeString(message).get());
    }
}

void MacLogPlatform::unifiedLogError(std::string_view subsystem, std::string_view category,
                                     std::string_view message) {
    writeUnifiedLogError(subsystem, category, message);
}

} // namespace tarvex
