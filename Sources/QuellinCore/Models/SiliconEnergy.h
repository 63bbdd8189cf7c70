#pragma once

#include <optional>
#include <span>
#include <tuple>

#include "QuellinCore/Models/EnergyChannel.h"
#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// Energy that the silicon used by the machine's own counters, in joules. It is the quantity of the silicon
/// power reading, counted instead of sampled: less than what the whole machine draws.
struct SiliconEnergy {
  double cpuJoules = 0;    ///< of the processor
  double gpuJoules = 0;    ///< of the graphics
  double aneJoules = 0;    ///< of the neural engine
  double ramJoules = 0;    ///< of the memory
  double totalJoules = 0;  ///< of the four together

  static constexpr auto fields() {
    return std::tuple{
        Field{"cpuJoules", &SiliconEnergy::cpuJoules}, Field{"gpuJoules", &SiliconEnergy::gpuJoules},
        Field{"aneJoules", &SiliconEnergy::aneJoules}, Field{"ramJoules", &SiliconEnergy::ramJoules},
        Field{"totalJoules", &SiliconEnergy::totalJoules}};
  }

  /// Adds the energy of a later span.
  SiliconEnergy& operator+=(const SiliconEnergy& other);
  bool operator==(const SiliconEnergy&) const = default;
};

/// The energy in what counters gained, component by component as `parseEnergyDelta` tells them apart. No
/// value when no channel is recognised.
[[nodiscard]] std::optional<SiliconEnergy> siliconEnergy(std::span<const EnergyChannel> channels);

}  // namespace quellin
