#pragma once

// What the adapters use of the display part of the I/O registry, as Apple documents it.

#include "IOKit/IOKitLib.h"

#define kDisplayProductName "DisplayProductName"

enum { kIODisplayOnlyPreferredName = 0x00000200 };

extern "C" {

CFDictionaryRef IODisplayCreateInfoDictionary(io_service_t framebuffer, IOOptionBits options);
}
