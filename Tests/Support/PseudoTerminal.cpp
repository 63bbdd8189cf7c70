#include "Support/PseudoTerminal.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/ioctl.h>
#ifdef __APPLE__
#include <util.h>
#else
#include <utmp.h>
#endif

#include "Support/SystemCalls.h"

namespace quellin::testing_support {

PseudoTerminal::PseudoTerminal(int rows, int columns) : master_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
  throwUnless(static_cast<bool>(master_), "posix_openpt");
  throwUnless(grantpt(master()) == 0 && unlockpt(master()) == 0, "unlockpt");
  const char* const name = ptsname(master());
  throwUnless(name != nullptr, "ptsname");
  slave_ = FileDescriptor{::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC)};
  throwUnless(static_cast<bool>(slave_), name);
  resize(rows, columns);
}

void PseudoTerminal::resize(int rows, int columns) const {
  winsize size{};
  size.ws_row = static_cast<unsigned short>(rows);
  size.ws_col = static_cast<unsigned short>(columns);
  throwUnless(ioctl(master(), TIOCSWINSZ, &size) == 0, "TIOCSWINSZ");
}

bool PseudoTerminal::takeOver() const { return login_tty(slave()) == 0; }

}  // namespace quellin::testing_support
