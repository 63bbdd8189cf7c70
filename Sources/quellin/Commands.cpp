#include <CLI/CLI.hpp>

#include "quellin/Command.h"
#include "quellin/CommandLine.h"

namespace quellin::cli {

const std::vector<Command>& commands() {
  static const std::vector<Command> table{
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
  return table;
}

}  // namespace quellin::cli
