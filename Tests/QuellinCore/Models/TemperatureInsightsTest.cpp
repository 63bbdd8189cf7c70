#include <cmath>
#include <limits>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Models/TemperatureInsights.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "QuellinCore/Support/LetterCase.h"

namespace quellin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Reading = TemperatureDisplayReading;
using Sensors = std::vector<TemperatureSensor>;

const std::optional<BatteryInfo> noBattery;

std::optional<BatteryInfo> batteryAt(double temperature) {
  BatteryInfo battery;
  battery.temperature = temperature;
  return battery;
}

std::optional<Reading> representative(const Sensors& sensors,
                                      const std::optional<BatteryInfo>& battery = noBattery) {
  return TemperatureInsights::representativeReading(sensors, battery);
}

std::vector<Reading> menu(const Sensors& sensors, const std::optional<BatteryInfo>& battery = noBattery) {
  return TemperatureInsights::menuHighlights(sensors, battery);
}

std::vector<Reading> dashboard(const Sensors& sensors,
                               const std::optional<BatteryInfo>& battery = noBattery) {
  return TemperatureInsights::dashboardReadings(sensors, battery);
}

TEST(TemperatureInsightsTest, ShowsNothingForNothing) {
  EXPECT_EQ(representative({}), std::nullopt);
  EXPECT_THAT(menu({}), IsEmpty());
  EXPECT_THAT(dashboard({}), IsEmpty());
  EXPECT_EQ(representative({}, batteryAt(0)), std::nullopt);
}

TEST(TemperatureInsightsTest, RepresentsTheMachineByTheFirstRuleThatApplies) {
  Sensors sensors{{"a", "Heatpipe", 90},
                  {"b", "Gas Gauge", 31},
                  {"TC0D", "Processor", 60},
                  {"d", "PMU tdie1", 70},
                  {"e", "PMU tdie2", 72},
                  {"f", "CPU Performance Core 1", 50},
                  {"g", "CPU Efficiency Core 1", 40}};
  const auto without = [&](std::size_t count) {
    return Sensors(sensors.begin(), sensors.end() - std::ptrdiff_t(count));
  };
  EXPECT_EQ(representative(sensors, batteryAt(35)), (Reading{"cpu_avg", "CPU Avg", 45}));
  EXPECT_EQ(representative(without(2), batteryAt(35)), (Reading{"silicon_avg", "Silicon Avg", 71}));
  EXPECT_EQ(representative(without(4), batteryAt(35)), (Reading{"TC0D", "CPU Avg", 60}));
  EXPECT_EQ(representative(without(5), batteryAt(35)), (Reading{"battery", "Battery", 35}));
  EXPECT_EQ(representative(without(5)), (Reading{"battery_sensor", "Battery", 31}));
  EXPECT_EQ(representative(without(6)), (Reading{"a", "Heatpipe", 90}));
}

TEST(TemperatureInsightsTest, CountsTheSiliconDieIncludingTheCores) {
  EXPECT_EQ(representative({{"a", "PMU tdie1", 70}, {"b", "CPU Cores", 50}}),
            (Reading{"silicon_avg", "Silicon Avg", 60}));
}

TEST(TemperatureInsightsTest, PrefersTheFirstWholeProcessorSensorInInputOrder) {
  EXPECT_EQ(representative({{"x", "CPU Proximity", 51}, {"TC0P", "y", 52}}), (Reading{"x", "CPU Avg", 51}));
  EXPECT_EQ(representative({{"TC0P", "y", 52}, {"x", "CPU Die", 53}}), (Reading{"TC0P", "CPU Avg", 52}));
}

TEST(TemperatureInsightsTest, UsesABatterySensorWhenTheBatteryDoesNotKnow) {
  const Sensors sensors{{"g", "Battery Gas Gauge", 31}};
  EXPECT_EQ(representative(sensors, batteryAt(0)), (Reading{"battery_sensor", "Battery", 31}));
  EXPECT_EQ(representative(sensors, batteryAt(-1)), (Reading{"battery_sensor", "Battery", 31}));
  EXPECT_EQ(representative(sensors, batteryAt(0.1)), (Reading{"battery", "Battery", 0.1}));
}

