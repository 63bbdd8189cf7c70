#include <csignal>
#include <cstdio>
#include <functional>

#include <gmock/gmock.h>

#include "quellin/Measuring/Ticker.h"
#include "quellin/Support/ExampleOptions.h"

namespace quellin::cli {
namespace {

TEST(TickerTest, ARequestToEndEndsItAfterTheRound) {
  const MeasuredHost host = MeasuredHost::open(testing_support::optionsOverExample());
  Loop loop;
  Ticker ticker{loop, host, Seconds{1}, std::nullopt};
  int rounds = 0;
  std::function<void(std::function<void()>)> awaitRequest = [&](const std::function<void()>& done) {
    if (ticker.wasInterrupted()) return done();
    loop.after(Seconds{0}, [&, done] { awaitRequest(done); });
  };
  ticker.run([&](const std::function<void()>& done) {
    if (++rounds < 3) return done();
    std::raise(SIGINT);
    awaitRequest(done);
  });
  EXPECT_EQ(rounds, 3);
  EXPECT_TRUE(ticker.wasInterrupted());
}

// Asks twice in the middle of a round.
void askTwice() {
  const MeasuredHost host = MeasuredHost::open(testing_support::optionsOverExample());
  Loop loop;
  loop.onSuddenEnd([] { std::fputs("rescued", stderr); });
  Ticker ticker{loop, host, Seconds{1}, std::nullopt};
  std::function<void()> askAgain = [&] {
    if (ticker.wasInterrupted()) {
      std::raise(SIGTERM);
    } else {
      loop.after(Seconds{0}, askAgain);
    }
  };
  ticker.run([&](const std::function<void()>&) {
    std::raise(SIGINT);
    askAgain();
  });
}

TEST(TickerTest, ASecondRequestEndsTheProcessAndWhatMustHappenBeforeHappens) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(askTwice(), testing::ExitedWithCode(1), "rescued");
}

}  // namespace
}  // namespace quellin::cli
