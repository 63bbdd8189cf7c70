#include <algorithm>
#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "quellin/CommandLine/CommandLine.h"
#include "quellin/Presentation/CompletionText.h"

namespace quellin::cli {
namespace {

// A type such as "native|FILE|DIR": capitals stand for what they name, all else for itself. What its checkers
// say of themselves comes behind a colon.
CompletedValue valueOf(const CLI::Option& option) {
  std::string type = option.get_type_name();
  type.resize(std::min(type.size(), type.find(':')));
  std::ranges::replace(type, '|', ' ');
  CompletedValue value;
  std::istringstream list{type};
  for (std::string word; list >> word;) {
    if (word == "FILE" || word == "DIR" || word == "PATH") {
      value.isFile = true;
    } else if (word.front() >= 'a' && word.front() <= 'z') {
      value.words.push_back(word);
    }
  }
  return value;
}

CompletedOption optionOf(const CLI::Option& option) {
  CompletedOption completed{.names = {}, .purpose = option.get_description(), .hasValue = false, .value = {}};
  for (const std::string& name : option.get_lnames()) completed.names.push_back("--" + name);
  for (const std::string& name : option.get_snames()) completed.names.push_back("-" + name);
  completed.hasValue = option.get_items_expected_max() > 0;
  if (completed.hasValue) completed.value = valueOf(option);
  return completed;
}

CompletedValue argumentOf(const CLI::Option& option) {
  CompletedValue value = valueOf(option);
  const std::string name = option.get_name();
  if (name == "ID" || name == "A" || name == "B") value.words.emplace_back("last");
  value.isProgram = name == "COMMAND";
  return value;
}

CompletedCommand commandOf(const CLI::App& app) {
  CompletedCommand command{
      .name = app.get_name(), .purpose = app.get_description(), .options = {}, .arguments = {}};
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_positional()) {
      command.arguments.push_back(argumentOf(*option));
    } else {
      command.options.push_back(optionOf(*option));
    }
  }
  return command;
}

}  // namespace

ExitStatus printCompletions(const Invocation& invocation) {
  Options options;
  const auto app = commandLine(options);
  std::vector<CompletedCommand> all;
  for (const Command& command : commands()) {
    all.push_back(commandOf(*app->get_subcommand(std::string{command.name})));
  }
  const std::string& shell = invocation.options.word;
  if (shell == "bash") invocation.out.write(bashCompletions(all));
  if (shell == "zsh") invocation.out.write(zshCompletions(all));
  if (shell == "fish") invocation.out.write(fishCompletions(all));
  return ExitStatus::ok;
}

}  // namespace quellin::cli
