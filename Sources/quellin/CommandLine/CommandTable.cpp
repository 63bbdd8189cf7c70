#include <algorithm>
#include <iterator>
#include <vector>

#include <CLI/CLI.hpp>

#include "quellin/CommandLine/Command.h"
#include "quellin/CommandLine/CommandLine.h"

namespace quellin::cli {

namespace {

// What measures and records.
std::vector<Command> measuringCommands() {
  return {
      {"doctor",
       "Say what can be measured here, what cannot, and what would help",
       {"quellin doctor", "quellin doctor --json", "quellin doctor --source Examples/macbook.trace.jsonl"},
       [](CLI::App& app, Options& options) {
         addSource(app, options);
         addStore(app, options);
         addJSON(app, options);
         app.add_flag("--brief", options.brief, "One line for each source");
       },
       doctor},
      {"snapshot",
       "Read everything once and show each figure with its unit, source and kind",
       {"quellin snapshot", "quellin snapshot --processes", "quellin snapshot --json | jq '.figures[]'"},
       [](CLI::App& app, Options& options) {
         addSource(app, options);
         addJSON(app, options);
         app.add_flag("--processes", options.processes,
                      "Also the ten processes that cost the most right now");
       },
       snapshot},
      {"watch",
       "Show live in the terminal what the machine is doing, with keys to record a session",
       {"quellin watch", "quellin watch --interval 2s",
        "quellin watch --source Examples/macbook.trace.jsonl --interval 500ms"},
       [](CLI::App& app, Options& options) {
         addSource(app, options);
         addStore(app, options);
         addDuration(app, "--interval",
                     "From one reading to the next, 1s by default; a trace moves on by a tick unless --speed "
                     "sets its pace",
                     [&options](Seconds interval) { options.interval = interval; });
       },
       watch},
      {"record",
       "Record a session, or go on with the one that is active, and sum it up at the end",
       {"quellin record --title 'Video call'", "quellin record --for 10m --interval 2s",
        "quellin record --source Examples/macbook.trace.jsonl"},
       [](CLI::App& app, Options& options) {
         addSource(app, options);
         addStore(app, options);
         addJSON(app, options);
         addInterval(app, options);
         addLength(app, options);
         addTitle(app, options, "when it began");
         addProcessInterval(app, options, usualProcessInterval);
         app.add_flag("--telemetry", options.telemetry, "Also ask the installed tool for telemetry");
       },
       record},
      {"run",
       "Run a command, record a session around it, and say on standard error what energy it took",
       {"quellin run -- make -j8", "quellin run --repeat 5 --baseline 30s --title 'Old code' -- ./test.sh",
        "quellin run --json -o energy.json -- sh -c 'sort big.txt | uniq -c'"},
       [](CLI::App& app, Options& options) {
         addWord(
             app, options, "COMMAND",
             "The command, behind --, with all that belongs to it; if it fails, its session is interrupted",
             {});
         addSource(app, options);
         addStore(app, options);
         addJSON(app, options);
         addOutput(app, options, "The file for the result, instead of standard error");
         addInterval(app, options);
         addTitle(app, options, "the command");
         addProcessInterval(app, options, usualRunProcessInterval);
         addRepeat(app, options);
         addDuration(app, "--baseline", "Measure the idle machine for so long first, to compare with",
                     [&options](Seconds length) { options.baseline = length; });
       },
       runCommand},
  };
}

// What asks about recorded sessions and ends them.
std::vector<Command> sessionCommands() {
  return {
      {"sessions",
       "List the recorded sessions, newest first",
       {"quellin sessions", "quellin sessions --json | jq -r '.[].title'"},
       [](CLI::App& app, Options& options) {
         addStore(app, options);
         addJSON(app, options);
       },
       listSessions},
      {"show",
       "Show what a session comes to, in all and for each power source",
       {"quellin show last", "quellin show 3F2A --json"},
       [](CLI::App& app, Options& options) {
         addSession(app, options);
         addStore(app, options);
         addJSON(app, options);
       },
       showSession},
      {"report",
       "Write a page about a session, to look at in any browser, offline",
       {"quellin report last", "quellin report 3F2A -o session.html"},
       [](CLI::App& app, Options& options) {
         addSession(app, options);
         addStore(app, options);
         addOutput(app, options, "The file to write, instead of quellin-ID.html in this folder");
       },
       reportSession},
      {"compare",
       "Say how far the sessions of B differ from those of A, and how sure that is, like with like",
       {"quellin compare 'Old code' 'New code'", "quellin compare 3F2A,91C0,B7 last --json",
        "quellin compare 'Old code' 'New code' --threshold 5 || echo worse"},
       [](CLI::App& app, Options& options) {
         addSides(app, options);
         addStore(app, options);
         addJSON(app, options);
         addThreshold(app, options);
       },
       compareRuns},
      {"export",
       "Write a session as JSON Lines",
       {"quellin export last | head -n 2", "quellin export 3F2A -o session.jsonl"},
       [](CLI::App& app, Options& options) {
         addSession(app, options);
         addStore(app, options);
         addOutput(app, options, "The file to write, instead of standard output");
       },
       exportSession},
      {"stop", "End the active session as completed", {"quellin stop"}, addStore, stopSession},
      {"interrupt",
       "End the active session as interrupted",
       {"quellin interrupt"},
       addStore,
       interruptSession},
      {"delete",
       "Delete a session with all its samples",
       {"quellin delete 3F2A"},
       [](CLI::App& app, Options& options) {
         addSession(app, options);
         addStore(app, options);
         app.add_flag("--force", options.force, "Delete even the active session");
       },
       deleteSession},
  };
}

// The rest: raw sources, limits, and the program itself.
std::vector<Command> otherCommands() {
  return {
      {"capture",
       "Write a trace: what every source answers, before any rule sees it",
       {"quellin capture -o day.jsonl --for 10m", "quellin snapshot --source day.jsonl"},
       [](CLI::App& app, Options& options) {
         addSource(app, options);
         addOutput(app, options, "The trace to write")->required();
         addInterval(app, options);
         addLength(app, options);
       },
       capture},
      {"budget",
       "Watch the silicon's power and print an alert for every limit that is exceeded",
       {"quellin budget --system 20 --for 1m", "quellin budget --cpu 10 --gpu 5 && echo stayed below"},
       [](CLI::App& app, Options& options) {
         addSource(app, options);
         addInterval(app, options);
         addLength(app, options);
         addJSON(app, options);
         addWatts(app, "--cpu", "Limit of the processor", options.budget.cpuThreshold);
         addWatts(app, "--gpu", "Limit of the graphics", options.budget.gpuThreshold);
         addWatts(app, "--ane", "Limit of the neural engine", options.budget.aneThreshold);
         addWatts(app, "--system", "Limit of all silicon together", options.budget.systemThreshold);
       },
       budget},
      {"helper",
       "Say whether the privileged tool is installed, or install it",
       {"quellin helper status", "quellin helper install"},
       [](CLI::App& app, Options& options) {
         addWord(app, options, "ACTION", "What to do", {"status", "install"});
         addJSON(app, options);
       },
       helper},
      {"manual",
       "Print the manual page",
       {"quellin manual | man -l -"},
       [](CLI::App&, Options&) {},
       printManual},
      {"completions",
       "Print the completions for a shell",
       {"source <(quellin completions bash)",
        "quellin completions fish > ~/.config/fish/completions/quellin.fish"},
       [](CLI::App& app, Options& options) {
         addWord(app, options, "SHELL", "The shell", {"bash", "zsh", "fish"});
       },
       printCompletions},
  };
}

}  // namespace

const std::vector<Command>& commands() {
  static const std::vector<Command> table = [] {
    std::vector<Command> all = measuringCommands();
    std::ranges::move(sessionCommands(), std::back_inserter(all));
    std::ranges::move(otherCommands(), std::back_inserter(all));
    return all;
  }();
  return table;
}

}  // namespace quellin::cli
