#pragma once

#include <optional>
#include <string>

#include "QuellinCore/Models/PowerReading.h"
#include "QuellinCore/Sessions/PowerSessionSummary.h"

namespace quellin::cli {

/// How far a session has come, in one line: time, samples, the reading where one is given, energy and the
/// battery's change.
[[nodiscard]] std::string sessionProgress(const PowerSessionSummary& summary,
                                          const std::optional<PowerReading>& reading = std::nullopt);

}  // namespace quellin::cli
