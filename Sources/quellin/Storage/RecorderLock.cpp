#include "quellin/Storage/RecorderLock.h"

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

#include "quellin/Outcome/Failure.h"

namespace quellin::cli {
namespace {

constexpr unsigned mode = 0600;            // as the store's
constexpr std::size_t longestWord = 8192;  // more than the longest path

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

// Whether somebody has locked it; who looks at the same time is nobody.
bool isLocked(const FileDescriptor& file) {
  if (flock(file.get(), LOCK_SH | LOCK_NB) != 0) return errno == EWOULDBLOCK;
  static_cast<void>(flock(file.get(), LOCK_UN));
  return false;
}

// False when somebody else has locked it.
bool lock(const FileDescriptor& file, const std::filesystem::path& path) {
  constexpr int mostLooks = 1000;  // of others, each of which is over at once
  for (int looks = 0; flock(file.get(), LOCK_EX | LOCK_NB) != 0;) {
    const SystemError error = SystemError::last();
    if (error.code == EINTR) continue;
    if (error.code != EWOULDBLOCK) throw cannotLock(path, error);
    if (isLocked(file) || ++looks == mostLooks) return false;
    std::this_thread::yield();
  }
  return true;
}

bool isAt(const std::filesystem::path& path, const FileDescriptor& file) {
  struct stat opened{};
  struct stat present{};
  return fstat(file.get(), &opened) == 0 && lstat(path.c_str(), &present) == 0 &&
         opened.st_dev == present.st_dev && opened.st_ino == present.st_ino;
}

// What has no size is no ordinary file, or has no word; reading it might never end.
std::optional<std::string> wordIn(const FileDescriptor& file) {
  struct stat status{};
  if (fstat(file.get(), &status) != 0 || status.st_size <= 1) return std::nullopt;
  if (static_cast<std::size_t>(status.st_size) > longestWord) return std::nullopt;
  std::string word = readToEnd(file.get());
  if (!word.ends_with('\n') || word.find('\n') != word.size() - 1) return std::nullopt;
  word.pop_back();
  return word;
}

}  // namespace

RecorderLock::Sight RecorderLock::look(const std::filesystem::path& store) {
  const auto file = openDescriptor(lockPath(store).string(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
  if (!file) return {};
  return {.isHeld = isLocked(*file), .word = wordIn(*file)};
}

std::optional<RecorderLock> RecorderLock::take(const std::filesystem::path& store) {
  const std::filesystem::path path = lockPath(store);
  for (;;) {
    auto file = openDescriptor(path.string(), O_RDWR | O_CREAT | O_NOFOLLOW, mode);
    if (!file) throw cannotLock(path, file.error());
    if (!lock(*file, path)) return std::nullopt;
    // Else the one before has removed it since it was opened, and the next one makes another.
    if (isAt(path, *file)) return RecorderLock{path, *std::move(file)};
  }
}

RecorderLock::RecorderLock(std::filesystem::path path, FileDescriptor file)
    : path_(std::move(path)),
      file_(std::move(file)),
      wordBefore_(wordIn(file_)),
      hasWord_(wordBefore_.has_value()) {}

RecorderLock::~RecorderLock() {
  if (file_ && !hasWord_) static_cast<void>(::unlink(path_.c_str()));
}

void RecorderLock::leaveWord(const std::string& word) {
  const std::string line = word + "\n";
  // Over the word before, which may be the same: a kill between the two steps leaves one of them or none.
  const bool isWritten = lseek(file_.get(), 0, SEEK_SET) == 0 && writeAll(file_.get(), line);
  const auto size = static_cast<off_t>(isWritten ? line.size() : 0);
  if (ftruncate(file_.get(), size) != 0) throw cannotLock(path_, SystemError::last());
  wordBefore_.reset();
  hasWord_ = isWritten;
}

}  // namespace quellin::cli
