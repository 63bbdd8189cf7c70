#pragma once

#include <memory>
#include <optional>
#include <tuple>
#include <vector>

#include "QuellinCore/Sessions/Analysis/SessionSeries.h"
#include "QuellinCore/Sessions/Analysis/SourceTotals.h"
#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "QuellinCore/Sessions/SessionReport.h"

namespace quellin {

/// A session with all that can be drawn of it: what it comes to, and the samples behind that. All parts are
/// of the same samples.
struct SessionAnalysis : SessionReport {
  std::optional<double> longestCoveredSeconds;  ///< see there; absent when nothing is too long
  std::vector<ReadingGap> gaps;                 ///< those that the coverage counts, in order
  std::vector<SourceTotals> sourceTotals;       ///< like with like
  SessionSeries series;                         ///< every sample

  static constexpr auto fields() {
    using Analysis = SessionAnalysis;
    return std::tuple{Field{"session", &Analysis::session},
                      Field{"summary", &Analysis::summary},
                      Field{"coverage", &Analysis::coverage},
                      Field{"longestCoveredSeconds", &Analysis::longestCoveredSeconds},
                      Field{"gaps", &Analysis::gaps},
                      Field{"recorderCost", &Analysis::recorderCost},
                      Field{"sourceTotals", &Analysis::sourceTotals},
                      Field{"series", &Analysis::series}};
  }

  bool operator==(const SessionAnalysis&) const = default;
};

/// Analyses a session in the walk that makes its report. Throws `StoreError`. Main executor of the store
/// only.
[[nodiscard]] SessionAnalysis analyseSession(PowerSessionStore& store,
                                             const std::shared_ptr<PowerSession>& session);

}  // namespace quellin
