#pragma once

#include <memory>
#include <optional>
#include <tuple>

#include "QuellinCore/Sessions/PowerSessionExport.h"
#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "quellin/CommandLine/Command.h"

namespace quellin::cli {

/// What a stored session comes to, for people and programs.
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

/// How much of a session's time has readings, in words.
[[nodiscard]] std::string coverageText(const SessionCoverage& coverage);

/// What recording has cost, in words; "unknown" when nobody noted it.
[[nodiscard]] std::string recorderCostText(const std::optional<RecorderCost>& cost);

/// Writes the report as text.
void showReport(const SessionReport& report, const Invocation& invocation);

}  // namespace quellin::cli
