#include "QuellinCore/Sessions/Analysis/ComparisonNotes.h"

#include <algorithm>

#include "QuellinCore/Sessions/Analysis/ComparisonVerdict.h"
#include "QuellinCore/Sessions/Analysis/KindHolders.h"

namespace quellin {
namespace {

using Sessions = std::span<const ComparedSession>;

std::string countText(std::size_t count, Sessions sessions) {
  return std::to_string(count) + " of " + std::to_string(sessions.size()) +
         (sessions.size() == 1 ? " session" : " sessions");
}

bool hasEnergy(const KindComparison& kind) {
  return std::ranges::find(kind.figures, ComparedQuantity::joules, &ComparedFigure::quantity) !=
         kind.figures.end();
}

bool hasInterval(const SessionComparison& comparison) {
  return std::ranges::any_of(
      comparison.kinds, [](const KindComparison& kind) { return kind.figures.front().interval.has_value(); });
}

void noteHolders(std::vector<std::string>& notes, const KindComparison& kind, const std::string& side,
                 Sessions sessions) {
  const std::size_t holders = KindHolders(sessions, kind.sourceKind).count();
  if (holders < sessions.size())
    notes.push_back(kind.sourceLabel + ": only " + countText(holders, sessions) + " of " + side +
                    " have readings of it");
}

void noteSupplies(std::vector<std::string>& notes, const KindComparison& kind, Sessions a, Sessions b) {
  if (KindHolders(a, kind.sourceKind).isOnUnknownSupply() &&
      KindHolders(b, kind.sourceKind).isOnUnknownSupply())
    notes.push_back(kind.sourceLabel + ": nothing is known of the supply of either side");
}

void noteUnfinished(std::vector<std::string>& notes, const std::string& side,
                    std::span<const PowerSessionMetadataDTO> sessions) {
  if (const auto unfinished = unfinishedText(side, sessions))
    notes.push_back(*unfinished + ": its readings are compared as far as they go");
}

void noteGaps(std::vector<std::string>& notes, const std::string& side, Sessions sessions, bool isBridged) {
  std::size_t gapped = 0;
  for (const ComparedSession& session : sessions) gapped += session.coverage.gapCount > 0 ? 1 : 0;
  if (gapped > 0)
    notes.push_back(side + " has gaps without readings in " + countText(gapped, sessions) +
                    (isBridged ? "; energy is bridged over them" : ""));
}

bool areSampledAlike(Sessions a, Sessions b) {
  const double interval = a.front().session.sampleInterval;
  const auto isAlike = [&](const ComparedSession& session) {
    return session.session.sampleInterval == interval;
  };
  return std::ranges::all_of(a, isAlike) && std::ranges::all_of(b, isAlike);
}

}  // namespace

std::vector<std::string> comparisonNotes(const SessionComparison& comparison, Sessions a, Sessions b) {
  std::vector<std::string> notes;
  if (a.size() == 1 && b.size() == 1 && hasInterval(comparison)) {
    notes.emplace_back(
        "an interval says how the readings of these two sessions vary, not how far repeats differ, and "
        "promises too much for readings that hold or change slowly");
  }
  for (const KindComparison& kind : comparison.kinds) {
    if (!hasEnergy(kind)) {
      notes.push_back(kind.sourceLabel +
                      ": energy is not compared; for that every session must be completed, with at least two "
                      "readings of this kind, and no stretch without them");
    }
    noteHolders(notes, kind, "A", a);
    noteHolders(notes, kind, "B", b);
    noteSupplies(notes, kind, a, b);
    if (hasNoWidth(kind.figures.front()))
      notes.push_back(kind.sourceLabel +
                      ": the values of each side do not vary at all, so that the interval promises too much");
  }
  const bool isBridged = std::ranges::any_of(comparison.kinds, hasEnergy);
  noteUnfinished(notes, "A", comparison.a);
  noteGaps(notes, "A", a, isBridged);
  noteUnfinished(notes, "B", comparison.b);
  noteGaps(notes, "B", b, isBridged);
  if (!areSampledAlike(a, b)) notes.emplace_back("the sessions were not all sampled at the same interval");
  return notes;
}

}  // namespace quellin
