#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "QuellinCore/Services/ProTelemetryService.h"
#include "quellin/CommandLine/Options.h"
#include "quellin/Outcome/ExitStatus.h"
#include "quellin/Terminal/Output.h"
#include "quellin/Terminal/Terminal.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace quellin::cli {

/// What a command runs with.
struct Invocation {
  const Options& options;
  Output& out;                      ///< data
  const Talk& talk;                 ///< all else
  Terminal outTerminal;             ///< behind standard output
  Terminal talkTerminal;            ///< behind standard error
  const ProTelemetryService& tool;  ///< client of the privileged tool
};

/// One command of the program.
struct Command {
  std::string_view name;
  std::string_view purpose;                ///< one sentence without a full stop
  std::vector<std::string_view> examples;  ///< command lines
  void (*addOptions)(CLI::App& app, Options& options);
  ExitStatus (*run)(const Invocation& invocation);
};

/// All commands, in the order in which they are listed.
[[nodiscard]] const std::vector<Command>& commands();

// The commands; each throws `Failure`, `ReaderGone` and what the core throws.
ExitStatus doctor(const Invocation& invocation);
ExitStatus snapshot(const Invocation& invocation);
ExitStatus watch(const Invocation& invocation);
ExitStatus capture(const Invocation& invocation);
ExitStatus record(const Invocation& invocation);
ExitStatus runCommand(const Invocation& invocation);
ExitStatus listSessions(const Invocation& invocation);
ExitStatus showSession(const Invocation& invocation);
ExitStatus reportSession(const Invocation& invocation);
ExitStatus compareRuns(const Invocation& invocation);
ExitStatus exportSession(const Invocation& invocation);
ExitStatus stopSession(const Invocation& invocation);
ExitStatus interruptSession(const Invocation& invocation);
ExitStatus deleteSession(const Invocation& invocation);
ExitStatus helper(const Invocation& invocation);
ExitStatus budget(const Invocation& invocation);
ExitStatus printManual(const Invocation& invocation);
ExitStatus printCompletions(const Invocation& invocation);

}  // namespace quellin::cli
