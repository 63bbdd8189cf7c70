#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

#include "QuellinCore/Sessions/StoreFileOptions.h"

namespace quellin {

class Database;

/// An open session store: a file that several processes may use at once, or memory. Confined to one thread.
class ModelContainer {
 public:
  /// Opens the store file, making it when there is none; the folder must exist. Throws `StoreError`.
  ModelContainer(const std::filesystem::path& path, const StoreFileOptions& options);
  /// A new, empty store in memory; nothing of it is written to disk.
  ModelContainer();
  ~ModelContainer();
  ModelContainer(const ModelContainer&) = delete;
  ModelContainer& operator=(const ModelContainer&) = delete;
  ModelContainer(ModelContainer&&) = delete;
  ModelContainer& operator=(ModelContainer&&) = delete;

  /// The store file; empty in memory.
  [[nodiscard]] const std::filesystem::path& path() const;

  /// Hands everything saved so far to the disk, so that a power cut cannot take it. Nothing happens when
  /// another process is reading just then, or when the disk refuses: what is saved is safe from all but a
  /// power cut either way.
  void checkpoint();

  /// Bytes of the pages that saving has handed to the disk since the store was opened: those of the
  /// write-ahead log, not those that move on from it into the file. 0 in memory.
  [[nodiscard]] std::int64_t bytesWritten() const;

  /// The connection, for this room only.
  [[nodiscard]] Database& database() { return *database_; }

 private:
  std::unique_ptr<Database> database_;
  std::int64_t pageSize_ = 0;
};

}  // namespace quellin
