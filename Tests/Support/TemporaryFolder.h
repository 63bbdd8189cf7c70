#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace quellin::testing_support {

/// A fresh folder that is removed, with all in it, at the end of its life.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  /// The path of `name` below the folder, as text.
  [[nodiscard]] std::string pathOf(std::string_view name) const { return (path_ / name).string(); }

  /// Writes a file (and the folders above it); returns its path.
  std::string write(std::string_view name, std::string_view content) const;
  /// Writes a program that /bin/sh runs; returns its path.
  [[nodiscard]] std::string writeScript(std::string_view name, std::string_view body) const;

 private:
  std::filesystem::path path_;
};

/// The permission bits of a file; throws when there is none.
[[nodiscard]] unsigned modeOf(const std::filesystem::path& path);

/// The bytes of a file; throws when it cannot be read.
[[nodiscard]] std::string contentOf(const std::filesystem::path& path);

}  // namespace quellin::testing_support
