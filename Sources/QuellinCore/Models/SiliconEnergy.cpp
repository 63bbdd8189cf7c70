#include "QuellinCore/Models/SiliconEnergy.h"

#include "QuellinCore/Models/EnergyDelta.h"

namespace quellin {

SiliconEnergy& SiliconEnergy::operator+=(const SiliconEnergy& other) {
  cpuJoules += other.cpuJoules;
  gpuJoules += other.gpuJoules;
  aneJoules += other.aneJoules;
  ramJoules += other.ramJoules;
  totalJoules += other.totalJoules;
  return *this;
}

std::optional<SiliconEnergy> siliconEnergy(std::span<const EnergyChannel> channels) {
  // Watts over one second are joules.
  const auto power = parseEnergyDelta(channels, Seconds{1});
  if (!power) return std::nullopt;
  return SiliconEnergy{.cpuJoules = power->cpuPower,
                       .gpuJoules = power->gpuPower,
                       .aneJoules = power->anePower,
                       .ramJoules = power->ramPower,
                       .totalJoules = power->systemPower};
}

}  // namespace quellin
