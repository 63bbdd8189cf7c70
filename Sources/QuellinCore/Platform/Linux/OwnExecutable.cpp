#include "QuellinCore/Platform/OwnExecutable.h"

#include <system_error>
#include <utility>

namespace quellin {

std::optional<std::filesystem::path> ownExecutablePath() {
  std::error_code error;
  std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::nullopt : std::optional{std::move(path)};
}

}  // namespace quellin
