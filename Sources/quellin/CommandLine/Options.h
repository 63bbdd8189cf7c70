#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "QuellinCore/Platform/Recorded/TracePlayer.h"
#include "QuellinCore/Services/PowerBudgetMonitor.h"
#include "QuellinCore/Support/Clock.h"

namespace quellin::cli {

/// From one look at the processes to the next while a session is recorded, unless something else is asked
/// for.
inline constexpr Seconds usualProcessInterval{30};
/// The same while a command is run, which may take little time.
inline constexpr Seconds usualRunProcessInterval{5};

/// What names this machine among the sources.
inline constexpr const char* nativeSource = "native";

/// What the command line asks for. A command looks only at what its own options set.
struct Options {
  std::string source = nativeSource;  ///< `nativeSource`, or the path of a trace or of a tree of kernel files
  PlaybackSpeed speed = PlaybackSpeed::maximum();  ///< of a trace
  std::optional<std::filesystem::path> store;      ///< the session store; absent: the default place
  bool json = false;
  bool brief = false;
  bool processes = false;
  bool force = false;
  std::string word;   ///< the first argument of a command: an action, a shell, a session or a program
  std::string other;  ///< the second argument: what to compare the sessions of the first with
  std::vector<std::string> arguments;  ///< what the program to run is given: all behind it
  int repeat = 1;                      ///< how often to run it
  std::optional<Seconds> baseline;     ///< how long to measure the idle machine first
  std::optional<std::string> output;
  std::optional<std::string> title;
  Seconds interval{1};
  std::optional<Seconds> processInterval;  ///< each command has its own by default
  std::optional<Seconds> duration;
  bool telemetry = false;
  PowerBudgetMonitor budget;
  std::optional<double> thresholdPercent;  ///< how much worse the other sessions may be
};

/// The program to run and what it is given.
[[nodiscard]] std::vector<std::string> programWords(const Options& options);

/// The length of time that `text` spells: a decimal number above 0 with "ms", "s", "m" or "h" behind it,
/// seconds without. No value for anything else.
[[nodiscard]] std::optional<Seconds> parseDuration(const std::string& text);

/// The watts that `text` spells: a decimal number, 0 included. No value for anything else.
[[nodiscard]] std::optional<double> parseWatts(const std::string& text);

/// The per cent that `text` spells: a decimal number, 0 included, with or without "%". No value for anything
/// else.
[[nodiscard]] std::optional<double> parsePercent(const std::string& text);

/// The speed that `text` spells: "max", or a decimal number above 0. No value for anything else.
[[nodiscard]] std::optional<PlaybackSpeed> parseSpeed(const std::string& text);

}  // namespace quellin::cli
