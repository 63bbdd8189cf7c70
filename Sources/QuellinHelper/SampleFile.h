#pragma once

#include <cstddef>
#include <expected>
#include <optional>
#include <string>
#include <sys/types.h>

#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinCore/Support/SystemError.h"

namespace quellin {

/// The temporary file that the measuring tool writes its samples to. It is created here, exclusively and for
/// its owner alone, before the tool learns its name, and is removed at the end of this object's life.
/// Move-only.
class SampleFile {
 public:
  /// The largest content that is read.
  static constexpr std::size_t sizeLimit = std::size_t{64} << 20;

  /// A new, empty file with an unguessable name in `folder`.
  [[nodiscard]] static std::expected<SampleFile, SystemError> create(const std::string& folder);

  /// A new, empty file called `name` in `folder`. Fails when something of that name is there already, a
  /// symbolic link included, and with EPERM when other users could put another file in its place: the folder
  /// must belong to this user or to root, and only its owner may write there unless it is sticky.
  [[nodiscard]] static std::expected<SampleFile, SystemError> create(const std::string& folder,
                                                                     const std::string& name);

  SampleFile(SampleFile&& other) noexcept;
  SampleFile& operator=(SampleFile&&) = delete;
  SampleFile(const SampleFile&) = delete;
  SampleFile& operator=(const SampleFile&) = delete;
  ~SampleFile();

  [[nodiscard]] const std::string& path() const { return path_; }

  /// The content. No value when it cannot be read, is longer than `limit`, or when what is found under the
  /// path is not the file that was created.
  [[nodiscard]] std::optional<std::string> read(std::size_t limit = sizeLimit) const;

 private:
  SampleFile(std::string path, FileDescriptor created);

  std::string path_;
  FileDescriptor created_;  // held open, so that no other file can get its inode number meanwhile
};

}  // namespace quellin
