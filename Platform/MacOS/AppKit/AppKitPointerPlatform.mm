#include "Platform/MacOS/AppKit/AppKitPointerPlatform.h"

#include "Platform/MacOS/AppKit/NativeGeometry.h"

#import <AppKit/AppKit.h>

namespace tarvex {

Point AppKitPointerPlatform::mouseLocation() {
    Point location;
    @autoreleasepool {
        location = pointOf([NSEvent mouseLocation]);
    }
    return location;
}

} // namespace tarvex
