#pragma once

#include <optional>

#include "QuellinCore/Models/SiliconEnergy.h"
#include "QuellinCore/Sessions/SessionReport.h"
#include "quellin/Measuring/CommandProcess.h"

namespace quellin::cli {

/// A stretch of time that was measured.
struct MeasuredSpan {
  SessionReport report;                     ///< what its session comes to
  double seconds = 0;                       ///< how long it took
  std::optional<SiliconEnergy> counters;    ///< what the counters gained from its first to its last moment
  std::optional<std::string> countersPath;  ///< where those are; absent with them
};

/// A command that was measured.
struct MeasuredCommand {
  std::optional<MeasuredSpan> span;  ///< absent when measuring failed or others ended it, which was told
  CommandEnd end;
  /// Whether the command did all that it was to do: it succeeded and, as one of several runs, was not asked
  /// to end meanwhile.
  bool isWhole = false;
};

}  // namespace quellin::cli
