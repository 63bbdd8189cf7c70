#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/Analysis/SessionAnalysis.h"
#include "Support/MemoryStore.h"
#include "Support/SampleStates.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::emptyState;
using testing_support::stateOnBattery;

class SessionAnalysisTest : public testing::Test {
 protected:
  void append(const SystemPowerState& state) const {
    memory.store->appendSample(session, state, {}, std::nullopt);
  }
  [[nodiscard]] SessionAnalysis analysis() const { return analyseSession(*memory.store, session); }

  testing_support::MemoryStore memory;
  std::shared_ptr<PowerSession> session = memory.start(1000);  // 2 seconds asked for
};

TEST_F(SessionAnalysisTest, ASessionWithoutSamplesHasNothingButItself) {
  memory.store->stop(session, instantAt(2000));
  const SessionAnalysis result = analysis();
  EXPECT_EQ(result.session, PowerSessionMetadataDTO(*session));
  EXPECT_EQ(result.summary, PowerSessionSummary::empty());
  EXPECT_EQ(result.coverage, SessionCoverage());
  EXPECT_THAT(result.gaps, IsEmpty());
  EXPECT_THAT(result.series.seconds, IsEmpty());
  EXPECT_EQ(result.series.startedAt, 1000);
}

TEST_F(SessionAnalysisTest, AgreesWithTheStore) {
  for (const double second : {1001, 1003, 1005, 1020}) append(stateOnBattery(instantAt(second)));
  SystemPowerState silicon = emptyState(instantAt(1022));
  silicon.power.emplace().systemPower = 4;
  append(silicon);
  append(emptyState(instantAt(1024)));
  memory.store->addCost(session, {.cpuSeconds = 0.5, .bytesWritten = 4096});
  memory.store->stop(session, instantAt(1100));
  const SessionAnalysis result = analysis();
  EXPECT_EQ(static_cast<const SessionReport&>(result), memory.store->report(session));
  EXPECT_EQ(result.sourceTotals, totalsBySource(result.summary.powerSegments));
  EXPECT_THAT(result.series.seconds, ElementsAre(1, 3, 5, 20, 22, 24));
  EXPECT_THAT(result.series.source, ElementsAre(0, 0, 0, 0, 1, 2));
  EXPECT_EQ(result.series.watts, (SeriesColumn<double>{{12.5, 12.5, 12.5, 12.5, 4}, {{5, 1}}}));
}

TEST_F(SessionAnalysisTest, ItsGapsAreThoseThatTheCoverageCounts) {
  append(stateOnBattery(instantAt(1010)));
  append(stateOnBattery(instantAt(1016)));
  append(emptyState(instantAt(1020)));
  append(stateOnBattery(instantAt(1022.5)));
  memory.store->stop(session, instantAt(1100));
  const SessionAnalysis result = analysis();
  EXPECT_EQ(result.longestCoveredSeconds, 6);
  EXPECT_THAT(result.gaps, ElementsAre(ReadingGap{0, 10}, ReadingGap{16, 22.5}, ReadingGap{22.5, 100}));
  EXPECT_EQ(result.coverage.gapCount, 3);
}

TEST_F(SessionAnalysisTest, WithoutReadingsAllOfItIsAGap) {
  append(emptyState(instantAt(1000)));
  append(emptyState(instantAt(1001)));
  EXPECT_THAT(analysis().gaps, ElementsAre(ReadingGap{0, 1}));
  EXPECT_EQ(analysis().coverage.gapCount, 1);
}

TEST_F(SessionAnalysisTest, WithoutAnIntervalNothingIsTooLong) {
  memory.store->stop(session, instantAt(1000));
  session = memory.store->start("No interval", PowerSessionSource::app, 0, instantAt(1000));
  append(stateOnBattery(instantAt(1000)));
  append(stateOnBattery(instantAt(99000)));
  EXPECT_EQ(analysis().longestCoveredSeconds, std::nullopt);
  EXPECT_THAT(analysis().gaps, IsEmpty());
}

}  // namespace
}  // namespace quellin
