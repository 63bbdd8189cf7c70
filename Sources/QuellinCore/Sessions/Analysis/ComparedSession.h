#pragma once

#include <vector>

#include "QuellinCore/Sessions/Analysis/SessionAnalysis.h"
#include "QuellinCore/Sessions/Analysis/SourceEnergy.h"

namespace quellin {

/// A session's readings of one kind.
struct ComparedSource {
  SourceEnergy energy;        ///< what they come to
  std::vector<double> watts;  ///< one by one, in order
  bool onBattery = false;     ///< some of them with no charger connected
  bool onCharger = false;     ///< some of them with one
  bool onUnknown = false;     ///< some of them where nothing is known of a battery
};

/// What a session brings to a comparison.
struct ComparedSession {
  PowerSessionMetadataDTO session;      ///< which session
  double seconds = 0;                   ///< how long it took
  SessionCoverage coverage;             ///< how much of that has readings
  std::vector<ComparedSource> sources;  ///< kind by kind, in the order of their first appearance
  bool lacksEnergy = false;             ///< some stretch of it has none, or one of another kind

  /// Whether it ran to its end: only then it has an energy and a length to compare.
  [[nodiscard]] bool isCompleted() const;
};

/// What an analysed session brings to a comparison.
[[nodiscard]] ComparedSession comparedSession(const SessionAnalysis& analysis);

}  // namespace quellin
