#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Analysis/CountedEnergy.h"

namespace quellin {
namespace {

TEST(CountedEnergyTest, SumsUpWhatTheCountersGained) {
  const SiliconEnergy gained{.totalJoules = 7200};
  EXPECT_EQ(countedEnergy(gained, 100), (CountedEnergy{.sourceKind = "ioReportSiliconPower",
                                                       .confidence = "ioReport",
                                                       .joules = 7200,
                                                       .wattHours = 2,
                                                       .averageWatts = 72,
                                                       .components = gained}));
}

TEST(CountedEnergyTest, HasNoAverageWhereNoTimeHasPassed) {
  EXPECT_EQ(countedEnergy({.totalJoules = 1}, 0).averageWatts, std::nullopt);
}

}  // namespace
}  // namespace quellin
