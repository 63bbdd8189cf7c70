#include "QuellinHelper/OutputStream.h"

#include <cerrno>
#include <cstddef>
#include <poll.h>
#include <unistd.h>

namespace quellin {
namespace {

// The caller may have made its end of the stream non-blocking, and both ends of a terminal or socket share
// that.
bool awaitSpace(int descriptor) {
  pollfd stream{.fd = descriptor, .events = POLLOUT, .revents = 0};
  return poll(&stream, 1, -1) > 0 || errno == EINTR;
}

}  // namespace

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(descriptor, bytes.data(), bytes.size());
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno == EAGAIN) {
      if (!awaitSpace(descriptor)) return false;
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

}  // namespace quellin
