#include <unistd.h>

#include <gtest/gtest.h>

#include "QuellinHelper/BlockedSignals.h"

namespace quellin {
namespace {

TEST(BlockedSignalsTest, HoldsBackASignalThatCanThenBeTaken) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGQUIT, SIGALRM, SIGUSR1, SIGUSR2, SIGXCPU, SIGPIPE}) {
    BlockedSignals signals;
    EXPECT_FALSE(signals.isPending());
    EXPECT_EQ(signals.take(), std::nullopt);
    kill(getpid(), number);
    EXPECT_TRUE(signals.isPending());
    EXPECT_EQ(signals.take(), number);
    EXPECT_FALSE(signals.isPending());
  }
}

TEST(BlockedSignalsTest, GivesTheMaskBack) {
  sigset_t before;
  pthread_sigmask(SIG_BLOCK, nullptr, &before);
  {
    const BlockedSignals signals;
  }
  sigset_t after;
  pthread_sigmask(SIG_BLOCK, nullptr, &after);
  for (int number = 1; number < NSIG; ++number) {
    EXPECT_EQ(sigismember(&before, number), sigismember(&after, number)) << number;
  }
}

TEST(BlockedSignalsTest, LeavesOtherSignalsAlone) {
  const BlockedSignals signals;
  sigset_t mask;
  pthread_sigmask(SIG_BLOCK, nullptr, &mask);
  for (const int number : {SIGSEGV, SIGABRT, SIGCHLD, SIGTSTP})
    EXPECT_EQ(sigismember(&mask, number), 0) << number;
}

TEST(BlockedSignalsTest, AnIgnoredSignalStaysIgnored) {
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  BlockedSignals signals;
  kill(getpid(), SIGPIPE);
  EXPECT_FALSE(signals.isPending());
  std::signal(SIGPIPE, before);
}

TEST(BlockedSignalsDeathTest, ASignalThatNobodyTakesStillEndsTheProcess) {
  EXPECT_EXIT(
      {
        {
          const BlockedSignals signals;
          kill(getpid(), SIGTERM);
        }
        _exit(0);
      },
      testing::KilledBySignal(SIGTERM), "");
}

}  // namespace
}  // namespace quellin
