#pragma once

#include <string>

#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// How a store file is reached; the defaults are for production.
struct StoreFileOptions {
  Seconds busyTimeout{5};       ///< how long to wait for another process that is writing
  std::string fileSystem = {};  ///< the name of a registered SQLite file system; empty: the ordinary one
};

}  // namespace quellin
