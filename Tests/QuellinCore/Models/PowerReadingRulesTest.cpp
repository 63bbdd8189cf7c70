#include <limits>

#include <gtest/gtest.h>

#include "QuellinCore/Models/BatteryInfo.h"
#include "QuellinCore/Models/PowerReadingRules.h"

namespace quellin {
namespace {

using Kind = PowerReadingKind;

TEST(PowerReadingRulesTest, KnowsTheDirectionOfTheBattery) {
  EXPECT_EQ(batteryReadingKind({.wattage = -0.01}), Kind::batteryDischarge);
  EXPECT_EQ(batteryReadingKind({.wattage = -0.01, .acConnected = true}), Kind::batterySupplement);
  EXPECT_EQ(batteryReadingKind({.wattage = 0.01, .isCharging = true}), Kind::batteryChargeInput);
  EXPECT_EQ(batteryReadingKind({.wattage = 0.01}), std::nullopt) << "energy goes in, but it does not charge";
  EXPECT_EQ(batteryReadingKind({.wattage = 0, .isCharging = true, .acConnected = true}), std::nullopt);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(batteryReadingKind({.wattage = nan, .isCharging = true, .acConnected = true}), std::nullopt);
}

TEST(PowerReadingRulesTest, PrefersTheBatteryToTheSilicon) {
  std::optional<BatteryInfo> battery(std::in_place);
  EXPECT_EQ(primaryReadingKind(battery, true), Kind::ioReportSiliconPower);
  EXPECT_EQ(primaryReadingKind(battery, false), std::nullopt);
  battery->wattage = -4;
  EXPECT_EQ(primaryReadingKind(battery, true), Kind::batteryDischarge);
  const std::optional<BatteryInfo> none;
  EXPECT_EQ(primaryReadingKind(none, true), Kind::ioReportSiliconPower);
  EXPECT_EQ(primaryReadingKind(none, false), std::nullopt);
}

TEST(PowerReadingRulesTest, NamesEveryKind) {
  EXPECT_EQ(powerReadingTexts(Kind::batteryDischarge).label, "Battery draw");
  EXPECT_EQ(powerReadingTexts(Kind::batterySupplement).label, "Battery supplement");
  EXPECT_EQ(powerReadingTexts(Kind::batteryChargeInput).label, "Battery charge input");
  EXPECT_EQ(powerReadingTexts(Kind::ioReportSiliconPower).label, "IOReport silicon power");
  EXPECT_EQ(powerReadingTexts(Kind::ioReportSiliconPower).summary, "CPU/GPU/ANE/DRAM energy model");
  EXPECT_EQ(powerReadingConfidence(Kind::ioReportSiliconPower), PowerReadingConfidence::ioReport);
  EXPECT_EQ(powerReadingConfidence(Kind::batterySupplement), PowerReadingConfidence::batteryTerminal);
}

}  // namespace
}  // namespace quellin
