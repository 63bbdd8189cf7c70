#include "quellin/Storage/SessionStore.h"

#include "quellin/Version.h"

namespace quellin::cli {

std::filesystem::path storePath(const Options& options) {
  return options.store ? *options.store : PowerSessionStore::defaultStoreURL();
}

std::shared_ptr<PowerSessionStore> openStore(const Options& options,
                                             PowerSessionStoreSurroundings surroundings) {
  return std::make_shared<PowerSessionStore>(version, storePath(options), false, std::move(surroundings));
}

}  // namespace quellin::cli
