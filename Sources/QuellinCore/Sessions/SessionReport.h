#pragma once

#include <functional>
#include <optional>
#include <tuple>

#include "QuellinCore/Sessions/PowerSessionExport.h"
#include "QuellinCore/Sessions/PowerSessionSummary.h"
#include "QuellinCore/Sessions/RecorderCost.h"
#include "QuellinCore/Sessions/SessionCoverage.h"
#include "QuellinCore/Sessions/StoredSample.h"

namespace quellin {

/// What a stored session comes to. All parts are of the same samples.
struct SessionReport {
  PowerSessionMetadataDTO session;           ///< which session
  PowerSessionSummary summary;               ///< of all its samples
  SessionCoverage coverage;                  ///< of its time
  std::optional<RecorderCost> recorderCost;  ///< absent when nobody noted it

  static constexpr auto fields() {
    return std::tuple{Field{"session", &SessionReport::session}, Field{"summary", &SessionReport::summary},
                      Field{"coverage", &SessionReport::coverage},
                      Field{"recorderCost", &SessionReport::recorderCost}};
  }

  bool operator==(const SessionReport&) const = default;
};

/// Looks on while a session is summed up. Neither may use the store.
struct SessionVisitor {
  /// Sees each sample with its power point, by timestamp.
  std::function<void(const StoredSample& sample, const PowerSamplePoint& point)> sample = nullptr;
  /// Sees each gap that the coverage counts, in order.
  std::function<void(const ReadingGap& gap)> gap = nullptr;
};

}  // namespace quellin
