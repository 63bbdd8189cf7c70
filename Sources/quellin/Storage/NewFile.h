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
  /// Begins a file beside `path`, which only its owner may read, and which `replaces` one of that name or
  /// must not. Throws `Failure`, also where the name belongs to a device or a folder, and where it belongs to
  /// a file that must not be replaced.
  NewFile(std::string path, bool replaces);
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  NewFile(NewFile&&) = delete;
  NewFile& operator=(NewFile&&) = delete;
  ~NewFile();

  /// Appends `text`. Throws `Failure`.
  void write(std::string_view text);

  /// Gives the file its name, in one step. Throws `Failure`, also when a file of that name that must not be
  /// replaced has come meanwhile.
  void publish();

 private:
  [[noreturn]] void fail(int error) const;

  std::string path_;
  bool replaces_;
  std::string temporaryPath_;
  RemovalOnSignal removal_;
  FileDescriptor file_;
};

}  // namespace quellin::cli
