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

}  // namespace quellin::cli
