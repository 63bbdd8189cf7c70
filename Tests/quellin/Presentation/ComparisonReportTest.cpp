#include <string>
#include <utility>

#include <gmock/gmock.h>

#include "quellin/Presentation/ComparisonReport.h"

namespace quellin::cli {
namespace {

using testing::HasSubstr;

// Two single sessions whose readings differ by so much.
SessionComparison differingBy(double difference) {
  ComparedFigure figure;
  figure.quantity = ComparedQuantity::readingsWatts;
  figure.meanA = 0.25;
  figure.meanB = 0.25 + difference;
  figure.difference = difference;
  figure.interval = DifferenceInterval{.lower = difference / 2,
                                       .upper = difference * 1.5,
                                       .level = 0.95,
                                       .method = "a method",
                                       .blockLengthA = std::nullopt,
                                       .blockLengthB = std::nullopt};
  KindComparison kind;
  kind.sourceLabel = "Draw";
  kind.figures = {figure};
  kind.outcome = ComparisonOutcome::more;
  SessionComparison comparison;
  comparison.a.resize(1);
  comparison.b.resize(1);
  comparison.kinds = {kind};
  return comparison;
}

TEST(ComparisonReportTest, ASmallDifferenceDoesNotPassForNone) {
  const std::string text = comparisonText(differingBy(0.00124), std::nullopt);
  EXPECT_THAT(text, HasSubstr("0.25000  0.25124  +0.00124"));
  EXPECT_THAT(text, HasSubstr("B uses 0.00124 W more"));
  EXPECT_THAT(text, HasSubstr("+0.00062 to +0.00186 W"));
}

TEST(ComparisonReportTest, OthersHaveTwoDecimals) {
  EXPECT_THAT(comparisonText(differingBy(0.25), std::nullopt), HasSubstr("0.25  0.50  +0.25"));
  EXPECT_THAT(comparisonText(differingBy(0), std::nullopt), HasSubstr("0.25  0.25   0.00"));
  EXPECT_THAT(comparisonText(differingBy(1e-15), std::nullopt), HasSubstr("0.25  0.25   0.00"));
}

TEST(ComparisonReportTest, NoDifferenceDoesNotPassForASmallOne) {
  for (const double none : {0.0, 1e-15, -1e-15}) {
    SessionComparison comparison = differingBy(none);
    comparison.kinds[0].outcome = ComparisonOutcome::uncertain;
    EXPECT_THAT(comparisonText(comparison, std::nullopt), HasSubstr("Draw: B uses as much as A; how sure"));
    comparison.kinds[0].sourceKind = "batteryChargeInput";
    EXPECT_THAT(comparisonText(comparison, std::nullopt), HasSubstr("Draw: B takes in as much as A; how"));
  }
}

TEST(ComparisonReportTest, TheThresholdIsToldAsTyped) {
  SessionComparison comparison = differingBy(1);
  for (const auto& [percent, text] :
       {std::pair{0.05, " 0.05 %: exit status 3 when"}, std::pair{5.0, " 5 %: exit status 3 when"},
        std::pair{2.25, " 2.25 %: exit status 3 when"}}) {
    comparison.thresholdPercent = percent;
    EXPECT_THAT(comparisonText(comparison, std::nullopt), HasSubstr(text));
  }
}

}  // namespace
}  // namespace quellin::cli
