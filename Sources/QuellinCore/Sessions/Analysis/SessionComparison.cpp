#include "QuellinCore/Sessions/Analysis/SessionComparison.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <span>
#include <utility>

#include "QuellinCore/Sessions/Analysis/ComparisonNotes.h"
#include "QuellinCore/Sessions/Analysis/ComparisonVerdict.h"
#include "QuellinCore/Sessions/Analysis/KindHolders.h"

namespace quellin {
namespace {

using Sessions = std::vector<ComparedSession>;
using Values = std::vector<double>;

ComparedFigure figureOf(ComparedQuantity quantity, const Values& a, const Values& b,
                        std::optional<DifferenceInterval> interval, const std::string& otherwise) {
  ComparedFigure figure{.quantity = quantity,
                        .meanA = meanOf(a),
                        .meanB = meanOf(b),
                        .percent = std::nullopt,
                        .interval = std::move(interval),
                        .noInterval = std::nullopt,
                        .countA = std::ssize(a),
                        .countB = std::ssize(b)};
  figure.difference = figure.meanB - figure.meanA;
  if (figure.meanA != 0) figure.percent = 100 * figure.difference / std::abs(figure.meanA);
  if (!figure.interval) figure.noInterval = otherwise;
  return figure;
}

ComparedFigure figureOfRepeats(ComparedQuantity quantity, const Values& a, const Values& b) {
  return figureOf(quantity, a, b, welchInterval(a, b),
                  "one session on a side does not say how far repeats differ");
}

ComparedFigure figureOfReadings(const Values& a, const Values& b) {
  return figureOf(ComparedQuantity::readingsWatts, a, b, bootstrapInterval(a, b),
                  "fewer than " + std::to_string(fewestToResample) + " readings on a side");
}

KindComparison compareKind(const SourceEnergy& kind, const Sessions& a, const Sessions& b) {
  const KindHolders ofA(a, kind.sourceKind);
  const KindHolders ofB(b, kind.sourceKind);
  KindComparison result{.sourceKind = kind.sourceKind,
                        .sourceLabel = kind.sourceLabel,
                        .confidence = kind.confidence,
                        .figures = {},
                        .exceedsThreshold = std::nullopt};
  const bool areSingle = a.size() == 1 && b.size() == 1;
  if (areSingle) result.figures.push_back(figureOfReadings(ofA.firstReadings(), ofB.firstReadings()));
  const auto joulesA = ofA.joules();
  const auto joulesB = ofB.joules();
  if (joulesA && joulesB)
    result.figures.push_back(figureOfRepeats(ComparedQuantity::joules, *joulesA, *joulesB));
  if (!areSingle) {
    result.figures.push_back(
        figureOfRepeats(ComparedQuantity::averageWatts, ofA.averageWatts(), ofB.averageWatts()));
  }
  result.outcome = outcomeOf(result.figures.front());
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

std::string knownSupply(const KindHolders& holders) {
  return holders.isOnUnknownSupply() ? " on an unknown supply" : holders.supplyText();
}

void compareKinds(SessionComparison& result, const Sessions& a, const Sessions& b) {
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
           .reason = "A has readings of it" + knownSupply(ofA) + ", B" + knownSupply(ofB)});
    } else {
      result.kinds.push_back(compareKind(kind, a, b));
    }
  }
  for (const SourceEnergy& kind : kindsOf(b)) {
    if (KindHolders(a, kind.sourceKind).count() == 0)
      result.notCompared.push_back(
          {.name = kind.sourceLabel, .sourceKind = kind.sourceKind, .reason = "only B has readings of it"});
  }
}

std::optional<ComparedFigure> compareLengths(const Sessions& a, const Sessions& b) {
  const auto isCompleted = [](const ComparedSession& session) { return session.isCompleted(); };
  if (!std::ranges::all_of(a, isCompleted) || !std::ranges::all_of(b, isCompleted)) return std::nullopt;
  const auto lengths = [](const Sessions& sessions) {
    Values seconds;
    for (const ComparedSession& session : sessions) seconds.push_back(session.seconds);
    return seconds;
  };
  return figureOfRepeats(ComparedQuantity::seconds, lengths(a), lengths(b));
}

}  // namespace

std::expected<SessionComparison, std::string> compareSessions(std::vector<ComparedSession> a,
                                                              std::vector<ComparedSession> b) {
  SessionComparison result;
  a = takeComparable(std::move(a), result.notCompared);
  b = takeComparable(std::move(b), result.notCompared);
  if (a.empty() || b.empty()) {
    return std::unexpected(std::string("nothing can be compared: of the sessions of ") +
                           (a.empty() ? "A" : "B") + " none is completed");
  }
  compareKinds(result, a, b);
  if (result.kinds.empty()) {
    return std::unexpected("nothing can be compared: A has " + kindsText(a) + ", B has " + kindsText(b) +
                           ", and only readings of one kind, on one supply, are of the same quantity");
  }
  result.time = compareLengths(a, b);
  for (const ComparedSession& session : a) result.a.push_back(session.session);
  for (const ComparedSession& session : b) result.b.push_back(session.session);
  result.notes = comparisonNotes(result, a, b);
  return result;
}

}  // namespace quellin
