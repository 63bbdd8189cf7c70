#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Models/ProcessActivity.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "Support/CaseNames.h"

namespace quellin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing_support::namedBy;

/// What a process gained during the interval.
struct Gain {
  std::uint64_t cpuNanoseconds = 0;
  std::uint64_t wakeups = 0;
  std::uint64_t diskBytes = 0;
  std::uint64_t energyNanojoules = 0;
};

constexpr std::uint64_t start = 1'000'000;

ProcessSample sampleAfter(std::int32_t pid, const Gain& gain) {
  return {.pid = pid,
          .name = "process " + std::to_string(pid),
          .cpuTimeNanoseconds = start + gain.cpuNanoseconds,
          .wakeups = start + gain.wakeups,
          .diskBytes = start + gain.diskBytes,
          .energyNanojoules = start + gain.energyNanojoules,
          .startToken = {}};
}

std::vector<ProcessActivityInfo> activityOf(const std::map<std::int32_t, Gain>& gains, double seconds) {
  ProcessSamples before;
  ProcessSamples after;
  for (const auto& [pid, gain] : gains) {
    before[pid] = sampleAfter(pid, {});
    after[pid] = sampleAfter(pid, gain);
  }
  return processActivity(before, after, Seconds{seconds});
}

struct ScoreCase {
  std::string name;
  Gain gain;
  double seconds;
  double score;
};

class ProcessScoreTest : public ::testing::TestWithParam<ScoreCase> {};

