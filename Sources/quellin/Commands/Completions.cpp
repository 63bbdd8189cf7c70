#include <sstream>

#include <CLI/CLI.hpp>

#include "QuellinCore/Support/Quoting.h"
#include "quellin/CommandLine/CommandLine.h"

namespace quellin::cli {
namespace {

// What may follow one command.
struct Words {
  std::string command;
  std::string purpose;
  std::vector<std::pair<std::string, std::string>> options;  ///< "--json" and what it is for
  std::vector<std::string> choices;                          ///< of its argument
};

// The checker of a choice describes itself as {one,two}.
std::vector<std::string> choicesOf(const CLI::Option& option) {
  std::vector<std::string> choices;
  const std::string type = option.get_type_name();
  const std::size_t open = type.find('{');
  if (open == std::string::npos) return choices;
  std::istringstream list{type.substr(open + 1, type.find('}') - open - 1)};
  for (std::string choice; std::getline(list, choice, ',');) choices.push_back(choice);
  return choices;
}

Words wordsOf(const CLI::App& app) {
  Words words{.command = app.get_name(), .purpose = app.get_description(), .options = {}, .choices = {}};
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      words.options.emplace_back("--" + name, option->get_description());
    }
    if (option->get_positional()) words.choices = choicesOf(*option);
  }
  return words;
}

std::string joined(const Words& words) {
  std::string text;
  for (const auto& option : words.options) text += option.first + " ";
  for (const auto& choice : words.choices) text += choice + " ";
  if (!text.empty()) text.pop_back();
  return text;
}

std::string bashText(const std::vector<Words>& all) {
  std::string names;
  std::string cases;
  for (const Words& words : all) {
    names += words.command + " ";
    cases += "    " + words.command + ") words=" + shellQuoted(joined(words)) + " ;;\n";
  }
  return "_quellin() {\n  local words\n  case ${COMP_WORDS[1]} in\n" + cases +
         "    *) words=" + shellQuoted(names + "--help --version") +
         " ;;\n  esac\n  [ \"$COMP_CWORD\" -eq 1 ] && words=" + shellQuoted(names + "--help --version") +
         "\n  COMPREPLY=($(compgen -W \"$words\" -- \"${COMP_WORDS[COMP_CWORD]}\"))\n}\n"
         "complete -o default -F _quellin quellin\n";
}

std::string zshText(const std::vector<Words>& all) {
  std::string names;
  std::string cases;
  for (const Words& words : all) {
    names += "    " + shellQuoted(words.command + ":" + words.purpose) + "\n";
    cases += "    " + words.command + ") compadd -- " + joined(words) + " ;;\n";
  }
  return "#compdef quellin\n_quellin() {\n  local -a names\n  names=(\n" + names +
         "  )\n  if (( CURRENT == 2 )); then\n    _describe command names\n    return\n  fi\n  case "
         "$words[2] in\n" +
         cases + "  esac\n  _files\n}\ncompdef _quellin quellin\n";
}

std::string fishText(const std::vector<Words>& all) {
  std::string text;
  for (const Words& words : all) {
    const std::string within =
        "complete -c quellin -n " + shellQuoted("__fish_seen_subcommand_from " + words.command);
    text += "complete -c quellin -f -n __fish_use_subcommand -a " + words.command + " -d " +
            shellQuoted(words.purpose) + "\n";
    for (const auto& [name, purpose] : words.options) {
      text += within + " -l " + name.substr(2) + " -d " + shellQuoted(purpose) + "\n";
    }
    for (const auto& choice : words.choices)
      text.append(within).append(" -f -a ").append(choice).append("\n");
  }
  return text;
}

}  // namespace

ExitStatus printCompletions(const Invocation& invocation) {
  Options options;
  const auto app = commandLine(options);
  std::vector<Words> all;
  for (const Command& command : commands()) {
    all.push_back(wordsOf(*app->get_subcommand(std::string{command.name})));
  }
  const std::string& shell = invocation.options.word;
  if (shell == "bash") invocation.out.write(bashText(all));
  if (shell == "zsh") invocation.out.write(zshText(all));
  if (shell == "fish") invocation.out.write(fishText(all));
  return ExitStatus::ok;
}

}  // namespace quellin::cli
