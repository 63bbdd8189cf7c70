#include "QuellinCore/Sessions/Analysis/ComparisonVerdict.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "QuellinCore/Models/PowerReading.h"

namespace quellin {
namespace {

std::string reasonNotJudged(const KindComparison& kind, const SessionComparison& comparison) {
  if (auto unfinished = unfinishedText(comparison)) return *std::move(unfinished);
  return kind.figures.front().noInterval.value_or("repeats are judged by energy, which is not compared");
}

}  // namespace

double roundingOf(const ComparedFigure& figure) {
  return 1e-9 * std::max(std::abs(figure.meanA), std::abs(figure.meanB));
}

bool isUse(std::string_view sourceKind) {
  return sourceKind != rawValue(PowerReadingKind::batteryChargeInput);
}

std::optional<std::string> unfinishedText(const std::string& side,
                                          std::span<const PowerSessionMetadataDTO> sessions) {
  const auto found = std::ranges::find_if_not(sessions, isCompleted);
  if (found == sessions.end()) return std::nullopt;
  return "the session of " + side + " is " + found->status;
}

std::optional<std::string> unfinishedText(const SessionComparison& comparison) {
  auto text = unfinishedText("A", comparison.a);
  return text ? std::move(text) : unfinishedText("B", comparison.b);
}

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
    uses.push_back(kind.sourceLabel + " (" + reasonNotJudged(kind, comparison) + ")");
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
