#pragma once

#include <optional>

#include "QuellinCore/Sessions/PowerSession.h"
#include "QuellinCore/Sessions/PowerSessionSummary.h"
#include "QuellinCore/Sessions/SessionFigures.h"
#include "QuellinCore/Sessions/StoredSample.h"

namespace quellin {

/// Until when a stored session lasted, whose last sample is of `lastTimestamp`: a sample may be later than
/// the end.
[[nodiscard]] Instant sessionEnd(const PowerSession& session, Instant lastTimestamp);

/// Works out the summary of a stored session from its samples, one after the other, in memory that grows only
/// with the segments and contributors. One thread at a time.
class StoredSummary {
 public:
  /// Takes the next sample; they come by timestamp. Returns its power point.
  PowerSamplePoint ingest(const StoredSample& sample, JSONDecoder& decoder);

  /// The summary so far, for a session with the start and end of `session`.
  [[nodiscard]] PowerSessionSummary materialize(const PowerSession& session) const;

 private:
  SessionFigures figures_;
  std::optional<Instant> lastTimestamp_;
};

}  // namespace quellin
