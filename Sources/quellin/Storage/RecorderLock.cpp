#include "quellin/Storage/RecorderLock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "quellin/Outcome/Failure.h"

namespace quellin::cli {
namespace {

constexpr unsigned mode = 0600;  // as the store's

// One store has one lock, whatever links lead to it.
std::filesystem::path lockPath(const std::filesystem::path& store) {
  std::error_code unknown;
  std::filesystem::path path = std::filesystem::canonical(store, unknown);
  if (unknown) path = store;
  path += "-recorder";
  return path;
}

Failure cannotLock(const std::filesystem::path& path, const SystemError& error) {
  return {ExitStatus::failed, path.string() + " cannot be locked: " + error.description() +
                                  ". Name a store in a folder that you may write to, with --store."};
}

// False when somebody else has locked it.
bool lock(const FileDescriptor& file, const std::filesystem::path& path) {
  while (flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno == EWOULDBLOCK) return false;
    if (errno != EINTR) throw cannotLock(path, SystemError::last());
  }
  return true;
}

bool isAt(const std::filesystem::path& path, const FileDescriptor& file) {
  struct stat opened{};
  struct stat present{};
  return fstat(file.get(), &opened) == 0 && stat(path.c_str(), &present) == 0 &&
         opened.st_dev == present.st_dev && opened.st_ino == present.st_ino;
}

}  // namespace

std::optional<RecorderLock> RecorderLock::take(const std::filesystem::path& store) {
  const std::filesystem::path path = lockPath(store);
  for (;;) {
    auto file = openDescriptor(path.string(), O_RDONLY | O_CREAT, mode);
    if (!file) throw cannotLock(path, file.error());
    if (!lock(*file, path)) return std::nullopt;
    // Else the one before has removed it since it was opened, and the next one makes another.
    if (isAt(path, *file)) return RecorderLock{path, *std::move(file)};
  }
}

RecorderLock::RecorderLock(std::filesystem::path path, FileDescriptor file)
    : path_(std::move(path)), file_(std::move(file)) {}

RecorderLock::~RecorderLock() {
  if (file_) static_cast<void>(::unlink(path_.c_str()));
}

}  // namespace quellin::cli
