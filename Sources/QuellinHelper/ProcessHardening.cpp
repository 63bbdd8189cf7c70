#include "QuellinHelper/ProcessHardening.h"

#include <array>
#include <csignal>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinHelper/FixedEnvironment.h"
#include "QuellinHelper/OpenDescriptors.h"

#if defined(__APPLE__)
#include <crt_externs.h>
#else
#include <sys/prctl.h>
#endif

namespace quellin {
namespace {

void fixEnvironment() {
  static std::string path = fixedEnvironmentEntry;
  static std::array<char*, 2> entries{path.data(), nullptr};
#if defined(__APPLE__)
  *_NSGetEnviron() = entries.data();
#else
  environ = entries.data();
#endif
}

bool stopTimers() {
  const itimerval never{};
  return setitimer(ITIMER_REAL, &never, nullptr) == 0 && setitimer(ITIMER_VIRTUAL, &never, nullptr) == 0 &&
         setitimer(ITIMER_PROF, &never, nullptr) == 0;
}

// SIGKILL, SIGSTOP and the C library's own signals refuse a disposition, and need none.
bool resetSignals() {
  for (int number = 1; number < NSIG; ++number) static_cast<void>(std::signal(number, SIG_DFL));
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
  static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
  sigset_t none{};
  sigemptyset(&none);
  return pthread_sigmask(SIG_SETMASK, &none, nullptr) == 0;
}

bool forbidCoreFiles() {
  const rlimit nothing{};
  if (setrlimit(RLIMIT_CORE, &nothing) != 0) return false;
#if defined(__linux__)
  // Also closes ptrace and /proc/self to the caller; a core pattern that names a program ignores the limit
  // above.
  if (prctl(PR_SET_DUMPABLE, 0) != 0) return false;
#endif
  return true;
}

}  // namespace

bool hardenProcess() {
  fixEnvironment();
  umask(S_IRWXG | S_IRWXO);
  return chdir("/") == 0 && occupyClosedStreams() && closeDescriptorsFrom(STDERR_FILENO + 1) &&
         stopTimers() && forbidCoreFiles() && resetSignals();
}

}  // namespace quellin
