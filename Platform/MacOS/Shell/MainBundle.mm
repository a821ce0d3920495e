#include "Platform/MacOS/Shell/MainBundle.h"

#include "Platform/MacOS/AppKit/NativeText.h"

#import <Foundation/Foundation.h>

namespace tarvex {

namespace {

/// None for nil and for what is no string.
std::optional<std::string> textIfString(id object) {
    return [object isKindOfClass:[NSString class]] ? std::optional(utf8Of(object)) : std::nullopt;
}

} // namespace

std::optional<std::string> MainBundle::shortVersionString() {
    std::optional<std::string> version;
    @autoreleasepool {
        version =
            textIfString([[[NSBundle mainBundle] infoDictionary] objectForKey:@"CFBundleShortVersionString"]);
    }
    return version;
}

std::optional<std::string> MainBundle::versionFileText() {
    std::optional<std::string> text;
    @autoreleasepool {
        NSString* const path = [[NSBundle mainBundle] pathForResource:@"VERSION" ofType:nil];
        if (path != nil) {
            text = textIfString([NSString stringWithContentsOfFile:path
                                                          encoding:NSUTF8StringEncoding
                                                             error:nullptr]);
        }
    }
    return text;
}

} // namespace tarvex
