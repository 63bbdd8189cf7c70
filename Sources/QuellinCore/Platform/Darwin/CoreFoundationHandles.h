#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "QuellinCore/Platform/Darwin/Owned.h"

namespace quellin::darwin {

/// References to CoreFoundation objects. `CFRetain` and `CFRelease` crash on null; `Owned` calls neither for
/// it.
template <class Ref>
struct CoreFoundationKind {
  using Handle = Ref;
  static void retain(Ref object) { CFRetain(object); }
  static void release(Ref object) { CFRelease(object); }
};

/// Owner of one reference to a CoreFoundation object of type `Ref`, such as `CFStringRef`.
template <class Ref>
using OwnedCF = Owned<CoreFoundationKind<Ref>>;

}  // namespace quellin::darwin
