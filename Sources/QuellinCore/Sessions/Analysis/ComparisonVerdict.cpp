#include "QuellinCore/Sessions/Analysis/ComparisonVerdict.h"

#include <algorithm>
#include <cmath>

#include "QuellinCore/Models/PowerReading.h"

namespace quellin {
namespace {

double roundingOf(const ComparedFigure& figure) {
  return 1e-9 * std::max(std::abs(figure.meanA), std::abs(figure.meanB));
}

}  // namespace

ComparisonOutcome outcomeOf(const ComparedFigure& figure) {
  if (!figure.interval) return ComparisonOutcome::uncertain;
  if (figure.interval->lower > roundingOf(figure)) return ComparisonOutcome::more;
  if (figure.interval->upper < -roundingOf(figure)) return ComparisonOutcome::less;
  return ComparisonOutcome::indistinct;
}

bool hasNoWidth(const ComparedFigure& figure) {
  return figure.interval && figure.interval->upper - figure.interval->lower <= roundingOf(figure);
}

std::optional<bool> exceeds(const KindComparison& kind, double percent) {
  const ComparedFigure& figure = kind.figures.front();
  const bool isUse = kind.sourceKind != rawValue(PowerReadingKind::batteryChargeInput);
  if (!isUse || !figure.interval) return std::nullopt;
  return figure.interval->lower > std::abs(figure.meanA) * percent / 100 + roundingOf(figure);
}

void applyThreshold(SessionComparison& comparison, double percent) {
  comparison.thresholdPercent = percent;
  for (KindComparison& kind : comparison.kinds) {
    kind.exceedsThreshold = exceeds(kind, percent);
    if (kind.exceedsThreshold)
      comparison.exceedsThreshold = comparison.exceedsThreshold.value_or(false) || *kind.exceedsThreshold;
  }
}

}  // namespace quellin