TEST(TemperatureInsightsTest, FallsBackToTheHottestSensorWithAMeaningfulName) {
  EXPECT_EQ(representative(
                {{"a", "Unknown", 99}, {"b", "PMU tcal", 98}, {"c", "Airflow", 40}, {"d", "NAND 1", 45}}),
            (Reading{"d", "Storage", 45}));
  EXPECT_EQ(representative({{"a", "Unknown", 99}, {"b", "PMU tcal", 98}}), std::nullopt);
}

TEST(TemperatureInsightsTest, GivesThePeakOfTheCoresOrElseOfTheSilicon) {
  const Sensors cores{
      {"a", "CPU Performance Core 1", 50}, {"b", "CPU Efficiency Core 1", 40}, {"c", "PMU tdie1", 80}};
  EXPECT_THAT(dashboard(cores),
              ElementsAre(Reading{"cpu_avg", "CPU Avg", 45}, Reading{"cpu_peak", "CPU Peak", 50}));
  const Sensors silicon{{"c", "PMU tdie1", 80}, {"d", "PMU tdie2", 90}};
  EXPECT_THAT(dashboard(silicon), ElementsAre(Reading{"silicon_avg", "Silicon Avg", 85},
                                              Reading{"silicon_peak", "Silicon Peak", 90}));
}

TEST(TemperatureInsightsTest, LetsTheEarlierOfTwoEquallyHotSensorsWin) {
  const Sensors sensors{{"a", "Palm Rest Left", 30}, {"b", "Ambient Right", 30}, {"c", "Duct", 30}};
  EXPECT_EQ(representative(sensors), (Reading{"a", "Palm Rest Left", 30}));
  const auto rows = dashboard(sensors, batteryAt(31));
  EXPECT_THAT(rows, ElementsAre(Reading{"battery", "Battery", 31}, Reading{"ambient", "Palm Rest Left", 30},
                                Reading{"b", "Ambient", 30}, Reading{"c", "Duct", 30}));
}

const Sensors everyKind{{"a", "NAND CH0", 41},   {"b", "NAND CH1", 43}, {"c", "Memory 1", 44},
                        {"d", "Ambient", 25},    {"e", "WiFi", 46},     {"f", "CPU Core 1", 50},
                        {"g", "CPU Core 2", 60}, {"h", "gas gauge", 33}};

TEST(TemperatureInsightsTest, OrdersTheMenuWithThePeakLast) {
  EXPECT_THAT(menu(everyKind, batteryAt(34)),
              ElementsAre(Reading{"cpu_avg", "CPU Avg", 55}, Reading{"storage", "Storage", 43},
                          Reading{"battery", "Battery", 34}));
  EXPECT_THAT(menu({{"c", "Memory 1", 44}, {"f", "CPU Core 1", 50}}),
              ElementsAre(Reading{"cpu_avg", "CPU Avg", 50}, Reading{"memory", "Memory", 44},
                          Reading{"cpu_peak", "CPU Peak", 50}));
  EXPECT_THAT(menu({{"d", "Ambient", 25}, {"e", "WiFi", 46}}),
              ElementsAre(Reading{"e", "Wireless", 46}, Reading{"ambient", "Ambient", 25}));
}

TEST(TemperatureInsightsTest, OrdersTheDashboardWithThePeakFirst) {
  EXPECT_THAT(dashboard(everyKind, batteryAt(34)),
              ElementsAre(Reading{"cpu_avg", "CPU Avg", 55}, Reading{"cpu_peak", "CPU Peak", 60},
                          Reading{"battery", "Battery", 34}, Reading{"storage", "Storage", 43},
                          Reading{"memory", "Memory", 44}, Reading{"ambient", "Ambient", 25},
                          Reading{"wireless", "Wireless", 46}));
  EXPECT_EQ(dashboard(everyKind)[2], (Reading{"battery_sensor", "Battery", 33}));
}

TEST(TemperatureInsightsTest, FillsUpWithOtherSensorsHottestFirst) {
  const Sensors sensors{{"a", "Duct", 40},      {"b", "Airport", 48}, {"c", "Heatpipe", 48},
                        {"d", "Unknown", 99},   {"e", "PMU tp1", 98}, {"f", "AIRPORT", 47},
                        {"g", "CPU Core 1", 50}};
  EXPECT_THAT(
      dashboard(sensors),
      ElementsAre(Reading{"cpu_avg", "CPU Avg", 50}, Reading{"cpu_peak", "CPU Peak", 50},
                  Reading{"b", "Airport", 48}, Reading{"c", "Heatpipe", 48}, Reading{"a", "Duct", 40}));
}

