#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSessionCoders.h"
#include "QuellinCore/Sessions/PowerSessionMetrics.h"
#include "QuellinCore/Sessions/SampleFacts.h"
#include "QuellinCore/Sessions/Storage/StoredFacts.h"
#include "Support/ProcessRows.h"
#include "Support/SampleStates.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing_support::emptyState;
using testing_support::energyRow;
using testing_support::stateOnBattery;

ProcessActivityDTO activity(std::string name, double score) {
  ProcessActivityDTO dto;
  dto.name = std::move(name);
  dto.impactScore = score;
  return dto;
}

TEST(SampleFactsTest, TheFirstPresentFigureOfATelemetryRowCountsWhenItIsAboveZero) {
  ProTelemetrySnapshot telemetry;
  telemetry.processes = {energyRow("a", 3, 4, 5),    energyRow("a", {}, 4, 5), energyRow("a", {}, {}, 5),
                         energyRow("a", {}, {}, {}), energyRow("a", 0, 4, 5),  energyRow("a", -1, 4, 5),
                         energyRow("a", {}, 0, 5)};
  EXPECT_THAT(contributions(telemetry), ElementsAre(Contribution{"a", true, 3}, Contribution{"a", true, 4},
                                                    Contribution{"a", true, 5}));
}

TEST(SampleFactsTest, TheImpactScoreOfAnActivityCountsWhenItIsAboveZero) {
  const std::vector<ProcessActivityDTO> rows{activity("a", 2), activity("b", 0), activity("c", -1)};
  EXPECT_THAT(contributions(rows), ElementsAre(Contribution{"a", false, 2}));
}

TEST(SampleFactsTest, NamesAreThoseThatReadingBackGives) {
  const std::vector<ProcessActivityDTO> rows{activity("bad \xFF name", 2)};
  const auto decoded = PowerSessionCoders::decoder.decode<std::vector<ProcessActivityDTO>>(
      PowerSessionCoders::encoder.encode(rows).value_or(""));
  ASSERT_TRUE(decoded.has_value());
  EXPECT_EQ(contributions(rows), contributions(*decoded));
}

TEST(SampleFactsTest, EveryStateHasFactsThatSurviveStorage) {
  std::vector<SystemPowerState> states{stateOnBattery(instantAt(0)), emptyState(instantAt(0))};
  states.push_back(stateOnBattery(instantAt(0)));
  states.back().battery->acConnected = true;  // supplement
  states.push_back(states.back());
  states.back().battery->wattage = 0;  // idle on external power
  states.push_back(states.back());
  states.back().power.emplace();  // silicon
  states.push_back(states.back());
  states.back().battery->isCharging = true;
  states.back().battery->wattage = 25;  // charging
  const std::vector<ProcessActivityDTO> activities{activity("clang", 4.25), activity("", 1e-300)};
  ProTelemetrySnapshot telemetry;
  telemetry.isAvailable = true;
  telemetry.sampledAt = instantAt(1741081260.75);
  telemetry.processes = {energyRow("a", 3, {}, {})};
  std::vector<std::string> labels;
  for (const auto& state : states) {
    const SystemPowerStateDTO dto(state);
    const auto facts = sampleFacts(dto, activities, &telemetry);
    ASSERT_TRUE(facts.has_value());
    EXPECT_EQ(facts->powerSourceKind, PowerSessionMetrics::powerSourceKind(state));
    EXPECT_EQ(facts->powerSourceLabel, PowerSessionMetrics::powerSourceLabel(state));
    EXPECT_EQ(facts->contributions.size(), 3U);
    EXPECT_EQ(facts->telemetrySampledAt, instantAt(1741081260)) << "as it is read back";
    const StoredFacts stored = storedFacts(*facts);
    EXPECT_EQ(factsFrom(stored.powerSource, stored.contributions), facts);
    labels.push_back(facts->powerSourceLabel);
  }
  EXPECT_THAT(labels, ElementsAre("Battery draw", "Unavailable", "Battery supplement", "On AC, battery idle",
                                  "IOReport silicon power", "Battery charge input"));
}

TEST(SampleFactsTest, DatesThatAreNotReadBackHaveNoFacts) {
  EXPECT_EQ(sampleFacts(SystemPowerStateDTO(stateOnBattery(instantAt(-1))), {}, nullptr), std::nullopt);
  constexpr double year10000 = 253'402'300'800;
  EXPECT_TRUE(sampleFacts(SystemPowerStateDTO(stateOnBattery(instantAt(0))), {}, nullptr).has_value());
  EXPECT_TRUE(
      sampleFacts(SystemPowerStateDTO(stateOnBattery(instantAt(year10000 - 0.5))), {}, nullptr).has_value());
  EXPECT_EQ(sampleFacts(SystemPowerStateDTO(stateOnBattery(instantAt(year10000))), {}, nullptr),
            std::nullopt);
  ProTelemetrySnapshot telemetry;
  telemetry.sampledAt = instantAt(-1);
  EXPECT_EQ(sampleFacts(SystemPowerStateDTO(stateOnBattery(instantAt(0))), {}, &telemetry), std::nullopt);
}

}  // namespace
}  // namespace quellin
