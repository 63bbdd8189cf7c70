#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinCore/Sessions/ContributorScores.h"
#include "Support/ProcessRows.h"

namespace quellin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::activity;
using testing_support::energyRow;
using testing_support::telemetry;

PowerSessionContributor measured(std::string name, double score) {
  return {std::move(name), "powermetrics", score, "derived"};
}

PowerSessionContributor sampled(std::string name, double score) {
  return {std::move(name), "proc_pid_rusage", score, "estimated"};
}

TEST(ContributorScoresTest, AddsUpByNameAndOrigin) {
  ContributorScores scores;
  scores.add(contributions(telemetry(0, {energyRow("clang", 3.0), energyRow("clang", 4.0)})));
  scores.add(contributions(std::vector{ProcessActivityDTO(activity("clang", 5))}));
  EXPECT_THAT(scores.top(), ElementsAre(measured("clang", 7), sampled("clang", 5)));
}

TEST(ContributorScoresTest, TakesTheFirstFigureThatIsThere) {
  ContributorScores scores;
  scores.add(
      contributions(telemetry(0, {energyRow("impact", 2.0, 30.0, 300.0), energyRow("cpu", {}, 4.0, 300.0),
                                  energyRow("wakeups", {}, {}, 3.0), energyRow("nothing", {})})));
  EXPECT_THAT(scores.top(), ElementsAre(measured("cpu", 4), measured("wakeups", 3), measured("impact", 2)));
}

TEST(ContributorScoresTest, LeavesOutWhatDoesNotCount) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  ContributorScores scores;
  scores.add(contributions(telemetry(
      0, {energyRow("zero", 0.0, 5.0), energyRow("negative", -1.0, 5.0), energyRow("nan", nan, 5.0)})));
  scores.add(contributions(
      std::vector{ProcessActivityDTO(activity("idle", 0)), ProcessActivityDTO(activity("less", -2))}));
  EXPECT_THAT(scores.top(), IsEmpty());
}

TEST(ContributorScoresTest, NamesTheFiveHighestAndOfEqualOnesTheEarlier) {
  ContributorScores scores;
  for (const char* name : {"a", "b", "c", "d", "e", "f"}) scores.add({name, false, 1});
  scores.add({"e", false, 1});
  scores.add({"f", true, 0.5});
  EXPECT_THAT(scores.top(), ElementsAre(sampled("e", 2), sampled("a", 1), sampled("b", 1), sampled("c", 1),
                                        sampled("d", 1)));
}

TEST(ContributorScoresTest, IdentifiesAContributorByNameAndSource) {
  EXPECT_EQ(measured("clang", 1).id(), "clang-powermetrics");
}

}  // namespace
}  // namespace quellin
