#pragma once

#import <Foundation/Foundation.h>

enum : NSInteger {
    SMAppServiceStatusNotRegistered = 0,
    SMAppServiceStatusEnabled = 1,
    SMAppServiceStatusRequiresApproval = 2,
    SMAppServiceStatusNotFound = 3,
};

/// A registry of login items that a test sets up.
@interface SMAppService : NSObject
+ (SMAppService*)mainAppService;
- (NSInteger)status;
- (BOOL)registerAndReturnError:(NSError**)error;
- (BOOL)unregisterAndReturnError:(NSError**)error;
@end
