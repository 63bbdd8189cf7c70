#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Analysis/EnergyOverRuns.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

SourceEnergy energy(const std::string& kind, std::optional<double> joules) {
  SourceEnergy result;
  result.sourceKind = kind;
  result.sourceLabel = "label of " + kind;
  result.confidence = "confidence in " + kind;
  result.joules = joules;
  return result;
}

TEST(EnergyOverRunsTest, ASpreadIsTheMeanAndTheExtremes) {
  EXPECT_EQ(spreadOf(std::vector{3.0, -1.0, 4.0}),
            (ValueSpread{.count = 3, .mean = 2, .lowest = -1, .highest = 4}));
  EXPECT_EQ(spreadOf(std::vector{7.0}), (ValueSpread{.count = 1, .mean = 7, .lowest = 7, .highest = 7}));
  EXPECT_EQ(spreadOf({}), std::nullopt);
}

TEST(EnergyOverRunsTest, EachSourceStandsForItselfInTheOrderOfAppearance) {
  const std::vector<std::vector<SourceEnergy>> runs{
      {energy("b", 2)}, {energy("a", 50), energy("b", 6)}, {energy("b", std::nullopt), energy("a", 70)}};
  EXPECT_THAT(energyOverRuns(runs),
              ElementsAre(EnergyOverRuns{.sourceKind = "b",
                                         .sourceLabel = "label of b",
                                         .confidence = "confidence in b",
                                         .joules = {.count = 2, .mean = 4, .lowest = 2, .highest = 6}},
                          EnergyOverRuns{.sourceKind = "a",
                                         .sourceLabel = "label of a",
                                         .confidence = "confidence in a",
                                         .joules = {.count = 2, .mean = 60, .lowest = 50, .highest = 70}}));
}

TEST(EnergyOverRunsTest, ASourceWithoutAnyEnergyIsLeftOut) {
  const std::vector<std::vector<SourceEnergy>> runs{{energy("a", std::nullopt)}};
  EXPECT_THAT(energyOverRuns(runs), IsEmpty());
}

}  // namespace
}  // namespace quellin
