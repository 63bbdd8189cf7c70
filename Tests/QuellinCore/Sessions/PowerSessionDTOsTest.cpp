#include <cstdint>
#include <limits>
#include <string>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSessionCoders.h"
#include "QuellinCore/Sessions/PowerSessionDTOs.h"
#include "Support/CaseNames.h"

namespace quellin {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing_support::namedBy;

template <class T>
std::string encoded(const T& value) {
  return PowerSessionCoders::encoder.encode(value).value_or("not encodable");
}

template <class T>
void expectRoundTrip(const T& value) {
  const auto decoded = PowerSessionCoders::decoder.decode<T>(encoded(value));
  ASSERT_TRUE(decoded.has_value()) << decoded.error().debugDescription();
  EXPECT_EQ(*decoded, value);
}

BatteryInfo battery() {
  BatteryInfo info;
  info.chargePercent = 80;
  info.currentCapacity = 4000;
  info.maxCapacity = 5000;
  info.designCapacity = 6000;
  info.healthPercent = 83;
  info.cycleCount = 120;
  info.voltage = 12.5;
  info.amperage = -1;
  info.wattage = -12.5;
  info.temperature = 30.25;
  info.adapterWatts = 96;
  info.timeRemaining = 200;
  info.timeRemainingKind = BatteryTimeRemainingKind::untilEmpty;
  info.health = "Good";
  info.serialNumber = "SECRET";
  return info;
}

SystemPowerState wholeState() {
  SystemPowerState state;
  state.battery = battery();
  state.power = PowerMetrics{.cpuPower = 2,
                             .gpuPower = 1,
                             .anePower = 0.5,
                             .ramPower = 0.5,
                             .systemPower = 4,
                             .cpuUsagePercent = 7.5,
                             .gpuUsagePercent = 12.5};
  state.thermal = {.state = ThermalState::fair, .pressure = 1, .isLowPowerMode = true};
  state.fans = {{.id = 1, .name = "Fan 1", .currentRPM = 1200, .minRPM = 1000, .maxRPM = 5000}};
  state.sensors = {{"TC0P", "CPU Proximity", 45.5}};
  state.timestamp = instantAt(1741081260.75);
  return state;
}

struct DrainCase {
  const char* name;
  bool acConnected;
  bool isFullyCharged;
  double wattage;
  bool isDraining;
};

class BatteryInfoDTODrainTest : public testing::TestWithParam<DrainCase> {};

TEST_P(BatteryInfoDTODrainTest, DrainsOnlyOnExternalPowerBelowMinusOneWattAndNotFull) {
  BatteryInfo info = battery();
  info.acConnected = GetParam().acConnected;
  info.isFullyCharged = GetParam().isFullyCharged;
  info.wattage = GetParam().wattage;
  EXPECT_EQ(BatteryInfoDTO(info).isPluggedInAndDraining, GetParam().isDraining);
}

INSTANTIATE_TEST_SUITE_P(Cases, BatteryInfoDTODrainTest,
                         testing::Values(DrainCase{"MinusOneWatt", true, false, -1.0, false},
                                         DrainCase{"BelowMinusOneWatt", true, false, -1.01, true},
                                         DrainCase{"FullBelowMinusOneWatt", true, true, -1.01, false},
                                         DrainCase{"FullFarBelow", true, true, -50, false},
                                         DrainCase{"OnBattery", false, false, -50, false},
                                         DrainCase{"NotANumber", true, false,
                                                   std::numeric_limits<double>::quiet_NaN(), false}),
                         namedBy(&DrainCase::name));

TEST(PowerSessionDTOsTest, ABatteryIsCopiedWithoutItsSerialNumber) {
  const std::string text = encoded(BatteryInfoDTO(battery()));
  EXPECT_EQ(
      text,
      R"({"acConnected":false,"adapterWatts":96,"amperage":-1,"chargePercent":80,"currentCapacity":4000,)"
      R"("cycleCount":120,"designCapacity":6000,"health":"Good","healthPercent":83,"isCharging":false,)"
      R"("isFullyCharged":false,"isPluggedInAndDraining":false,"maxCapacity":5000,"temperature":30.25,)"
      R"("timeRemaining":200,"timeRemainingKind":"untilEmpty","voltage":12.5,"wattage":-12.5})");
  EXPECT_THAT(text, Not(HasSubstr("SECRET")));
  expectRoundTrip(BatteryInfoDTO(battery()));
}

TEST(PowerSessionDTOsTest, EachSwitchOfABatteryIsItsOwn) {
  const std::vector<bool BatteryInfo::*> given{&BatteryInfo::isCharging, &BatteryInfo::isFullyCharged,
                                               &BatteryInfo::acConnected};
  const std::vector<bool BatteryInfoDTO::*> kept{&BatteryInfoDTO::isCharging, &BatteryInfoDTO::isFullyCharged,
                                                 &BatteryInfoDTO::acConnected};
  for (std::size_t on = 0; on < given.size(); ++on) {
    BatteryInfo info;
    info.*given[on] = true;
    const BatteryInfoDTO dto(info);
    for (std::size_t other = 0; other < kept.size(); ++other) EXPECT_EQ(dto.*kept[other], other == on);
  }
}

TEST(PowerSessionDTOsTest, WhatRemainsIsNamedOrAbsent) {
  BatteryInfo info = battery();
  info.timeRemainingKind = BatteryTimeRemainingKind::untilFull;
  EXPECT_EQ(BatteryInfoDTO(info).timeRemainingKind, "untilFull");
  info.timeRemainingKind.reset();
  info.timeRemaining.reset();
  info.adapterWatts.reset();
  const std::string text = encoded(BatteryInfoDTO(info));
  for (const char* key : {"timeRemaining", "timeRemainingKind", "adapterWatts", "null"})
    EXPECT_THAT(text, Not(HasSubstr(key)));
  expectRoundTrip(BatteryInfoDTO(info));
}

TEST(PowerSessionDTOsTest, ThermalStatesAreWordsAndKeysAreSorted) {
  const auto text = [](ThermalState state) {
    return encoded(ThermalInfoDTO(ThermalInfo{.state = state, .pressure = 3, .isLowPowerMode = false}));
  };
  EXPECT_EQ(text(ThermalState::nominal), R"({"isLowPowerMode":false,"pressure":3,"state":"nominal"})");
  EXPECT_EQ(text(ThermalState::fair), R"({"isLowPowerMode":false,"pressure":3,"state":"fair"})");
  EXPECT_EQ(text(ThermalState::serious), R"({"isLowPowerMode":false,"pressure":3,"state":"serious"})");
  EXPECT_EQ(text(ThermalState::critical), R"({"isLowPowerMode":false,"pressure":3,"state":"critical"})");
}

TEST(PowerSessionDTOsTest, EveryProcessFigureIsAnEstimate) {
  ProcessActivityInfo activity{.id = 99,
                               .pid = 7,
                               .name = "cc1plus",
                               .cpuPercent = 99.5,
                               .wakeupsPerSecond = 1,
                               .diskBytesPerSecond = 2,
                               .energyWattsEstimate = 3.5,
                               .impactScore = 104};
  EXPECT_EQ(encoded(ProcessActivityDTO(activity)),
            R"({"confidence":"estimated","cpuPercent":99.5,"diskBytesPerSecond":2,"energyWattsEstimate":3.5,)"
            R"("impactScore":104,"name":"cc1plus","pid":7,"wakeupsPerSecond":1})");
  activity.energyWattsEstimate.reset();
  EXPECT_THAT(encoded(ProcessActivityDTO(activity)), Not(HasSubstr("energyWattsEstimate")));
  expectRoundTrip(ProcessActivityDTO(activity));
}

TEST(PowerSessionDTOsTest, AProcessIdentifierHasThirtyTwoBits) {
  const auto pid = [](const std::string& number) {
    const auto dto = PowerSessionCoders::decoder.decode<ProcessActivityDTO>(
        R"({"confidence":"estimated","cpuPercent":0,"diskBytesPerSecond":0,"impactScore":0,"name":"","pid":)" +
        number + R"(,"wakeupsPerSecond":0})");
    return dto ? std::optional(dto->pid) : std::nullopt;
  };
  EXPECT_EQ(pid("-2147483648"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(pid("2147483647"), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(pid("2147483648"), std::nullopt);
}

TEST(PowerSessionDTOsTest, AWholeStateIsEncodedWithSortedKeysThroughout) {
  EXPECT_EQ(
      encoded(SystemPowerStateDTO(wholeState())),
      R"({"battery":)" + encoded(BatteryInfoDTO(battery())) +
          R"(,"batteryDischargeWatts":12.5,"batteryTerminalWatts":-12.5,"displayAndOtherPower":8.5,)"
          R"("fans":[{"currentRPM":1200,"id":1,"maxRPM":5000,"minRPM":1000,"name":"Fan 1"}],)"
          R"("power":{"anePower":0.5,"cpuPower":2,"cpuUsagePercent":7.5,"gpuPower":1,"gpuUsagePercent":12.5,)"
          R"("ramPower":0.5,"systemPower":4},"powerSourceKind":"batteryDischarge","powerSourceLabel":"Battery draw",)"
          R"("powerSourceSummary":"SmartBattery whole-system draw while unplugged",)"
          R"("sensors":[{"key":"TC0P","name":"CPU Proximity","temperature":45.5}],"siliconWatts":4,)"
          R"("thermal":{"isLowPowerMode":true,"pressure":1,"state":"fair"},"timestamp":"2025-03-04T09:41:00Z",)"
          R"("totalWatts":12.5,"totalWattsConfidence":"batteryTerminal"})");
}

TEST(PowerSessionDTOsTest, OnlyTheFractionOfTheSecondIsLostOnTheWay) {
  SystemPowerStateDTO dto(wholeState());
  const auto decoded = PowerSessionCoders::decoder.decode<SystemPowerStateDTO>(encoded(dto));
  ASSERT_TRUE(decoded.has_value());
  EXPECT_EQ(decoded->timestamp, instantAt(1741081260));
  dto.timestamp = instantAt(1741081260);
  EXPECT_EQ(*decoded, dto);
}

TEST(PowerSessionDTOsTest, ADateWithAFractionIsRefused) {
  const std::string text =
      R"({"fans":[],"sensors":[],"thermal":{"isLowPowerMode":false,"pressure":0,"state":"nominal"},)"
      R"("timestamp":"2025-03-04T09:41:00.5Z","totalWattsConfidence":"unavailable"})";
  EXPECT_FALSE(PowerSessionCoders::decoder.decode<SystemPowerStateDTO>(text).has_value());
}

TEST(PowerSessionDTOsTest, AStateWithoutBatteryAndPowerHasNoneOfTheirKeys) {
  SystemPowerState state;
  state.timestamp = instantAt(0);
  EXPECT_EQ(encoded(SystemPowerStateDTO(state)),
            R"({"fans":[],"sensors":[],"thermal":{"isLowPowerMode":false,"pressure":0,"state":"nominal"},)"
            R"("timestamp":"1970-01-01T00:00:00Z","totalWattsConfidence":"unavailable"})");
  expectRoundTrip(SystemPowerStateDTO(state));
}

TEST(PowerSessionDTOsTest, TheSiliconFigureStandsInForAMissingBattery) {
  SystemPowerState state = wholeState();
  state.battery.reset();
  const SystemPowerStateDTO dto(state);
  EXPECT_EQ(dto.powerSourceKind, "ioReportSiliconPower");
  EXPECT_EQ(dto.powerSourceLabel, "IOReport silicon power");
  EXPECT_EQ(dto.powerSourceSummary, "CPU/GPU/ANE/DRAM energy model");
  EXPECT_EQ(dto.totalWatts, 4);
  EXPECT_EQ(dto.totalWattsConfidence, "ioReport");
}

TEST(PowerSessionDTOsTest, ChargingAndSupplementingHaveFiguresOfTheirOwn) {
  SystemPowerState state = wholeState();
  state.battery->acConnected = true;
  EXPECT_EQ(SystemPowerStateDTO(state).batterySupplementWatts, 12.5);
  EXPECT_EQ(SystemPowerStateDTO(state).powerSourceKind, "batterySupplement");
  state.battery->isCharging = true;
  state.battery->wattage = 25;
  EXPECT_EQ(SystemPowerStateDTO(state).batteryChargeInputWatts, 25);
  EXPECT_EQ(SystemPowerStateDTO(state).powerSourceKind, "batteryChargeInput");
}

TEST(PowerSessionDTOsTest, AMissingRequiredKeyIsAnError) {
  EXPECT_FALSE(
      PowerSessionCoders::decoder.decode<ThermalInfoDTO>(R"({"pressure":3,"state":"fair"})").has_value());
}

TEST(PowerSessionDTOsTest, TheIndentedFormHasTheSameOrder) {
  const ThermalInfoDTO dto(ThermalInfo{});
  EXPECT_EQ(PowerSessionCoders::prettyEncoder.encode(dto).value_or(""),
            "{\n  \"isLowPowerMode\" : false,\n  \"pressure\" : 0,\n  \"state\" : \"nominal\"\n}");
}

TEST(PowerSessionDTOsTest, ANumberThatIsNotFiniteHasNoJSONForm) {
  SystemPowerState state = wholeState();
  state.sensors[0].temperature = std::numeric_limits<double>::quiet_NaN();
  const auto result = PowerSessionCoders::encoder.encode(SystemPowerStateDTO(state));
  ASSERT_FALSE(result.has_value());
  EXPECT_EQ(result.error().path, "sensors[0].temperature");
}

}  // namespace
}  // namespace quellin
