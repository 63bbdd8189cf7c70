#include <array>
#include <cstdint>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Linux/BatteryPack.h"

namespace quellin {
namespace {

using testing::DoubleEq;
using testing::Optional;

PowerSupply batteryWithStatus(const char* status) {
  PowerSupply battery;
  battery.name = "BAT0";
  battery.type = "Battery";
  battery.status = status;
  return battery;
}

TEST(BatteryPackTest, TheStatusDecidesTheSignOfTheCurrent) {
  struct Case {
    const char* status;
    std::int64_t microamperes;
    double milliamperes;
  };
  const std::array cases = {
      Case{"Discharging", 1500000, -1500}, Case{"Discharging", -1500000, -1500},
      Case{"Charging", 1500000, 1500},     Case{"Charging", -1500000, 1500},
      Case{"Not charging", -20000, -20},   Case{"Full", 20000, 20},
      Case{"Unknown", -20000, -20},
  };
  for (const Case& each : cases) {
    PowerSupply battery = batteryWithStatus(each.status);
    battery.currentNow = each.microamperes;
    battery.currentAverage = each.microamperes;
    EXPECT_THAT(batteryPack(battery).current, Optional(DoubleEq(each.milliamperes))) << each.status;
    EXPECT_THAT(batteryPack(battery).currentAverage, Optional(DoubleEq(each.milliamperes))) << each.status;
  }
}

TEST(BatteryPackTest, PowerStandsInForAMissingCurrent) {
  PowerSupply battery = batteryWithStatus("Discharging");
  battery.voltageNow = 12000000;
  battery.powerNow = 18000000;
  EXPECT_THAT(batteryPack(battery).current, Optional(DoubleEq(-1500)));
  battery.currentNow = 100000;
  EXPECT_THAT(batteryPack(battery).current, Optional(DoubleEq(-100)));
  battery.currentNow.reset();
  battery.voltageNow = 0;
  EXPECT_EQ(batteryPack(battery).current, std::nullopt) << "power over no voltage is no current";
}

TEST(BatteryPackTest, EnergyBecomesChargeAtTheVoltageOfTheMoment) {
  PowerSupply battery = batteryWithStatus("Discharging");
  battery.energyNow = 30000000;
  battery.energyFull = 48000000;
  battery.energyFullDesign = 60000000;
  battery.voltageNow = 12000000;
  battery.voltageMinDesign = 10000000;
  EXPECT_THAT(batteryPack(battery).chargeNow, Optional(DoubleEq(2500)));
  EXPECT_THAT(batteryPack(battery).chargeFull, Optional(DoubleEq(4000)));
  EXPECT_THAT(batteryPack(battery).chargeDesign, Optional(DoubleEq(5000)));
  battery.voltageNow.reset();
  EXPECT_THAT(batteryPack(battery).chargeNow, Optional(DoubleEq(3000))) << "the design voltage stands in";
  battery.voltageMinDesign.reset();
  EXPECT_EQ(batteryPack(battery).chargeNow, std::nullopt);
}

TEST(BatteryPackTest, ChargeAndEnergyAreNeverMixed) {
  PowerSupply battery = batteryWithStatus("Full");
  battery.voltageNow = 12000000;
  battery.chargeFull = 4000000;
  battery.energyNow = 30000000;
  battery.energyFullDesign = 60000000;
  const BatteryPack pack = batteryPack(battery);
  EXPECT_THAT(pack.chargeFull, Optional(DoubleEq(4000)));
  EXPECT_EQ(pack.chargeNow, std::nullopt);
  EXPECT_EQ(pack.chargeDesign, std::nullopt);
}

TEST(BatteryPackTest, WhatADriverDoesNotKnowIsAbsent) {
  PowerSupply battery = batteryWithStatus("Unknown");
  battery.cycleCount = 0;
  battery.health = "Unknown";
  battery.serialNumber = "";
  EXPECT_EQ(batteryPack(battery), BatteryPack{});
}

TEST(BatteryPackTest, SecondsBecomeMinutesAndTenthsHundredths) {
  PowerSupply battery = batteryWithStatus("Charging");
  battery.timeToFullNow = 5400;
  battery.timeToEmptyAverage = 90;
  battery.temperature = -55;
  const BatteryPack pack = batteryPack(battery);
  EXPECT_THAT(pack.minutesToFull, Optional(DoubleEq(90)));
  EXPECT_THAT(pack.minutesToEmptyAverage, Optional(DoubleEq(1.5)));
  EXPECT_THAT(pack.temperature, Optional(DoubleEq(-550)));
}

TEST(BatteryPackTest, ATimeBelowZeroIsNoEstimate) {
  PowerSupply battery = batteryWithStatus("Unknown");
  battery.timeToEmptyNow = -1;
  battery.timeToEmptyAverage = -1;
  battery.timeToFullNow = -1;
  battery.timeToFullAverage = -1;
  EXPECT_EQ(batteryPack(battery), BatteryPack{});
  battery.timeToEmptyNow = 0;
  EXPECT_THAT(batteryPack(battery).minutesToEmpty, Optional(DoubleEq(0)));
}

BatteryPack restingPack(double percent, ChargingStatus status) {
  BatteryPack pack;
  pack.status = status;
  pack.percent = percent;
  return pack;
}

TEST(BatteryPackTest, NoBatteriesAreAnEmptyPackAndOneIsItself) {
  EXPECT_EQ(combinedPack({}), BatteryPack{});
  const std::array one = {restingPack(50, ChargingStatus::full)};
  EXPECT_EQ(combinedPack(one), one.front());
}

TEST(BatteryPackTest, EnergyAndPowerAddUpAcrossVoltages) {
  std::array<BatteryPack, 2> packs;
  packs[0].chargeNow = 1600;
  packs[0].chargeFull = 2000;
  packs[0].voltage = 12500;
  packs[0].current = 0;
  packs[1].chargeNow = 1000;
  packs[1].chargeFull = 2500;
  packs[1].voltage = 10000;
  packs[1].current = -2000;
  const BatteryPack whole = combinedPack(packs);
  EXPECT_THAT(whole.voltage, Optional(DoubleEq(12500)));
  EXPECT_THAT(whole.current, Optional(DoubleEq(-1600))) << "20 W at 12.5 V";
  EXPECT_THAT(whole.chargeNow, Optional(DoubleEq(2400)));
  EXPECT_THAT(whole.chargeFull, Optional(DoubleEq(4000)));
  EXPECT_THAT(whole.percent, Optional(DoubleEq(60)));
}

TEST(BatteryPackTest, ASumWithAnUnknownPartIsUnknown) {
  std::array<BatteryPack, 2> packs;
  packs[0].percent = 80;
  packs[0].chargeNow = 1600;
  packs[0].voltage = 12500;
  packs[0].current = 100;
  packs[1].percent = 40;
  packs[1].voltage = 10000;
  packs[1].current = 100;
  EXPECT_EQ(combinedPack(packs).chargeNow, std::nullopt);
  EXPECT_THAT(combinedPack(packs).percent, Optional(DoubleEq(60))) << "then each counts the same";
  packs[1].voltage.reset();
  EXPECT_EQ(combinedPack(packs).current, std::nullopt);
}

TEST(BatteryPackTest, OneMovingBatteryMovesTheWhole) {
  struct Case {
    std::optional<ChargingStatus> first, second, whole;
  };
  constexpr auto charging = ChargingStatus::charging;
  constexpr auto discharging = ChargingStatus::discharging;
  constexpr auto full = ChargingStatus::full;
  constexpr auto notCharging = ChargingStatus::notCharging;
  const std::array cases = {
      Case{full, discharging, discharging},
      Case{charging, full, charging},
      Case{full, full, full},
      Case{full, notCharging, notCharging},
      Case{full, std::nullopt, notCharging},
      Case{std::nullopt, std::nullopt, std::nullopt},
  };
  for (const Case& each : cases) {
    std::array<BatteryPack, 2> packs;
    packs[0].status = each.first;
    packs[1].status = each.second;
    EXPECT_EQ(combinedPack(packs).status, each.whole);
  }
}

TEST(BatteryPackTest, TheWorstOfTheRestSpeaksForTheWhole) {
  std::array<BatteryPack, 2> packs;
  packs[0].temperature = 3000;
  packs[0].cycleCount = 5;
  packs[0].minutesToEmpty = 60;
  packs[0].health = "Good";
  packs[1].temperature = 3500;
  packs[1].cycleCount = 90;
  packs[1].health = "Overheat";
  packs[1].serialNumber = "B";
  const BatteryPack whole = combinedPack(packs);
  EXPECT_THAT(whole.temperature, Optional(DoubleEq(3500)));
  EXPECT_THAT(whole.cycleCount, Optional(DoubleEq(90)));
  EXPECT_EQ(whole.health, "Overheat");
  EXPECT_EQ(whole.serialNumber, "B");
  EXPECT_EQ(whole.minutesToEmpty, std::nullopt) << "an estimate for one battery is none for two";
}

}  // namespace
}  // namespace quellin
