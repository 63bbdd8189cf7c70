#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/SessionCoverage.h"
#include "Support/CaseNames.h"
#include "Support/MemoryStore.h"
#include "Support/SampleStates.h"

namespace quellin {
namespace {

using testing_support::namedBy;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

struct Case {
  std::string name;
  std::vector<double> readings;  // seconds since the session started, 10 seconds asked for
  double end;
  SessionCoverage expected;
};

class SessionCoverageTableTest : public testing::TestWithParam<Case> {};

TEST_P(SessionCoverageTableTest, IsAsTheTableSays) {
  CoverageBuilder builder(instantAt(1000), 10);
  for (const double reading : GetParam().readings) builder.ingestReading(instantAt(1000 + reading));
  EXPECT_EQ(builder.materialize(instantAt(1000 + GetParam().end)), GetParam().expected);
}

TEST_P(SessionCoverageTableTest, ItsGapsAreAsManyAndAsLongAsItSays) {
  CoverageBuilder builder(instantAt(1000), 10);
  std::vector<std::optional<ReadingGap>> gaps;
  for (const double reading : GetParam().readings) {
    gaps.push_back(builder.ingestReading(instantAt(1000 + reading)));
  }
  gaps.push_back(builder.lastGap(instantAt(1000 + GetParam().end)));
  std::erase(gaps, std::nullopt);
  std::optional<double> longest;
  for (const auto& gap : gaps) longest = std::max(longest.value_or(0), gap->endSeconds - gap->startSeconds);
  EXPECT_EQ(std::ssize(gaps), GetParam().expected.gapCount);
  EXPECT_EQ(longest, GetParam().expected.longestGapSeconds);
}

INSTANTIATE_TEST_SUITE_P(
    Coverages, SessionCoverageTableTest,
    testing::Values(Case{"ARegularSessionIsWhole", {0, 10, 20, 30}, 30, {30, 30, 0, {}}},
                    Case{"ThreeIntervalsAreNoGap", {0, 30}, 30, {30, 30, 0, {}}},
                    Case{"MoreThanThreeIntervalsAreAGap", {0, 30.5, 40}, 40, {40, 9.5, 1, 30.5}},
                    Case{"TheLongestOfSeveralGapsComesFirst", {0, 100, 110, 160}, 160, {160, 10, 2, 100}},
                    Case{"TheLongestOfSeveralGapsComesLast", {0, 50, 60, 160}, 160, {160, 10, 2, 100}},
                    Case{"AGapBeforeTheFirstReading", {40, 50}, 50, {50, 10, 1, 40}},
                    Case{"AGapAfterTheLastReading", {0, 10}, 100, {100, 10, 1, 90}},
                    Case{"TheEdgesAreCoveredWhenTheyAreNear", {5, 15}, 40, {40, 40, 0, {}}},
                    Case{"OneReadingSpeaksForWhatIsNear", {20}, 40, {40, 40, 0, {}}},
                    Case{"WithoutAReadingAllIsAGap", {}, 20, {20, 0, 1, 20}},
                    Case{"NoTimeHasNoGap", {}, 0, {0, 0, 0, {}}},
                    Case{"AReadingOfNoTimeCoversNone", {0}, 0, {0, 0, 0, {}}},
                    Case{"ReadingsBeforeTheStartCoverNothing", {-50, -40, 10}, 10, {10, 10, 0, {}}},
                    Case{"AClockSetBackCoversNothingTwice", {0, 20, 10, 20, 30}, 30, {30, 30, 0, {}}},
                    Case{"AnEndBeforeTheStartIsNoTime", {-60}, -60, {0, 0, 0, {}}},
                    Case{"AReadingAtNoTimeIsPassedOver", {0, nan, 20}, 20, {20, 20, 0, {}}}),
    namedBy(&Case::name));

TEST(SessionCoverageTest, ThePercentageIsOfTheDurationAndNeedsOne) {
  const std::vector<std::pair<SessionCoverage, std::optional<double>>> cases{
      {{40, 10, 1, 30}, 25}, {{30, 30, 0, {}}, 100}, {{20, 0, 1, 20}, 0},
      {{0, 0, 0, {}}, {}},   {{-5, 0, 0, {}}, {}},   {{nan, 0, 0, {}}, {}}};
  for (const auto& [coverage, expected] : cases) {
    EXPECT_EQ(coverage.coveredPercent(), expected) << coverage.coveredSeconds;
  }
}

TEST(SessionCoverageTest, AGapIsMeasuredByTheIntervalAskedFor) {
  EXPECT_EQ(longestCoveredSeconds(10), 30);
  EXPECT_EQ(longestCoveredSeconds(2), 6);
  EXPECT_EQ(longestCoveredSeconds(1), 5) << "taking a reading takes time of its own";
  for (const double none : {0.0, -1.0, nan}) EXPECT_EQ(longestCoveredSeconds(none), infinity) << none;
}

TEST(SessionCoverageTest, ALookAtASessionLeavesItOpen) {
  CoverageBuilder builder(instantAt(0), 10);
  EXPECT_EQ(builder.materialize(instantAt(100)), (SessionCoverage{100, 0, 1, 100}));
  builder.ingestReading(instantAt(10));
  EXPECT_EQ(builder.materialize(instantAt(100)), (SessionCoverage{100, 10, 1, 90}));
  builder.ingestReading(instantAt(20));
  EXPECT_EQ(builder.materialize(instantAt(20)), (SessionCoverage{20, 20, 0, {}}));
}

class StoredCoverageTest : public testing::Test {
 protected:
  void append(const SystemPowerState& state) const {
    memory.store->appendSample(session, state, {}, std::nullopt);
  }
  [[nodiscard]] SessionCoverage coverage() const { return memory.store->coverage(session); }

