#pragma once

#include <memory>
#include <vector>

#include "QuellinCore/Sessions/Analysis/SourceEnergy.h"
#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "QuellinCore/Sessions/SessionReport.h"

namespace quellin {

/// On what a machine was while readings were taken.
struct Supply {
  bool onBattery = false;  ///< during some of them no charger was connected
  bool onCharger = false;  ///< during some of them one was
  bool onUnknown = false;  ///< during some of them nothing was known of a battery

  bool operator==(const Supply&) const = default;
};

/// A session's readings of one kind.
struct ComparedSource {
  SourceEnergy energy;        ///< what they come to
  std::vector<double> watts;  ///< one by one, in order
  Supply supply;              ///< on what they were taken
};

/// Whether a session ran to its end.
[[nodiscard]] bool isCompleted(const PowerSessionMetadataDTO& session);

/// What a session brings to a comparison.
struct ComparedSession {
  PowerSessionMetadataDTO session;      ///< which session
  double seconds = 0;                   ///< how long it took
  SessionCoverage coverage;             ///< how much of that has readings of power
  std::vector<ComparedSource> sources;  ///< kind by kind, in the order of their first appearance
  bool lacksEnergy = false;             ///< some stretch of it has none, or one of another kind

  /// Whether it ran to its end: only then it has an energy and a length to compare.
  [[nodiscard]] bool isCompleted() const { return quellin::isCompleted(session); }
};

/// What a stored session brings to a comparison, in the walk that makes its report. Throws `StoreError`. Main
/// executor of the store only.
[[nodiscard]] ComparedSession comparedSession(PowerSessionStore& store,
                                              const std::shared_ptr<PowerSession>& session);

}  // namespace quellin
