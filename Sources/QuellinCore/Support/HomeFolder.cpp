#include "QuellinCore/Support/HomeFolder.h"

#include <cstddef>
#include <cstdlib>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace quellin {
namespace {

std::filesystem::path homeInUserDatabase() {
  constexpr std::size_t room = 16384;
  std::vector<char> buffer(room);
  struct passwd entry{};
  struct passwd* found = nullptr;
  const int status = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
  return status == 0 && found != nullptr ? found->pw_dir : "/";
}

}  // namespace

std::filesystem::path homeFolder() {
  const char* variable = std::getenv("HOME");  // NOLINT(concurrency-mt-unsafe): nothing here sets it
  const std::filesystem::path home = variable == nullptr ? "" : variable;
  return home.is_absolute() ? home : homeInUserDatabase();
}

}  // namespace quellin
