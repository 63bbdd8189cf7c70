#include "Support/TemporaryFolder.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

namespace quellin::testing_support {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::string pattern = (fs::temp_directory_path() / "quellin-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::system_error(errno, std::generic_category(), pattern);
  path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(std::string_view name, std::string_view content) const {
  const fs::path path = path_ / name;
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << content;
  file.close();
  if (!file) throw std::system_error(errno, std::generic_category(), path.string());
  return path.string();
}

std::string TemporaryFolder::writeScript(std::string_view name, std::string_view body) const {
  std::string path = write(name, "#!/bin/sh\n" + std::string{body} + "\n");
  fs::permissions(path, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                            fs::perms::others_read | fs::perms::others_exec);
  return path;
}

unsigned modeOf(const fs::path& path) {
  return static_cast<unsigned>(fs::status(path).permissions() & fs::perms::mask) & 0777U;
}

std::string contentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::system_error(errno, std::generic_category(), path.string());
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace quellin::testing_support
