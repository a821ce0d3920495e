#include "Platform/MacOS/Shell/ServiceLoginItem.h"

#include "Platform/MacOS/AppKit/NativeText.h"

#import <Foundation/Foundation.h>
#import <ServiceManagement/ServiceManagement.h>
#include <stdexcept>
#include <string>

namespace tarvex {

namespace {

std::string descriptionOf(NSError* error) {
    const std::string description = utf8Of([error localizedDescription]);
    return description.empty() ? "the system gave no reason" : description;
}

} // namespace

bool ServiceLoginItem::isBundle() {
    bool isBundle = false;
    @autoreleasepool {
        NSString* const extension = [[[NSBundle mainBundle] bundlePath] pathExtension];
        isBundle = [[extension lowercaseString] isEqualToString:@"app"] == YES;
    }
    return isBundle;
}

LoginItemStatus ServiceLoginItem::status() {
    NSInteger status = 0;
    @autoreleasepool {
        status = [[SMAppService mainAppService] status];
    }
    switch (status) {
    case SMAppServiceStatusEnabled:
        return LoginItemStatus::enabled;
    case SMAppServiceStatusRequiresApproval:
        return LoginItemStatus::requiresApproval;
    case SMAppServiceStatusNotFound:
        return LoginItemStatus::notFound;
    default:
        return LoginItemStatus::notRegistered;
    }
}

// The system counts a second registration, and the end of none, as errors.
void ServiceLoginItem::registerMainApplication() {
    if (isRegistered(status())) {
        return;
    }
    std::string problem;
    @autoreleasepool {
        NSError* error = nil;
        if (![[SMAppService mainAppService] registerAndReturnError:&error]) {
            problem = descriptionOf(error);
        }
    }
    if (!problem.empty()) {
        throw std::runtime_error("cannot register the login item: " + problem);
    }
}

void ServiceLoginItem::unregisterMainApplication() {
    if (!isRegistered(status())) {
        return;
    }
    std::string problem;
    @autoreleasepool {
        NSError* error = nil;
        if (![[SMAppService mainAppService] unregisterAndReturnError:&error]) {
            problem = descriptionOf(error);
        }
    }
    if (!problem.empty()) {
        throw std::runtime_error("cannot unregister the login item: " + problem);
    }
}

} // namespace tarvex
