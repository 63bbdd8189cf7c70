#include "QuellinCore/Models/TemperatureSensorTraits.h"

#include <array>
#include <bit>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>

#include "QuellinCore/Support/LetterCase.h"
#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

using namespace std::string_view_literals;

enum Phrase : std::size_t {
  cpuPerformanceCore,
  cpuEfficiencyCore,
  cpuCore,
  cpuDie,
  cpuProximity,
  cpu,
  core,
  performance,
  efficiency,
  tdie,
  nand,
  ssd,
  storage,
  battery,
  gasGauge,
  wireless,
  wifi,
  memory,
  ambient,
  palmRest,
  phraseCount
};

constexpr std::array<std::string_view, phraseCount> phrases{"cpu performance core",
                                                            "cpu efficiency core",
                                                            "cpu core ",
                                                            "cpu die",
                                                            "cpu proximity",
                                                            "cpu",
                                                            "core",
                                                            "performance",
                                                            "efficiency",
                                                            "tdie",
                                                            "nand",
                                                            "ssd",
                                                            "storage",
                                                            "battery",
                                                            "gas gauge",
                                                            "wireless",
                                                            "wifi",
                                                            "memory",
                                                            "ambient",
                                                            "palm rest"};

using PhraseSet = std::bitset<phraseCount>;

// For each byte the phrases that begin with it, one bit each.
constexpr auto phrasesByFirstByte = [] {
  std::array<std::uint32_t, 256> table{};
  for (std::size_t phrase = 0; phrase < phraseCount; ++phrase) {
    table[static_cast<unsigned char>(phrases[phrase].front())] |= std::uint32_t{1} << phrase;
  }
  return table;
}();
static_assert(phraseCount <= 32);

// One walk over the name for all phrases: a list of sensors is classified on every refresh of a display.
PhraseSet phrasesIn(std::string_view lowerCaseName) {
  PhraseSet found;
  for (std::size_t position = 0; position < lowerCaseName.size(); ++position) {
    const std::string_view rest = lowerCaseName.substr(position);
    auto candidates = phrasesByFirstByte[static_cast<unsigned char>(rest.front())];
    for (; candidates != 0; candidates &= candidates - 1) {
      const auto phrase = static_cast<std::size_t>(std::countr_zero(candidates));
      if (rest.starts_with(phrases[phrase])) found.set(phrase);
    }
  }
  return found;
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  for (; !text.empty(); ++count) text.remove_prefix(firstUTF8Step(text).length);
  return count;
}

bool isCoreKey(std::string_view key) {
  const bool namesCore =
      key.starts_with("Tp0") || (key.starts_with("TC") && key.ends_with('C') && key != "TC0C");
  return namesCore && characterCount(key) == 4;
}

std::string_view displayLabel(const TemperatureSensor& sensor, const TemperatureSensorTraits& traits,
                              const PhraseSet& has) {
  if (traits.isStorageSensor) return "Storage";
  if (traits.isBatterySensor) return "Battery";
  if (traits.isWirelessSensor) return "Wireless";
  if (traits.isMemorySensor) return "Memory";
  if (has[ambient]) return "Ambient";
  return sensor.name;
}

}  // namespace

TemperatureSensorTraits traitsOf(const TemperatureSensor& sensor) {
  const std::string name = lowercased(sensor.name);
  const PhraseSet has = phrasesIn(name);
  const bool coreKey = isCoreKey(sensor.key);

  TemperatureSensorTraits traits;
  traits.isCPUAverageSensor = has[cpuPerformanceCore] || has[cpuEfficiencyCore] || has[cpuCore] || coreKey;
  traits.isSiliconDieSensor =
      has[tdie] || (has[cpu] && (has[core] || has[performance] || has[efficiency])) || coreKey;
  traits.isPreferredCPUSensor =
      sensor.key == "TC0P" || sensor.key == "TC0D" || has[cpuDie] || has[cpuProximity];
  traits.isHumanReadable = !name.starts_with("pmu ") && name != "unknown";
  traits.isStorageSensor = has[nand] || has[ssd] || has[storage];
  traits.isBatterySensor = has[battery] || has[gasGauge];
  traits.isWirelessSensor = has[wireless] || has[wifi];
  traits.isMemorySensor = has[memory];
  traits.isAmbientSensor = has[ambient] || has[palmRest];
  traits.displayLabel = displayLabel(sensor, traits, has);
  return traits;
}

}  // namespace quellin
