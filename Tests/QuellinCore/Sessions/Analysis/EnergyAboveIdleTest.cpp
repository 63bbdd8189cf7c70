#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Analysis/EnergyAboveIdle.h"

namespace quellin {
namespace {

using testing::ElementsAre;

SourceEnergy source(const std::string& kind, double seconds, double average) {
  SourceEnergy result;
  result.sourceKind = kind;
  result.seconds = seconds;
  result.averageWatts = average;
  if (seconds > 0) result.joules = average * seconds;
  return result;
}

TEST(EnergyAboveIdleTest, ComparesLikeWithLike) {
  const std::vector<SourceEnergy> busy{source("batteryDischarge", 100, 12),
                                       source("ioReportSiliconPower", 50, 5),
                                       source("batterySupplement", 0, 9)};
  const std::vector<SourceEnergy> idle{source("batteryChargeInput", 60, 30),
                                       source("batterySupplement", 60, 10),
                                       source("batteryDischarge", 60, 4)};
  EXPECT_THAT(
      energyAboveIdle(busy, idle),
      ElementsAre(
          EnergyAboveIdle{.sourceKind = "batteryDischarge", .idleWatts = 4, .watts = 8, .joules = 800},
          EnergyAboveIdle{
              .sourceKind = "batterySupplement", .idleWatts = 10, .watts = -1, .joules = std::nullopt}));
}

TEST(EnergyAboveIdleTest, WhatIsCountedIsComparedOverItsOwnTime) {
  const CountedEnergy busy = countedEnergy({.totalJoules = 500}, 20);
  EXPECT_EQ(countedJoulesAboveIdle(busy, 20, countedEnergy({.totalJoules = 300}, 60)), 400);
  EXPECT_EQ(countedJoulesAboveIdle(busy, 20, countedEnergy({.totalJoules = 3000}, 60)), -500);
  EXPECT_EQ(countedJoulesAboveIdle(busy, 20, countedEnergy({.totalJoules = 3000}, 0)), std::nullopt);
}

}  // namespace
}  // namespace quellin
