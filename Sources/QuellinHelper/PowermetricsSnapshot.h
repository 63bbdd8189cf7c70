#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "QuellinCore/Models/ProTelemetrySnapshot.h"

namespace quellin {

/// The outcome of one run of the measuring tool.
struct CommandResult {
  std::int32_t terminationStatus =
      0;  ///< its exit status; -1 when it could not be started or did not end by itself
  std::optional<std::string>
      outputData;  ///< what it wrote to the output file; absent when unreadable or empty
  std::optional<std::string> errorText;  ///< its trimmed standard error, or why there is no exit status
};

/// The snapshot of a run that gave no output; without its instant and interval.
[[nodiscard]] ProTelemetrySnapshot failureSnapshot(const CommandResult& result);

/// The snapshot of what the measuring tool wrote, a stream of property lists; without its instant and
/// interval. Holds the twelve rows of the highest energy impact.
[[nodiscard]] ProTelemetrySnapshot snapshotFromOutput(std::string_view outputData);

}  // namespace quellin
