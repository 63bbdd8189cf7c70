#include "quellin/Presentation/ProcessTable.h"

#include "quellin/Presentation/FigureText.h"
#include "quellin/Presentation/Table.h"

namespace quellin::cli {

std::string processTable(const std::vector<ProcessActivityInfo>& processes,
                         std::optional<std::size_t> width) {
  Table table{{{"PID", Alignment::right},
               {"Process", Alignment::left, true},
               {"CPU %", Alignment::right},
               {"Wake-ups/s", Alignment::right},
               {"Disk", Alignment::right},
               {"W (est.)", Alignment::right},
               {"Impact", Alignment::right}}};
  for (const ProcessActivityInfo& process : processes) {
    table.add({whole(process.pid), process.name, decimal(process.cpuPercent, 1),
               decimal(process.wakeupsPerSecond, 1), byteText(process.diskBytesPerSecond) + "/s",
               decimal(process.energyWattsEstimate, 2), decimal(process.impactScore, 1)});
  }
  return table.text(width);
}

}  // namespace quellin::cli
