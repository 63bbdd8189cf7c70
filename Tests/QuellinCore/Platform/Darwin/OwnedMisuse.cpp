// Compiled by expect_misuse_refused.cmake: once as it is, and once with each of the macros below.
#include <utility>

#include "QuellinCore/Platform/Darwin/CoreFoundationHandles.h"
#include "QuellinCore/Platform/Darwin/IOKitHandles.h"

using quellin::darwin::OwnedCF;
using quellin::darwin::OwnedIOConnection;
using quellin::darwin::OwnedIOObject;

void useWell(CFDictionaryRef borrowed, io_object_t object) {
  OwnedCF<CFDictionaryRef> kept = OwnedCF<CFDictionaryRef>::retain(borrowed);
  const OwnedCF<CFDictionaryRef> moved = std::move(kept);
  OwnedIOObject service = OwnedIOObject::adopt(object);
  if (moved && service) CFRelease(moved.get());
  IOObjectRelease(service.release());
}

#if defined(MISUSE_copyConstruction)
OwnedIOObject copied(const OwnedIOObject& original) { return original; }
#elif defined(MISUSE_copyAssignment)
void assign(OwnedIOObject& target, const OwnedIOObject& original) { target = original; }
#elif defined(MISUSE_implicitAdoption)
OwnedIOObject adopted(io_object_t object) { return object; }
#elif defined(MISUSE_explicitConstruction)
void construct(io_object_t object) { OwnedIOObject unclear{object}; }
#elif defined(MISUSE_assignmentOfHandle)
void assign(OwnedIOObject& target, io_object_t object) { target = object; }
#elif defined(MISUSE_implicitHandle)
io_object_t handle(const OwnedIOObject& owner) { return owner; }
#elif defined(MISUSE_implicitTruth)
bool truth(const OwnedIOObject& owner) { return owner; }
#elif defined(MISUSE_discardedRelease)
void discard(OwnedIOObject& owner) { owner.release(); }
#elif defined(MISUSE_discardedAdoption)
void discard(io_object_t object) { OwnedIOObject::adopt(object); }
#elif defined(MISUSE_retainWithoutCounting)
OwnedIOConnection retained(io_connect_t connection) { return OwnedIOConnection::retain(connection); }
#elif defined(MISUSE_otherKind)
OwnedIOObject converted(OwnedIOConnection connection) { return connection; }
#endif
