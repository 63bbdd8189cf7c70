#include "quellin/Support/PseudoTerminal.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <system_error>

namespace quellin::testing_support {
namespace {

void require(bool succeeded, const char* step) {
  if (!succeeded) throw std::system_error(errno, std::generic_category(), step);
}

}  // namespace

PseudoTerminal::PseudoTerminal(std::size_t columns, std::size_t rows)
    : master_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
  require(static_cast<bool>(master_), "posix_openpt");
  require(grantpt(master()) == 0 && unlockpt(master()) == 0, "unlockpt");
  const char* const name = ptsname(master());
  require(name != nullptr, "ptsname");
  slave_ = FileDescriptor{::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC)};
  require(static_cast<bool>(slave_), name);
  resize(columns, rows);
}

void PseudoTerminal::resize(std::size_t columns, std::size_t rows) const {
  winsize size{};
  size.ws_col = static_cast<unsigned short>(columns);
  size.ws_row = static_cast<unsigned short>(rows);
  require(ioctl(master(), TIOCSWINSZ, &size) == 0, "TIOCSWINSZ");
}

std::string PseudoTerminal::shown() const {
  std::string text;
  pollfd ready{.fd = master(), .events = POLLIN, .revents = 0};
  while (poll(&ready, 1, 0) == 1 && (ready.revents & POLLIN) != 0) {
    if (readOnce(master(), text) != ReadStep::bytes) break;
  }
  return text;
}

}  // namespace quellin::testing_support
