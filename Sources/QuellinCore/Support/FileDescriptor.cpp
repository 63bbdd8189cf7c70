#include "QuellinCore/Support/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace quellin {
namespace {

constexpr int firstFreeNumber = 3;

// A process started with a closed standard stream gets that stream's number for the next file it opens.
std::expected<FileDescriptor, SystemError> aboveStandardStreams(FileDescriptor descriptor) {
  if (descriptor.get() >= firstFreeNumber) return descriptor;
  FileDescriptor moved{fcntl(descriptor.get(), F_DUPFD_CLOEXEC, firstFreeNumber)};
  if (!moved) return std::unexpected(SystemError::last());
  return moved;
}

std::expected<Pipe, SystemError> openRawPipe() {
  std::array<int, 2> ends{};
#if defined(__linux__)
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return std::unexpected(SystemError::last());
  return Pipe{.readEnd = FileDescriptor{ends[0]}, .writeEnd = FileDescriptor{ends[1]}};
#else
  if (pipe(ends.data()) != 0) return std::unexpected(SystemError::last());
  Pipe result{.readEnd = FileDescriptor{ends[0]}, .writeEnd = FileDescriptor{ends[1]}};
  for (const int end : ends) {
    if (fcntl(end, F_SETFD, FD_CLOEXEC) != 0) return std::unexpected(SystemError::last());
  }
  return result;
#endif
}

// Whoever shares a terminal, socket or pipe may have made it non-blocking for all.
bool awaitSpace(int descriptor) {
  pollfd stream{.fd = descriptor, .events = POLLOUT, .revents = 0};
  return poll(&stream, 1, -1) > 0 || errno == EINTR;
}

}  // namespace

void FileDescriptor::reset() {
  if (descriptor_ >= 0) close(std::exchange(descriptor_, -1));
}

std::expected<Pipe, SystemError> Pipe::open() {
  auto ends = openRawPipe();
  if (!ends) return std::unexpected(ends.error());
  auto readEnd = aboveStandardStreams(std::move(ends->readEnd));
  if (!readEnd) return std::unexpected(readEnd.error());
  auto writeEnd = aboveStandardStreams(std::move(ends->writeEnd));
  if (!writeEnd) return std::unexpected(writeEnd.error());
  return Pipe{.readEnd = std::move(*readEnd), .writeEnd = std::move(*writeEnd)};
}

std::expected<FileDescriptor, SystemError> openDescriptor(const std::string& path, int flags, unsigned mode) {
  FileDescriptor descriptor{::open(path.c_str(), flags | O_CLOEXEC, mode)};
  if (!descriptor) return std::unexpected(SystemError::last());
  return aboveStandardStreams(std::move(descriptor));
}

std::expected<void, SystemError> occupyClosedStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) != -1) continue;
    const int direction = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
    if (::open("/dev/null", direction) != stream) return std::unexpected(SystemError::last());
  }
  return {};
}

ReadStep readOnce(int descriptor, std::string& bytes, std::size_t limit) {
  std::array<char, 16384> buffer{};
  ssize_t count = 0;
  do {
    count = read(descriptor, buffer.data(), buffer.size());
  } while (count < 0 && errno == EINTR);
  if (count < 0 && errno == EAGAIN) return ReadStep::nothingYet;
  if (count <= 0) return ReadStep::end;
  bytes.append(buffer.data(), std::min(static_cast<std::size_t>(count), limit - bytes.size()));
  return ReadStep::bytes;
}

std::string readToEnd(int descriptor, std::size_t limit) {
  std::string bytes;
  while (readOnce(descriptor, bytes, limit) == ReadStep::bytes) {
  }
  return bytes;
}

std::expected<void, SystemError> writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(descriptor, bytes.data(), bytes.size());
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno == EAGAIN) {
      if (!awaitSpace(descriptor)) return std::unexpected(SystemError::last());
    } else if (errno != EINTR) {
      return std::unexpected(SystemError::last());
    }
  }
  return {};
}

}  // namespace quellin
