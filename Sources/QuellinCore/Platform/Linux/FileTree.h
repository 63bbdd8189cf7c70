#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "QuellinCore/Support/SystemError.h"

namespace quellin {

/// A tree of small files that the kernel publishes, such as /sys. Paths are relative to its root, without a
/// leading slash.
///
/// Threading: every operation may be called from any thread, also from several at once. Nothing throws.
class FileTree {
 public:
  virtual ~FileTree() = default;

  /// The first bytes of the file, at most the size of `buffer`, by one open and one read: the kernel gives
  /// the whole of such a file at once and makes it anew for every opening. The text points into `buffer`.
  [[nodiscard]] virtual std::expected<std::string_view, SystemError> readInto(
      const char* path, std::span<char> buffer) const = 0;

  /// The names in the directory, hidden ones left out, in the order of the file system.
  [[nodiscard]] virtual std::expected<std::vector<std::string>, SystemError> list(
      const std::string& path) const = 0;

  /// How a user would write the path.
  [[nodiscard]] virtual std::string displayPath(const std::string& path) const = 0;
};

/// The tree below a directory of this machine, which need not exist: then every operation fails as the system
/// says.
[[nodiscard]] std::shared_ptr<const FileTree> directoryTree(std::string root);

/// The machine's own /sys.
[[nodiscard]] std::shared_ptr<const FileTree> systemTree();

/// The names in the directory in natural order, which is the same at every call: "hwmon2" comes before
/// "hwmon10".
[[nodiscard]] std::expected<std::vector<std::string>, SystemError> sortedNames(const FileTree& tree,
                                                                               const std::string& path);

/// The entries of one of the kernel's classes, such as "class/hwmon", in natural order. None where the class
/// is missing: the kernel makes it with the first driver that needs it.
[[nodiscard]] std::expected<std::vector<std::string>, SystemError> classEntries(const FileTree& tree,
                                                                                const std::string& path);

/// The file's text without the white space and line breaks at its ends, as valid UTF-8: what firmware writes
/// is repaired with U+FFFD. Files of more than a page, which /sys does not have, are cut.
[[nodiscard]] std::expected<std::string, SystemError> readText(const FileTree& tree, const std::string& path);

/// The file's decimal integer; EINVAL when it holds anything else.
[[nodiscard]] std::expected<std::int64_t, SystemError> readInteger(const FileTree& tree,
                                                                   const std::string& path);

/// `result` for callers to whom every failure is the same.
template <class Value>
[[nodiscard]] std::optional<Value> valueOf(std::expected<Value, SystemError> result) {
  return result ? std::optional<Value>{*std::move(result)} : std::nullopt;
}

}  // namespace quellin
