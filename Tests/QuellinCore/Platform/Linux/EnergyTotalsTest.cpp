#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Platform/Linux/EnergyTotals.h"
#include "Support/Deaths.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::endedByTrap;

EnergyZoneGain gain(EnergyDomain domain, std::optional<std::int64_t> microjoules) {
  return {.zone = {.domain = domain, .directory = "", .maxRangeMicrojoules = std::nullopt},
          .microjoules = microjoules};
}

TEST(EnergyTotalsTest, ACounterThatFellHasWrapped) {
  EXPECT_EQ(counterGain(100, 250, 1000), 150);
  EXPECT_EQ(counterGain(100, 100, 1000), 0);
  EXPECT_EQ(counterGain(900, 50, 1000), 150);
  EXPECT_EQ(counterGain(1000, 0, 1000), 0) << "the range's end and 0 are one place";
}

TEST(EnergyTotalsTest, AWrapThatCannotBeUndoneIsNoGain) {
  EXPECT_EQ(counterGain(900, 50, std::nullopt), std::nullopt);
  EXPECT_EQ(counterGain(900, 50, 800), std::nullopt) << "the range is smaller than the reading";
  EXPECT_EQ(counterGain(-1, 50, 800), std::nullopt);
  EXPECT_EQ(counterGain(5, -50, 800), std::nullopt);
}

TEST(EnergyTotalsTest, GraphicsAreTakenOutOfThePackage) {
  const std::vector gains = {gain(EnergyDomain::package, 1000), gain(EnergyDomain::graphics, 300),
                             gain(EnergyDomain::memory, 200)};
  EXPECT_THAT(energyTotals(gains),
              ElementsAre(EnergyChannel{"CPU Energy", 700000}, EnergyChannel{"GPU Energy", 300000},
                          EnergyChannel{"DRAM0", 200000}));
}

TEST(EnergyTotalsTest, PackagesAddUp) {
  const std::vector gains = {gain(EnergyDomain::package, 1000), gain(EnergyDomain::memory, 10),
                             gain(EnergyDomain::package, 500), gain(EnergyDomain::memory, 20)};
  EXPECT_THAT(energyTotals(gains),
              ElementsAre(EnergyChannel{"CPU Energy", 1500000}, EnergyChannel{"DRAM0", 30000}));
}

TEST(EnergyTotalsTest, ATotalWithAnUnknownPartIsLeftOut) {
  const std::vector withoutPackage = {gain(EnergyDomain::package, 1000),
                                      gain(EnergyDomain::package, std::nullopt),
                                      gain(EnergyDomain::memory, 7)};
  EXPECT_THAT(energyTotals(withoutPackage), ElementsAre(EnergyChannel{"DRAM0", 7000}));
  const std::vector withoutGraphics = {gain(EnergyDomain::package, 1000),
                                       gain(EnergyDomain::graphics, std::nullopt)};
  EXPECT_THAT(energyTotals(withoutGraphics), IsEmpty());
}

TEST(EnergyTotalsTest, GraphicsWithoutTheirPackageSayNothingOfTheProcessor) {
  const std::vector gains = {gain(EnergyDomain::graphics, 300)};
  EXPECT_THAT(energyTotals(gains), ElementsAre(EnergyChannel{"GPU Energy", 300000}));
}

TEST(EnergyTotalsTest, NoZonesHaveNoTotals) { EXPECT_THAT(energyTotals({}), IsEmpty()); }

TEST(EnergyTotalsDeathTest, ATotalThatDoesNotFitEndsTheProcess) {
  const std::vector gains = {gain(EnergyDomain::package, std::numeric_limits<std::int64_t>::max() / 999)};
  EXPECT_EXIT(static_cast<void>(energyTotals(gains)), endedByTrap, "");
}

}  // namespace
}  // namespace quellin
