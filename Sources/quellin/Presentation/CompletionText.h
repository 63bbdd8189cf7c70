#pragma once

#include <string>
#include <vector>

namespace quellin::cli {

/// What may stand for one value on a command line.
struct CompletedValue {
  std::vector<std::string> words;  ///< such as "native"; most have none
  bool isFile = false;             ///< a file or a folder may stand here
  bool isProgram = false;          ///< another program's own command line begins here
};

/// An option of a command, as shells complete it.
struct CompletedOption {
  std::vector<std::string> names;  ///< "--output" first, then "-o"
  std::string purpose;
  bool hasValue = false;
  CompletedValue value;
};

/// A command with all that may follow it, as shells complete it.
struct CompletedCommand {
  std::string name;
  std::string purpose;
  std::vector<CompletedOption> options;
  std::vector<CompletedValue> arguments;  ///< one by one, in order
};

/// The script with which bash, 3.2 or later, completes the program's command lines. An option means the same
/// in every command that has it.
[[nodiscard]] std::string bashCompletions(const std::vector<CompletedCommand>& commands);

/// The same for zsh.
[[nodiscard]] std::string zshCompletions(const std::vector<CompletedCommand>& commands);

/// The same for fish.
[[nodiscard]] std::string fishCompletions(const std::vector<CompletedCommand>& commands);

}  // namespace quellin::cli
