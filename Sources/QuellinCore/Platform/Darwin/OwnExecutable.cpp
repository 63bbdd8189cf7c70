#include "QuellinCore/Platform/OwnExecutable.h"

#include <cstdint>
#include <mach-o/dyld.h>
#include <string>
#include <system_error>
#include <utility>

namespace quellin {

std::optional<std::filesystem::path> ownExecutablePath() {
  std::uint32_t room = 0;
  static_cast<void>(_NSGetExecutablePath(nullptr, &room));
  std::string given(room, '\0');
  if (_NSGetExecutablePath(given.data(), &room) != 0) return std::nullopt;
  std::error_code error;
  std::filesystem::path path = std::filesystem::canonical(given.c_str(), error);
  return error ? std::nullopt : std::optional{std::move(path)};
}

}  // namespace quellin
