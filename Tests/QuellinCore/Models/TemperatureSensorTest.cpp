#include <limits>
#include <set>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Models/TemperatureSensor.h"
#include "QuellinCore/Support/JSON/JSONDecoder.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"

namespace quellin {
namespace {

using testing::Each;
using testing::Pair;
using testing::SizeIs;

TEST(TemperatureSensorTest, KnowsThirtySevenSensors) {
  const std::map<std::string, std::string, std::less<>> expected = {
      {"TA0P", "Ambient"},
      {"TB0T", "Battery TS_MAX"},
      {"TB1T", "Battery 1"},
      {"TB2T", "Battery 2"},
      {"TC0D", "CPU Die"},
      {"TC0E", "CPU Die (2)"},
      {"TC0F", "CPU Die (3)"},
      {"TC0P", "CPU Proximity"},
      {"TC1C", "CPU Core 1"},
      {"TC2C", "CPU Core 2"},
      {"TC3C", "CPU Core 3"},
      {"TC4C", "CPU Core 4"},
      {"TC5C", "CPU Core 5"},
      {"TC6C", "CPU Core 6"},
      {"TC7C", "CPU Core 7"},
      {"TC8C", "CPU Core 8"},
      {"TG0D", "GPU Die"},
      {"TG0P", "GPU Proximity"},
      {"TG1D", "GPU Die (2)"},
      {"TH0A", "SSD A"},
      {"TH0B", "SSD B"},
      {"TH0x", "SSD"},
      {"TM0P", "Memory Controller"},
      {"TW0P", "Wireless Module"},
      {"Tm0P", "Memory Proximity"},
      {"Tp01", "CPU Performance Core 1"},
      {"Tp05", "CPU Performance Core 2"},
      {"Tp09", "CPU Efficiency Core 1"},
      {"Tp0D", "CPU Performance Core 3"},
      {"Tp0H", "CPU Performance Core 4"},
      {"Tp0L", "CPU Performance Core 5"},
      {"Tp0P", "CPU Performance Core 6"},
      {"Tp0T", "CPU Efficiency Core 2"},
      {"Tp0X", "CPU Performance Core 7"},
      {"Tp0b", "CPU Performance Core 8"},
      {"Ts0P", "Palm Rest 1"},
      {"Ts1P", "Palm Rest 2"},
  };
  EXPECT_THAT(TemperatureSensor::knownSensors(), SizeIs(37));
  EXPECT_EQ(TemperatureSensor::knownSensors(), expected);
}

TEST(TemperatureSensorTest, TellsKeysApartByCase) {
  EXPECT_EQ(TemperatureSensor::knownSensors().at("Tm0P"), "Memory Proximity");
  EXPECT_EQ(TemperatureSensor::knownSensors().at("TM0P"), "Memory Controller");
  EXPECT_FALSE(TemperatureSensor::knownSensors().contains("tm0p"));
}

TEST(TemperatureSensorTest, HasFourCharacterKeysAndDistinctNames) {
  EXPECT_THAT(TemperatureSensor::knownSensors(), Each(Pair(SizeIs(4), SizeIs(testing::Gt(0)))));
  std::set<std::string> names;
  for (const auto& [key, name] : TemperatureSensor::knownSensors()) names.insert(name);
  EXPECT_THAT(names, SizeIs(37));
}

// Under the thread sanitizer this is the first use when the test runs alone, as ctest runs it.
TEST(TemperatureSensorTest, BuildsItsTableOnceUnderConcurrentFirstUse) {
  constexpr std::size_t threadCount = 8;
  std::vector<const void*> tables(threadCount);
  std::vector<std::size_t> sizes(threadCount);
  std::vector<std::thread> threads;
  threads.reserve(threadCount);
  for (std::size_t i = 0; i < threadCount; ++i) {
    threads.emplace_back([&, i] {
      tables[i] = &TemperatureSensor::knownSensors();
      sizes[i] = TemperatureSensor::knownSensors().size();
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(tables, Each(testing::Eq(tables.front())));
  EXPECT_THAT(sizes, Each(testing::Eq(37U)));
}

TEST(TemperatureSensorTest, WritesAndNeedsAllThreeKeys) {
  const TemperatureSensor sensor{"TC0P", "CPU Proximity", 45.5};
  EXPECT_EQ(encodeJSON(sensor), R"({"key":"TC0P","name":"CPU Proximity","temperature":45.5})");
  EXPECT_EQ(decodeJSON<TemperatureSensor>(R"({"temperature":45.5,"name":"CPU Proximity","key":"TC0P"})"),
            sensor);
  for (const char* incomplete :
       {R"({"name":"CPU Proximity","temperature":45.5})", R"({"key":"TC0P","temperature":45.5})",
        R"({"key":"TC0P","name":"CPU Proximity"})"}) {
    EXPECT_FALSE(decodeJSON<TemperatureSensor>(incomplete).has_value()) << incomplete;
  }
}

TEST(TemperatureSensorTest, ComparesAllThreeFields) {
  const TemperatureSensor sensor{"TC0P", "CPU Proximity", 45.5};
  EXPECT_EQ(sensor, (TemperatureSensor{"TC0P", "CPU Proximity", 45.5}));
  EXPECT_NE(sensor, (TemperatureSensor{"TC0D", "CPU Proximity", 45.5}));
  EXPECT_NE(sensor, (TemperatureSensor{"TC0P", "CPU Die", 45.5}));
  EXPECT_NE(sensor, (TemperatureSensor{"TC0P", "CPU Proximity", 45.25}));
}

TEST(TemperatureSensorTest, BelievesWhatLiesBetweenZeroAndOneHundredAndFifty) {
  for (const double temperature : {0.01, 45.0, 149.99}) EXPECT_TRUE(isPlausibleTemperature(temperature));
  for (const double temperature : {-0.01, 0.0, 150.0, 1e9, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_FALSE(isPlausibleTemperature(temperature)) << temperature;
  }
}

}  // namespace
}  // namespace quellin
