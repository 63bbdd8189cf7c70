#include "FakeDarwin/IOReportEntries.h"

// The library as the code under test opens it. What each function does is the test executable's to say.
extern "C" {

EXPORTED CFMutableDictionaryRef IOReportCopyChannelsInGroup(CFStringRef group, CFStringRef subgroup,
                                                            uint64_t a, uint64_t b, uint64_t c) {
  return fakeCopyChannelsInGroup(group, subgroup, a, b, c);
}

EXPORTED CFTypeRef IOReportCreateSubscription(void* allocator, CFMutableDictionaryRef desired,
                                              CFMutableDictionaryRef* subscribed, uint64_t a, CFTypeRef b) {
  return fakeCreateSubscription(allocator, desired, subscribed, a, b);
}

EXPORTED CFDictionaryRef IOReportCreateSamples(CFTypeRef subscription, CFMutableDictionaryRef channels,
                                               CFTypeRef a) {
  return fakeCreateSamples(subscription, channels, a);
}

EXPORTED CFDictionaryRef IOReportCreateSamplesDelta(CFDictionaryRef previous, CFDictionaryRef current,
                                                    CFTypeRef a) {
  return fakeCreateSamplesDelta(previous, current, a);
}

EXPORTED CFStringRef IOReportChannelGetGroup(CFDictionaryRef entry) { return fakeChannelGetGroup(entry); }

EXPORTED CFStringRef IOReportChannelGetChannelName(CFDictionaryRef entry) {
  return fakeChannelGetChannelName(entry);
}

EXPORTED int64_t IOReportSimpleGetIntegerValue(CFDictionaryRef entry, int32_t index) {
  return fakeSimpleGetIntegerValue(entry, index);
}

EXPORTED CFIndex IOReportChannelGetCount(CFDictionaryRef samples) { return fakeChannelGetCount(samples); }

EXPORTED CFDictionaryRef IOReportChannelGetChannelEntry(CFDictionaryRef samples, CFIndex index) {
  return fakeChannelGetChannelEntry(samples, index);
}

EXPORTED CFStringRef IOReportChannelGetUnitLabel(CFDictionaryRef entry) {
  return fakeChannelGetUnitLabel(entry);
}

}  // extern "C"
