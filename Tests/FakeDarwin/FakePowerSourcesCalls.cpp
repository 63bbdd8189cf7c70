#include <IOKit/ps/IOPowerSources.h>

#include "FakeDarwin/FakeDarwin.h"

using quellin::fake::FakeDarwin;

extern "C" {

CFTypeRef IOPSCopyPowerSourcesInfo(void) {
  FakeDarwin& system = FakeDarwin::current();
  if (system.calls.enter(__func__)) return nullptr;
  return system.coreFoundation.opaque("power sources info");
}

CFArrayRef IOPSCopyPowerSourcesList(CFTypeRef info) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  if (system.objects.any(info) == nullptr || failure) return nullptr;
  std::vector<CFTypeRef> sources;
  for (const auto& make : system.powerSources.descriptions) sources.push_back(make());
  return system.coreFoundation.array(std::move(sources));
}

// As on a Mac, the description is the element of the list itself and lives as long as that.
CFDictionaryRef IOPSGetPowerSourceDescription(CFTypeRef info, CFTypeRef powerSource) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  if (system.objects.any(info) == nullptr || failure) return nullptr;
  if (system.objects.any(powerSource) == nullptr) return nullptr;
  return static_cast<CFDictionaryRef>(powerSource);
}

}  // extern "C"
