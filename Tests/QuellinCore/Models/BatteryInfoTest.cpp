#include <gtest/gtest.h>

#include "QuellinCore/Models/BatteryInfo.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "Support/CaseNames.h"

namespace quellin {
namespace {

using testing_support::namedBy;

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
  const char* name;
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

INSTANTIATE_TEST_SUITE_P(Cases, BatteryDrainTest,
                         ::testing::Values(DrainCase{"Draining", true, -3.0, false, true},
                                           DrainCase{"JustBelowMinusOneWatt", true, -1.001, false, true},
                                           DrainCase{"MinusOneWatt", true, -1.0, false, false},
                                           DrainCase{"AboveMinusOneWatt", true, -0.5, false, false},
                                           DrainCase{"Charging", true, 3.0, false, false},
                                           DrainCase{"FullyCharged", true, -3.0, true, false},
                                           DrainCase{"OnBattery", false, -3.0, false, false}),
                         namedBy(&DrainCase::name));

TEST(BatteryInfoTest, DescribesEveryFieldInOrder) {
  BatteryInfo battery;
  battery.chargePercent = 1;
  battery.currentCapacity = 2;
  battery.maxCapacity = 3;
  battery.designCapacity = 4;
  battery.healthPercent = 5;
  battery.cycleCount = 6;
  battery.voltage = 7.5;
  battery.amperage = 8.5;
  battery.wattage = 9.5;
  battery.temperature = 10.5;
  battery.isFullyCharged = true;
  battery.adapterWatts = 11;
  battery.timeRemaining = 12;
  battery.timeRemainingKind = BatteryTimeRemainingKind::untilFull;
  battery.health = "Good";
  battery.serialNumber = "S";
  EXPECT_EQ(
      encodeJSON(battery),
      R"({"chargePercent":1,"currentCapacity":2,"maxCapacity":3,"designCapacity":4,"healthPercent":5,)"
      R"("cycleCount":6,"voltage":7.5,"amperage":8.5,"wattage":9.5,"temperature":10.5,"isCharging":false,)"
      R"("isFullyCharged":true,"acConnected":false,"adapterWatts":11,"timeRemaining":12,)"
      R"("timeRemainingKind":"untilFull","health":"Good","serialNumber":"S"})");
}

}  // namespace
}  // namespace quellin
