#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "QuellinCore/Models/EnergyChannel.h"
#include "QuellinCore/Platform/Linux/EnergyZones.h"

namespace quellin {

/// What a counter gained between two readings, in µJ, when it wraps to 0 after `maxRange`. No value when it
/// fell and the range is not known or smaller than `before`, nor for a reading below 0.
[[nodiscard]] std::optional<std::int64_t> counterGain(std::int64_t before, std::int64_t after,
                                                      std::optional<std::int64_t> maxRange);

/// One zone and what it gained, in µJ; no gain when one of the two readings could not be had.
struct EnergyZoneGain {
  EnergyZone zone;
  std::optional<std::int64_t> microjoules;
};

/// The machine's totals in nanojoules, each the sum over all packages: "CPU Energy" (packages without their
/// graphics), "GPU Energy" (graphics) and "DRAM0" (memory). A total of which a part is unknown, or that has
/// no part, is left out: graphics alone say nothing of the processor.
[[nodiscard]] std::vector<EnergyChannel> energyTotals(std::span<const EnergyZoneGain> gains);

}  // namespace quellin
