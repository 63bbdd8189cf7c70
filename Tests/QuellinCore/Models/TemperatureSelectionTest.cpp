#include <limits>

#include <gtest/gtest.h>

#include "QuellinCore/Models/TemperatureSelection.h"

namespace quellin {
namespace {

using Reading = TemperatureDisplayReading;
using Sensors = std::vector<TemperatureSensor>;
using Traits = TemperatureSensorTraits;

std::string hottest(const Sensors& sensors, TemperatureSelection::Trait trait = &Traits::isHumanReadable) {
  const TemperatureSelection selection{sensors};
  const auto* entry = selection.highestMatchingSensor(trait);
  return entry == nullptr ? "" : entry->sensor->key;
}

TEST(TemperatureSelectionTest, TakesTheFirstThatNoLaterOneExceeds) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(hottest({}), "");
  EXPECT_EQ(hottest({{"a", "x", -5}}), "a");
  EXPECT_EQ(hottest({{"a", "x", 1}, {"b", "x", 3}, {"c", "x", 3}, {"d", "x", 2}}), "b");
  EXPECT_EQ(hottest({{"a", "x", 1}, {"b", "x", nan}, {"c", "x", 2}}), "c");
  EXPECT_EQ(hottest({{"a", "x", nan}, {"b", "x", 2}}), "a");
}

TEST(TemperatureSelectionTest, LooksAtSensorsWithTheTraitOnly) {
  const Sensors sensors{{"a", "Duct", 90}, {"b", "SSD", 40}, {"c", "NAND", 50}};
  EXPECT_EQ(hottest(sensors, &Traits::isStorageSensor), "c");
  EXPECT_EQ(hottest(sensors, &Traits::isMemorySensor), "");
  EXPECT_EQ(TemperatureSelection{sensors}.meanTemperature(&Traits::isStorageSensor), 45);
  EXPECT_EQ(TemperatureSelection{sensors}.meanTemperature(&Traits::isMemorySensor), std::nullopt);
}

TEST(TemperatureSelectionTest, SumsMeansInInputOrder) {
  const Sensors sensors{{"a", "SSD", 1e16}, {"b", "SSD", 1}, {"c", "SSD", -1e16}, {"d", "SSD", 1}};
  EXPECT_EQ(TemperatureSelection{sensors}.meanTemperature(&Traits::isStorageSensor), 0.25);
}

TEST(TemperatureSelectionTest, PrefersTheFirstWholeProcessorSensor) {
  const Sensors sensors{{"a", "Duct", 90}, {"TC0D", "x", 50}, {"TC0P", "y", 60}};
  EXPECT_EQ(TemperatureSelection{sensors}.preferredCPUSensor()->sensor->key, "TC0D");
  EXPECT_EQ(TemperatureSelection{Sensors{}}.preferredCPUSensor(), nullptr);
}

TEST(TemperatureSelectionTest, GivesThePeakOfTheCoresOrElseOfTheSilicon) {
  const Sensors silicon{{"a", "PMU tdie1", 80}, {"b", "PMU tdie2", 70}};
  EXPECT_EQ(TemperatureSelection{silicon}.siliconPeakReading(),
            (Reading{"silicon_peak", "Silicon Peak", 80}));
  Sensors cores = silicon;
  cores.push_back({"Tp01", "x", 60});
  EXPECT_EQ(TemperatureSelection{cores}.siliconPeakReading(), (Reading{"cpu_peak", "CPU Peak", 60}));
  EXPECT_EQ(TemperatureSelection{Sensors{}}.siliconPeakReading(), std::nullopt);
}

TEST(TemperatureSelectionTest, NamesEachCategory) {
  const Sensors sensors{{"a", "Memory 1", 40}, {"b", "Palm Rest", 30}, {"c", "Gas Gauge", 31}};
  const TemperatureSelection selection{sensors};
  EXPECT_EQ(selection.memoryReading(), (Reading{"memory", "Memory", 40}));
  EXPECT_EQ(selection.ambientReading(), (Reading{"ambient", "Palm Rest", 30}));
  EXPECT_EQ(selection.batteryReading(std::nullopt), (Reading{"battery_sensor", "Battery", 31}));
  const TemperatureSelection nothing{Sensors{}};
  EXPECT_EQ(nothing.memoryReading(), std::nullopt);
  EXPECT_EQ(nothing.ambientReading(), std::nullopt);
  EXPECT_EQ(nothing.batteryReading(std::nullopt), std::nullopt);
}

}  // namespace
}  // namespace quellin
