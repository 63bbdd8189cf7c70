#include "QuellinCore/Sessions/ModelContainer.h"

#include "QuellinCore/Sessions/Storage/Database.h"
#include "QuellinCore/Sessions/Storage/Query.h"
#include "QuellinCore/Sessions/Storage/StoreFile.h"

namespace quellin {

ModelContainer::ModelContainer(const std::filesystem::path& path, const StoreFileOptions& options)
    : database_(openStoreFile(path, options)), pageSize_(database_->integer("PRAGMA page_size")) {}

ModelContainer::ModelContainer() : database_(openStoreInMemory()) {}

ModelContainer::~ModelContainer() = default;

const std::filesystem::path& ModelContainer::path() const { return database_->path(); }

std::int64_t ModelContainer::bytesWritten() const { return database_->pagesWritten() * pageSize_; }

void ModelContainer::checkpoint() {
  if (database_->isInMemory()) return;
  try {
    Query(*database_, "PRAGMA wal_checkpoint(PASSIVE)").run();
  } catch (const StoreError&) {
    return;
  }
}

}  // namespace quellin
