#include <gtest/gtest.h>

#include "QuellinCore/Models/BatteryInfo.h"

namespace quellin {
namespace {

TEST(BatteryInfoTest, NamesItsKindsByTheirExactRawStrings) {
  EXPECT_EQ(rawValue(BatteryTimeRemainingKind::untilEmpty), "untilEmpty");
  EXPECT_EQ(rawValue(BatteryTimeRemainingKind::untilFull), "untilFull");
  EXPECT_EQ(fromRawValue<BatteryTimeRemainingKind>("untilFull"), BatteryTimeRemainingKind::untilFull);
  EXPECT_EQ(fromRawValue<BatteryTimeRemainingKind>("UntilFull"), std::nullopt);
  EXPECT_EQ(fromRawValue<BatteryTimeRemainingKind>(""), std::nullopt);
}

TEST(BatteryInfoTest, GivesTheRemainingTimeOnlyUnderItsOwnName) {
  BatteryInfo battery;
  battery.timeRemaining = 90;
  EXPECT_EQ(battery.timeToEmpty(), std::nullopt);
  EXPECT_EQ(battery.timeToFullCharge(), std::nullopt);

  battery.timeRemainingKind = BatteryTimeRemainingKind::untilEmpty;
  EXPECT_EQ(battery.timeToEmpty(), 90);
  EXPECT_EQ(battery.timeToFullCharge(), std::nullopt);

  battery.timeRemainingKind = BatteryTimeRemainingKind::untilFull;
  EXPECT_EQ(battery.timeToEmpty(), std::nullopt);
  EXPECT_EQ(battery.timeToFullCharge(), 90);
}

struct DrainCase {
  bool acConnected;
  double wattage;
  bool isFullyCharged;
  bool isDraining;
};

class BatteryDrainTest : public ::testing::TestWithParam<DrainCase> {};

TEST_P(BatteryDrainTest, TellsWhetherItDrainsOnExternalPower) {
  BatteryInfo battery;
  battery.acConnected = GetParam().acConnected;
  battery.wattage = GetParam().wattage;
  battery.isFullyCharged = GetParam().isFullyCharged;
  EXPECT_EQ(battery.isPluggedInAndDraining(), GetParam().isDraining);
  EXPECT_EQ(battery.isInsufficientCharger(), GetParam().isDraining);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BatteryDrainTest,
    ::testing::Values(DrainCase{true, -3.0, false, true}, DrainCase{true, -1.001, false, true},
                      DrainCase{true, -1.0, false, false}, DrainCase{true, -0.5, false, false},
                      DrainCase{true, 3.0, false, false}, DrainCase{true, -3.0, true, false},
                      DrainCase{false, -3.0, false, false}));

}  // namespace
}  // namespace quellin
