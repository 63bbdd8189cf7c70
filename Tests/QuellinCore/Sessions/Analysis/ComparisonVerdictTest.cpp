#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Analysis/ComparisonVerdict.h"
#include "Support/CaseNames.h"

namespace quellin {
namespace {

using testing_support::caseName;
using testing_support::namedBy;

using Outcome = ComparisonOutcome;

DifferenceInterval intervalFrom(double lower, double upper) {
  return {.lower = lower,
          .upper = upper,
          .level = 0.95,
          .method = "a method",
          .blockLengthA = std::nullopt,
          .blockLengthB = std::nullopt};
}

// A's mean is 20.
ComparedFigure figureFrom(double lower, double upper) {
  ComparedFigure figure;
  figure.meanA = 20;
  figure.meanB = 20 + (lower + upper) / 2;
  figure.interval = intervalFrom(lower, upper);
  return figure;
}

// B lies that far above the threshold.
KindComparison kindOver(double lower, double upper) {
  KindComparison comparison;
  comparison.sourceKind = "batteryDischarge";
  comparison.figures = {figureFrom(0, 1), figureFrom(1000, 1001)};
  comparison.overThreshold = intervalFrom(lower, upper);
  return comparison;
}

KindComparison unjudgedKind(const std::string& kind) {
  KindComparison comparison = kindOver(1, 2);
  comparison.sourceKind = kind;
  comparison.overThreshold.reset();
  return comparison;
}

struct Judged {
  double lower;
  double upper;
  Outcome outcome;
};

class OutcomeTest : public testing::TestWithParam<Judged> {};

TEST_P(OutcomeTest, IsThat) {
  EXPECT_EQ(outcomeOf(figureFrom(GetParam().lower, GetParam().upper)), GetParam().outcome);
}

INSTANTIATE_TEST_SUITE_P(
    Intervals, OutcomeTest,
    testing::Values(Judged{0.1, 2, Outcome::more}, Judged{-2, -0.1, Outcome::less},
                    Judged{-0.1, 2, Outcome::indistinct}, Judged{-2, 0.1, Outcome::indistinct},
                    Judged{0, 2, Outcome::indistinct}, Judged{-2, 0, Outcome::indistinct},
                    Judged{1e-15, 2e-15, Outcome::indistinct}, Judged{-2e-15, -1e-15, Outcome::indistinct}),
    namedBy([](const Judged& judged) { return caseName(judged.lower) + "_to_" + caseName(judged.upper); }));

TEST(ComparisonVerdictTest, WithoutAnIntervalNothingIsCertain) {
  ComparedFigure figure = figureFrom(1, 2);
  figure.interval.reset();
  EXPECT_EQ(outcomeOf(figure), Outcome::uncertain);
  EXPECT_FALSE(hasNoWidth(ComparedFigure{}));
}

TEST(ComparisonVerdictTest, ValuesThatDoNotVaryHaveAnIntervalOfNoWidth) {
  EXPECT_TRUE(hasNoWidth(figureFrom(3, 3)));
  EXPECT_TRUE(hasNoWidth(figureFrom(3, 3 + 1e-12)));
  EXPECT_FALSE(hasNoWidth(figureFrom(3, 3.001)));
}

struct Threshold {
  const char* what;
  KindComparison kind;
  std::optional<bool> isExceeded;
};

class ThresholdTest : public testing::TestWithParam<Threshold> {};

TEST_P(ThresholdTest, IsExceededByTheWholeInterval) {
  EXPECT_EQ(exceeds(GetParam().kind), GetParam().isExceeded);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ThresholdTest,
                         testing::Values(Threshold{"all of it above", kindOver(0.1, 1), true},
                                         Threshold{"touching it", kindOver(0, 1), false},
                                         Threshold{"reaching below it", kindOver(-0.1, 28), false},
                                         Threshold{"all of it below", kindOver(-5, -4), false},
                                         Threshold{"above by rounding", kindOver(1e-15, 2e-15), false},
                                         Threshold{"no interval", unjudgedKind("batteryDischarge"),
                                                   std::nullopt}),
                         namedBy(&Threshold::what));

TEST(ComparisonVerdictTest, UseIsJudgedAndRepeatsByTheirEnergyOnly) {
  for (const char* use : {"batteryDischarge", "batterySupplement", "ioReportSiliconPower"}) {
    EXPECT_TRUE(isJudged(use, ComparedQuantity::joules)) << use;
    EXPECT_TRUE(isJudged(use, ComparedQuantity::readingsWatts)) << use;
    EXPECT_FALSE(isJudged(use, ComparedQuantity::averageWatts)) << use;
  }
  EXPECT_FALSE(isJudged("batteryChargeInput", ComparedQuantity::joules));
  EXPECT_FALSE(isJudged("batteryChargeInput", ComparedQuantity::readingsWatts));
}

TEST(ComparisonVerdictTest, TheThresholdIsNotKeptWhileAKindOfUseIsNotJudged) {
  SessionComparison comparison;
  comparison.kinds = {kindOver(-2, -1)};
  comparison.notCompared = {{"Input", "batteryChargeInput", "only B has readings of it"},
                            {"session 1", std::nullopt, "is active"}};
  judgeThreshold(comparison);
  EXPECT_EQ(comparison.exceedsThreshold, false) << "neither is a kind of use";
  EXPECT_THAT(unjudgedUses(comparison), testing::IsEmpty());

  comparison.notCompared.push_back({"Draw", "batteryDischarge", "only B has readings of it"});
  comparison.kinds.push_back(unjudgedKind("ioReportSiliconPower"));
  comparison.kinds.back().sourceLabel = "Silicon";
  comparison.kinds.back().figures.front().interval.reset();
  comparison.kinds.back().figures.front().noInterval = "too few";
  comparison.exceedsThreshold.reset();
  judgeThreshold(comparison);
  EXPECT_EQ(comparison.exceedsThreshold, std::nullopt);
  EXPECT_THAT(unjudgedUses(comparison),
              testing::ElementsAre("Silicon (too few)", "Draw (only B has readings of it)"));

  comparison.kinds.front() = kindOver(3, 4);
  judgeThreshold(comparison);
  EXPECT_EQ(comparison.exceedsThreshold, true) << "one that exceeds is enough";
}

TEST(ComparisonVerdictTest, OneKindThatExceedsIsEnoughAndNoneThatCanBeJudgedIsNoAnswer) {
  SessionComparison comparison;
  comparison.kinds = {kindOver(3, 4), kindOver(-2, -1), unjudgedKind("batteryChargeInput")};
  judgeThreshold(comparison);
  EXPECT_EQ(comparison.exceedsThreshold, true);
  EXPECT_EQ(comparison.kinds[0].exceedsThreshold, true);
  EXPECT_EQ(comparison.kinds[1].exceedsThreshold, false);
  EXPECT_EQ(comparison.kinds[2].exceedsThreshold, std::nullopt);

  SessionComparison within;
  within.kinds = {kindOver(-2, -1)};
  judgeThreshold(within);
  EXPECT_EQ(within.exceedsThreshold, false);

  SessionComparison unjudged;
  unjudged.kinds = {unjudgedKind("batteryDischarge")};
  judgeThreshold(unjudged);
  EXPECT_EQ(unjudged.exceedsThreshold, std::nullopt);
}

}  // namespace
}  // namespace quellin
