#include <csignal>

#include <gmock/gmock.h>

#include "QuellinCore/Support/Signals.h"

namespace quellin {
namespace {

bool isBlocked(int signal) {
  sigset_t mask{};
  pthread_sigmask(SIG_SETMASK, nullptr, &mask);
  return sigismember(&mask, signal) == 1;
}

void doNothing(int) {}

TEST(SignalsTest, IgnoredIsWhatWasSetToBe) {
  auto* const before = std::signal(SIGUSR1, SIG_IGN);
  EXPECT_TRUE(isIgnored(SIGUSR1));
  std::signal(SIGUSR1, SIG_DFL);
  EXPECT_FALSE(isIgnored(SIGUSR1));
  std::signal(SIGUSR1, doNothing);
  EXPECT_FALSE(isIgnored(SIGUSR1));
  std::signal(SIGUSR1, before);
  EXPECT_FALSE(isIgnored(-1));
}

TEST(SignalsTest, AllAreBlockedAndThenThoseOfBefore) {
  sigset_t one{};
  sigset_t before{};
  sigemptyset(&one);
  sigaddset(&one, SIGUSR2);
  pthread_sigmask(SIG_BLOCK, &one, &before);
  {
    const AllSignalsBlocked guard;
    for (const int signal : {SIGINT, SIGTERM, SIGCHLD, SIGUSR1, SIGUSR2})
      EXPECT_TRUE(isBlocked(signal)) << signal;
  }
  EXPECT_FALSE(isBlocked(SIGTERM));
  EXPECT_TRUE(isBlocked(SIGUSR2));
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace
}  // namespace quellin
