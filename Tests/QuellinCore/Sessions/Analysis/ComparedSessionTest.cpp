#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Analysis/ComparedSession.h"
#include "Support/MemoryStore.h"
#include "Support/SampleStates.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using testing_support::emptyState;
using testing_support::stateDrawing;

TEST(ComparedSessionTest, HasTheReadingsOfEachKindAndWhatTheyComeTo) {
  const testing_support::MemoryStore memory;
  const auto session = memory.start(1000);
  const auto append = [&](const SystemPowerState& state) {
    memory.store->appendSample(session, state, {}, std::nullopt);
  };
  append(emptyState(instantAt(1000)));
  append(stateDrawing(instantAt(1002), 10, 80));
  append(stateDrawing(instantAt(1004), 14, 80));
  append(emptyState(instantAt(1006)));
  append(emptyState(instantAt(1007)));
  SystemPowerState silicon = emptyState(instantAt(1008));
  silicon.power.emplace().systemPower = 4;
  append(silicon);
  append(stateDrawing(instantAt(1010), 18, 80));
  memory.store->stop(session, instantAt(1020));
  const ComparedSession result = comparedSession(*memory.store, session);
  EXPECT_EQ(result.session.id, session->id());
  EXPECT_TRUE(result.isCompleted());
  EXPECT_EQ(result.seconds, 20);
  EXPECT_EQ(result.coverage.durationSeconds, 20);
  EXPECT_EQ(result.coverage.gapCount, 1);
  ASSERT_THAT(result.sources, SizeIs(2));
  EXPECT_EQ(result.sources[0].energy.sourceKind, "batteryDischarge");
  EXPECT_EQ(result.sources[0].energy.joules, 24);
  EXPECT_THAT(result.sources[0].watts, ElementsAre(10, 14, 18));
  EXPECT_TRUE(result.sources[0].supply.onBattery);
  EXPECT_FALSE(result.sources[0].supply.onCharger);
  EXPECT_THAT(result.sources[1].watts, ElementsAre(4));
  EXPECT_FALSE(result.sources[1].supply.onBattery) << "nothing is known of a battery";
  EXPECT_FALSE(result.sources[1].supply.onCharger);
  EXPECT_TRUE(result.sources[1].supply.onUnknown);
  EXPECT_FALSE(result.sources[0].supply.onUnknown);
  EXPECT_TRUE(result.lacksEnergy);
}

TEST(ComparedSessionTest, LacksEnergyWhereAStretchHasNoReadings) {
  const testing_support::MemoryStore memory;
  const auto session = memory.start(1000);
  const auto append = [&](const SystemPowerState& state) {
    memory.store->appendSample(session, state, {}, std::nullopt);
  };
  append(stateDrawing(instantAt(1001), 10, 80));
  append(stateDrawing(instantAt(1002), 10, 80));
  EXPECT_FALSE(comparedSession(*memory.store, session).lacksEnergy);
  append(emptyState(instantAt(1003)));
  append(emptyState(instantAt(1010)));
  const ComparedSession result = comparedSession(*memory.store, session);
  EXPECT_THAT(result.sources, SizeIs(1)) << "of one kind, and yet not of the whole time";
  EXPECT_TRUE(result.lacksEnergy);
}

TEST(ComparedSessionTest, KnowsWhichReadingsAChargerWasConnectedFor) {
  const testing_support::MemoryStore memory;
  const auto session = memory.start(1000);
  SystemPowerState state = stateDrawing(instantAt(1001), 10, 80);
  state.battery->acConnected = true;
  memory.store->appendSample(session, state, {}, std::nullopt);
  const ComparedSession result = comparedSession(*memory.store, session);
  ASSERT_THAT(result.sources, SizeIs(1));
  EXPECT_TRUE(result.sources[0].supply.onCharger);
  EXPECT_FALSE(result.sources[0].supply.onBattery);
}

TEST(ComparedSessionTest, IsCompletedOnlyWhenItRanToItsEnd) {
  const testing_support::MemoryStore memory;
  const auto session = memory.start(1000);
  EXPECT_FALSE(comparedSession(*memory.store, session).isCompleted());
  memory.store->interrupt(session, instantAt(1010));
  EXPECT_FALSE(comparedSession(*memory.store, session).isCompleted());
}

}  // namespace
}  // namespace quellin
