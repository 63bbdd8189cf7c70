#pragma once

#include <IOKit/IOKitLib.h>

#include "QuellinCore/Platform/Darwin/Owned.h"

namespace quellin::darwin {

struct IOObjectKind {
  using Handle = io_object_t;
  static void release(io_object_t object) { IOObjectRelease(object); }
};

struct IOConnectionKind {
  using Handle = io_connect_t;
  static void release(io_connect_t connection) { IOServiceClose(connection); }
};

/// Owner of a registry object: a service or an entry.
using OwnedIOObject = Owned<IOObjectKind>;

/// Owner of an open user client, which is closed rather than released.
using OwnedIOConnection = Owned<IOConnectionKind>;

}  // namespace quellin::darwin
