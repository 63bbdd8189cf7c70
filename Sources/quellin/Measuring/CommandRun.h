#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "QuellinCore/Models/SiliconEnergy.h"
#include "QuellinCore/Sessions/PowerSession.h"
#include "QuellinCore/Support/UUID.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/Measuring/CommandProcess.h"
#include "quellin/Measuring/MeasuredHost.h"
#include "quellin/Presentation/SessionReport.h"

namespace quellin::cli {

/// A stretch of time that was measured.
struct MeasuredSpan {
  SessionReport report;                   ///< what its session comes to
  double seconds = 0;                     ///< how long it took
  std::optional<SiliconEnergy> counters;  ///< what the counters gained from its first to its last moment
};

/// A command that was measured.
struct MeasuredCommand {
  std::optional<MeasuredSpan> span;  ///< absent when measuring failed, which was told
  CommandEnd end;
};

/// Records a session of `length` over the idle machine. No value when the user interrupted it. Throws as
/// `measureCommand`.
[[nodiscard]] std::optional<MeasuredSpan> measureIdle(const Invocation& invocation, const MeasuredHost& host,
                                                      const std::string& title, Seconds length);

/// Runs the command that the options name and records a session from its start to its end. Counters are read
/// right before and right after the command; a trace has none for a stretch of time.
///
/// A trace's clock runs while the command runs. At maximum speed the two have no time in common: then the
/// trace is played to its end, however long the command takes, and counts as the time of the command.
///
/// Throws `Failure`: notFound and notExecutable when the command cannot be started, notMeasured when another
/// session is being recorded, and what the core throws. Measuring that fails afterwards leaves the command
/// alone.
[[nodiscard]] MeasuredCommand measureCommand(const Invocation& invocation, const MeasuredHost& host,
                                             const std::string& title);

}  // namespace quellin::cli
