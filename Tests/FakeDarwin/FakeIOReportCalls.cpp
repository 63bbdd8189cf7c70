#include <string>
#include <vector>

#include "FakeDarwin/CoreFoundationObjects.h"
#include "FakeDarwin/FakeDarwin.h"
#include "FakeDarwin/IOReportEntries.h"

namespace {

using quellin::fake::ArrayObject;
using quellin::fake::FakeDarwin;
using quellin::fake::FakeIOReport;
using quellin::fake::valueNamed;

constexpr const char* listKey = "IOReportChannels";

/// Notes the call and says whether it fails; the three arguments that mean nothing here have to be 0.
bool fails(const char* function, bool restIsZero = true) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(function);
  if (!restIsZero) system.ledger.violation(std::string{function} + " called with leftovers");
  return failure.has_value();
}

CFTypeRef makeEntry(const FakeIOReport::Channel& channel, std::int64_t value) {
  auto& make = FakeDarwin::current().coreFoundation;
  std::vector<std::pair<std::string, CFTypeRef>> entries{{"group", make.string(channel.group)},
                                                         {"value", make.integer(value)}};
  if (channel.name) entries.emplace_back("name", make.string(*channel.name));
  if (channel.unit) entries.emplace_back("unit", make.string(*channel.unit));
  return make.dictionary(std::move(entries));
}

const std::vector<CFTypeRef>& entriesOf(CFDictionaryRef samples) {
  return FakeDarwin::current().objects.as<ArrayObject>(valueNamed(samples, listKey))->elements;
}

std::int64_t counterOf(CFTypeRef entry) {
  return quellin::fake::valueOfNumber(valueNamed(static_cast<CFDictionaryRef>(entry), "value"));
}

CFStringRef borrowedText(CFDictionaryRef entry, const char* key) {
  return static_cast<CFStringRef>(valueNamed(entry, key));
}

}  // namespace

extern "C" {

CFMutableDictionaryRef fakeCopyChannelsInGroup(CFStringRef group, CFStringRef subgroup, uint64_t a,
                                               uint64_t b, uint64_t c) {
  FakeDarwin& system = FakeDarwin::current();
  const bool failed = fails("IOReportCopyChannelsInGroup", a == 0 && b == 0 && c == 0);
  const std::string wanted = quellin::fake::textOfString(group);
  std::vector<CFTypeRef> entries;
  for (const auto& channel : system.ioReport.channels) {
    if (channel.group != wanted) continue;
    if (subgroup != nullptr && channel.subgroup != quellin::fake::textOfString(subgroup)) continue;
    if (!failed) entries.push_back(makeEntry(channel, 0));
  }
  if (entries.empty()) return nullptr;
  return system.coreFoundation.dictionary({{listKey, system.coreFoundation.array(std::move(entries))}});
}

CFTypeRef fakeCreateSubscription(void* allocator, CFMutableDictionaryRef desired,
                                 CFMutableDictionaryRef* subscribed, uint64_t a, CFTypeRef b) {
  FakeDarwin& system = FakeDarwin::current();
  const bool failed = fails("IOReportCreateSubscription", allocator == nullptr && a == 0 && b == nullptr);
  // A failure of the channels alone leaves the subscription to be given back, and the other way round.
  if (!fails("subscribed channels")) {
    system.objects.retain(desired);
    *subscribed = desired;
  }
  return failed ? nullptr : system.coreFoundation.opaque("subscription");
}

CFDictionaryRef fakeCreateSamples(CFTypeRef subscription, CFMutableDictionaryRef channels, CFTypeRef a) {
  FakeDarwin& system = FakeDarwin::current();
  const bool failed = fails("IOReportCreateSamples", a == nullptr);
  if (system.objects.any(subscription) == nullptr || system.objects.any(channels) == nullptr || failed) {
    return nullptr;
  }
  std::vector<CFTypeRef> entries;
  for (const auto& channel : system.ioReport.channels) entries.push_back(makeEntry(channel, channel.counter));
  return system.coreFoundation.dictionary({{listKey, system.coreFoundation.array(std::move(entries))}});
}

CFDictionaryRef fakeCreateSamplesDelta(CFDictionaryRef previous, CFDictionaryRef current, CFTypeRef a) {
  FakeDarwin& system = FakeDarwin::current();
  if (fails("IOReportCreateSamplesDelta", a == nullptr)) return nullptr;
  if (!system.ioReport.hasDeltaChannels) return system.coreFoundation.dictionary({});
  if (system.ioReport.deltaChannels) {
    return system.coreFoundation.dictionary({{listKey, system.ioReport.deltaChannels()}});
  }
  std::vector<CFTypeRef> entries;
  for (std::size_t index = 0; index < entriesOf(current).size(); ++index) {
    const std::int64_t gained = counterOf(entriesOf(current)[index]) - counterOf(entriesOf(previous)[index]);
    entries.push_back(makeEntry(system.ioReport.channels[index], gained));
  }
  return system.coreFoundation.dictionary({{listKey, system.coreFoundation.array(std::move(entries))}});
}

CFStringRef fakeChannelGetGroup(CFDictionaryRef entry) {
  return fails("IOReportChannelGetGroup") ? nullptr : borrowedText(entry, "group");
}

CFStringRef fakeChannelGetChannelName(CFDictionaryRef entry) {
  return fails("IOReportChannelGetChannelName") ? nullptr : borrowedText(entry, "name");
}

int64_t fakeSimpleGetIntegerValue(CFDictionaryRef entry, int32_t index) {
  return fails("IOReportSimpleGetIntegerValue", index == 0) ? 0 : counterOf(entry);
}

CFIndex fakeChannelGetCount(CFDictionaryRef samples) {
  return fails("IOReportChannelGetCount") ? 0 : static_cast<CFIndex>(entriesOf(samples).size());
}

CFDictionaryRef fakeChannelGetChannelEntry(CFDictionaryRef samples, CFIndex index) {
  const bool failed = fails("IOReportChannelGetChannelEntry");
  CFTypeRef entry = entriesOf(samples).at(static_cast<std::size_t>(index));
  return failed ? nullptr : static_cast<CFDictionaryRef>(entry);
}

CFStringRef fakeChannelGetUnitLabel(CFDictionaryRef entry) {
  return fails("IOReportChannelGetUnitLabel") ? nullptr : borrowedText(entry, "unit");
}

}  // extern "C"
