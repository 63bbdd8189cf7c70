#include "QuellinHelper/SampleFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "QuellinCore/Support/UUID.h"

namespace quellin {
namespace {

std::optional<struct stat> statusOf(int descriptor) {
  struct stat status{};
  if (fstat(descriptor, &status) != 0) return std::nullopt;
  return status;
}

bool isSafeFolder(int descriptor) {
  const auto status = statusOf(descriptor);
  if (!status || (status->st_uid != 0 && status->st_uid != geteuid())) return false;
  return (status->st_mode & (S_IWGRP | S_IWOTH)) == 0 || (status->st_mode & S_ISVTX) != 0;
}

bool isSameRegularFile(const struct stat& found, const struct stat& created) {
  return S_ISREG(found.st_mode) && found.st_dev == created.st_dev && found.st_ino == created.st_ino &&
         found.st_uid == geteuid();
}

/// Reads at most `limit` bytes; no value on an error and when there are more.
std::optional<std::string> readAll(int descriptor, std::size_t sizeHint, std::size_t limit) {
  // One byte more than expected: the read that meets the end needs room, too.
  std::string content(std::min(sizeHint, limit) + 1, '\0');
  std::size_t length = 0;
  while (true) {
    if (length == content.size()) content.resize(content.size() * 2);
    const ssize_t count = ::read(descriptor, content.data() + length, content.size() - length);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    length += static_cast<std::size_t>(count);
    if (length > limit) return std::nullopt;
  }
  content.resize(length);
  return content;
}

}  // namespace

std::expected<SampleFile, SystemError> SampleFile::create(const std::string& folder) {
  return create(folder, "quellin-powermetrics-" + UUID::random().text() + ".pliststream");
}

std::expected<SampleFile, SystemError> SampleFile::create(const std::string& folder,
                                                          const std::string& name) {
  const auto opened = openDescriptor(folder, O_RDONLY | O_DIRECTORY);
  if (!opened) return std::unexpected(opened.error());
  if (!isSafeFolder(opened->get())) return std::unexpected(SystemError{EPERM});
  // Put together first: once the file is there, nothing may fail before its owner is.
  std::string path = folder.ends_with('/') ? folder + name : folder + '/' + name;
  FileDescriptor created{openat(opened->get(), name.c_str(),
                                O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR)};
  if (!created) return std::unexpected(SystemError::last());
  return SampleFile{std::move(path), std::move(created)};
}

SampleFile::SampleFile(std::string path, FileDescriptor created)
    : path_(std::move(path)), created_(std::move(created)) {}

SampleFile::SampleFile(SampleFile&& other) noexcept
    : path_(std::exchange(other.path_, {})), created_(std::move(other.created_)) {}

SampleFile::~SampleFile() {
  if (!path_.empty()) unlink(path_.c_str());
}

std::optional<std::string> SampleFile::read(std::size_t limit) const {
  // Without O_NONBLOCK, opening a pipe that was put in the file's place would wait for a writer.
  const auto opened = openDescriptor(path_, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
  if (!opened) return std::nullopt;
  const auto created = statusOf(created_.get());
  const auto found = statusOf(opened->get());
  if (!created || !found || !isSameRegularFile(*found, *created)) return std::nullopt;
  const auto size = static_cast<std::size_t>(found->st_size);
  if (size > limit) return std::nullopt;
  return readAll(opened->get(), size, limit);
}

}  // namespace quellin
