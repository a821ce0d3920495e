#pragma once

// What the adapters use of the I/O registry, as Apple documents it.

#include "CoreFoundation/CoreFoundation.h"

typedef int kern_return_t;
typedef unsigned int mach_port_t;
typedef mach_port_t io_object_t;
typedef io_object_t io_iterator_t;
typedef io_object_t io_service_t;
typedef io_object_t io_registry_entry_t;
typedef UInt32 IOOptionBits;

enum { KERN_SUCCESS = 0 };

enum { IO_OBJECT_NULL = 0 };

extern "C" {

extern const mach_port_t kIOMainPortDefault;

CFMutableDictionaryRef IOServiceMatching(const char* name);
/// Takes the reference to the dictionary over, whatever it returns.
kern_return_t IOServiceGetMatchingServices(mach_port_t mainPort, CFDictionaryRef matching,
                                           io_iterator_t* existing);
io_object_t IOIteratorNext(io_iterator_t iterator);
kern_return_t IOObjectRelease(io_object_t object);
CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key,
                                          CFAllocatorRef allocator, IOOptionBits options);
}
