#include "Platform/MacOS/AppKit/NativeText.h"

namespace tarvex {

ObjCHandle<NSString*> makeString(std::string_view text) {
    // The view of an empty text may have no bytes to point at.
    const char* bytes = text.empty() ? "" : text.data();
    auto string = ObjCHandle<NSString*>::adopt([[NSString alloc] initWithBytes:bytes
                                                                        length:text.size()
                                                                      encoding:NSUTF8StringEncoding]);
    if (!string) {
        string = ObjCHandle<NSString*>::adopt([[NSString alloc] initWithBytes:bytes
                                                                       length:text.size()
                                                                     encoding:NSISOLatin1StringEncoding]);
    }
    return string;
}

std::string utf8Of(NSString* string) {
    std::string text;
    @autoreleasepool {
        NSData* data = [string dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
        if (data != nil && [data length] != 0) {
            text.assign(static_cast<const char*>([data bytes]), [data length]);
        }
    }
    return text;
}

} // namespace tarvex
