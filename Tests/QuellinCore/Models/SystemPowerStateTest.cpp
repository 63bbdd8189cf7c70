#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "QuellinCore/Models/SystemPowerState.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "Support/CaseNames.h"

namespace quellin {
namespace {

using testing_support::namedBy;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

struct Given {
  std::optional<double> wattage = {};  ///< absent: no battery
  bool isCharging = false;
  bool acConnected = false;
  std::optional<double> systemPower = {};  ///< absent: no silicon figure
};

SystemPowerState stateOf(const Given& given) {
  SystemPowerState state;
  if (given.wattage) {
    state.battery.emplace();
    state.battery->wattage = *given.wattage;
    state.battery->isCharging = given.isCharging;
    state.battery->acConnected = given.acConnected;
  }
  if (given.systemPower) {
    state.power.emplace();
    state.power->systemPower = *given.systemPower;
  }
  return state;
}

PowerReading draw(double watts) {
  return {watts, PowerReadingKind::batteryDischarge, "Battery draw",
          "SmartBattery whole-system draw while unplugged", PowerReadingConfidence::batteryTerminal};
}

PowerReading supplement(double watts) {
  return {watts, PowerReadingKind::batterySupplement, "Battery supplement",
          "Battery is supplementing adapter input; not total system load",
          PowerReadingConfidence::batteryTerminal};
}

PowerReading chargeInput(double watts) {
  return {watts, PowerReadingKind::batteryChargeInput, "Battery charge input",
          "SmartBattery charge rate; not total system load", PowerReadingConfidence::batteryTerminal};
}

PowerReading silicon(double watts) {
  return {watts, PowerReadingKind::ioReportSiliconPower, "IOReport silicon power",
          "CPU/GPU/ANE/DRAM energy model", PowerReadingConfidence::ioReport};
}

using Watts = std::optional<double>;

struct StateCase {
  std::string name;
  Given given = {};
  Watts discharge = {};
  Watts chargeInputWatts = {};
  Watts supplementWatts = {};
  Watts displayAndOther = {};
  std::optional<PowerReading> primary = {};
};

class SystemPowerStateTest : public ::testing::TestWithParam<StateCase> {};

TEST_P(SystemPowerStateTest, DerivesItsFigures) {
  const StateCase& expected = GetParam();
  const SystemPowerState state = stateOf(expected.given);
  EXPECT_EQ(state.batteryTerminalWatts(), expected.given.wattage);
  EXPECT_EQ(state.siliconWatts(), expected.given.systemPower);
  EXPECT_EQ(state.batteryDischargeWatts(), expected.discharge);
  EXPECT_EQ(state.batteryChargeInputWatts(), expected.chargeInputWatts);
  EXPECT_EQ(state.batterySupplementWatts(), expected.supplementWatts);
  EXPECT_EQ(state.displayAndOtherPower(), expected.displayAndOther);
  EXPECT_EQ(state.primaryPowerReading(), expected.primary);
}

constexpr bool charging = true;
constexpr bool onAC = true;

INSTANTIATE_TEST_SUITE_P(
    Cases, SystemPowerStateTest,
    ::testing::Values(
        StateCase{.name = "NothingKnown"},
        StateCase{.name = "SiliconOnly", .given = {.systemPower = 4}, .primary = silicon(4)},
        StateCase{.name = "OnBattery",
                  .given = {-12.5, !charging, !onAC, 4.0},
                  .discharge = 12.5,
                  .displayAndOther = 8.5,
                  .primary = draw(12.5)},
        StateCase{.name = "OnBatteryWithoutSilicon",
                  .given = {-12.5, !charging, !onAC, {}},
                  .discharge = 12.5,
                  .primary = draw(12.5)},
        StateCase{.name = "SiliconAboveTheDraw",
                  .given = {-12.5, !charging, !onAC, 20.0},
                  .discharge = 12.5,
                  .displayAndOther = 0,
                  .primary = draw(12.5)},
        StateCase{.name = "TinyDraw",
                  .given = {-0.01, !charging, !onAC, 0.0},
                  .discharge = 0.01,
                  .displayAndOther = 0.01,
                  .primary = draw(0.01)},
        StateCase{.name = "ChargingFlagDoesNotHideTheDraw",
                  .given = {-3, charging, !onAC, {}},
                  .discharge = 3,
                  .primary = draw(3)},
        StateCase{.name = "Supplement",
                  .given = {-3, !charging, onAC, 4.0},
                  .supplementWatts = 3,
                  .primary = supplement(3)},
        StateCase{.name = "SupplementWhileCharging",
                  .given = {-3, charging, onAC, 4.0},
                  .supplementWatts = 3,
                  .primary = supplement(3)},
        StateCase{.name = "ChargingWithoutAC",
                  .given = {25, charging, !onAC, 4.0},
                  .chargeInputWatts = 25,
                  .primary = chargeInput(25)},
        StateCase{.name = "ChargingOnAC",
                  .given = {25, charging, onAC, 4.0},
                  .chargeInputWatts = 25,
                  .primary = chargeInput(25)},
        StateCase{
            .name = "InflowWithoutChargingOnAC", .given = {25, !charging, onAC, 4.0}, .primary = silicon(4)},
        StateCase{.name = "InflowWithoutChargingOnBattery",
                  .given = {25, !charging, !onAC, 4.0},
                  .primary = silicon(4)},
        StateCase{.name = "InflowWithoutSilicon", .given = {25, !charging, onAC, {}}},
        StateCase{.name = "NoFlowOnAC", .given = {0, charging, onAC, 4.0}, .primary = silicon(4)},
        StateCase{.name = "NoFlowOnBattery", .given = {0, charging, !onAC, 4.0}, .primary = silicon(4)},
        StateCase{
            .name = "NegativeZeroIsNoFlow", .given = {-0.0, !charging, !onAC, 4.0}, .primary = silicon(4)}),
    namedBy(&StateCase::name));

TEST(SystemPowerStateRulesTest, TreatsNaNAtTheBatteryAsNoFlow) {
  for (const bool onExternalPower : {false, true}) {
    const SystemPowerState state = stateOf({nan, charging, onExternalPower, 4.0});
    EXPECT_TRUE(std::isnan(state.batteryTerminalWatts().value()));
    EXPECT_EQ(state.batteryDischargeWatts(), std::nullopt);
    EXPECT_EQ(state.batteryChargeInputWatts(), std::nullopt);
    EXPECT_EQ(state.batterySupplementWatts(), std::nullopt);
    EXPECT_EQ(state.displayAndOtherPower(), std::nullopt);
    EXPECT_EQ(state.primaryPowerReading(), silicon(4));
  }
}

TEST(SystemPowerStateRulesTest, PassesNaNOfTheSiliconOnButNotIntoTheRest) {
  const SystemPowerState alone = stateOf({.systemPower = nan});
  EXPECT_TRUE(std::isnan(alone.siliconWatts().value()));
  EXPECT_TRUE(std::isnan(alone.primaryPowerReading().value().watts));
  const Watts rest = stateOf({-5, !charging, !onAC, nan}).displayAndOtherPower();
  EXPECT_EQ(rest, 0.0);
  EXPECT_FALSE(std::signbit(rest.value()));
}

TEST(SystemPowerStateRulesTest, GivesAnExactPositiveZeroForADrawThatIsAllSilicon) {
  const Watts rest = stateOf({-20, !charging, !onAC, 20.5}).displayAndOtherPower();
  EXPECT_EQ(rest, 0.0);
  EXPECT_FALSE(std::signbit(rest.value()));
}

TEST(PowerReadingTest, NamesItsKindsByTheirExactRawStrings) {
  EXPECT_EQ(rawValue(PowerReadingKind::batteryDischarge), "batteryDischarge");
  EXPECT_EQ(rawValue(PowerReadingKind::batteryChargeInput), "batteryChargeInput");
  EXPECT_EQ(rawValue(PowerReadingKind::batterySupplement), "batterySupplement");
  EXPECT_EQ(rawValue(PowerReadingKind::ioReportSiliconPower), "ioReportSiliconPower");
  EXPECT_EQ(fromRawValue<PowerReadingKind>("batterysupplement"), std::nullopt);
}

TEST(PowerReadingTest, NamesItsConfidencesByTheirExactRawStrings) {
  for (const auto confidence : {PowerReadingConfidence::batteryTerminal, PowerReadingConfidence::ioReport}) {
    EXPECT_EQ(fromRawValue<PowerReadingConfidence>(rawValue(confidence)), confidence);
  }
  EXPECT_EQ(rawValue(PowerReadingConfidence::batteryTerminal), "batteryTerminal");
  EXPECT_EQ(rawValue(PowerReadingConfidence::ioReport), "ioReport");
  EXPECT_EQ(fromRawValue<PowerReadingConfidence>("ioreport"), std::nullopt);
  EXPECT_EQ(fromRawValue<PowerReadingConfidence>("BatteryTerminal"), std::nullopt);
}

TEST(PowerReadingTest, DescribesEveryFieldInOrder) {
  EXPECT_EQ(encodeJSON(draw(1.5)),
            R"({"watts":1.5,"kind":"batteryDischarge","label":"Battery draw",)"
            R"("summary":"SmartBattery whole-system draw while unplugged","confidence":"batteryTerminal"})");
}

}  // namespace
}  // namespace quellin
