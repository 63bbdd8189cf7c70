#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <stdint.h>

// What the faked library calls in the test executable, which exports it: one function for each of its own.

#define EXPORTED __attribute__((visibility("default")))

extern "C" {

EXPORTED CFMutableDictionaryRef fakeCopyChannelsInGroup(CFStringRef group, CFStringRef subgroup, uint64_t a,
                                                        uint64_t b, uint64_t c);
EXPORTED CFTypeRef fakeCreateSubscription(void* allocator, CFMutableDictionaryRef desired,
                                          CFMutableDictionaryRef* subscribed, uint64_t a, CFTypeRef b);
EXPORTED CFDictionaryRef fakeCreateSamples(CFTypeRef subscription, CFMutableDictionaryRef channels,
                                           CFTypeRef a);
EXPORTED CFDictionaryRef fakeCreateSamplesDelta(CFDictionaryRef previous, CFDictionaryRef current,
                                                CFTypeRef a);
EXPORTED CFStringRef fakeChannelGetGroup(CFDictionaryRef entry);
EXPORTED CFStringRef fakeChannelGetChannelName(CFDictionaryRef entry);
EXPORTED int64_t fakeSimpleGetIntegerValue(CFDictionaryRef entry, int32_t index);
EXPORTED CFIndex fakeChannelGetCount(CFDictionaryRef samples);
EXPORTED CFDictionaryRef fakeChannelGetChannelEntry(CFDictionaryRef samples, CFIndex index);
EXPORTED CFStringRef fakeChannelGetUnitLabel(CFDictionaryRef entry);

}  // extern "C"
