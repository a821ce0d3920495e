#include "Platform/MacOS/Shell/ProcessActivity.h"

#import <Foundation/Foundation.h>

namespace tarvex {

ProcessActivity::ProcessActivity() {
    @autoreleasepool {
        activity_ = ObjCHandle<id>::share([[NSProcessInfo processInfo]
            beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                              reason:@"Input of the user passes through the event tap"]);
    }
}

ProcessActivity::~ProcessActivity() {
    @autoreleasepool {
        if (activity_) {
            [[NSProcessInfo processInfo] endActivity:activity_.get()];
        }
    }
}

} // namespace tarvex
