#pragma once

#include <memory>
#include <optional>
#include <tuple>

#include "QuellinCore/Sessions/PowerSessionExport.h"
#include "QuellinCore/Sessions/PowerSessionStore.h"

namespace quellin::cli {

/// What a stored session comes to.
struct SessionReport {
  PowerSessionMetadataDTO session;
  PowerSessionSummary summary;
  SessionCoverage coverage;
  std::optional<RecorderCost> recorderCost;  ///< absent when nobody noted it

  static constexpr auto fields() {
    return std::tuple{Field{"session", &SessionReport::session}, Field{"summary", &SessionReport::summary},
                      Field{"coverage", &SessionReport::coverage},
                      Field{"recorderCost", &SessionReport::recorderCost}};
  }
};

/// The report of a session. Throws `StoreError`.
[[nodiscard]] SessionReport sessionReport(PowerSessionStore& store,
                                          const std::shared_ptr<PowerSession>& session);

}  // namespace quellin::cli
