#include "quellin/Watch/Watch.h"

#include <unistd.h>

#include "quellin/Outcome/Failure.h"

namespace quellin::cli {
namespace {

void requireTerminal(const Invocation& invocation) {
  const Terminal input = Terminal::at(STDIN_FILENO, processEnvironment());
  const Terminal& output = invocation.outTerminal;
  if (input.isTerminal && output.isTerminal && !output.isDumb) return;
  const std::string reason = input.isTerminal && output.isTerminal
                                 ? "this terminal can only append (TERM is dumb or not set)"
                                 : "it needs a terminal for input and output";
  throw Failure{ExitStatus::usage, "watch: " + reason +
                                       ". 'quellin snapshot' measures once and 'quellin record' goes on, "
                                       "both anywhere."};
}

}  // namespace

ExitStatus watch(const Invocation& invocation) {
  requireTerminal(invocation);
  const MeasuredHost host = MeasuredHost::openMeasurable(invocation.options);
  Watch{invocation, host}.run();
  return ExitStatus::ok;
}

}  // namespace quellin::cli
