#pragma once

#include <filesystem>
#include <memory>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "quellin/CommandLine/Options.h"

namespace quellin::cli {

/// Where the store is that `options` name; not made.
[[nodiscard]] std::filesystem::path storePath(const Options& options);

/// Opens the store that `options` name, making it when there is none. Throws `StoreError`.
[[nodiscard]] std::shared_ptr<PowerSessionStore> openStore(const Options& options,
                                                           PowerSessionStoreSurroundings surroundings = {});

/// Whether nothing has been recorded into the store at `path` yet: there is no file, or one of no bytes.
[[nodiscard]] bool isStoreToBeMade(const std::filesystem::path& path);

/// Opens the store that `options` name to look for what was recorded: where it is still to be made, an empty
/// one in memory, so that looking writes no file. Throws `StoreError`.
[[nodiscard]] std::shared_ptr<PowerSessionStore> openRecordedStore(const Options& options);

}  // namespace quellin::cli
