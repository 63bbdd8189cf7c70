#include <gmock/gmock.h>

#include "QuellinCore/Models/SiliconEnergy.h"

namespace quellin {
namespace {

using Channels = std::vector<EnergyChannel>;

TEST(SiliconEnergyTest, IsWhatEachComponentGained) {
  const Channels channels{{"CPU Energy", 1'500'000'000}, {"ECPU", 99},           {"GPU0", 250'000'000},
                          {"ANE0", 125'000'000},         {"DRAM0", 500'000'000}, {"PCIe", 1}};
  EXPECT_EQ(
      siliconEnergy(channels),
      (SiliconEnergy{
          .cpuJoules = 1.5, .gpuJoules = 0.25, .aneJoules = 0.125, .ramJoules = 0.5, .totalJoules = 2.375}));
}

TEST(SiliconEnergyTest, IsNotKnownWithoutAChannelOfAComponent) {
  EXPECT_EQ(siliconEnergy(Channels{}), std::nullopt);
  EXPECT_EQ(siliconEnergy(Channels{{"PCIe", 5}}), std::nullopt);
}

TEST(SiliconEnergyTest, AddsUp) {
  SiliconEnergy energy{.cpuJoules = 1, .gpuJoules = 2, .aneJoules = 3, .ramJoules = 4, .totalJoules = 10};
  energy += {.cpuJoules = 0.5, .gpuJoules = 0.25, .aneJoules = 0.125, .ramJoules = 1, .totalJoules = 1.875};
  EXPECT_EQ(
      energy,
      (SiliconEnergy{
          .cpuJoules = 1.5, .gpuJoules = 2.25, .aneJoules = 3.125, .ramJoules = 5, .totalJoules = 11.875}));
}

}  // namespace
}  // namespace quellin
