#include "quellin/Presentation/CompletionText.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string_view>

#include <fmt/format.h>
#include <fmt/ranges.h>  // join, since version 11

#include "QuellinCore/Support/Quoting.h"

namespace quellin::cli {
namespace {

std::string joined(const std::vector<std::string>& words, std::string_view separator) {
  return fmt::format("{}", fmt::join(words, separator));
}

// What may stand for any of a command's arguments, each word once.
std::vector<std::string> argumentWords(const CompletedCommand& command) {
  std::vector<std::string> words;
  for (const CompletedValue& argument : command.arguments) {
    std::ranges::copy_if(argument.words, std::back_inserter(words), [&](const std::string& word) {
      return std::ranges::find(words, word) == words.end();
    });
  }
  return words;
}

// Everything that may follow a command, but for files and programs.
std::vector<std::string> wordsAfter(const CompletedCommand& command) {
  std::vector<std::string> words;
  words.reserve(command.options.size());
  for (const CompletedOption& option : command.options) words.push_back(option.names.front());
  const std::vector<std::string> arguments = argumentWords(command);
  words.insert(words.end(), arguments.begin(), arguments.end());
  return words;
}

std::string bashValues(const std::vector<CompletedCommand>& commands) {
  std::map<std::string, std::string> cases;
  for (const CompletedCommand& command : commands) {
    for (const CompletedOption& option : command.options) {
      if (!option.hasValue) continue;
      cases[joined(option.names, "|")] =
          "words=" + shellQuoted(joined(option.value.words, " ")) + (option.value.isFile ? " files=yes" : "");
    }
  }
  std::string text;
  for (const auto& [names, values] : cases) {
    text.append("    ").append(names).append(") ").append(values).append(" ;;\n");
  }
  return text;
}

constexpr std::string_view bashProgram = R"(  local at
  for ((at = 2; at < COMP_CWORD; at++)); do
    [ "${COMP_WORDS[1]} ${COMP_WORDS[at]}" = 'run --' ] || continue
    compopt -o filenames 2>/dev/null
    if ((at + 1 == COMP_CWORD)); then
      COMPREPLY=($(compgen -c -- "$word"))
    else
      COMPREPLY=($(compgen -f -- "$word"))
    fi
    return
  done
)";

constexpr std::string_view bashReplies = R"(  COMPREPLY=($(IFS=' '; compgen -W "$words" -- "$word"))
  [ -n "$files" ] || return 0
  compopt -o filenames 2>/dev/null
  COMPREPLY+=($(compgen -f -- "$word"))
}
complete -F _quellin quellin
)";

// What _arguments takes as a description ends at a bracket, what it takes as a message at a colon.
std::string zshEscaped(const std::string& text) {
  std::string escaped;
  for (const char character : text) {
    if (character == '[' || character == ']' || character == ':' || character == '\\') escaped += '\\';
    escaped += character;
  }
  return escaped;
}

std::string zshAction(const CompletedValue& value) {
  const std::string words = joined(value.words, " ");
  if (!value.isFile) return words.empty() ? " " : "(" + words + ")";
  return words.empty() ? "_files" : "{compadd -- " + words + "; _files}";
}

// One line for each of its names; when one is there, the others are not offered.
std::string zshOption(const CompletedOption& option) {
  std::string text;
  for (const std::string& name : option.names) {
    const bool isLong = name.starts_with("--");
    std::string line = "(" + joined(option.names, " ") + ")" + name;
    if (option.hasValue) line += isLong ? "=" : "+";
    line += "[" + zshEscaped(option.purpose) + "]";
    if (option.hasValue) line += ":value:" + zshAction(option.value);
    text += " \\\n        " + shellQuoted(line);
  }
  return text;
}

bool hasProgram(const CompletedCommand& command) {
  return std::ranges::any_of(command.arguments, &CompletedValue::isProgram);
}

