#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Support/TemporaryFolder.h"

namespace quellin::testing_support {

/// One file of an archived tree.
struct ArchivedFile {
  std::string path;
  unsigned mode = 0;
  std::string content;

  bool operator==(const ArchivedFile&) const = default;
};

/// Reads a tree of small files that is kept as one text: a line "=== PATH MODE" (mode in octal) begins a
/// file, the lines up to the next such line are its content. What stands before the first is comment. Throws
/// on a line it cannot read.
[[nodiscard]] std::vector<ArchivedFile> parseTreeArchive(std::string_view text);

/// An archived tree unpacked into a folder of its own.
class UnpackedTree {
 public:
  explicit UnpackedTree(std::string_view archive);

  /// The archive in the file `name` of Tests/Fixtures.
  [[nodiscard]] static UnpackedTree fixture(const std::string& name);

  /// Writes one more file, or replaces one.
  void write(const ArchivedFile& file) const;

  /// The path of a directory or file of the tree.
  [[nodiscard]] std::string path(std::string_view relative) const { return folder_.pathOf(relative); }

 private:
  TemporaryFolder folder_;
};

}  // namespace quellin::testing_support
