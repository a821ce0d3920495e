#pragma once

// What the adapters use of Service Management, as Apple documents it.

#include <Foundation/Foundation.h>

enum SMAppServiceStatus : NSInteger {
    SMAppServiceStatusNotRegistered = 0,
    SMAppServiceStatusEnabled = 1,
    SMAppServiceStatusRequiresApproval = 2,
    SMAppServiceStatusNotFound = 3,
};

@interface SMAppService : NSObject
+ (SMAppService*)mainAppService;
- (SMAppServiceStatus)status;
- (BOOL)registerAndReturnError:(NSError* __autoreleasing*)error;
- (BOOL)unregisterAndReturnError:(NSError* __autoreleasing*)error;
@end
