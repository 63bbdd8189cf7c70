#pragma once

#include <cstddef>
#include <filesystem>

#include "Support/TemporaryFolder.h"

namespace quellin::testing_support {

/// A file system of its own, in memory and with little room, which is gone with this object and seen by this
/// process alone. Linux, root.
class SmallDisk {
 public:
  explicit SmallDisk(std::size_t bytes);
  ~SmallDisk();
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  SmallDisk(SmallDisk&&) = delete;
  SmallDisk& operator=(SmallDisk&&) = delete;

  /// Where it is.
  [[nodiscard]] const std::filesystem::path& path() const { return folder_.path(); }
  /// Takes all the room that is left, or gives it back.
  void fill() const;
  void clear() const;  ///< the reverse of `fill`

 private:
  [[nodiscard]] std::filesystem::path filling() const { return path() / "filling"; }

  TemporaryFolder folder_;
};

}  // namespace quellin::testing_support
