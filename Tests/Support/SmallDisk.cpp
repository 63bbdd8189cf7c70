#ifdef __linux__

#include "Support/SmallDisk.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <system_error>
#include <unistd.h>

#include "QuellinCore/Support/FileDescriptor.h"

namespace quellin::testing_support {
namespace {

void require(int result, const char* what) {
  if (result != 0) throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

SmallDisk::SmallDisk(std::size_t bytes) {
  // In a name space of its own, so that nothing is left on the host whatever becomes of this process.
  require(::unshare(CLONE_NEWNS), "unshare");
  require(::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr), "making mounts private");
  const std::string options = "size=" + std::to_string(bytes);
  require(::mount("tmpfs", path().c_str(), "tmpfs", 0, options.c_str()), "mount");
}

SmallDisk::~SmallDisk() { ::umount2(path().c_str(), MNT_DETACH); }

void SmallDisk::fill() const {
  const FileDescriptor file(::open(filling().c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
  const std::array<char, 4096> page{};
  while (::write(file.get(), page.data(), page.size()) > 0) {
  }
  if (errno != ENOSPC) throw std::system_error(errno, std::generic_category(), "filling the disk");
}

void SmallDisk::clear() const { std::filesystem::remove(filling()); }

}  // namespace quellin::testing_support

#endif
