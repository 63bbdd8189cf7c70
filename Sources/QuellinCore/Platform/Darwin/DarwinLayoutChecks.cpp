// The declarations and constants that the Darwin sources rely on, compared with those of the headers in use:
// the macOS SDK's on a Mac, our own minimal ones elsewhere.

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>
#include <cstddef>
#include <cstdint>
#include <mach/mach_error.h>
#include <type_traits>

namespace {

static_assert(KERN_SUCCESS == 0);
static_assert(MACH_PORT_NULL == 0);
static_assert(std::is_same_v<kern_return_t, int>);
static_assert(kIOReturnNotPrivileged == static_cast<int>(0xE00002C1));
static_assert(kIOReturnNotPermitted == static_cast<int>(0xE00002E2));
static_assert(std::is_same_v<decltype(mach_error_string), char*(kern_return_t)>);
static_assert(std::is_same_v<mach_port_t, std::uint32_t>);
static_assert(std::is_same_v<io_object_t, mach_port_t>);
static_assert(std::is_same_v<io_service_t, io_object_t>);
static_assert(std::is_same_v<io_connect_t, io_object_t>);
static_assert(std::is_same_v<decltype(kIOMainPortDefault), const mach_port_t>);
static_assert(std::is_same_v<std::remove_cvref_t<decltype(mach_task_self())>, mach_port_t>);

static_assert(std::is_same_v<CFTypeRef, const void*>);
static_assert(std::is_convertible_v<CFMutableDictionaryRef, CFDictionaryRef>);
static_assert(std::is_same_v<decltype(CFRetain), CFTypeRef(CFTypeRef)>);
static_assert(std::is_same_v<decltype(CFRelease), void(CFTypeRef)>);

static_assert(std::is_same_v<decltype(IOObjectRelease), kern_return_t(io_object_t)>);
static_assert(std::is_same_v<decltype(IOServiceMatching), CFMutableDictionaryRef(const char*)>);
static_assert(
    std::is_same_v<decltype(IOServiceGetMatchingService), io_service_t(mach_port_t, CFDictionaryRef)>);
static_assert(std::is_same_v<decltype(IOServiceOpen),
                             kern_return_t(io_service_t, task_port_t, std::uint32_t, io_connect_t*)>);
static_assert(std::is_same_v<decltype(IOServiceClose), kern_return_t(io_connect_t)>);
static_assert(
    std::is_same_v<decltype(IOConnectCallStructMethod),
                   kern_return_t(mach_port_t, std::uint32_t, const void*, std::size_t, void*, std::size_t*)>);

}  // namespace
