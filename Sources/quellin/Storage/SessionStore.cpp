#include "quellin/Storage/SessionStore.h"

#include <system_error>

#include "quellin/Version.h"

namespace quellin::cli {

std::filesystem::path storePath(const Options& options) {
  return options.store ? *options.store : PowerSessionStore::defaultStorePath();
}

std::shared_ptr<PowerSessionStore> openStore(const Options& options,
                                             PowerSessionStoreSurroundings surroundings) {
  return std::make_shared<PowerSessionStore>(version, options.store, false, std::move(surroundings));
}

std::shared_ptr<PowerSessionStore> openRecordedStore(const Options& options) {
  const std::filesystem::path path = storePath(options);
  std::error_code unknown;
  const bool isMissing =
      std::filesystem::status(path, unknown).type() == std::filesystem::file_type::not_found;
  return std::make_shared<PowerSessionStore>(version, path, isMissing);
}

}  // namespace quellin::cli
