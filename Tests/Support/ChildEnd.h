#pragma once

#include <cerrno>
#include <sys/wait.h>

namespace quellin::testing_support {

/// Returns once a child of this process has ended (the one of that id, if one is given), or once there is
/// none; its status stays for whoever collects it.
inline void awaitChildEnd(pid_t processID = 0) {
  siginfo_t info{};
  const idtype_t which = processID == 0 ? P_ALL : P_PID;
  while (waitid(which, static_cast<id_t>(processID), &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
  }
}

}  // namespace quellin::testing_support
