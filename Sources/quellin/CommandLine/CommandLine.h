#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "quellin/CommandLine/Command.h"

namespace quellin::cli {

/// What the exit statuses mean, in one sentence.
inline constexpr const char* exitStatusText =
    "Exit status: 0 done, 1 failed, 2 command line not understood, 3 the answer is no (an alert fired, "
    "nothing was being recorded, the tool or the store cannot be used, B is worse than the threshold), 4 no "
    "such session, "
    "5 nothing to measure here. 'run' passes on the status of its command; 125 says that the command was not "
    "measured to its end, 126 that it cannot be executed, 127 that there is none; 2 stands for options of "
    "its own, too.";

/// The parser of all commands and their options, which writes into `options`; that must outlive it. Help,
/// manual page and completions are made from it.
[[nodiscard]] std::unique_ptr<CLI::App> commandLine(Options& options);

/// A text to show instead of running a command: help that was asked for, or what is wrong with the command
/// line.
struct Remark {
  ExitStatus status = ExitStatus::ok;
  std::string text;
};

/// Reads the arguments into `options`. Returns the command to run, or what to say instead.
[[nodiscard]] std::variant<const Command*, Remark> parse(const std::vector<std::string>& arguments,
                                                         Options& options);

// The options that several commands share.
void addSource(CLI::App& app, Options& options);
void addStore(CLI::App& app, Options& options);
void addJSON(CLI::App& app, Options& options);
/// The command's one argument, required; one of `choices` unless that is empty.
void addWord(CLI::App& app, Options& options, const std::string& name, const std::string& description,
             const std::vector<std::string>& choices);
/// The command's argument that names a session.
void addSession(CLI::App& app, Options& options);
/// The arguments A and B of `compare`, each one session or several.
void addSides(CLI::App& app, Options& options);
/// --threshold.
void addThreshold(CLI::App& app, Options& options);
/// -o and --force.
CLI::Option* addOutput(CLI::App& app, Options& options, const std::string& description);
/// --title; `otherwise` says what the title is without it.
void addTitle(CLI::App& app, Options& options, const std::string& otherwise);
/// --repeat.
void addRepeat(CLI::App& app, Options& options);
/// --process-interval; `usual` is what it is without it.
void addProcessInterval(CLI::App& app, Options& options, Seconds usual);
/// --interval.
void addInterval(CLI::App& app, Options& options);
/// --for.
void addLength(CLI::App& app, Options& options);
/// An option whose value is a limit in watts.
void addWatts(CLI::App& app, const std::string& name, const std::string& description,
              std::optional<double>& limit);
/// An option whose value is a length of time; `place` is told the value.
void addDuration(CLI::App& app, const std::string& name, const std::string& description,
                 const std::function<void(Seconds)>& place);

}  // namespace quellin::cli
