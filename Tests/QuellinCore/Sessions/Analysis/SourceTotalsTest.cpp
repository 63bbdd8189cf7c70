#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/Analysis/SourceTotals.h"

namespace quellin {
namespace {

using testing::DoubleEq;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

PowerSessionPowerSegment segment(const std::string& kind, double seconds, std::optional<double> wattHours,
                                 double minWatts, double maxWatts, std::int64_t readings = 1) {
  PowerSessionPowerSegment result;
  result.sourceKind = kind;
  result.sourceLabel = "label of " + kind;
  result.durationSeconds = seconds;
  result.wattSampleCount = readings;
  result.averageWatts = (minWatts + maxWatts) / 2;
  result.totalWattHours = wattHours;
  result.minWatts = minWatts;
  result.maxWatts = maxWatts;
  return result;
}

TEST(SourceTotalsTest, LikeIsAddedToLikeAndNothingElse) {
  const auto totals =
      totalsBySource(std::vector{segment("draw", 3600, 10, 8, 12, 7), segment("input", 60, 1, 50, 70),
                                 segment("draw", 1800, 8, 5, 20, 4)});
  ASSERT_THAT(totals, ElementsAre(Field(&SourceTotals::sourceKind, "draw"),
                                  Field(&SourceTotals::sourceKind, "input")));
  EXPECT_EQ(totals[0], (SourceTotals{.sourceKind = "draw",
                                     .sourceLabel = "label of draw",
                                     .segmentCount = 2,
                                     .durationSeconds = 5400,
                                     .measuredSeconds = 5400,
                                     .readings = 11,
                                     .averageWatts = 12,
                                     .minWatts = 5,
                                     .maxWatts = 20,
                                     .totalWattHours = 18}));
  EXPECT_EQ(totals[1].totalWattHours, 1);
}

TEST(SourceTotalsTest, TheAverageIsOverTheTimeThatHasAnEnergy) {
  const auto totals =
      totalsBySource(std::vector{segment("draw", 3600, 10, 8, 12), segment("draw", 7200, {}, 9, 9)});
  ASSERT_THAT(totals, SizeIs(1));
  EXPECT_THAT(totals[0].averageWatts, Optional(DoubleEq(10)));
  EXPECT_EQ(totals[0].durationSeconds, 10800);
  EXPECT_EQ(totals[0].measuredSeconds, 3600);
  EXPECT_EQ(totals[0].readings, 2);
}

TEST(SourceTotalsTest, WithoutAnEnergyTheAverageIsThatOfTheReadings) {
  const auto totals =
      totalsBySource(std::vector{segment("draw", 0, {}, 9, 9), segment("draw", 0, {}, 12, 12, 2)});
  ASSERT_THAT(totals, SizeIs(1));
  EXPECT_EQ(totals[0].totalWattHours, std::nullopt);
  EXPECT_EQ(totals[0].averageWatts, 11);
  EXPECT_EQ(totals[0].measuredSeconds, 0);
  EXPECT_EQ(totals[0].maxWatts, 12);
}

TEST(SourceTotalsTest, SoItIsWhereNoTimeHasPassed) {
  const auto totals = totalsBySource(std::vector{segment("draw", 0, 0, 8, 10)});
  EXPECT_EQ(totals.at(0).totalWattHours, 0);
  EXPECT_EQ(totals.at(0).averageWatts, 9);
}

TEST(SourceTotalsTest, ASourceWithoutAReadingHasNoTotals) {
  PowerSessionPowerSegment none = segment("unavailable", 60, {}, 0, 0);
  none.wattSampleCount = 0;
  EXPECT_THAT(totalsBySource(std::vector{none}), IsEmpty());
  EXPECT_THAT(totalsBySource({}), IsEmpty());
}

}  // namespace
}  // namespace quellin
