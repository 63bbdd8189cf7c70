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

bool isStoreToBeMade(const std::filesystem::path& path) {
  std::error_code unknown;
  const auto type = std::filesystem::status(path, unknown).type();
  if (type != std::filesystem::file_type::regular) return type == std::filesystem::file_type::not_found;
  return std::filesystem::file_size(path, unknown) == 0;
}

std::shared_ptr<PowerSessionStore> openRecordedStore(const Options& options) {
  const std::filesystem::path path = storePath(options);
  return std::make_shared<PowerSessionStore>(version, path, isStoreToBeMade(path));
}

}  // namespace quellin::cli
