#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "QuellinHelper/ProcessHardening.h"
#include "Support/ProgramRun.h"

#if defined(__linux__)
#include <sys/syscall.h>

#include "Support/RefusedCalls.h"
#endif

namespace quellin {
namespace {

using testing_support::ProgramResult;
using testing_support::require;
using testing_support::runProgram;

const std::string hardened =
    "environment: PATH=/usr/bin:/bin:/usr/sbin:/sbin\n"
    "folder: /\n"
    "umask: 63\n";

const std::string quiet = "not default: " + std::to_string(SIGPIPE) + " " + std::to_string(SIGXFSZ) +
                          "\n"
                          "blocked:\n"
                          "timers: off off off\n"
                          "core: 0 0\n"
#if defined(__linux__)
                          "dumpable: 0\n"
#endif
    ;

ProgramResult runProbe(const std::function<void()>& prepare, const std::string& reportTo = "1") {
  return runProgram({.executable = QUELLIN_HARDENING_PROBE,
                     .arguments = {"probe", reportTo},
                     .environment = {"TMPDIR=/hostile", "PATH=/hostile", "TZ=:/hostile", "=", "malformed"},
                     .prepare = prepare});
}

void blockAndIgnoreSignals() {
  for (const int number : {SIGCHLD, SIGTERM, SIGINT, SIGHUP, SIGPIPE, SIGUSR1}) {
    require(std::signal(number, SIG_IGN) != SIG_ERR, "ignore");
  }
  sigset_t every{};
  sigfillset(&every);
  require(pthread_sigmask(SIG_SETMASK, &every, nullptr) == 0, "block");
}

void armTimers() {
  const itimerval soon{.it_interval = {}, .it_value = {.tv_sec = 1000, .tv_usec = 0}};
  for (const auto kind : {ITIMER_REAL, ITIMER_VIRTUAL, ITIMER_PROF}) {
    require(setitimer(kind, &soon, nullptr) == 0, "timer");
  }
}

TEST(ProcessHardeningTest, NothingOfAHostileCallerIsLeft) {
  const ProgramResult result = runProbe([] {
    umask(0);
    require(chdir("/tmp") == 0, "folder");
    blockAndIgnoreSignals();
    armTimers();
    for (const int number : {3, 7, 200}) require(dup2(STDIN_FILENO, number) == number, "descriptor");
    // Descriptor 200 stays open although nothing above 9 can be opened any more.
    const rlimit few{.rlim_cur = 10, .rlim_max = 10};
    require(setrlimit(RLIMIT_NOFILE, &few) == 0, "limit");
  });
  EXPECT_EQ(result.output, hardened + "descriptors: 0:in 1:out 2:out\n" + quiet);
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.exitStatus, 0);
}

TEST(ProcessHardeningTest, ClosedStreamsAreOccupiedByWhatFailsInTheirDirection) {
  const ProgramResult noInputAndOutput = runProbe(
      [] {
        close(STDIN_FILENO);
        close(STDOUT_FILENO);
      },
      "2");
  EXPECT_EQ(noInputAndOutput.error, hardened + "descriptors: 0:out 1:in 2:out\n" + quiet);

  const ProgramResult noError = runProbe([] { close(STDERR_FILENO); });
  EXPECT_EQ(noError.output, hardened + "descriptors: 0:in 1:out 2:in\n" + quiet);
}

#if defined(__linux__)

using testing_support::refuseCall;
using testing_support::refuseOpening;

TEST(ProcessHardeningTest, EveryRefusedStepIsReported) {
  for (const long call : {SYS_chdir, SYS_setitimer, SYS_prctl}) {
    const ProgramResult result = runProbe([call] { refuseCall(call); });
    EXPECT_EQ(result.output + result.error, "") << call;
    EXPECT_EQ(result.exitStatus, 1) << call;
  }
}

TEST(ProcessHardeningTest, AStreamThatCannotBeOccupiedIsReported) {
  const ProgramResult result = runProbe([] {
    close(STDIN_FILENO);
    refuseOpening(O_WRONLY);
  });
  EXPECT_EQ(result.output + result.error, "");
  EXPECT_EQ(result.exitStatus, 1);
}

#endif

}  // namespace
}  // namespace quellin
