#include "QuellinCore/Sessions/Analysis/ComparisonVerdict.h"

#include <algorithm>
#include <cmath>

#include "QuellinCore/Models/PowerReading.h"

namespace quellin {
namespace {

double roundingOf(const ComparedFigure& figure) {
  return 1e-9 * std::max(std::abs(figure.meanA), std::abs(figure.meanB));
}

bool isUse(std::string_view kind) { return kind != rawValue(PowerReadingKind::batteryChargeInput); }

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

bool isJudged(std::string_view sourceKind, ComparedQuantity quantity) {
  return isUse(sourceKind) && quantity != ComparedQuantity::averageWatts;
}

std::optional<bool> exceeds(const KindComparison& kind) {
  if (!kind.overThreshold) return std::nullopt;
  return kind.overThreshold->lower > roundingOf(kind.figures.front());
}

std::vector<std::string> unjudgedUses(const SessionComparison& comparison) {
  std::vector<std::string> uses;
  for (const KindComparison& kind : comparison.kinds) {
    if (!isUse(kind.sourceKind) || kind.exceedsThreshold) continue;
    uses.push_back(
        kind.sourceLabel + " (" +
        kind.figures.front().noInterval.value_or("repeats are judged by energy, which is not compared") +
        ")");
  }
  for (const NotCompared& left : comparison.notCompared) {
    if (left.sourceKind && isUse(*left.sourceKind)) uses.push_back(left.name + " (" + left.reason + ")");
  }
  return uses;
}

void judgeThreshold(SessionComparison& comparison) {
  for (KindComparison& kind : comparison.kinds) {
    kind.exceedsThreshold = exceeds(kind);
    if (kind.exceedsThreshold)
      comparison.exceedsThreshold = comparison.exceedsThreshold.value_or(false) || *kind.exceedsThreshold;
  }
  if (comparison.exceedsThreshold == false && !unjudgedUses(comparison).empty())
    comparison.exceedsThreshold.reset();
}

}  // namespace quellin
