#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Analysis/ComparisonVerdict.h"
#include "Support/CaseNames.h"

namespace quellin {
namespace {

using testing_support::caseName;
using testing_support::namedBy;

using Outcome = ComparisonOutcome;

// A's mean is 20.
ComparedFigure figureFrom(double lower, double upper) {
  ComparedFigure figure;
  figure.meanA = 20;
  figure.meanB = 20 + (lower + upper) / 2;
  figure.interval = DifferenceInterval{.lower = lower,
                                       .upper = upper,
                                       .level = 0.95,
                                       .method = "a method",
                                       .blockLengthA = std::nullopt,
                                       .blockLengthB = std::nullopt};
  return figure;
}

KindComparison kindFrom(double lower, double upper, const std::string& kind = "batteryDischarge") {
  KindComparison comparison;
  comparison.sourceKind = kind;
  comparison.figures = {figureFrom(lower, upper), figureFrom(1000, 1001)};
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
  double percent;
  std::optional<bool> isExceeded;
};

class ThresholdTest : public testing::TestWithParam<Threshold> {};

TEST_P(ThresholdTest, IsExceededByTheWholeIntervalOfTheFirstFigure) {
  EXPECT_EQ(exceeds(GetParam().kind, GetParam().percent), GetParam().isExceeded);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ThresholdTest,
    testing::Values(Threshold{"the interval above", kindFrom(2.1, 3), 10, true},
                    Threshold{"touching it", kindFrom(2, 3), 10, false},
                    Threshold{"reaching below it", kindFrom(1.9, 30), 10, false},
                    Threshold{"all of it less", kindFrom(-3, -2.1), 10, false},
                    Threshold{"zero per cent", kindFrom(0.1, 3), 0, true},
                    Threshold{"zero per cent and no difference", kindFrom(0, 3), 0, false},
                    Threshold{"zero per cent and rounding", kindFrom(1e-15, 2e-15), 0, false},
                    Threshold{"charge input", kindFrom(5, 6, "batteryChargeInput"), 10, std::nullopt},
                    Threshold{"supplement", kindFrom(5, 6, "batterySupplement"), 10, true},
                    Threshold{"silicon", kindFrom(5, 6, "ioReportSiliconPower"), 10, true}),
    namedBy(&Threshold::what));

TEST(ComparisonVerdictTest, TheThresholdIsNotKeptWhileAKindOfUseIsNotJudged) {
  SessionComparison comparison;
  comparison.kinds = {kindFrom(0, 1)};
  comparison.notCompared = {{"Input", "batteryChargeInput", "only B has readings of it"},
                            {"session 1", std::nullopt, "is active"}};
  applyThreshold(comparison, 10);
  EXPECT_EQ(comparison.exceedsThreshold, false) << "neither is a kind of use";
  EXPECT_THAT(unjudgedUses(comparison), testing::IsEmpty());

  comparison.notCompared.push_back({"Draw", "batteryDischarge", "only B has readings of it"});
  comparison.kinds.push_back(kindFrom(0, 1, "ioReportSiliconPower"));
  comparison.kinds.back().sourceLabel = "Silicon";
  comparison.kinds.back().figures.front().interval.reset();
  comparison.kinds.back().figures.front().noInterval = "too few";
  comparison.exceedsThreshold.reset();
  applyThreshold(comparison, 10);
  EXPECT_EQ(comparison.exceedsThreshold, std::nullopt);
  EXPECT_THAT(unjudgedUses(comparison),
              testing::ElementsAre("Silicon (too few)", "Draw (only B has readings of it)"));

  comparison.kinds.front() = kindFrom(5, 6);
  applyThreshold(comparison, 10);
  EXPECT_EQ(comparison.exceedsThreshold, true) << "one that exceeds is enough";
}

TEST(ComparisonVerdictTest, RepeatsAreNotJudgedByPower) {
  KindComparison kind = kindFrom(5, 6);
  kind.figures.front().quantity = ComparedQuantity::averageWatts;
  EXPECT_EQ(exceeds(kind, 10), std::nullopt);
  kind.figures.front().quantity = ComparedQuantity::readingsWatts;
  EXPECT_EQ(exceeds(kind, 10), true);
}

TEST(ComparisonVerdictTest, OneKindThatExceedsIsEnoughAndNoneThatCanBeJudgedIsNoAnswer) {
  SessionComparison comparison;
  comparison.kinds = {kindFrom(5, 6), kindFrom(0, 1, "ioReportSiliconPower"),
                      kindFrom(5, 6, "batteryChargeInput")};
  applyThreshold(comparison, 10);
  EXPECT_EQ(comparison.thresholdPercent, 10);
  EXPECT_EQ(comparison.exceedsThreshold, true);
  EXPECT_EQ(comparison.kinds[0].exceedsThreshold, true);
  EXPECT_EQ(comparison.kinds[1].exceedsThreshold, false);
  EXPECT_EQ(comparison.kinds[2].exceedsThreshold, std::nullopt);

  SessionComparison within;
  within.kinds = {kindFrom(0, 1)};
  applyThreshold(within, 10);
  EXPECT_EQ(within.exceedsThreshold, false);

  SessionComparison unjudged;
  unjudged.kinds = {kindFrom(5, 6)};
  unjudged.kinds[0].figures[0].interval.reset();
  applyThreshold(unjudged, 10);
  EXPECT_EQ(unjudged.exceedsThreshold, std::nullopt);
}

}  // namespace
}  // namespace quellin
