#include "QuellinCore/Models/EnergyDelta.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "QuellinCore/Support/CheckedArithmetic.h"
#include "QuellinCore/Support/LetterCase.h"

namespace quellin {
namespace {

enum Component : std::size_t { cpu, gpu, ane, ram, componentCount };

struct NameTest {
  std::string_view text;
  Component component;
};

constexpr std::array exactNames{NameTest{"CPU Energy", cpu}, NameTest{"GPU Energy", gpu},
                                NameTest{"ANE0", ane}, NameTest{"DRAM0", ram}};

// In this order the first word found decides. "ram" covers "dram" too.
constexpr std::array wordsInNames{NameTest{"cpu", cpu}, NameTest{"gpu", gpu}, NameTest{"ane", ane},
                                  NameTest{"ram", ram}};

struct ComponentEnergy {
  std::optional<std::int64_t> exact;
  std::int64_t sum = 0;
};

class EnergyTally {
 public:
  void add(const EnergyChannel& channel) {
    for (const NameTest& test : exactNames) {
      if (channel.name != test.text) continue;
      components_[test.component].exact = channel.nanojoules;
      recognisedAny_ = true;
      return;
    }
    const std::string name = lowercased(channel.name);
    for (const NameTest& test : wordsInNames) {
      if (!name.contains(test.text)) continue;
      std::int64_t& sum = components_[test.component].sum;
      sum = checkedAdd(sum, channel.nanojoules);
      recognisedAny_ = true;
      return;
    }
  }

  [[nodiscard]] bool recognisedAny() const { return recognisedAny_; }

  [[nodiscard]] double watts(Component component, double wattsPerNanojoule) const {
    const ComponentEnergy& energy = components_[component];
    const double power = static_cast<double>(energy.exact.value_or(energy.sum)) * wattsPerNanojoule;
    return power < 0 ? 0 : power;
  }

 private:
  std::array<ComponentEnergy, componentCount> components_{};
  bool recognisedAny_ = false;
};

}  // namespace

std::optional<PowerMetrics> parseEnergyDelta(std::span<const EnergyChannel> channels, Seconds interval) {
  constexpr double nanojoulesPerJoule = 1e9;
  EnergyTally tally;
  for (const EnergyChannel& channel : channels) tally.add(channel);
  if (!tally.recognisedAny() || !(interval.count() > 0)) return std::nullopt;

  const double wattsPerNanojoule = 1 / (interval.count() * nanojoulesPerJoule);
  PowerMetrics metrics;
  metrics.cpuPower = tally.watts(cpu, wattsPerNanojoule);
  metrics.gpuPower = tally.watts(gpu, wattsPerNanojoule);
  metrics.anePower = tally.watts(ane, wattsPerNanojoule);
  metrics.ramPower = tally.watts(ram, wattsPerNanojoule);
  metrics.systemPower = metrics.cpuPower + metrics.gpuPower + metrics.anePower + metrics.ramPower;
  return metrics;
}

std::int64_t largestEnergyGain(std::size_t channelCount) {
  const auto channels = static_cast<std::int64_t>(std::max<std::size_t>(channelCount, 1));
  return std::numeric_limits<std::int64_t>::max() / channels;
}

bool isWithinRange(std::span<const EnergyChannel> channels) {
  const std::int64_t largest = largestEnergyGain(channels.size());
  return std::ranges::all_of(channels, [largest](const EnergyChannel& channel) {
    return channel.nanojoules >= -largest && channel.nanojoules <= largest;
  });
}

}  // namespace quellin
