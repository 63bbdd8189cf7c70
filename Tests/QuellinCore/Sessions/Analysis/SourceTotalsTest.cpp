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
                                 double minWatts, double maxWatts) {
  PowerSessionPowerSegment result;
  result.sourceKind = kind;
  result.sourceLabel = "label of " + kind;
  result.durationSeconds = seconds;
  result.wattSampleCount = 1;
  result.totalWattHours = wattHours;
  result.minWatts = minWatts;
  result.maxWatts = maxWatts;
  return result;
}

TEST(SourceTotalsTest, LikeIsAddedToLikeAndNothingElse) {
  const auto totals = totalsBySource(std::vector{
      segment("draw", 3600, 10, 8, 12), segment("input", 60, 1, 50, 70), segment("draw", 1800, 8, 5, 20)});
  ASSERT_THAT(totals, ElementsAre(Field(&SourceTotals::sourceKind, "draw"),
                                  Field(&SourceTotals::sourceKind, "input")));
  EXPECT_EQ(totals[0], (SourceTotals{.sourceKind = "draw",
                                     .sourceLabel = "label of draw",
                                     .segmentCount = 2,
                                     .durationSeconds = 5400,
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
}

TEST(SourceTotalsTest, WithoutAnEnergyThereIsNoneAndNoAverage) {
  const auto totals = totalsBySource(std::vector{segment("draw", 0, {}, 9, 9)});
  ASSERT_THAT(totals, SizeIs(1));
  EXPECT_EQ(totals[0].totalWattHours, std::nullopt);
  EXPECT_EQ(totals[0].averageWatts, std::nullopt);
  EXPECT_EQ(totals[0].maxWatts, 9);
}

TEST(SourceTotalsTest, EnergyOfNoTimeHasNoAverage) {
  const auto totals = totalsBySource(std::vector{segment("draw", 0, 0, 9, 9)});
  EXPECT_EQ(totals.at(0).totalWattHours, 0);
  EXPECT_EQ(totals.at(0).averageWatts, std::nullopt);
}

TEST(SourceTotalsTest, ASourceWithoutAReadingHasNoTotals) {
  PowerSessionPowerSegment none = segment("unavailable", 60, {}, 0, 0);
  none.wattSampleCount = 0;
  EXPECT_THAT(totalsBySource(std::vector{none}), IsEmpty());
  EXPECT_THAT(totalsBySource({}), IsEmpty());
}

}  // namespace
}  // namespace quellin