std::string zshArguments(const CompletedCommand& command) {
  if (hasProgram(command)) return " \\\n        '(-)1:command: _command_names -e' '*::argument: _normal'";
  std::string text;
  for (std::size_t place = 0; place < command.arguments.size(); ++place) {
    text += " \\\n        " +
            shellQuoted(std::to_string(place + 1) + ":argument:" + zshAction(command.arguments[place]));
  }
  return text;
}

std::string fishValue(const CompletedValue& value) {
  std::string text = value.isFile ? " -r -F" : " -x";
  if (!value.words.empty()) text += " -a " + shellQuoted(joined(value.words, " "));
  return text;
}

std::string fishOption(const CompletedOption& option) {
  std::string text;
  for (const std::string& name : option.names) {
    text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
  }
  return text + (option.hasValue ? fishValue(option.value) : "") + " -d " + shellQuoted(option.purpose);
}

// The words behind "--" are a command line of their own.
constexpr std::string_view fishProgram = R"(function __quellin_program
  set -l words (commandline -opc)
  set -l at (contains -i -- -- $words); or return
  set -l program
  test $at -lt (count $words); and set program $words[(math $at + 1)..-1]
  complete -C (string join -- ' ' (string escape -- $program) (commandline -ct))
end
function __quellin_runs
  __fish_seen_subcommand_from run; and contains -- -- (commandline -opc)
end
)";

std::string fishArguments(const CompletedCommand& command, const std::string& within) {
  if (hasProgram(command)) return "complete -c quellin -n __quellin_runs -a '(__quellin_program)'\n";
  std::string text;
  for (const std::string& word : argumentWords(command)) text += within + " -a " + shellQuoted(word) + "\n";
  return text;
}

}  // namespace

std::string bashCompletions(const std::vector<CompletedCommand>& commands) {
  std::string names;
  std::string cases;
  for (const CompletedCommand& command : commands) {
    names += command.name + " ";
    cases += "    " + command.name + ") words=" + shellQuoted(joined(wordsAfter(command), " ")) + " ;;\n";
  }
  std::string text = "_quellin() {\n  local IFS=$'\\n' words= files= word=${COMP_WORDS[COMP_CWORD]}\n";
  text.append(bashProgram).append("  case ${COMP_WORDS[1]} in\n").append(cases).append("  esac\n");
  text += "  [ \"$COMP_CWORD\" -eq 1 ] && words=" + shellQuoted(names + "--help --version") + "\n";
  text += "  case ${COMP_WORDS[COMP_CWORD-1]} in\n" + bashValues(commands) + "  esac\n";
  return text.append(bashReplies);
}

std::string zshCompletions(const std::vector<CompletedCommand>& commands) {
  std::string names;
  std::string cases;
  for (const CompletedCommand& command : commands) {
    names += "    " + shellQuoted(zshEscaped(command.name) + ":" + command.purpose) + "\n";
    cases += "    " + command.name + ")\n      _arguments -S";
    for (const CompletedOption& option : command.options) cases += zshOption(option);
    cases += zshArguments(command) + " ;;\n";
  }
  return "#compdef quellin\n_quellin() {\n  local -a names\n  names=(\n" + names +
         "  )\n  if (( CURRENT == 2 )); then\n    _describe command names\n    return\n  fi\n"
         "  shift words\n  (( CURRENT-- ))\n  case $words[1] in\n" +
         cases + "  esac\n}\ncompdef _quellin quellin\n";
}

std::string fishCompletions(const std::vector<CompletedCommand>& commands) {
  std::string text = std::string{fishProgram} + "complete -c quellin -f\n";
  for (const CompletedCommand& command : commands) {
    const std::string within =
        "complete -c quellin -n " + shellQuoted("__fish_seen_subcommand_from " + command.name);
    text += "complete -c quellin -n __fish_use_subcommand -a " + command.name + " -d " +
            shellQuoted(command.purpose) + "\n";
    for (const CompletedOption& option : command.options) text += within + fishOption(option) + "\n";
    text += fishArguments(command, within);
  }
  return text;
}

}  // namespace quellin::cli
