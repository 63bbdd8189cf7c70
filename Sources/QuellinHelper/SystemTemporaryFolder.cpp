#include "QuellinHelper/SystemTemporaryFolder.h"

#if defined(__APPLE__)
#include <array>
#include <unistd.h>

#include <climits>
#endif

namespace quellin {

std::string systemTemporaryFolder() {
#if defined(__APPLE__)
  std::array<char, PATH_MAX> folder{};
  const std::size_t length = confstr(_CS_DARWIN_USER_TEMP_DIR, folder.data(), folder.size());
  if (length > 1 && length <= folder.size()) return folder.data();
#endif
  return "/tmp";
}

}  // namespace quellin
