#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Models/ProcessSample.h"
#include "QuellinCore/Platform/Recorded/IntervalScale.h"

namespace quellin {
namespace {

using testing::ElementsAre;

constexpr auto largest = std::numeric_limits<std::int64_t>::max();
constexpr auto largestUnsigned = std::numeric_limits<std::uint64_t>::max();

std::vector<std::int64_t> stretched(const IntervalScale& scale, const std::vector<std::int64_t>& gains) {
  std::vector<EnergyChannel> channels;
  for (const std::int64_t gain : gains) channels.push_back({"PCPU", gain});
  std::vector<std::int64_t> result;
  for (const EnergyChannel& channel : scale.later(channels)) result.push_back(channel.nanojoules);
  return result;
}

std::uint64_t stretched(const IntervalScale& scale, std::uint64_t before, std::uint64_t after) {
  ProcessUsage first;
  ProcessUsage second;
  first.userTimeNanoseconds = before;
  second.userTimeNanoseconds = after;
  return scale.later(first, second).userTimeNanoseconds;
}

TEST(IntervalScaleTest, LeavesGainsOfTheSameWaitAlone) {
  for (const double waited : {0.35, 0.3500005, 0.0, -1.0}) {
    const IntervalScale scale{Seconds{0.35}, Seconds{waited}};
    EXPECT_THAT(stretched(scale, {largest, 7}), ElementsAre(largest, 7)) << waited;
    EXPECT_EQ(stretched(scale, 1, largestUnsigned), largestUnsigned) << waited;
  }
}

TEST(IntervalScaleTest, LeavesGainsOfAnUnusableIntervalAlone) {
  for (const double captured : {0.0, -1.0, 5e-324}) {
    const IntervalScale scale{Seconds{captured}, Seconds{5}};
    EXPECT_THAT(stretched(scale, {7, 0}), ElementsAre(7, 0)) << captured;
    EXPECT_EQ(stretched(scale, 1, 2), 2) << captured;
  }
}

TEST(IntervalScaleTest, StretchesGainsToTheWait) {
  EXPECT_THAT(stretched(IntervalScale{Seconds{0.1}, Seconds{0.2}}, {10, -3, 0}), ElementsAre(20, -6, 0));
  EXPECT_THAT(stretched(IntervalScale{Seconds{1}, Seconds{0.25}}, {10}), ElementsAre(3));
}

TEST(IntervalScaleTest, CutsGainsToWhatCanBeAddedUp) {
  for (const double captured : {1.0, 1e-300}) {
    const IntervalScale scale{Seconds{captured}, Seconds{4}};
    EXPECT_THAT(stretched(scale, {largest}), ElementsAre(largest));
    EXPECT_THAT(stretched(scale, {-largest}), ElementsAre(-largest));
    EXPECT_THAT(stretched(scale, {largest / 2, -largest / 2}), ElementsAre(largest / 2, -(largest / 2)));
  }
}

TEST(IntervalScaleTest, CutsCountersToWhatCanBeAdded) {
  for (const double captured : {1.0, 1e-300}) {
    const IntervalScale scale{Seconds{captured}, Seconds{4}};
    EXPECT_EQ(stretched(scale, 5, largestProcessCounter - 1), largestProcessCounter);
    EXPECT_EQ(stretched(scale, largestProcessCounter - 2, largestProcessCounter), largestProcessCounter);
    EXPECT_EQ(stretched(scale, 5, largestUnsigned), largestUnsigned) << "never below what was captured";
  }
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
