#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "QuellinCore/Sessions/Analysis/SourceEnergy.h"

namespace quellin {

/// Where several values lie.
struct ValueSpread {
  std::int64_t count = 0;  ///< how many values, at least 1
  double mean = 0;         ///< of all
  double lowest = 0;       ///< of them
  double highest = 0;      ///< of them

  bool operator==(const ValueSpread&) const = default;
};

/// The spread of `values`; no value without any.
[[nodiscard]] std::optional<ValueSpread> spreadOf(std::span<const double> values);

/// What several runs of the same took of one power source.
struct EnergyOverRuns {
  std::string sourceKind;   ///< raw value of a `PowerReadingKind`
  std::string sourceLabel;  ///< what people are told
  std::string confidence;   ///< raw value of a `PowerReadingConfidence`
  ValueSpread joules;       ///< over the runs whose energy is known

  bool operator==(const EnergyOverRuns&) const = default;
};

/// Each power source for itself, in the order of first appearance. A source of which no run has the energy is
/// left out.
[[nodiscard]] std::vector<EnergyOverRuns> energyOverRuns(std::span<const std::vector<SourceEnergy>> runs);

}  // namespace quellin
