#pragma once

// Declarations of the IOKit functions used here, for builds on hosts without the macOS SDK.
// With the SDK this folder is not on the include path.

#include <CoreFoundation/CoreFoundation.h>
#include <mach/mach.h>
#include <stddef.h>
#include <stdint.h>

extern "C" {

typedef mach_port_t io_object_t;
typedef io_object_t io_connect_t;
typedef io_object_t io_registry_entry_t;
typedef io_object_t io_service_t;
typedef unsigned int IOOptionBits;

extern const mach_port_t kIOMainPortDefault;

enum : kern_return_t {
  kIOReturnNotPrivileged = static_cast<kern_return_t>(0xe00002c1),
  kIOReturnNotPermitted = static_cast<kern_return_t>(0xe00002e2),
};

kern_return_t IOObjectRelease(io_object_t object);

CFMutableDictionaryRef IOServiceMatching(const char* className);
CFMutableDictionaryRef IOServiceNameMatching(const char* name);
io_service_t IOServiceGetMatchingService(mach_port_t mainPort, CFDictionaryRef matching);
kern_return_t IOServiceOpen(io_service_t service, task_port_t owningTask, uint32_t type,
                            io_connect_t* connection);
kern_return_t IOServiceClose(io_connect_t connection);

kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry, CFMutableDictionaryRef* properties,
                                                CFAllocatorRef allocator, IOOptionBits options);

kern_return_t IOConnectCallStructMethod(mach_port_t connection, uint32_t selector, const void* input,
                                        size_t inputSize, void* output, size_t* outputSize);

}  // extern "C"
