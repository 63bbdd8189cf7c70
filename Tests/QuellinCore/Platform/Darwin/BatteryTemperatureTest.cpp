#include <limits>

#include <gtest/gtest.h>

#include "QuellinCore/Platform/Darwin/BatteryTemperature.h"
#include "Support/Deaths.h"

namespace quellin::darwin {
namespace {

using testing_support::endedByTrap;

TEST(BatteryTemperatureTest, TurnsTenthsOfAKelvinIntoHundredthsOfADegree) {
  EXPECT_EQ(hundredthsOfCelsius(3131), 3995);
  EXPECT_EQ(hundredthsOfCelsius(3030), 2985);
  EXPECT_EQ(hundredthsOfCelsius(2731), -5);
  EXPECT_EQ(hundredthsOfCelsius(0), -27315);
}

TEST(BatteryTemperatureTest, EndsTheProcessOnOverflow) {
  EXPECT_EXIT((void)hundredthsOfCelsius(std::numeric_limits<std::int64_t>::max() / 10 + 1), endedByTrap, "");
  EXPECT_EXIT((void)hundredthsOfCelsius(std::numeric_limits<std::int64_t>::min() / 10), endedByTrap, "");
}

struct Case {
  const char* what;
  PropertyTable registry;
  PropertyTable expected;
};

TEST(BatteryTemperatureTest, PutsHundredthsOfADegreeUnderTemperature) {
  const Case cases[] = {
      {"gauge value only", {{"Temperature", std::int64_t{3034}}}, {{"Temperature", std::int64_t{3025}}}},
      {"the virtual value wins",
       {{"Temperature", std::int64_t{2998}}, {"VirtualTemperature", std::int64_t{2659}}},
       {{"Temperature", std::int64_t{2659}}, {"VirtualTemperature", std::int64_t{2659}}}},
      {"virtual value only",
       {{"VirtualTemperature", std::int64_t{2859}}},
       {{"VirtualTemperature", std::int64_t{2859}}, {"Temperature", std::int64_t{2859}}}},
      {"a virtual value of another kind counts for nothing",
       {{"VirtualTemperature", "warm"}, {"Temperature", std::int64_t{3131}}},
       {{"VirtualTemperature", "warm"}, {"Temperature", std::int64_t{3995}}}},
      {"no integer", {{"Temperature", 30.5}}, {{"Temperature", 30.5}}},
      {"neither", {{"Voltage", std::int64_t{12600}}}, {{"Voltage", std::int64_t{12600}}}},
  };
  for (const Case& each : cases) {
    PropertyTable registry = each.registry;
    convertTemperature(registry);
    EXPECT_TRUE(registry == each.expected) << each.what;
  }
}

}  // namespace
}  // namespace quellin::darwin
