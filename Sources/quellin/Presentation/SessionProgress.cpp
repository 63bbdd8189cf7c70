#include "quellin/Presentation/SessionProgress.h"

#include "quellin/Presentation/FigureText.h"

namespace quellin::cli {

std::string sessionProgress(const PowerSessionSummary& summary, const std::optional<PowerReading>& reading) {
  std::string text =
      durationText(Seconds{summary.durationSeconds}) + ", " + counted(summary.sampleCount, "sample");
  if (reading) text += ", " + reading->label + " " + decimal(reading->watts, 2) + " W";
  if (summary.totalWattHours) text += ", " + decimal(summary.totalWattHours, 3) + " Wh";
  if (const auto change = summary.batteryPercentDelta) {
    text += std::string{", battery "} + (*change > 0 ? "+" : "") + whole(change) + " %";
  }
  return text;
}

}  // namespace quellin::cli
