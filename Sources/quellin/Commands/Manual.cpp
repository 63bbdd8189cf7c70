#include <CLI/CLI.hpp>

#include "quellin/CommandLine/CommandLine.h"
#include "quellin/Version.h"

namespace quellin::cli {
namespace {

// What roff would take for its own.
std::string escaped(const std::string& text) {
  std::string result;
  for (const char character : text) {
    if (character == '\\') {
      result += "\\e";
    } else if (character == '-') {
      result += "\\-";
    } else {
      if (result.empty() && (character == '.' || character == '\'')) result += "\\&";
      result += character;
    }
  }
  return result;
}

std::string nameOf(const CLI::Option& option) {
  if (option.get_positional()) return option.get_name(true);
  return option.get_name(false, true) + (option.get_type_size() == 0 ? "" : " " + option.get_type_name());
}

std::string optionTexts(const CLI::App& app) {
  std::string text;
  for (const CLI::Option* option : app.get_options()) {
    text += ".TP\n.B " + escaped(nameOf(*option)) + "\n" + escaped(option->get_description()) + "\n";
  }
  return text;
}

std::string commandText(const Command& command, const CLI::App& app) {
  std::string text = ".SS \"quellin " + std::string{command.name} + "\"\n";
  text += escaped(std::string{command.purpose}) + ".\n" + optionTexts(app);
  text += ".PP\nExamples:\n.nf\n";
  for (const auto example : command.examples) text += "    " + escaped(std::string{example}) + "\n";
  return text + ".fi\n";
}

}  // namespace

ExitStatus printManual(const Invocation& invocation) {
  Options options;
  const auto app = commandLine(options);
  std::string text = R"(.TH QUELLIN 1 "" "Quellin )" + std::string{version} + R"(" "User Commands")";
  text += "\n.SH NAME\nquellin \\- power, battery, heat and fans, and the energy of recorded sessions\n";
  text += ".SH SYNOPSIS\n.B quellin\n.I COMMAND\n[\\fIOPTION\\fR...]\n";
  text += ".SH DESCRIPTION\n" + escaped(app->get_description()) + "\n";
  text += ".SH OPTIONS\n" + optionTexts(*app);
  text += ".SH COMMANDS\n";
  for (const Command& command : commands()) {
    text += commandText(command, *app->get_subcommand(std::string{command.name}));
  }
  text += ".SH \"EXIT STATUS\"\n" + escaped(exitStatusText) + "\n";
  text += ".SH ENVIRONMENT\n.TP\n.B NO_COLOR\nNo colours when set and not empty.\n";
  text += ".TP\n.B TERM\nNo colours when \"dumb\".\n.TP\n.B COLUMNS\nThe width of the output.\n";
  text += ".SH FILES\n.TP\n.I ~/Library/Application Support/Quellin/QuellinSessions.store\n";
  text += "The recorded sessions, unless \\-\\-store names another file.\n";
  invocation.out.write(text);
  return ExitStatus::ok;
}

}  // namespace quellin::cli
