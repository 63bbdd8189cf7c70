#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "QuellinCore/Sessions/WattStatistics.h"
#include "Support/Deaths.h"

namespace quellin {
namespace {

using testing_support::endedByTrap;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

WattStatistics statisticsOf(const std::vector<WattSample>& samples) {
  WattStatistics statistics;
  for (const WattSample& sample : samples) statistics.ingest(sample);
  return statistics;
}

TEST(WattStatisticsTest, KnowsNothingAtFirst) {
  const WattStatistics none;
  EXPECT_EQ(none.energy(), std::nullopt);
  EXPECT_EQ(none.averageWatts(60), std::nullopt);
}

TEST(WattStatisticsTest, OneReadingIsItsOwnAverageAndNoEnergy) {
  const auto one = statisticsOf({{instantAt(5), 7.5}});
  EXPECT_EQ(one.averageWatts(60), 7.5);
  EXPECT_EQ(one.energy(), std::nullopt);
  EXPECT_EQ(one.minWatts, 7.5);
  EXPECT_EQ(one.maxWatts, 7.5);
}

TEST(WattStatisticsTest, IntegratesByTheTrapezoidRule) {
  const auto two = statisticsOf({{instantAt(0), 10}, {instantAt(60), 20}});
  EXPECT_EQ(two.energy(), 0.25);
  EXPECT_EQ(two.averageWatts(60), 15);
  EXPECT_EQ(two.averageWatts(0), 15) << "without time the readings count alike";
  EXPECT_EQ(two.averageWatts(120), 7.5);
}

TEST(WattStatisticsTest, AClockSetBackAddsNoEnergy) {
  const auto samples = statisticsOf({{instantAt(3600), 10}, {instantAt(0), 20}, {instantAt(3600), 20}});
  EXPECT_EQ(samples.energy(), 20) << "from the second to the third, nothing before";
}

TEST(WattStatisticsTest, AReadingThatIsNoNumberIsNeitherLargestNorSmallest) {
  const auto samples = statisticsOf({{instantAt(0), 3}, {instantAt(1), nan}, {instantAt(2), 2}});
  EXPECT_EQ(samples.minWatts, 2);
  EXPECT_EQ(samples.maxWatts, 3);
  EXPECT_EQ(samples.wattSampleCount, 3);
}

TEST(WattStatisticsDeathTest, EndsTheProcessWhenTheCountOverflows) {
  WattStatistics statistics;
  statistics.wattSampleCount = std::numeric_limits<std::int64_t>::max();
  EXPECT_EXIT(statistics.ingest({instantAt(0), 1}), endedByTrap, "");
}

}  // namespace
}  // namespace quellin
