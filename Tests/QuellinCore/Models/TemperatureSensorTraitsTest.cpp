#include <gtest/gtest.h>

#include "QuellinCore/Models/TemperatureSensorTraits.h"

namespace quellin {
namespace {

struct TraitsCase {
  std::string key;
  std::string name;
  std::string traits;  ///< one letter for each trait, in the order of the declaration: c s p h / S B W M A
  std::string label = {};  ///< the name itself when empty
};

void PrintTo(const TraitsCase& traitsCase, std::ostream* stream) {
  *stream << traitsCase.key << " \"" << traitsCase.name << "\"";
}

std::string letters(const TemperatureSensorTraits& traits) {
  std::string text;
  if (traits.isCPUAverageSensor) text += 'c';
  if (traits.isSiliconDieSensor) text += 's';
  if (traits.isPreferredCPUSensor) text += 'p';
  if (traits.isHumanReadable) text += 'h';
  if (traits.isStorageSensor) text += 'S';
  if (traits.isBatterySensor) text += 'B';
  if (traits.isWirelessSensor) text += 'W';
  if (traits.isMemorySensor) text += 'M';
  if (traits.isAmbientSensor) text += 'A';
  return text;
}

class TemperatureSensorTraitsTest : public ::testing::TestWithParam<TraitsCase> {};

TEST_P(TemperatureSensorTraitsTest, FollowFromNameAndKey) {
  const TemperatureSensor sensor{GetParam().key, GetParam().name, 40};
  const TemperatureSensorTraits traits = traitsOf(sensor);
  EXPECT_EQ(letters(traits), GetParam().traits);
  EXPECT_EQ(traits.displayLabel, GetParam().label.empty() ? GetParam().name : GetParam().label);
}

INSTANTIATE_TEST_SUITE_P(
    Names, TemperatureSensorTraitsTest,
    ::testing::Values(
        TraitsCase{"k", "CPU Performance Core 1", "csh"}, TraitsCase{"k", "cpu efficiency core 2", "csh"},
        TraitsCase{"k", "My CPU Core 3", "csh"}, TraitsCase{"k", "CPU Core", "sh"},
        TraitsCase{"k", "CPU Cores", "sh"}, TraitsCase{"k", "Performance of the CPU", "sh"},
        TraitsCase{"k", "CPU Efficiency Cluster", "sh"}, TraitsCase{"k", "Performance Core 1", "h"},
        TraitsCase{"k", "CPU", "h"}, TraitsCase{"k", "GPU Core 1", "h"}, TraitsCase{"k", "SOC Tdie 4", "sh"},
        TraitsCase{"k", "PMU tdie1", "s"}, TraitsCase{"k", "pmu TP0s", ""}, TraitsCase{"k", "PMU", "h"},
        TraitsCase{"k", "PMU2 tcal", "h"}, TraitsCase{"k", "A PMU 1", "h"}, TraitsCase{"k", "Unknown", ""},
        TraitsCase{"k", "UNKNOWN", ""}, TraitsCase{"k", "Unknown 1", "h"}, TraitsCase{"k", "", "h"},
        TraitsCase{"k", "CPU Die", "ph"}, TraitsCase{"k", "CPU Proximity", "ph"},
        TraitsCase{"k", "Processor die", "h"}));

INSTANTIATE_TEST_SUITE_P(Keys, TemperatureSensorTraitsTest,
                         ::testing::Values(TraitsCase{"Tp01", "x", "csh"}, TraitsCase{"Tp0Z", "x", "csh"},
                                           TraitsCase{"Tp1A", "x", "h"}, TraitsCase{"Tp0", "x", "h"},
                                           TraitsCase{"Tp011", "x", "h"}, TraitsCase{"tp01", "x", "h"},
                                           TraitsCase{"Tp0\xC3\xA9", "x", "csh"},
                                           TraitsCase{"TC\xC3\xA9"
                                                      "C",
                                                      "x", "csh"},
                                           TraitsCase{"TC\xC3\xA9", "x", "h"}, TraitsCase{"TC1C", "x", "csh"},
                                           TraitsCase{"TCAC", "x", "csh"}, TraitsCase{"TC0C", "x", "h"},
                                           TraitsCase{"TC1c", "x", "h"}, TraitsCase{"TC1D", "x", "h"},
                                           TraitsCase{"TCC", "x", "h"}, TraitsCase{"TC10C", "x", "h"},
                                           TraitsCase{"TC0P", "x", "ph"}, TraitsCase{"TC0D", "x", "ph"},
                                           TraitsCase{"TC0d", "x", "h"}, TraitsCase{"TC1P", "x", "h"}));

INSTANTIATE_TEST_SUITE_P(
    Labels, TemperatureSensorTraitsTest,
    ::testing::Values(
        TraitsCase{"k", "NAND CH0 temp", "hS", "Storage"}, TraitsCase{"k", "my ssd", "hS", "Storage"},
        TraitsCase{"k", "Storage 1", "hS", "Storage"}, TraitsCase{"k", "Battery 1", "hB", "Battery"},
        TraitsCase{"k", "gas gauge", "hB", "Battery"}, TraitsCase{"k", "Wireless", "hW", "Wireless"},
        TraitsCase{"k", "WiFi chip", "hW", "Wireless"}, TraitsCase{"k", "Memory Bank", "hM", "Memory"},
        TraitsCase{"k", "Ambient left", "hA", "Ambient"}, TraitsCase{"k", "Palm Rest", "hA"},
        TraitsCase{"k", "Palm Rest Ambient", "hA", "Ambient"},
        TraitsCase{"k", "SSD Battery WiFi Memory Ambient", "hSBWMA", "Storage"},
        TraitsCase{"k", "Battery WiFi Memory Ambient", "hBWMA", "Battery"},
        TraitsCase{"k", "WiFi Memory Ambient", "hWMA", "Wireless"},
        TraitsCase{"k", "Memory Ambient", "hMA", "Memory"}, TraitsCase{"k", "Heatpipe", "h"}));

}  // namespace
}  // namespace quellin
