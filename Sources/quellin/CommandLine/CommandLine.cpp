#include "quellin/CommandLine/CommandLine.h"

#include <algorithm>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>  // join, since version 11

#include "quellin/Version.h"

namespace quellin::cli {
namespace {

constexpr const char* purpose =
    "What this machine's power, battery, heat and fans are doing, and how much energy a stretch of work "
    "takes.";

// An empty path is mostly a variable of a script that is not set.
CLI::Validator namesAFile() {
  return {[](const std::string& path) { return std::string{path.empty() ? "the name is empty" : ""}; }, ""};
}

// Elsewhere a lone dash often means standard output.
CLI::Validator namesANewFile() {
  return {[](const std::string& path) {
            return std::string{path == "-" ? "'-' is not standard output here; a file of that name is './-'"
                                           : ""};
          },
          ""};
}

std::string exampleText(const std::vector<std::string_view>& examples) {
  std::string text = "Examples:\n";
  for (const auto example : examples) text += "  " + std::string{example} + "\n";
  text.pop_back();
  return text;
}

// What stands behind "--" and its first word belongs to the program that is run, whatever it looks like.
std::vector<std::string> takeArguments(std::vector<std::string>& words) {
  const auto mark = std::ranges::find(words, "--");
  if (words.empty() || words.front() != "run" || words.end() - mark <= 2) return {};
  std::vector<std::string> arguments(mark + 2, words.end());
  words.erase(mark + 2, words.end());
  return arguments;
}

// In the order in which they were typed, which is not that of the library's own text, and without the mark
// before what belongs to a program.
std::string unexpectedText(const CLI::App& app) {
  std::vector<std::string> words = app.remaining();
  if (const auto mark = std::ranges::find(words, "--"); mark != words.end()) words.erase(mark);
  return fmt::format("The following argument{} not expected: {}", words.size() > 1 ? "s were" : " was",
                     fmt::join(words, " "));
}

Remark misuse(const CLI::App& app, const std::vector<std::string>& arguments, const CLI::ParseError& error) {
  const auto chosen = app.get_subcommands();
  if (chosen.empty() && !arguments.empty()) {
    return {ExitStatus::usage, "quellin: there is no option '" + arguments.front() +
                                   "' without a command. 'quellin --help' lists all.\n"};
  }
  if (chosen.empty()) {
    return {ExitStatus::usage, "quellin: " + std::string{error.what()} + ". Try 'quellin --help'.\n"};
  }
  const std::string where = "quellin " + chosen.front()->get_name();
  if (dynamic_cast<const CLI::ExtrasError*>(&error) == nullptr) {
    return {ExitStatus::usage, where + ": " + error.what() + ". Try '" + where + " --help'.\n"};
  }
  const std::string unexpected = unexpectedText(app.remaining_size() > 0 ? app : *chosen.front());
  const bool isOfAProgram = chosen.front()->get_name() == "run";
  return {ExitStatus::usage, where + ": " + unexpected +
                                 (isOfAProgram ? ". The command and all its words go behind --.\n"
                                               : ". Try '" + where + " --help'.\n")};
}

}  // namespace

std::unique_ptr<CLI::App> commandLine(Options& options) {
  auto app = std::make_unique<CLI::App>(purpose, "quellin");
  app->set_version_flag("--version", std::string{"quellin "} + version, "Print the version and end");
  app->require_subcommand(1);
  app->footer(exampleText({"quellin doctor", "quellin snapshot"}) +
              "\n\n'quellin COMMAND --help' says more.\n" + exitStatusText);
  for (const Command& command : commands()) {
    CLI::App* const sub = app->add_subcommand(std::string{command.name}, std::string{command.purpose});
    command.addOptions(*sub, options);
    sub->footer(exampleText(command.examples));
  }
  return app;
}

std::variant<const Command*, Remark> parse(const std::vector<std::string>& arguments, Options& options) {
  const auto app = commandLine(options);
  if (!arguments.empty() && !arguments.front().starts_with('-') &&
      std::ranges::find(commands(), std::string_view{arguments.front()}, &Command::name) ==
          commands().end()) {
    return Remark{ExitStatus::usage,
                  "quellin: there is no command '" + arguments.front() + "'. 'quellin --help' lists all.\n"};
  }
  try {
    std::vector<std::string> words = arguments;
    options.arguments = takeArguments(words);
    std::ranges::reverse(words);
    app->parse(words);
  } catch (const CLI::CallForHelp&) {
    return Remark{ExitStatus::ok, app->help()};
  } catch (const CLI::CallForVersion&) {
    return Remark{ExitStatus::ok, app->version() + "\n"};
  } catch (const CLI::ParseError& error) {
    return misuse(*app, arguments, error);
  }
  const std::string name = app->get_subcommands().front()->get_name();
  return &*std::ranges::find(commands(), std::string_view{name}, &Command::name);
}

void addSource(CLI::App& app, Options& options) {
  app.add_option("--source", options.source,
                 "What to measure: native, the file of a trace, or a folder with copies of sys/ and proc/")
      ->check(namesAFile())
      ->type_name(std::string{nativeSource} + "|FILE|DIR")
      ->default_str(nativeSource);
  app.add_option_function<std::string>(
         "--speed",
         [&options](const std::string& text) {
           const auto speed = parseSpeed(text);
           if (!speed)
             throw CLI::ValidationError("--speed", "'" + text + "' is neither max nor a number above 0");
           options.speed = *speed;
         },
         "How fast a trace goes by: max, or a multiple of the captured pace")
      ->type_name("max|N")
      ->default_str("max");
}

void addStore(CLI::App& app, Options& options) {
  app.add_option_function<std::string>(
         "--store", [&options](const std::string& path) { options.store = path; },
         "The session store, instead of the one in your home folder")
      ->check(namesAFile())
      ->type_name("PATH");
}

void addJSON(CLI::App& app, Options& options) { app.add_flag("--json", options.json, "Print JSON"); }

void addWord(CLI::App& app, Options& options, const std::string& name, const std::string& description,
             const std::vector<std::string>& choices) {
  CLI::Option* const word = app.add_option(name, options.word, description)->required();
  if (!choices.empty()) word->check(CLI::IsMember(choices).description(""));
  word->type_name(fmt::format("{}", fmt::join(choices, "|")));
}

void addSession(CLI::App& app, Options& options) {
  addWord(app, options, "ID", "The session: its identifier, the beginning of it, or last", {});
}

void addSides(CLI::App& app, Options& options) {
  app.add_option(
         "A", options.word,
         "What to compare with: a title, or sessions with commas between them, each by its title, its "
         "identifier, the beginning of it, or last")
      ->required()
      ->type_name("");
  app.add_option("B", options.other, "What to compare, in the same words")->required()->type_name("");
}

void addThreshold(CLI::App& app, Options& options) {
  app.add_option_function<std::string>(
         "--threshold",
         [&options](const std::string& text) {
           options.thresholdPercent = parsePercent(text);
           if (!options.thresholdPercent)
             throw CLI::ValidationError("--threshold", "'" + text + "' is no per cent such as 5 or 2.5");
         },
         "End with status 3 when B is worse: when it is shown to lie more than so many per cent above A")
      ->type_name("PERCENT");
}

void addDuration(CLI::App& app, const std::string& name, const std::string& description,
                 const std::function<void(Seconds)>& place) {
  app.add_option_function<std::string>(
         name,
         [name, place](const std::string& text) {
           const auto duration = parseDuration(text);
           if (!duration) {
             throw CLI::ValidationError(name,
                                        "'" + text + "' is no length of time such as 500ms, 90, 5m or 1.5h");
           }
           place(*duration);
         },
         description)
      ->type_name("TIME");
}

CLI::Option* addOutput(CLI::App& app, Options& options, const std::string& description) {
  app.add_flag("--force", options.force, "Replace a file that is there already");
  return app.add_option("-o,--output", options.output, description)
      ->check(namesAFile())
      ->check(namesANewFile())
      ->type_name("FILE");
}

void addTitle(CLI::App& app, Options& options, const std::string& otherwise) {
  app.add_option("--title", options.title, "What the session is called; by default " + otherwise);
}

void addRepeat(CLI::App& app, Options& options) {
  app.add_option(
         "--repeat", options.repeat,
         "How often to run it, 10000 times at most, each time in a session of its own; once by default")
      ->check(CLI::Range(1, 10000).description(""))
      ->type_name("N");
}

void addProcessInterval(CLI::App& app, Options& options, Seconds usual) {
  addDuration(app, "--process-interval",
              fmt::format("From one look at the processes to the next, {}s by default", usual.count()),
              [&options](Seconds interval) { options.processInterval = interval; });
}

void addInterval(CLI::App& app, Options& options) {
  addDuration(app, "--interval", "From one reading to the next, 1s by default; a trace has its own",
              [&options](Seconds interval) { options.interval = interval; });
}

void addLength(CLI::App& app, Options& options) {
  addDuration(app, "--for", "How long; until interrupted by default",
              [&options](Seconds duration) { options.duration = duration; });
}

void addWatts(CLI::App& app, const std::string& name, const std::string& description,
              std::optional<double>& limit) {
  app.add_option_function<std::string>(
         name,
         [name, &limit](const std::string& text) {
           limit = parseWatts(text);
           if (!limit) {
             throw CLI::ValidationError(name, "'" + text + "' is no number of watts such as 20 or 7.5");
           }
         },
         description)
      ->type_name("WATTS");
}

}  // namespace quellin::cli
