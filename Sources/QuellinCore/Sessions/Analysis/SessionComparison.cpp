#include "QuellinCore/Sessions/Analysis/SessionComparison.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <span>
#include <utility>

#include "QuellinCore/Sessions/Analysis/ComparisonNotes.h"
#include "QuellinCore/Sessions/Analysis/ComparisonVerdict.h"
#include "QuellinCore/Sessions/Analysis/KindHolders.h"
#include "QuellinCore/Sessions/Analysis/Mean.h"

namespace quellin {
namespace {

using Sessions = std::vector<ComparedSession>;
using Values = std::vector<double>;

// What both sides have of one quantity.
struct SideValues {
  ComparedQuantity quantity{};
  Values a;
  Values b;
};

std::optional<DifferenceInterval> intervalOf(const SideValues& values) {
  return values.quantity == ComparedQuantity::readingsWatts ? bootstrapInterval(values.a, values.b)
                                                            : welchInterval(values.a, values.b);
}

std::string reasonForNoInterval(ComparedQuantity quantity) {
  return quantity == ComparedQuantity::readingsWatts
             ? "fewer than " + std::to_string(fewestToResample) + " readings on a side"
             : "one session on a side does not say how far repeats differ";
}

ComparedFigure figureOf(const SideValues& values) {
  ComparedFigure figure{.quantity = values.quantity,
                        .meanA = meanOf(values.a),
                        .meanB = meanOf(values.b),
                        .percent = std::nullopt,
                        .interval = intervalOf(values),
                        .noInterval = std::nullopt,
                        .countA = std::ssize(values.a),
                        .countB = std::ssize(values.b)};
  figure.difference = figure.meanB - figure.meanA;
  if (figure.meanA != 0) figure.percent = 100 * figure.difference / std::abs(figure.meanA);
  if (!figure.interval) figure.noInterval = reasonForNoInterval(values.quantity);
  return figure;
}

// With A so many per cent higher: it varies by as much more, which an interval of B less A knows nothing of.
SideValues withRaisedA(SideValues values, double percent) {
  const double factor = 1 + std::copysign(percent / 100, meanOf(values.a));
  for (double& value : values.a) value *= factor;
  return values;
}

std::vector<SideValues> valuesOf(const KindHolders& a, const KindHolders& b, bool areSingle) {
  std::vector<SideValues> values;
  if (areSingle) values.push_back({ComparedQuantity::readingsWatts, a.firstReadings(), b.firstReadings()});
  auto joulesA = a.joules();
  auto joulesB = b.joules();
  if (joulesA && joulesB)
    values.push_back({ComparedQuantity::joules, *std::move(joulesA), *std::move(joulesB)});
  if (!areSingle) values.push_back({ComparedQuantity::averageWatts, a.averageWatts(), b.averageWatts()});
  return values;
}

KindComparison compareKind(const SourceEnergy& kind, const std::vector<SideValues>& values,
                           const SessionComparison& whole) {
  KindComparison result{.sourceKind = kind.sourceKind,
                        .sourceLabel = kind.sourceLabel,
                        .confidence = kind.confidence,
                        .figures = {},
                        .overThreshold = std::nullopt,
                        .exceedsThreshold = std::nullopt};
  for (const SideValues& sides : values) result.figures.push_back(figureOf(sides));
  result.outcome = outcomeOf(result.figures.front());
  const SideValues& deciding = values.front();
  if (whole.thresholdPercent && !unfinishedText(whole) && isJudged(kind.sourceKind, deciding.quantity))
    result.overThreshold = intervalOf(withRaisedA(deciding, *whole.thresholdPercent));
  return result;
}

// Of several sessions, those that are over: half a run is no repeat.
Sessions takeComparable(Sessions sessions, std::vector<NotCompared>& rest) {
  if (sessions.size() < 2) return sessions;
  const auto unfinished = std::ranges::stable_partition(
      sessions, [](const ComparedSession& session) { return session.isCompleted(); });
  for (const ComparedSession& session : unfinished) {
    rest.push_back({.name = "session " + session.session.id.text(),
                    .sourceKind = std::nullopt,
                    .reason = "is " + session.session.status});
  }
  sessions.erase(unfinished.begin(), unfinished.end());
  return sessions;
}

void compareKinds(SessionComparison& result, const Sessions& a, const Sessions& b) {
  const bool areSingle = a.size() == 1 && b.size() == 1;
  for (const SourceEnergy& kind : kindsOf(a)) {
    const KindHolders ofA(a, kind.sourceKind);
    const KindHolders ofB(b, kind.sourceKind);
    if (ofB.count() == 0) {
      result.notCompared.push_back(
          {.name = kind.sourceLabel, .sourceKind = kind.sourceKind, .reason = "only A has readings of it"});
    } else if (!ofA.sharesSupplyWith(ofB)) {
      result.notCompared.push_back(
          {.name = kind.sourceLabel,
           .sourceKind = kind.sourceKind,
           .reason = "A has readings of it" + ofA.supplyText() + ", B" + ofB.supplyText()});
    } else {
      result.kinds.push_back(compareKind(kind, valuesOf(ofA, ofB, areSingle), result));
    }
  }
  for (const SourceEnergy& kind : kindsOf(b)) {
    if (KindHolders(a, kind.sourceKind).count() == 0)
      result.notCompared.push_back(
          {.name = kind.sourceLabel, .sourceKind = kind.sourceKind, .reason = "only B has readings of it"});
  }
}

ComparedFigure compareLengths(const Sessions& a, const Sessions& b) {
  const auto lengths = [](const Sessions& sessions) {
    Values seconds;
    for (const ComparedSession& session : sessions) seconds.push_back(session.seconds);
    return seconds;
  };
  return figureOf({ComparedQuantity::seconds, lengths(a), lengths(b)});
}

}  // namespace

std::expected<SessionComparison, std::string> compareSessions(std::vector<ComparedSession> a,
                                                              std::vector<ComparedSession> b,
                                                              std::optional<double> thresholdPercent) {
  SessionComparison result;
  result.thresholdPercent = thresholdPercent;
  a = takeComparable(std::move(a), result.notCompared);
  b = takeComparable(std::move(b), result.notCompared);
  if (a.empty() || b.empty()) {
    return std::unexpected(std::string("nothing can be compared: of the sessions of ") +
                           (a.empty() ? "A" : "B") + " none is completed");
  }
  for (const ComparedSession& session : a) result.a.push_back(session.session);
  for (const ComparedSession& session : b) result.b.push_back(session.session);
  compareKinds(result, a, b);
  if (result.kinds.empty()) {
    return std::unexpected("nothing can be compared: A has " + kindsText(a) + ", B has " + kindsText(b) +
                           ", and only readings of one kind, on one supply, are of the same quantity");
  }
  if (thresholdPercent) judgeThreshold(result);
  if (!unfinishedText(result)) result.time = compareLengths(a, b);
  result.notes = comparisonNotes(result, a, b);
  return result;
}

}  // namespace quellin
