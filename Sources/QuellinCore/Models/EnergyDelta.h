#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "QuellinCore/Models/EnergyChannel.h"
#include "QuellinCore/Models/PowerMetrics.h"
#include "QuellinCore/Support/Clock.h"

namespace quellin {

/// Power out of the energy that counters gained over `interval`. A channel with a component's exact name is
/// that component's total and wins over the sum of the channels that merely mention it; a negative total
/// counts as 0 W. No value when no channel is recognised or the interval is not above 0. A sum that overflows
/// ends the process.
[[nodiscard]] std::optional<PowerMetrics> parseEnergyDelta(std::span<const EnergyChannel> channels,
                                                           Seconds interval);

/// Gains up to this magnitude can be added over so many channels whatever they are.
[[nodiscard]] std::int64_t largestEnergyGain(std::size_t channelCount);

/// Whether no channel gained or lost more than `largestEnergyGain`, so that `parseEnergyDelta` cannot end the
/// process.
[[nodiscard]] bool isWithinRange(std::span<const EnergyChannel> channels);

}  // namespace quellin
