#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Analysis/SourceEnergy.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

PowerSessionPowerSegment segment(const std::string& kind, double seconds, std::int64_t readings,
                                 double average, double highest) {
  PowerSessionPowerSegment result;
  result.sourceKind = kind;
  result.durationSeconds = seconds;
  result.sampleCount = readings;
  result.wattSampleCount = readings;
  result.averageWatts = average;
  result.maxWatts = highest;
  if (readings > 1) result.totalWattHours = average * seconds / 3600;
  return result;
}

TEST(SourceEnergyTest, GathersSegmentsOfOneKindAndNeverOfTwo) {
  const auto sources = energyBySource({segment("batteryDischarge", 3600, 10, 10, 12),
                                       segment("ioReportSiliconPower", 100, 5, 3, 4),
                                       segment("batteryDischarge", 1800, 4, 16, 20)});
  ASSERT_THAT(sources, testing::SizeIs(2));
  EXPECT_EQ(sources[0], (SourceEnergy{.sourceKind = "batteryDischarge",
                                      .sourceLabel = "Battery draw",
                                      .confidence = "batteryTerminal",
                                      .seconds = 5400,
                                      .readings = 14,
                                      .joules = 64800,
                                      .wattHours = 18,
                                      .averageWatts = 12,
                                      .maxWatts = 20}));
  EXPECT_EQ(sources[1].confidence, "ioReport");
  EXPECT_DOUBLE_EQ(sources[1].joules.value_or(0), 300);
}

TEST(SourceEnergyTest, StretchesWithoutAReadingAreLeftOut) {
  PowerSessionPowerSegment unread;
  unread.sourceKind = "batteryDischarge";
  unread.sampleCount = 4;
  EXPECT_THAT(energyBySource({segment("unavailable", 10, 3, 5, 5), unread}), IsEmpty());
  EXPECT_THAT(energyBySource({}), IsEmpty());
}

TEST(SourceEnergyTest, OneReadingIsAnAverageAndNoEnergy) {
  const auto sources =
      energyBySource({segment("batteryDischarge", 0, 1, 10, 10), segment("batteryDischarge", 0, 1, 13, 13)});
  ASSERT_THAT(sources, testing::SizeIs(1));
  EXPECT_EQ(sources[0].joules, std::nullopt);
  EXPECT_EQ(sources[0].averageWatts, 11.5);
  EXPECT_EQ(sources[0].maxWatts, 13);
}

TEST(ContributorShareTest, SharesAreOfTheSameSource) {
  EXPECT_THAT(contributorShares({{"clang", "powermetrics", 30, "derived"},
                                 {"make", "proc_pid_rusage", 5, "estimated"},
                                 {"ld", "powermetrics", 10, "derived"}}),
              ElementsAre(Field(&ContributorShare::percent, 75), Field(&ContributorShare::percent, 100),
                          Field(&ContributorShare::percent, 25)));
}

}  // namespace
}  // namespace quellin
