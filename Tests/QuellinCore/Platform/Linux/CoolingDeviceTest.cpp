#include <array>
#include <cstdint>
#include <optional>

#include <gtest/gtest.h>

#include "QuellinCore/Platform/Linux/CoolingDevice.h"

namespace quellin {
namespace {

TEST(CoolingDeviceTest, TheShareOfTheRangeGivesTheState) {
  struct Case {
    std::optional<std::int64_t> current, maximum, state;
  };
  const std::array cases = {
      Case{0, 10, 0},
      Case{1, 10, 1},
      Case{4, 10, 1},
      Case{5, 10, 2},
      Case{9, 10, 2},
      Case{10, 10, 3},
      Case{11, 10, 3},
      Case{-1, 50, 0},
      Case{1, 3, 1},
      Case{2, 3, 2},
      Case{1, 1, 3},
      Case{0, 0, std::nullopt},
      Case{std::nullopt, 10, std::nullopt},
      Case{3, std::nullopt, std::nullopt},
      Case{9223372036854775807, 9223372036854775807, 3},
  };
  for (const auto& [current, maximum, state] : cases) {
    const std::array devices = {CoolingDevice{"Processor", current, maximum}};
    EXPECT_EQ(thermalStateCode(devices), state) << current.value_or(-99) << " of " << maximum.value_or(-99);
  }
}

TEST(CoolingDeviceTest, TheHardestThrottleDecides) {
  const std::array devices = {CoolingDevice{"Processor", 1, 10}, CoolingDevice{"cpufreq-cpu4", 6, 10},
                              CoolingDevice{"Processor", 0, 10},
                              CoolingDevice{"Processor", std::nullopt, 10}};
  EXPECT_EQ(thermalStateCode(devices), 2);
  EXPECT_EQ(thermalStateCode({}), std::nullopt);
}

TEST(CoolingDeviceTest, OnlyWhatSlowsTheMachineDownThrottles) {
  for (const char* type : {"Processor", "intel_powerclamp", "cpufreq-cpu0", "thermal-cpufreq-1",
                           "devfreq-17000000.gpu", "thermal-devfreq-0", "idle-cpu2"}) {
    EXPECT_TRUE(throttles({type, 1, 1})) << type;
  }
  for (const char* type : {"Fan", "LCD", "iwlwifi_1", "TCC Offset", "pwm-fan", "mlxsw_fan1", ""}) {
    const std::array devices = {CoolingDevice{type, 1, 1}};
    EXPECT_EQ(thermalStateCode(devices), std::nullopt) << type;
  }
}

}  // namespace
}  // namespace quellin
