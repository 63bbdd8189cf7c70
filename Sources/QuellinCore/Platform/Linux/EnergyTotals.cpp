#include "QuellinCore/Platform/Linux/EnergyTotals.h"

#include "QuellinCore/Support/CheckedArithmetic.h"

namespace quellin {
namespace {

constexpr std::int64_t nanojoulesPerMicrojoule = 1000;

// A sum over zones that is unknown as soon as one zone is, and until the first.
struct Total {
  std::optional<std::int64_t> nanojoules;
  bool isBroken = false;

  void add(std::optional<std::int64_t> microjoules) {
    if (!microjoules) isBroken = true;
    if (isBroken) return;
    nanojoules = checkedAdd(nanojoules.value_or(0), checkedMul(*microjoules, nanojoulesPerMicrojoule));
  }

  void appendTo(std::vector<EnergyChannel>& channels, const char* name) const {
    if (nanojoules && !isBroken) channels.push_back({.name = name, .nanojoules = *nanojoules});
  }
};

// What is left of the packages without the graphics inside them.
Total without(Total packages, const Total& graphics) {
  if (graphics.isBroken) packages.isBroken = true;
  if (packages.nanojoules) {
    packages.nanojoules = checkedSub(*packages.nanojoules, graphics.nanojoules.value_or(0));
  }
  return packages;
}

}  // namespace

std::optional<std::int64_t> counterGain(std::int64_t before, std::int64_t after,
                                        std::optional<std::int64_t> maxRange) {
  if (before < 0 || after < 0) return std::nullopt;
  if (after >= before) return after - before;
  if (!maxRange || *maxRange < before) return std::nullopt;
  return *maxRange - before + after;
}

std::vector<EnergyChannel> energyTotals(std::span<const EnergyZoneGain> gains) {
  Total packages;
  Total graphics;
  Total memory;
  for (const auto& [zone, microjoules] : gains) {
    switch (zone.domain) {
      case EnergyDomain::package:
        packages.add(microjoules);
        break;
      case EnergyDomain::graphics:
        graphics.add(microjoules);
        break;
      case EnergyDomain::memory:
        memory.add(microjoules);
        break;
    }
  }
  std::vector<EnergyChannel> channels;
  without(packages, graphics).appendTo(channels, "CPU Energy");
  graphics.appendTo(channels, "GPU Energy");
  memory.appendTo(channels, "DRAM0");
  return channels;
}

}  // namespace quellin