  testing_support::MemoryStore memory;
  std::shared_ptr<PowerSession> session = memory.start(1000);  // 2 seconds asked for
};

TEST_F(StoredCoverageTest, WithoutSamplesThereIsNothingToCover) {
  memory.store->stop(session, instantAt(2000));
  EXPECT_EQ(coverage(), SessionCoverage());
  EXPECT_EQ(memory.store->summary(session).durationSeconds, 0) << "in agreement with the summary";
}

TEST_F(StoredCoverageTest, SamplesWithoutWattsAreNoReadings) {
  append(testing_support::stateOnBattery(instantAt(1000)));
  append(testing_support::emptyState(instantAt(1003)));
  append(testing_support::stateOnBattery(instantAt(1006)));
  append(testing_support::emptyState(instantAt(1010)));
  append(testing_support::emptyState(instantAt(1014)));
  EXPECT_EQ(coverage(), (SessionCoverage{14, 6, 1, 8}));
}

TEST_F(StoredCoverageTest, LastsAsLongAsTheSummary) {
  append(testing_support::stateOnBattery(instantAt(1000)));
  append(testing_support::stateOnBattery(instantAt(1004)));
  memory.store->stop(session, instantAt(1002));
  EXPECT_EQ(coverage(), (SessionCoverage{4, 4, 0, {}})) << "a sample after the end counts";
  memory.store->stop(session, instantAt(1100));
  EXPECT_EQ(coverage(), (SessionCoverage{100, 4, 1, 96}));
  EXPECT_EQ(coverage().durationSeconds, memory.store->summary(session).durationSeconds);
}

TEST_F(StoredCoverageTest, SamplesStoredOutOfOrderCoverTheirTime) {
  for (const double second : {1004, 1000, 1002}) append(testing_support::stateOnBattery(instantAt(second)));
  EXPECT_EQ(coverage(), (SessionCoverage{4, 4, 0, {}}));
}

}  // namespace
}  // namespace quellin
