#include <algorithm>
#include <tuple>

#include "QuellinCore/Support/ISO8601.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/Measuring/MeasuredHost.h"
#include "quellin/Presentation/Figure.h"
#include "quellin/Presentation/FigureTable.h"
#include "quellin/Presentation/JSONOutput.h"
#include "quellin/Presentation/ProcessTable.h"
#include "quellin/Presentation/Table.h"

namespace quellin::cli {
namespace {

constexpr int processLimit = 10;
constexpr Seconds processInterval{0.35};

struct SnapshotReport {
  std::string source;
  Instant timestamp;
  std::vector<Figure> figures;
  std::optional<std::vector<ProcessActivityInfo>> processes;

  static constexpr auto fields() {
    return std::tuple{
        Field{"source", &SnapshotReport::source}, Field{"timestamp", &SnapshotReport::timestamp},
        Field{"figures", &SnapshotReport::figures}, Field{"processes", &SnapshotReport::processes}};
  }
};

void show(const SnapshotReport& report, const Invocation& invocation) {
  const auto width = invocation.outTerminal.width;
  invocation.out.line("Snapshot of " + printable(measuredName(invocation.options)) + " at " +
                      formatISO8601(report.timestamp));
  invocation.out.line("");
  invocation.out.write(figureTable(report.figures, width));
  if (!report.processes) return;
  invocation.out.line("");
  invocation.out.write(processTable(*report.processes, width));
}

}  // namespace

ExitStatus snapshot(const Invocation& invocation) {
  const MeasuredHost host = MeasuredHost::open(invocation.options);
  const SystemPowerState state = host.reader().readAll();
  SnapshotReport report{.source = invocation.options.source,
                        .timestamp = state.timestamp,
                        .figures = figures(state, host.sources),
                        .processes = std::nullopt};
  if (invocation.options.processes) report.processes = host.topProcesses(processLimit, processInterval);
  if (invocation.options.json) {
    writeJSON(invocation.out, report);
  } else {
    show(report, invocation);
  }
  const bool knowsAny = std::ranges::any_of(report.figures, &Figure::isKnown);
  if (knowsAny || (report.processes && !report.processes->empty())) return ExitStatus::ok;
  invocation.out.flush();
  invocation.talk.say("nothing can be measured here; 'quellin doctor' says why and what would help.");
  return ExitStatus::nothingMeasurable;
}

}  // namespace quellin::cli
