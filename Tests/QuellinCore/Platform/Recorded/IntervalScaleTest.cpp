#include <limits>

#include <gtest/gtest.h>

#include "QuellinCore/Platform/Recorded/IntervalScale.h"

namespace quellin {
namespace {

constexpr auto largest = std::numeric_limits<std::int64_t>::max();
constexpr auto largestUnsigned = std::numeric_limits<std::uint64_t>::max();

TEST(IntervalScaleTest, LeavesGainsOfTheSameWaitAlone) {
  for (const double waited : {0.35, 0.3500005, 0.0, -1.0}) {
    const IntervalScale scale{Seconds{0.35}, Seconds{waited}};
    EXPECT_EQ(scale.gain(largest), largest) << waited;
    EXPECT_EQ(scale.gain(7), 7) << waited;
  }
}

TEST(IntervalScaleTest, LeavesGainsOfAnUnknownIntervalAlone) {
  EXPECT_EQ((IntervalScale{Seconds{0}, Seconds{5}}).gain(7), 7);
  EXPECT_EQ((IntervalScale{Seconds{-1}, Seconds{5}}).gain(7), 7);
}

TEST(IntervalScaleTest, StretchesGainsToTheWait) {
  const IntervalScale scale{Seconds{0.1}, Seconds{0.2}};
  EXPECT_EQ(scale.gain(10), 20);
  EXPECT_EQ(scale.gain(-3), -6);
  EXPECT_EQ((IntervalScale{Seconds{1}, Seconds{0.25}}).gain(10), 3);
}

TEST(IntervalScaleTest, CutsWhatDoesNotFit) {
  const IntervalScale scale{Seconds{1}, Seconds{4}};
  EXPECT_EQ(scale.gain(largest), largest);
  EXPECT_EQ(scale.gain(-largest), std::numeric_limits<std::int64_t>::min());
  ProcessUsage before;
  ProcessUsage after;
  before.userTimeNanoseconds = 5;
  after.userTimeNanoseconds = largestUnsigned;
  EXPECT_EQ(scale.later(before, after).userTimeNanoseconds, largestUnsigned);
}

TEST(IntervalScaleTest, StretchesEachCounterThatIsInBoth) {
  const ProcessUsage before{.userTimeNanoseconds = 100,
                            .systemTimeNanoseconds = 10,
                            .packageIdleWakeups = 1,
                            .interruptWakeups = std::nullopt,
                            .diskBytesRead = 50,
                            .diskBytesWritten = 7,
                            .energyNanojoules = 1000,
                            .startToken = 3};
  const ProcessUsage after{.userTimeNanoseconds = 200,
                           .systemTimeNanoseconds = 10,
                           .packageIdleWakeups = 2,
                           .interruptWakeups = 9,
                           .diskBytesRead = 40,
                           .diskBytesWritten = std::nullopt,
                           .energyNanojoules = 3000,
                           .startToken = 3};
  EXPECT_EQ((IntervalScale{Seconds{1}, Seconds{2}}).later(before, after),
            (ProcessUsage{.userTimeNanoseconds = 300,
                          .systemTimeNanoseconds = 10,
                          .packageIdleWakeups = 3,
                          .interruptWakeups = 9,
                          .diskBytesRead = 40,
                          .diskBytesWritten = std::nullopt,
                          .energyNanojoules = 5000,
                          .startToken = 3}));
}

}  // namespace
}  // namespace quellin
