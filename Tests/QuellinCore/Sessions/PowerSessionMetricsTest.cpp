#include <limits>

#include <gtest/gtest.h>

#include "QuellinCore/Sessions/PowerSessionMetrics.h"
#include "Support/CaseNames.h"

namespace quellin {
namespace {

using testing_support::namedBy;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

struct SourceCase {
  std::string name;
  std::optional<double> wattage = {};  ///< absent: no battery
  bool isCharging = false;
  bool acConnected = false;
  std::optional<double> silicon = {};
  std::optional<double> watts = {};
  std::string confidence = "unavailable";
  std::string kind = "unavailable";
  std::string label = "Unavailable";
};

class PowerSessionMetricsTest : public testing::TestWithParam<SourceCase> {
 protected:
  [[nodiscard]] static SystemPowerState state() {
    SystemPowerState result;
    result.timestamp = instantAt(1000.25);
    if (const auto& wattage = GetParam().wattage) {
      result.battery.emplace();
      result.battery->wattage = *wattage;
      result.battery->isCharging = GetParam().isCharging;
      result.battery->acConnected = GetParam().acConnected;
      result.battery->chargePercent = 81;
    }
    if (GetParam().silicon) result.power.emplace().systemPower = *GetParam().silicon;
    return result;
  }
};

TEST_P(PowerSessionMetricsTest, NamesTheSourceOfALiveState) {
  EXPECT_EQ(PowerSessionMetrics::totalWatts(state()), GetParam().watts);
  EXPECT_EQ(PowerSessionMetrics::totalWattsConfidence(state()), GetParam().confidence);
  EXPECT_EQ(PowerSessionMetrics::powerSourceKind(state()), GetParam().kind);
  EXPECT_EQ(PowerSessionMetrics::powerSourceLabel(state()), GetParam().label);
}

TEST_P(PowerSessionMetricsTest, MakesThePointOfALiveState) {
  const bool hasBattery = GetParam().wattage.has_value();
  EXPECT_EQ(PowerSessionMetrics::livePowerPoint(state()),
            (PowerSamplePoint{instantAt(1000.25), GetParam().watts, GetParam().kind, GetParam().label,
                              hasBattery ? std::optional(GetParam().acConnected) : std::nullopt,
                              hasBattery ? std::optional<std::int64_t>(81) : std::nullopt}));
}

TEST_P(PowerSessionMetricsTest, InfersTheSameFromAStoredSnapshot) {
  SystemPowerStateDTO snapshot(state());
  EXPECT_EQ(PowerSessionMetrics::inferredPowerSourceKind(snapshot), GetParam().kind);
  EXPECT_EQ(PowerSessionMetrics::inferredPowerSourceLabel(snapshot), GetParam().label);
  snapshot.powerSourceKind = "another";
  snapshot.powerSourceLabel = "Another";
  EXPECT_EQ(PowerSessionMetrics::inferredPowerSourceKind(snapshot), GetParam().kind)
      << "the records decide, not the derived fields";
  EXPECT_EQ(PowerSessionMetrics::inferredPowerSourceLabel(snapshot), GetParam().label);
}

constexpr bool charging = true;
constexpr bool onAC = true;

INSTANTIATE_TEST_SUITE_P(Cases, PowerSessionMetricsTest,
                         testing::Values(SourceCase{.name = "Discharging",
                                                    .wattage = -12.5,
                                                    .silicon = 4.0,
                                                    .watts = 12.5,
                                                    .confidence = "batteryTerminal",
                                                    .kind = "batteryDischarge",
                                                    .label = "Battery draw"},
                                         SourceCase{.name = "Supplementing",
                                                    .wattage = -2,
                                                    .acConnected = onAC,
                                                    .watts = 2,
                                                    .confidence = "batteryTerminal",
                                                    .kind = "batterySupplement",
                                                    .label = "Battery supplement"},
                                         SourceCase{.name = "Charging",
                                                    .wattage = 25,
                                                    .isCharging = charging,
                                                    .acConnected = onAC,
                                                    .silicon = 4.0,
                                                    .watts = 25,
                                                    .confidence = "batteryTerminal",
                                                    .kind = "batteryChargeInput",
                                                    .label = "Battery charge input"},
                                         SourceCase{.name = "IdleBatteryWithSilicon",
                                                    .wattage = 0,
                                                    .acConnected = onAC,
                                                    .silicon = 4.5,
                                                    .watts = 4.5,
                                                    .confidence = "ioReport",
                                                    .kind = "ioReportSiliconPower",
                                                    .label = "IOReport silicon power"},
                                         SourceCase{.name = "NoBatteryWithSilicon",
                                                    .silicon = 4.5,
                                                    .watts = 4.5,
                                                    .confidence = "ioReport",
                                                    .kind = "ioReportSiliconPower",
                                                    .label = "IOReport silicon power"},
                                         SourceCase{.name = "IdleBatteryOnAC",
                                                    .wattage = 0,
                                                    .acConnected = onAC,
                                                    .label = "On AC, battery idle"},
                                         SourceCase{.name = "WattageThatIsNoNumberOnAC",
                                                    .wattage = nan,
                                                    .isCharging = charging,
                                                    .acConnected = onAC,
                                                    .label = "On AC, battery idle"},
                                         SourceCase{.name = "IdleBatteryUnplugged", .wattage = 0},
                                         SourceCase{.name = "NothingKnown"}),
                         namedBy(&SourceCase::name));

}  // namespace
}  // namespace quellin
