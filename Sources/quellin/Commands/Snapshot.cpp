#include <algorithm>
#include <tuple>

#include "QuellinCore/Support/ISO8601.h"
#include "quellin/CommandLine/Command.h"
#include "quellin/Measuring/MeasuredHost.h"
#include "quellin/Presentation/Figure.h"
#include "quellin/Presentation/FigureText.h"
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

std::string shown(const Figure& figure) {
  return figure.text ? *figure.text : figureText(figure.value, figure.unit);
}

void show(const SnapshotReport& report, const Invocation& invocation) {
  const auto width = invocation.outTerminal.width;
  invocation.out.line("Snapshot of " + printable(report.source) + " at " + formatISO8601(report.timestamp));
  invocation.out.line("");
  Table table{{{"Group"}, {"Figure"}, {"Value", Alignment::right}, {"Unit"}, {"Source"}, {"Kind"}, {"Note"}}};
  for (const Figure& figure : report.figures) {
    table.add({figure.group, figure.name, shown(figure), figure.unit, figure.source, figure.kind,
               figure.note.value_or("")});
  }
  invocation.out.write(table.text(width));
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
