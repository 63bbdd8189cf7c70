#include <gtest/gtest.h>

#include "QuellinCore/Support/Clock.h"

namespace quellin {
namespace {

TEST(InstantTest, CountsSecondsSinceTheUnixEpoch) {
  EXPECT_EQ(instantAt(1.5).time_since_epoch(), Seconds{1.5});
  EXPECT_EQ(instantAt(10) - instantAt(8.75), Seconds{1.25});
}

TEST(SystemMonotonicClockTest, NeverStepsBackAndIgnoresSleepsThatAreNotPositive) {
  MonotonicClock& clock = systemMonotonicClock();
  const Seconds first = clock.now();
  clock.sleep(Seconds{0});
  clock.sleep(Seconds{-1});
  clock.sleep(Seconds{std::numeric_limits<double>::quiet_NaN()});
  EXPECT_GE(clock.now(), first);
}

TEST(SystemWallClockTest, IsLaterThanTheYearThisWasWritten) {
  EXPECT_GT(systemWallClock().now(), instantAt(1'700'000'000));
}

}  // namespace
}  // namespace quellin
