// The declarations and constants that the Darwin sources rely on, compared with those of the headers in use:
// the macOS SDK's on a Mac, our own minimal ones elsewhere.

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>
#include <IOKit/ps/IOPowerSources.h>
#include <cstddef>
#include <cstdint>
#include <dispatch/dispatch.h>
#include <libproc.h>
#include <mach/mach_error.h>
#include <mach/mach_time.h>
#include <notify.h>
#include <objc/message.h>
#include <objc/runtime.h>
#include <pthread.h>
#include <sys/sysctl.h>
#include <type_traits>

namespace {

using std::is_same_v;

// The kernel, ownership, services.
static_assert(KERN_SUCCESS == 0);
static_assert(MACH_PORT_NULL == 0);
static_assert(is_same_v<kern_return_t, int>);
static_assert(kIOReturnNotPrivileged == static_cast<int>(0xE00002C1));
static_assert(kIOReturnNotPermitted == static_cast<int>(0xE00002E2));
static_assert(is_same_v<decltype(mach_error_string), char*(kern_return_t)>);
static_assert(is_same_v<mach_port_t, std::uint32_t>);
static_assert(is_same_v<io_object_t, mach_port_t>);
static_assert(is_same_v<io_service_t, io_object_t>);
static_assert(is_same_v<io_connect_t, io_object_t>);
static_assert(is_same_v<decltype(kIOMainPortDefault), const mach_port_t>);
static_assert(is_same_v<std::remove_cvref_t<decltype(mach_task_self())>, mach_port_t>);

static_assert(is_same_v<CFTypeRef, const void*>);
static_assert(std::is_convertible_v<CFMutableDictionaryRef, CFDictionaryRef>);
static_assert(is_same_v<decltype(CFRetain), CFTypeRef(CFTypeRef)>);
static_assert(is_same_v<decltype(CFRelease), void(CFTypeRef)>);

static_assert(is_same_v<decltype(IOObjectRelease), kern_return_t(io_object_t)>);
static_assert(is_same_v<decltype(IOServiceMatching), CFMutableDictionaryRef(const char*)>);
static_assert(is_same_v<decltype(IOServiceGetMatchingService), io_service_t(mach_port_t, CFDictionaryRef)>);
static_assert(is_same_v<decltype(IOServiceOpen),
                        kern_return_t(io_service_t, task_port_t, std::uint32_t, io_connect_t*)>);
static_assert(is_same_v<decltype(IOServiceClose), kern_return_t(io_connect_t)>);
static_assert(
    is_same_v<decltype(IOConnectCallStructMethod),
              kern_return_t(mach_port_t, std::uint32_t, const void*, std::size_t, void*, std::size_t*)>);

// Property values, power sources, notifications, processes, the Objective-C run time.
static_assert(is_same_v<CFIndex, long> && is_same_v<CFTypeID, unsigned long> &&
              is_same_v<Boolean, unsigned char>);
static_assert(is_same_v<CFAbsoluteTime, double> && is_same_v<CFStringEncoding, std::uint32_t>);
static_assert(is_same_v<decltype(kCFAllocatorDefault), const CFAllocatorRef>);
static_assert(is_same_v<decltype(CFGetTypeID), CFTypeID(CFTypeRef)>);

static_assert(static_cast<CFStringEncoding>(kCFStringEncodingUTF8) == 0x08000100);
static_assert(is_same_v<decltype(CFStringCreateWithCString),
                        CFStringRef(CFAllocatorRef, const char*, CFStringEncoding)>);
static_assert(is_same_v<decltype(CFStringGetLength), CFIndex(CFStringRef)>);
static_assert(is_same_v<decltype(CFStringGetMaximumSizeForEncoding), CFIndex(CFIndex, CFStringEncoding)>);
static_assert(
    is_same_v<decltype(CFStringGetCString), Boolean(CFStringRef, char*, CFIndex, CFStringEncoding)>);

static_assert(is_same_v<std::underlying_type_t<CFNumberType>, CFIndex>);
static_assert(static_cast<CFIndex>(kCFNumberSInt32Type) == 3 &&
              static_cast<CFIndex>(kCFNumberSInt64Type) == 4);
static_assert(static_cast<CFIndex>(kCFNumberDoubleType) == 13);
static_assert(is_same_v<decltype(CFNumberCreate), CFNumberRef(CFAllocatorRef, CFNumberType, const void*)>);
static_assert(is_same_v<decltype(CFNumberGetValue), Boolean(CFNumberRef, CFNumberType, void*)>);
static_assert(is_same_v<decltype(CFNumberIsFloatType), Boolean(CFNumberRef)>);
static_assert(is_same_v<decltype(CFBooleanGetValue), Boolean(CFBooleanRef)>);

static_assert(is_same_v<decltype(CFArrayGetCount), CFIndex(CFArrayRef)>);
static_assert(is_same_v<decltype(CFArrayGetValueAtIndex), const void*(CFArrayRef, CFIndex)>);

static_assert(sizeof(CFDictionaryKeyCallBacks) == 48 && sizeof(CFDictionaryValueCallBacks) == 40);
static_assert(is_same_v<decltype(kCFTypeDictionaryKeyCallBacks), const CFDictionaryKeyCallBacks>);
static_assert(is_same_v<decltype(kCFTypeDictionaryValueCallBacks), const CFDictionaryValueCallBacks>);
static_assert(is_same_v<decltype(CFDictionaryCreateMutable),
                        CFMutableDictionaryRef(CFAllocatorRef, CFIndex, const CFDictionaryKeyCallBacks*,
                                               const CFDictionaryValueCallBacks*)>);
static_assert(
    is_same_v<decltype(CFDictionarySetValue), void(CFMutableDictionaryRef, const void*, const void*)>);
static_assert(is_same_v<decltype(CFDictionaryGetCount), CFIndex(CFDictionaryRef)>);
static_assert(is_same_v<decltype(CFDictionaryGetValue), const void*(CFDictionaryRef, const void*)>);
static_assert(
    is_same_v<decltype(CFDictionaryGetKeysAndValues), void(CFDictionaryRef, const void**, const void**)>);

static_assert(is_same_v<decltype(CFLocaleCopyCurrent), CFLocaleRef()>);
static_assert(is_same_v<std::underlying_type_t<CFDateFormatterStyle>, CFIndex>);
static_assert(static_cast<CFIndex>(kCFDateFormatterShortStyle) == 1);
static_assert(static_cast<CFIndex>(kCFDateFormatterMediumStyle) == 2);
static_assert(
    is_same_v<decltype(CFDateFormatterCreate),
              CFDateFormatterRef(CFAllocatorRef, CFLocaleRef, CFDateFormatterStyle, CFDateFormatterStyle)>);
static_assert(is_same_v<decltype(CFDateFormatterCreateStringWithAbsoluteTime),
                        CFStringRef(CFAllocatorRef, CFDateFormatterRef, CFAbsoluteTime)>);

static_assert(is_same_v<io_registry_entry_t, io_object_t>);
static_assert(is_same_v<IOOptionBits, std::uint32_t>);
static_assert(is_same_v<decltype(IOServiceNameMatching), CFMutableDictionaryRef(const char*)>);
static_assert(
    is_same_v<decltype(IORegistryEntryCreateCFProperties),
              kern_return_t(io_registry_entry_t, CFMutableDictionaryRef*, CFAllocatorRef, IOOptionBits)>);
static_assert(is_same_v<decltype(IOPSCopyPowerSourcesInfo), CFTypeRef()>);
static_assert(is_same_v<decltype(IOPSCopyPowerSourcesList), CFArrayRef(CFTypeRef)>);
static_assert(is_same_v<decltype(IOPSGetPowerSourceDescription), CFDictionaryRef(CFTypeRef, CFTypeRef)>);

static_assert(NOTIFY_STATUS_OK == 0);
static_assert(is_same_v<decltype(notify_register_check), std::uint32_t(const char*, int*)>);
static_assert(is_same_v<decltype(notify_get_state), std::uint32_t(int, std::uint64_t*)>);
static_assert(is_same_v<decltype(notify_cancel), std::uint32_t(int)>);

static_assert(PROC_ALL_PIDS == 1 && RUSAGE_INFO_V6 == 6 && is_same_v<rusage_info_t, void*>);
static_assert(is_same_v<decltype(proc_listpids), int(std::uint32_t, std::uint32_t, void*, int)>);
static_assert(is_same_v<decltype(proc_name), int(int, void*, std::uint32_t)>);
static_assert(is_same_v<decltype(proc_pid_rusage), int(int, int, rusage_info_t*)>);
static_assert(sizeof(rusage_info_v6) == 464);
static_assert(offsetof(rusage_info_v6, ri_user_time) == 16 && offsetof(rusage_info_v6, ri_system_time) == 24);
static_assert(offsetof(rusage_info_v6, ri_pkg_idle_wkups) == 32 &&
              offsetof(rusage_info_v6, ri_interrupt_wkups) == 40);
static_assert(offsetof(rusage_info_v6, ri_proc_start_abstime) == 80);
static_assert(offsetof(rusage_info_v6, ri_diskio_bytesread) == 144);
static_assert(offsetof(rusage_info_v6, ri_diskio_byteswritten) == 152);
static_assert(offsetof(rusage_info_v6, ri_energy_nj) == 336);

static_assert(sizeof(mach_timebase_info_data_t) == 8 && offsetof(mach_timebase_info_data_t, denom) == 4);
static_assert(is_same_v<decltype(sysctlbyname), int(const char*, void*, std::size_t*, void*, std::size_t)>);

static_assert(is_same_v<decltype(objc_getClass), Class(const char*)>);
static_assert(is_same_v<decltype(sel_registerName), SEL(const char*)>);
static_assert(is_same_v<decltype(class_respondsToSelector), BOOL(Class, SEL)>);

static_assert(is_same_v<dispatch_function_t, void (*)(void*)>);
static_assert(
    is_same_v<decltype(dispatch_async_f), void(dispatch_queue_t, void*, dispatch_function_t) noexcept>);
static_assert(is_same_v<decltype(pthread_main_np), int()>);

}  // namespace
