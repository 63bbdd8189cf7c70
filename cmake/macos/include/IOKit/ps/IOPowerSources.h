#pragma once

// Declarations of the power-source functions used here, for builds on hosts without the macOS SDK.
// With the SDK this folder is not on the include path.

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

CFTypeRef IOPSCopyPowerSourcesInfo(void);
CFArrayRef IOPSCopyPowerSourcesList(CFTypeRef info);
CFDictionaryRef IOPSGetPowerSourceDescription(CFTypeRef info, CFTypeRef powerSource);

}  // extern "C"
