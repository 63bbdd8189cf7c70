#pragma once

#include <span>
#include <string>
#include <vector>

#include "QuellinCore/Sessions/Analysis/SessionComparison.h"

namespace quellin {

/// What to know before believing a comparison of these sessions, in sentences without a full stop: how far
/// its intervals go, gaps, unlike sampling, sessions that are not over.
[[nodiscard]] std::vector<std::string> comparisonNotes(const SessionComparison& comparison,
                                                       std::span<const ComparedSession> a,
                                                       std::span<const ComparedSession> b);

}  // namespace quellin
