#include <CoreFoundation/CoreFoundation.h>

#include "FakeDarwin/FakeDarwin.h"

using quellin::fake::FakeDarwin;

extern "C" {

CFTypeRef CFRetain(CFTypeRef object) {
  FakeDarwin& system = FakeDarwin::current();
  system.calls.enter(__func__);
  system.objects.retain(object);
  return object;
}

void CFRelease(CFTypeRef object) {
  FakeDarwin& system = FakeDarwin::current();
  system.calls.enter(__func__);
  system.objects.release(object);
}

}  // extern "C"
