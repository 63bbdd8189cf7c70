#include "quellin/Presentation/SnapshotReport.h"

#include "QuellinCore/Support/ISO8601.h"
#include "quellin/Presentation/FigureTable.h"
#include "quellin/Presentation/ProcessTable.h"
#include "quellin/Terminal/PlainText.h"

namespace quellin::cli {

std::string snapshotText(const SnapshotReport& report, const std::string& name,
                         std::optional<std::size_t> width) {
  std::string text = "Snapshot of " + printable(name) + " at " + formatISO8601(report.timestamp) + "\n\n";
  text += figureTable(report.figures, width);
  if (report.processes) text += "\n" + processTable(*report.processes, width);
  return text;
}

}  // namespace quellin::cli
