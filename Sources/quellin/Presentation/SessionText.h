#pragma once

#include <optional>
#include <string>

#include "QuellinCore/Sessions/SessionReport.h"
#include "quellin/Terminal/Terminal.h"

namespace quellin::cli {

/// How much of a session's time has readings of power, in words.
[[nodiscard]] std::string coverageText(const SessionCoverage& coverage);

/// The highest thermal pressure of a session, in words. A session keeps 0 also where the system tells none,
/// so only a higher one is known to have been told.
[[nodiscard]] std::string thermalPressureText(const PowerSessionSummary& summary);

/// What recording has cost, in words; "unknown" when nobody noted it yet.
[[nodiscard]] std::string recorderCostText(const std::optional<RecorderCost>& cost);

/// The report of a session as lines of text for `terminal`.
[[nodiscard]] std::string sessionText(const SessionReport& report, const Terminal& terminal);

}  // namespace quellin::cli
