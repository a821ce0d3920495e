#include "Tests/MacOS/GNUstep/LoginItemService.h"

#include "Platform/MacOS/AppKit/ObjCHandle.h"
#include "Tests/MacOS/GNUstep/Compatibility.h"

using tarvex::ObjCHandle;

namespace {

NSInteger loginItemStatus = SMAppServiceStatusNotRegistered;
BOOL loginItemRefuses = NO;
/// Where the program claims to be; nil for where it is.
ObjCHandle<NSString*> mainBundlePath;
NSString* (*bundlePath)(id, SEL) = nullptr;

NSString* claimedBundlePath(id bundle, SEL selector) {
    return mainBundlePath && bundle == [NSBundle mainBundle] ? mainBundlePath.get()
                                                             : bundlePath(bundle, selector);
}

BOOL changeLoginItem(NSInteger status, NSError** error) {
    if (loginItemRefuses || loginItemStatus == status) {
        *error = [NSError errorWithDomain:@"SMAppServiceErrorDomain"
                                     code:1
                                 userInfo:[NSDictionary dictionaryWithObject:@"Operation not permitted"
                                                                      forKey:NSLocalizedDescriptionKey]];
        return NO;
    }
    loginItemStatus = status;
    return YES;
}

} // namespace

@implementation SMAppService

+ (SMAppService*)mainAppService {
    static SMAppService* const service = [[SMAppService alloc] init];
    return service;
}

- (NSInteger)status {
    return loginItemStatus;
}

- (BOOL)registerAndReturnError:(NSError**)error {
    return changeLoginItem(SMAppServiceStatusEnabled, error);
}

- (BOOL)unregisterAndReturnError:(NSError**)error {
    return changeLoginItem(SMAppServiceStatusNotRegistered, error);
}

@end

namespace tarvex::test {

void setLoginItemRefuses(bool refuses) {
    loginItemRefuses = refuses;
}

void setLoginItemStatus(int status) {
    loginItemStatus = status;
}

void setMainBundlePath(const char* path) {
    if (bundlePath == nullptr) {
        bundlePath = replaceMethod([NSBundle class], @selector(bundlePath), &claimedBundlePath);
    }
    mainBundlePath =
        ObjCHandle<NSString*>::adopt(path == nullptr ? nil : [[NSString alloc] initWithUTF8String:path]);
}

} // namespace tarvex::test
