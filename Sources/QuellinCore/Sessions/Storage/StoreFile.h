#pragma once

#include <filesystem>
#include <memory>

#include "QuellinCore/Sessions/Storage/Database.h"

namespace quellin {

/// Opens the session store at `path`, making it, readable by its owner only, when there is no file yet; the
/// folder is not made. A file that is not a session store, or one of a later version, is not touched at all.
/// Throws `StoreError`.
[[nodiscard]] std::unique_ptr<Database> openStoreFile(const std::filesystem::path& path,
                                                      const StoreFileOptions& options);

/// A new, empty session store in memory; nothing of it ever reaches the disk.
[[nodiscard]] std::unique_ptr<Database> openStoreInMemory();

}  // namespace quellin
