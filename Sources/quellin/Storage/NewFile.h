#pragma once

#include <string>
#include <string_view>

#include "QuellinCore/Support/FileDescriptor.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Storage/RemovalOnSignal.h"

namespace quellin::cli {

/// The failure to write a file because there is one of that name.
[[nodiscard]] Failure alreadyThere(const std::string& path);

/// A file that appears under its name only when it is whole. Unless it is published, nothing is left of it,
/// also when the user or the system ends the process meanwhile. One at a time.
class NewFile {
 public:
  /// Begins a file beside `path`, which only its owner may read. Throws `Failure`, also where the name
  /// belongs to a device or a folder.
  explicit NewFile(std::string path);
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  NewFile(NewFile&&) = delete;
  NewFile& operator=(NewFile&&) = delete;
  ~NewFile();

  /// Appends `text`. Throws `Failure`.
  void write(std::string_view text);

  /// Gives the file its name, in one step; a file of that name is replaced when `replaces`, else `Failure` is
  /// thrown.
  void publish(bool replaces);

 private:
  [[noreturn]] void fail(int error) const;

  std::string path_;
  std::string temporaryPath_;
  RemovalOnSignal removal_;
  FileDescriptor file_;
};

}  // namespace quellin::cli
