#include <algorithm>

#include "quellin/CommandLine/Command.h"
#include "quellin/CommandLine/Hint.h"
#include "quellin/Measuring/MeasuredHost.h"
#include "quellin/Presentation/JSONOutput.h"
#include "quellin/Presentation/SnapshotReport.h"

namespace quellin::cli {
namespace {

constexpr int processLimit = 10;

}  // namespace

ExitStatus snapshot(const Invocation& invocation) {
  const MeasuredHost host = MeasuredHost::open(invocation.options);
  const SystemPowerState state = host.reader().readAll();
  SnapshotReport report{.source = invocation.options.source,
                        .timestamp = state.timestamp,
                        .figures = figures(state, host.sources),
                        .processes = std::nullopt};
  if (invocation.options.processes)
    report.processes = host.topProcesses(processLimit, processMeasurementInterval);
  if (invocation.options.json) {
    writeJSON(invocation.out, report);
  } else {
    invocation.out.write(
        snapshotText(report, measuredName(invocation.options), invocation.outTerminal.width));
  }
  const bool knowsAny = std::ranges::any_of(report.figures, &Figure::isKnown);
  if (knowsAny || (report.processes && !report.processes->empty())) return ExitStatus::ok;
  invocation.out.flush();
  invocation.talk.say("nothing can be measured here; " + hintAtDoctor(invocation.options) +
                      " says why and what would help.");
  return ExitStatus::nothingMeasurable;
}

}  // namespace quellin::cli
