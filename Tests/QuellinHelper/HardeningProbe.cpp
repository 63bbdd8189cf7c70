// Hardens itself as the tool does and reports what it then finds, on the descriptor named by its argument.

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinHelper/ProcessHardening.h"

#if defined(__linux__)
#include <sys/prctl.h>
#endif

namespace {

std::string environmentReport() {
  std::string text;
  for (char** entry = environ; *entry != nullptr; ++entry) text += std::string{" "} + *entry;
  return text;
}

std::string descriptorReport() {
  std::set<int> numbers;
  for (const auto& entry : std::filesystem::directory_iterator{"/dev/fd"}) {
    numbers.insert(std::stoi(entry.path().filename()));
  }
  std::string text;
  for (const int number : numbers) {
    const int flags = fcntl(number, F_GETFL);
    if (flags == -1) continue;  // the listing's own descriptor
    text += " " + std::to_string(number) + ((flags & O_ACCMODE) == O_RDONLY ? ":in" : ":out");
  }
  return text;
}

std::string signalReport() {
  sigset_t blocked{};
  pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
  std::string ignored;
  std::string held;
  for (int number = 1; number < NSIG; ++number) {
    struct sigaction action{};
    if (sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_DFL) {
      ignored += " " + std::to_string(number);
    }
    if (sigismember(&blocked, number) == 1) held += " " + std::to_string(number);
  }
  return "not default:" + ignored + "\nblocked:" + held + "\n";
}

std::string timerReport() {
  std::string text;
  for (const auto kind : {ITIMER_REAL, ITIMER_VIRTUAL, ITIMER_PROF}) {
    itimerval timer{};
    getitimer(kind, &timer);
    text += timer.it_value.tv_sec == 0 && timer.it_value.tv_usec == 0 ? " off" : " on";
  }
  return text;
}

std::string dumpableReport() {
#if defined(__linux__)
  return "dumpable: " + std::to_string(prctl(PR_GET_DUMPABLE)) + "\n";
#else
  return "";
#endif
}

std::string report() {
  const mode_t mask = umask(0);
  rlimit core{};
  getrlimit(RLIMIT_CORE, &core);
  return "environment:" + environmentReport() + "\nfolder: " + std::filesystem::current_path().string() +
         "\numask: " + std::to_string(mask) + "\ndescriptors:" + descriptorReport() + "\n" + signalReport() +
         "timers:" + timerReport() + "\ncore: " + std::to_string(core.rlim_cur) + " " +
         std::to_string(core.rlim_max) + "\n" + dumpableReport();
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 2 || !quellin::hardenProcess()) return 1;
  return quellin::writeAll(std::stoi(argv[1]), report()) ? 0 : 1;
}