TEST_P(ProcessScoreTest, AddsCappedTerms) {
  const auto activity = activityOf({{1, GetParam().gain}}, GetParam().seconds);
  ASSERT_EQ(activity.size(), 1U);
  EXPECT_DOUBLE_EQ(activity[0].impactScore, GetParam().score);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ProcessScoreTest,
    ::testing::Values(ScoreCase{"CPUAndWakeups", {250'000'000, 50, 0, 0}, 0.5, 70},
                      ScoreCase{"CPUIsNotCapped", {4'000'000'000, 0, 0, 0}, 1, 400},
                      ScoreCase{"WakeupsBelowTheCap", {0, 400, 0, 0}, 1, 80},
                      ScoreCase{"WakeupsAtTheCap", {0, 500, 0, 0}, 1, 100},
                      ScoreCase{"WakeupsAboveTheCap", {0, 1000, 0, 0}, 1, 100},
                      ScoreCase{"DiskBelowTheCap", {0, 0, 20'000'000, 0}, 1, 10},
                      ScoreCase{"DiskAboveTheCap", {0, 0, 900'000'000, 0}, 1, 100},
                      ScoreCase{"EnergyBelowTheCap", {0, 0, 0, 2'000'000'000}, 1, 20},
                      ScoreCase{"EnergyAboveTheCap", {0, 0, 0, 50'000'000'000}, 1, 100},
                      ScoreCase{
                          "AllTerms", {500'000'000, 100, 2'000'000, 1'000'000'000}, 1, 50 + 20 + 1 + 10}),
    namedBy(&ScoreCase::name));

TEST(ProcessActivityTest, GivesRatesPerSecond) {
  EXPECT_THAT(activityOf({{7, {250'000'000, 50, 1000, 500'000'000}}}, 0.5),
              ElementsAre(ProcessActivityInfo{.id = 7,
                                              .pid = 7,
                                              .name = "process 7",
                                              .cpuPercent = 50,
                                              .wakeupsPerSecond = 100,
                                              .diskBytesPerSecond = 2000,
                                              .energyWattsEstimate = 1.0,
                                              .impactScore = 50 + 20 + 0.001 + 10}));
}

TEST(ProcessActivityTest, EstimatesWattsFromTheEnergyCounter) {
  EXPECT_EQ(activityOf({{1, {0, 0, 0, 2'000'000'000}}}, 1)[0].energyWattsEstimate, 2.0);
  EXPECT_EQ(activityOf({{1, {1'000'000'000, 0, 0, 0}}}, 1)[0].energyWattsEstimate, std::nullopt);
}

TEST(ProcessActivityTest, DropsWhatDoesNextToNothing) {
  EXPECT_THAT(activityOf({{1, {}}}, 1), IsEmpty());
  EXPECT_THAT(activityOf({{1, {500'000, 0, 0, 0}}}, 1), IsEmpty());  // exactly 0.05 percent
  EXPECT_EQ(activityOf({{1, {501'000, 0, 0, 0}}}, 1).size(), 1U);
}

TEST(ProcessActivityTest, CountsACounterThatWentBackwardsAsStill) {
  ProcessSample before = sampleAfter(1, {9'000'000'000, 900, 900'000'000, 9'000'000'000});
  const ProcessSample after = sampleAfter(1, {});
  EXPECT_THAT(processActivity({{1, before}}, {{1, after}}, Seconds{1}), IsEmpty());
  before.cpuTimeNanoseconds = 0;
  EXPECT_EQ(processActivity({{1, before}}, {{1, after}}, Seconds{1})[0].impactScore, 0.1);
}

TEST(ProcessActivityTest, CountsACounterThatBecameReadableAsStill) {
  ProcessSample before = sampleAfter(1, {});
  ProcessSample after = sampleAfter(1, {1'000'000'000, 900, 900'000'000, 9'000'000'000});
  before.wakeups = before.diskBytes = before.energyNanojoules = std::nullopt;
  EXPECT_EQ(processActivity({{1, before}}, {{1, after}}, Seconds{1})[0].impactScore, 100);
  std::swap(before.wakeups, after.wakeups);
  std::swap(before.diskBytes, after.diskBytes);
  std::swap(before.energyNanojoules, after.energyNanojoules);
  EXPECT_EQ(processActivity({{1, before}}, {{1, after}}, Seconds{1})[0].impactScore, 100);
}

TEST(ProcessActivityTest, SkipsProcessesOfOneSnapshotOnly) {
  const ProcessSamples before{{1, sampleAfter(1, {})}, {2, sampleAfter(2, {})}};
  const ProcessSamples after{{2, sampleAfter(2, {1'000'000'000, 0, 0, 0})},
                             {3, sampleAfter(3, {1'000'000'000, 0, 0, 0})}};
  const auto activity = processActivity(before, after, Seconds{1});
  ASSERT_EQ(activity.size(), 1U);
  EXPECT_EQ(activity[0].pid, 2);
}

TEST(ProcessActivityTest, SkipsAProcessThatTookOverAnID) {
  ProcessSample before = sampleAfter(1, {});
  ProcessSample after = sampleAfter(1, {1'000'000'000, 0, 0, 0});
  before.startToken = 5;
  after.startToken = 6;
  EXPECT_THAT(processActivity({{1, before}}, {{1, after}}, Seconds{1}), IsEmpty());
  after.startToken = 5;
  EXPECT_EQ(processActivity({{1, before}}, {{1, after}}, Seconds{1}).size(), 1U);
}

TEST(ProcessActivityTest, TakesTheNameOfTheLaterSnapshot) {
  ProcessSample before = sampleAfter(1, {});
  before.name = "before";
  ProcessSample after = sampleAfter(1, {1'000'000'000, 0, 0, 0});
  after.name = "after";
  EXPECT_EQ(processActivity({{1, before}}, {{1, after}}, Seconds{1})[0].name, "after");
}

TEST(ProcessActivityTest, SortsByScoreAndKeepsTheOrderOfEqualScores) {
  std::map<std::int32_t, Gain> gains;
  for (std::int32_t pid = 1; pid <= 40; ++pid)
    gains[pid] = {.cpuNanoseconds = pid % 2 == 0 ? 500'000'000U : 100'000'000U};
  const auto activity = activityOf(gains, 1);
  ASSERT_EQ(activity.size(), 40U);
  for (std::size_t index = 0; index < 20; ++index) {
    EXPECT_EQ(activity[index].pid, static_cast<std::int32_t>(2 * index + 2));
    EXPECT_EQ(activity[index + 20].pid, static_cast<std::int32_t>(2 * index + 1));
  }
}

TEST(ProcessActivityInfoTest, DescribesEveryFieldInOrder) {
  EXPECT_EQ(encodeJSON(ProcessActivityInfo{1, 2, "n", 3.5, 4.5, 5.5, 6.5, 7.5}),
            R"({"id":1,"pid":2,"name":"n","cpuPercent":3.5,"wakeupsPerSecond":4.5,"diskBytesPerSecond":5.5,)"
            R"("energyWattsEstimate":6.5,"impactScore":7.5})");
}

}  // namespace
}  // namespace quellin
