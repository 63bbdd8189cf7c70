#pragma once

#include <string>

#include "quellin/CommandLine/Command.h"
#include "quellin/Measuring/MeasuredCommand.h"
#include "quellin/Measuring/MeasuredHost.h"

namespace quellin::cli {

/// Why a command is not run though nothing stands against it.
inline constexpr const char* askedToEndText = "asked to end; the command was not run.";

/// Records a session of `length` over the idle machine. Throws as `measureCommand`, also when the user
/// interrupts it or others end the session: that is ended as interrupted then.
[[nodiscard]] MeasuredSpan measureIdle(const Invocation& invocation, const MeasuredHost& host,
                                       const std::string& title, Seconds length);

/// Runs the command that the options name and records a session from its start to its end. Counters are read
/// right before and right after the command; a trace has none for a stretch of time.
///
/// A trace's clock runs while the command runs. At maximum speed the two have no time in common: then the
/// trace is played to its end, however long the command takes, and counts as the time of the command.
///
/// The command gets TERM, HUP, INT, QUIT, USR1 and USR2 when they are sent to this process. While it is in
/// the foreground of a terminal, INT and QUIT count as typed there, which the command gets by itself.
///
/// Throws `Failure`: notFound and notExecutable when the command cannot be started, notMeasured when another
/// session is active and when this process was asked to end before, and what the core throws.
/// Measuring that fails afterwards leaves the command alone. The session of what was not measured to the end
/// of a command that succeeds is ended as interrupted: also when others ended it, and when one of several
/// runs was asked to end.
[[nodiscard]] MeasuredCommand measureCommand(const Invocation& invocation, const MeasuredHost& host,
                                             const std::string& title);

}  // namespace quellin::cli
