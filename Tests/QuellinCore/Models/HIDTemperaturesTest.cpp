#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Models/HIDTemperatures.h"

namespace quellin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Services = std::vector<HIDTemperatureService>;

TEST(HIDTemperaturesTest, NumbersTheKeysOfServicesWithOneName) {
  EXPECT_THAT(plausibleTemperatures(Services{{"Sensor A", 30}, {"Sensor A", 31}, {"Sensor A", 32}}),
              ElementsAre(TemperatureSensor{"Sensor_A", "Sensor A", 30},
                          TemperatureSensor{"Sensor_A_1", "Sensor A", 31},
                          TemperatureSensor{"Sensor_A_2", "Sensor A", 32}));
}

TEST(HIDTemperaturesTest, CountsUsesOfTheKeyNotOfTheName) {
  EXPECT_THAT(plausibleTemperatures(Services{{"A B", 30}, {"A_B", 31}}),
              ElementsAre(TemperatureSensor{"A_B", "A B", 30}, TemperatureSensor{"A_B_1", "A_B", 31}));
}

TEST(HIDTemperaturesTest, ReplacesEverySpaceOfAKeyAndNothingElse) {
  EXPECT_THAT(plausibleTemperatures(Services{{" gas  gauge\tbattery ", 30}}),
              ElementsAre(TemperatureSensor{"_gas__gauge\tbattery_", " gas  gauge\tbattery ", 30}));
}

TEST(HIDTemperaturesTest, CallsAServiceWithoutANameUnknown) {
  EXPECT_THAT(plausibleTemperatures(Services{{std::nullopt, 30}, {std::nullopt, 31}}),
              ElementsAre(TemperatureSensor{"Unknown", "Unknown", 30},
                          TemperatureSensor{"Unknown_1", "Unknown", 31}));
}

TEST(HIDTemperaturesTest, KeepsAnEmptyName) {
  EXPECT_THAT(plausibleTemperatures(Services{{"", 30}}), ElementsAre(TemperatureSensor{"", "", 30}));
}

TEST(HIDTemperaturesTest, DropsImplausibleReadingsWithoutSpendingANumber) {
  for (const double temperature : {0.0, 150.0, -21.5, 150.1, std::numeric_limits<double>::quiet_NaN(),
                                   std::numeric_limits<double>::infinity()}) {
    EXPECT_THAT(plausibleTemperatures(Services{{"A", temperature}, {"A", 30}, {"A", 31}}),
                ElementsAre(TemperatureSensor{"A", "A", 30}, TemperatureSensor{"A_1", "A", 31}))
        << temperature;
  }
}

TEST(HIDTemperaturesTest, KeepsReadingsNextToBothBounds) {
  EXPECT_THAT(plausibleTemperatures(Services{{"A", 0.001}, {"B", 149.999}}),
              ElementsAre(TemperatureSensor{"A", "A", 0.001}, TemperatureSensor{"B", "B", 149.999}));
}

TEST(HIDTemperaturesTest, DropsServicesWithoutAnEventWithoutSpendingANumber) {
  EXPECT_THAT(plausibleTemperatures(Services{{"A", std::nullopt}, {"A", 30}}),
              ElementsAre(TemperatureSensor{"A", "A", 30}));
  EXPECT_THAT(plausibleTemperatures(Services{}), IsEmpty());
}

TEST(HIDTemperaturesTest, SortsByNameAndKeepsTheOrderOfEqualNames) {
  EXPECT_THAT(
      plausibleTemperatures(Services{{"b", 30}, {"a", 33}, {"B", 32}, {"b", 29}, {"a 10", 31}, {"a 9", 30}}),
      ElementsAre(TemperatureSensor{"B", "B", 32}, TemperatureSensor{"a", "a", 33},
                  TemperatureSensor{"a_10", "a 10", 31}, TemperatureSensor{"a_9", "a 9", 30},
                  TemperatureSensor{"b", "b", 30}, TemperatureSensor{"b_1", "b", 29}));
}

TEST(HIDTemperaturesTest, KeepsTheOrderOfManyEqualNames) {
  Services services;
  for (int index = 0; index < 100; ++index) services.push_back({"A", 30.0 + index});
  const auto sensors = plausibleTemperatures(services);
  ASSERT_EQ(sensors.size(), 100U);
  for (std::size_t index = 0; index < sensors.size(); ++index) {
    EXPECT_EQ(sensors[index].temperature, 30.0 + static_cast<double>(index));
    EXPECT_EQ(sensors[index].key, index == 0 ? "A" : "A_" + std::to_string(index));
  }
}

}  // namespace
}  // namespace quellin
