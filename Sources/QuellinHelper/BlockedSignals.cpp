#include "QuellinHelper/BlockedSignals.h"

#include <array>

#include "QuellinCore/Support/Signals.h"

namespace quellin {
namespace {

// Those whose default is to end the process, bar the ones that the process causes itself by a fault.
constexpr std::array terminatingSignals{
    SIGHUP,  SIGINT,  SIGQUIT,   SIGPIPE, SIGALRM,   SIGTERM,
    SIGUSR1, SIGUSR2, SIGXCPU,   SIGXFSZ, SIGVTALRM, SIGPROF,
#if defined(__linux__)
    SIGPOLL, SIGPWR,  SIGSTKFLT,
#endif
};

}  // namespace

BlockedSignals::BlockedSignals() {
  sigemptyset(&blocked_);
  const auto add = [this](int number) {
    // Held back, it would arrive where it now does not.
    if (!isIgnored(number)) sigaddset(&blocked_, number);
  };
  for (const int number : terminatingSignals) add(number);
#if defined(SIGRTMIN)
  for (int number = SIGRTMIN; number <= SIGRTMAX; ++number) add(number);
#endif
  pthread_sigmask(SIG_BLOCK, &blocked_, &before_);
}

BlockedSignals::~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

bool BlockedSignals::isPending() const { return firstPending().has_value(); }

std::optional<int> BlockedSignals::take() {
  const auto number = firstPending();
  if (!number) return std::nullopt;
  sigset_t wanted;
  sigemptyset(&wanted);
  sigaddset(&wanted, *number);
  int taken = 0;
  return sigwait(&wanted, &taken) == 0 ? std::optional{taken} : std::nullopt;
}

std::optional<int> BlockedSignals::firstPending() const {
  sigset_t arrived;
  sigemptyset(&arrived);
  sigpending(&arrived);
  for (int number = 1; number < NSIG; ++number) {
    if (sigismember(&arrived, number) == 1 && sigismember(&blocked_, number) == 1) return number;
  }
  return std::nullopt;
}

}  // namespace quellin
