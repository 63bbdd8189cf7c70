#pragma once

// Declarations of the CoreFoundation functions used here, for builds on hosts without the macOS SDK.
// With the SDK this folder is not on the include path.

extern "C" {

typedef const void* CFTypeRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef struct __CFDictionary* CFMutableDictionaryRef;

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);

}  // extern "C"
