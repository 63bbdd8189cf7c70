#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quellin/Watch/Panels.h"

namespace quellin::cli {
namespace {

using testing::Contains;
using testing::ElementsAre;

SystemPowerState withBattery(const BatteryInfo& battery) {
  SystemPowerState state;
  state.battery = battery;
  return state;
}

BatteryInfo draining() {
  BatteryInfo battery;
  battery.chargePercent = 62;
  battery.healthPercent = 91;
  battery.wattage = -14.8;
  battery.timeRemaining = 149;
  battery.timeRemainingKind = BatteryTimeRemainingKind::untilEmpty;
  return battery;
}

TEST(PanelsTest, TellsOfTheBattery) {
  EXPECT_THAT(batteryPanel(withBattery(draining())).entries,
              ElementsAre(PanelEntry{"Charge", "62 %"}, PanelEntry{"State", "on battery"},
                          PanelEntry{"Flow", "-14.80 W"}, PanelEntry{"Until empty", "2 h 29 min"},
                          PanelEntry{"Health", "91 %"}));
}

TEST(PanelsTest, TellsTheStatesOfTheBatteryApart) {
  BatteryInfo battery = draining();
  battery.acConnected = true;
  EXPECT_THAT(batteryPanel(withBattery(battery)).entries,
              Contains(PanelEntry{"State", "charger too weak", Style::warning}));
  battery.wattage = 0;
  EXPECT_THAT(batteryPanel(withBattery(battery)).entries, Contains(PanelEntry{"State", "not charging"}));
  battery.isFullyCharged = true;
  EXPECT_THAT(batteryPanel(withBattery(battery)).entries, Contains(PanelEntry{"State", "full", Style::good}));
  battery.isFullyCharged = false;
  battery.isCharging = true;
  battery.wattage = 40;
  battery.timeRemainingKind = BatteryTimeRemainingKind::untilFull;
  EXPECT_THAT(batteryPanel(withBattery(battery)).entries,
              Contains(PanelEntry{"State", "charging", Style::good}));
  EXPECT_THAT(batteryPanel(withBattery(battery)).entries, Contains(PanelEntry{"Until full", "2 h 29 min"}));
}

TEST(PanelsTest, TellsShortTimesInMinutes) {
  BatteryInfo battery = draining();
  battery.timeRemaining = 34;
  EXPECT_THAT(batteryPanel(withBattery(battery)).entries, Contains(PanelEntry{"Until empty", "34 min"}));
}

TEST(PanelsTest, SaysUnknownForWhatTheBatteryDoesNotTell) {
  BatteryInfo battery = draining();
  battery.timeRemaining.reset();
  battery.healthPercent = 0;
  EXPECT_THAT(batteryPanel(withBattery(battery)).entries, Contains(PanelEntry{"Time left", "unknown"}));
  EXPECT_THAT(batteryPanel(withBattery(battery)).entries, Contains(PanelEntry{"Health", "unknown"}));
  EXPECT_THAT(batteryPanel({}).entries, ElementsAre(PanelEntry{"State", "unknown"}));
}

TEST(PanelsTest, TellsOfTheComponents) {
  SystemPowerState state = withBattery(draining());
  state.power.emplace();
  state.power->cpuPower = 3;
  state.power->gpuPower = 1.5;
  state.power->ramPower = 0.5;
  state.power->systemPower = 5;
  EXPECT_THAT(
      componentsPanel(state).entries,
      ElementsAre(PanelEntry{"CPU", "3.00 W"}, PanelEntry{"GPU", "1.50 W"},
                  PanelEntry{"Neural engine", "0.00 W"}, PanelEntry{"Memory", "0.50 W"},
                  PanelEntry{"Sum of the four", "5.00 W"}, PanelEntry{"Display and other", "9.80 W"}));
}

TEST(PanelsTest, SaysUnknownForComponentsWithoutCounters) {
  EXPECT_THAT(componentsPanel({}).entries,
              ElementsAre(PanelEntry{"CPU", "unknown"}, PanelEntry{"GPU", "unknown"},
                          PanelEntry{"Neural engine", "unknown"}, PanelEntry{"Memory", "unknown"},
                          PanelEntry{"Sum of the four", "unknown"}));
}

TEST(PanelsTest, TellsOfHeatAndFans) {
  SystemPowerState state;
  state.thermal = {.state = ThermalState::serious, .pressure = 2, .isLowPowerMode = true};
  state.fans = {{.id = 0, .name = "Fan 0", .currentRPM = 1834}};
  EXPECT_THAT(heatPanel(state, true).entries,
              ElementsAre(PanelEntry{"Thermal", "serious, 2 of 4", Style::warning},
                          PanelEntry{"Low-power mode", "on"}, PanelEntry{"Fan 0", "1834 rpm"}));
  EXPECT_THAT(heatPanel({}, false).entries,
              ElementsAre(PanelEntry{"Thermal", "unknown"}, PanelEntry{"Fans", "unknown"}));
}

TEST(PanelsTest, ColoursTheThermalStates) {
  const auto styleOf = [](ThermalState thermal) {
    SystemPowerState state;
    state.thermal.state = thermal;
    return heatPanel(state, true).entries.front().style;
  };
  EXPECT_EQ(styleOf(ThermalState::nominal), Style::good);
  EXPECT_EQ(styleOf(ThermalState::fair), Style::plain);
  EXPECT_EQ(styleOf(ThermalState::serious), Style::warning);
  EXPECT_EQ(styleOf(ThermalState::critical), Style::bad);
}

TEST(PanelsTest, TellsOfTheTemperaturesForADashboard) {
  SystemPowerState state;
  state.sensors = {{.key = "Tp01", .name = "CPU Performance Core 1", .temperature = 50},
                   {.key = "TH0x", .name = "NAND", .temperature = 38.25}};
  EXPECT_THAT(temperaturesPanel(state).entries,
              ElementsAre(PanelEntry{"CPU Avg", "50.0 °C"}, PanelEntry{"CPU Peak", "50.0 °C"},
                          PanelEntry{"Storage", "38.2 °C"}));
  EXPECT_THAT(temperaturesPanel({}).entries, ElementsAre(PanelEntry{"All", "unknown"}));
}

}  // namespace
}  // namespace quellin::cli
