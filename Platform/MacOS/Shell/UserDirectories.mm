#include "Platform/MacOS/Shell/UserDirectories.h"

#include "App/Logging/FileLogger.h"
#include "Platform/MacOS/AppKit/NativeText.h"

#import <Foundation/Foundation.h>

namespace tarvex {

std::string UserDirectories::applicationSupport() {
    std::string path;
    @autoreleasepool {
        NSURL* const url = [[NSFileManager defaultManager] URLForDirectory:NSApplicationSupportDirectory
                                                                  inDomain:NSUserDomainMask
                                                         appropriateForURL:nil
                                                                    create:YES
                                                                     error:nullptr];
        path = utf8Of([url path]);
    }
    return path;
}

std::string UserDirectories::library() {
    std::string path;
    @autoreleasepool {
        NSArray* const urls = [[NSFileManager defaultManager] URLsForDirectory:NSLibraryDirectory
                                                                     inDomains:NSUserDomainMask];
        NSURL* const url = [urls count] != 0 ? [urls objectAtIndex:0] : nil;
        NSString* const fallback = [NSHomeDirectory() stringByAppendingPathComponent:@"Library"];
        path = utf8Of(url != nil ? [url path] : fallback);
    }
    return path;
}

std::string logFilePath() {
    return UserDirectories::library() + "/Logs/Tarvex.log";
}

} // namespace tarvex