TEST(TemperatureInsightsTest, LeavesOutSensorsThatASummarisingRowSpeaksFor) {
  EXPECT_THAT(dashboard({{"a", "CPU Core 1", 50}, {"b", "CPU Cores", 49}}),
              ElementsAre(Reading{"cpu_avg", "CPU Avg", 50}, Reading{"cpu_peak", "CPU Peak", 50},
                          Reading{"b", "CPU Cores", 49}));
  EXPECT_THAT(
      dashboard({{"a", "SoC tdie", 50}, {"b", "CPU Cores", 48}}),
      ElementsAre(Reading{"silicon_avg", "Silicon Avg", 49}, Reading{"silicon_peak", "Silicon Peak", 50}));
}

TEST(TemperatureInsightsTest, ShowsThePreferredSensorAgainUnderItsOwnName) {
  EXPECT_THAT(dashboard({{"TC0D", "CPU Die", 60}}),
              ElementsAre(Reading{"TC0D", "CPU Avg", 60}, Reading{"TC0D", "CPU Die", 60}));
}

TEST(TemperatureInsightsTest, DropsASensorWhoseNameIsARowsLabel) {
  EXPECT_THAT(dashboard({{"x", "cpu avg", 99}, {"a", "CPU Core 1", 50}}),
              ElementsAre(Reading{"cpu_avg", "CPU Avg", 50}, Reading{"cpu_peak", "CPU Peak", 50}));
}

TEST(TemperatureInsightsTest, NeverShowsMoreRowsThanFitNorALabelTwice) {
  Sensors sensors = everyKind;
  for (int index = 0; index < 60; ++index) {
    sensors.push_back({"k" + std::to_string(index),
                       (index % 2 == 0 ? "Zone " : "ZONE ") + std::to_string(index / 2), 20.0 + index});
  }
  for (std::size_t count = 0; count <= sensors.size(); ++count) {
    const Sensors some(sensors.begin(), sensors.begin() + std::ptrdiff_t(count));
    const auto menuRows = menu(some);
    const auto dashboardRows = dashboard(some);
    EXPECT_LE(menuRows.size(), 3U);
    EXPECT_LE(dashboardRows.size(), 12U);
    for (const auto& rows : {menuRows, dashboardRows}) {
      std::set<std::string> labels;
      for (const Reading& row : rows) labels.insert(lowercased(row.label));
      EXPECT_EQ(labels.size(), rows.size());
    }
  }
  EXPECT_EQ(menu(sensors).size(), 3U);
  EXPECT_EQ(dashboard(sensors).size(), 12U);
}

TEST(TemperatureInsightsTest, CutsTheExtraSensorsAtTheLimit) {
  EXPECT_THAT(
      menu({{"a", "Duct 1", 40}, {"b", "Duct 2", 42}, {"c", "Duct 3", 41}, {"d", "Duct 4", 43}}),
      ElementsAre(Reading{"d", "Duct 4", 43}, Reading{"b", "Duct 2", 42}, Reading{"c", "Duct 3", 41}));
}

TEST(TemperatureInsightsTest, NeverLetsNaNReplaceATemperature) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(representative({{"a", "Duct", 40}, {"b", "Pipe", nan}}), (Reading{"a", "Duct", 40}));
  EXPECT_TRUE(std::isnan(representative({{"a", "CPU Core 1", 40}, {"b", "CPU Core 2", nan}})->temperature));
  EXPECT_TRUE(std::isnan(representative({{"a", "Pipe", nan}, {"b", "Duct", 40}})->temperature))
      << "nothing is hotter than it";
  const Sensors sensors{
      {"a", "Pipe", nan}, {"b", "Duct", 40}, {"c", "Vent", 41}, {"d", "Grille", nan}, {"e", "Lid", 42}};
  const auto rows = dashboard(sensors, batteryAt(30));
  ASSERT_EQ(rows.size(), 6U);
  EXPECT_EQ(rows[1].id, "e");
  EXPECT_EQ(rows[2].id, "c");
  EXPECT_EQ(rows[3].id, "b");
  EXPECT_EQ(rows[4].id, "a");
  EXPECT_EQ(rows[5].id, "d");
}

TEST(TemperatureDisplayReadingTest, DescribesEveryFieldInOrder) {
  EXPECT_EQ(encodeJSON(Reading{"id", "Label", 1.5}), R"({"id":"id","label":"Label","temperature":1.5})");
}

}  // namespace
}  // namespace quellin
