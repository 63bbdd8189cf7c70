#pragma once

#include <filesystem>
#include <optional>

#include "QuellinCore/Support/FileDescriptor.h"

namespace quellin::cli {

/// Held by whoever records into a store, so that there is one at a time. It is a lock on a file of its own
/// beside the store, with "-recorder" behind its name, which nobody who reads or ends a session looks at. The
/// system gives it back when the process ends, however that ends. It can be moved into its place only.
class RecorderLock {
 public:
  /// Takes the lock of the store at `store`; no value while somebody else has it, in this process or another.
  /// Throws `Failure` when the file can be neither opened nor made.
  [[nodiscard]] static std::optional<RecorderLock> take(const std::filesystem::path& store);

  RecorderLock(RecorderLock&&) noexcept = default;
  RecorderLock& operator=(RecorderLock&&) = delete;
  RecorderLock(const RecorderLock&) = delete;
  RecorderLock& operator=(const RecorderLock&) = delete;
  /// Removes the file, too.
  ~RecorderLock();

 private:
  RecorderLock(std::filesystem::path path, FileDescriptor file);

  std::filesystem::path path_;
  FileDescriptor file_;
};

}  // namespace quellin::cli
